// The mesh tables: one mesh, or the two regions of a combination. A number is an address: gaps are legal, and
// a loop over all nodes or elements scans the table and asks an activity flag. Who fills them: the mesh
// readers of the edit and the combination; everyone may read them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "mesh/edition.h"
#include "mesh/numbers.h"
#include "mesh/table.h"

namespace brelan {

inline constexpr std::int32_t HIGHEST_NODE_NUMBER = 99990;  // highest node number
inline constexpr std::int32_t HIGHEST_ELEMENT_NUMBER =
    99990;  // highest element number; all types share one number space
inline constexpr NodeNumber LAST_NODE{HIGHEST_NODE_NUMBER};  // the same as ends of tables and loops
inline constexpr ElementNumber LAST_ELEMENT{HIGHEST_ELEMENT_NUMBER};
inline constexpr std::int32_t NO_LOWEST_NUMBER = 100000;  // start of a running minimum of numbers: none seen
inline constexpr std::int32_t MOST_REBUILD_ROWS = 100;    // rows of each table of IEDIT 6
inline constexpr std::int32_t MOST_COPIED_LINES =
    320000;  // lines that the copy into "MeshFile.Mes" passes at most

// Node codes, the first 5, 2 or 3 used by kind.
using NodeCodes = std::array<std::int32_t, 5>;

// An element's words. I1 to I4 are the corners in order round the element, M5 to M8 the midside nodes.
//
//        I2 ----M5---- I1          beam or truss:  I1 = I4 = I,  I2 = I3 = J
//         |             |
//        M6            M8          triangle:       I4 = 0
//         |             |
//        I3 ----M7---- I4          a word of 0 or below: no node
//
struct ElementWords {
    NodeNumber corner_1, corner_2, corner_3, corner_4;
    NodeNumber midside_5, midside_6, midside_7, midside_8;
    MaterialNumber material;

    void clear_midsides() { midside_5 = midside_6 = midside_7 = midside_8 = NodeNumber{}; }
};

// Types of an element in type, type_in_use and second_type_in_use.
inline constexpr std::int8_t ELEMENT_UNUSED = -1;  // in type_in_use and second_type_in_use
inline constexpr std::int8_t ELEMENT_DELETED = 0;  // in type
inline constexpr std::int8_t ELEMENT_CONTINUUM = 1;
inline constexpr std::int8_t ELEMENT_BEAM = 2;
inline constexpr std::int8_t ELEMENT_TRUSS = 3;

// Those of the sections of a mesh file, in their order.
inline constexpr std::int8_t ELEMENT_TYPES[3] = {ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS};

using ElementTypes = Table<std::int8_t, LAST_ELEMENT, "EACT1">;

// One mesh, by the numbers of its nodes and elements.
struct Mesh {
    LayoutKind kind = LayoutKind::displacement;

    Table<NodeCodes, LAST_NODE, "IDN"> codes;
    Table<float, LAST_NODE, "XC"> x;  // in the mesh's unit of length
    Table<float, LAST_NODE, "YC"> y;
    Table<float, LAST_NODE, "H"> head;          // head or temperature, by kind
    Table<float, LAST_NODE, "CF"> coefficient;  // further node value of the temperature and head kinds
    Table<std::int8_t, LAST_NODE, "NACT1"> node_in_use;  // 1: number in use
    Table<std::int8_t, LAST_NODE, "NMARK"> node_mark;    // the group engine's mark; follows its node

    Table<ElementWords, LAST_ELEMENT, "IEL"> words;
    ElementTypes type_in_use;                          // type of the elements of the result
    Table<std::int32_t, LAST_ELEMENT, "ETYPE"> type;   // type during an edit
    Table<std::int32_t, LAST_ELEMENT, "KS"> skeleton;  // attributes of the coupled kind
    Table<std::int32_t, LAST_ELEMENT, "KF"> fluid;
    Table<std::int32_t, LAST_ELEMENT, "INTR"> integration_r;
    Table<std::int32_t, LAST_ELEMENT, "INTS"> integration_s;
    Table<float, LAST_ELEMENT, "TBJWL"> real_attribute;
    Table<float, LAST_ELEMENT, "THIC"> thickness;  // displacement kind
    Table<float, LAST_ELEMENT, "DEN"> density;
    Table<std::int32_t, LAST_ELEMENT, "IDH"> attribute;  // of the temperature and head kinds
};

// Another number for each node; 0 for none.
using NodeNumbers = Table<NodeNumber, LAST_NODE, "NMAP">;

// What a list card names: entry n is n when number n was listed.
struct Selection {
    Table<NodeNumber, LAST_NODE, "NLIST"> nodes;
    Table<ElementNumber, LAST_ELEMENT, "ELIST"> elements;
};

// --- routines ------------------------------------------------------------------------------------

// Empties the tables for a deck: nothing active, codes and coordinates 0.
// Element words, H, CF and attributes stay: a slot that the new mesh leaves unused keeps what the deck before
// it left there.
void reset_mesh(Mesh& mesh);

// The nodes that are corners of the elements from 1 to the last one, deleted ones apart, in ascending number.
// Midside nodes are taken along or left out.
enum class MidsideNodes { left_out, taken };
std::vector<NodeNumber> nodes_of_elements(const Mesh& mesh, ElementNumber last_element,
                                          MidsideNodes midsides = MidsideNodes::left_out);

}  // namespace brelan
