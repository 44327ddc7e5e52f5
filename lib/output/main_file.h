// Fragments of the solver's main deck: the materials that the groups got, and element activity.
#pragma once

#include <vector>

#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "output/activity.h"
#include "output/group_members.h"
#include "text/channels.h"

namespace brelan {

// Writes "..\MatAD.Man": the new materials and their activity.
void write_materials(Channels& channels, const Settings& settings, const Activity& activity);

// Writes "..\Group.Man": the activity of the groups' elements.
void write_group_activity(Channels& channels, LayoutKind kind, const GroupCards& group_cards,
                          const Activity& activity, const std::vector<GroupMembers>& members);

}  // namespace brelan
