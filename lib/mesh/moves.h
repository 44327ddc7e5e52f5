// Node moves and the collapse of short elements, with the test for elements that degenerate by them.
#pragma once

#include <cstdint>

#include "mesh/group_tables.h"
#include "mesh/move_tables.h"
#include "mesh/tables.h"

namespace brelan {

// The highest number with type not 0; 0 for none.
ElementNumber last_element(const Mesh& mesh);

// Merges the two nodes of every beam and truss that IDCOL considers and that is at most FCOL times their mean
// length long: wherever the second node stands in an element, the first takes its place. Nothing changes, and
// IDCOL becomes 0, when none is so short. Coordinates do not move.
void collapse_short_elements(Mesh& mesh, GroupListing& listing, MoveLists& moves);

// Applies the move lists: the first where it has pairs, else the second. Moves coordinates pair by pair, then
// merges the nodes of pairs with a fraction of exactly 1.0 in all elements.
void move_nodes(Mesh& mesh, GroupListing& listing, const MoveLists& moves);

// What has become of an element whose corners were replaced: an element that lost its extent gets
// type 0, a quadrilateral with two neighbouring corners in one becomes a triangle.
void reduce_element(Mesh& mesh, ElementNumber element);

}  // namespace brelan
