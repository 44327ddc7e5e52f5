#include "drawing/tangle.h"

#include <algorithm>

namespace brelan::tool {

namespace {

struct Box {
    double area = 0.0;
    std::int32_t element = 0;
};

}  // namespace

std::vector<bool> tangled_elements(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    constexpr double MOST_LAYERS = 300.0;
    std::vector<Box> boxes;
    double sum = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (corners[i].count < 3 || !corners[i].complete())
            continue;
        const Bounds box = box_of(mesh, corners[i]);
        boxes.push_back({box.width() * box.height(), static_cast<std::int32_t>(i)});
        sum += boxes.back().area;
    }
    std::vector<bool> tangled(corners.size(), false);
    const Bounds bounds = mesh.bounds();
    const double room = MOST_LAYERS * bounds.width() * bounds.height();
    if (sum <= room)
        return tangled;
    std::sort(boxes.begin(), boxes.end(), [](const Box& a, const Box& b) {
        return a.area != b.area ? a.area < b.area : a.element < b.element;
    });
    double covered = 0.0;
    for (const Box& box : boxes) {
        covered += box.area;
        tangled[static_cast<std::size_t>(box.element)] = covered > room;
    }
    return tangled;
}

}  // namespace brelan::tool
