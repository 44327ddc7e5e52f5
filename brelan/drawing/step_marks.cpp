#include "drawing/step_marks.h"

#include <fmt/core.h>

#include <utility>

#include "drawing/colors.h"
#include "drawing/hatch.h"
#include "drawing/mesh_lines.h"

namespace brelan::tool {

namespace {

constexpr double RIM = 2.4;

Stroke comes_stroke() {
    return {COMES_COLOR, RIM};
}

Stroke goes_stroke() {
    return {GOES_COLOR, RIM, {7.0, 4.0}};
}

void add_change(Scene& scene, const std::string& id, const MeshLists& whole,
                const std::vector<std::int32_t>& places, const Stroke& stroke, const Page& page) {
    constexpr double SPACING = 12.0, THIN = 1.0, BAND = 9.0, FAINT = 0.45;
    const std::vector<CornerPlaces> corners = corners_of(whole);
    std::vector<std::int32_t> solids;
    Polylines lines;
    for (const std::int32_t place : places) {
        const CornerPlaces& c = corners[static_cast<std::size_t>(place)];
        if (!c.complete())
            continue;
        if (whole.elements[static_cast<std::size_t>(place)].of == ElementClass::solid) {
            solids.push_back(place);
            continue;
        }
        // Of a joint both sides, which lie close together.
        for (int k = 0; k < c.count; ++k)
            lines.points.push_back(page.on_page(whole.point(c[k])));
        lines.end_line();
    }
    Polylines rim = page.on_page(region_outline(whole, corners, solids));
    Polylines hatching = hatch(rim, SPACING, page.area());
    const auto add = [&](const std::string& name, Polylines drawn, bool closed, Stroke with) {
        if (!drawn.empty())
            scene.items.emplace_back(Path{name, std::move(drawn), closed, std::nullopt, std::move(with)});
    };
    add(id + "-hatch", std::move(hatching), false, Stroke{stroke.color, THIN});
    add(id, std::move(rim), true, stroke);
    add(id + "-lines", std::move(lines), false, Stroke{stroke.color, BAND, {}, FAINT});
}

}  // namespace

void add_step(Scene& scene, const StepMarks& step, const Page& page) {
    add_change(scene, "comes", *step.whole, step.comes, comes_stroke(), page);
    add_change(scene, "goes", *step.whole, step.goes, goes_stroke(), page);
}

std::vector<StepSample> step_samples(const StepMarks& step) {
    std::vector<StepSample> samples;
    if (!step.comes.empty())
        samples.push_back(
            {comes_stroke(), fmt::format("comes at step {} ({})", step.step, step.comes.size())});
    if (!step.goes.empty())
        samples.push_back({goes_stroke(), fmt::format("goes at step {} ({})", step.step, step.goes.size())});
    if (samples.empty())
        samples.push_back({std::nullopt, fmt::format("step {}: nothing comes or goes", step.step)});
    return samples;
}

}  // namespace brelan::tool
