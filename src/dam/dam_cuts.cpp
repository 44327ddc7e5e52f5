#include "dam/dam_cuts.h"

#include <algorithm>
#include <cmath>

namespace brelan {

namespace {

// Coordinates this near, as a share of the dam's height, are those of one line.
constexpr float SAME_LINE = 1.0E-4F;

bool horizontal_line(float y) {
    if (same_line(y, DAM.HDAM) || same_line(y, 0.0F))
        return true;
    float level = 0.0F;
    for (const float thickness : DAM.layers)
        if (level = level - thickness; same_line(y, level))
            return true;
    return false;
}

// An edge of a block column beside an end of the crest is bent by what is drawn there.
bool vertical_line(float x) {
    const DamSizes& s = DAMSIZES;
    if (same_line(x, s.left) || same_line(x, s.right))
        return true;
    const float edge_left = DAM.WLEFT, edge_right = DAM.WLEFT + DAM.WMID;
    return (same_line(x, edge_left) && same_line(s.crest_left, edge_left)) ||
           (same_line(x, edge_right) && same_line(s.crest_right, edge_right));
}

}  // namespace

bool same_line(float a, float b) {
    return std::abs(a - b) <= SAME_LINE * DAM.HDAM;
}

bool on_mesh_line(const DamPoint& a, const DamPoint& b) {
    return (same_line(a.y, b.y) && horizontal_line(a.y)) || (same_line(a.x, b.x) && vertical_line(a.x));
}

bool clear_of_shells(const DamOutline& points) {
    const float left = DAMSIZES.crest_left + DAMSIZES.DM, right = DAMSIZES.crest_right - DAMSIZES.DM;
    return std::all_of(points.begin(), points.end(),
                       [=](const DamPoint& p) { return p.x >= left && p.x <= right; });
}

bool below_base(const DamOutline& points) {
    return std::all_of(points.begin(), points.end(), [](const DamPoint& p) { return p.y <= -DAMSIZES.DV; });
}

}  // namespace brelan
