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

void freeze_nodes() {
    const GroupLimits& limits = GROUPLIMITS;
    FROZEN.fill(0);
    NLIST.fill(0);
    EXPLIST(listed(limits.nodes, limits.NODE), NLIST, limits.nodes_place);
    for (std::int32_t n = 1; n <= NUMNP; ++n) {
        const bool coded = IDN[n][0] != 0 || IDN[n][1] != 0;
        const bool on_limits = limits.IBOUND == 1 && (XC[n] <= limits.XMIN || XC[n] >= limits.XMAX ||
                                                      YC[n] <= limits.YMIN || YC[n] >= limits.YMAX);
        if (coded || on_limits || NLIST[n] == n)
            FROZEN[n] = 1;
    }
}

// Elements that the user keeps out of the groups' reach.
void set_aside_elements() {
    const GroupLimits& limits = GROUPLIMITS;
    static Table<std::int32_t, MAXEL, "the element list of Card 3.3.5.2"> aside;
    aside.fill(0);
    EXPLIST(listed(limits.elements, limits.NOEL), aside, limits.elements_place);
    for (std::int32_t e = 1; e <= MAXEL; ++e) {
        ELIST[e] = aside[e] == e ? 0 : e;
        if (ELIST[e] != 0 || ETYPE[e] == EL_DELETED)
            continue;
        for (const std::int32_t n : corners_of(e).n)
            if (n > 0)
                FROZEN[n] = 1;
    }
}

void find_limits() {
    bool first = true;
    for (std::int32_t e = 1; e <= NCONT; ++e) {
        if (ETYPE[e] == EL_DELETED)
            continue;
        for (const std::int32_t n : corners_of(e).n) {
            if (n <= 0)
                continue;
            if (first)
                LIMITS = {XC[n], XC[n], YC[n]};
            first = false;
            LIMITS.XMIN = std::min(LIMITS.XMIN, XC[n]);
            LIMITS.XMAX = std::max(LIMITS.XMAX, XC[n]);
            LIMITS.YMIN = std::min(LIMITS.YMIN, YC[n]);
        }
    }
}

float shortest_distance() {
    float shortest = NO_DISTANCE;
    for (std::int32_t e = 1; e <= NCONT; ++e) {
        if (ETYPE[e] != EL_CONTINUUM || is_joint(e))
            continue;
        const Corners corners = corners_of(e);
        for (int i = 0; i < 4; ++i)
            for (int k = i + 1; k < 4; ++k)
                if (corners.n[i] > 0 && corners.n[k] > 0 && corners.n[i] != corners.n[k])
                    shortest =
                        std::min(shortest, distance(node_point(corners.n[i]), node_point(corners.n[k])));
    }
    return shortest;
}

}  // namespace

void LOADENGINE(std::int32_t highest_node, std::int32_t highest_element) {
    NUMNP = highest_node;
    NCONT = highest_element;
    ELEMSIGN.fill(0);
    freeze_nodes();
    set_aside_elements();
    find_limits();
}

void SETTOLERANCES() {
    const float SHORT = shortest_distance();
    TOLLINE = TOLMODE == 0 ? TOLLENGTH : SHORT * TOLFACTOR;
    TOLMOVE = TOLMODE == 1 ? SHORT * TOLFACTOR : TOLLENGTH;
}

}  // namespace brelan
