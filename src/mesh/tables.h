// The mesh tables: one mesh, or the two regions of a combination. A number is an address: gaps are legal, and
// a loop over all nodes or elements scans the table and asks an activity flag. Who fills them: the mesh
// readers of the edit and the combination; everyone may read them.
#pragma once

#include <array>
#include <cstdint>

#include "mesh/edition.h"
#include "mesh/table.h"

namespace brelan {

inline constexpr std::int32_t MAXNP = 99990;     // highest node number
inline constexpr std::int32_t MAXEL = 99990;     // highest element number; all types share one number space
inline constexpr std::int32_t NOMIN = 100000;    // start of a running minimum of numbers: none seen
inline constexpr std::int32_t MAXEDLIST = 100;   // rows of each table of IEDIT 6
inline constexpr std::int32_t MAXCOPY = 320000;  // lines that the copy into "MeshFile.Mes" passes at most

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
    std::int32_t I1 = 0, I2 = 0, I3 = 0, I4 = 0;
    std::int32_t M5 = 0, M6 = 0, M7 = 0, M8 = 0;
    std::int32_t MATNO = 0;
};

// Types of an element in ETYPE, EACT1 and EACT2.
inline constexpr std::int8_t EL_UNUSED = -1;  // in EACT1 and EACT2
inline constexpr std::int8_t EL_DELETED = 0;  // in ETYPE
inline constexpr std::int8_t EL_CONTINUUM = 1;
inline constexpr std::int8_t EL_BEAM = 2;
inline constexpr std::int8_t EL_TRUSS = 3;

// One mesh, by the numbers of its nodes and elements.
struct Mesh {
    LayoutKind kind = LayoutKind::displacement;

    Table<NodeCodes, MAXNP, "IDN"> codes;
    Table<float, MAXNP, "XC"> x;  // in the mesh's unit of length
    Table<float, MAXNP, "YC"> y;
    Table<float, MAXNP, "H"> head;               // head or temperature, by kind
    Table<float, MAXNP, "CF"> coefficient;       // further node value of the temperature and head kinds
    Table<std::int8_t, MAXNP, "NACT1"> node_in_use;  // 1: number in use
    Table<std::int32_t, MAXNP, "NUSED"> node_used;   // 0, or the node's own number when an element refers to it
    Table<std::int32_t, MAXNP, "NMAP"> new_number;   // old to new number; negative for a node merged into it
    Table<std::int8_t, MAXNP, "NMARK"> node_mark;    // the group engine's mark; follows its node

    Table<ElementWords, MAXEL, "IEL"> words;
    Table<std::int8_t, MAXEL, "EACT1"> type_in_use;  // type of the elements of the result
    Table<std::int32_t, MAXEL, "ETYPE"> type;        // type during an edit
    Table<std::int32_t, MAXEL, "KS"> skeleton;       // attributes of the coupled kind
    Table<std::int32_t, MAXEL, "KF"> fluid;
    Table<std::int32_t, MAXEL, "INTR"> integration_r;
    Table<std::int32_t, MAXEL, "INTS"> integration_s;
    Table<float, MAXEL, "TBJWL"> real_attribute;
    Table<float, MAXEL, "THIC"> thickness;  // displacement kind
    Table<float, MAXEL, "DEN"> density;
    Table<std::int32_t, MAXEL, "IDH"> attribute;  // of the temperature and head kinds
};

// The first region of a combination, beside the tables of the second.
struct SideTables {
    Table<NodeCodes, MAXNP, "IDN1"> codes;
    Table<float, MAXNP, "XC1"> x;
    Table<float, MAXNP, "YC1"> y;
    Table<float, MAXNP, "H1"> head;
    Table<float, MAXNP, "CF1"> coefficient;
    Table<std::int8_t, MAXNP, "NACT2"> second_node_in_use;
    Table<std::int8_t, MAXEL, "EACT2"> second_type_in_use;
};

// What a list card names: entry n is n when number n was listed.
struct Selection {
    Table<std::int32_t, MAXNP, "NLIST"> nodes;
    Table<std::int32_t, MAXEL, "ELIST"> elements;
};

// --- routines ------------------------------------------------------------------------------------

// Empties the tables for a deck: nothing active, codes and coordinates 0, NMAP the identity. Element words,
// H, CF and attributes stay: a slot that the new mesh leaves unused keeps what the deck before it left there.
void RESETMESH(Mesh& mesh, SideTables& side, Selection& selection);

// Distance of two points, 32 bits.
float DIST2D(float x1, float y1, float x2, float y2);

}  // namespace brelan
