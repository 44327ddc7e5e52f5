#include "analysis/point_index.h"

#include <unordered_map>

namespace brelan {

namespace {

struct Cell {
    std::int64_t i = 0, j = 0;
    bool operator==(const Cell&) const = default;
};

struct CellHash {
    std::size_t operator()(const Cell& cell) const {
        const auto mix = static_cast<std::uint64_t>(cell.i) * 0x9E3779B97F4A7C15U +
                         static_cast<std::uint64_t>(cell.j) * 0xC2B2AE3D27D4EB4FU;
        return mix ^ (mix >> 29U);
    }
};

}  // namespace

std::vector<std::int32_t> cluster_points(std::span<const Position> points, double tolerance) {
    // First points lie farther than the tolerance from each other, so few share a cell.
    const double cell = tolerance > 0.0 ? tolerance : 1.0;
    const auto cell_of = [cell](double v) {
        constexpr double FARTHEST = 9.0e18;
        return static_cast<std::int64_t>(std::clamp(std::floor(v / cell), -FARTHEST, FARTHEST));
    };
    std::unordered_map<Cell, std::vector<std::int32_t>, CellHash> firsts;
    firsts.reserve(points.size());
    std::vector<std::int32_t> cluster(points.size());
    for (std::size_t n = 0; n < points.size(); ++n) {
        const Position p = points[n];
        const Cell home{cell_of(p.x), cell_of(p.y)};
        std::int32_t nearest = static_cast<std::int32_t>(n);
        for (std::int64_t i = home.i - 1; i <= home.i + 1; ++i)
            for (std::int64_t j = home.j - 1; j <= home.j + 1; ++j) {
                const auto found = firsts.find({i, j});
                if (found == firsts.end())
                    continue;
                for (const std::int32_t first : found->second) {
                    const Position& q = points[static_cast<std::size_t>(first)];
                    if (std::hypot(p.x - q.x, p.y - q.y) <= tolerance)
                        nearest = std::min(nearest, first);
                }
            }
        cluster[n] = nearest;
        if (nearest == static_cast<std::int32_t>(n))
            firsts[home].push_back(nearest);
    }
    return cluster;
}

PositionGrid::PositionGrid(std::span<const Position> points) {
    Position high;
    if (!points.empty())
        low_ = high = points.front();
    for (const Position& p : points) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    const double count = std::max<double>(1.0, static_cast<double>(points.size()));
    const double width = high.x - low_.x, height = high.y - low_.y;
    cell_ = std::max(std::sqrt(width * height / count), std::max(width, height) / count);
    if (!(cell_ > 0.0))
        cell_ = 1.0;
    columns_ = static_cast<std::int64_t>(width / cell_) + 1;
    rows_ = static_cast<std::int64_t>(height / cell_) + 1;
    start_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
    const auto cell_of = [&](const Position& p) {
        return static_cast<std::size_t>(column(p.x) * rows_ + row(p.y));
    };
    for (const Position& p : points)
        ++start_[cell_of(p) + 1];
    for (std::size_t k = 1; k < start_.size(); ++k)
        start_[k] += start_[k - 1];
    std::vector<std::int32_t> next(start_.begin(), start_.end() - 1);
    point_.resize(points.size());
    for (std::size_t n = 0; n < points.size(); ++n)
        point_[static_cast<std::size_t>(next[cell_of(points[n])]++)] = static_cast<std::int32_t>(n);
}

}  // namespace brelan
