// The mesh tables: one mesh, or the two regions of a combination. A number is an address: gaps are legal, and
// a loop over all nodes or elements scans the table and asks an activity flag. Who fills them: the mesh
// readers of the edit and the combination; everyone may read them.
#pragma once

#include <array>
#include <cstdint>

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

// --- nodes ---------------------------------------------------------------------------------------

inline Table<NodeCodes, MAXNP, "IDN"> IDN;  // codes of the working set
inline Table<float, MAXNP, "XC"> XC;        // coordinates of the working set, in the mesh's unit of length
inline Table<float, MAXNP, "YC"> YC;
inline Table<float, MAXNP, "H"> H;            // head or temperature, by kind
inline Table<float, MAXNP, "CF"> CF;          // further node value of the temperature and head kinds
inline Table<NodeCodes, MAXNP, "IDN1"> IDN1;  // the same for the first region of a combination
inline Table<float, MAXNP, "XC1"> XC1;
inline Table<float, MAXNP, "YC1"> YC1;
inline Table<float, MAXNP, "H1"> H1;
inline Table<float, MAXNP, "CF1"> CF1;
inline Table<std::int8_t, MAXNP, "NACT1">
    NACT1;  // 1: number in use in the first region, or in the result of an edit
inline Table<std::int8_t, MAXNP, "NACT2"> NACT2;   // 1: number in use in the second region
inline Table<std::int32_t, MAXNP, "NUSED"> NUSED;  // 0, or the node's own number when an element refers to it
inline Table<std::int32_t, MAXNP, "NMAP">
    NMAP;  // old to new number; negative for a node merged into that number
inline Table<std::int32_t, MAXNP, "NLIST"> NLIST;  // entry n is n when node n was listed
inline Table<std::int8_t, MAXNP, "NMARK">
    NMARK;  // the group engine's mark; follows its node through compaction

// --- elements ------------------------------------------------------------------------------------

inline Table<ElementWords, MAXEL, "IEL"> IEL;
inline Table<std::int8_t, MAXEL, "EACT1"> EACT1;   // type by number in the first region or in the result
inline Table<std::int8_t, MAXEL, "EACT2"> EACT2;   // type by number in the second region
inline Table<std::int32_t, MAXEL, "ETYPE"> ETYPE;  // type during an edit
inline Table<std::int32_t, MAXEL, "ELIST"> ELIST;  // entry n is n when element n was listed
inline Table<std::int32_t, MAXEL, "KS"> KS;        // attributes of the coupled kind
inline Table<std::int32_t, MAXEL, "KF"> KF;
inline Table<std::int32_t, MAXEL, "INTR"> INTR;
inline Table<std::int32_t, MAXEL, "INTS"> INTS;
inline Table<float, MAXEL, "TBJWL"> TBJWL;
inline Table<float, MAXEL, "THIC"> THIC;       // thickness, displacement kind
inline Table<float, MAXEL, "DEN"> DEN;         // density, displacement kind
inline Table<std::int32_t, MAXEL, "IDH"> IDH;  // attribute of the temperature and head kinds

// --- routines ------------------------------------------------------------------------------------

// Empties the tables for a deck: nothing active, codes and coordinates 0, NMAP the identity. Element words,
// H, CF and attributes stay: a slot that the new mesh leaves unused keeps what the deck before it left there.
void RESETMESH(Mesh& mesh, SideTables& side, Selection& selection);

// Distance of two points, 32 bits.
float DIST2D(float x1, float y1, float x2, float y2);

}  // namespace brelan
