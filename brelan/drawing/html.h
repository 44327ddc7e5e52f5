// The mesh as one page for a browser, without use of a network: pan, zoom, pick, layers, search.
#pragma once

#include <filesystem>

#include "drawing/mesh_picture.h"

namespace brelan::tool {

void write_html(const MeshLists& mesh, const PictureOptions& options, const std::filesystem::path& path);

}  // namespace brelan::tool
