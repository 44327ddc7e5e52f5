// The mesh of a run in memory, by the cut that is asked for.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "analysis/mesh_lists.h"
#include "commands/commands.h"
#include "mesh/cut_method.h"
#include "model/deck.h"
#include "run/run_deck.h"

namespace brelan::tool {

struct MemoryRun {
    RunResult result;
    double seconds = 0.0;
    CutMethod cut = CutMethod::by_rules;
    std::string cut_reason;         // why, where a choice was made; else empty
    std::optional<MeshLists> mesh;  // with the names that the deck gives
};

// Left to choose, the deck runs by the rules, and where the mesh is unsound once more by the sound cut; the
// better mesh stands. Throws Failure and RunEnd where the mesh that came out cannot be read.
MemoryRun run_in_memory(const NotedDeck& deck, LayoutKind kind, RunInput input, Cut cut);

}  // namespace brelan::tool
