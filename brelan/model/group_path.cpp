#include "model/group_path.h"

#include <cstdlib>

namespace brelan::tool {

namespace {

DeckPoint in_64_bits(const Point& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

std::vector<DeckPoint> in_64_bits(std::span<const Point> points) {
    std::vector<DeckPoint> wide;
    for (const Point& point : points)
        wide.push_back(in_64_bits(point));
    return wide;
}

OutlineUse use_of(const DeckGroup& group) {
    if (std::abs(group.group_type) != 2)
        return OutlineUse::region;
    return group.group_type == 2 && group.overlay == 1 ? OutlineUse::free_line : OutlineUse::line;
}

}  // namespace

void draw_path(DeckGroup& group, std::span<const Point> outline, std::span<const SegmentRow> rows) {
    const Path path = path_along(outline, rows, use_of(group), static_cast<float>(SAME_PLACE));
    group.points = in_64_bits(outline);
    group.path = in_64_bits(path.points);
    group.closed = path.closed || use_of(group) == OutlineUse::region;
    for (const PathPiece& piece : path.pieces)
        for (std::size_t i = 0; i <= piece.parts; ++i)
            group.segments[piece.segment].path.push_back(in_64_bits(path.point_of(piece, i)));
}

}  // namespace brelan::tool
