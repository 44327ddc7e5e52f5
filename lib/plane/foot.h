// Where a point lies beside a segment, and where two segments meet, in 64 bits.
#pragma once

#include <algorithm>
#include <cmath>

#include "plane/point.h"

namespace brelan {

// The distance of a point from a segment, and the share of its foot along it, from 0 to 1.
struct Foot {
    double distance = 0.0, share = 0.0;
};
inline Foot foot_on(const Point& from, const Point& to, const Point& p) {
    const double sx = static_cast<double>(to.x) - static_cast<double>(from.x);
    const double sy = static_cast<double>(to.y) - static_cast<double>(from.y);
    const double vx = static_cast<double>(p.x) - static_cast<double>(from.x);
    const double vy = static_cast<double>(p.y) - static_cast<double>(from.y);
    const double square = sx * sx + sy * sy;
    const double share = square > 0.0 ? std::clamp((sx * vx + sy * vy) / square, 0.0, 1.0) : 0.0;
    const double dx = vx - share * sx, dy = vy - share * sy;
    return {std::sqrt(dx * dx + dy * dy), share};
}

// The distance of two points.
inline double distance_64(const Point& a, const Point& b) {
    const double dx = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double dy = static_cast<double>(b.y) - static_cast<double>(a.y);
    return std::sqrt(dx * dx + dy * dy);
}

// The point at a share of the way, rounded to 32 bits.
Point point_between(const Point& from, const Point& to, double share);

// Where the lines through two segments meet, rounded to 32 bits.
Point meeting_of(const Point& a, const Point& b, const Point& c, const Point& d);

}  // namespace brelan
