// Angles of small polygons without an angle: numbers that grow with it and have the same digits everywhere.
#pragma once

#include <span>

#include "plane/point.h"

namespace brelan {

// Smallest and largest angle of a polygon of three or four corners, counter-clockwise, as openings: 1 -
// cosine up to 180 degrees, where it is 2, and 3 + cosine for a corner that is pushed in. An opening grows
// with its angle, and unlike the angle it has the same digits on every machine.
struct Openings {
    double smallest = 0.0, largest = 0.0;
    double shortest_square = 0.0;  // of the length of a side
};
Openings openings_of(std::span<const Point> corners);

// True for a polygon with a corner so near to closed or to 180 degrees that its opening, or what that lacks
// of 2, is at most `limit`, from 0 on. A few that are hardly less are not told. It takes no root and no
// quotient.
bool opens_at_most(std::span<const Point> corners, double limit);

inline constexpr double OPENING_10 = 0.01519224698779198;  // of 10 degrees, and so on
inline constexpr double OPENING_15 = 0.03407417371093169;
inline constexpr double OPENING_20 = 0.06030737921409162;
inline constexpr double OPENING_25 = 0.09369221296335006;
inline constexpr double OPENING_30 = 0.1339745962155614;
inline constexpr double OPENING_45 = 0.2928932188134524;
inline constexpr double OPENING_150 = 1.8660254037844386;
inline constexpr double OPENING_165 = 1.9659258262890682;
inline constexpr double OPENING_180 = 2.0;

}  // namespace brelan
