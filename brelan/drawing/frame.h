// Title, frame and numbers along it.
#pragma once

#include "drawing/page.h"
#include "drawing/scene.h"

namespace brelan::tool {

// The title always; frame and numbers with `axes`.
void add_frame(Scene& scene, const Page& page, bool axes);

}  // namespace brelan::tool
