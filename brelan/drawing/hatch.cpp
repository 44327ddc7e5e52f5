#include "drawing/hatch.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace brelan::tool {

Polylines hatch(const Polylines& loops, double spacing, const Bounds& area) {
    // u across the hatching lines, v along them.
    const auto u = [](const Position& p) { return (p.x + p.y) / std::numbers::sqrt2; };
    const auto v = [](const Position& p) { return (p.x - p.y) / std::numbers::sqrt2; };
    std::map<std::int64_t, std::vector<std::pair<double, int>>> crossings;  // by line: v and direction
    std::size_t begin = 0;
    for (const std::size_t end : loops.ends) {
        for (std::size_t k = begin; k < end; ++k) {
            const Position& a = loops.points[k];
            const Position& b = loops.points[k + 1 == end ? begin : k + 1];
            const double low = std::max(std::min(u(a), u(b)), u(area.low));
            const double high = std::min(std::max(u(a), u(b)), u(area.high));
            for (auto line = static_cast<std::int64_t>(std::ceil(low / spacing));
                 static_cast<double>(line) * spacing < high; ++line) {
                const double share = (static_cast<double>(line) * spacing - u(a)) / (u(b) - u(a));
                crossings[line].emplace_back(v(a) + share * (v(b) - v(a)), u(b) > u(a) ? 1 : -1);
            }
        }
        begin = end;
    }
    Polylines lines;
    for (auto& [line, list] : crossings) {
        std::sort(list.begin(), list.end());
        const double at = static_cast<double>(line) * spacing;
        const auto point = [at](double along) {
            return Position{(at + along) / std::numbers::sqrt2, (at - along) / std::numbers::sqrt2};
        };
        int winding = 0;
        for (const auto& [along, direction] : list) {
            const int before = winding;
            winding += direction;
            if (before == 0)
                lines.points.push_back(point(along));
            if (winding == 0) {
                lines.points.push_back(point(along));
                lines.end_line();
            }
        }
    }
    return lines;
}

}  // namespace brelan::tool
