// A deck run in memory, and the mesh that comes out.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "commands/commands.h"
#include "run/run_deck.h"

namespace brelan::tool {

struct MeshRun {
    RunResult result;
    double seconds = 0.0;
    CutMethod cut = CutMethod::by_rules;
    std::string cut_reason;  // why it is not the one that comes first, where it was for the run to choose
    std::optional<MeshLists> mesh;      // with the names of its materials that the deck gives
    std::vector<CornerPlaces> corners;  // of the mesh
};

// `input` is that of the deck (commands/memory_run.h), with the cut that is asked for.
MeshRun run_once(const NotedDeck& deck, const Edition& edition, const RunInput& input);

// By the rules, and where the mesh is unsound by the sound cut; the better mesh stands.
MeshRun run_with(Cut cut, const NotedDeck& deck, const Edition& edition, RunInput& input);

}  // namespace brelan::tool
