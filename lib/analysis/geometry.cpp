#include "analysis/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace brelan {

bool CornerPlaces::complete() const {
    for (int k = 0; k < count; ++k)
        if ((*this)[k] == MeshLists::NONE)
            return false;
    return true;
}

std::vector<CornerPlaces> corners_of(const MeshLists& mesh) {
    std::vector<CornerPlaces> all(mesh.elements.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Element& e = mesh.elements[i];
        all[i].count = e.corner_count();
        for (int k = 0; k < all[i].count; ++k)
            all[i].place[static_cast<std::size_t>(k)] = mesh.node_place(e.corner(k));
    }
    return all;
}

double cross(const Position& a, const Position& b, const Position& c) {
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

double distance(const Position& a, const Position& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

double signed_area(const MeshLists& mesh, const CornerPlaces& corners) {
    if (corners.count < 3)
        return 0.0;
    const Position a = mesh.point(corners[0]);
    double twice = 0.0;
    for (int k = 1; k + 1 < corners.count; ++k)
        twice += cross(a, mesh.point(corners[k]), mesh.point(corners[k + 1]));
    return twice / 2.0;
}

Bounds box_of(const MeshLists& mesh, const CornerPlaces& corners) {
    Bounds box{mesh.point(corners[0]), mesh.point(corners[0])};
    for (int k = 1; k < corners.count; ++k) {
        const Position p = mesh.point(corners[k]);
        box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y)};
        box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y)};
    }
    return box;
}

bool shows_in(const MeshLists& mesh, const CornerPlaces& corners, const Bounds& window) {
    const double slack = 1e-9 * window.extent();  // a window's edges are rounded
    // Apart across some direction: that of a side of the window or of the element.
    const auto apart = [&](double across_x, double across_y) {
        const auto range = [&](int count, auto&& point) {
            double low = std::numeric_limits<double>::infinity(), high = -low;
            for (int k = 0; k < count; ++k) {
                const Position p = point(k);
                low = std::min(low, p.x * across_x + p.y * across_y);
                high = std::max(high, p.x * across_x + p.y * across_y);
            }
            return std::pair{low, high};
        };
        const auto [low, high] = range(corners.count, [&](int k) { return mesh.point(corners[k]); });
        const auto [first, last] = range(4, [&](int k) {
            return Position{k % 2 == 0 ? window.low.x : window.high.x, k < 2 ? window.low.y : window.high.y};
        });
        const double room = (high > low ? slack : -slack) * std::hypot(across_x, across_y);
        return high < first + room || low > last - room;
    };
    bool outside = apart(1.0, 0.0) || apart(0.0, 1.0);
    for (int k = 0; k < corners.count && !outside; ++k) {
        const Position a = mesh.point(corners[k]), b = mesh.point(corners[(k + 1) % corners.count]);
        outside = apart(a.y - b.y, b.x - a.x);
    }
    return !outside;
}

Position middle(const MeshLists& mesh, const CornerPlaces& corners) {
    Position m;
    for (int k = 0; k < corners.count; ++k) {
        const Position p = mesh.point(corners[k]);
        m.x += p.x / corners.count;
        m.y += p.y / corners.count;
    }
    return m;
}

double resolution(const Bounds& bounds) {
    const double largest = std::max(
        {std::abs(bounds.low.x), std::abs(bounds.low.y), std::abs(bounds.high.x), std::abs(bounds.high.y)});
    if (largest == 0.0)
        return 0.0;
    constexpr double DIGITS = 6.0;
    return std::pow(10.0, std::floor(std::log10(largest)) + 1.0 - DIGITS);
}

double usual_tolerance(const Bounds& bounds) {
    constexpr double ROUNDED_POINTS = 1.5;
    return ROUNDED_POINTS * resolution(bounds);
}

}  // namespace brelan
