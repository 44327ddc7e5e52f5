// Gmsh's .msh files of version 2.2 and 4.1.
#pragma once

#include <filesystem>
#include <string_view>

#include "formats/cell_mesh.h"

namespace brelan::tool {

enum class GmshVersion { v2_2, v4_1 };

// Number of a shape in Gmsh, and back; 0 and none for what has no counterpart.
int gmsh_type(Shape2D shape);
std::optional<Shape2D> shape_of_gmsh_type(int type);

// Writes text: a physical group with a name for every cell, and an array as node or element data. Whole or
// not at all.
void write_gmsh(const CellMesh& cells, const std::filesystem::path& path, GmshVersion version);

// Reads plane cells of version 2.0 to 2.2 or 4.1, as text or binary. Throws Failure with the file and what
// was expected.
CellMesh read_gmsh(std::string_view content, const std::string& file);

}  // namespace brelan::tool
