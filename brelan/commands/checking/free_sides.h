// Sides of a base mesh whose nodes miss the bound that would fix them.
#pragma once

#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

// One remark for each side that Card 4.1 fixes and that has free nodes, with their count.
std::vector<std::string> free_sides(const DeckCard& blocks, const MeshLists& base_mesh);

}  // namespace brelan::tool
