// Joints of the sound cut: the ground is parted along a line, there and only there. A node of the line gets a
// twin where the elements round it fall into two parts, and one for each further part where the line crosses
// or meets itself; the toe of an open joint, where they hang together behind the line, stays one node and
// closes the last joint element, until another line comes there and parts the ground.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/engine.h"
#include "group/joints.h"
#include "group/listing.h"
#include "group/sound_lines.h"
#include "group/sound_parting.h"
#include "mesh/tables.h"

namespace brelan {

// What the joint elements of a line are made of, and what else stands along it.
struct JointMaterial {
    MaterialNumber material;
    std::int32_t attribute = 0;
    float thickness = 0.0F;
    bool parts_ground = true;  // else the joint is a strip over ground that stays
    bool inner_line = false, outer_line = false;
};

// The line along the ground to its right, where the ground was parted, and the node to its left of each of
// its nodes, the same one where the ground holds together; the elements that were moved to twins.
struct OpenedLine {
    SoundLine line;
    std::vector<NodeNumber> twins;
    std::vector<MovedElement> moved;
    PartedSides parted;
};

// The sides of a line that the ground would hold closed at both ends: a joint there needs a node between,
// where it can open. Ends the run as `open_along` where the line has a joint already.
std::vector<Side> held_sides(Mesh& mesh, Engine& engine, const SoundLine& line, const JointMaterial& material,
                             std::span<const JointRecord> records);

// Parts the ground along the sides of a line and fills the gaps with joint elements without width, also at
// the border where a line of elements stands along the other side. A way that the line goes again, or that
// lies in ground that is not cut, gets no further joint. Ends the run where the line has a joint already
// (named by its record), and where nothing can open.
OpenedLine open_along(Mesh& mesh, Engine& engine, const SoundLine& line, const JointMaterial& material,
                      std::span<const JointRecord> records);

}  // namespace brelan
