// Boxes around what the tests of geometry.h may find.
#pragma once

#include <algorithm>

#include "plane/point.h"

namespace brelan {

// The largest width and height of segments that are not along an axis.
struct Extent {
    float width = 0.0F, height = 0.0F;

    void include(const Point& a, const Point& b);
};

// A box around points.
struct Box {
    float x0, y0, x1, y1;

    void include(const Point& p) {
        x0 = std::min(x0, p.x);
        y0 = std::min(y0, p.y);
        x1 = std::max(x1, p.x);
        y1 = std::max(y1, p.y);
    }
    bool holds(const Point& p) const { return p.x >= x0 && p.x <= x1 && p.y >= y0 && p.y <= y1; }
    // A box with a coordinate that is no number meets all.
    bool meets(const Box& other) const {
        return !(x0 > other.x1 || other.x0 > x1 || y0 > other.y1 || other.y0 > y1);
    }
    float size() const;
    // The box with room for what the tests find beyond it: nodes and middles within a reach, and crossings by
    // what the slanting segments in it take.
    Box with_room(const Extent& slanting, float reach = 0.0F) const;
};
inline Box box_of(const Point& a, const Point& b) {
    Box box{a.x, a.y, a.x, a.y};
    box.include(b);
    return box;
}

}  // namespace brelan
