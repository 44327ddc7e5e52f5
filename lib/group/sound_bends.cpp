#include "group/sound_bends.h"

#include <algorithm>
#include <set>

#include "group/engine_mesh.h"
#include "group/sound_moves.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

bool cross(const Point& a, const Point& b, const Point& c, const Point& d) {
    return orientation(a, b, c) * orientation(a, b, d) < 0 && orientation(c, d, a) * orientation(c, d, b) < 0;
}

// The side of the solid round a point that it lies close beside; none where it lies on a side or in the
// middle.
Side side_beside(const Mesh& mesh, Engine& engine, const Drawing& drawing, const Point& point) {
    const Solids solids = solids_holding(mesh, engine, drawing, point);
    if (solids.empty())
        return {};
    const Solid& solid = solids[0];
    Side nearest{};
    double least = LARGEST_BEND;
    for (std::size_t i = 0; i < solid.count; ++i) {
        const Point a = node_point(mesh, solid.node[i]), b = node_point(mesh, solid.behind(i));
        const double distance = foot_on(a, b, point).distance;
        if (distance < drawing.tolerance)
            return {};
        const double bend = distance / std::min(distance_64(a, point), distance_64(b, point));
        if (bend < least) {
            least = bend;
            nearest = side_between(solid.node[i], solid.behind(i));
        }
    }
    return nearest;
}

// Pieces of the drawing that go on from end to end, as points.
std::vector<std::vector<Point>> chains_of(const Drawing& drawing) {
    std::vector<std::vector<Point>> chains;
    for (const DrawnSegment& segment : drawing.segments) {
        if (chains.empty() || !(chains.back().back() == segment.from))
            chains.push_back({segment.from});
        chains.back().push_back(segment.to);
    }
    return chains;
}

}  // namespace

bool is_kept(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Side& side) {
    const SideUsers users = users_of(mesh, engine, side);
    if (!users.joints.empty() || !users.lines.empty() || drawn.sides.count(side) != 0)
        return true;
    std::vector<MaterialNumber> ahead, back;  // materials to both sides
    for (const ElementNumber e : users.solids) {
        const Solid solid = solid_of(mesh, e);
        for (std::size_t i = 0; i < solid.count; ++i)
            if (side_between(solid.node[i], solid.behind(i)) == side)
                (solid.node[i] == side.first ? ahead : back).push_back(mesh.words[e].material);
    }
    std::sort(ahead.begin(), ahead.end());
    std::sort(back.begin(), back.end());
    return ahead != back;
}

bool may_bend(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Drawing& drawing,
              const Side& side, std::span<const Point> run) {
    if (is_kept(mesh, engine, drawn, side))
        return false;
    const Point a = node_point(mesh, side.first), b = node_point(mesh, side.second);
    std::vector<Point> ring{a};
    ring.insert(ring.end(), run.begin(), run.end());
    ring.push_back(b);
    const int turn = orientation(a, b, run.front());
    double last = 0.0;
    const std::vector<ElementNumber> users = users_of(mesh, engine, side).solids;
    for (const Point& place : run) {
        const Foot foot = foot_on(a, b, place);
        if (orientation(a, b, place) != turn || foot.share <= last || foot.share >= 1.0)
            return false;
        last = foot.share;
        for (const ElementNumber e : users) {
            const Solid solid = solid_of(mesh, e);
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Point c = node_point(mesh, solid.node[i]), d = node_point(mesh, solid.behind(i));
                if (side_between(solid.node[i], solid.behind(i)) != side &&
                    foot_on(c, d, place).distance <= foot.distance / LARGEST_BEND)
                    return false;
            }
        }
    }
    const auto is_near = [&](const DrawnSegment& segment, const Point& p) {
        return is_on(drawing, segment, p);
    };
    Box around = box_of(a, b);
    for (const Point& place : run)
        around.include(place);
    const Box reach = around.with_room({}, static_cast<float>(drawing.tolerance));
    for (const DrawnSegment& segment : drawing.segments) {
        if (!segment.reach.meets(around))
            continue;
        // A segment between two points of the ring would lie beyond those in between.
        std::size_t first = ring.size();
        for (std::size_t i = 0; i < ring.size(); ++i) {
            if (!is_near(segment, ring[i]))
                continue;
            if (first + 1 < i)
                return false;
            first = i;
        }
        for (std::size_t i = 1; i < ring.size(); ++i)
            if (cross(segment.from, segment.to, ring[i - 1], ring[i]) && !is_near(segment, ring[i - 1]) &&
                !is_near(segment, ring[i]))
                return false;
    }
    return std::none_of(drawing.pins.begin(), drawing.pins.end(), [&](const Point& pin) {
        if (!reach.holds(pin))
            return false;
        const auto is_at = [&](const Point& place) { return distance_64(place, pin) < drawing.tolerance; };
        if (std::any_of(ring.begin(), ring.end(), is_at))
            return false;
        if (foot_on(a, b, pin).distance < drawing.tolerance || holds(ring, pin))
            return true;
        for (std::size_t i = 1; i < ring.size(); ++i)
            if (foot_on(ring[i - 1], ring[i], pin).distance < drawing.tolerance)
                return true;
        return false;
    });
}

std::vector<Bend> bends_along(const Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing) {
    std::vector<Bend> bends;
    std::set<Side> bent;
    for (const std::vector<Point>& chain : chains_of(drawing)) {
        std::vector<Side> sides;
        sides.reserve(chain.size());
        for (const Point& point : chain)
            sides.push_back(side_beside(mesh, engine, drawing, point));
        for (std::size_t first = 0; first < chain.size();) {
            std::size_t end = first + 1;
            while (end < chain.size() && sides[end] == sides[first])
                ++end;
            Bend bend{sides[first],
                      {chain.begin() + static_cast<std::ptrdiff_t>(first),
                       chain.begin() + static_cast<std::ptrdiff_t>(end)}};
            first = end;
            if (!bend.side.first.names_one() || bend.run.size() < 2 || bent.count(bend.side) != 0)
                continue;
            const Point a = node_point(mesh, bend.side.first), b = node_point(mesh, bend.side.second);
            if (foot_on(a, b, bend.run.back()).share < foot_on(a, b, bend.run.front()).share)
                std::reverse(bend.run.begin(), bend.run.end());
            const bool all_pinned = std::all_of(bend.run.begin(), bend.run.end(), [&](const Point& point) {
                return is_pinned(drawing, point);
            });
            if (!all_pinned || !may_bend(mesh, engine, drawn, drawing, bend.side, bend.run))
                continue;
            bent.insert(bend.side);
            bends.push_back(std::move(bend));
        }
    }
    return bends;
}

}  // namespace brelan
