// The stages of a mesh, from the deck that made it.
#pragma once

#include <string>

#include "analysis/stages.h"
#include "cli/context.h"

namespace brelan::tool {

// Runs a deck in memory, as `check --dry-run` does, in the kind of the mesh, and takes from its groups when
// the elements of the mesh come and go. The meshes that the deck reads lie in its directory. The mesh may
// have been cut by the rules or by the sound cut. A material that a group made has the name of the one that
// it was. Throws Failure where the deck does not run, or where another mesh comes out of it: other numbers,
// places of nodes, or nodes of elements.
struct DeckStages {
    Stages stages;
    MaterialNames names;  // of the mesh, and of the deck for what has none there
};
DeckStages stages_of_deck(const std::string& deck, const MeshLists& mesh, const Context& context);

}  // namespace brelan::tool
