// Joints: a second line of nodes beside a group's line, the elements between, and the mesh on one side moved
// over.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/engine.h"
#include "group/engine_mesh.h"
#include "mesh/tables.h"
#include "plane/geometry.h"

namespace brelan {

// An element that was moved to twin nodes, with its corners before.
struct MovedElement {
    ElementNumber element;
    Corners before;
};

// The twins' places for a line: each edge is shifted by |THICj| to its left, and the shifted edges meet in
// mitres.
std::vector<Point> offset_line(const Mesh& mesh, std::span<const NodeNumber> nodes, bool closed,
                               float joint_thickness);

// On which side of a line of two nodes or more an element lies, seen from its corner at the line's place k.
bool is_left(std::span<const Point> line, bool closed, std::size_t k, const Point& centre);

// Adds the twin of a line node at a place, with the codes of the node; both are frozen. Returns its number.
NodeNumber add_twin(Mesh& mesh, Engine& engine, NodeNumber node, const Point& place);

// Adds the twin nodes of a line, as add_twin does. Returns their numbers.
std::vector<NodeNumber> add_twin_line(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                                      bool closed, float joint_thickness);

// Adds one joint element.
void add_joint(Mesh& mesh, Engine& engine, const Corners& corners, MaterialNumber joint_material,
               std::int32_t joint_attribute);

// Fills the gap with joint elements of a material. KFj is the attribute of the kind as the driver holds it.
//
//      I4 = twin k   I3 = twin k + 1
//         +--------------+
//         |              |
//         +--------------+
//      I1 = line k   I2 = line k + 1
//
void add_joints(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                std::span<const NodeNumber> twins, bool closed, MaterialNumber joint_material,
                std::int32_t joint_attribute);

// Moves the elements to the left of the line to the twin nodes; those marked by a negative LTP stay, and move
// when they are to its right. A line of one node has no sides and no joint: nothing moves, else a beam or
// truss would be left hanging on the twin. Returns the elements that were moved.
std::vector<MovedElement> move_across(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                                      std::span<const NodeNumber> twins, bool closed);

// Computes the twins' places anew, as the line lies now, and keeps twins at the left, right and lower limits
// of the mesh on these limits. The top is the free surface and has no such rule.
void fix_twins(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
               std::span<const NodeNumber> twins, bool closed, float joint_thickness);

}  // namespace brelan
