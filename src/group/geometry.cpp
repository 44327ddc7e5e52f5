#include "group/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "channel/number_text.h"
#include "channel/run_end.h"

namespace brelan {

namespace {

constexpr float NO_WIDTH =
    1.0E-15F;  // |DX| below which a line is vertical, and |det| below which two are parallel
constexpr float SAME_COORDINATE = 1.0E-10F;  // difference below which a segment runs along an axis
constexpr double AREA_TOLERANCE = 0.50005;   // of INTRI, against 0.5
constexpr float MITRE_GAP = 0.001F;    // ends of chained segments that are one point, in the unit of length
constexpr float MITRE_LINE = 1.0E-5F;  // slope and offset within which two lines are one
constexpr float SLOPE_LOW = 0.9999F,
                SLOPE_HIGH = 1.0001F;  // share of a slope within which another is parallel
constexpr float BEYOND_THE_ENDS = 1.0E30F;

// a x + b y + c = 0
struct Line {
    float a, b, c;
};

Line LINEABC(const Point& p1, const Point& p2) {
    const float DX = p2.x - p1.x;
    const float DY = p2.y - p1.y;
    if (std::abs(DX) >= NO_WIDTH)
        return {-DY / DX, 1.0F, DY * p1.x / DX - p1.y};
    return {1.0F, 0.0F, -p1.x};
}

float determinant(const Line& one, const Line& two) {
    return two.a * one.b - one.a * two.b;
}

Point crossing(const Line& one, const Line& two) {
    const float det = determinant(one, two);
    return {(two.b * one.c - one.b * two.c) / det, (one.a * two.c - two.a * one.c) / det};
}

bool between(float v, float a, float b) {
    return v >= std::min(a, b) && v <= std::max(a, b);
}

double twice_area(const Point& p1, const Point& p2, const Point& p3) {
    return std::abs(2.0 * ARSUM(p1, p2, p3));
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
    const float S1 = slope(one);
    const float S2 = slope(two);
    return S1 * SLOPE_LOW <= S2 && S2 <= S1 * SLOPE_HIGH;
}

Meeting meeting_at(bool meets, float x, float y) {
    Meeting meeting;
    if (meets)
        meeting = {true, true, {x, y}};
    return meeting;
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
    return LINEMEET(one.low, one.high, two.low, two.high);
}

}  // namespace

double ARSUM(const Point& p1, const Point& p2, const Point& p3) {
    const double X1 = static_cast<double>(p1.x), Y1 = static_cast<double>(p1.y);
    const double X2 = static_cast<double>(p2.x), Y2 = static_cast<double>(p2.y);
    const double X3 = static_cast<double>(p3.x), Y3 = static_cast<double>(p3.y);
    return 0.5 * ((Y3 - Y1) * X2 + (Y2 - Y3) * X1 + (Y1 - Y2) * X3);
}

float area_32(const Point& p1, const Point& p2, const Point& p3) {
    return 0.5F * ((p3.y - p1.y) * p2.x + (p2.y - p3.y) * p1.x + (p1.y - p2.y) * p3.x);
}

bool INTRI(const Point& P, const Point& A, const Point& B, const Point& C) {
    return twice_area(A, B, C) * AREA_TOLERANCE >=
           0.5 * (twice_area(P, A, B) + twice_area(P, B, C) + twice_area(P, A, C));
}

Meeting LINEMEET(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    const Line one = LINEABC(p1, p2);
    const Line two = LINEABC(p3, p4);
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

Point LINECROSS(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    return crossing(LINEABC(p1, p2), LINEABC(p3, p4));
}

Point MITRE(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    if (std::abs(p2.x - p3.x) <= MITRE_GAP && std::abs(p2.y - p3.y) <= MITRE_GAP)
        return p2;
    const Line one = LINEABC(p1, p2);
    const Line two = LINEABC(p3, p4);
    if (std::abs(one.a - two.a) <= MITRE_LINE && std::abs(one.c - two.c) <= MITRE_LINE)
        return p2;
    return crossing(one, two);
}

Segment OFFSEG(float T, const Point& from, const Point& to) {
    const float DX = to.x - from.x;
    const float DY = to.y - from.y;
    const float L = DIST2D(from.x, from.y, to.x, to.y);
    const auto shifted = [&](const Point& p) { return Point{p.x - (DY / L) * T, p.y + (DX / L) * T}; };
    return {shifted(from), shifted(to)};
}

ClassedSegment SEGCLASS(const Point& p1, const Point& p2) {
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

Meeting SEGCROSS(const Point& p1, const Point& p2, const Point& p3, const Point& p4) {
    const ClassedSegment one = SEGCLASS(p1, p2);
    const ClassedSegment two = SEGCLASS(p3, p4);
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

bool line_crossing(const Point& Q0, const Point& P, const Point& A, const Point& B, Point& Q) {
    const ClassedSegment one = SEGCLASS(Q0, P);
    const ClassedSegment two = SEGCLASS(A, B);
    if (slants(one) && slants(two)) {
        if (one.kind == two.kind && alike(one, two))
            return false;
        const Meeting meeting = LINEMEET(one.low, one.high, two.low, two.high);
        Q = meeting.point;
        return meeting.computed;
    }
    if (one.kind == two.kind)
        return false;
    if (slants(one) || slants(two)) {
        const ClassedSegment& slanting = slants(one) ? one : two;
        const ClassedSegment& axis = slants(one) ? two : one;
        if (axis.kind == SegmentClass::horizontal)
            Q = {x_at(slanting, axis.low.y), axis.low.y};
        else
            Q = {axis.low.x, y_at(slanting, axis.low.x)};
        return true;
    }
    const ClassedSegment& horizontal = one.kind == SegmentClass::horizontal ? one : two;
    const ClassedSegment& vertical = one.kind == SegmentClass::horizontal ? two : one;
    Q = {vertical.low.x, horizontal.low.y};
    return true;
}

Snap NEARLINE(const Point& p1, const Point& p2, const Point& node, float limit) {
    const float D1 = DIST2D(p1.x, p1.y, node.x, node.y);
    if (limit >= D1)
        return {true, D1, p1};
    const float D2 = DIST2D(p2.x, p2.y, node.x, node.y);
    if (limit >= D2)
        return {true, D2, p2};
    if (std::abs(p2.y - p1.y) < SAME_COORDINATE) {
        if (!between(node.x, p1.x, p2.x))
            return {false, BEYOND_THE_ENDS, node};
        const float D = std::abs(p1.y - node.y);
        return limit >= D ? Snap{true, D, {node.x, p1.y}} : Snap{false, D, node};
    }
    if (std::abs(p2.x - p1.x) < SAME_COORDINATE) {
        if (!between(node.y, p1.y, p2.y))
            return {false, BEYOND_THE_ENDS, node};
        const float D = std::abs(p1.x - node.x);
        return limit >= D ? Snap{true, D, {p1.x, node.y}} : Snap{false, D, node};
    }
    const bool sorted = p1.x <= p2.x;
    const Point& left = sorted ? p1 : p2;
    const Point& right = sorted ? p2 : p1;
    const float M = (right.y - left.y) / (right.x - left.x);
    const float XF = (node.y - left.y + left.x * M + node.x / M) / (1.0F / M + M);
    const float YF = (XF - left.x) * M + left.y;
    const float D = DIST2D(node.x, node.y, XF, YF);
    const bool within = between(XF, p1.x, p2.x) && between(YF, p1.y, p2.y);
    return limit >= D && within ? Snap{true, D, {XF, YF}} : Snap{false, D, node};
}

std::int32_t SCANPOLY(const Point& point, std::span<const Point> polygon, std::int32_t in) {
    const std::size_t NB = polygon.size();
    if (NB < 1)
        return 1;
    if (in != SCAN_ALWAYS && point.y == 0.0F)
        return 0;
    if (NB > static_cast<std::size_t>(MAXPOLYGON)) {
        std::array<char, 11> number{};
        put_integer(number.data(), static_cast<int>(number.size()), static_cast<std::int32_t>(NB));
        STOPRUN(" NB =  " + std::string(number.data(), number.size()) + "\n222");
    }
    int left_of_point = 0;
    for (std::size_t K = 0; K < NB; ++K) {
        const Point& from = polygon[K];
        const Point& to = polygon[K + 1 == NB ? 0 : K + 1];
        left_of_point += crosses_left_of(point, from, to) ? 1 : 0;
    }
    return left_of_point % 2;
}

Point ELLIPT(float Q, const Point& centre, float RX, float RY) {
    const float S = static_cast<float>(std::sin(static_cast<double>(Q)));
    const float C = static_cast<float>(std::cos(static_cast<double>(Q)));
    const float D = RX * RX * (S * S) + RY * RY * (C * C);
    const float DX = std::sqrt(C * C * (RX * RX) * (RY * RY) / D);
    const float DY = std::sqrt(S * S * (RX * RX) * (RY * RY) / D);
    return {C < 0.0F ? centre.x - DX : centre.x + DX, S < 0.0F ? centre.y - DY : centre.y + DY};
}

ArcTable::ArcTable(float QB, float QE, float RX, float RY, std::int32_t NDIV)
    : divisions_(std::abs(NDIV)), QE_(QE), RX_(RX), RY_(RY) {
    const float step = (QE - QB) / static_cast<float>(STEPS);
    angle_[0] = QB;
    Point last = ELLIPT(QB, {}, RX, RY);
    for (std::size_t i = 1; i <= STEPS; ++i) {
        angle_[i] = angle_[i - 1] + step;
        const Point next = ELLIPT(angle_[i], {}, RX, RY);
        length_[i] = length_[i - 1] + DIST2D(last.x, last.y, next.x, next.y);
        last = next;
    }
    step_ = divisions_ > 0 ? length_[STEPS] / static_cast<float>(divisions_) : length_[STEPS];
}

Point ArcTable::point(std::int32_t K, const Point& centre) const {
    if (K == divisions_)
        return ELLIPT(QE_, centre, RX_, RY_);
    const float S = static_cast<float>(K) * step_;
    float angle = 0.0F;
    for (std::size_t i = 1; i <= STEPS; ++i) {
        if (length_[i - 1] <= S && S <= length_[i]) {
            angle = angle_[i - 1] +
                    (S - length_[i - 1]) * (angle_[i] - angle_[i - 1]) / (length_[i] - length_[i - 1]);
            break;
        }
    }
    return ELLIPT(angle, centre, RX_, RY_);
}

}  // namespace brelan
