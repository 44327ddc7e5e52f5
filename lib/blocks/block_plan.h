// From the cards of a base mesh to its blocks, each told by nine key points.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "mesh/block_tables.h"
#include "mesh/mesh_records.h"

namespace brelan {

// Divisions of a block column or row, and the distance of its mid key point from its start.
struct BlockDivision {
    std::int32_t count = 1;
    float middle = 0.0F;
};

// A side of length L whose middle key point lies at a L from its fine end maps equal steps of the local
// coordinate to lengths that grow from that end (quadratic isoparametric mapping, O. C. Zienkiewicz, The
// Finite Element Method, on grading by mid-side nodes). The count makes the first of them the wanted length;
// it comes out below 1, or as the smallest integer, for lengths that make no sense.
BlockDivision divide_strip(const BlockStrip& strip);

struct KeyPoint {
    float x = 0.0F, y = 0.0F;
};

// A block by its key points, counted from 1: corners from the top right anti-clockwise, then the middles of
// top, left, bottom and right side, then the centre; 0 for none. The corners are always there.
struct PlannedBlock {
    std::array<std::int32_t, 9> key{};
    std::int32_t material = 1;  // 0 for a hole
    std::int32_t column_divisions = 1, row_divisions = 1;
    ElementAttributes attributes;
};

// How nodes find their places. Existing decks count on sums of 32 bits, which drift in long strips, and on
// bounds and shared nodes that are found by distance; by grid, each node is known by its row and column, and
// stands on the bounds and the lines between blocks exactly.
enum class NodePlacing { summed, by_grid };

// The blocks of a base mesh, by columns from the top. It can say more than the cards: holes, blocks of eight
// points, doubled divisions, other first numbers, an order by rows.
struct BlockPlan {
    std::string title;
    FieldBounds field;
    ElementNumber first_element{1};
    NodeNumber first_node{1};
    float scale = 1.0F;  // of the key points
    std::int32_t block_columns = 0, block_rows = 0;
    bool double_x = false, double_y = false;  // quadratic elements across, and upwards
    bool rows_first = false;                  // nodes and elements count along the rows
    NodePlacing placing = NodePlacing::summed;
    std::vector<KeyPoint> key_points;
    std::vector<PlannedBlock> blocks;
};

// The plan that the cards ask for. Ends the run at a division count below 1, naming the card row.
BlockPlan plan_blocks(const BlockCards& block_cards, NodePlacing placing = NodePlacing::summed);

}  // namespace brelan
