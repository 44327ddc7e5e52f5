// Midside nodes of second-order elements through the sound cut: they stay on their sides, and the parts of
// elements get their own.
#pragma once

#include <map>
#include <vector>

#include "group/engine.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// Word of an element that is to get a midside node.
inline constexpr NodeNumber MIDSIDE_TO_COME{-1};

class Midsides {
public:
    // Takes note of the midside nodes before the first group. What an earlier mesh has left in the words of
    // numbers that no element uses is cleared, behind the highest as they come into use.
    Midsides(Mesh& mesh, Engine& engine);

    // Gives every side of the second-order elements its node: the one it had, moved to its middle where an
    // end has moved, or a new one.
    void restore(Mesh& mesh, Engine& engine);

private:
    struct Kept {
        NodeNumber node;
        Point from, to;  // of the side, its lower node first
    };
    std::map<Side, Kept> sides_;
};

// Words of an element that was made from another: all to come where that one is of second order.
void ask_for_midsides(Mesh& mesh, ElementNumber from, ElementNumber e);

}  // namespace brelan
