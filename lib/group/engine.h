// The group engine at work: what it knows of the mesh that it changes.
#pragma once

#include <cstdint>

#include "group/element_index.h"
#include "group/node_index.h"
#include "mesh/tables.h"

namespace brelan {

// Limits of the mesh before the first group.
struct MeshLimits {
    float left = 0.0F, right = 0.0F, bottom = 0.0F;
};

struct Engine {
    Table<std::int8_t, HIGHEST_NODE_NUMBER, "FROZEN"> frozen;  // 1: the node must not be moved
    Table<std::int8_t, HIGHEST_ELEMENT_NUMBER, "ELEMSIGN">
        side_sign;  // -1: a line element that joints leave on the other side
    Table<std::int32_t, HIGHEST_ELEMENT_NUMBER, "ELIST">
        workable;                      // the element's own number; 0: no group changes it
    std::int32_t highest_node = 0;     // in use
    std::int32_t highest_element = 0;  // in use, of any type
    std::int32_t group = 0;            // in work
    MeshLimits limits;

    // Indexes save looks that would find nothing and never change a result, so the program always runs with
    // them; tests run both ways and hold the results against each other. Without them every search of the
    // engine is a plain scan in ascending order.
    bool uses_indexes = true;
    ElementIndex element_index;
    NodeIndex node_index;
};

}  // namespace brelan
