#include "group/sound_joints.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "group/engine_mesh.h"
#include "group/sound_ground.h"
#include "group/sound_twins.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

// The nodes to the right and to the left of a line at one of its places.
struct NodePair {
    NodeNumber right, left;

    friend bool operator==(const NodePair&, const NodePair&) = default;
};

// A line at work: where it gets joints, what these part, and the nodes that come of it.
class Opening {
public:
    Opening(Mesh& mesh, Engine& engine, const SoundLine& line, const JointMaterial& material)
        : mesh_(mesh),
          engine_(engine),
          line_(line),
          material_(material),
          group_("group " + std::to_string(engine.group) + ": ") {}

    // The sides that the ground would hold at both ends.
    std::vector<Side> held_sides(std::span<const JointRecord> records) {
        std::vector<Side> held;
        if (!material_.parts_ground)
            return held;
        choose_edges(records);
        for (const std::size_t k : edges_)
            if (is_held(line_.nodes[k], line_.behind(k)) && is_held(line_.behind(k), line_.nodes[k]))
                held.push_back(side_at(k));
        return held;
    }

    OpenedLine open(std::span<const JointRecord> records) {
        choose_edges(records);
        for (const std::size_t k : edges_)
            for (const NodeNumber node : {line_.nodes[k], line_.behind(k)})
                if (material_.parts_ground)
                    part(node);
        for (const std::size_t k : edges_)
            pairs_.emplace(k, EdgePairs{pair_at(k, k, line_.behind(k)), pair_at(next(k), k, line_.nodes[k])});
        require_open();
        if (material_.parts_ground)
            move_elements();
        for (const std::size_t k : edges_) {
            const auto& [from, to] = pairs_.at(k);
            add_joint(mesh_, engine_, {{from.right, to.right, to.left, from.left}}, material_.material,
                      material_.attribute);
        }
        list_line();
        return std::move(opened_);
    }

private:
    struct EdgePairs {
        NodePair from, to;
    };
    // A node of the line: its sectors, and the node that each has where it is not the node itself. Where
    // there is no ground to one side of the line, that side has a node of its own.
    struct Knot {
        Sectors sectors;
        std::set<NodeNumber> lines;  // the other ends of its edges
        std::vector<Toe> toes;       // of earlier joints, which open where the ground is parted
        std::map<std::size_t, NodeNumber> nodes;
        std::optional<NodeNumber> beyond;
    };

    std::size_t next(std::size_t k) const { return (k + 1) % line_.nodes.size(); }
    Side side_at(std::size_t k) const { return side_between(line_.nodes[k], line_.behind(k)); }

    std::string way_text(std::size_t k) const {
        std::string way = "from ";
        way += text_of(node_point(mesh_, line_.nodes[k]));
        way += " to ";
        way += text_of(node_point(mesh_, line_.behind(k)));
        return way;
    }

    void choose_edges(std::span<const JointRecord> records) {
        std::set<Side> gone;
        for (std::size_t k = 0; k < line_.steps.size(); ++k) {
            const Step step = line_.steps[k];
            const NodeNumber a = line_.nodes[k], b = line_.behind(k);
            if (step != Step::side && step != Step::border)
                continue;
            if (!gone.insert(side_at(k)).second) {
                repeats_.insert(k);
                continue;
            }
            if (is_long_side_of_joint(mesh_, engine_, a, b))
                fail(group_ + way_text(k) + " there is " + name_of_joint(records, a, b) +
                     " already; expected one joint along a line");
            const Sectors ground = sectors_at(mesh_, engine_, a, {});
            if (!(ground.left_of(b) || material_.outer_line) || !(ground.right_of(b) || material_.inner_line))
                continue;
            edges_.push_back(k);
            knots_[a].lines.insert(b);
            knots_[b].lines.insert(a);
        }
    }

    // Looks how the line and earlier joints that close at a node part the ground round it.
    void look_round(NodeNumber node, Knot& knot) const {
        // Beside a joint of a width they stay closed: its twins move.
        if (material_.thickness == 0.0F)
            knot.toes = toes_at(mesh_, engine_, node);
        std::set<NodeNumber> lines = knot.lines;
        for (const Toe& toe : knot.toes)
            lines.insert(toe.from);
        knot.sectors = sectors_at(mesh_, engine_, node, lines);
    }

    // True where one ground lies to both sides of the way from a node to the next.
    bool is_held(NodeNumber node, NodeNumber other) {
        Knot& knot = knots_.at(node);
        look_round(node, knot);
        return beside(knot, node, other, Hand::left) == beside(knot, node, other, Hand::right);
    }

    // The ground that lies to the right of all edges that it meets keeps the node: a width does not move it.
    // Each other sector beside an edge gets one.
    void part(NodeNumber node) {
        Knot& knot = knots_.at(node);
        if (!knot.nodes.empty() || knot.beyond)
            return;
        look_round(node, knot);
        std::vector<std::optional<std::size_t>> rights, lefts;
        for (const std::size_t k : edges_) {
            const bool begins = line_.nodes[k] == node;
            if (!begins && line_.behind(k) != node)
                continue;
            const NodeNumber other = begins ? line_.behind(k) : line_.nodes[k];
            rights.push_back(beside(knot, node, other, begins ? Hand::right : Hand::left));
            lefts.push_back(beside(knot, node, other, begins ? Hand::left : Hand::right));
        }
        const auto keeper = std::find_if(rights.begin(), rights.end(), [&](const auto& sector) {
            return std::find(lefts.begin(), lefts.end(), sector) == lefts.end();
        });
        const auto take = [&](std::optional<std::size_t> sector, bool keeps) {
            if (sector ? knot.nodes.count(*sector) != 0 : knot.beyond.has_value())
                return;
            const NodeNumber now = keeps ? node : add_twin(mesh_, engine_, node, node_point(mesh_, node));
            if (sector)
                knot.nodes[*sector] = now;
            else
                knot.beyond = now;
        };
        take(keeper == rights.end() ? rights.front() : *keeper, true);
        for (std::size_t l = 0; l < rights.size(); ++l) {
            take(rights[l], false);
            take(lefts[l], false);
        }
        for (const Toe& toe : knot.toes) {
            if (const auto right = right_of(knot, toe))
                take(right, false);
            take(sector_of(knot, toe.element), false);
        }
    }

    // That of a continuum element which has the node.
    static std::size_t sector_of(const Knot& knot, ElementNumber e) {
        for (std::size_t w = 0;; ++w)
            if (knot.sectors.wedges.at(w).element == e)
                return knot.sectors.of[w];
    }

    // The ground to the right of an earlier joint that closes at a node; it counts with that to its left.
    static std::optional<std::size_t> right_of(const Knot& knot, const Toe& toe) {
        return toe.corner == 1 ? knot.sectors.left_of(toe.from) : knot.sectors.right_of(toe.from);
    }

    enum class Hand { left, right };

    // The sector on one hand of the way from a node to another. Without ground there it is the one at the
    // other end of what is open, if no edge lies between and the ground on the other hand is not the same.
    static std::optional<std::size_t> beside(const Knot& knot, NodeNumber node, NodeNumber other, Hand hand) {
        const auto ground = [&](Hand on, NodeNumber end) {
            return on == Hand::left ? knot.sectors.left_of(end) : knot.sectors.right_of(end);
        };
        const Hand back = hand == Hand::left ? Hand::right : Hand::left;
        const auto own = ground(hand, other), opposite = ground(back, other);
        if (own)
            return own;
        std::optional<std::size_t> across;
        for (const Wedge& wedge : knot.sectors.wedges) {
            const NodeNumber end = hand == Hand::left ? wedge.behind : wedge.before;
            if (end != other && end != node && !ground(back, end) && knot.lines.count(end) == 0)
                across = ground(hand, end);
        }
        return across == opposite ? std::nullopt : across;
    }

    NodeNumber node_of(const Knot& knot, NodeNumber node, std::optional<std::size_t> sector) const {
        if (!sector)
            return knot.beyond.value_or(node);
        const auto found = knot.nodes.find(*sector);
        return found == knot.nodes.end() ? node : found->second;
    }

    // The pair of an edge at the line's place k, seen along the line. A strip has twins of its own at each
    // place, over ground that stays.
    NodePair pair_at(std::size_t k, std::size_t edge, NodeNumber other) {
        const NodeNumber node = line_.nodes[k];
        if (!material_.parts_ground) {
            const auto [found, fresh] = strip_.try_emplace(k);
            if (fresh)
                found->second = add_twin(mesh_, engine_, node, node_point(mesh_, node));
            return {node, found->second};
        }
        const Knot& knot = knots_.at(node);
        const bool begins = k == edge;
        return {node_of(knot, node, beside(knot, node, other, begins ? Hand::right : Hand::left)),
                node_of(knot, node, beside(knot, node, other, begins ? Hand::left : Hand::right))};
    }

    void require_open() const {
        for (const auto& [k, pairs] : pairs_)
            if (pairs.from.right == pairs.from.left && pairs.to.right == pairs.to.left)
                fail(group_ + "expected a joint that can open, but " + way_text(k) +
                     " the ground holds it at both ends");
    }

    // Lines along the joint go by their side, others with the ground that they lie in.
    NodeNumber node_of_line(const Knot& knot, ElementNumber e, NodeNumber node, NodeNumber other) const {
        const Sectors& sectors = knot.sectors;
        if (knot.lines.count(other) != 0) {
            const Side side = side_between(node, other);
            const NodePair pair = pair_on(node, [&](std::size_t k) { return side_at(k) == side; }).second;
            return engine_.side_sign[e] >= 0 ? pair.left : pair.right;
        }
        for (const std::optional<std::size_t> sector : {sectors.left_of(other), sectors.right_of(other)})
            if (sector)
                return node_of(knot, node, sector);
        const Point at = node_point(mesh_, node), to = node_point(mesh_, other);
        for (std::size_t w = 0; w < sectors.wedges.size(); ++w) {
            const Wedge& wedge = sectors.wedges[w];
            if (is_solid(mesh_, wedge.element) && orientation(at, node_point(mesh_, wedge.behind), to) >= 0 &&
                orientation(at, to, node_point(mesh_, wedge.before)) >= 0)
                return node_of(knot, node, sectors.of[w]);
        }
        // Outside of all ground: to the left of the line or to its right.
        const auto [k, pair] = pair_on(
            node, [&](std::size_t edge) { return line_.nodes[edge] == node || line_.behind(edge) == node; });
        const bool is_left =
            orientation(node_point(mesh_, line_.nodes[k]), node_point(mesh_, line_.behind(k)), to) >= 0;
        return is_left == (engine_.side_sign[e] >= 0) ? pair.left : pair.right;
    }

    // The first edge that is sought at a node, which has one, and its pair there.
    template <class IsSought>
    std::pair<std::size_t, NodePair> pair_on(NodeNumber node, const IsSought& is_sought) const {
        const std::size_t k = *std::find_if(edges_.begin(), edges_.end(), is_sought);
        const EdgePairs& pairs = pairs_.at(k);
        return {k, line_.nodes[k] == node ? pairs.from : pairs.to};
    }

    void move_elements() {
        std::vector<NodeNumber> nodes;
        for (const auto& [node, knot] : knots_) {
            if (knot.nodes.size() + (knot.beyond ? 1 : 0) < 2)
                continue;
            nodes.push_back(node);
            for (std::size_t w = 0; w < knot.sectors.wedges.size(); ++w) {
                const Wedge& wedge = knot.sectors.wedges[w];
                for (const NodeNumber other : {wedge.before, wedge.behind})
                    if (knot.lines.count(other) == 0)
                        opened_.parted[{node, other}] = node_of(knot, node, knot.sectors.of[w]);
            }
            for (const Toe& toe : knot.toes)
                if (const auto right = right_of(knot, toe))
                    opened_.parted[{node, toe.from}] = node_of(knot, node, right);
        }
        std::vector<std::pair<ElementNumber, Corners>> altered;
        for (const ElementNumber e : elements_with(engine_, nodes)) {
            if (mesh_.type[e] == ELEMENT_DELETED)
                continue;
            Corners corners = corners_of(mesh_, e);
            const Corners before = corners;
            for (std::size_t i = 0; i < 4; ++i) {
                const NodeNumber node = before.n[i];
                const auto found = node.names_one() ? knots_.find(node) : knots_.end();
                if (found == knots_.end())
                    continue;
                const Knot& knot = found->second;
                if (mesh_.type[e] != ELEMENT_CONTINUUM) {
                    if (i < 2)
                        corners.n[i] = node_of_line(knot, e, node, before.n[1 - i]);
                    continue;
                }
                corners.n[i] = node_of(knot, node, sector_of(knot, e));
                for (const Toe& toe : knot.toes)
                    if (const auto right = right_of(knot, toe); toe.element == e && toe.corner == i && right)
                        corners.n[i] = node_of(knot, node, right);
            }
            if (!std::equal(corners.n, corners.n + 4, before.n))
                altered.emplace_back(e, corners);
        }
        for (const auto& [e, corners] : altered) {
            opened_.moved.push_back({e, corners_of(mesh_, e)});
            set_corners(mesh_, engine_, e, corners);
        }
    }

    // Where the nodes beside an edge and beside the next one differ, the line has both.
    void list_line() {
        SoundLine& line = opened_.line;
        line.closed = line_.closed;
        std::optional<NodePair> here;  // of the place that the line has come to, if that is listed
        Step by = Step::gap;           // the way there, if it is not
        const auto list = [&](const NodePair& pair, Step step) {
            if (!line.nodes.empty())
                line.steps.push_back(step);
            line.nodes.push_back(pair.right);
            opened_.twins.push_back(pair.left);
            here = pair;
        };
        const auto stand_on = [&](const NodePair& pair) {
            if (here != pair)
                list(pair, here ? Step::place : by);
        };
        for (std::size_t k = 0; k < line_.steps.size(); ++k) {
            const NodeNumber a = line_.nodes[k], b = line_.behind(k);
            const Step step = line_.steps[k];
            if (const auto edge = pairs_.find(k); edge != pairs_.end()) {
                stand_on(edge->second.from);
                list(edge->second.to, step);
            } else if (repeats_.count(k) != 0) {
                here.reset();
                by = Step::gap;
            } else if (step == Step::place || step == Step::gap) {
                if (!here)
                    stand_on({a, a});
                here.reset();
                by = step;
            } else {
                NodeNumber from = a, to = b;
                follow_side(opened_.parted, from, to);
                stand_on({from, from});
                list({to, to}, step);
            }
        }
        if (!line.closed) {
            if (!here && repeats_.count(line_.steps.size() - 1) == 0)
                stand_on({line_.nodes.back(), line_.nodes.back()});
            return;
        }
        const bool returns = here == NodePair{line.nodes.front(), opened_.twins.front()};
        if (returns) {
            line.nodes.pop_back();
            opened_.twins.pop_back();
        } else {
            line.steps.push_back(here ? Step::place : by);
        }
    }

    Mesh& mesh_;
    Engine& engine_;
    const SoundLine& line_;
    const JointMaterial& material_;
    std::string group_;
    std::vector<std::size_t> edges_;           // steps of the line that get a joint
    std::set<std::size_t> repeats_;            // steps that go a way again
    std::map<NodeNumber, Knot> knots_;         // the nodes of the edges
    std::map<std::size_t, EdgePairs> pairs_;   // by edge
    std::map<std::size_t, NodeNumber> strip_;  // twins of a strip, by place of the line
    OpenedLine opened_;
};

}  // namespace

std::vector<Side> held_sides(Mesh& mesh, Engine& engine, const SoundLine& line, const JointMaterial& material,
                             std::span<const JointRecord> records) {
    if (line.nodes.size() < 2)
        return {};
    return Opening(mesh, engine, line, material).held_sides(records);
}

OpenedLine open_along(Mesh& mesh, Engine& engine, const SoundLine& line, const JointMaterial& material,
                      std::span<const JointRecord> records) {
    if (line.nodes.size() < 2)
        return {line, line.nodes, {}, {}};
    return Opening(mesh, engine, line, material).open(records);
}

}  // namespace brelan
