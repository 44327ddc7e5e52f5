// Plane geometry of the group engine, with its tolerances. Coordinates are 32-bit and every routine computes
// in the order in which its formula is written; areas are 64-bit. Points are in the mesh's unit of length.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "mesh/group_tables.h"

namespace brelan {

inline bool operator==(const Point& a, const Point& b) {
    return a.x == b.x && a.y == b.y;
}

// Signed area of a triangle in 64 bits, positive counter-clockwise (surveyor's formula).
double area_64(const Point& p1, const Point& p2, const Point& p3);

// The same expression in 32 bits.
float area_32(const Point& p1, const Point& p2, const Point& p3);

// True when P lies in the triangle: the areas that P makes with its sides may exceed the whole by one part in
// 10,000. A point on a side or corner is inside; the tolerance grows with the triangle.
bool in_triangle(const Point& p, const Point& a, const Point& b, const Point& c);

// Where two segments meet. `point` is set whenever the lines are not parallel (determinant below 1e-15);
// `meets` tells whether it lies in the closed boxes of both segments.
struct Meeting {
    bool meets = false;
    bool computed = false;
    Point point;
};
Meeting segment_meeting(const Point& p1, const Point& p2, const Point& p3, const Point& p4);

// Where two infinite lines meet. Parallel lines are not looked for: the division gives what it gives.
Point crossing_of_lines(const Point& p1, const Point& p2, const Point& p3, const Point& p4);

// Corner of two chained offset segments: the end of the first where the two run on in one line (0.001 between
// their ends, or 1e-5 in slope and offset), else the crossing of their lines.
Point mitre_corner(const Point& p1, const Point& p2, const Point& p3, const Point& p4);

// The segment shifted by T along its left normal. A segment of no length divides by zero.
struct Segment {
    Point from, to;
};
Segment offset_segment(float shift, const Point& from, const Point& to);

// Classes of a segment by its direction.
enum class SegmentClass { horizontal = 1, vertical = 2, rising = 3, falling = 4 };

// A segment with its ends in the order of its class: by x, a vertical one by y.
struct ClassedSegment {
    SegmentClass kind;
    Point low, high;
};
ClassedSegment classify_segment(const Point& p1, const Point& p2);

// Bounded crossing of two segments by their classes. Bounds are closed; parallel segments do not cross.
Meeting segment_crossing(const Point& p1, const Point& p2, const Point& p3, const Point& p4);

// Where the line through Q0 and P meets the line through A and B, by class and without bounds. False for
// parallel classes, and for slanting lines that segment_crossing would call parallel.
bool line_crossing(const Point& q0, const Point& p, const Point& a, const Point& b, Point& q);

// Snaps a node to a segment when it is at most a limit (TOLLINE) away: to an end first, else to the foot of
// its perpendicular within the segment.
struct Snap {
    bool near = false;
    float distance = 0.0F;  // D: to the end or the line; 1e30 beyond the ends of a segment along an axis
    Point point;            // where the node goes; the node itself when it is not near
};
Snap snap_to_segment(const Point& p1, const Point& p2, const Point& node, float limit);

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
// everything. Stops the run with "222" at more than 2,001 points. Callers whose `in` is not 999 get 0 at a
// height of exactly 0, without a look at the polygon: some rely on it.
std::int32_t scan_polygon(const Point& point, std::span<const Point> polygon, std::int32_t in);
inline constexpr std::int32_t SCAN_ALWAYS = 999;

// Point of the ellipse at the polar angle Q (radians, from the centre). The sine and cosine are the 64-bit
// ones of the 32-bit angle, rounded to 32 bits: no platform's library shows in a mesh.
Point ellipse_point(float angle, const Point& centre, float half_axis_x, float half_axis_y);

// An arc divided into parts of equal length.
class ArcTable {
public:
    // ARCTAB: tabulates angle and running length at 1,000 steps from QB to QE.
    ArcTable(float begin_angle, float end_angle, float half_axis_x, float half_axis_y,
             std::int32_t divisions);

    // ARCPT: point K, from 1 to |NDIV|; the last is the point at QE exactly.
    Point point(std::int32_t number, const Point& centre) const;

private:
    static constexpr std::size_t STEPS = 1000;
    std::array<float, STEPS + 1> angle_{}, length_{};
    std::int32_t divisions_;
    float step_, end_angle_, half_axis_x_, half_axis_y_;
};

}  // namespace brelan
