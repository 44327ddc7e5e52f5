#include "group/sound_moves.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <tuple>

#include "group/engine_mesh.h"
#include "plane/box.h"
#include "plane/foot.h"
#include "plane/openings.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

// A move must leave this much of an opening, or this share of what was there.
constexpr double WELL_SHAPED = OPENING_30, STILL_GOOD = OPENING_20;
constexpr double SHARE_KEPT = 0.8;
constexpr double NEAR = 0.15;          // of a side: a node so near to the drawing may move for STILL_GOOD
constexpr double CLEAR_OF_PINS = 0.3;  // of a side: least distance of a moved node from a pin that is none
constexpr int ROUNDS = 2;              // a move may bring others within reach

class Mover {
public:
    Mover(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing,
          std::span<const Solids> met_before)
        : mesh_(mesh), engine_(engine), drawn_(drawn), drawing_(drawing), met_before_(met_before) {}

    std::set<NodeNumber> run() {
        for (std::size_t k = 0; k < drawing_.segments.size(); ++k)
            for (const Solid& solid : met_by(k))
                for (const NodeNumber node : solid.nodes())
                    if (is_on(mesh_, drawing_, drawing_.segments[k], node) && on_drawing_.insert(node).second)
                        straighten(node, drawing_.segments[k]);
        take_pins();
        for (int round = 0; round < ROUNDS; ++round)
            if (!take_crossings())
                break;
        return std::move(on_drawing_);
    }

private:
    // The solids that a segment meets, as they were found before as long as no node has moved. They hold
    // until the next call.
    std::span<const Solid> met_by(std::size_t k) {
        if (!has_moved_)
            return met_before_[k];
        met_ = solids_met_by(mesh_, engine_, drawing_, drawing_.segments[k]);
        return met_;
    }

    void move(NodeNumber node, const Point& place) {
        move_node(mesh_, engine_, node, place);
        has_moved_ = true;
    }

    // A node that is nearly on a segment goes onto it, if it may.
    void straighten(NodeNumber node, const DrawnSegment& segment) {
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, node);
        if (freedom.freedom == Freedom::stays)
            return;
        const Point at = node_point(mesh_, node);
        const Point place =
            freedom.freedom == Freedom::moves
                ? point_between(segment.from, segment.to, foot_on(segment.from, segment.to, at).share)
                : meeting_of(freedom.from, freedom.to, segment.from, segment.to);
        if (distance_64(at, place) < drawing_.tolerance && worst_of(node, place) > 0.0)
            move(node, place);
    }

    // Moves corners of the solids that hold pins onto these, the nearest pairs first.
    void take_pins() {
        struct Pair {
            double cost;
            std::size_t pin;
            NodeNumber node;

            auto key() const { return std::tie(cost, pin, node); }
        };
        std::vector<Pair> pairs;
        std::vector<bool> taken(drawing_.pins.size(), false);
        for (std::size_t i = 0; i < drawing_.pins.size(); ++i) {
            const Point& pin = drawing_.pins[i];
            const Solids solids = solids_holding(mesh_, engine_, drawing_, pin);
            taken[i] = solids.empty();  // beyond the ground
            for (const Solid& solid : solids) {
                double longest = 0.0;
                for (std::size_t k = 0; k < solid.count; ++k) {
                    const Point at = node_point(mesh_, solid.node[k]);
                    longest = std::max(longest, distance_64(at, node_point(mesh_, solid.behind(k))));
                }
                for (const NodeNumber node : solid.nodes()) {
                    const Point at = node_point(mesh_, node);
                    const double distance = distance_64(at, pin);
                    pairs.push_back({distance < drawing_.tolerance ? 0.0 : distance / longest, i, node});
                }
            }
        }
        std::sort(pairs.begin(), pairs.end(),
                  [](const Pair& one, const Pair& two) { return one.key() < two.key(); });
        for (const Pair& pair : pairs)
            if (!taken[pair.pin])
                taken[pair.pin] = take_pin(drawing_.pins[pair.pin], pair.node, pair.cost);
        for (std::size_t i = 0; i < taken.size(); ++i)
            if (!taken[i])
                open_pins_.push_back(drawing_.pins[i]);
    }

    // True when the node is at the pin.
    bool take_pin(const Point& pin, NodeNumber node, double cost) {
        const Point at = node_point(mesh_, node);
        if (distance_64(at, pin) < drawing_.tolerance) {
            move_exactly(node, pin);
            return true;
        }
        if (on_drawing_.count(node) != 0 && !may_leave(node, pin))
            return false;
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, node);
        const bool may = freedom.freedom == Freedom::moves ||
                         (freedom.freedom == Freedom::slides && is_between(freedom, pin));
        if (!may || !try_move(node, pin, cost))
            return false;
        pinned_.insert(node);
        return true;
    }

    // A node within the tolerance of a pin: it goes there if it may, and stands for it if not.
    void move_exactly(NodeNumber node, const Point& pin) {
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, node);
        pinned_.insert(node);
        on_drawing_.insert(node);
        if (freedom.freedom == Freedom::moves && worst_of(node, pin) > 0.0)
            move(node, pin);
    }

    bool is_between(const NodeFreedom& freedom, const Point& point) const {
        const Foot foot = foot_on(freedom.from, freedom.to, point);
        const double size = distance_64(freedom.from, freedom.to);
        return foot.share > 0.0 && foot.share < 1.0 && foot.distance <= 1.0E-6 * size;
    }

    // A node that lies on the drawing already may go along it, where all that is drawn through it goes on.
    bool may_leave(NodeNumber node, const Point& place) const {
        const auto goes_on = [&](const DrawnSegment& segment) {
            return !is_on(mesh_, drawing_, segment, node) || is_on(drawing_, segment, place);
        };
        return pinned_.count(node) == 0 &&
               std::all_of(drawing_.segments.begin(), drawing_.segments.end(), goes_on);
    }

    double worst_of(NodeNumber node, const Point& place) const {
        return worst_shape(mesh_, solids_with(mesh_, engine_, node), node, place);
    }

    // True where no other corner of the elements round a node is at the place already.
    bool is_free_place(NodeNumber node, const Point& place) const {
        for (const Solid& solid : solids_with(mesh_, engine_, node))
            for (const NodeNumber other : solid.nodes())
                if (other != node && distance_64(place, node_point(mesh_, other)) < drawing_.tolerance)
                    return false;
        return true;
    }

    bool is_good(NodeNumber node, double after, double cost) const {
        const double before = worst_of(node, node_point(mesh_, node));
        return before > 0.0 && after >= std::min(cost < NEAR ? STILL_GOOD : WELL_SHAPED, SHARE_KEPT * before);
    }

    bool try_move(NodeNumber node, const Point& place, double cost) {
        if (!is_good(node, worst_of(node, place), cost) || !is_free_place(node, place))
            return false;
        move(node, place);
        on_drawing_.insert(node);
        return true;
    }

    struct Candidate {
        double cost;
        std::size_t segment;
        Side side;
        NodeNumber node;

        auto key() const { return std::tie(cost, segment, side, node); }
    };

    // True when a node has moved.
    bool take_crossings() {
        std::vector<Candidate> candidates;
        for (std::size_t k = 0; k < drawing_.segments.size(); ++k) {
            const DrawnSegment& segment = drawing_.segments[k];
            std::vector<Side> seen;
            for (const Solid& solid : met_by(k))
                for (std::size_t i = 0; i < solid.count; ++i)
                    seen.push_back(side_between(solid.node[i], solid.behind(i)));
            std::sort(seen.begin(), seen.end());
            seen.erase(std::unique(seen.begin(), seen.end()), seen.end());
            for (const Side& side : seen) {
                if (!crosses(mesh_, drawing_, segment, side))
                    continue;
                const Point a = node_point(mesh_, side.first), b = node_point(mesh_, side.second);
                const double share = foot_on(a, b, meeting_of(a, b, segment.from, segment.to)).share;
                candidates.push_back({share, k, side, side.first});
                candidates.push_back({1.0 - share, k, side, side.second});
            }
        }
        std::sort(candidates.begin(), candidates.end(),
                  [](const Candidate& one, const Candidate& two) { return one.key() < two.key(); });
        bool moved = false;
        for (const Candidate& candidate : candidates)
            if (candidate.cost <= 0.5 || drawing_.segments[candidate.segment].only_moves)
                moved = take_crossing(candidate) || moved;
        return moved;
    }

    bool take_crossing(const Candidate& candidate) {
        const DrawnSegment& segment = drawing_.segments[candidate.segment];
        if (!crosses(mesh_, drawing_, segment, candidate.side) || on_drawing_.count(candidate.node) != 0)
            return false;
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, candidate.node);
        if (freedom.freedom == Freedom::stays)
            return false;
        const Point a = node_point(mesh_, candidate.side.first), b = node_point(mesh_, candidate.side.second);
        const Point at = node_point(mesh_, candidate.node);
        std::vector<Point> places;
        if (freedom.freedom == Freedom::slides) {
            const Point place = meeting_of(freedom.from, freedom.to, segment.from, segment.to);
            if (is_between(freedom, place) && is_on(drawing_, segment, place))
                places.push_back(place);
        } else {
            places.push_back(meeting_of(a, b, segment.from, segment.to));
            const double share = foot_on(segment.from, segment.to, at).share;
            if (share > 0.0 && share < 1.0)
                places.push_back(point_between(segment.from, segment.to, share));
        }
        std::optional<Point> best;
        double best_shape = 0.0;
        const double side_length = distance_64(a, b);
        for (const Point& place : places) {
            const bool clear = std::none_of(open_pins_.begin(), open_pins_.end(), [&](const Point& pin) {
                return distance_64(pin, place) < CLEAR_OF_PINS * side_length;
            });
            if (!clear || !is_free_place(candidate.node, place))
                continue;
            const double shape = worst_of(candidate.node, place);
            if (!best || shape > best_shape) {
                best = place;
                best_shape = shape;
            }
        }
        const bool must = segment.only_moves && best && best_shape > 0.0;
        if (!best || (!must && !is_good(candidate.node, best_shape, candidate.cost)))
            return false;
        move(candidate.node, *best);
        on_drawing_.insert(candidate.node);
        return true;
    }

    Mesh& mesh_;
    Engine& engine_;
    const Drawn& drawn_;
    const Drawing& drawing_;
    std::span<const Solids> met_before_;  // by each segment
    bool has_moved_ = false;
    Solids met_;
    std::set<NodeNumber> on_drawing_, pinned_;
    std::vector<Point> open_pins_;  // that no node could take
};

// The box of two points with the room of the tolerance, and of what rounding takes from that.
struct Reach {
    Reach(const Point& from, const Point& to, double tolerance)
        : box(box_of(from, to)), room(1.001 * tolerance) {}

    bool meets_box_of(const Mesh& mesh, const Solid& solid) const {
        Box of = box_of(node_point(mesh, solid.node[0]), node_point(mesh, solid.node[1]));
        for (std::size_t i = 2; i < solid.count; ++i)
            of.include(node_point(mesh, solid.node[i]));
        const auto apart = [&](float low, float high) {
            return static_cast<double>(low) - static_cast<double>(high) > room;
        };
        return !apart(box.x0, of.x1) && !apart(of.x0, box.x1) && !apart(box.y0, of.y1) &&
               !apart(of.y0, box.y1);
    }

    Box box;
    double room;
};

}  // namespace

Solids solids_met_by(const Mesh& mesh, Engine& engine, const Drawing& drawing, const DrawnSegment& segment) {
    Solids solids;
    const Reach reach(segment.from, segment.to, drawing.tolerance);
    for (const ElementNumber e : elements_over(engine, segment.reach)) {
        if (!is_solid(mesh, e))
            continue;
        const Solid solid = solid_of(mesh, e);
        if (!reach.meets_box_of(mesh, solid))
            continue;
        // Met are those with corners on both sides of the line or on it; a few more do no harm.
        bool left = false, right = false;
        for (std::size_t i = 0; i < solid.count && !(left && right); ++i) {
            const int side = orientation(segment.from, segment.to, node_point(mesh, solid.node[i]));
            left = left || side > 0;
            right = right || side < 0;
        }
        const auto has_node_on = [&] {
            const std::span<const NodeNumber> nodes = solid.nodes();
            return std::any_of(nodes.begin(), nodes.end(),
                               [&](NodeNumber node) { return is_on(mesh, drawing, segment, node); });
        };
        if (((left && right) || has_node_on()) && is_cuttable(mesh, engine, e))
            solids.push_back(solid);
    }
    return solids;
}

Solids solids_holding(const Mesh& mesh, Engine& engine, const Drawing& drawing, const Point& point) {
    Solids solids;
    const Reach reach(point, point, drawing.tolerance);
    const Box wide = reach.box.with_room({}, static_cast<float>(drawing.tolerance));
    for (const ElementNumber e : elements_over(engine, wide)) {
        if (!is_solid(mesh, e))
            continue;
        const Solid solid = solid_of(mesh, e);
        if (!reach.meets_box_of(mesh, solid))
            continue;
        const Outline outline = outline_of(mesh, solid);
        bool inside = true, near = false;
        for (std::size_t i = 0; i < solid.count && inside; ++i)
            inside = orientation(outline.corner[i], outline.corner[(i + 1) % solid.count], point) >= 0;
        for (std::size_t i = 0; i < solid.count && !inside && !near; ++i)
            near = foot_on(outline.corner[i], outline.corner[(i + 1) % solid.count], point).distance <
                   drawing.tolerance;
        if ((inside || near) && is_cuttable(mesh, engine, e))
            solids.push_back(solid);
    }
    return solids;
}

bool crosses(const Mesh& mesh, const Drawing& drawing, const DrawnSegment& segment, const Side& side) {
    const Point a = node_point(mesh, side.first), b = node_point(mesh, side.second);
    return orientation(segment.from, segment.to, a) * orientation(segment.from, segment.to, b) < 0 &&
           orientation(a, b, segment.from) * orientation(a, b, segment.to) < 0 &&
           !is_on(mesh, drawing, segment, side.first) && !is_on(mesh, drawing, segment, side.second);
}

bool is_on(const Mesh& mesh, const Drawing& drawing, const DrawnSegment& segment, NodeNumber node) {
    return is_on(drawing, segment, node_point(mesh, node));
}

std::set<NodeNumber> move_onto(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing,
                               std::span<const Solids> met) {
    return Mover(mesh, engine, drawn, drawing, met).run();
}

}  // namespace brelan
