// Joints of the sound cut: the ground is parted along a line, there and only there. A node of the line gets a
// twin where the elements round it fall into two parts; the toe of an open joint, where they hang together
// behind the line, stays one node and closes the last joint element.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/engine.h"
#include "group/joints.h"
#include "group/listing.h"
#include "group/sound_lines.h"
#include "mesh/tables.h"

namespace brelan {

// What the joint elements of a line are made of, and what else stands along it.
struct JointMaterial {
    MaterialNumber material;
    std::int32_t attribute = 0;
    bool parts_ground = true;  // else the joint is a strip over ground that stays
    bool inner_line = false, outer_line = false;
};

// The twin of each node of a line, or the node itself, and the elements that were moved to twins.
struct OpenedLine {
    std::vector<NodeNumber> twins;
    std::vector<MovedElement> moved;
};

// A mesh file of the temperature and head kinds shows the negative IDH of its joints as its absolute value
// less 100, which is 100 or more: gives them back the value that tells them from solids.
void hold_joints_of_file(Mesh& mesh, const Engine& engine);

// Parts the ground along a line and fills the gap with joint elements, also at the border where a line of
// elements stands along the other side. Ends the run where the line does not run along sides of elements,
// where it has a joint already (named by its record), and where nothing can open.
OpenedLine open_along(Mesh& mesh, Engine& engine, const SoundLine& line, float joint_thickness,
                      const JointMaterial& material, std::span<const JointRecord> records, double tolerance);

// Puts the twins of a record beside the line as it lies now; those at the border stay on it.
void place_twins(Mesh& mesh, Engine& engine, const JointRecord& record, double tolerance);

// Ends the run where a solid that has a twin is inverted or flat: the joint is too wide for it.
void require_sound_twins(const Mesh& mesh, const Engine& engine, const JointRecord& record);

}  // namespace brelan
