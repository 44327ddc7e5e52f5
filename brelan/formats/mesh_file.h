// Mesh files as a person names them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/mesh_file.h"

namespace brelan::tool {

// Reads a mesh file; the name starts in the directory, empty for the current one. Throws Failure where
// nothing tells the kind, and RunEnd, both with file, line and what was expected.
MeshLists read_mesh_file(const std::filesystem::path& path, std::optional<LayoutKind> kind = std::nullopt,
                         const std::filesystem::path& directory = {});

// The same for the text of a mesh file; `name` stands for it in messages.
MeshLists read_mesh_text(std::string_view text, const std::string& name, std::optional<LayoutKind> kind);

// The kind that the file tells; none where neither headings nor records do.
std::optional<LayoutKind> kind_of_mesh_file(const std::filesystem::path& path);

// Writes the mesh whole or not at all. The first line takes the file's name; on standard output it stays
// that of the mesh. Throws Failure, and RunEnd for a value that its field cannot hold.
void write_mesh_file(const MeshLists& mesh, const std::filesystem::path& path);

}  // namespace brelan::tool
