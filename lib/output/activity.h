// Element activity: at which step the elements of a group come and go, and the materials of their own that
// the groups' continuum elements get for it.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/edition.h"
#include "mesh/element_activity.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "output/group_members.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

// The pair of a group's elements of a class and material, by the group's MTYPE and material line; two zeros
// where its cards give them none.
ActivityPair activity_of(const GroupCards& group_cards, std::int32_t g, std::int8_t type,
                         MaterialNumber material);

// A continuum material made for a group.
struct NewMaterial {
    MaterialNumber old;
    ActivityPair activity;
};

struct Activity {
    std::int32_t line_count = 0;               // lines of all blocks
    std::vector<NewMaterial> materials;        // their numbers follow the highest of the mesh
    std::vector<MaterialNumber> new_material;  // by element number, the element's new material; 0 for none
    MaterialNumber first_new;                  // number of the first of them
    std::vector<ElementActivity> elements;     // those that have activity, in ascending number
};

// Makes the new materials and counts the lines of the blocks. Every group gets a material for each of its
// own, also where another group holds the same. An element of several groups takes material and pair of the
// last of them that gives it any.
Activity make_activity(Trace& trace, const GroupCards& group_cards, const FinishedMembers& members);

// Writes the block of each group that has activity.
void write_activity(Channels& channels, LayoutKind kind, const GroupCards& group_cards, Channel& main_file,
                    const std::vector<GroupMembers>& members);

}  // namespace brelan
