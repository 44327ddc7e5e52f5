// Where nodes lie, for the search that free lines make: which node already stands at a point.
#pragma once

#include <cstdint>

#include "group/tables.h"

namespace brelan {

// The lowest node number from 1 to NUMNP whose distance from the point is strictly below the reach; 0 for
// none. Numbers that no node uses count where they lie, at (0, 0).
std::int32_t lowest_node_within(Mesh& mesh, Engine& engine, const Point& point, float reach);

// Notes that a node is new or lies elsewhere.
void note_node_place(Mesh& mesh, Engine& engine, std::int32_t n);

// Forgets all places: the nodes of another mesh are in the tables.
void forget_node_places(Engine& engine);

}  // namespace brelan
