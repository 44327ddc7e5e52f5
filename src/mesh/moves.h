// Node moves and the collapse of short elements, with the test for elements that degenerate by them.
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

// The highest number with ETYPE not 0; 0 for none.
std::int32_t last_element();

// Merges the two nodes of every beam and truss that IDCOL considers and that is at most FCOL times their mean
// length long: wherever the second node stands in an element, the first takes its place. Nothing changes, and
// IDCOL becomes 0, when none is so short. Coordinates do not move.
void COLLAPSE();

// Applies the move lists: the first where it has pairs, else the second. Moves coordinates pair by pair, then
// merges the nodes of pairs with a fraction of exactly 1.0 in all elements.
void MOVENODES();

// What has become of an element whose corners were replaced: an element that lost its extent gets ETYPE 0, a
// quadrilateral with two neighbouring corners in one becomes a triangle.
void DEGENERATE(std::int32_t element);

}  // namespace brelan
