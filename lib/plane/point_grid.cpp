#include "plane/point_grid.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "plane/point.h"

namespace brelan {

namespace {

// A distance computed in 32 bits differs from the true one by less than this share of it, and where a square
// falls below the smallest normal number by less than this length.
constexpr double ROUNDING_SHARE = 1.0E-4;
constexpr double FLUSHED_LENGTH = 4.0E-19;

// Cells are numbered within this bound; neighbours beyond it share the last cell.
constexpr double LAST_CELL = 4.0E18;

}  // namespace

PointGrid::PointGrid(float reach, std::size_t expected)
    : reach_(reach),
      cell_size_(static_cast<double>(reach) * (1.0 + ROUNDING_SHARE) + FLUSHED_LENGTH),
      mask_(std::bit_ceil(std::max<std::size_t>(expected * 2, 16)) - 1),
      newest_(mask_ + 1, NONE) {
    points_.reserve(expected);
    older_.reserve(expected);
}

PointGrid::Cell PointGrid::cell_of(float x, float y) const {
    const auto cell = [&](float v) {
        const double place = std::floor(static_cast<double>(v) / cell_size_);
        return static_cast<std::int64_t>(std::clamp(place, -LAST_CELL, LAST_CELL));
    };
    return {cell(x), cell(y)};
}

std::size_t PointGrid::bucket_of(std::int64_t column, std::int64_t row) const {
    std::uint64_t hash = static_cast<std::uint64_t>(column) * 0x9E3779B97F4A7C15U;
    hash ^= static_cast<std::uint64_t>(row) * 0xC2B2AE3D27D4EB4FU;
    hash ^= hash >> 29;
    return static_cast<std::size_t>(hash * 0xBF58476D1CE4E5B9U >> 20) & mask_;
}

void PointGrid::add(const NumberedPoint& point) {
    const Cell cell = cell_of(point.x, point.y);
    std::int32_t& newest = newest_[bucket_of(cell.column, cell.row)];
    older_.push_back(newest);
    newest = static_cast<std::int32_t>(points_.size());
    points_.push_back(point);
}

std::int32_t PointGrid::highest_within_reach(float x, float y) const {
    // The own cell first: what it gives lets the others be left early.
    constexpr int nearest_first[3] = {0, -1, 1};
    const Cell cell = cell_of(x, y);
    std::int32_t highest = 0;
    for (const int dc : nearest_first) {
        for (const int dr : nearest_first) {
            std::int32_t i = newest_[bucket_of(cell.column + dc, cell.row + dr)];
            for (; i != NONE; i = older_[static_cast<std::size_t>(i)]) {
                const NumberedPoint& p = points_[static_cast<std::size_t>(i)];
                if (p.number <= highest)
                    break;
                if (distance_between(p.x, p.y, x, y) <= reach_) {
                    highest = p.number;
                    break;
                }
            }
        }
    }
    return highest;
}

// --- smallest distance ---------------------------------------------------------------------------

namespace {

// Divide and conquer over points sorted by x (M. I. Shamos and D. Hoey, "Closest-point problems", 1975). The
// search is pruned by true distances in 64 bits, with room for the rounding of the 32-bit distance that is
// wanted.
class ClosestPair {
public:
    ClosestPair(std::span<const NumberedPoint> points, float start)
        : points_(points.begin(), points.end()), found_(start) {
        std::sort(points_.begin(), points_.end(), [](const NumberedPoint& a, const NumberedPoint& b) {
            return a.x < b.x || (a.x == b.x && a.y < b.y);
        });
        merged_.resize(points_.size());
        strip_.reserve(points_.size());
        solve(0, points_.size());
    }

    float found() const { return found_; }

private:
    // How far apart a pair may lie and still decide.
    double width() const { return nearest_ * (1.0 + ROUNDING_SHARE) + FLUSHED_LENGTH; }

    void compare(const NumberedPoint& a, const NumberedPoint& b) {
        const double dx = static_cast<double>(b.x) - static_cast<double>(a.x);
        const double dy = static_cast<double>(b.y) - static_cast<double>(a.y);
        nearest_ = std::min(nearest_, std::sqrt(dx * dx + dy * dy));
        found_ = std::min(found_, distance_between(a.x, a.y, b.x, b.y));
    }

    static bool lower(const NumberedPoint& a, const NumberedPoint& b) { return a.y < b.y; }

    // Leaves the range sorted by y.
    void solve(std::size_t begin, std::size_t end) {
        const auto at = [&](std::size_t i) { return points_.begin() + static_cast<std::ptrdiff_t>(i); };
        if (found_ == 0.0F || end - begin < 2)
            return;
        if (end - begin <= 3) {
            for (std::size_t i = begin; i < end; ++i)
                for (std::size_t k = i + 1; k < end; ++k)
                    compare(points_[i], points_[k]);
            std::sort(at(begin), at(end), lower);
            return;
        }
        const std::size_t middle = begin + (end - begin) / 2;
        const double line = static_cast<double>(points_[middle].x);
        solve(begin, middle);
        solve(middle, end);
        if (found_ == 0.0F)
            return;
        std::merge(at(begin), at(middle), at(middle), at(end), merged_.begin(), lower);
        std::copy_n(merged_.begin(), end - begin, at(begin));
        strip_.clear();
        for (std::size_t i = begin; i < end; ++i) {
            const NumberedPoint& p = points_[i];
            if (std::abs(static_cast<double>(p.x) - line) > width())
                continue;
            for (std::size_t k = strip_.size(); k-- > 0;) {
                if (static_cast<double>(p.y) - static_cast<double>(strip_[k].y) > width())
                    break;
                compare(p, strip_[k]);
                if (found_ == 0.0F)
                    return;
            }
            strip_.push_back(p);
        }
    }

    std::vector<NumberedPoint> points_, merged_, strip_;
    double nearest_ = 1.0E300;
    float found_;
};

}  // namespace

float smallest_distance(std::span<const NumberedPoint> points, float start) {
    return ClosestPair(points, start).found();
}

}  // namespace brelan
