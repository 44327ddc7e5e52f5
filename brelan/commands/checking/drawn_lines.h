// Lines of a mesh against the lines that its deck draws.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

// One remark for each material of beams, trusses or joints whose elements are together longer or shorter than
// the lines that the deck draws for it, as far as these lie in the ground, and what the mesh before the run
// has of it. Left out are groups that take only the nodes that happen to lie on their path, lines before
// groups that delete ground, and what else than groups may have changed.
std::vector<std::string> changed_lines(const NotedDeck& deck, const std::optional<MeshLists>& before,
                                       const MeshLists& made);

}  // namespace brelan::tool
