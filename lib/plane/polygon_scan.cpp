#include "plane/polygon_scan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "text/number_text.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr float MOST_BANDS = 2048.0F;
constexpr float ENTRIES = 4.0F;  // for each edge, over all bands

}  // namespace

bool scan_polygon(const Point& point, std::span<const Point> polygon) {
    const std::size_t count = polygon.size();
    if (count < 1)
        return true;
    if (count > static_cast<std::size_t>(MOST_POLYGON_POINTS)) {
        std::array<char, 11> number{};
        put_integer(number.data(), static_cast<int>(number.size()), static_cast<std::int32_t>(count));
        stop_run(" NB =  " + std::string(number.data(), number.size()) + "\n222");
    }
    int left_of_point = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const Point& from = polygon[k];
        const Point& to = polygon[k + 1 == count ? 0 : k + 1];
        left_of_point += crosses_left_of(point, from, to) ? 1 : 0;
    }
    return left_of_point % 2 == 1;
}

PolygonScan::PolygonScan(bool uses_indexes, std::span<const Point> polygon) : polygon_(polygon) {
    if (!uses_indexes || polygon.empty() || polygon.size() > static_cast<std::size_t>(MOST_POLYGON_POINTS))
        return;
    low_ = high_ = polygon[0];
    for (const Point& p : polygon) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y))
            return;
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y)};
    }
    sort_edges();
    // Rounded crossings.
    const float room = (std::abs(low_.x) + std::abs(high_.x)) * 1.0E-5F;
    low_.x = low_.x - room;
    high_.x = high_.x + room;
    has_box_ = true;
}

void PolygonScan::sort_edges() {
    const std::size_t count = polygon_.size();
    const auto next = [&](std::size_t k) -> const Point& { return polygon_[k + 1 == count ? 0 : k + 1]; };
    const float height = std::max(high_.y - low_.y, 1.0E-30F);
    float heights = 0.0F;  // of all edges, as shares of the whole
    for (std::size_t k = 0; k < count; ++k)
        heights += std::abs(polygon_[k].y - next(k).y) / height;
    const float bands = ENTRIES * static_cast<float>(count) / std::max(heights, 1.0F);
    first_.assign(static_cast<std::size_t>(std::clamp(bands, 1.0F, MOST_BANDS)) + 1, 0);
    const auto each_band = [&](auto action) {
        for (std::size_t k = 0; k < count; ++k) {
            const float from = polygon_[k].y, to = next(k).y;
            if (from == to)
                continue;
            for (std::size_t b = band(std::min(from, to)); b <= band(std::max(from, to)); ++b)
                action(b, static_cast<std::uint32_t>(k));
        }
    };
    std::vector<std::uint32_t> free(first_.size(), 0);
    each_band([&](std::size_t b, std::uint32_t) { ++free[b]; });
    for (std::size_t b = 0; b + 1 < first_.size(); ++b)
        first_[b + 1] = first_[b] + free[b];
    edges_.resize(first_.back());
    free = first_;
    each_band([&](std::size_t b, std::uint32_t k) { edges_[free[b]++] = k; });
}

// Heights beyond the polygon belong to its lowest and highest band.
std::size_t PolygonScan::band(float y) const {
    const auto bands = static_cast<float>(first_.size() - 1);
    const float place = (y - low_.y) / std::max(high_.y - low_.y, 1.0E-30F) * bands;
    return place > 0.0F ? static_cast<std::size_t>(std::min(place, bands - 1.0F)) : 0;
}

bool PolygonScan::inside(const Point& point) const {
    if (!has_box_)
        return scan_polygon(point, polygon_);
    if (point.y > high_.y || point.y <= low_.y || point.x < low_.x || point.x > high_.x)
        return false;
    const std::size_t b = band(point.y);
    int left_of_point = 0;
    for (std::size_t i = first_[b]; i < first_[b + 1]; ++i) {
        const std::size_t k = edges_[i];
        left_of_point +=
            crosses_left_of(point, polygon_[k], polygon_[k + 1 == polygon_.size() ? 0 : k + 1]) ? 1 : 0;
    }
    return left_of_point % 2 == 1;
}

}  // namespace brelan
