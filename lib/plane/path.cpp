#include "plane/path.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "plane/arc.h"

namespace brelan {

namespace {

// How many parts a number of divisions of either sign asks for.
std::int32_t parts_of(std::int32_t divisions) {
    return divisions == std::numeric_limits<std::int32_t>::min() ? std::numeric_limits<std::int32_t>::max()
                                                                 : std::abs(divisions);
}

constexpr float PARTS_PER_RADIAN = 63.661976F;  // of an arc: one for each 0.9 degree
constexpr std::int32_t FEWEST_PARTS = 20;       // of an arc without divisions of its own
constexpr float FULL_CIRCLE_LOW = 6.282557F, FULL_CIRCLE_HIGH = 6.283814F;

Point point_at(const SegmentRow& arc, float angle) {
    return ellipse_point(angle, {arc.centre_x, arc.centre_y}, arc.half_axis_x, arc.half_axis_y);
}

std::int32_t parts_of_arc(const SegmentRow& arc) {
    if (arc.divisions != 0)
        return parts_of(arc.divisions);
    const float parts = std::abs(std::round((arc.end_angle - arc.begin_angle) * PARTS_PER_RADIAN));
    return parts < static_cast<float>(FEWEST_PARTS + 1)     ? FEWEST_PARTS
           : parts > static_cast<float>(MOST_SEGMENT_PARTS) ? MOST_SEGMENT_PARTS + 1
                                                            : static_cast<std::int32_t>(parts);
}

std::vector<Point> points_of_arc(const SegmentRow& arc, std::int32_t parts) {
    std::vector<Point> points{point_at(arc, arc.begin_angle)};
    if (arc.half_axis_x != arc.half_axis_y) {
        const ArcTable table(arc.begin_angle, arc.end_angle, arc.half_axis_x, arc.half_axis_y, parts);
        for (std::int32_t i = 1; i <= parts; ++i)
            points.push_back(table.point(i, {arc.centre_x, arc.centre_y}));
        return points;
    }
    const float step = (arc.end_angle - arc.begin_angle) / static_cast<float>(parts);
    float angle = arc.begin_angle;
    for (std::int32_t i = 1; i <= parts; ++i) {
        angle = angle + step;
        points.push_back(point_at(arc, angle));
    }
    return points;
}

std::vector<Point> points_between(const Point& start, const Point& end, std::int32_t parts) {
    const Point step{(end.x - start.x) / static_cast<float>(parts),
                     (end.y - start.y) / static_cast<float>(parts)};
    std::vector<Point> points{start};
    for (std::int32_t i = 1; i <= parts; ++i)
        points.push_back({points.back().x + step.x, points.back().y + step.y});
    return points;
}

class PathBuilder {
public:
    PathBuilder(std::span<const Point> outline, std::span<const SegmentRow> segments, OutlineUse use,
                float same)
        : outline_(outline.begin(), outline.end()), segments_(segments), use_(use), count_(outline.size()) {
        if (use != OutlineUse::region && count_ > 1 && distance(outline.front(), outline.back()) < same)
            --count_;
        path_.closed = segments.size() == count_;
    }

    Path build() {
        if (segments_.empty()) {
            path_.points.assign(outline_.begin(), outline_.begin() + static_cast<std::ptrdiff_t>(count_));
            path_.edges = count_ == 0 ? 0 : count_ - 1;
            return std::move(path_);
        }
        outline_.resize(std::max(outline_.size(), segments_.size() + 1));
        last_ = outline_[0];
        path_.points.push_back(last_);
        for (std::size_t k = 0; k < segments_.size() && !path_.overlong; ++k)
            add_segment(k);
        path_.edges = path_.closed ? path_.points.size() : path_.points.size() - 1;
        return std::move(path_);
    }

private:
    void add_segment(std::size_t k) {
        const SegmentRow& segment = segments_[k];
        const bool is_arc = segment.segment_type == ARC_SEGMENT;
        if (is_arc && segment.begin_angle != segment.end_angle)
            return add_arc(k);
        if (is_arc) {
            outline_[k] = point_at(segment, segment.begin_angle);
            outline_[k + 1] = point_at(segment, segment.end_angle);
            last_ = outline_[k];
            if (k == 0)
                path_.points.front() = outline_[k];
        }
        if (is_arc || segment.segment_type == STRAIGHT_SEGMENT)
            add_straight(k);
    }

    void add_straight(std::size_t k) {
        const SegmentRow& segment = segments_[k];
        const std::int32_t parts = segment.divisions == 0 ? 1 : parts_of(segment.divisions);
        if (is_overlong(k, parts))
            return;
        const Point& end = closes(k) ? outline_[0] : outline_[k + 1];
        const std::vector<Point> points = points_between(outline_[k], end, parts);
        if (segment.divisions == 1 && segment.end_rule == 0)
            path_.single.push_back(path_.points.size() - 1);
        add(k, points, points.back(), closes(k));
    }

    void add_arc(std::size_t k) {
        const SegmentRow& arc = segments_[k];
        const std::int32_t parts = parts_of_arc(arc);
        if (is_overlong(k, parts))
            return;
        const std::vector<Point> points = points_of_arc(arc, parts);
        const bool full =
            arc.begin_angle == 0.0F && arc.end_angle >= FULL_CIRCLE_LOW && arc.end_angle <= FULL_CIRCLE_HIGH;
        add(k, points, full ? last_ : points.back(), use_ == OutlineUse::free_line && closes(k));
    }

    // The closing point of an outline is left out: the region test closes the outline itself.
    void add(std::size_t k, const std::vector<Point>& points, const Point& end, bool without_last) {
        path_.pieces.push_back({k, path_.points.size(), points.size() - 1, last_, end});
        path_.points.insert(path_.points.end(), points.begin() + 1,
                            without_last ? points.end() - 1 : points.end());
        last_ = points.back();
    }

    bool closes(std::size_t k) const { return k + 1 == count_; }

    bool is_overlong(std::size_t k, std::int32_t parts) {
        if (parts > MOST_SEGMENT_PARTS)
            path_.overlong = {k, parts};
        return path_.overlong.has_value();
    }

    std::vector<Point> outline_;
    std::span<const SegmentRow> segments_;
    OutlineUse use_;
    std::size_t count_;  // points of the outline, without a last one that is the first again
    Path path_;
    Point last_;
};

}  // namespace

Segment ends_of_arc(const SegmentRow& arc) {
    const Point start = point_at(arc, arc.begin_angle);
    if (arc.begin_angle != arc.end_angle)
        return {start, point_at(arc, arc.end_angle)};
    const auto angle = static_cast<double>(arc.end_angle);
    return {start,
            {arc.centre_x + arc.half_axis_y * static_cast<float>(std::cos(angle)),
             arc.centre_y + arc.half_axis_y * static_cast<float>(std::sin(angle))}};
}

Path path_along(std::span<const Point> outline, std::span<const SegmentRow> segments, OutlineUse use,
                float same) {
    return PathBuilder(outline, segments, use, same).build();
}

}  // namespace brelan
