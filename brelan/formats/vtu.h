// VTU, the XML file of unstructured grids that ParaView reads.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "formats/cell_mesh.h"

namespace brelan::tool {

// Writes points, cells and arrays as blocks of compressed binary data. Whole or not at all.
void write_vtu(const CellMesh& cells, const std::filesystem::path& path);

// A text as it stands in a value of XML.
std::string for_xml(std::string_view text);

// Reads one piece of plane cells, its arrays as text, as base64 or raw, compressed by zlib or not. Throws
// Failure with the file and what was expected.
CellMesh read_vtu(std::string_view content, const std::string& file);

}  // namespace brelan::tool
