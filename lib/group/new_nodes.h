// Nodes that a cut adds, with the codes and values of those around them.
#pragma once

#include <span>

#include "group/engine.h"
#include "mesh/tables.h"
#include "plane/point.h"

namespace brelan {

// Which code words of the nodes around it a new node of the temperature and head kinds takes: by the rules
// those that any of them has, in the head kind 1 inside of an element at all events, which fixes nodes within
// the ground; in the sound cut those that all of them have, as in the other kinds.
enum class Codes { of_any, of_all };

// A node on the side between two nodes.
NodeNumber add_side_node(Mesh& mesh, Engine& engine, const Point& point, NodeNumber a, NodeNumber b,
                         Codes codes);

// A node inside an element; a corner may be none.
NodeNumber add_inner_node(Mesh& mesh, Engine& engine, const Point& point,
                          std::span<const NodeNumber, 4> corners, Codes codes);

}  // namespace brelan
