#include "group/sound_drawing.h"

#include <algorithm>
#include <cmath>

#include "group/path_cut.h"

namespace brelan {

namespace {

void add_pin(Drawing& drawing, const Point& point) {
    if (!is_pinned(drawing, point))
        drawing.pins.push_back(point);
}

void add_segment(Drawing& drawing, const Point& from, const Point& to, const SegmentRow& row, std::size_t k) {
    if (distance_64(from, to) >= drawing.tolerance)
        drawing.segments.push_back({from, to, row.end_rule == ONLY_MOVE, k,
                                    box_of(from, to).with_room({}, static_cast<float>(drawing.tolerance))});
}

}  // namespace

Drawing drawing_of(const Path& path, std::span<const SegmentRow> segments, double tolerance) {
    Drawing drawing;
    drawing.tolerance = tolerance;
    for (const PathPiece& piece : path.pieces) {
        const SegmentRow& row = segments[piece.segment];
        if (row.end_rule == UNTOUCHED)
            continue;
        const PlacedEnds placed = placed_by(row.end_rule);
        if (placed.first)
            add_pin(drawing, piece.start);
        if (placed.second)
            add_pin(drawing, piece.end);
        if (row.end_rule == BOTH_ENDS_ALONE)
            continue;
        if (row.segment_type != ARC_SEGMENT || row.begin_angle == row.end_angle) {
            add_segment(drawing, piece.start, piece.end, row, piece.segment);
            continue;
        }
        for (std::size_t i = 1; i <= piece.parts; ++i) {
            add_segment(drawing, path.point_of(piece, i - 1), path.point_of(piece, i), row, piece.segment);
            if (i < piece.parts)
                add_pin(drawing, path.point_of(piece, i));
        }
    }
    return drawing;
}

std::string place_in_drawing(std::int32_t group, const Drawing& drawing, const Point& point) {
    std::string place = "group " + std::to_string(group);
    const auto nearest = std::min_element(
        drawing.segments.begin(), drawing.segments.end(), [&](const DrawnSegment& a, const DrawnSegment& b) {
            return foot_on(a.from, a.to, point).distance < foot_on(b.from, b.to, point).distance;
        });
    if (nearest != drawing.segments.end())
        place += ", segment " + std::to_string(nearest->segment + 1);
    return place + ": ";
}

bool is_pinned(const Drawing& drawing, const Point& point) {
    const double x = static_cast<double>(point.x), far = 1.001 * drawing.tolerance;
    return std::any_of(drawing.pins.begin(), drawing.pins.end(), [&](const Point& pin) {
        return std::abs(static_cast<double>(pin.x) - x) <= far && distance_64(pin, point) < drawing.tolerance;
    });
}

}  // namespace brelan
