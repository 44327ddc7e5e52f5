// Mesh files (.Mes, .Meg) of any kind, from and to lists.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/mesh_lists.h"
#include "text/channels.h"
#include "text/file_names.h"

namespace brelan {

// Reads a mesh file through the batch program's own records: comments and deleted elements are left out,
// fields may stand in any columns; comments that name materials are taken as `names`. The kind is found from
// the headings and the values on the records; `kind` overrules. None where no kind is given and neither
// headings nor records tell one. Trusses that a file of the head kind hides from its head (flow lines) are
// read as well. The name is one of the package, as a deck has it.
//
// Ends as a failure with file, line and what was expected.
std::optional<MeshLists> mesh_of_file(const std::filesystem::path& path, const Directories& directories,
                                      std::optional<LayoutKind> kind = std::nullopt);

// The same for the text of a mesh file; `name` stands for it in messages.
std::optional<MeshLists> mesh_of_text(std::string_view text, const std::string& name,
                                      std::optional<LayoutKind> kind = std::nullopt);

// The kind that the file, or its text, tells; none where neither headings nor records do. Ends as above.
std::optional<LayoutKind> kind_of_mesh_file(const std::filesystem::path& path,
                                            const Directories& directories);
std::optional<LayoutKind> kind_of_mesh_text(std::string_view text, const std::string& name);

// Writes the mesh in the layouts of its kind, with a name for its first line, and the names of materials as
// comment lines at its end. Ends as a failure, with nothing written, where a field cannot hold a value.
void write_mesh(Channel& file, const MeshLists& mesh, std::string_view name);

}  // namespace brelan
