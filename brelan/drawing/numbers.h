// Where the numbers of nodes and elements are written. A line of joints has two nodes at one place, and often
// a beam over the joint: their numbers stand apart.
#pragma once

#include <vector>

#include "analysis/geometry.h"

namespace brelan::tool {

// For each node the corner that its number stands in:
//
//     2 | 0      A node by itself has its number in corner 0. Of nodes at one place, and of those that joints
//     --+--      connect, each has the free corner nearest to its own solids: at an upright joint 0 for the
//     1 | 3      node on the right and 1 for the one on the left. From 4 on further lines under corner 1.
std::vector<std::int32_t> node_number_places(const MeshLists& mesh, const std::vector<CornerPlaces>& corners);

// For each element the line that its number stands in: 0 at its middle, 1 a line below and so on for those
// whose middle lies there as well.
std::vector<std::int32_t> element_number_lines(const MeshLists& mesh,
                                               const std::vector<CornerPlaces>& corners);

// The beginning of a text of the given width beside a point of the page.
Position beside(const Position& p, std::int32_t place, double width, double size);

}  // namespace brelan::tool
