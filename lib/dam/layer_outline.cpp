#include "dam/dam_outlines.h"

#include <algorithm>

namespace brelan {

namespace {

double twice_area(const DamOutline& p) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const Point& a = p[i];
        const Point& b = p[(i + 1) % p.size()];
        sum += static_cast<double>(a.x) * static_cast<double>(b.y) -
               static_cast<double>(b.x) * static_cast<double>(a.y);
    }
    return sum;
}

enum class Kept { below, above };

// The part of an outline on one side of a level. A point made there lies on the level exactly.
DamOutline clipped(const DamOutline& outline, float level, Kept side) {
    const auto kept = [&](const Point& p) { return side == Kept::below ? p.y <= level : p.y >= level; };
    DamOutline result;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point& a = outline[i];
        const Point& b = outline[(i + 1) % outline.size()];
        if (kept(a))
            result.push_back(a);
        if (kept(a) != kept(b) && a.y != level && b.y != level)
            result.push_back({a.x + (b.x - a.x) * ((level - a.y) / (b.y - a.y)), level});
    }
    return result;
}

// The outline from a point round to it, clockwise, the point not repeated.
DamOutline clockwise_from(const DamOutline& outline, std::size_t start) {
    const bool turned = twice_area(outline) > 0.0;
    const std::size_t count = outline.size();
    DamOutline result;
    for (std::size_t i = 0; i < count; ++i)
        result.push_back(outline[turned ? (start + count - i) % count : (start + i) % count]);
    return result;
}

}  // namespace

DamOutline layer_outline(float left, float right, float bottom, float top, const DamOutline& wall) {
    const Point bottom_left{left, bottom}, bottom_right{right, bottom};
    const Point top_right{right, top}, top_left{left, top};
    DamOutline hole = clipped(clipped(wall, top, Kept::below), bottom, Kept::above);
    if (hole.size() < 3 || twice_area(hole) == 0.0)
        return {bottom_left, bottom_right, top_right, top_left};

    // The wall's corner at which the outline leaves the layer's top, or its bottom, to go round the wall.
    const auto before = [](const Point& a, const Point& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); };
    const auto highest =
        static_cast<std::size_t>(std::max_element(hole.begin(), hole.end(), before) - hole.begin());
    const auto lowest =
        static_cast<std::size_t>(std::min_element(hole.begin(), hole.end(), before) - hole.begin());
    const bool from_top = hole[highest].y == top;
    DamOutline round = clockwise_from(hole, from_top ? highest : lowest);
    const float level = from_top ? top : bottom;
    const Point start{round.front().x, level};
    if (round.back().y != level) {
        round.push_back(round.front());
        if (round.front().y != level) {
            // A wall inside the layer hangs on a line to the bottom.
            round.insert(round.begin(), start);
            round.push_back(start);
        }
    }
    DamOutline outline{bottom_left};
    if (!from_top)
        outline.insert(outline.end(), round.begin(), round.end());
    outline.push_back(bottom_right);
    outline.push_back(top_right);
    if (from_top)
        outline.insert(outline.end(), round.begin(), round.end());
    outline.push_back(top_left);
    return outline;
}

}  // namespace brelan
