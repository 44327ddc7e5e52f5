#include "commands/checking/free_sides.h"

#include <fmt/core.h>

#include <array>
#include <cmath>
#include <set>
#include <utility>

namespace brelan::tool {

namespace {

struct Side {
    std::string_view field, name;
    double along_x, along_y;  // the direction in which elements run along it
    std::size_t code;         // that holds it, its place among the node codes
};
constexpr std::array SIDES{Side{"IB_LEFT", "left", 0.0, -1.0, 0}, Side{"IB_RIGHT", "right", 0.0, 1.0, 0},
                           Side{"IB_TOP", "top", -1.0, 0.0, 1}, Side{"IB_BOTTOM", "bottom", 1.0, 0.0, 1}};

// Sides of elements that no other element has, in the direction of their elements.
std::set<std::pair<Number, Number>> outer_edges(const MeshLists& mesh) {
    std::set<std::pair<Number, Number>> edges;
    for (const Element& e : mesh.elements) {
        const std::array n{e.words.corner_1, e.words.corner_2, e.words.corner_3, e.words.corner_4};
        for (std::size_t i = 0; i < n.size(); ++i)
            if (const Number from = n[i].value, to = n[(i + 1) % n.size()].value;
                edges.erase({to, from}) == 0)
                edges.emplace(from, to);
    }
    return edges;
}

}  // namespace

std::vector<std::string> free_sides(const DeckCard& blocks, const MeshLists& base_mesh) {
    std::array<std::set<Number>, SIDES.size()> nodes;
    for (const auto& [from, to] : outer_edges(base_mesh)) {
        const Position a = base_mesh.point(base_mesh.node_place(from)),
                       b = base_mesh.point(base_mesh.node_place(to));
        const auto dx = static_cast<double>(b.x - a.x), dy = static_cast<double>(b.y - a.y);
        for (std::size_t s = 0; s < SIDES.size(); ++s)
            if (dx * SIDES[s].along_x + dy * SIDES[s].along_y > 0.5 * std::hypot(dx, dy))
                nodes[s].insert({from, to});
    }
    std::vector<std::string> remarks;
    for (std::size_t s = 0; s < SIDES.size(); ++s) {
        std::size_t free = 0;
        for (const Number node : nodes[s])
            free +=
                base_mesh.nodes[static_cast<std::size_t>(base_mesh.node_place(node))].codes[SIDES[s].code] ==
                0;
        if (blocks.integer(SIDES[s].field) == 1 && free > 0)
            remarks.push_back(fmt::format(
                "{} 1: {} of {} nodes of the {} side stay free: sums of 32 bits put them more than 0.0001 "
                "beside the bound (an edit with IEDIT 1, ILOC 2 fixes them)",
                SIDES[s].field, free, nodes[s].size(), SIDES[s].name));
    }
    return remarks;
}

}  // namespace brelan::tool
