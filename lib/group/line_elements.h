// Beams and trusses along a node list.
#pragma once

#include <cstdint>
#include <span>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"

namespace brelan {

// Strings line elements of |LTP| along the nodes (2 beams; 3, 4, 5 trusses; others none) with material LMAT,
// and writes the node words of the kind. With MOVE 1 the nodes are frozen. A negative LTP marks the elements
// for side_sign.
void add_line_elements(Mesh& mesh, Engine& engine, GroupListing& listing, std::int32_t freezes_nodes,
                       bool closed, std::int32_t line_type, MaterialNumber line_material,
                       std::span<const NodeNumber> nodes);

}  // namespace brelan
