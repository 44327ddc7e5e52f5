#include "group/sound_parting.h"

#include "group/engine_mesh.h"
#include "group/joints.h"
#include "group/sound_ground.h"

namespace brelan {

namespace {

// The corners of an element in order, a repeated one once.
std::vector<NodeNumber> ring_of(const Mesh& mesh, ElementNumber e) {
    std::vector<NodeNumber> ring;
    for (const NodeNumber n : corners_of(mesh, e).n)
        if (n.names_one() && (ring.empty() || ring.back() != n))
            ring.push_back(n);
    while (ring.size() > 1 && ring.front() == ring.back())
        ring.pop_back();
    return ring;
}

// The other end of the line of a joint that closes at a node; none of another element. `is_last` tells that
// it closes at the end of its piece of the line.
NodeNumber toe_from(const Mesh& mesh, ElementNumber e, NodeNumber node, bool& is_last) {
    const Corners c = corners_of(mesh, e);
    is_last = c.n[1] == node && c.n[2] == node;
    const bool is_first = c.n[0] == node && c.n[3] == node;
    if (!is_joint(mesh, e) || is_last == is_first)
        return {};
    return is_last ? c.n[0] : c.n[1];
}

// Gives the left side of a joint that closes at a node a node of its own.
void open_toe_of(Mesh& mesh, Engine& engine, ElementNumber toe, NodeNumber node, bool is_last,
                 const std::set<ElementNumber>& left) {
    const NodeNumber twin = add_twin(mesh, engine, node, node_point(mesh, node));
    std::vector<std::pair<ElementNumber, Corners>> altered;
    for (const ElementNumber e : elements_with(engine, {&node, 1})) {
        Corners corners = corners_of(mesh, e);
        if (e == toe) {
            corners.n[is_last ? 2 : 3] = twin;
        } else if (mesh.type[e] == ELEMENT_CONTINUUM) {
            if (left.count(e) == 0)
                continue;
            std::replace(corners.n, corners.n + 4, node, twin);
        } else {
            // A line element goes with the ground beside it.
            const NodeNumber other = corners.n[0] == node ? corners.n[1] : corners.n[0];
            const std::vector<ElementNumber> solids =
                users_of(mesh, engine, side_between(node, other)).solids;
            if (std::none_of(solids.begin(), solids.end(),
                             [&](ElementNumber user) { return left.count(user) != 0; }))
                continue;
            std::replace(corners.n, corners.n + 4, node, twin);
        }
        altered.emplace_back(e, corners);
    }
    for (const auto& [e, corners] : altered)
        set_corners(mesh, engine, e, corners);
}

}  // namespace

std::vector<Wedge> wedges_at(const Mesh& mesh, const Engine& engine, NodeNumber node) {
    std::vector<Wedge> wedges;
    for (const ElementNumber e : elements_with(engine, {&node, 1})) {
        if (mesh.type[e] != ELEMENT_CONTINUUM)
            continue;
        const std::vector<NodeNumber> ring = ring_of(mesh, e);
        const auto at = static_cast<std::size_t>(std::find(ring.begin(), ring.end(), node) - ring.begin());
        if (at < ring.size())
            wedges.push_back({e, ring[(at + ring.size() - 1) % ring.size()], ring[(at + 1) % ring.size()]});
    }
    return wedges;
}

bool has_short_side(const Mesh& mesh, ElementNumber e, NodeNumber a, NodeNumber b) {
    const Corners c = corners_of(mesh, e);
    return is_joint(mesh, e) && (side_between(c.n[1], c.n[2]) == side_between(a, b) ||
                                 side_between(c.n[3], c.n[0]) == side_between(a, b));
}

Parting parting_at(const Mesh& mesh, const Engine& engine, NodeNumber node, NodeNumber before,
                   NodeNumber behind) {
    const std::vector<Wedge> wedges = wedges_at(mesh, engine, node);
    const auto is_barrier = [&](NodeNumber other) {
        if (other == before || other == behind)
            return true;
        return std::any_of(wedges.begin(), wedges.end(), [&](const Wedge& wedge) {
            return (wedge.before == other || wedge.behind == other) &&
                   has_short_side(mesh, wedge.element, node, other);
        });
    };
    const auto flood = [&](auto&& starts) {
        std::set<ElementNumber> reached;
        std::vector<Wedge> waiting;
        const auto reach = [&](const Wedge& wedge) {
            if (reached.insert(wedge.element).second)
                waiting.push_back(wedge);
        };
        for (const Wedge& wedge : wedges)
            if (starts(wedge))
                reach(wedge);
        while (!waiting.empty()) {
            const Wedge from = waiting.back();
            waiting.pop_back();
            for (const Wedge& wedge : wedges)
                if ((wedge.before == from.behind && !is_barrier(from.behind)) ||
                    (wedge.behind == from.before && !is_barrier(from.before)))
                    reach(wedge);
        }
        return reached;
    };
    return {flood([&](const Wedge& wedge) {
                return (behind.names_one() && wedge.behind == behind) ||
                       (before.names_one() && wedge.before == before);
            }),
            flood([&](const Wedge& wedge) {
                return (behind.names_one() && wedge.before == behind) ||
                       (before.names_one() && wedge.behind == before);
            })};
}

void open_toe(Mesh& mesh, Engine& engine, NodeNumber node) {
    for (const ElementNumber e : elements_with(engine, {&node, 1})) {
        bool is_last = false;
        const NodeNumber from = toe_from(mesh, e, node, is_last);
        if (from.is_none())
            continue;
        const Parting parting =
            parting_at(mesh, engine, node, is_last ? from : NodeNumber{}, is_last ? NodeNumber{} : from);
        if (!parting.left.empty() && !parting.right.empty() && !parting.is_one())
            open_toe_of(mesh, engine, e, node, is_last, parting.left);
    }
}

}  // namespace brelan
