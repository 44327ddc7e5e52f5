// Whether a deck and a mesh belong together.
#pragma once

#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

// What tells that the shapes of a deck are not those of the mesh: names of other meshes on its cards, a mesh
// that reaches beyond the blocks or the dam of the deck, or shapes that all lie outside the mesh. Empty where
// nothing does. A copy of a mesh under another name still goes by the name in its first line.
std::string told_of_other_mesh(const NotedDeck& deck, const std::vector<DeckShape>& shapes,
                               const MeshLists& mesh);

// "from (0, 0) to (70, 30)".
std::string extent_text(const Bounds& bounds);

}  // namespace brelan::tool
