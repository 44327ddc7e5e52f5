// Compaction: after deletions the numbers of nodes and elements close up (Passes 15 to 19).
#pragma once

#include <cstdint>

#include "mesh/edit_tables.h"
#include "mesh/numbers.h"
#include "mesh/tables.h"

namespace brelan {

// Packs the elements with type not 0 to positions from 1 in the order of their numbers, across the types.
// Midside words that are left out stay at their positions: only corners, material and attributes move.
// Returns the last position.
ElementNumber pack_elements(Mesh& mesh, MidsideNodes midsides = MidsideNodes::left_out);

struct PackedNodes {
    NodeNumber last;       // the last position
    NodeNumbers position;  // by old number; 0 for a node that is gone
};

// The final number of a position, counted from the first number on.
template <class Number>
constexpr Number placed(Number first, Number position) {
    return first + (position.value - 1);
}

// Packs the nodes of the packed elements to positions from 1. H and CF move in the temperature kind only.
PackedNodes pack_nodes(Mesh& mesh, ElementNumber last, MidsideNodes midsides = MidsideNodes::left_out);

// Renames the corners of the packed elements, and midside nodes that are taken, to the nodes' final numbers.
void renumber_words(Mesh& mesh, ElementNumber last, const PackedNodes& nodes, NodeNumber first_node,
                    MidsideNodes midsides = MidsideNodes::left_out);

// Moves the packed nodes to numbers from NSNODE and activates them. Ends the run when they leave the table.
void place_nodes(const EditCards& edit, Mesh& mesh, NodeNumber last, NodeNumber first_node);

// Moves the packed elements to numbers from NSNEL and activates them. Ends the run when they leave the table.
void place_elements(const EditCards& edit, Mesh& mesh, ElementNumber last, ElementNumber first_element);

}  // namespace brelan
