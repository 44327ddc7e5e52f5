// Selection of the nodes on a polyline (IEDIT 1 with ILOC 2).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/tables.h"

namespace brelan {

// Where the nodes of a mesh lie, by number. A number that no node has lies at (0, 0).
struct NodePlaces {
    Table<float, LAST_NODE, "XC1"> x;
    Table<float, LAST_NODE, "YC1"> y;
    Table<std::int8_t, LAST_NODE, "NACT1"> given;
};

// The nodes that lie on the polyline through the listed nodes, in its order: segment by segment, along each.
// A node belongs to the first segment that it lies on.
std::vector<NodeNumber> select_polyline(const NodePlaces& places, std::span<const NodeNumber> points);

}  // namespace brelan
