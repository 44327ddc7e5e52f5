#include "plane/geometry.h"

#include <algorithm>
#include <cmath>

namespace brelan {

namespace {

constexpr float NO_WIDTH =
    1.0E-15F;  // |DX| below which a line is vertical, and |det| below which two are parallel
constexpr float SAME_COORDINATE = 1.0E-10F;  // difference below which a segment runs along an axis
constexpr double AREA_TOLERANCE = 0.50005;   // of in_triangle, against 0.5
constexpr float MITRE_GAP = 0.001F;    // ends of chained segments that are one point, in the unit of length
constexpr float MITRE_LINE = 1.0E-5F;  // slope and offset within which two lines are one
constexpr float SLOPE_LOW = 0.9999F,
                SLOPE_HIGH = 1.0001F;  // share of a slope within which another is parallel
constexpr float BEYOND_THE_ENDS = 1.0E30F;

// a x + b y + c = 0
struct Line {
    float a, b, c;
};

Line line_through(const Point& p1, const Point& p2) {
    const float dx = p2.x - p1.x;
    const float dy = p2.y - p1.y;
    if (std::abs(dx) >= NO_WIDTH)
        return {-dy / dx, 1.0F, dy * p1.x / dx - p1.y};
    return {1.0F, 0.0F, -p1.x};
}

float determinant(const Line& one, const Line& two) {
    return two.a * one.b - one.a * two.b;
}

Point crossing(const Line& one, const Line& two) {
    const float divisor = determinant(one, two);
    return {(two.b * one.c - one.b * two.c) / divisor, (one.a * two.c - two.a * one.c) / divisor};
}

bool between(float v, float a, float b) {
    return v >= std::min(a, b) && v <= std::max(a, b);
}

double twice_area(const Point& p1, const Point& p2, const Point& p3) {
    return std::abs(2.0 * area_64(p1, p2, p3));
}

bool slants(const ClassedSegment& s) {
    return s.kind == SegmentClass::rising || s.kind == SegmentClass::falling;
}

float slope(const ClassedSegment& s) {
    return (s.high.y - s.low.y) / (s.high.x - s.low.x);
}

// Interpolation on a slanting segment, from the end with the smaller x.
float y_at(const ClassedSegment& s, float x) {
    return s.low.y + (x - s.low.x) * ((s.high.y - s.low.y) / (s.high.x - s.low.x));
}
float x_at(const ClassedSegment& s, float y) {
    return s.low.x + (y - s.low.y) * ((s.high.x - s.low.x) / (s.high.y - s.low.y));
}

// Two slopes of one class within a share of each other. As written: no slope is within the share of a
// negative one.
bool alike(const ClassedSegment& one, const ClassedSegment& two) {
    const float first_slope = slope(one);
    const float second_slope = slope(two);
    return first_slope * SLOPE_LOW <= second_slope && second_slope <= first_slope * SLOPE_HIGH;
}

Meeting meeting_at(bool meets, float x, float y) {
    return {.meets = meets, .computed = meets, .point = meets ? Point{x, y} : Point{}};
}

// A segment along an axis against a slanting one.
Meeting axis_crossing(const ClassedSegment& axis, const ClassedSegment& slanting) {
    if (axis.kind == SegmentClass::horizontal) {
        const float y = axis.low.y;
        const float x = x_at(slanting, y);
        return meeting_at(between(x, axis.low.x, axis.high.x) && between(x, slanting.low.x, slanting.high.x),
                          x, y);
    }
    const float x = axis.low.x;
    const float y = y_at(slanting, x);
    return meeting_at(between(y, axis.low.y, axis.high.y) && between(y, slanting.low.y, slanting.high.y), x,
                      y);
}

Meeting slanting_crossing(const ClassedSegment& one, const ClassedSegment& two) {
    const auto apart = [](float a1, float a2, float b1, float b2) {
        return std::max(a1, a2) < std::min(b1, b2) || std::max(b1, b2) < std::min(a1, a2);
    };
    if (apart(one.low.x, one.high.x, two.low.x, two.high.x) ||
        apart(one.low.y, one.high.y, two.low.y, two.high.y))
        return {};
    if (one.kind == two.kind && alike(one, two))
        return {};
    return segment_meeting(one.low, one.high, two.low, two.high);
}

}  // namespace

double area_64(const Point& p1, const Point& p2, const Point& p3) {
    const double x1 = static_cast<double>(p1.x), y1 = static_cast<double>(p1.y);
    const double x2 = static_cast<double>(p2.x), y2 = static_cast<double>(p2.y);
    const double x3 = static_cast<double>(p3.x), y3 = static_cast<double>(p3.y);
    return 0.5 * ((y3 - y1) * x2 + (y2 - y3) * x1 + (y1 - y2) * x3);
}

float area_32(const Point& p1, const Point& p2, const Point& p3) {
    return 0.5F * ((p3.y - p1.y) * p2.x + (p2.y - p3.y) * p1.x + (p1.y - p2.y) * p3.x);
}

bool in_triangle(const Point& p, const Point& a, const Point& b, const Point& c) {
    return twice_area(a, b, c) * AREA_TOLERANCE >=
           0.5 * (twice_area(p, a, b) + twice_area(p, b, c) + twice_area(p, a, c));
}

Meeting segment_meeting(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    const Line one = line_through(p1, p2);
    const Line two = line_through(p3, p4);
    Meeting meeting;
    if (std::abs(determinant(one, two)) < NO_WIDTH)
        return meeting;
    const Point at = crossing(one, two);
    meeting.computed = true;
    meeting.point = at;
    meeting.meets = between(at.x, p1.x, p2.x) && between(at.x, p3.x, p4.x) && between(at.y, p1.y, p2.y) &&
                    between(at.y, p3.y, p4.y);
    return meeting;
}

Point crossing_of_lines(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    return crossing(line_through(p1, p2), line_through(p3, p4));
}

Point mitre_corner(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    if (std::abs(p2.x - p3.x) <= MITRE_GAP && std::abs(p2.y - p3.y) <= MITRE_GAP)
        return p2;
    const Line one = line_through(p1, p2);
    const Line two = line_through(p3, p4);
    if (std::abs(one.a - two.a) <= MITRE_LINE && std::abs(one.c - two.c) <= MITRE_LINE)
        return p2;
    return crossing(one, two);
}

Segment offset_segment(float shift, const Point& from, const Point& to) {
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    const float length = distance_between(from.x, from.y, to.x, to.y);
    const auto shifted = [&](const Point& p) {
        return Point{p.x - (dy / length) * shift, p.y + (dx / length) * shift};
    };
    return {shifted(from), shifted(to)};
}

ClassedSegment classify_segment(const Point& p1, const Point& p2) {
    if (std::abs(p2.y - p1.y) < SAME_COORDINATE) {
        const bool sorted = p1.x <= p2.x;
        return {SegmentClass::horizontal, {sorted ? p1.x : p2.x, p1.y}, {sorted ? p2.x : p1.x, p2.y}};
    }
    if (std::abs(p2.x - p1.x) < SAME_COORDINATE) {
        const bool sorted = p1.y <= p2.y;
        return {SegmentClass::vertical, {p1.x, sorted ? p1.y : p2.y}, {p2.x, sorted ? p2.y : p1.y}};
    }
    const bool sorted = p1.x <= p2.x;
    const Point& low = sorted ? p1 : p2;
    const Point& high = sorted ? p2 : p1;
    return {low.y < high.y ? SegmentClass::rising : SegmentClass::falling, low, high};
}

Meeting segment_crossing(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    const ClassedSegment one = classify_segment(p1, p2);
    const ClassedSegment two = classify_segment(p3, p4);
    if (slants(one) && slants(two))
        return slanting_crossing(one, two);
    if (slants(two))
        return axis_crossing(one, two);
    if (slants(one))
        return axis_crossing(two, one);
    if (one.kind == two.kind)
        return {};
    const ClassedSegment& horizontal = one.kind == SegmentClass::horizontal ? one : two;
    const ClassedSegment& vertical = one.kind == SegmentClass::horizontal ? two : one;
    const float x = vertical.low.x;
    const float y = horizontal.low.y;
    return meeting_at(
        between(x, horizontal.low.x, horizontal.high.x) && between(y, vertical.low.y, vertical.high.y), x, y);
}

bool line_crossing(const Point& q0, const Point& p, const Point& a, const Point& b, Point& q) {
    const ClassedSegment one = classify_segment(q0, p);
    const ClassedSegment two = classify_segment(a, b);
    if (slants(one) && slants(two)) {
        if (one.kind == two.kind && alike(one, two))
            return false;
        const Meeting meeting = segment_meeting(one.low, one.high, two.low, two.high);
        q = meeting.point;
        return meeting.computed;
    }
    if (one.kind == two.kind)
        return false;
    if (slants(one) || slants(two)) {
        const ClassedSegment& slanting = slants(one) ? one : two;
        const ClassedSegment& axis = slants(one) ? two : one;
        if (axis.kind == SegmentClass::horizontal)
            q = {x_at(slanting, axis.low.y), axis.low.y};
        else
            q = {axis.low.x, y_at(slanting, axis.low.x)};
        return true;
    }
    const ClassedSegment& horizontal = one.kind == SegmentClass::horizontal ? one : two;
    const ClassedSegment& vertical = one.kind == SegmentClass::horizontal ? two : one;
    q = {vertical.low.x, horizontal.low.y};
    return true;
}

Snap snap_to_segment(const Point& p1, const Point& p2, const Point& node, float limit) {
    const float first_distance = distance_between(p1.x, p1.y, node.x, node.y);
    if (limit >= first_distance)
        return {true, first_distance, p1};
    const float second_distance = distance_between(p2.x, p2.y, node.x, node.y);
    if (limit >= second_distance)
        return {true, second_distance, p2};
    if (std::abs(p2.y - p1.y) < SAME_COORDINATE) {
        if (!between(node.x, p1.x, p2.x))
            return {false, BEYOND_THE_ENDS, node};
        const float distance = std::abs(p1.y - node.y);
        return limit >= distance ? Snap{true, distance, {node.x, p1.y}} : Snap{false, distance, node};
    }
    if (std::abs(p2.x - p1.x) < SAME_COORDINATE) {
        if (!between(node.y, p1.y, p2.y))
            return {false, BEYOND_THE_ENDS, node};
        const float distance = std::abs(p1.x - node.x);
        return limit >= distance ? Snap{true, distance, {p1.x, node.y}} : Snap{false, distance, node};
    }
    const bool sorted = p1.x <= p2.x;
    const Point& left = sorted ? p1 : p2;
    const Point& right = sorted ? p2 : p1;
    const float gradient = (right.y - left.y) / (right.x - left.x);
    const float foot_x =
        (node.y - left.y + left.x * gradient + node.x / gradient) / (1.0F / gradient + gradient);
    const float foot_y = (foot_x - left.x) * gradient + left.y;
    const float distance = distance_between(node.x, node.y, foot_x, foot_y);
    const bool within = between(foot_x, p1.x, p2.x) && between(foot_y, p1.y, p2.y);
    return limit >= distance && within ? Snap{true, distance, {foot_x, foot_y}} : Snap{false, distance, node};
}

}  // namespace brelan
