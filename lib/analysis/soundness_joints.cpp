// Joints: the shape of each, what its line makes of it, and the gaps that a line leaves open.
//
//     d ------- c      a-b and d-c are its sides, a-d and b-c its pairs; drawn with the width that
//     |  joint  |      a joint of no width does not have
//     a ------- b
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "analysis/joined_nodes.h"
#include "analysis/point_index.h"
#include "analysis/soundness_work.h"

namespace brelan {

namespace {

using NodePair = std::pair<std::int32_t, std::int32_t>;

NodePair ordered(std::int32_t a, std::int32_t b) {
    return {std::min(a, b), std::max(a, b)};
}

struct Joint {
    std::int32_t element = 0;                    // its place
    std::int32_t a = 0, b = 0, c = 0, d = 0;     // places of its nodes
    Position from, to;                           // middles of its pairs
    double length = 0.0;                         // between them
    double first_width = 0.0, last_width = 0.0;  // across its direction, positive to its left

    double width() const { return std::max(std::abs(first_width), std::abs(last_width)); }
    bool closes_at_first() const { return a == d; }
    bool closes_at_last() const { return b == c; }
    bool is_triangle() const { return closes_at_first() != closes_at_last(); }
};

Joint joint_of(const MeshLists& mesh, const CornerPlaces& corners, std::int32_t element) {
    const JointPairs pairs = joint_pairs(mesh, corners);
    Joint j;
    j.element = element;
    j.a = corners[pairs.pair[0][0]];
    j.d = corners[pairs.pair[0][1]];
    if (corners.count == 3) {
        j.b = j.c = corners[3 - pairs.pair[0][0] - pairs.pair[0][1]];
    } else {
        const bool turned = pairs.pair[0][1] == 1;  // pairs 0-1 and 2-3 instead of 0-3 and 1-2
        j.b = corners[pairs.pair[1][turned ? 1 : 0]];
        j.c = corners[pairs.pair[1][turned ? 0 : 1]];
    }
    const Position a = mesh.point(j.a), b = mesh.point(j.b), c = mesh.point(j.c), d = mesh.point(j.d);
    j.from = {(a.x + d.x) / 2.0, (a.y + d.y) / 2.0};
    j.to = {(b.x + c.x) / 2.0, (b.y + c.y) / 2.0};
    j.length = distance(j.from, j.to);
    if (j.length > 0.0) {
        const double x = (j.to.x - j.from.x) / j.length, y = (j.to.y - j.from.y) / j.length;
        j.first_width = x * (d.y - a.y) - y * (d.x - a.x);
        j.last_width = x * (c.y - b.y) - y * (c.x - b.x);
    }
    return j;
}

// The whole width between the lines of both sides; what a bend or the border cuts off at an end is no part of
// it.
double width_between(const MeshLists& mesh, const Joint& j, const Position& twin) {
    const Position a = mesh.point(j.a), b = mesh.point(j.b);
    return std::abs(cross(a, b, twin)) / distance(a, b);
}

class JointSearch {
public:
    explicit JointSearch(SoundnessWork& work) : work_(work), digits_(resolution(work.mesh.bounds())) {
        for (std::size_t i = 0; i < work.corners.size(); ++i)
            if (work.mesh.elements[i].of == ElementClass::joint && work.corners[i].complete())
                all_.push_back(joint_of(work.mesh, work.corners[i], static_cast<std::int32_t>(i)));
    }

    void find() {
        for (const Joint& j : all_)
            if (is_collapsed(j))
                add(Check::collapsed_joint, j);
            else
                whole_.push_back(j);
        find_triangles();
        std::erase_if(whole_, [&](const Joint& j) {
            const bool crossed = is_crossed(j);
            if (crossed)
                add(Check::crossed_joint, j);
            return crossed;
        });
        find_stacked();
        find_nodes_within();
        find_uneven();
    }

private:
    void add(Check check, const Joint& j, std::int32_t other = -1, double amount = 0.0) {
        work_.add(check, {work_.number(j.element), 0, other < 0 ? 0 : work_.number(other),
                          middle(work_.mesh, work_.corners[work_.at(j.element)]), amount});
    }

    bool is_collapsed(const Joint& j) const {
        return j.a == j.b || j.c == j.d || (j.closes_at_first() && j.closes_at_last()) || j.length <= digits_;
    }

    // A line may close on a single node where it ends: no joint goes on from there.
    void find_triangles() {
        std::map<std::int32_t, std::vector<std::size_t>> at_node;  // of triangles, by their shared node
        for (std::size_t k = 0; k < whole_.size(); ++k)
            if (whole_[k].is_triangle())
                at_node[whole_[k].closes_at_first() ? whole_[k].a : whole_[k].b];
        if (at_node.empty())
            return;
        for (std::size_t k = 0; k < whole_.size(); ++k)
            for (const std::int32_t n : {whole_[k].a, whole_[k].b, whole_[k].c, whole_[k].d})
                if (const auto found = at_node.find(n);
                    found != at_node.end() && (found->second.empty() || found->second.back() != k))
                    found->second.push_back(k);
        for (const Joint& j : whole_) {
            if (!j.is_triangle())
                continue;
            const std::vector<std::size_t>& here = at_node.at(j.closes_at_first() ? j.a : j.b);
            if (std::any_of(here.begin(), here.end(), [&](std::size_t k) { return goes_on(j, whole_[k]); }))
                add(Check::triangular_joint, j);
        }
    }

    // True when the other joint runs on, away from the shared node.
    bool goes_on(const Joint& j, const Joint& other) const {
        if (other.element == j.element ||
            work_.element(j.element).words.material != work_.element(other.element).words.material)
            return false;
        const Position shared = j.closes_at_first() ? j.from : j.to;
        const Position far = j.closes_at_first() ? j.to : j.from;
        const Position away =
            distance(shared, other.from) > distance(shared, other.to) ? other.from : other.to;
        constexpr double STRAIGHT_ON = -0.7;  // within 45 degrees
        return (far.x - shared.x) * (away.x - shared.x) + (far.y - shared.y) * (away.y - shared.y) <
               STRAIGHT_ON * distance(shared, far) * distance(shared, away);
    }

    bool is_crossed(const Joint& j) const {
        const MeshLists& mesh = work_.mesh;
        const Position a = mesh.point(j.a), b = mesh.point(j.b), c = mesh.point(j.c), d = mesh.point(j.d);
        const double x = (j.to.x - j.from.x) / j.length, y = (j.to.y - j.from.y) / j.length;
        const auto along = [&](const Position& from, const Position& to) {
            return x * (to.x - from.x) + y * (to.y - from.y);
        };
        if (along(a, b) <= 0.0 || along(d, c) <= 0.0)
            return true;
        if (j.first_width * j.last_width < 0.0 &&
            std::min(std::abs(j.first_width), std::abs(j.last_width)) > work_.tolerance())
            return true;
        // Where a line bends, or ends on the border, the nodes of a pair stand off by some widths.
        constexpr double WIDTHS = 4.0, SHARE = 0.5;
        const double off = std::max(std::abs(along(a, d)), std::abs(along(b, c)));
        return off > WIDTHS * j.width() && off > SHARE * std::min(distance(a, b), distance(d, c));
    }

    // A wall of no width may have a joint on either side: two joints then have one side in common.
    static bool are_on_both_sides(const Joint& j, const Joint& k) {
        const std::array own{ordered(j.a, j.b), ordered(j.c, j.d)};
        const std::array other{ordered(k.a, k.b), ordered(k.c, k.d)};
        const auto count = std::count_if(own.begin(), own.end(), [&](const NodePair& side) {
            return side == other[0] || side == other[1];
        });
        return count == 1;
    }

    void find_stacked() {
        std::vector<Position> middles;
        double widest = 0.0;
        for (const Joint& j : whole_) {
            middles.push_back({(j.from.x + j.to.x) / 2.0, (j.from.y + j.to.y) / 2.0});
            widest = std::max(widest, j.width());
        }
        std::vector<std::uint8_t> told(whole_.size(), 0);
        const PositionGrid grid(middles);
        for (std::size_t l = 0; l < whole_.size(); ++l) {
            const Joint& longer = whole_[l];
            const double reach = 0.25 * (longer.width() + widest) + work_.tolerance();
            grid.along(longer.from, longer.to, reach, [&](std::int32_t found) {
                const std::size_t s = work_.at(found);
                const Joint& shorter = whole_[s];
                if (s == l || told[s] != 0 || shorter.length > longer.length ||
                    (shorter.length == longer.length && s < l))
                    return;
                const double room = 0.25 * (longer.width() + shorter.width()) + work_.tolerance();
                if (distance_within(longer.from, longer.to, middles[s], work_.tolerance()) > room)
                    return;
                if (std::max(longer.width(), shorter.width()) <= work_.tolerance() &&
                    are_on_both_sides(longer, shorter))
                    return;
                told[s] = 1;
                add(Check::stacked_joint, shorter, longer.element);
            });
        }
        auto& places = work_.places(Check::stacked_joint);
        std::sort(places.begin(), places.end(),
                  [](const Place& a, const Place& b) { return a.element < b.element; });
    }

    // Where a joint runs on over a node, the ground is not parted there.
    void find_nodes_within() {
        const PlacedNodes of_solids = work_.nodes_of_solids();
        const std::vector<std::int32_t>& nodes = of_solids.nodes;
        const std::vector<Position>& points = of_solids.points;
        const PositionGrid grid(points);
        for (const Joint& j : whole_) {
            std::vector<std::int32_t> told;  // a joint of no width meets a node with both sides
            for (const NodePair& side : {NodePair{j.a, j.b}, NodePair{j.d, j.c}}) {
                const Position from = work_.mesh.point(side.first), to = work_.mesh.point(side.second);
                grid.along(from, to, work_.tolerance(), [&](std::int32_t p) {
                    const std::int32_t n = nodes[work_.at(p)], closed = work_.closed[work_.at(n)];
                    if (closed == work_.closed[work_.at(j.a)] || closed == work_.closed[work_.at(j.b)] ||
                        std::find(told.begin(), told.end(), closed) != told.end() ||
                        distance_within(from, to, points[work_.at(p)], work_.tolerance()) > work_.tolerance())
                        return;
                    told.push_back(closed);
                    work_.add(Check::unjoined_joint,
                              {work_.number(j.element), work_.node_number(n), 0, points[work_.at(p)]});
                });
            }
        }
    }

    // Joints of one material that follow each other at their pairs are a line.
    void find_uneven() {
        UnionFind lines(whole_.size());
        std::map<std::pair<NodePair, std::int32_t>, std::size_t> by_pair;
        for (std::size_t k = 0; k < whole_.size(); ++k) {
            const Joint& j = whole_[k];
            const std::int32_t material = work_.element(j.element).words.material.value;
            for (const NodePair& pair : {ordered(j.a, j.d), ordered(j.b, j.c)})
                if (const auto [found, fresh] = by_pair.try_emplace({pair, material}, k); !fresh)
                    lines.join(static_cast<std::int32_t>(found->second), static_cast<std::int32_t>(k));
        }
        std::vector<std::vector<double>> widths(whole_.size()), of_line(whole_.size());
        for (std::size_t k = 0; k < whole_.size(); ++k) {
            const Joint& j = whole_[k];
            if (!j.closes_at_first())
                widths[k].push_back(width_between(work_.mesh, j, work_.mesh.point(j.d)));
            if (!j.closes_at_last())
                widths[k].push_back(width_between(work_.mesh, j, work_.mesh.point(j.c)));
            std::vector<double>& all = of_line[work_.at(lines.find(static_cast<std::int32_t>(k)))];
            all.insert(all.end(), widths[k].begin(), widths[k].end());
        }
        for (std::vector<double>& all : of_line)
            std::sort(all.begin(), all.end());
        for (std::size_t k = 0; k < whole_.size(); ++k) {
            const std::vector<double>& all = of_line[work_.at(lines.find(static_cast<std::int32_t>(k)))];
            const double usual = all[all.size() / 2];
            // Three rounded points on either side of the comparison.
            constexpr double SHARE = 0.05, ROUNDED = 4.0;
            for (const double width : widths[k])
                if (std::abs(width - usual) > std::max(ROUNDED * work_.tolerance(), SHARE * usual)) {
                    add(Check::uneven_joint, whole_[k], -1, width);
                    break;
                }
        }
    }

    SoundnessWork& work_;
    double digits_;
    std::vector<Joint> all_, whole_;
};

}  // namespace

void find_joint_faults(SoundnessWork& work) {
    if (work.mesh.count(ElementClass::joint) == 0)
        return;
    JointSearch(work).find();
}

// Two solids meet at a side with joints closed and have other nodes there: a joint stands between them, or
// nothing does.
void find_open_wedges(SoundnessWork& work) {
    std::vector<NodePair> bridged;
    for (std::size_t i = 0; i < work.corners.size(); ++i) {
        if (work.mesh.elements[i].of != ElementClass::joint || !work.corners[i].complete())
            continue;
        const Joint j = joint_of(work.mesh, work.corners[i], static_cast<std::int32_t>(i));
        bridged.push_back(ordered(work.closed[work.at(j.a)], work.closed[work.at(j.b)]));
    }
    if (bridged.empty())
        return;
    std::sort(bridged.begin(), bridged.end());
    work.each_side([&](std::size_t i, std::size_t end) {
        if (end - i != 2)
            return;
        const ClosedSide &one = work.sides[i], &two = work.sides[i + 1];
        // In one direction: the neighbour runs the other way.
        const bool turned = work.closed[work.at(one.from)] != work.closed[work.at(two.from)];
        const std::int32_t from = turned ? two.to : two.from, to = turned ? two.from : two.to;
        if (one.from == from && one.to == to)
            return;
        if (std::binary_search(bridged.begin(), bridged.end(), NodePair{one.low, one.high}))
            return;
        const Position a = work.mesh.point(one.from), b = work.mesh.point(one.to);
        const Position c = work.mesh.point(to), d = work.mesh.point(from);
        const double area = std::abs(cross(a, b, c) + cross(a, c, d)) / 2.0;
        const bool at_from = distance(a, d) >= distance(b, c);
        if (area > work.tolerance() * distance(a, b))
            work.add(Check::open_wedge,
                     {work.number(one.element), work.node_number(at_from ? one.from : one.to),
                      work.node_number(at_from ? from : to), at_from ? a : b, area});
    });
}

}  // namespace brelan
