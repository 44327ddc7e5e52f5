#include "group/sound_plan.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "group/engine_mesh.h"
#include "group/new_nodes.h"
#include "group/sound_moves.h"
#include "plane/foot.h"

namespace brelan {

namespace {

class Planner {
public:
    Planner(Mesh& mesh, Engine& engine, const DrawnSides& drawn, const Drawing& drawing)
        : mesh_(mesh), engine_(engine), drawn_(drawn), drawing_(drawing) {}

    CutPlan run() {
        for (const Point& pin : drawing_.pins)
            place_pin(pin);
        for (const DrawnSegment& segment : drawing_.segments)
            place_crossings(segment);
        carry_over_joints();
        return std::move(plan_);
    }

private:
    void place_pin(const Point& pin) {
        for (const Solid& solid : solids_holding(mesh_, engine_, drawing_, pin)) {
            bool is_corner = false;
            Side nearest{};
            double distance = drawing_.tolerance;
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Point a = node_point(mesh_, solid.node[i]), b = node_point(mesh_, solid.behind(i));
                is_corner = is_corner || foot_on(a, a, pin).distance < drawing_.tolerance;
                const double from_side = foot_on(a, b, pin).distance;
                if (from_side < distance) {
                    distance = from_side;
                    nearest = side_between(solid.node[i], solid.behind(i));
                }
            }
            if (is_corner)
                continue;
            if (nearest.first != 0)
                add_on_side(nearest, is_kept(nearest) ? on_line(nearest, pin) : pin, drawing_.tolerance);
            else
                add_inside(solid, pin);
        }
    }

    void place_crossings(const DrawnSegment& segment) {
        for (const Solid& solid : solids_met_by(mesh_, engine_, drawing_, segment))
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Side side = side_between(solid.node[i], solid.behind(i));
                if (!crosses(mesh_, drawing_, segment, side) || has_point_on(side, segment))
                    continue;
                const Point a = node_point(mesh_, side.first), b = node_point(mesh_, side.second);
                const Point place = meeting_of(a, b, segment.from, segment.to);
                if (segment.only_moves)
                    fail("group " + std::to_string(engine_.group) + ", segment " +
                         std::to_string(segment.segment + 1) +
                         ": no node may be added (IEND -2), and none can move to " + text_of(place) +
                         " on the side of element " + std::to_string(solid.element) + " between nodes " +
                         std::to_string(side.first) + " and " + std::to_string(side.second));
                add_on_side(side, place, drawing_.tolerance);
            }
    }

    // A node that lies on the side and on the segment.
    bool has_point_on(const Side& side, const DrawnSegment& segment) const {
        const auto found = plan_.sides.find(side);
        return found != plan_.sides.end() &&
               std::any_of(found->second.begin(), found->second.end(), [&](const SidePoint& point) {
                   return is_on(mesh_, drawing_, segment, point.node);
               });
    }

    // Puts a node on a side, unless one is there already.
    void add_on_side(const Side& side, const Point& place, double tolerance) {
        std::vector<SidePoint>& points = plan_.sides[side];
        for (const SidePoint& point : points)
            if (foot_on(place, place, node_point(mesh_, point.node)).distance < tolerance)
                return;
        const double share =
            foot_on(node_point(mesh_, side.first), node_point(mesh_, side.second), place).share;
        const std::int32_t node = add_side_node(mesh_, engine_, place, side.first, side.second);
        points.insert(
            std::upper_bound(points.begin(), points.end(), share,
                             [](double value, const SidePoint& point) { return value < point.share; }),
            {share, node});
    }

    void add_inside(const Solid& solid, const Point& pin) {
        std::vector<std::int32_t>& nodes = plan_.inner[key_of(solid)];
        for (const std::int32_t node : nodes)
            if (node_point(mesh_, node) == pin)
                return;
        nodes.push_back(add_inner_node(mesh_, engine_, pin, solid.node));
    }

    // Sides that a new node must not bend.
    bool is_kept(const Side& side) const {
        const SideUsers users = users_of(mesh_, engine_, side);
        if (!users.joints.empty() || !users.lines.empty() || drawn_.count(side) != 0)
            return true;
        std::vector<std::int32_t> ahead, back;  // materials to both sides
        for (const std::int32_t e : users.solids) {
            const Solid solid = solid_of(mesh_, e);
            for (std::size_t i = 0; i < solid.count; ++i)
                if (side_between(solid.node[i], solid.behind(i)) == side)
                    (solid.node[i] == side.first ? ahead : back).push_back(mesh_.words[e].material);
        }
        std::sort(ahead.begin(), ahead.end());
        std::sort(back.begin(), back.end());
        return ahead != back;
    }

    Point on_line(const Side& side, const Point& p) const {
        const Point a = node_point(mesh_, side.first), b = node_point(mesh_, side.second);
        return at_share(a, b, foot_on(a, b, p).share);
    }

    static Point at_share(const Point& a, const Point& b, double share) {
        const double x = static_cast<double>(a.x), y = static_cast<double>(a.y);
        return {static_cast<float>(x + share * (static_cast<double>(b.x) - x)),
                static_cast<float>(y + share * (static_cast<double>(b.y) - y))};
    }

    // A joint has as many nodes on one side as on the other, so what divides one side divides the side
    // across.
    void carry_over_joints() {
        std::vector<Side> waiting;
        for (const auto& [side, points] : plan_.sides)
            waiting.push_back(side);
        while (!waiting.empty()) {
            const Side side = waiting.back();
            waiting.pop_back();
            for (const std::int32_t e : users_of(mesh_, engine_, side).joints) {
                const Corners c = corners_of(mesh_, e);
                const bool first = side_between(c.n[0], c.n[1]) == side;
                if (!first && side_between(c.n[2], c.n[3]) != side)
                    fail("group " + std::to_string(engine_.group) +
                         ": the line runs along the inside of joint element " + std::to_string(e) + " at " +
                         text_of(node_point(mesh_, plan_.sides[side].front().node)));
                if (carry_over(first ? c.n[0] : c.n[3], first ? c.n[1] : c.n[2], first ? c.n[3] : c.n[0],
                               first ? c.n[2] : c.n[1]))
                    waiting.push_back(first ? side_between(c.n[2], c.n[3]) : side_between(c.n[0], c.n[1]));
            }
        }
    }

    // From the side A-B to C-D, which lies across in the same direction. True when nodes were added.
    bool carry_over(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
        const std::vector<std::int32_t> here = plan_.between(a, b), there = plan_.between(c, d);
        if (here.size() == there.size())
            return false;
        const Point from = node_point(mesh_, a), to = node_point(mesh_, b);
        const Point across = node_point(mesh_, c), across_end = node_point(mesh_, d);
        const double length = foot_on(from, from, to).distance;
        const double width =
            std::max(foot_on(from, from, across).distance, foot_on(to, to, across_end).distance);
        const double reach = length > 0.0 ? (2.0 * width + 2.0 * drawing_.tolerance) / length : 1.0;
        std::vector<bool> used(there.size(), false);
        bool added = false;
        for (const std::int32_t node : here) {
            const double share = foot_on(from, to, node_point(mesh_, node)).share;
            bool met = false;
            for (std::size_t i = 0; i < there.size() && !met; ++i) {
                const double other = foot_on(across, across_end, node_point(mesh_, there[i])).share;
                met = !used[i] && std::abs(other - share) <= reach;
                if (met)
                    used[i] = true;
            }
            if (met)
                continue;
            add_on_side(side_between(c, d), at_share(across, across_end, share), 0.0);
            added = true;
        }
        return added;
    }

    Mesh& mesh_;
    Engine& engine_;
    const DrawnSides& drawn_;
    const Drawing& drawing_;
    CutPlan plan_;
};

}  // namespace

std::vector<std::int32_t> CutPlan::between(std::int32_t a, std::int32_t b) const {
    std::vector<std::int32_t> nodes;
    const auto found = sides.find(side_between(a, b));
    if (found == sides.end())
        return nodes;
    for (const SidePoint& point : found->second)
        nodes.push_back(point.node);
    if (a > b)
        std::reverse(nodes.begin(), nodes.end());
    return nodes;
}

CutPlan plan_cut(Mesh& mesh, Engine& engine, const DrawnSides& drawn, const Drawing& drawing) {
    return Planner(mesh, engine, drawn, drawing).run();
}

}  // namespace brelan
