// Searches among points whose cost grows with their number, with the result that a scan of all pairs would
// give.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace brelan {

// A numbered point of the plane.
struct NumberedPoint {
    std::int32_t number = 0;
    float x = 0.0F, y = 0.0F;
};

// Points in square cells, to be asked for the neighbours of a point within one fixed distance.
class PointGrid {
public:
    // `reach` is the distance that will be asked for; `expected` the count of points to come.
    PointGrid(float reach, std::size_t expected);

    // Points are added in ascending number.
    void add(const NumberedPoint& point);

    // The highest number among the points added so far whose distance (distance_between) is at most the
    // reach; 0 for none.
    std::int32_t highest_within_reach(float x, float y) const;

private:
    static constexpr std::int32_t NONE = -1;

    struct Cell {
        std::int64_t column, row;
    };
    Cell cell_of(float x, float y) const;
    std::size_t bucket_of(std::int64_t column, std::int64_t row) const;

    float reach_;
    double cell_size_;
    std::size_t mask_;
    std::vector<NumberedPoint> points_;
    std::vector<std::int32_t> newest_;  // by bucket: index of the point added last
    std::vector<std::int32_t> older_;   // by point: index of the one added before it in its bucket
};

// The smallest distance_between over all pairs of points, or `start` when no pair is nearer than that.
float smallest_distance(std::span<const NumberedPoint> points, float start);

}  // namespace brelan
