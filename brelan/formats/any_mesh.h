// A mesh from and to any file that brelan knows.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "formats/wanted_codes.h"

namespace brelan::tool {

enum class Format { mesh, vtu, gmsh };

// A mesh that is to be read.
struct MeshSource {
    std::string name;                 // of its file, for messages
    Format format = Format::mesh;     // by its first characters; a mesh file when they are no mark of another
    std::optional<std::string> text;  // of standard input, which cannot be read again
};

// The source for a name on the command line. Throws Failure.
MeshSource mesh_source(const std::string& file);

// Reads a mesh file, a VTU or a Gmsh file, whose physical groups give their nodes `codes`. The kind is found
// from the file when it is not given. `remark` is told what was left out or changed, and that the file tells
// another kind than the one given. Throws Failure or RunEnd with the file and what was expected.
using Remark = std::function<void(const std::string&)>;
MeshLists read_any_mesh(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark,
                        const std::vector<GroupCodes>& codes = {});

// Reads as above, but a mesh file goes over to the layout of the kind where it tells another: codes and
// attributes of the same name or meaning stay, others are those of a base mesh.
MeshLists read_any_mesh_as(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark,
                           const std::vector<GroupCodes>& codes = {});

}  // namespace brelan::tool
