// A mesh to any file that brelan writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/mesh_lists.h"
#include "analysis/stages.h"
#include "formats/inp.h"

namespace brelan::tool {

enum class Target { mesh, vtu, gmsh_2, gmsh_4, mdpa, inp, materials };

// By its word, "mes", "vtu", "msh2", "msh4" ("msh"), "mdpa", "inp", "csv"; by the ending of a name; none for
// what is neither.
std::optional<Target> target_named(std::string_view word);
std::optional<Target> target_of_name(const std::filesystem::path& path);

// What a target may carry besides the mesh.
struct Carried {
    bool arrays = true;                // codes and attributes: VTU and Gmsh
    Stages stages;                     // .inp, .mdpa and .vtu
    bool stage_files = false;          // a project file for each stage: .mdpa; a mesh for each step: .vtu
    std::vector<std::int32_t> cables;  // materials of trusses that only pull: .mdpa
    InpOptions inp;
};

// Writes the mesh whole or not at all; `remark` is told what the file cannot hold. Throws Failure and RunEnd.
void write_any_mesh(const MeshLists& mesh, Target target, const std::filesystem::path& path,
                    const Carried& carried, const std::function<void(const std::string&)>& remark);

}  // namespace brelan::tool
