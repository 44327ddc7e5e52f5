// A run that leaves no file: the batch program's own passes, in memory.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "analysis/mesh_lists.h"
#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "model/deck.h"

namespace brelan::tool {

struct DryRun {
    int status = 0;       // the exit status that the batch program would have
    std::string message;  // when it is not 0: in one line
    double seconds = 0.0;
    std::string result;  // name of the mesh; empty where none came out
    std::optional<MeshLists> mesh;

    // A run that finished, and a mesh that is sound, or no mesh.
    bool sound() const;
};

// Runs the deck with the meshes of its place and the package's data, which lie near the program.
DryRun dry_run(const NotedDeck& deck, const Edition& edition, const DeckPlace& place,
               const std::filesystem::path& program);

}  // namespace brelan::tool
