// Where a point lies beside a segment, and where two segments meet, in 64 bits.
#pragma once

#include "plane/point.h"

namespace brelan {

// The distance of a point from a segment, and the share of its foot along it, from 0 to 1.
struct Foot {
    double distance = 0.0, share = 0.0;
};
Foot foot_on(const Point& from, const Point& to, const Point& p);

// The point at a share of the way, rounded to 32 bits.
Point point_between(const Point& from, const Point& to, double share);

// Where the lines through two segments meet, rounded to 32 bits.
Point meeting_of(const Point& a, const Point& b, const Point& c, const Point& d);

}  // namespace brelan
