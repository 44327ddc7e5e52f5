// Points by place: clusters of near points, and a grid to walk along a line.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan {

// For each point the first point of its cluster, which is itself for a point that no earlier one lies within
// the tolerance of. Takes time in proportion to the points, however they lie.
std::vector<std::int32_t> cluster_points(std::span<const Position> points, double tolerance);

// A grid over points, about one for each cell.
class PositionGrid {
public:
    explicit PositionGrid(std::span<const Position> points);

    // Calls use(index) for every point within the tolerance of the segment, and for some farther ones.
    template <class Use>
    void along(const Position& from, const Position& to, double tolerance, Use&& use) const {
        const Position left = from.x <= to.x ? from : to;
        const Position right = from.x <= to.x ? to : from;
        const bool upright = !(right.x > left.x);
        const double slope = upright ? 0.0 : (right.y - left.y) / (right.x - left.x);
        const std::int64_t first = column(left.x - tolerance), last = column(right.x + tolerance);
        for (std::int64_t i = first; i <= last; ++i) {
            double y1 = left.y, y2 = right.y;
            if (first != last && !upright) {  // the piece of the segment over this column, a tolerance wider
                const double x1 = low_.x + static_cast<double>(i) * cell_ - tolerance;
                const double x2 = x1 + cell_ + 2.0 * tolerance;
                y1 = left.y + slope * (std::clamp(x1, left.x, right.x) - left.x);
                y2 = left.y + slope * (std::clamp(x2, left.x, right.x) - left.x);
            }
            const std::int64_t bottom = row(std::min(y1, y2) - tolerance);
            const std::int64_t top = row(std::max(y1, y2) + tolerance);
            for (std::int64_t j = bottom; j <= top; ++j) {
                const auto at = static_cast<std::size_t>(i * rows_ + j);
                for (std::int32_t k = start_[at]; k < start_[at + 1]; ++k)
                    use(point_[static_cast<std::size_t>(k)]);
            }
        }
    }

private:
    std::int64_t column(double x) const { return place(x - low_.x, columns_); }
    std::int64_t row(double y) const { return place(y - low_.y, rows_); }
    std::int64_t place(double offset, std::int64_t count) const {
        return static_cast<std::int64_t>(
            std::clamp(std::floor(offset / cell_), 0.0, static_cast<double>(count - 1)));
    }

    Position low_;
    double cell_ = 1.0;
    std::int64_t columns_ = 1, rows_ = 1;
    std::vector<std::int32_t> start_, point_;  // points of a cell, one after the other
};

}  // namespace brelan
