#include "group/loader.h"

#include <algorithm>
#include <span>

#include "group/engine_mesh.h"
#include "mesh/selection.h"

namespace brelan {

namespace {

constexpr float NO_DISTANCE = 1.0E35F;  // start of the shortest distance

template <class List>
std::span<const std::int32_t> listed(const List& list, std::int32_t count) {
    return count > 0 ? std::span(&list[1], static_cast<std::size_t>(count)) : std::span<const std::int32_t>{};
}

void freeze_nodes(const Mesh& mesh, const GroupCards& group_cards, Engine& engine) {
    const GroupLimits& limits = group_cards.limits;
    engine.frozen.clear();
    Table<NodeNumber, LAST_NODE, "NLIST"> listed_nodes;
    expand_list(listed(limits.nodes, limits.node_count), listed_nodes, limits.nodes_place);
    for (NodeNumber n{1}; n <= engine.highest_node; ++n) {
        const bool coded = mesh.codes[n][0] != 0 || mesh.codes[n][1] != 0;
        const bool on_limits =
            limits.bounds_given == 1 && (mesh.x[n] <= limits.left || mesh.x[n] >= limits.right ||
                                         mesh.y[n] <= limits.bottom || mesh.y[n] >= limits.top);
        if (coded || on_limits || listed_nodes[n] == n)
            engine.frozen[n] = 1;
    }
}

// Elements that the user keeps out of the groups' reach.
void set_aside_elements(const Mesh& mesh, const GroupCards& group_cards, Engine& engine) {
    const GroupLimits& limits = group_cards.limits;
    Table<ElementNumber, LAST_ELEMENT, "the element list of Card 3.3.5.2"> aside;
    expand_list(listed(limits.elements, limits.element_count), aside, limits.elements_place);
    for (ElementNumber e{1}; e <= LAST_ELEMENT; ++e) {
        engine.workable[e] = aside[e] == e ? ElementNumber{} : e;
        if (engine.workable[e].names_one() || mesh.type[e] == ELEMENT_DELETED)
            continue;
        for (const NodeNumber n : corners_of(mesh, e).n)
            if (n.names_one())
                engine.frozen[n] = 1;
    }
}

void find_limits(Mesh& mesh, Engine& engine) {
    bool first = true;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e) {
        if (mesh.type[e] == ELEMENT_DELETED)
            continue;
        for (const NodeNumber n : corners_of(mesh, e).n) {
            if (n.is_none())
                continue;
            if (first)
                engine.limits = {mesh.x[n], mesh.x[n], mesh.y[n]};
            first = false;
            engine.limits.left = std::min(engine.limits.left, mesh.x[n]);
            engine.limits.right = std::max(engine.limits.right, mesh.x[n]);
            engine.limits.bottom = std::min(engine.limits.bottom, mesh.y[n]);
        }
    }
}

float shortest_distance(const Mesh& mesh, const Engine& engine) {
    float shortest = NO_DISTANCE;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e) {
        if (mesh.type[e] != ELEMENT_CONTINUUM || is_joint(mesh, e))
            continue;
        const Corners corners = corners_of(mesh, e);
        for (int i = 0; i < 4; ++i)
            for (int k = i + 1; k < 4; ++k)
                if (corners.n[i].names_one() && corners.n[k].names_one() && corners.n[i] != corners.n[k])
                    shortest = std::min(
                        shortest, distance(node_point(mesh, corners.n[i]), node_point(mesh, corners.n[k])));
    }
    return shortest;
}

}  // namespace

void load_engine(Mesh& mesh, const GroupCards& group_cards, Engine& engine, NodeNumber last_used_node,
                 ElementNumber last_used_element) {
    engine.highest_node = last_used_node;
    engine.highest_element = last_used_element;
    engine.side_sign.clear();
    freeze_nodes(mesh, group_cards, engine);
    set_aside_elements(mesh, group_cards, engine);
    find_limits(mesh, engine);
}

void set_tolerances(const Mesh& mesh, Tolerances& tolerances, const Engine& engine) {
    const float shortest = shortest_distance(mesh, engine);
    tolerances.line = tolerances.mode == 0 ? tolerances.length : shortest * tolerances.factor;
    tolerances.move = tolerances.mode == 1 ? shortest * tolerances.factor : tolerances.length;
}

}  // namespace brelan
