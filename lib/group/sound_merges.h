// What the sound cut leaves behind is made better: a node that a line has added close beside another is taken
// into that one.
#pragma once

#include <set>

#include "group/engine.h"
#include "group/sound_drawing.h"
#include "group/sound_ground.h"
#include "group/sound_plan.h"
#include "mesh/tables.h"

namespace brelan {

// Takes nodes behind `last_before` into neighbours: those that are nearer than the tolerance, and those whose
// elements are slender and become less so. Nodes at points that are drawn stay, and so do crossings; a node
// along a line goes into the next one on it alone. Takes them out of the plan and out of the given nodes.
void merge_nodes(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing, CutPlan& plan,
                 std::set<NodeNumber>& nodes, NodeNumber last_before);

}  // namespace brelan
