// What a group draws, for the sound cut: straight segments, and the points that become nodes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "plane/box.h"
#include "plane/foot.h"
#include "plane/path.h"
#include "plane/point.h"

namespace brelan {

struct DrawnSegment {
    Point from, to;
    bool only_moves = false;  // adds no node
    std::size_t segment = 0;  // of the group, from 0
    Box reach{};              // beyond it no point lies within the tolerance
};

struct Drawing {
    std::vector<DrawnSegment> segments;  // that cut sides
    std::vector<Point> pins;             // no two are nearer than the tolerance
    double tolerance = 0.0;              // things nearer than this are one
};

// True for a point that lies on a segment.
inline bool is_on(const Drawing& drawing, const DrawnSegment& segment, const Point& point) {
    return segment.reach.holds(point) &&
           foot_on(segment.from, segment.to, point).distance < drawing.tolerance;
}

// The inner points of a straight piece are no corners of the drawing, those of an arc are.
Drawing drawing_of(const Path& path, std::span<const SegmentRow> segments, double tolerance);

// "group 1, segment 2: ", for messages: the segment that runs nearest to a point.
std::string place_in_drawing(std::int32_t group, const Drawing& drawing, const Point& point);

// True where a point of the drawing becomes a node.
bool is_pinned(const Drawing& drawing, const Point& point);

}  // namespace brelan
