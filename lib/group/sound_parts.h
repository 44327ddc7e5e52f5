// Last step of the sound cut: the elements that the plan touches are divided.
#pragma once

#include <set>

#include "group/sound_plan.h"

namespace brelan {

// A new element of the ground that another is of, still without corners.
ElementNumber add_element_like(Mesh& mesh, Engine& engine, ElementNumber first);

// Divides solids along the drawing, joints and line elements at the new nodes of their sides. The first part
// keeps the element's number. What was drawn is added to `drawn`. Gives the
// nodes of the parts. Ends the run where an element cannot be
// divided soundly.
std::set<NodeNumber> divide_elements(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing,
                                     const CutPlan& plan, const std::set<NodeNumber>& on_drawing);

}  // namespace brelan
