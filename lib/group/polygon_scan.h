// A polygon that is asked for many points.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/geometry.h"

namespace brelan {

// Gives what scan_polygon (SCAN_ALWAYS) gives. Edges are sorted into bands by height, so that a look at a
// point costs the edges at its height and not all. The points of the polygon must live as long as the scan.
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
