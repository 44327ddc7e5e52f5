// The GRAF-2D deck of the post file: one section for each kind of picture, with the elements of the groups
// that want it.
#pragma once

#include <vector>

#include "channel/channels.h"
#include "mesh/mesh_records.h"
#include "output/group_members.h"

namespace brelan {

// Writes the sections in their order and the end of the deck. Temperature decks have the sections of the mesh
// and of results only.
void WRITEGRAF2D(Channel& post, const std::vector<GroupMembers>& members, const MeshCounts& counts);

}  // namespace brelan
