// Areas, crossings and offsets of segments, with their tolerances. Coordinates are 32-bit and every routine
// computes in the order in which its formula is written; areas are 64-bit.
#pragma once

#include "plane/point.h"

namespace brelan {

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

}  // namespace brelan
