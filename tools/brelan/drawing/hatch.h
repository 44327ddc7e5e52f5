// Slanted lines over a region.
#pragma once

#include "drawing/mesh_lines.h"

namespace brelan::tool {

// Lines under 45 degrees that cover what the closed loops fill by the non-zero rule. Regions side by side get
// lines that run through.
Polylines hatch(const Polylines& loops, double spacing);

}  // namespace brelan::tool
