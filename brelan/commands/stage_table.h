// Areas and lengths by step and material, as `brelan info --deck` shows them.
#pragma once

#include <string>

#include "analysis/stage_areas.h"
#include "cli/json.h"

namespace brelan::tool {

// A row for each class and material, a column for each step; what stands in none is left out.
std::string stage_table(const MeshLists& mesh, const StageAreas& areas);

// {"steps": [0, ...], "rows": [{"class", "material", "name", "measure": "area" or "length", "elements":
// [...], "stands": [...], "comes": [...], "goes": [...]}]}, the lists by step.
Json stage_json(const MeshLists& mesh, const StageAreas& areas);

}  // namespace brelan::tool
