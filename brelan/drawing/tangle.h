// Broken meshes, whose elements reach across all of the picture.
#pragma once

#include <vector>

#include "analysis/geometry.h"

namespace brelan::tool {

// The solids and joints that a picture has no time for: true by place. In a mesh that can be used there are
// none. Where connectivities are wrong throughout, each element lies across most others, and painters take
// hours over so many crossings; the widest elements go first, until the rest covers the mesh a few hundred
// times at most.
std::vector<bool> tangled_elements(const MeshLists& mesh, const std::vector<CornerPlaces>& corners);

}  // namespace brelan::tool
