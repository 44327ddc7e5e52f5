#include "blocks/block_grid.h"

#include <cmath>

#include "text/as_written.h"

namespace brelan {

namespace {

// A key value of this magnitude or less counts as absent: a middle that truly lies at 0 is moved to the mean
// of its neighbours.
constexpr float ABSENT = 1.0E-15F;

constexpr std::size_t TITLE_COLUMNS = 60;

// Key row and column of a block's nine positions, from its top left corner.
constexpr int KEY_ROW[9] = {0, 0, 2, 2, 0, 1, 2, 1, 1};
constexpr int KEY_COLUMN[9] = {2, 0, 0, 2, 1, 0, 1, 2, 1};
constexpr std::size_t CENTRE = 8;

// A key value as the block file shows it.
float key_value(float value, float scale) {
    return as_written<"(E16.9)">(value) * scale;
}

void fill_absent_middles(Grid<float>& key, std::int32_t rows, std::int32_t columns) {
    for (std::int32_t c = 2; c < columns; c += 2)
        for (std::int32_t r = 1; r <= rows; r += 2)
            if (std::abs(key(r, c)) <= ABSENT)
                key(r, c) = (key(r, c - 1) + key(r, c + 1)) / 2.0F;
    for (std::int32_t c = 1; c <= columns; c += 2)
        for (std::int32_t r = 2; r < rows; r += 2)
            if (std::abs(key(r, c)) <= ABSENT)
                key(r, c) = (key(r - 1, c) + key(r + 1, c)) / 2.0F;
}

}  // namespace

BlockGrid lay_out_blocks(const BlockPlan& plan) {
    BlockGrid grid;
    grid.title = plan.title.substr(0, TITLE_COLUMNS);
    grid.field = plan.field;
    grid.first_element = plan.first_element;
    grid.first_node = plan.first_node;
    grid.block_columns = plan.block_columns;
    grid.block_rows = plan.block_rows;
    grid.double_x = plan.double_x;
    grid.double_y = plan.double_y;
    grid.rows_first = plan.rows_first;
    grid.placing = plan.placing;
    grid.key_points = static_cast<std::int32_t>(plan.key_points.size());
    const std::int32_t key_rows = 2 * plan.block_rows + 1;
    const std::int32_t key_columns = 2 * plan.block_columns + 1;
    grid.key_x = Grid<float>(key_rows, key_columns, 0.0F);
    grid.key_y = Grid<float>(key_rows, key_columns, 0.0F);
    grid.block = Grid<Block>(plan.block_rows, plan.block_columns, Block{});
    grid.column_divisions.resize(static_cast<std::size_t>(plan.block_columns));
    grid.row_divisions.resize(static_cast<std::size_t>(plan.block_rows));
    auto planned = plan.blocks.begin();
    for (std::int32_t p = 1; p <= plan.block_columns; ++p) {
        for (std::int32_t q = 1; q <= plan.block_rows; ++q, ++planned) {
            grid.block(q, p) = {planned->key[CENTRE] != 0 ? -planned->material : planned->material,
                                planned->attributes};
            grid.column_divisions[static_cast<std::size_t>(p - 1)] =
                plan.double_x ? 2 * planned->column_divisions : planned->column_divisions;
            grid.row_divisions[static_cast<std::size_t>(q - 1)] =
                plan.double_y ? 2 * planned->row_divisions : planned->row_divisions;
            for (std::size_t i = 0; i < planned->key.size(); ++i) {
                if (planned->key[i] == 0)
                    continue;
                const KeyPoint& point = plan.key_points[static_cast<std::size_t>(planned->key[i] - 1)];
                const std::int32_t row = 2 * q - 1 + KEY_ROW[i];
                const std::int32_t column = 2 * p - 1 + KEY_COLUMN[i];
                grid.key_x(row, column) = key_value(point.x, plan.scale);
                grid.key_y(row, column) = key_value(point.y, plan.scale);
            }
        }
    }
    if (plan.placing == NodePlacing::by_grid)
        return grid;  // its blocks have all their points, and 0 is a place like others
    fill_absent_middles(grid.key_x, key_rows, key_columns);
    fill_absent_middles(grid.key_y, key_rows, key_columns);
    return grid;
}

}  // namespace brelan
