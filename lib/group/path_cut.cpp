#include "group/path_cut.h"

#include <string>

#include "group/conforming_cut.h"

namespace brelan {

namespace {

void cut_piece(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& table, const Path& path,
               const PathPiece& piece, const SegmentRow& segment) {
    const std::int32_t end_rule = segment.end_rule;
    if (end_rule == UNTOUCHED)
        return;
    const CutMode mode{end_rule, segment.divisions <= 0};
    const PlacedEnds placed = placed_by(end_rule);
    const auto collect = [&](std::size_t i) {
        collect_rows(mesh, engine, table, path.point_of(piece, i - 1), path.point_of(piece, i));
    };
    const auto cut = [&](std::size_t i) {
        const Point& p1 = path.point_of(piece, i - 1);
        const Point& p2 = path.point_of(piece, i);
        place_ends(mesh, engine, table, p1, p2,
                   {.first = placed.first && i == 1, .second = placed.second && i == piece.parts});
        if (end_rule != BOTH_ENDS_ALONE)
            scan_sides(mesh, tolerances, engine, table, p1, p2, mode);
    };
    if (!mode.deferred) {
        for (std::size_t i = 1; i <= piece.parts; ++i) {
            collect(i);
            cut(i);
            split_rows(mesh, engine, table);
        }
        return;
    }
    for (std::size_t i = 1; i <= piece.parts; ++i)
        collect(i);
    for (std::size_t i = 1; i <= piece.parts; ++i)
        cut(i);
    split_rows(mesh, engine, table);
}

}  // namespace

PlacedEnds placed_by(std::int32_t end_rule) {
    const bool both = end_rule == BOTH_ENDS_ALONE || end_rule == BOTH_ENDS || end_rule == ONLY_MOVE;
    return {.first = both || end_rule == START, .second = both || end_rule == END};
}

void cut_along(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, const Path& path,
               std::span<const SegmentRow> segments) {
    for (const PathPiece& piece : path.pieces)
        cut_piece(mesh, tolerances, engine, cut, path, piece, segments[piece.segment]);
}

void require_parts(const Engine& engine, const Path& path) {
    if (path.overlong)
        fail("group " + std::to_string(engine.group) + ", segment " +
             std::to_string(path.overlong->segment + 1) + ": expected at most " +
             std::to_string(MOST_SEGMENT_PARTS) + " parts, found " + std::to_string(path.overlong->parts));
}

}  // namespace brelan
