// The block file "Bmesh.Tmp" as it is read. It can say more than the cards: holes, eight-point blocks,
// doubled divisions, other first numbers.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "blocks/block_mesh.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// The two values of a block that its elements take, by kind: KS and KF, IDH, or THIC and DEN.
struct BlockAttributes {
    std::int32_t skeleton = 0, fluid = 0, attribute = 0;
    float thickness = 0.0F, density = 0.0F;
};

struct Block {
    std::int32_t material = 0;  // 0 a hole, negative a nine-point block
    BlockAttributes attributes;
};

struct BlockFile {
    std::string title;  // 60 columns
    std::int32_t first_element = 1, first_node = 1;
    std::int32_t block_columns = 0, block_rows = 0;
    bool double_x = false, double_y = false;  // quadratic elements across, and upwards
    bool rows_first = false;                  // the order flag
    std::int32_t key_points = 0;
    Grid<float> key_x, key_y;  // by key row and key column from 1
    std::vector<std::int32_t> column_divisions,
        row_divisions;  // divisions by block column and row from 0, doubled where asked for
    Grid<Block> block;  // by block row and block column from 1
};

// Reads the whole file.
BlockFile read_block_file(LayoutKind kind, Channel& file);

}  // namespace brelan
