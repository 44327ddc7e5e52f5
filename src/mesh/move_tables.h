// Move lists and the values of the short-element collapse. Who fills them: the first list, the line-up; the
// rest, deck/defaults_file.cpp.
#pragma once

#include <cstdint>

#include "mesh/tables.h"

namespace brelan {

inline constexpr std::int32_t MAXMOVE = MAXNP;  // pairs of a move list

// A node that goes a fraction of the way to another; with 1.0 it merges with it.
struct NodeMove {
    std::int32_t moved = 0, target = 0;
    float fraction = 0.0F;
};

// First list: filled by the line-up, in node numbers. Second list: read from the defaults file, in ordinal
// positions among the used nodes.
inline std::int32_t NMOVE = 0, NMOVE2 = 0;
inline Table<NodeMove, MAXMOVE, "the move list"> MOVES;
inline Table<NodeMove, MAXMOVE, "the second move list"> MOVES2;

// Short-element collapse, from the defaults file.
inline std::int32_t IDCOL =
    0;                     // 0 off; 1 beams and trusses, 2 beams, 3 trusses; 4 to 6 of the materials below
inline float FCOL = 0.0F;  // factor on the mean length
inline std::int32_t MATCB[3] = {};  // beam materials of modes 4 and 6
inline std::int32_t MATCT[3] = {};  // truss materials of modes 5 and 6

}  // namespace brelan
