// The GRAF-2D deck of the post file: one section for each kind of picture, with the elements of the groups
// that want it.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "mesh/mesh_records.h"
#include "output/group_members.h"
#include "output/unit_table.h"
#include "text/channels.h"

namespace brelan {

// Writes the sections in their order and the end of the deck. Temperature decks have the sections of the mesh
// and of results only.
void write_graf_2d(Channels& channels, LayoutKind kind, const GroupCards& group_cards,
                   const GroupListing& listing, UnitLabels& units, Channel& post,
                   const std::vector<GroupMembers>& members, const MeshCounts& counts);

// True when a section of the deck lists a group's elements of a class that a row of the given kind claims.
bool plots_list(LayoutKind kind, const GroupCards& group_cards, std::int32_t g, std::int8_t type,
                std::int32_t sub_kind);

}  // namespace brelan
