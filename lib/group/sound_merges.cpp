#include "group/sound_merges.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <vector>

#include "group/engine_mesh.h"
#include "group/midsides.h"
#include "group/sound_bends.h"
#include "group/sound_smoothing.h"
#include "plane/foot.h"
#include "plane/openings.h"

namespace brelan {

namespace {

constexpr double MERGE_BELOW = OPENING_20;
constexpr double MERGE_GAIN = 1.1;       // what is left must be better by this factor
constexpr double LEAST_MERGED = 1.0E-7;  // an opening that the digits of a mesh file cannot close
constexpr double DIGITS = 1.0E-7;        // of the size of the coordinates: off a straight line
constexpr double CLEAR = 1.2;            // tolerances: what stands nearer to a side may be of its line
constexpr int MERGE_SWEEPS = 3;

// A node that goes into another, and what this makes of its elements.
struct Merge {
    NodeNumber into;
    double shape = 0.0;
};

class Merger {
public:
    Merger(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing)
        : mesh_(mesh), engine_(engine), drawn_(drawn), drawing_(drawing) {}

    // The nodes of the elements round a node that has gone; none where it stays.
    std::set<NodeNumber> merge(NodeNumber node) {
        if (drawn_.nodes.count(node) != 0 || is_pinned(drawing_, node_point(mesh_, node)))
            return {};
        const Solids solids = solids_with(mesh_, engine_, node);
        const double before = shape_with(mesh_, solids, node, node_point(mesh_, node));
        std::set<NodeNumber> around;
        for (const Solid& solid : solids)
            around.insert(solid.nodes().begin(), solid.nodes().end());
        around.erase(node);
        const bool is_close = std::any_of(around.begin(), around.end(),
                                          [&](NodeNumber other) { return is_within_tolerance(node, other); });
        if ((!is_close && before >= MERGE_BELOW) || !are_solids_to_cut(solids, node))
            return {};
        const std::vector<NodeNumber> kept = kept_sides(node, around);
        if (engine_.frozen[node] != 0 || kept.size() == 1 || kept.size() > 2)
            return {};
        std::optional<Merge> best;
        for (const NodeNumber other : kept.empty() ? std::vector(around.begin(), around.end()) : kept) {
            if (!kept.empty() && !may_leave_line(node, kept, other))
                continue;
            const double needed =
                is_within_tolerance(node, other) ? LEAST_MERGED : std::max(MERGE_GAIN * before, LEAST_MERGED);
            const double shape = shape_without(solids, node, other);
            if (shape > needed && (!best || shape > best->shape))
                best = Merge{other, shape};
        }
        if (!best)
            return {};
        write(solids, node, best->into);
        return around;
    }

private:
    bool is_within_tolerance(NodeNumber a, NodeNumber b) const {
        const Point at = node_point(mesh_, a);
        return distance_64(at, node_point(mesh_, b)) < drawing_.tolerance;
    }

    // The other ends of the sides at a node that keep their line.
    std::vector<NodeNumber> kept_sides(NodeNumber node, const std::set<NodeNumber>& around) const {
        std::vector<NodeNumber> kept;
        std::copy_if(around.begin(), around.end(), std::back_inserter(kept), [&](NodeNumber other) {
            const Side side = side_between(node, other);
            return !users_of(mesh_, engine_, side).solids.empty() && is_kept(mesh_, engine_, drawn_, side);
        });
        return kept;
    }

    bool is_beside(const Point& from, const Point& to, const Point& at) const {
        return foot_on(from, to, at).distance < CLEAR * drawing_.tolerance;
    }

    // True for a node within the one straight line that it keeps, by the digits of its place, or as near to
    // the one that it goes into as things that are one. No other may stand so close beside what becomes a
    // side that the line may run through it.
    bool may_leave_line(NodeNumber node, const std::vector<NodeNumber>& kept, NodeNumber other) const {
        const Point at = node_point(mesh_, node);
        const double size = 1.0 + std::abs(static_cast<double>(at.x)) + std::abs(static_cast<double>(at.y));
        const Point from = node_point(mesh_, kept[0]), to = node_point(mesh_, kept[1]);
        const Foot foot = foot_on(from, to, at);
        const bool lies_between = foot.share > 0.0 && foot.share < 1.0 && foot.distance <= DIGITS * size;
        if (!lies_between && !is_within_tolerance(node, other))
            return false;
        for (const ElementNumber e :
             elements_near(engine_, from, to, static_cast<float>(CLEAR * drawing_.tolerance))) {
            if (!is_solid(mesh_, e))
                continue;
            const Solid solid = solid_of(mesh_, e);
            for (const NodeNumber beside : solid.nodes())
                if (beside != node && beside != kept[0] && beside != kept[1] &&
                    is_beside(from, to, node_point(mesh_, beside)))
                    return false;
        }
        return true;
    }

    // Nothing but solids that may be cut has the node.
    bool are_solids_to_cut(std::span<const Solid> solids, NodeNumber node) const {
        for (const ElementNumber e : elements_at(engine_, node)) {
            const Corners corners = corners_of(mesh_, e);
            if (mesh_.type[e] != ELEMENT_DELETED && !is_solid(mesh_, e) &&
                std::find(corners.n, corners.n + 4, node) != corners.n + 4)
                return false;
        }
        return std::all_of(solids.begin(), solids.end(),
                           [&](const Solid& solid) { return is_cuttable(mesh_, engine_, solid.element); });
    }

    // A solid with another node in the place of one; that node once where it had it already.
    static Solid with_other(const Solid& solid, NodeNumber node, NodeNumber other) {
        Solid after{solid.element, {}, 0};
        const bool has_both =
            std::find(solid.nodes().begin(), solid.nodes().end(), other) != solid.nodes().end();
        for (const NodeNumber n : solid.nodes())
            if (n != node || !has_both)
                after.node[after.count++] = n == node ? other : n;
        return after;
    }

    // The worst shape of what is left of the solids round a node that goes into another; below 0 where that
    // cannot be.
    double shape_without(std::span<const Solid> solids, NodeNumber node, NodeNumber other) const {
        std::vector<Solid> left;
        std::set<NodeNumber> opposite, beside;  // across the side, and all neighbours of the node
        for (const Solid& solid : solids) {
            const Solid after = with_other(solid, node, other);
            if (after.count == solid.count) {
                left.push_back(after);
                continue;
            }
            const auto at = static_cast<std::size_t>(std::find(solid.node.begin(), solid.node.end(), node) -
                                                     solid.node.begin());
            if (solid.behind(at) != other && solid.before(at) != other)
                return -1.0;  // GCOVR_EXCL_LINE: across a quadrilateral, where no random deck comes
            if (after.count == 3)
                left.push_back(after);
            else
                opposite.insert(solid.behind(at) == other ? solid.before(at) : solid.behind(at));
        }
        for (const Solid& solid : solids)
            for (std::size_t i = 0; i < solid.count; ++i)
                if (solid.node[i] == node)
                    beside.insert({solid.behind(i), solid.before(i)});
        // Two sides become one where a triangle vanishes, and nowhere else.
        for (const Solid& solid : solids_with(mesh_, engine_, other))
            for (std::size_t i = 0; i < solid.count; ++i)
                if (solid.node[i] == other)
                    for (const NodeNumber end : {solid.behind(i), solid.before(i)})
                        if (end != node && beside.count(end) != 0 && opposite.count(end) == 0)
                            return -1.0;
        return left.empty() ? -1.0 : shape_with(mesh_, left, other, node_point(mesh_, other));
    }

    void write(std::span<const Solid> solids, NodeNumber node, NodeNumber other) {
        for (const Solid& solid : solids) {
            const Solid after = with_other(solid, node, other);
            if (after.count < 3) {
                mesh_.type[solid.element] = ELEMENT_DELETED;
                continue;
            }
            ask_for_midsides(mesh_, solid.element, solid.element);
            set_corners(mesh_, engine_, solid.element,
                        {{after.node[0], after.node[1], after.node[2],
                          after.count == 4 ? after.node[3] : NodeNumber{}}});
        }
        move_sides(drawn_.sides, solids, node, other);
        move_sides(drawn_.found, solids, node, other);
        // A free line looks for nodes by their places: where a lower number lies, this one is never found.
        move_node(mesh_, engine_, node, node_point(mesh_, NodeNumber(1)));
    }

    static void move_sides(Sides& sides, std::span<const Solid> solids, NodeNumber node, NodeNumber other) {
        for (const Solid& solid : solids)
            for (const NodeNumber n : solid.nodes())
                if (n != node && sides.erase(side_between(node, n)) != 0 && n != other)
                    sides.insert(side_between(other, n));
    }

    Mesh& mesh_;
    Engine& engine_;
    Drawn& drawn_;
    const Drawing& drawing_;
};

}  // namespace

void merge_nodes(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing, CutPlan& plan,
                 std::set<NodeNumber>& nodes, NodeNumber last_before) {
    Merger merger(mesh, engine, drawn, drawing);
    std::set<NodeNumber> waiting(nodes.upper_bound(last_before), nodes.end()), gone;
    for (int sweep = 0; sweep < MERGE_SWEEPS && !waiting.empty(); ++sweep) {
        std::set<NodeNumber> next;
        for (const NodeNumber node : waiting) {
            if (gone.count(node) != 0)
                continue;
            const std::set<NodeNumber> around = merger.merge(node);
            if (around.empty())
                continue;
            gone.insert(node);
            next.insert(around.upper_bound(last_before), around.end());
        }
        waiting = std::move(next);
    }
    for (const NodeNumber node : gone)
        nodes.erase(node);
    for (auto& [side, points] : plan.sides)
        points.erase(std::remove_if(points.begin(), points.end(),
                                    [&](const SidePoint& point) { return gone.count(point.node) != 0; }),
                     points.end());
}

}  // namespace brelan
