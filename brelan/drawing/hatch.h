// Slanted lines over a region.
#pragma once

#include "drawing/mesh_lines.h"

namespace brelan::tool {

// Lines under 45 degrees that cover what the closed loops fill by the non-zero rule. Regions side by side get
// lines that run through. Lines that pass by the area are left out.
Polylines hatch(const Polylines& loops, double spacing, const Bounds& area);

}  // namespace brelan::tool
