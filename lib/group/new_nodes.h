// Nodes that a cut adds, with the codes and values of those around them.
#pragma once

#include <cstdint>
#include <span>

#include "group/engine.h"
#include "mesh/tables.h"
#include "plane/point.h"

namespace brelan {

// A node on the side between two nodes.
std::int32_t add_side_node(Mesh& mesh, Engine& engine, const Point& point, std::int32_t a, std::int32_t b);

// A node inside an element; a corner of 0 or below is none.
std::int32_t add_inner_node(Mesh& mesh, Engine& engine, const Point& point,
                            std::span<const std::int32_t, 4> corners);

}  // namespace brelan
