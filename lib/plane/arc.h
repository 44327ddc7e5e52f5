// Points of elliptic arcs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "plane/point.h"

namespace brelan {

// Point of the ellipse at the polar angle (radians, from the centre). The sine and cosine are the 64-bit
// ones of the 32-bit angle, rounded to 32 bits: no platform's library shows in a mesh.
Point ellipse_point(float angle, const Point& centre, float half_axis_x, float half_axis_y);

// An arc divided into parts of equal length.
class ArcTable {
public:
    // Tabulates angle and running length at 1,000 steps from the first angle to the last.
    ArcTable(float begin_angle, float end_angle, float half_axis_x, float half_axis_y,
             std::int32_t divisions);

    // A point from 1 to the number of divisions; the last is the point at the last angle exactly.
    Point point(std::int32_t number, const Point& centre) const;

private:
    static constexpr std::size_t STEPS = 1000;
    std::array<float, STEPS + 1> angle_{}, length_{};
    std::int32_t divisions_;
    float step_, end_angle_, half_axis_x_, half_axis_y_;
};

}  // namespace brelan
