// Lines to draw a mesh with: outlines of regions, and the sides of elements strung together.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/geometry.h"

namespace brelan::tool {

// Several lines in one list of points.
struct Polylines {
    std::vector<Position> points;
    std::vector<std::size_t> ends;  // behind the last point of each line

    bool empty() const { return ends.empty(); }
    void end_line() { ends.push_back(points.size()); }
};

// Adds a closed line round a point.
void add_ring(Polylines& lines, const Position& p, double radius, int corners);

// The outline of the elements at the given places as closed loops that fill, by the non-zero rule, what the
// elements cover. Elements without all their corners are passed over.
Polylines region_outline(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                         const std::vector<std::int32_t>& elements);

// Every side of the elements once, in long lines that go straight on where they can. Points that lie on a
// straight line between their neighbours, within `slack`, are left out.
Polylines element_sides(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                        const std::vector<std::int32_t>& elements, double slack);

}  // namespace brelan::tool
