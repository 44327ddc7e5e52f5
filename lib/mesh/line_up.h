// Line-up of truss lines: trusses on an edge of a quadrilateral of material 7 slide along their line until
// they stand level with the opposite edge.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/move_tables.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// A node that the line-up moves, and where to.
struct LinedNode {
    NodeNumber node;
    float x, y;
};

struct LineUp {
    std::int32_t is_on = 0;        // 0 off, else on for this deck
    std::vector<LinedNode> nodes;  // in the order in which they are moved
};

// Reads LINEUP from "LineUp.dat" in the working directory, 0 when there is none. A value above 0 works once:
// the file then holds 0.
void read_line_up(Channels& channels, LineUp& line_up);

// Looks for the trusses that the line-up moves: fills its nodes, and the first move list with the nodes that
// a slide would pass. All comparisons go by the coordinates before the line-up.
void search_line_up(Mesh& mesh, MoveLists& moves, LineUp& line_up);

// Moves the nodes that the search has found.
void apply_line_up(Mesh& mesh, const LineUp& line_up);

}  // namespace brelan
