// The group engine at work: what it knows of the mesh that it changes.
#pragma once

#include <cstdint>

#include "group/element_index.h"
#include "group/node_index.h"
#include "mesh/tables.h"
#include "text/watch.h"

namespace brelan {

inline constexpr std::int32_t MOST_CELLS = 400;  // of an index, along one axis

// Limits of the mesh before the first group.
struct MeshLimits {
    float left = 0.0F, right = 0.0F, bottom = 0.0F;
};

struct Engine {
    Table<std::int8_t, LAST_NODE, "FROZEN"> frozen;  // 1: the node must not be moved
    Table<std::int8_t, LAST_ELEMENT, "ELEMSIGN">
        side_sign;  // -1: a line element that joints leave on the other side
    Table<ElementNumber, LAST_ELEMENT, "ELIST">
        workable;                   // the element's own number; none: no group changes it
    NodeNumber highest_node;        // in use
    ElementNumber highest_element;  // in use, of any type
    bool clears_midsides = false;   // of the words that a new element number finds
    std::int32_t group = 0;         // in work
    MeshLimits limits;

    // Indexes save looks that would find nothing and never change a result, so the program always runs with
    // them; tests run both ways and hold the results against each other. Without them every search of the
    // engine is a plain scan in ascending order.
    bool uses_indexes = true;
    ElementIndex element_index;
    NodeIndex node_index;

    Watch* watch = nullptr;  // of the run: looks at the index are counted by it

    // Lets the watcher of the run end it, within a long step.
    void look() const {
        if (watch != nullptr)
            watch->look();
    }
};

}  // namespace brelan
