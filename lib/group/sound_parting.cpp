#include "group/sound_parting.h"

#include <algorithm>
#include <array>

#include "group/engine_mesh.h"
#include "mesh/attributes.h"

namespace brelan {

namespace {

constexpr std::size_t USUAL_WEDGES = 8;

// The corners of an element in order, a repeated one once.
struct CornerRing {
    std::array<NodeNumber, 4> node{};
    std::size_t count = 0;
};
CornerRing ring_of(const Mesh& mesh, ElementNumber e) {
    CornerRing ring;
    for (const NodeNumber n : corners_of(mesh, e).n)
        if (n.names_one() && (ring.count == 0 || ring.node[ring.count - 1] != n))
            ring.node[ring.count++] = n;
    while (ring.count > 1 && ring.node[0] == ring.node[ring.count - 1])
        --ring.count;
    return ring;
}

// The node that a side has now; none where the side is not known.
NodeNumber node_now(const PartedSides& parted, NodeNumber node, NodeNumber other) {
    const auto found = parted.find({node, other});
    if (found != parted.end())
        return found->second;
    const auto first = parted.lower_bound({node, NodeNumber{}});
    return first != parted.end() && first->first.first == node ? NodeNumber{} : node;
}

}  // namespace

std::vector<Wedge> wedges_at(const Mesh& mesh, const Engine& engine, NodeNumber node) {
    std::vector<Wedge> wedges;
    wedges.reserve(USUAL_WEDGES);
    for (const ElementNumber e : elements_at(engine, node)) {
        if (mesh.type[e] != ELEMENT_CONTINUUM)
            continue;
        const auto& [ring, count] = ring_of(mesh, e);
        std::size_t at = 0;
        while (at < count && ring[at] != node)
            ++at;
        if (at < count)
            wedges.push_back({e, ring[(at + count - 1) % count], ring[(at + 1) % count]});
    }
    return wedges;
}

bool has_short_side(const Mesh& mesh, ElementNumber e, NodeNumber a, NodeNumber b) {
    const Corners c = corners_of(mesh, e);
    return is_joint(mesh, e) && (side_between(c.n[1], c.n[2]) == side_between(a, b) ||
                                 side_between(c.n[3], c.n[0]) == side_between(a, b));
}

std::vector<Toe> toes_at(const Mesh& mesh, const Engine& engine, NodeNumber node) {
    std::vector<Toe> toes;
    for (const ElementNumber e : elements_at(engine, node)) {
        if (mesh.type[e] != ELEMENT_CONTINUUM || !is_joint(mesh, e))
            continue;
        const Corners c = corners_of(mesh, e);
        const bool ends = c.n[1] == node && c.n[2] == node, begins = c.n[0] == node && c.n[3] == node;
        if (ends != begins)
            toes.push_back({e, ends ? c.n[0] : c.n[1], ends ? 1U : 0U, ends ? 2U : 3U});
    }
    return toes;
}

std::optional<std::size_t> Sectors::left_of(NodeNumber other) const {
    for (std::size_t w = 0; w < wedges.size(); ++w)
        if (wedges[w].behind == other)
            return of[w];
    return std::nullopt;
}

std::optional<std::size_t> Sectors::right_of(NodeNumber other) const {
    for (std::size_t w = 0; w < wedges.size(); ++w)
        if (wedges[w].before == other)
            return of[w];
    return std::nullopt;
}

Sectors sectors_at(const Mesh& mesh, const Engine& engine, NodeNumber node,
                   const std::set<NodeNumber>& lines) {
    Sectors sectors{wedges_at(mesh, engine, node), {}};
    const std::vector<Wedge>& wedges = sectors.wedges;
    const auto is_crossed = [&](NodeNumber other) {
        return lines.count(other) == 0 && std::none_of(wedges.begin(), wedges.end(), [&](const Wedge& wedge) {
                   return (wedge.before == other || wedge.behind == other) &&
                          has_short_side(mesh, wedge.element, node, other);
               });
    };
    constexpr std::size_t NONE = static_cast<std::size_t>(-1);
    sectors.of.assign(wedges.size(), NONE);
    for (std::size_t first = 0; first < wedges.size(); ++first) {
        if (sectors.of[first] != NONE)
            continue;
        std::vector<std::size_t> waiting{first};
        sectors.of[first] = first;
        while (!waiting.empty()) {
            const Wedge from = wedges[waiting.back()];
            waiting.pop_back();
            for (std::size_t w = 0; w < wedges.size(); ++w) {
                // Doubles lie to the same side of a line as the elements that they lie over.
                const bool lies_over = wedges[w].before == from.before || wedges[w].behind == from.behind;
                const bool goes_on = (wedges[w].before == from.behind && is_crossed(from.behind)) ||
                                     (wedges[w].behind == from.before && is_crossed(from.before));
                if (sectors.of[w] != NONE || !(lies_over || goes_on))
                    continue;
                sectors.of[w] = first;
                waiting.push_back(w);
            }
        }
    }
    return sectors;
}

void follow_side(const PartedSides& parted, NodeNumber& from, NodeNumber& to) {
    const NodeNumber from_now = node_now(parted, from, to), to_now = node_now(parted, to, from);
    if (from_now.names_one())
        from = from_now;
    if (to_now.names_one())
        to = to_now;
}

void follow_parting(Drawn& drawn, const PartedSides& parted) {
    for (const auto& [side, now] : parted) {
        auto [from, to] = side;
        const Side before = side_between(from, to);
        follow_side(parted, from, to);
        for (Sides* all : {&drawn.sides, &drawn.found})
            if (all->erase(before) != 0)
                all->insert(side_between(from, to));
    }
}

void follow_parting(std::vector<NodeNumber>& nodes, std::vector<NodeNumber>& twins, bool closed,
                    const PartedSides& parted) {
    const auto stays = [&](NodeNumber node) {
        const auto first = parted.lower_bound({node, NodeNumber{}});
        return first == parted.end() || first->first.first != node;
    };
    if (std::all_of(nodes.begin(), nodes.end(), stays) && std::all_of(twins.begin(), twins.end(), stays))
        return;
    std::vector<NodeNumber> nodes_now, twins_now;
    const std::size_t c = nodes.size();
    const auto seen_from = [&](const std::vector<NodeNumber>& line, std::size_t k,
                               std::optional<std::size_t> l) {
        return l ? node_now(parted, line[k], line[*l]) : NodeNumber{};
    };
    for (std::size_t k = 0; k < c; ++k) {
        std::optional<std::size_t> before, behind;
        if (closed || k > 0)
            before = (k + c - 1) % c;
        if (closed || k + 1 < c)
            behind = (k + 1) % c;
        const auto now = [&](const std::vector<NodeNumber>& line) {
            NodeNumber first = seen_from(line, k, before), last = seen_from(line, k, behind);
            if (first.is_none())
                first = last.is_none() ? line[k] : last;
            return std::pair{first, last.is_none() ? first : last};
        };
        const auto [first, last] = now(nodes);
        const auto [first_twin, last_twin] = twins.empty() ? std::pair{first, last} : now(twins);
        nodes_now.push_back(first);
        twins_now.push_back(first_twin);
        if (std::pair{first, first_twin} == std::pair{last, last_twin})
            continue;
        nodes_now.push_back(last);
        twins_now.push_back(last_twin);
    }
    nodes = std::move(nodes_now);
    if (!twins.empty())
        twins = std::move(twins_now);
}

}  // namespace brelan
