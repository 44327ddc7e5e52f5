// Nodes that a cut adds, with the codes and values of those around them.
#pragma once

#include <span>

#include "group/engine.h"
#include "mesh/tables.h"
#include "plane/point.h"

namespace brelan {

// A node on the side between two nodes.
NodeNumber add_side_node(Mesh& mesh, Engine& engine, const Point& point, NodeNumber a, NodeNumber b);

// A node inside an element; a corner may be none.
NodeNumber add_inner_node(Mesh& mesh, Engine& engine, const Point& point,
                          std::span<const NodeNumber, 4> corners);

}  // namespace brelan
