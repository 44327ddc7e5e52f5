// On which side of a line a point lies: exact for every three points.
#pragma once

#include <cmath>
#include <limits>
#include <span>

#include "plane/point.h"

namespace brelan {

// 1 when A, B, C turn counter-clockwise, -1 when they turn clockwise, 0 when they lie on one line. Exact:
// where 64 bits do not tell the sign of the area, the six products of coordinates are added without rounding
// (Shewchuk, Adaptive precision floating-point arithmetic and fast robust geometric predicates, 1997).
int orientation(const Point& a, const Point& b, const Point& c);

// By the sum of the products alone, which is what takes time.
int orientation_by_products(const Point& a, const Point& b, const Point& c);

// Whether a polygon holds a point that is not on its border, by the parity of the sides that the way to the
// right crosses. Exact.
bool holds(std::span<const Point> ring, const Point& p);

// Nearly all are told here, without a call.
inline int orientation(const Point& a, const Point& b, const Point& c) {
    const double cx = static_cast<double>(c.x), cy = static_cast<double>(c.y);
    const double left = (static_cast<double>(a.x) - cx) * (static_cast<double>(b.y) - cy);
    const double right = (static_cast<double>(a.y) - cy) * (static_cast<double>(b.x) - cx);
    const double area = left - right;
    constexpr double BOUND = 4.0 * std::numeric_limits<double>::epsilon();  // of 3 + 16 epsilon half units
    if (std::abs(area) > BOUND * (std::abs(left) + std::abs(right)))
        return area > 0.0 ? 1 : -1;
    if (left == 0.0 && right == 0.0)
        return 0;  // a difference of 32-bit numbers is 0 for equal ones alone
    return orientation_by_products(a, b, c);
}

}  // namespace brelan
