// Drawn pieces: in ground that can be cut each is a chain of sides of elements, and what lies along it is as
// long.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "lib/group/sound_cut/joint_crossings.h"
#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

struct OnPiece {
    int node = 0;
    double along = 0.0, off = 0.0;  // from the start, and from the piece
};

class LineJudge {
public:
    LineJudge(const Judgement& judgement, const DrawnPath& path) : j_(judgement), path_(path) {
        for (const CutSolid& solid : j_.run.before.solids)
            if (std::find(j_.deck.listed.begin(), j_.deck.listed.end(), solid.number) != j_.deck.listed.end())
                listed_.push_back(&solid);
        if (path_.group <= j_.deck.groups_of_first_deck)
            between_.emplace(j_.run.reread);
        crossings_ = crossings_of_joint(path, j_.same);
        find_elements();
    }

    void judge() {
        for (const DrawnPiece& piece : path_.pieces) {
            piece_ = &piece;
            if (!piece.is_cut) {
                gap_ = true;
                if (piece.places_start)
                    judge_end(piece.points.front(), piece.points[1]);
                if (piece.places_end)
                    judge_end(piece.points.back(), piece.points[piece.points.size() - 2]);
                continue;
            }
            for (std::size_t k = 0; k + 1 < piece.points.size(); ++k)
                judge_edge(k);
        }
        judge_elements();
    }

private:
    std::string name() const {
        return "group " + std::to_string(path_.group) + ", segment " + std::to_string(piece_->segment) + ": ";
    }
    void add(const std::string& text) const { j_.add(Law::line, name() + text); }

    // The sides that line elements and joints of the group stand on.
    void find_elements() {
        for (const CutLine& line : j_.run.after.lines)
            if (path_.line_type >= 2 && line.material == path_.line_material)
                own_.insert(side_of(j_.mesh.root(line.from), j_.mesh.root(line.to)));
        for (const CutJoint& joint : j_.run.after.joints)
            if (path_.joint_material != 0 && joint.material == path_.joint_material)
                own_.insert(side_of(j_.mesh.root(joint.corners[0]), j_.mesh.root(joint.corners[1])));
    }

    bool is_in_crossing(const Spot& p) const {
        return std::any_of(crossings_.begin(), crossings_.end(), [&](const JointCrossing& crossing) {
            return distance(crossing.at, p) <= crossing.room;
        });
    }

    bool is_listed(const Spot& p) const {
        return std::any_of(listed_.begin(), listed_.end(), [&](const CutSolid* solid) {
            bool inside = true;
            std::vector<Spot> corners;
            for (const int n : solid->corners)
                for (const CutNode& node : j_.run.before.nodes)
                    if (node.number == n)
                        corners.push_back(node.at);
            for (std::size_t i = 0; i < corners.size(); ++i)
                inside = inside && cross(corners[i], corners[(i + 1) % corners.size()], p) > 0.0;
            return inside;
        });
    }

    // Ground beside a spot of a piece from a to b that a cut must reach.
    bool is_ground(const Spot& p, const Spot& a, const Spot& b) const {
        const double length = distance(a, b), reach = 4.0 * j_.rounding;
        const double nx = -(b.y - a.y) / length * reach, ny = (b.x - a.x) / length * reach;
        return std::any_of(&SIDES[0], &SIDES[2], [&](double side) {
            const Spot beside{p.x + side * nx, p.y + side * ny};
            return j_.mesh.covers(beside) && !is_listed(beside);
        });
    }
    bool is_ground_between(const Spot& a, const Spot& b, double from, double to) const {
        constexpr int samples = 9;
        const double length = distance(a, b);
        for (int i = 1; i <= samples; ++i) {
            const double t = (from + (to - from) * i / (samples + 1)) / length;
            const Spot p{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
            if (distance_to_border(p) > j_.same && is_ground(p, a, b) &&  // nearer than that they are one
                is_seen(p, a, b))
                return true;
        }
        return false;
    }

    // A second deck sees of the lines of the first what its mesh tells: other materials beside it, elements
    // along it. Right beside a crossing are those of the other line.
    bool is_seen(const Spot& p, const Spot& a, const Spot& b) const {
        if (!between_)
            return true;
        const double length = distance(a, b), reach = 4.0 * j_.rounding;
        if (length == 0.0)
            return false;
        const double nx = -(b.y - a.y) / length * reach, ny = (b.x - a.x) / length * reach;
        const CutSolid *left = between_->solid_at({p.x + nx, p.y + ny}),
                       *right = between_->solid_at({p.x - nx, p.y - ny});
        if (left == nullptr || right == nullptr)
            return true;
        const double room = std::max(j_.same, reach) * length;
        const auto runs_here = [&](int first, int last) {
            const Spot &from = between_->at(first), &to = between_->at(last);
            return distance_to(p, from, to) <= reach && std::abs(cross(a, b, from)) <= room &&
                   std::abs(cross(a, b, to)) <= room;
        };
        const CutMesh& mesh = between_->mesh;
        return (left->material != right->material &&
                std::any_of(between_->sides.begin(), between_->sides.end(),
                            [&](const auto& side) {
                                const auto& [ends, solids] = side;
                                return solids.size() == 2 &&
                                       mesh.solids[solids[0]].material != mesh.solids[solids[1]].material &&
                                       runs_here(ends.first, ends.second);
                            })) ||
               std::any_of(mesh.lines.begin(), mesh.lines.end(),
                           [&](const CutLine& line) { return runs_here(line.from, line.to); }) ||
               std::any_of(mesh.joints.begin(), mesh.joints.end(), [&](const CutJoint& joint) {
                   return runs_here(joint.corners[0], joint.corners[1]);
               });
    }

    // An end of a line of the first deck that the second can tell from the line itself: what it sees there
    // does not go straight on.
    bool is_seen_end(const Spot& p) const {
        if (!between_)
            return true;
        std::vector<Spot> seen;
        for (const auto& [side, solids] : between_->sides) {
            const Spot &a = between_->at(side.first), &b = between_->at(side.second);
            const bool from = distance(a, p) <= j_.same, to = distance(b, p) <= j_.same;
            if (from != to && is_seen({(a.x + b.x) / 2.0, (a.y + b.y) / 2.0}, a, b))
                seen.push_back(from ? b : a);
        }
        return seen.size() > 2 || seen.size() == 1 ||
               (seen.size() == 2 && distance_to(p, seen[0], seen[1]) > 4.0 * j_.rounding);
    }

    // The part of a piece within the rectangle of the ground, as shares; none where it runs outside.
    bool clip(const Spot& a, const Spot& b, double& from, double& to) const {
        from = 0.0, to = 1.0;
        const auto cut = [&](double at, double step, double low, double high) {
            if (std::abs(step) < 1.0E-12)
                return at >= low - j_.rounding && at <= high + j_.rounding;
            const double t0 = (low - at) / step, t1 = (high - at) / step;
            from = std::max(from, std::min(t0, t1));
            to = std::min(to, std::max(t0, t1));
            return from < to;
        };
        return cut(a.x, b.x - a.x, j_.deck.low.x, j_.deck.high.x) &&
               cut(a.y, b.y - a.y, j_.deck.low.y, j_.deck.high.y);
    }

    // An end that a segment of the path makes a node.
    bool is_placed(const Spot& p) const {
        return std::any_of(path_.pieces.begin(), path_.pieces.end(), [&](const DrawnPiece& piece) {
            return (piece.places_start && distance(p, piece.points.front()) <= j_.same) ||
                   (piece.places_end && distance(p, piece.points.back()) <= j_.same);
        });
    }

    void judge_end(const Spot& p, const Spot& towards) const {
        if (distance(p, towards) <= j_.same || !is_ground(p, p, towards) || !is_seen_end(p))
            return;
        for (const int n : j_.mesh.solid_nodes)
            if (distance(j_.mesh.at(n), p) <= j_.same)
                return;
        add("no node at its end " + words(p));
    }

    std::vector<OnPiece> nodes_on(const Spot& a, const Spot& b) const {
        const double length = distance(a, b), reach = 1.001 * j_.same;
        std::vector<OnPiece> nodes;
        std::set<int> seen;
        for (const int n : j_.mesh.solid_nodes) {
            const Spot& p = j_.mesh.at(n);
            if (p.x < std::min(a.x, b.x) - reach || p.x > std::max(a.x, b.x) + reach ||
                p.y < std::min(a.y, b.y) - reach || p.y > std::max(a.y, b.y) + reach)
                continue;
            const double off = distance_to(p, a, b);
            if (off <= reach && seen.insert(j_.mesh.root(n)).second)
                nodes.push_back({j_.mesh.root(n), share_along(p, a, b) * length, off});
        }
        std::sort(nodes.begin(), nodes.end(), [](const OnPiece& u, const OnPiece& v) {
            return u.along < v.along || (u.along == v.along && u.off < v.off);
        });
        return nodes;
    }

    double distance_to_border(const Spot& p) const {
        return std::min({std::abs(p.x - j_.deck.low.x), std::abs(p.x - j_.deck.high.x),
                         std::abs(p.y - j_.deck.low.y), std::abs(p.y - j_.deck.high.y)});
    }

    // A node that was there before, and whole elements that an earlier outline selects have their border
    // there.
    bool is_held_by_materials(int node) const {
        const bool selects =
            std::any_of(j_.run.paths.begin(), j_.run.paths.end(), [&](const DrawnPath& path) {
                return path.group < path_.group && std::abs(path.type) > 2 && !path.exact;
            });
        const auto* old = before(node);
        if (!selects || old == nullptr || distance(old->at, j_.mesh.at(node)) > 0.0)
            return false;
        return std::any_of(j_.mesh.sides.begin(), j_.mesh.sides.end(), [&](const auto& side) {
            const auto& [ends, solids] = side;
            if ((ends.first != node && ends.second != node) || solids.size() != 2)
                return false;
            const int other = ends.first == node ? ends.second : ends.first;
            return j_.run.after.solids[solids[0]].material != j_.run.after.solids[solids[1]].material &&
                   !is_on(path_, j_.mesh.at(other));
        });
    }

    // Nodes that other things hold may be off by TOLSAME.
    bool gives_way(int node, const Spot& a, const Spot& b) const {
        const double room = 1.01 * j_.same;
        const Spot& p = j_.mesh.at(node);
        if (distance_to_border(p) <= room || is_held_by_materials(node))
            return true;
        for (const int n : j_.run.frozen_codes)
            if (const auto at = before(n); at != nullptr && distance(at->at, p) <= room)
                return true;
        // A second deck holds those whose codes it reads.
        if (path_.group > j_.deck.groups_of_first_deck && j_.deck.groups_of_first_deck > 0)
            for (const CutNode& held : j_.run.reread.nodes)
                if (distance(held.at, p) <= room &&
                    std::binary_search(j_.run.still_frozen.begin(), j_.run.still_frozen.end(), held.number))
                    return true;
        for (const int n : j_.deck.frozen)
            if (const auto at = before(n); at != nullptr && distance(at->at, p) <= room)
                return true;
        for (const DrawnPath& path : j_.run.paths)
            for (const DrawnPiece& piece : path.pieces)
                for (std::size_t k = 0; k + 1 < piece.points.size(); ++k) {
                    const Spot &from = piece.points[k], &to = piece.points[k + 1];
                    const bool itself = distance(from, a) == 0.0 && distance(to, b) == 0.0;
                    if (!itself && distance_to(p, from, to) <= room)
                        return true;
                }
        return false;
    }
    bool is_drawn_later(const Spot& p) const {
        return std::any_of(j_.run.paths.begin(), j_.run.paths.end(),
                           [&](const DrawnPath& path) { return path.group > path_.group && is_on(path, p); });
    }
    bool is_on(const DrawnPath& path, const Spot& p) const {
        return std::any_of(path.pieces.begin(), path.pieces.end(), [&](const DrawnPiece& piece) {
            for (std::size_t k = 0; k + 1 < piece.points.size(); ++k)
                if (distance_to(p, piece.points[k], piece.points[k + 1]) <= j_.same)
                    return true;
            return false;
        });
    }
    // What later groups draw over an end that this one leaves open goes on beyond its line: from the first of
    // the nodes, along sides that none of its elements stand on.
    double length_beyond(const std::vector<int>& nodes) const {
        double length = 0.0;
        for (std::size_t i = 0; i + 1 < nodes.size(); ++i) {
            const Spot &from = j_.mesh.at(nodes[i]), &to = j_.mesh.at(nodes[i + 1]);
            if (own_.contains(side_of(nodes[i], nodes[i + 1])) || !is_drawn_later(from))
                break;
            length += distance(from, to);
        }
        return length;
    }
    const CutNode* before(int number) const {
        const auto& nodes = j_.run.before.nodes;
        const auto at = std::lower_bound(nodes.begin(), nodes.end(), number,
                                         [](const CutNode& node, int n) { return node.number < n; });
        return at != nodes.end() && at->number == number ? &*at : nullptr;
    }

    void judge_edge(std::size_t k) {
        const Spot &a = piece_->points[k], &b = piece_->points[k + 1];
        const double length = distance(a, b);
        double from = 0.0, to = 1.0;
        if (length <= j_.same || !clip(a, b, from, to)) {
            gap_ = gap_ || length > j_.same;
            return;
        }
        gap_ = gap_ || from > 0.0 || to < 1.0;
        const bool start_is_node = from > 0.0 || k > 0 || (is_placed(a) && is_seen_end(a));
        const bool end_is_node =
            to < 1.0 || k + 2 < piece_->points.size() || (is_placed(b) && is_seen_end(b));
        const std::vector<OnPiece> nodes = nodes_on(a, b);
        from *= length, to *= length;
        if (nodes.empty()) {
            gap_ = true;
            if ((start_is_node || end_is_node) && is_ground_between(a, b, from, to))
                add("no node on it from " + words(a) + " to " + words(b));
            return;
        }
        if (nodes.front().along > from + j_.same)
            judge_gap(a, b, from, nodes.front().along, start_is_node);
        std::vector<std::size_t> chain = chain_through(nodes);
        if (!end_is_node)
            leave_bystanders(chain, nodes);
        if (!start_is_node) {
            std::reverse(chain.begin(), chain.end());
            leave_bystanders(chain, nodes);
            std::reverse(chain.begin(), chain.end());
        }
        for (std::size_t i = 0; i + 1 < chain.size(); ++i)
            judge_step(a, b, nodes[chain[i]], nodes[chain[i + 1]]);
        if (nodes.back().along < to - j_.same)
            judge_gap(a, b, nodes.back().along, to, end_is_node);
        std::vector<int> way;
        for (const std::size_t i : chain)
            way.push_back(nodes[i].node);
        if (!start_is_node)
            beyond_ends_ += length_beyond(way);
        std::reverse(way.begin(), way.end());
        if (!end_is_node)
            beyond_ends_ += length_beyond(way);
    }

    // From the first node to the last the way with the least length of gaps, and of these the one whose nodes
    // lie nearest to the piece: others only stand near by.
    std::vector<std::size_t> chain_through(const std::vector<OnPiece>& nodes) const {
        using Cost = std::pair<double, double>;
        const auto off = [&](std::size_t i) { return nodes[i].off > j_.rounding ? nodes[i].off : 0.0; };
        std::vector<Cost> cost(nodes.size(), {0.0, off(0)});
        std::vector<std::size_t> before(nodes.size(), 0);
        for (std::size_t i = 1; i < nodes.size(); ++i)
            for (std::size_t k = i; k-- > 0;) {
                const bool is_side = j_.mesh.is_side(nodes[k].node, nodes[i].node);
                if (!is_side && k + 1 < i)
                    continue;
                const Cost found{cost[k].first + (is_side ? 0.0 : nodes[i].along - nodes[k].along),
                                 cost[k].second + off(i)};
                if (k + 1 == i || found < cost[i]) {
                    cost[i] = found;
                    before[i] = k;
                }
            }
        std::vector<std::size_t> chain{nodes.size() - 1};
        while (chain.back() != 0)
            chain.push_back(before[chain.back()]);
        std::reverse(chain.begin(), chain.end());
        return chain;
    }

    // The chain of a line ends, at an end that nothing places, where its elements do. A node further on that
    // is off the line is one that a later group moved or made: by chance it came to stand nearer to the rest,
    // which no side follows, than things that are one.
    void leave_bystanders(std::vector<std::size_t>& chain, const std::vector<OnPiece>& nodes) const {
        while (!own_.empty() && chain.size() > 1 && nodes[chain.back()].off > j_.rounding &&
               !own_.contains(side_of(nodes[chain.back()].node, nodes[chain[chain.size() - 2]].node)))
            chain.pop_back();
    }

    void judge_gap(const Spot& a, const Spot& b, double from, double to, bool is_node) {
        gap_ = true;
        if (is_node && is_ground_between(a, b, from, to)) {
            const double length = distance(a, b), f = from / length, t = to / length;
            const Spot first{a.x + f * (b.x - a.x), a.y + f * (b.y - a.y)};
            const Spot last{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
            if (!is_in_crossing(first) || !is_in_crossing(last))
                add("no side along " + words(first) + " to " + words(last));
        }
    }

    void judge_step(const Spot& a, const Spot& b, const OnPiece& u, const OnPiece& v) {
        if (j_.mesh.is_side(u.node, v.node)) {
            if (sides_.insert(side_of(u.node, v.node)).second) {
                const double length = distance(j_.mesh.at(u.node), j_.mesh.at(v.node));
                covered_ += length;
                if (j_.on_border(j_.mesh.at(u.node), j_.mesh.at(v.node)))
                    on_border_ += length;
            }
            for (const OnPiece& n : {u, v}) {
                const Spot& at = j_.mesh.at(n.node);
                if (n.off <= j_.rounding || !is_seen(at, a, b))
                    continue;
                if (gives_way(n.node, a, b))
                    j_.verdict.gave_way = true;
                else
                    add("node " + std::to_string(n.node) + " is " + std::to_string(n.off) + " off it at " +
                        words(at));
            }
            return;
        }
        if (v.along - u.along <= j_.same)
            return;
        gap_ = true;
        if (is_ground_between(a, b, u.along, v.along))
            add("no side from node " + std::to_string(u.node) + " " + words(j_.mesh.at(u.node)) + " to " +
                std::to_string(v.node) + " " + words(j_.mesh.at(v.node)));
    }

    // Line elements and joints of this group alone are as long as its chain, and lie along sides.
    void judge_elements() {
        if (path_.pieces.empty() || path_.free_line || is_shared())
            return;
        double beams = 0.0, joints = 0.0;
        bool has_beams = false;
        for (const CutLine& line : j_.run.after.lines) {
            if (line.material != path_.line_material || path_.line_type < 2)
                continue;
            has_beams = true;
            beams += distance(j_.mesh.at(line.from), j_.mesh.at(line.to));
            if (!gap_ && !j_.mesh.is_side(line.from, line.to))
                j_.add(Law::line, "group " + std::to_string(path_.group) + ": line element " +
                                      std::to_string(line.number) + " runs along no side from node " +
                                      std::to_string(line.from) + " " + words(j_.mesh.at(line.from)) +
                                      " to " + std::to_string(line.to) + " " + words(j_.mesh.at(line.to)));
        }
        for (const CutJoint& joint : j_.run.after.joints)
            if (joint.material == path_.joint_material) {
                joints += distance(j_.mesh.at(joint.corners[0]), j_.mesh.at(joint.corners[1]));
                if (path_.thickness == 0.0 &&
                    std::max(distance(j_.mesh.at(joint.corners[0]), j_.mesh.at(joint.corners[3])),
                             distance(j_.mesh.at(joint.corners[1]), j_.mesh.at(joint.corners[2]))) >
                        j_.rounding)
                    j_.add(Law::line, "joint " + std::to_string(joint.number) + " of no width is open at " +
                                          words(j_.mesh.at(joint.corners[0])));
            }
        const double room = j_.same * 4.0 + j_.rounding * static_cast<double>(sides_.size());
        const double at_crossings = 2.0 * std::accumulate(crossings_.begin(), crossings_.end(), 0.0,
                                                          [](double sum, const JointCrossing& crossing) {
                                                              return sum + crossing.room;
                                                          });
        const auto tell = [&](const char* what, double length, double optional) {
            if (!gap_ && (length > covered_ + room || length < covered_ - optional - room))
                j_.add(Law::line, "group " + std::to_string(path_.group) + ": its " + what +
                                      " have a length of " + std::to_string(length) + ", its sides " +
                                      std::to_string(covered_));
        };
        // The head of a mesh file of the head kind hides its trusses from a second deck.
        const bool hidden =
            j_.deck.kind == Kind::head && path_.line_type > 2 && path_.group <= j_.deck.groups_of_first_deck;
        if (!hidden && (has_beams || path_.line_type >= 2))
            tell("line elements", beams, beyond_ends_ + at_crossings);
        if (path_.joint_material != 0)
            tell("joints", joints,
                 beyond_ends_ + on_border_ + at_crossings);  // on the border is ground on one side alone
    }
    bool is_shared() const {
        return std::any_of(j_.run.paths.begin(), j_.run.paths.end(), [&](const DrawnPath& other) {
            return std::abs(other.type) == 1 ||
                   (other.group != path_.group &&
                    ((path_.line_type >= 2 && other.line_type >= 2 &&
                      other.line_material == path_.line_material) ||
                     (path_.joint_material != 0 && other.joint_material == path_.joint_material)));
        });
    }

    static constexpr double SIDES[2] = {1.0, -1.0};
    const Judgement& j_;
    const DrawnPath& path_;
    const DrawnPiece* piece_ = nullptr;
    std::vector<const CutSolid*> listed_;
    std::optional<JudgedMesh> between_;  // of a path of the first of two decks: what the second reads
    std::set<Side> sides_;
    std::vector<JointCrossing> crossings_;  // of a joint of a width with itself
    std::set<Side> own_;                    // of the group's elements
    double covered_ = 0.0, on_border_ = 0.0, beyond_ends_ = 0.0;
    bool gap_ = false;  // some of the path is no chain, as the deck or the ground asks for
};

}  // namespace

void judge_lines(const Judgement& j) {
    for (const DrawnPath& path : j.run.paths)
        if (path.type != 0 && !path.free_line)
            LineJudge(j, path).judge();
}

}  // namespace brelan::test
