// A deck run in memory, and the mesh that comes out.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/geometry.h"
#include "analysis/mesh_lists.h"
#include "analysis/soundness.h"
#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "commands/commands.h"
#include "commands/placed_remark.h"
#include "run/run_deck.h"

namespace brelan::tool {

// A deck, the edition that it is meant for, and where it runs.
struct PlacedDeck {
    const NotedDeck& deck;
    const Edition& edition;
    const DeckPlace& place;
};

struct MeshRun {
    RunResult result;
    double seconds = 0.0;
    CutMethod cut = CutMethod::by_rules;
    std::string cut_reason;  // why the mesh is of this cut, where it was for the run to choose
    std::string
        message;  // of a run that has not finished, in one line, its files named as the person knows them
    PlacedRemark end;                    // the same taken apart
    std::optional<MeshLists> mesh;       // with the names of its materials that the deck gives
    std::vector<CornerPlaces> corners;   // of the mesh
    std::optional<Soundness> soundness;  // where it was asked for to choose
};

// `input` is that of the deck (commands/memory_run.h), with the cut that is asked for.
MeshRun run_once(const PlacedDeck& placed, const RunInput& input);

// For `automatic` by the rules, and where the mesh is unsound by the sound cut: the better mesh stands. The
// cut of the input is set.
MeshRun run_with(Cut cut, const PlacedDeck& placed, RunInput& input);

}  // namespace brelan::tool
