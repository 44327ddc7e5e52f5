// Lines of a mesh against the lines that its deck draws.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

// One remark for each material of beams, trusses or joints whose elements are together longer or shorter than
// the lines that the deck draws for it, as far as these lie in the ground. Groups that do not cut all along,
// lines before groups that delete ground, and materials that the mesh before the run has are left out.
std::vector<std::string> changed_lines(const NotedDeck& deck, const std::optional<MeshLists>& before,
                                       const MeshLists& made);

}  // namespace brelan::tool
