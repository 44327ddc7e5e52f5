// Titles of materials beside the drawing.
#pragma once

#include <string>

#include "analysis/mesh_lists.h"

namespace brelan::tool {

// A title as the legend has room for it: a long one is cut.
std::string legend_text(const std::string& title);

// Page units that the titles need beyond those of materials without names.
double room_for_titles(const MeshLists& mesh);

}  // namespace brelan::tool
