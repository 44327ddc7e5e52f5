// Shape of the solids of a mesh. Joints are thin by intention and are left out.
#pragma once

#include <cstddef>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

struct Shape {
    double smallest_angle = 0.0;  // degrees, inside the element
    double largest_angle = 0.0;   // above 180 at a corner that is pushed in
    double aspect_ratio = 0.0;    // 1 for a square and an equilateral triangle; infinite without area
    double area = 0.0;            // absolute
    double shortest_side = 0.0;
    double longest_side = 0.0;
};

// Longest side times the sum of the sides, over 4 (triangle: 4 times the root of 3) areas.
Shape shape_of(const MeshLists& mesh, const CornerPlaces& corners);

// One measure over the mesh: its range, its mean, and the elements at its bad end, the worst first.
struct Measure {
    double smallest = 0.0, largest = 0.0, mean = 0.0;
    struct Worst {
        Number element = 0;
        double value = 0.0;
    };
    std::vector<Worst> worst;
};

struct Quality {
    std::size_t solids = 0;  // that were measured: all whose corners are there
    Measure smallest_angle, largest_angle, aspect_ratio, area, side;
    // Counts by smallest angle: below 5, 15, 30, 45 degrees and the rest.
    std::array<std::size_t, 5> by_angle{};
};

inline constexpr std::array<double, 4> ANGLE_LIMITS{5.0, 15.0, 30.0, 45.0};

Quality measure_quality(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                        std::size_t worst = 3);

}  // namespace brelan
