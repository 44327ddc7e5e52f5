// Move lists and the values of the short-element collapse. Who fills them: the first list, the line-up; the
// rest, deck/defaults_file.cpp.
#pragma once

#include <cstdint>

#include "mesh/tables.h"

namespace brelan {

inline constexpr std::int32_t MOST_MOVES = HIGHEST_NODE_NUMBER;  // pairs of a move list

// A node that goes a fraction of the way to another; with 1.0 it merges with it.
struct NodeMove {
    NodeNumber moved, target;
    float fraction = 0.0F;
};

// The same of nodes by their positions among the used ones.
struct PlaceMove {
    std::int32_t moved = 0, target = 0;
    float fraction = 0.0F;
};

// First list: filled by the line-up. Second list: read from the defaults file. The short-element collapse is
// from the defaults file too.
struct MoveLists {
    std::int32_t first_count = 0, second_count = 0;
    Table<NodeMove, MOST_MOVES, "the move list"> first;
    Table<PlaceMove, MOST_MOVES, "the second move list"> second;

    // IDCOL: 0 off; 1 beams and trusses, 2 beams, 3 trusses; 4 to 6 of the materials below
    std::int32_t collapse_mode = 0;
    float collapse_factor = 0.0F;       // FCOL: on the mean length
    MaterialNumber beam_materials[3];   // of modes 4 and 6
    MaterialNumber truss_materials[3];  // of modes 5 and 6
};

}  // namespace brelan
