// Selection of the nodes on a polyline (IEDIT 1 with ILOC 2).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/tables.h"

namespace brelan {

// Sets NLIST for each active node (NACT1) that lies on the polyline through the listed nodes. Coordinates are
// taken from XC1 and YC1. Returns the selected nodes in the order of the polyline: segment by segment, along
// each. A node belongs to the first segment that it lies on.
std::vector<std::int32_t> SELECTPOLYLINE(Mesh& mesh, SideTables& side, Selection& selection, std::span<const std::int32_t> points);

}  // namespace brelan
