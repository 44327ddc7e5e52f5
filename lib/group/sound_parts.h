// Last step of the sound cut: the elements that the plan touches are divided.
#pragma once

#include <cstdint>
#include <set>

#include "group/sound_plan.h"

namespace brelan {

// Divides solids along the drawing, joints and line elements at the new nodes of their sides. The first part
// keeps the element's number. What was drawn is added to `drawn`. Gives the
// nodes of the parts. Ends the run where an element cannot be
// divided soundly.
std::set<std::int32_t> divide_elements(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing,
                                       const CutPlan& plan, const std::set<std::int32_t>& on_drawing);

}  // namespace brelan
