// The nodes of the groups' lines, as the plot decks list them.
#pragma once

#include <string_view>

#include "mesh/group_tables.h"
#include "text/channels.h"

namespace brelan {

// Writes the count of groups whose nodes are wanted under a card of its own, then for each of them its nodes
// under another.
void write_node_lists(const GroupCards& group_cards, const GroupListing& listing, Channel& post,
                      std::string_view count_card, std::string_view nodes_card);

}  // namespace brelan
