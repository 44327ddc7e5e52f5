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
    engine.frozen.fill(0);
    Table<std::int32_t, MAXNP, "NLIST"> listed_nodes;
    EXPLIST(listed(limits.nodes, limits.NODE), listed_nodes, limits.nodes_place);
    for (std::int32_t n = 1; n <= engine.highest_node; ++n) {
        const bool coded = mesh.codes[n][0] != 0 || mesh.codes[n][1] != 0;
        const bool on_limits = limits.IBOUND == 1 && (mesh.x[n] <= limits.XMIN || mesh.x[n] >= limits.XMAX ||
                                                      mesh.y[n] <= limits.YMIN || mesh.y[n] >= limits.YMAX);
        if (coded || on_limits || listed_nodes[n] == n)
            engine.frozen[n] = 1;
    }
}

// Elements that the user keeps out of the groups' reach.
void set_aside_elements(const Mesh& mesh, const GroupCards& group_cards, Engine& engine) {
    const GroupLimits& limits = group_cards.limits;
    Table<std::int32_t, MAXEL, "the element list of Card 3.3.5.2"> aside;
    EXPLIST(listed(limits.elements, limits.NOEL), aside, limits.elements_place);
    for (std::int32_t e = 1; e <= MAXEL; ++e) {
        engine.workable[e] = aside[e] == e ? 0 : e;
        if (engine.workable[e] != 0 || mesh.type[e] == EL_DELETED)
            continue;
        for (const std::int32_t n : corners_of(mesh, e).n)
            if (n > 0)
                engine.frozen[n] = 1;
    }
}

void find_limits(Mesh& mesh, Engine& engine) {
    bool first = true;
    for (std::int32_t e = 1; e <= engine.highest_element; ++e) {
        if (mesh.type[e] == EL_DELETED)
            continue;
        for (const std::int32_t n : corners_of(mesh, e).n) {
            if (n <= 0)
                continue;
            if (first)
                engine.limits = {mesh.x[n], mesh.x[n], mesh.y[n]};
            first = false;
            engine.limits.XMIN = std::min(engine.limits.XMIN, mesh.x[n]);
            engine.limits.XMAX = std::max(engine.limits.XMAX, mesh.x[n]);
            engine.limits.YMIN = std::min(engine.limits.YMIN, mesh.y[n]);
        }
    }
}

float shortest_distance(const Mesh& mesh, const Engine& engine) {
    float shortest = NO_DISTANCE;
    for (std::int32_t e = 1; e <= engine.highest_element; ++e) {
        if (mesh.type[e] != EL_CONTINUUM || is_joint(mesh, e))
            continue;
        const Corners corners = corners_of(mesh, e);
        for (int i = 0; i < 4; ++i)
            for (int k = i + 1; k < 4; ++k)
                if (corners.n[i] > 0 && corners.n[k] > 0 && corners.n[i] != corners.n[k])
                    shortest =
                        std::min(shortest, distance(node_point(mesh, corners.n[i]), node_point(mesh, corners.n[k])));
    }
    return shortest;
}

}  // namespace

void LOADENGINE(Mesh& mesh, const GroupCards& group_cards, Engine& engine, std::int32_t highest_node, std::int32_t highest_element) {
    engine.highest_node = highest_node;
    engine.highest_element = highest_element;
    engine.side_sign.fill(0);
    freeze_nodes(mesh, group_cards, engine);
    set_aside_elements(mesh, group_cards, engine);
    find_limits(mesh, engine);
}

void SETTOLERANCES(const Mesh& mesh, Tolerances& tolerances, const Engine& engine) {
    const float SHORT = shortest_distance(mesh, engine);
    tolerances.line = tolerances.mode == 0 ? tolerances.length : SHORT * tolerances.factor;
    tolerances.move = tolerances.mode == 1 ? SHORT * tolerances.factor : tolerances.length;
}

}  // namespace brelan
