// Beams and trusses: how they run along the ground, and over each other.
//
// A line that follows the sides of solids is a wall or a lining; nodes within its elements are worth a remark
// each. One that follows none is a strut or an anchor: it is tied at its own nodes, and passes over others as
// it is meant to.
#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "analysis/box_tree.h"
#include "analysis/joined_nodes.h"
#include "analysis/point_index.h"
#include "analysis/soundness_work.h"

namespace brelan {

namespace {

struct Line {
    std::int32_t element = 0, i = 0, j = 0;  // its place, its nodes
    Position from, to;
    bool along_side = false;  // its nodes are those of a side
};

// An element as it leaves one of its nodes.
struct Leaving {
    std::int32_t node = 0;
    ElementClass of = ElementClass::beam;
    std::int32_t material = 0;
    double angle = 0.0;
    std::int32_t line = 0;

    auto kin() const { return std::tuple{node, of, material}; }
};

Bounds box_round(const Position& a, const Position& b, double room) {
    return {{std::min(a.x, b.x) - room, std::min(a.y, b.y) - room},
            {std::max(a.x, b.x) + room, std::max(a.y, b.y) + room}};
}

class LineSearch {
public:
    explicit LineSearch(SoundnessWork& work) : work_(work), joined_to_solid_(work.mesh.nodes.size(), 0) {
        for (std::size_t n = 0; n < work.of_solid.size(); ++n)
            if (work.of_solid[n] != 0)
                joined_to_solid_[work.at(work.closed[n])] = 1;
        for (std::size_t i = 0; i < work.corners.size(); ++i) {
            const CornerPlaces& c = work.corners[i];
            if (!work.mesh.elements[i].is_line() || !c.complete())
                continue;
            Line line{static_cast<std::int32_t>(i),
                      c[0],
                      c[1],
                      work.mesh.point(c[0]),
                      work.mesh.point(c[1]),
                      work.is_side(closed(c[0]), closed(c[1]))};
            if (distance(line.from, line.to) > work.tolerance())
                lines_.push_back(line);
        }
    }

    void find() {
        if (lines_.empty())
            return;
        follow();
        find_nodes_within();
        find_crossings();
        find_in_solids();
    }

private:
    std::int32_t closed(std::int32_t node) const { return work_.closed[work_.at(node)]; }
    bool is_of_solid(std::int32_t node) const { return joined_to_solid_[work_.at(closed(node))] != 0; }
    std::size_t chain_of(std::size_t line) { return work_.at(chains_.find(static_cast<std::int32_t>(line))); }
    void add(Check check, const Line& line, std::int32_t other, const Position& at) {
        work_.add(check, {work_.number(line.element), 0, work_.number(other), at});
    }

    // Elements of one kind that go on from each other are a chain; one that turns back lies over the other.
    void follow() {
        std::vector<Leaving> leaving;
        for (std::size_t k = 0; k < lines_.size(); ++k) {
            const Line& line = lines_[k];
            const Element& e = work_.element(line.element);
            const double angle = std::atan2(line.to.y - line.from.y, line.to.x - line.from.x);
            const double back = std::atan2(line.from.y - line.to.y, line.from.x - line.to.x);
            leaving.push_back({line.i, e.of, e.words.material.value, angle, static_cast<std::int32_t>(k)});
            leaving.push_back({line.j, e.of, e.words.material.value, back, static_cast<std::int32_t>(k)});
        }
        std::sort(leaving.begin(), leaving.end(), [](const Leaving& a, const Leaving& b) {
            return std::tuple{a.kin(), a.angle, a.line} < std::tuple{b.kin(), b.angle, b.line};
        });
        for (std::size_t i = 0; i < leaving.size();) {
            std::size_t end = i + 1;
            while (end < leaving.size() && leaving[end].kin() == leaving[i].kin())
                ++end;
            meet(leaving, i, end);
            i = end;
        }
        tell_folded();
        passed_.assign(lines_.size(), 0);
        along_.assign(lines_.size(), 0);
        size_.assign(lines_.size(), 0);
        tied_.assign(lines_.size(), 0);
        for (std::size_t k = 0; k < lines_.size(); ++k) {
            ++size_[chain_of(k)];
            along_[chain_of(k)] += lines_[k].along_side ? 1 : 0;
            if (is_of_solid(lines_[k].i) || is_of_solid(lines_[k].j))
                tied_[chain_of(k)] = 1;
        }
    }

    void meet(const std::vector<Leaving>& leaving, std::size_t first, std::size_t end) {
        constexpr double BEND = 0.7;  // within 45 degrees or so
        for (std::size_t k = first; k < end && end - first > 1; ++k) {
            const std::size_t next = k + 1 == end ? first : k + 1;
            const Line &one = lines_[work_.at(leaving[k].line)], &two = lines_[work_.at(leaving[next].line)];
            if (next > k || end - first > 2)
                look_for_fold(leaving[k].node, one, two);
            // Lists are short but for stars, of which neighbours by angle tell enough.
            for (std::size_t l = k + 1; l < std::min(end, k + 5); ++l)
                if (std::cos(leaving[k].angle - leaving[l].angle) < -BEND)
                    chains_.join(leaving[k].line, leaving[l].line);
        }
    }

    void look_for_fold(std::int32_t node, const Line& one, const Line& two) {
        const std::int32_t a = one.i == node ? one.j : one.i, b = two.i == node ? two.j : two.i;
        if (a == b)
            return;
        const Position at = work_.mesh.point(node), p = work_.mesh.point(a), q = work_.mesh.point(b);
        const bool one_is_longer = distance(at, p) >= distance(at, q);
        if (distance_within(at, one_is_longer ? p : q, one_is_longer ? q : p, 0.0) <= work_.tolerance())
            folds_.emplace_back(std::max(one.element, two.element), std::min(one.element, two.element));
    }

    void tell_folded() {
        std::sort(folds_.begin(), folds_.end());
        folds_.erase(std::unique(folds_.begin(), folds_.end()), folds_.end());
        for (const auto& [later, earlier] : folds_)
            work_.add(Check::folded_line, {work_.number(later), 0, work_.number(earlier),
                                           middle(work_.mesh, work_.corners[work_.at(later)])});
    }

    bool is_free(std::size_t chain) const { return 2 * along_[chain] < size_[chain]; }

    // True for a node between two sides that lead from end to end.
    bool splits(const Line& line, std::int32_t node) const {
        return work_.is_side(closed(line.i), closed(node)) && work_.is_side(closed(node), closed(line.j));
    }

    // Nodes of solids within elements. A single one between two sides was meant to be a node of the line.
    void find_nodes_within() {
        const PlacedNodes of_solids = work_.nodes_of_solids();
        const std::vector<std::int32_t>& nodes = of_solids.nodes;
        const std::vector<Position>& points = of_solids.points;
        const PositionGrid grid(points);
        std::vector<std::pair<std::size_t, std::int32_t>> within;  // line, node
        std::vector<std::uint8_t> missed(work_.mesh.nodes.size(), 0);
        for (std::size_t k = 0; k < lines_.size(); ++k)
            grid.along(lines_[k].from, lines_[k].to, work_.tolerance(), [&](std::int32_t p) {
                const std::int32_t node = nodes[work_.at(p)];
                find_missed_node(lines_[k], node, missed);
                // One that a joint ties to an end is next to it, and none that is passed.
                if (closed(node) != closed(lines_[k].i) && closed(node) != closed(lines_[k].j) &&
                    distance_within(lines_[k].from, lines_[k].to, points[work_.at(p)], work_.tolerance()) <=
                        work_.tolerance())
                    within.emplace_back(k, node);
            });
        for (const auto& [k, node] : within)
            ++passed_[chain_of(k)];
        std::vector<std::uint8_t> told(lines_.size(), 0);
        for (const auto& [k, node] : within) {
            const std::size_t chain = chain_of(k);
            if (!is_free(chain) || (passed_[chain] == 1 && splits(lines_[k], node)))
                work_.add(Check::unjoined_line, {work_.number(lines_[k].element), work_.node_number(node), 0,
                                                 work_.mesh.point(node)});
            else if (std::exchange(told[chain], std::uint8_t{1}) == 0)
                work_.add(Check::free_line, {work_.number(lines_[k].element), 0, 0,
                                             middle(work_.mesh, work_.corners[work_.at(lines_[k].element)]),
                                             static_cast<double>(passed_[chain])});
        }
    }

    // A node of a line at the place of a solid's node, which it was meant to be.
    void find_missed_node(const Line& line, std::int32_t node, std::vector<std::uint8_t>& missed) {
        for (const std::int32_t end : {line.i, line.j})
            if (missed[work_.at(end)] == 0 && !is_of_solid(end) &&
                distance(work_.mesh.point(end), work_.mesh.point(node)) <= work_.tolerance()) {
                missed[work_.at(end)] = 1;
                work_.add(Check::unjoined_line,
                          {work_.number(line.element), work_.node_number(node), 0, work_.mesh.point(node)});
            }
    }

    // Where two lines cross, or one ends on the other between its nodes. Two that follow sides do not, or the
    // solids do not fit together either.
    void find_crossings() {
        if (std::all_of(lines_.begin(), lines_.end(), [](const Line& line) { return line.along_side; }))
            return;
        std::vector<Bounds> boxes;
        boxes.reserve(lines_.size());
        for (const Line& line : lines_)
            boxes.push_back(box_round(line.from, line.to, work_.tolerance()));
        BoxTree tree(boxes);
        constexpr std::size_t ENOUGH = 100;  // of one element
        for (std::size_t k = 0; k < lines_.size(); ++k) {
            if (lines_[k].along_side)
                continue;
            std::size_t found = 0;
            tree.meeting(boxes[k], [&](std::int32_t other) {
                const Line &one = lines_[k], &two = lines_[work_.at(other)];
                const bool again = !two.along_side && work_.at(other) >= k;
                if (again || found >= ENOUGH || share_a_node(one, two))
                    return true;
                if (const auto [crosses, at] = crossing(one, two); crosses) {
                    add(Check::crossing_lines, one, two.element, at);
                    ++found;
                }
                return true;
            });
        }
    }

    bool share_a_node(const Line& one, const Line& two) const {
        return closed(one.i) == closed(two.i) || closed(one.i) == closed(two.j) ||
               closed(one.j) == closed(two.i) || closed(one.j) == closed(two.j);
    }

    std::pair<bool, Position> crossing(const Line& one, const Line& two) const {
        const double from = cross(one.from, one.to, two.from), to = cross(one.from, one.to, two.to);
        const double first = cross(two.from, two.to, one.from), last = cross(two.from, two.to, one.to);
        const auto ends_on = [&](std::int32_t node, const Line& line) {
            return work_.of_solid[work_.at(node)] == 0 &&
                   distance_within(line.from, line.to, work_.mesh.point(node), work_.tolerance()) <=
                       work_.tolerance();
        };
        for (const std::int32_t node : {one.i, one.j})
            if (ends_on(node, two))
                return {true, work_.mesh.point(node)};
        for (const std::int32_t node : {two.i, two.j})
            if (ends_on(node, one))
                return {true, work_.mesh.point(node)};
        const double room_one = work_.tolerance() * distance(one.from, one.to);
        const double room_two = work_.tolerance() * distance(two.from, two.to);
        const bool crosses = std::min(std::abs(from), std::abs(to)) > room_one &&
                             std::min(std::abs(first), std::abs(last)) > room_two && from * to < 0.0 &&
                             first * last < 0.0;
        const double share = crosses ? from / (from - to) : 0.0;
        return {crosses,
                {two.from.x + share * (two.to.x - two.from.x), two.from.y + share * (two.to.y - two.from.y)}};
    }

    // Ends of lines that are at no node of a solid or of another line: within a solid they were meant to be
    // tied to it, and a truss is held by nothing there. Elements along a side without its nodes.
    struct InSolid {
        std::int32_t line = 0, node = 0;  // node NONE: the middle of the line
        bool found = false;
    };

    void find_in_solids() {
        std::vector<std::int32_t> uses(work_.mesh.nodes.size(), 0);
        for (std::size_t i = 0; i < work_.corners.size(); ++i)
            for (int k = 0; k < work_.corners[i].count; ++k)
                if (work_.corners[i][k] != MeshLists::NONE)
                    ++uses[work_.at(work_.corners[i][k])];
        std::vector<InSolid> sought;
        std::vector<Bounds> boxes;
        for (std::size_t k = 0; k < lines_.size(); ++k) {
            const Line& line = lines_[k];
            if (line.along_side)
                continue;
            const auto index = static_cast<std::int32_t>(k);
            const Position m{(line.from.x + line.to.x) / 2.0, (line.from.y + line.to.y) / 2.0};
            if (!is_free(chain_of(k)) || tied_[chain_of(k)] == 0) {
                sought.push_back({index, MeshLists::NONE, false});
                boxes.push_back(box_round(m, m, work_.tolerance()));
            }
            for (const std::int32_t node : {line.i, line.j})
                if (uses[work_.at(node)] == 1 && !is_held(node)) {
                    sought.push_back({index, node, false});
                    boxes.push_back(box_round(work_.mesh.point(node), work_.mesh.point(node), 0.0));
                }
        }
        BoxTree tree(boxes);
        for (const std::int32_t e : work_.single)
            tree.meeting(box_of(work_.mesh, work_.corners[work_.at(e)]), [&](std::int32_t k) {
                InSolid& s = sought[work_.at(k)];
                const Line& line = lines_[work_.at(s.line)];
                if (s.node == MeshLists::NONE && runs_along(line, e)) {
                    add(Check::line_beside_side, line, e,
                        middle(work_.mesh, work_.corners[work_.at(line.element)]));
                    s.found = true;
                } else if (s.node != MeshLists::NONE && holds(e, work_.mesh.point(s.node))) {
                    s.found = true;
                }
                return !s.found;
            });
        for (const InSolid& s : sought)
            if (s.node != MeshLists::NONE &&
                (s.found || work_.element(lines_[work_.at(s.line)].element).of == ElementClass::truss))
                work_.add(Check::loose_end, {work_.number(lines_[work_.at(s.line)].element),
                                             work_.node_number(s.node), 0, work_.mesh.point(s.node)});
        std::sort(work_.places(Check::line_beside_side).begin(), work_.places(Check::line_beside_side).end(),
                  [](const Place& a, const Place& b) { return a.element < b.element; });
    }

    // By its own codes, as the end of an anchor in rock.
    bool is_held(std::int32_t node) const {
        const Node& n = work_.mesh.nodes[work_.at(node)];
        return n.codes[0] != 0 && n.codes[1] != 0;
    }

    bool runs_along(const Line& line, std::int32_t e) const {
        const CornerPlaces& c = work_.corners[work_.at(e)];
        for (int k = 0; k < c.count; ++k) {
            const Position a = work_.mesh.point(c[k]), b = work_.mesh.point(c[(k + 1) % c.count]);
            if (is_on(a, b, line.from) && is_on(a, b, line.to))
                return true;
        }
        return false;
    }

    bool is_on(const Position& a, const Position& b, const Position& p) const {
        return distance(a, p) <= work_.tolerance() || distance(b, p) <= work_.tolerance() ||
               distance_within(a, b, p, work_.tolerance()) <= work_.tolerance();
    }

    bool holds(std::int32_t e, const Position& p) const {
        const CornerPlaces& c = work_.corners[work_.at(e)];
        for (int k = 0; k < c.count; ++k)
            if (cross(work_.mesh.point(c[k]), work_.mesh.point(c[(k + 1) % c.count]), p) < 0.0)
                return false;
        return true;
    }

    SoundnessWork& work_;
    std::vector<std::uint8_t> joined_to_solid_;  // by node place with joints closed
    std::vector<Line> lines_;
    UnionFind chains_{work_.mesh.elements.size()};
    std::vector<std::pair<std::int32_t, std::int32_t>> folds_;  // places, the later one first
    // By chain: its elements, those along sides, the nodes that it passes over, whether it ends at solids.
    std::vector<std::size_t> size_, along_, passed_;
    std::vector<std::uint8_t> tied_;
};

}  // namespace

void find_line_faults(SoundnessWork& work) {
    LineSearch(work).find();
}

}  // namespace brelan
