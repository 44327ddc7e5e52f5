// The output decks of a deck with groups.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "mesh/edition.h"
#include "mesh/element_activity.h"
#include "mesh/group_tables.h"
#include "mesh/mesh_records.h"
#include "output/group_members.h"
#include "output/unit_table.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

// True when an element that belongs to a row of the listing comes into a file of the outputs.
bool outputs_list(LayoutKind kind, const GroupCards& group_cards, const MemberRecord& member);

// From the members of the groups: element activity and materials of their own for the groups, with
// "..\MatAD.Man",
// "..\Group.Man" and the mesh file written anew where a group has activity; the post file "..\Group.Pos" in
// every case. The counts are those of the records in the mesh file. "GROUP.TMP" is deleted. Returns the
// elements that have activity, in ascending number.
std::vector<ElementActivity> write_group_outputs(Channels& channels, Trace& trace, const Settings& settings,
                                                 const GroupCards& group_cards, const GroupListing& listing,
                                                 const FinishedMembers& members, UnitLabels& units,
                                                 std::string_view result_name, const MeshCounts& counts);

}  // namespace brelan
