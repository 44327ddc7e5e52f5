// Where the twins of a joint lie: beside its line by the joint's width, in mitres at bends, on the border at
// the border.
#pragma once

#include <span>
#include <string>

#include "group/engine.h"
#include "group/listing.h"
#include "mesh/tables.h"

namespace brelan {

// True for a side that a joint fills.
bool is_long_side_of_joint(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b);

// "the joint of group 2", for messages: the one that has both nodes.
std::string name_of_joint(std::span<const JointRecord> records, NodeNumber a, NodeNumber b);

// Puts the twins of a record beside the line as it lies now; those at the border stay on it.
void place_twins(Mesh& mesh, Engine& engine, const JointRecord& record, double tolerance);

// Ends the run where a solid that has a twin is inverted or flat: the joint is too wide for it.
void require_sound_twins(const Mesh& mesh, const Engine& engine, const JointRecord& record);

}  // namespace brelan
