// The path that a group's outline draws, as points alone: no mesh is looked at or changed. What the engine
// cuts along, what a picture of the deck shows and what a check measures is this one path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "plane/geometry.h"
#include "plane/point.h"

namespace brelan {

inline constexpr std::int32_t MOST_SEGMENT_PARTS = 2001;

inline constexpr std::int32_t STRAIGHT_SEGMENT = 1, ARC_SEGMENT = 2;  // LTYPE; any other draws nothing

// A segment of an outline. Only an arc has centre, half axes and angles (radians).
struct SegmentRow {
    std::int32_t segment_type = 0, divisions = 0, end_rule = 0;  // LTYPE, NDIV, IEND
    float centre_x = 0.0F, centre_y = 0.0F;                      // Xo, Yo
    float half_axis_x = 0.0F, half_axis_y = 0.0F;                // Rx, Ry
    float begin_angle = 0.0F, end_angle = 0.0F;                  // Qb, Qe
};

// The points of an outline where an arc begins and ends, as the arc's card gives them. With both angles alike
// the end is taken as on a circle: so a deck asks for a straight segment.
Segment ends_of_arc(const SegmentRow& arc);

// What an outline is drawn for. A line is closed when its ends lie at one place; a free line does not touch
// the mesh.
enum class OutlineUse { region, line, free_line };

// What a segment adds to a path: `start`, points of the path and `end`. Another start than the end of the
// segment before it is not taken, and a full circle ends where it starts.
struct PathPiece {
    std::size_t segment = 0;  // from 0
    std::size_t first = 0;    // the place in the path behind the start
    std::size_t parts = 0;    // 1 or more
    Point start, end;
};

struct Path {
    std::vector<Point> points;        // the closing point of a straight outline is not repeated
    std::size_t edges = 0;            // the last of a closed path goes back to its first point
    bool closed = false;              // there are as many segments as points
    std::vector<PathPiece> pieces;    // of the segments that draw something
    std::vector<std::size_t> single;  // edges from 0 of undivided segments whose ends alone reach the mesh

    // A segment of more parts than there may be: the path ends before it.
    struct Overlong {
        std::size_t segment;  // from 0
        std::int32_t parts;
    };
    std::optional<Overlong> overlong;

    const Point& end_of(std::size_t edge) const { return points[edge + 1 == points.size() ? 0 : edge + 1]; }

    // Point 0 to `parts` of a piece.
    const Point& point_of(const PathPiece& piece, std::size_t i) const {
        return i == 0 ? piece.start : i == piece.parts ? piece.end : points[piece.first + i - 1];
    }
};

// The path along an outline. Segment k runs from point k to the next, and an arc overrules both; without
// segments the points are the path. Ends of a line that are nearer than `same` are one.
Path path_along(std::span<const Point> outline, std::span<const SegmentRow> segments, OutlineUse use,
                float same);

}  // namespace brelan
