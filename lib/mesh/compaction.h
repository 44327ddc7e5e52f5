// Compaction: after deletions the numbers of nodes and elements close up (Passes 15 to 19).
#pragma once

#include <cstdint>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"

namespace brelan {

// Packs the elements with type not 0 to positions from 1 in the order of their numbers, across the
// types, and marks the nodes that they use in node_used. Midside words stay at their positions: only corners,
// material and attributes move. Returns the elements kept.
std::int32_t pack_elements(Mesh& mesh);

// Packs the used nodes to positions from 1 and notes them in new_number. H and CF move in the
// temperature kind only. Returns the nodes kept.
std::int32_t pack_nodes(Mesh& mesh);

// Renames the corners of the packed elements to the nodes' final numbers.
void renumber_corners(Mesh& mesh, std::int32_t elements, std::int32_t first_node);

// Moves the packed nodes to numbers from NSNODE and activates them. Ends the run when they leave the table.
void place_nodes(const EditCards& edit, Mesh& mesh, std::int32_t nodes, std::int32_t first_node);

// Moves the packed elements to numbers from NSNEL and activates them. Ends the run when they leave the table.
void place_elements(const EditCards& edit, Mesh& mesh, std::int32_t elements, std::int32_t first_element);

}  // namespace brelan
