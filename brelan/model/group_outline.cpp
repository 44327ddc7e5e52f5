#include "model/group_outline.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "cli/exit_status.h"
#include "deck/group_card_table.h"
#include "model/deck_edit.h"
#include "model/group_path.h"

namespace brelan::tool {

namespace {

constexpr double HALF_TURN = 180.0, WHOLE_TURN = 360.0;  // degrees
constexpr double LONGEST = 1e9;                          // coordinate that is taken

// The place that the cards keep.
DeckPoint as_kept(const DeckPoint& point) {
    return {std::stod(text_like(point.x, "0.0")), std::stod(text_like(point.y, "0.0"))};
}

double distance_of(const DeckPoint& a, const DeckPoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

double direction(const DeckPoint& from, const DeckPoint& to) {
    return std::atan2(to.y - from.y, to.x - from.x) * HALF_TURN / std::numbers::pi;
}

// Degrees from one direction on to another, anti-clockwise.
double turn_to(double from, double to) {
    const double turn = std::fmod(to - from, WHOLE_TURN);
    return turn < 0.0 ? turn + WHOLE_TURN : turn;
}

void require_count(const std::vector<DeckPoint>& points, std::size_t least, std::string_view what) {
    if (points.size() < least)
        throw Failure(fmt::format("{} has at least {} points", what, least));
    if (points.size() > static_cast<std::size_t>(MOST_GROUP_POINTS))
        throw Failure(fmt::format("{} has at most {} points", what, MOST_GROUP_POINTS));
}

void require_apart(const std::vector<DeckPoint>& points, bool closed) {
    for (std::size_t i = closed ? 0 : 1; i < points.size(); ++i) {
        const DeckPoint& before = points[i == 0 ? points.size() - 1 : i - 1];
        if (distance_of(before, points[i]) < SAME_PLACE)
            throw Failure(fmt::format("two points one after the other lie at one place, ({:g}, {:g})",
                                      points[i].x, points[i].y));
    }
}

double area_of(const std::vector<DeckPoint>& points) {
    double area = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const DeckPoint &a = points[i], &b = points[(i + 1) % points.size()];
        area += (a.x - points[0].x) * (b.y - points[0].y) - (b.x - points[0].x) * (a.y - points[0].y);
    }
    return area / 2.0;
}

GroupOutline circle(const DeckPoint& centre, const DeckPoint& on_it) {
    const DeckPoint size = as_kept({distance_of(centre, on_it), 0.0});
    if (size.x < SAME_PLACE)
        throw Failure("the circle has no radius");
    const double radius = size.x;
    return {true,
            {{centre.x + radius, centre.y}, {centre.x - radius, centre.y}},
            {{centre, radius, 0.0, HALF_TURN}, {centre, radius, HALF_TURN, WHOLE_TURN}}};
}

// From the first point through the second to the third.
GroupOutline arc_through(const DeckPoint& a, const DeckPoint& b, const DeckPoint& c) {
    constexpr double flattest = 1e-6;  // height of the arc as a share of its chord
    const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
    const double doubled = 2.0 * (bx * cy - by * cx);
    const double bb = bx * bx + by * by, cc = cx * cx + cy * cy;
    if (std::abs(doubled) < flattest * std::max(bb, cc))
        throw Failure("the three points of the arc lie on a straight line");
    const DeckPoint centre =
        as_kept({a.x + (cy * bb - by * cc) / doubled, a.y + (bx * cc - cx * bb) / doubled});
    const double radius = as_kept({(distance_of(centre, a) + distance_of(centre, c)) / 2.0, 0.0}).x;
    const double begin = direction(centre, a);
    const double to_end = turn_to(begin, direction(centre, c));
    const bool anti_clockwise = turn_to(begin, direction(centre, b)) < to_end;
    return {
        false, {a, c}, {{centre, radius, begin, begin + (anti_clockwise ? to_end : to_end - WHOLE_TURN)}}};
}

}  // namespace

GroupOutline outline_of(const GroupSketch& drawn) {
    std::vector<DeckPoint> points;
    for (const DeckPoint& point : drawn.points) {
        if (!(std::abs(point.x) < LONGEST && std::abs(point.y) < LONGEST))
            throw Failure("a point has coordinates that no card has room for");
        points.push_back(as_kept(point));
    }
    switch (drawn.form) {
        case DrawnForm::outline:
            require_count(points, 3, "an outline");
            require_apart(points, true);
            if (std::abs(area_of(points)) < SAME_PLACE * SAME_PLACE)
                throw Failure("the outline has no area");
            return {true, std::move(points), {}};
        case DrawnForm::line:
            require_count(points, 2, "a line");
            require_apart(points, false);
            return {false, std::move(points), {}};
        case DrawnForm::arc:
            if (points.size() != 2 && points.size() != 3)
                throw Failure("an arc has three points, a circle its centre and a point on it");
            require_apart(points, points.size() == 3);
            return points.size() == 2 ? circle(points[0], points[1])
                                      : arc_through(points[0], points[1], points[2]);
    }
    throw Failure("a group is drawn as an outline, a line or an arc");
}

}  // namespace brelan::tool
