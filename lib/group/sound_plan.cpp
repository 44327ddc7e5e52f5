#include "group/sound_plan.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "group/engine_mesh.h"
#include "group/new_nodes.h"
#include "group/sound_bends.h"
#include "group/sound_moves.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

class Planner {
public:
    Planner(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing)
        : mesh_(mesh), engine_(engine), drawn_(drawn), drawing_(drawing) {}

    CutPlan run() {
        for (const Bend& bend : bends_along(mesh_, engine_, drawn_, drawing_))
            for (const Point& point : bend.run)
                add_on_side(bend.side, point, drawing_.tolerance);
        for (const Point& pin : drawing_.pins)
            place_pin(pin);
        for (const DrawnSegment& segment : drawing_.segments)
            place_crossings(segment);
        carry_over_joints();
        return std::move(plan_);
    }

private:
    void place_pin(const Point& pin) {
        std::map<ElementNumber, Solid> solids;
        for (const Solid& solid : solids_holding(mesh_, engine_, drawing_, pin)) {
            solids[solid.element] = solid;
            // Where a side is bent, the neighbour may hold the point.
            for (std::size_t i = 0; i < solid.count; ++i)
                if (const Side side = side_between(solid.node[i], solid.behind(i));
                    plan_.sides.count(side) != 0)
                    for (const ElementNumber e : users_of(mesh_, engine_, side).solids)
                        solids[e] = solid_of(mesh_, e);
        }
        if (is_corner(solids, pin) || place_on_sides(solids, pin))
            return;
        for (const auto& [e, solid] : solids)
            if (holds(node_points(mesh_, plan_.ring_of(solid)), pin) && !bend_to(solid, pin))
                add_inside(solid, pin);
    }

    // The nodes along a side, its ends among them.
    std::vector<NodeNumber> chain_of(const Side& side) const {
        std::vector<NodeNumber> chain = plan_.between(side.first, side.second);
        chain.insert(chain.begin(), side.first);
        chain.push_back(side.second);
        return chain;
    }

    bool is_corner(const std::map<ElementNumber, Solid>& solids, const Point& pin) const {
        for (const auto& [e, solid] : solids)
            for (const NodeNumber node : solid.nodes())
                if (const Point at = node_point(mesh_, node); distance_64(at, pin) < drawing_.tolerance)
                    return true;
        return false;
    }

    // True for a pin that is a node of a side now: of the nearest one, as two sides may meet beside it. A
    // joint has two at one place.
    bool place_on_sides(const std::map<ElementNumber, Solid>& solids, const Point& pin) {
        struct OnSide {
            Side side;
            double distance = 0.0;
            Point place;
        };
        constexpr double SAME = 0.01;  // of the tolerance: two sides at one place
        std::vector<OnSide> found;
        double least = drawing_.tolerance;
        for (const auto& [e, solid] : solids)
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Side side = side_between(solid.node[i], solid.behind(i));
                const std::vector<NodeNumber> chain = chain_of(side);
                for (std::size_t k = 1; k < chain.size(); ++k) {
                    const Point a = node_point(mesh_, chain[k - 1]), b = node_point(mesh_, chain[k]);
                    const Foot foot = foot_on(a, b, pin);
                    if (foot.distance >= drawing_.tolerance)
                        continue;
                    least = std::min(least, foot.distance);
                    found.push_back(
                        {side, foot.distance,
                         is_kept(mesh_, engine_, drawn_, side) ? point_between(a, b, foot.share) : pin});
                }
            }
        for (const OnSide& on : found)
            if (on.distance <= least + SAME * drawing_.tolerance)
                add_on_side(on.side, on.place, drawing_.tolerance);
        return !found.empty();
    }

    // Bends the side that a pin is nearly on. False where none may be bent.
    bool bend_to(const Solid& solid, const Point& pin) {
        Side nearest{};
        double least = LARGEST_BEND;
        for (std::size_t i = 0; i < solid.count; ++i) {
            const Point a = node_point(mesh_, solid.node[i]), b = node_point(mesh_, solid.behind(i));
            const double to_end = std::min(distance_64(a, pin), distance_64(b, pin));
            const double bend = foot_on(a, b, pin).distance / to_end;
            const Side side = side_between(solid.node[i], solid.behind(i));
            if (bend < least && plan_.sides.count(side) == 0 &&
                may_bend(mesh_, engine_, drawn_, drawing_, side, {&pin, 1})) {
                least = bend;
                nearest = side;
            }
        }
        if (nearest.first.is_none())
            return false;
        add_on_side(nearest, pin, drawing_.tolerance);
        return true;
    }

    void place_crossings(const DrawnSegment& segment) {
        plan_.met.push_back(solids_met_by(mesh_, engine_, drawing_, segment));
        for (const Solid& solid : plan_.met.back())
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Side side = side_between(solid.node[i], solid.behind(i));
                if (plan_.sides.count(side) == 0) {
                    place_crossing(segment, solid.element, side, side);
                    continue;
                }
                const std::vector<NodeNumber> chain = chain_of(side);
                for (std::size_t k = 1; k < chain.size(); ++k)
                    place_crossing(segment, solid.element, side, {chain[k - 1], chain[k]});
            }
    }

    // Where the segment crosses a piece of a side.
    void place_crossing(const DrawnSegment& segment, ElementNumber e, const Side& side, const Side& piece) {
        if (!crosses(mesh_, drawing_, segment, piece))
            return;
        const Point a = node_point(mesh_, piece.first), b = node_point(mesh_, piece.second);
        const Point place = meeting_of(a, b, segment.from, segment.to);
        if (segment.only_moves)
            fail("group " + std::to_string(engine_.group) + ", segment " +
                 std::to_string(segment.segment + 1) +
                 ": no node may be added (IEND -2), and none can move to " + text_of(place) +
                 " on the side of element " + to_string(e) + " between nodes " + to_string(side.first) +
                 " and " + to_string(side.second));
        add_on_side(side, place, drawing_.tolerance);
    }

    // Puts a node on a side, unless one is there already.
    void add_on_side(const Side& side, const Point& place, double tolerance) {
        std::vector<SidePoint>& points = plan_.sides[side];
        for (const SidePoint& point : points)
            if (distance_64(place, node_point(mesh_, point.node)) < tolerance)
                return;
        const double share =
            foot_on(node_point(mesh_, side.first), node_point(mesh_, side.second), place).share;
        const NodeNumber node = add_side_node(mesh_, engine_, place, side.first, side.second, Codes::of_all);
        points.insert(
            std::upper_bound(points.begin(), points.end(), share,
                             [](double value, const SidePoint& point) { return value < point.share; }),
            {share, node});
    }

    void add_inside(const Solid& solid, const Point& pin) {
        std::vector<NodeNumber>& nodes = plan_.inner[key_of(solid)];
        for (const NodeNumber node : nodes)
            if (node_point(mesh_, node) == pin)
                return;
        nodes.push_back(add_inner_node(mesh_, engine_, pin, solid.node, Codes::of_all));
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
            for (const ElementNumber e : users_of(mesh_, engine_, side).joints) {
                const Corners c = corners_of(mesh_, e);
                const bool first = side_between(c.n[0], c.n[1]) == side;
                if (!first && side_between(c.n[2], c.n[3]) != side)
                    refuse_inside_joint(e, node_point(mesh_, plan_.sides[side].front().node));
                if (carry_over(first ? c.n[0] : c.n[3], first ? c.n[1] : c.n[2], first ? c.n[3] : c.n[0],
                               first ? c.n[2] : c.n[1]))
                    waiting.push_back(first ? side_between(c.n[2], c.n[3]) : side_between(c.n[0], c.n[1]));
            }
        }
    }

    [[noreturn]] void refuse_inside_joint(ElementNumber e, const Point& at) const {
        fail(place_in_drawing(engine_.group, drawing_, at) +
             "the line runs along the inside of joint element " + to_string(e) + " at " + text_of(at));
    }

    // From the side A-B to C-D, which lies across in the same direction. True when nodes were added.
    bool carry_over(NodeNumber a, NodeNumber b, NodeNumber c, NodeNumber d) {
        const std::vector<NodeNumber> here = plan_.between(a, b), there = plan_.between(c, d);
        if (here.size() == there.size())
            return false;
        const Point from = node_point(mesh_, a), to = node_point(mesh_, b);
        const Point across = node_point(mesh_, c), across_end = node_point(mesh_, d);
        const double length = distance_64(from, to);
        const double width = std::max(distance_64(from, across), distance_64(to, across_end));
        const double reach = length > 0.0 ? (2.0 * width + 2.0 * drawing_.tolerance) / length : 1.0;
        std::vector<bool> used(there.size(), false);
        bool added = false;
        for (const NodeNumber node : here) {
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
            add_on_side(side_between(c, d), point_between(across, across_end, share), 0.0);
            added = true;
        }
        return added;
    }

    Mesh& mesh_;
    Engine& engine_;
    const Drawn& drawn_;
    const Drawing& drawing_;
    CutPlan plan_;
};

}  // namespace

std::vector<NodeNumber> CutPlan::between(NodeNumber a, NodeNumber b) const {
    std::vector<NodeNumber> nodes;
    const auto found = sides.find(side_between(a, b));
    if (found == sides.end())
        return nodes;
    for (const SidePoint& point : found->second)
        nodes.push_back(point.node);
    if (a > b)
        std::reverse(nodes.begin(), nodes.end());
    return nodes;
}

bool CutPlan::divides(std::span<const NodeNumber> line, bool closed) const {
    for (std::size_t k = 1; k < line.size() && !sides.empty(); ++k)
        if (sides.count(side_between(line[k - 1], line[k])) != 0)
            return true;
    return closed && !line.empty() && sides.count(side_between(line.back(), line.front())) != 0;
}

std::vector<NodeNumber> CutPlan::ring_of(const Solid& solid) const {
    std::vector<NodeNumber> ring;
    ring.reserve(2 * solid.count);
    for (std::size_t i = 0; i < solid.count; ++i) {
        ring.push_back(solid.node[i]);
        const std::vector<NodeNumber> nodes = between(solid.node[i], solid.behind(i));
        ring.insert(ring.end(), nodes.begin(), nodes.end());
    }
    return ring;
}

CutPlan plan_cut(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing) {
    return Planner(mesh, engine, drawn, drawing).run();
}

}  // namespace brelan
