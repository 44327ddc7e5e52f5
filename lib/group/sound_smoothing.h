// What the sound cut leaves behind is made better: nodes that are free go where the elements round them are
// well shaped.
#pragma once

#include <set>
#include <vector>

#include "group/engine.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// Moves free nodes of the given ones and of their neighbours, and slides those that lie within a straight
// border or line along it.
void smooth(Mesh& mesh, Engine& engine, const Drawn& drawn, const std::set<NodeNumber>& nodes);

// The smallest opening of solids (plane/openings.h), with a node at a place, and how far their corners
// are from flat; below 0 where one is inverted or flat.
double shape_with(const Mesh& mesh, std::span<const Solid> solids, NodeNumber node, const Point& place);

// True for a solid that the digits of a mesh file make flat or inverted.
bool is_flat_as_written(const Mesh& mesh, const Solid& solid);

}  // namespace brelan
