// Values that a study gathers from the mesh of a case.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/mesh_lists.h"
#include "study/study_file.h"
#include "study/value.h"

namespace brelan::tool {

// A path into the object that `brelan info --json` shows: "quality.smallest_angle.smallest",
// "materials[0].area", or as a pointer, "/materials/0/area"; of what has a count the count. Besides
// "smallest_angle", and "areas": of each material, by its class and number or name.
NamedValues gathered_values(const MeshLists& mesh, const std::vector<Wanted>& wanted);

// Throws Failure with the study's line for a path that no mesh has.
void require_known_paths(const StudyFile& study);

}  // namespace brelan::tool
