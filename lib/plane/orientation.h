// On which side of a line a point lies: exact for every three points.
#pragma once

#include <span>

#include "plane/point.h"

namespace brelan {

// 1 when A, B, C turn counter-clockwise, -1 when they turn clockwise, 0 when they lie on one line. Exact:
// where 64 bits do not tell the sign of the area, the six products of coordinates are added without rounding
// (Shewchuk, Adaptive precision floating-point arithmetic and fast robust geometric predicates, 1997).
int orientation(const Point& a, const Point& b, const Point& c);

// Whether a polygon holds a point that is not on its border, by the parity of the sides that the way to the
// right crosses. Exact.
bool holds(std::span<const Point> ring, const Point& p);

}  // namespace brelan
