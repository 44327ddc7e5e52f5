// Compaction: after deletions the numbers of nodes and elements close up (Passes 15 to 19).
#pragma once

#include <cstdint>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"

namespace brelan {

// Packs the elements with type not 0 to positions from 1 in the order of their numbers, across the types.
// Midside words stay at their positions: only corners, material and attributes move. Returns the elements
// kept.
std::int32_t pack_elements(Mesh& mesh);

struct PackedNodes {
    std::int32_t count = 0;
    NodeNumbers position;  // by old number; 0 for a node that is gone
};

// Packs the nodes of the packed elements to positions from 1. H and CF move in the temperature kind only.
PackedNodes pack_nodes(Mesh& mesh, std::int32_t elements);

// Renames the corners of the packed elements to the nodes' final numbers.
void renumber_corners(Mesh& mesh, std::int32_t elements, const PackedNodes& nodes, std::int32_t first_node);

// Moves the packed nodes to numbers from NSNODE and activates them. Ends the run when they leave the table.
void place_nodes(const EditCards& edit, Mesh& mesh, std::int32_t nodes, std::int32_t first_node);

// Moves the packed elements to numbers from NSNEL and activates them. Ends the run when they leave the table.
void place_elements(const EditCards& edit, Mesh& mesh, std::int32_t elements, std::int32_t first_element);

}  // namespace brelan
