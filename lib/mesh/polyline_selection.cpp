#include "mesh/polyline_selection.h"

#include <algorithm>
#include <cmath>

#include "mesh/tables.h"

namespace brelan {

namespace {

constexpr float SAME_POINT_SQUARED = 1.0E-6F;  // squared length below which two points are one
constexpr float ON_LINE = 0.001F;  // distance from the line, and beyond its ends, that is still on it

struct Stretch {
    float x = 0.0F, y = 0.0F;    // start
    float ux = 0.0F, uy = 0.0F;  // unit vector
    float length = 0.0F;
    bool skipped = false;  // too short
};

struct Claim {
    float position;
    NodeNumber node;
};

std::vector<Stretch> segments_through(const NodePlaces& places, std::span<const NodeNumber> points) {
    std::vector<Stretch> segments;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        Stretch s;
        s.x = places.x[points[i]];
        s.y = places.y[points[i]];
        const float dx = places.x[points[i + 1]] - s.x;
        const float dy = places.y[points[i + 1]] - s.y;
        const float squared = dx * dx + dy * dy;
        s.skipped = squared < SAME_POINT_SQUARED;
        s.length = std::sqrt(squared);
        if (!s.skipped) {
            s.ux = dx / s.length;
            s.uy = dy / s.length;
        }
        segments.push_back(s);
    }
    return segments;
}

// True when the point is on the segment; position is then its place along it.
bool on_segment(const Stretch& s, float x, float y, float& position) {
    const float vx = x - s.x;
    const float vy = y - s.y;
    const float squared = vx * vx + vy * vy;
    if (squared < SAME_POINT_SQUARED) {
        position = squared;
        return true;
    }
    const float cross = s.ux * vy - s.uy * vx;
    const float dot = s.ux * vx + s.uy * vy;
    position = dot;
    return std::abs(cross) <= ON_LINE && dot >= -ON_LINE && dot <= s.length + ON_LINE;
}

}  // namespace

std::vector<NodeNumber> select_polyline(const NodePlaces& places, std::span<const NodeNumber> points) {
    const std::vector<Stretch> segments = segments_through(places, points);
    std::vector<std::vector<Claim>> claims(segments.size());
    for (NodeNumber n{1}; n <= LAST_NODE; ++n) {
        if (places.given[n] == 0)
            continue;
        for (std::size_t k = 0; k < segments.size(); ++k) {
            float position = 0.0F;
            if (segments[k].skipped || !on_segment(segments[k], places.x[n], places.y[n], position))
                continue;
            claims[k].push_back({position, n});
            break;
        }
    }
    std::vector<NodeNumber> selected;
    for (std::vector<Claim>& on_one : claims) {
        std::stable_sort(on_one.begin(), on_one.end(),
                         [](const Claim& a, const Claim& b) { return a.position < b.position; });
        for (const Claim& claim : on_one)
            selected.push_back(claim.node);
    }
    return selected;
}

}  // namespace brelan
