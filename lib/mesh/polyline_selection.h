// Selection of the nodes on a polyline (IEDIT 1 with ILOC 2).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/tables.h"

namespace brelan {

// Where the nodes of a mesh lie, by number. A number that no node has lies at (0, 0).
struct NodePlaces {
    Table<float, HIGHEST_NODE_NUMBER, "XC1"> x;
    Table<float, HIGHEST_NODE_NUMBER, "YC1"> y;
    Table<std::int8_t, HIGHEST_NODE_NUMBER, "NACT1"> given;
};

// The nodes that lie on the polyline through the listed nodes, in its order: segment by segment, along each.
// A node belongs to the first segment that it lies on.
std::vector<std::int32_t> select_polyline(const NodePlaces& places, std::span<const std::int32_t> points);

}  // namespace brelan
