// A run that leaves no file: the batch program's own passes, in memory.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "commands/checking/deck_check.h"
#include "mesh/cut_method.h"
#include "mesh/element_activity.h"

namespace brelan::tool {

struct DryRun {
    int status = 0;       // the exit status that the batch program would have
    std::string message;  // when it is not 0: in one line
    double seconds = 0.0;
    std::string result;  // name of the mesh; empty where none came out
    std::optional<MeshLists> mesh;
    std::vector<ElementActivity> activity;  // of its elements
    std::vector<std::string> remarks;       // on the mesh as the deck draws it

    // A run that finished, and a mesh that is sound, or no mesh.
    bool sound() const;
};

// Runs a checked deck by a cut, with the meshes of its place and the package's data, which lie near the
// program.
DryRun dry_run(const DeckCheck& check, const DeckPlace& place, CutMethod cut,
               const std::filesystem::path& program);

}  // namespace brelan::tool
