// Points in polygons.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "plane/point.h"

namespace brelan {

inline constexpr std::int32_t MOST_POLYGON_POINTS = 2001;  // of a polygon to be scanned

// True when an edge of a polygon crosses the height of a point strictly to its left. Its upper end counts,
// its lower does not; an edge along the height does not cross it.
inline bool crosses_left_of(const Point& point, const Point& from, const Point& to) {
    if (from.y == to.y)
        return false;
    const Point& lower = from.y < to.y ? from : to;
    const Point& upper = from.y < to.y ? to : from;
    if (point.y > upper.y || point.y <= lower.y)
        return false;
    const float x = lower.x + (point.y - lower.y) * ((upper.x - lower.x) / (upper.y - lower.y));
    return x - point.x < 0.0F;
}

// Point in polygon by scan line: an edge's upper end counts, its lower does not, and only crossings strictly
// left of the point (even-odd rule). The polygon is closed by the routine. An empty polygon contains
// everything. Stops the run with "222" at more points than a polygon may have.
bool scan_polygon(const Point& point, std::span<const Point> polygon);

// A polygon that is asked for many points. Gives what scan_polygon gives. Edges are sorted into bands by
// height, so that a look at a point costs the edges at its height and not all. The points of the polygon must
// live as long as the scan.
class PolygonScan {
public:
    PolygonScan(bool uses_indexes, std::span<const Point> polygon);

    // True when no point outside a box can be inside. A polygon of no points holds everything, one of too
    // many stops the run at the first look.
    bool has_box() const { return has_box_; }
    Point low() const { return low_; }
    Point high() const { return high_; }

    bool inside(const Point& point) const;

private:
    void sort_edges();
    std::size_t band(float y) const;

    std::span<const Point> polygon_;
    bool has_box_ = false;
    Point low_, high_;
    std::vector<std::uint32_t> first_;  // by band: its first place in edges_; one more at the end
    std::vector<std::uint32_t> edges_;  // by the place of their first point
};

}  // namespace brelan
