// What comes and what goes at a step of an analysis, over the mesh as it stands there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "drawing/page.h"
#include "drawing/scene.h"

namespace brelan::tool {

struct StepMarks {
    std::int32_t step = 0;
    const MeshLists* whole = nullptr;       // with what does not stand in the step
    std::vector<std::int32_t> comes, goes;  // at the step: places of elements of the whole mesh
};

// Solids are hatched in a rim, which is dashed round what goes; lines lie in a band.
void add_step(Scene& scene, const StepMarks& step, const Page& page);

// Lines of the legend.
struct StepSample {
    std::optional<Stroke> stroke;
    std::string text;
};
std::vector<StepSample> step_samples(const StepMarks& step);

}  // namespace brelan::tool
