// Points of the plane, in the mesh's unit of length.
#pragma once

#include <cmath>

namespace brelan {

struct Point {
    float x = 0.0F, y = 0.0F;
};

inline bool operator==(const Point& a, const Point& b) {
    return a.x == b.x && a.y == b.y;
}

// Distance of two points, 32 bits.
inline float distance_between(float x1, float y1, float x2, float y2) {
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

inline float distance(const Point& a, const Point& b) {
    return distance_between(a.x, a.y, b.x, b.y);
}

}  // namespace brelan
