#include "group/midsides.h"

#include <array>
#include <set>

#include "group/engine_mesh.h"
#include "group/new_nodes.h"
#include "mesh/kinds.h"

namespace brelan {

namespace {

// M5 lies between the first corner and the second, and so on round the element.
std::array<NodeNumber*, 4> midsides_of(ElementWords& words) {
    return {&words.midside_5, &words.midside_6, &words.midside_7, &words.midside_8};
}

bool is_second_order(ElementWords words) {
    for (const NodeNumber* node : midsides_of(words))
        if (*node != NodeNumber{})
            return true;
    return false;
}

Point middle_of(const Point& a, const Point& b) {
    return {(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F};
}

}  // namespace

Midsides::Midsides(Mesh& mesh, Engine& engine) {
    if (kind_row(mesh.kind).element_words != 8)
        return;
    engine.clears_midsides = true;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e) {
        if (mesh.type[e] != ELEMENT_CONTINUUM) {
            mesh.words[e].clear_midsides();
            continue;
        }
        const Solid solid = solid_of(mesh, e);
        const std::array<NodeNumber*, 4> nodes = midsides_of(mesh.words[e]);
        for (std::size_t i = 0; i < solid.count; ++i) {
            if (nodes[i]->is_none())
                continue;
            const Side side = side_between(solid.node[i], solid.behind(i));
            sides_.emplace(side,
                           Kept{*nodes[i], node_point(mesh, side.first), node_point(mesh, side.second)});
        }
    }
}

void Midsides::restore(Mesh& mesh, Engine& engine) {
    if (sides_.empty())
        return;
    const ElementNumber last = engine.highest_element;
    std::set<CornerKey> second_order;  // doubles are what their originals are
    for (ElementNumber e{1}; e <= last; ++e)
        if (is_solid(mesh, e) && is_second_order(mesh.words[e]))
            second_order.insert(key_of(solid_of(mesh, e)));
    for (ElementNumber e{1}; e <= last; ++e) {
        if (!is_solid(mesh, e) || second_order.count(key_of(solid_of(mesh, e))) == 0)
            continue;
        const Solid solid = solid_of(mesh, e);
        const std::array<NodeNumber*, 4> nodes = midsides_of(mesh.words[e]);
        for (std::size_t i = 0; i < 4; ++i) {
            if (i >= solid.count) {
                *nodes[i] = NodeNumber{};
                continue;
            }
            const Side side = side_between(solid.node[i], solid.behind(i));
            const Point from = node_point(mesh, side.first), to = node_point(mesh, side.second);
            auto found = sides_.find(side);
            if (found == sides_.end()) {
                const NodeNumber node =
                    add_side_node(mesh, engine, middle_of(from, to), side.first, side.second, Codes::of_all);
                found = sides_.emplace(side, Kept{node, from, to}).first;
            } else if (!(found->second.from == from) || !(found->second.to == to)) {
                move_node(mesh, engine, found->second.node, middle_of(from, to));
                found->second.from = from;
                found->second.to = to;
            }
            *nodes[i] = found->second.node;
        }
    }
}

void ask_for_midsides(Mesh& mesh, ElementNumber from, ElementNumber e) {
    const NodeNumber node = is_second_order(mesh.words[from]) ? MIDSIDE_TO_COME : NodeNumber{};
    for (NodeNumber* word : midsides_of(mesh.words[e]))
        *word = node;
}

}  // namespace brelan
