// Mesh files (.Mes, .Meg) of any kind.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "model/mesh.h"

namespace brelan::tool {

// Reads a mesh file through the batch program's own records: comments and deleted elements are left out,
// fields may stand in any columns. The kind is found from the headings and the values on the records; `kind`
// overrules. Trusses that a file of the head kind hides from its head (flow lines) are read as well. The name
// is one of the package, as a deck has it; it starts in the directory, empty for the current one.
//
// Throws Failure or RunEnd with file, line and what was expected.
Mesh read_mesh_file(const std::filesystem::path& path, std::optional<LayoutKind> kind = std::nullopt,
                    const std::filesystem::path& directory = {});

// The same for the text of a mesh file; `name` stands for it in messages.
Mesh read_mesh_text(std::string_view text, const std::string& name,
                    std::optional<LayoutKind> kind = std::nullopt);

// The kind that the file, or its text, tells; none where neither headings nor records do. Throws as above.
std::optional<LayoutKind> kind_of_mesh_file(const std::filesystem::path& path);
std::optional<LayoutKind> kind_of_mesh_text(std::string_view text, const std::string& name);

// Writes the mesh in the layouts of its kind, whole or not at all. The first line takes the file's name; on
// standard output it stays that of the mesh.
// Throws Failure for a value that its field cannot hold.
void write_mesh_file(const Mesh& mesh, const std::filesystem::path& path);

}  // namespace brelan::tool
