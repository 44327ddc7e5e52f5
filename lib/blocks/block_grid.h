// The blocks of a base mesh in their grid.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "blocks/block_plan.h"

namespace brelan {

// A grid of values addressed by row and column from 1, rows from the top; the row runs fastest.
template <class T>
class Grid {
public:
    Grid() = default;
    Grid(std::int32_t rows, std::int32_t columns, T value)
        : rows_(rows), cell_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), value) {}
    T& operator()(std::int32_t row, std::int32_t column) { return cell_[place(row, column)]; }
    const T& operator()(std::int32_t row, std::int32_t column) const { return cell_[place(row, column)]; }

private:
    std::size_t place(std::int32_t row, std::int32_t column) const {
        return static_cast<std::size_t>(column - 1) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row - 1);
    }
    std::int32_t rows_ = 0;
    std::vector<T> cell_;
};

struct Block {
    std::int32_t material = 0;  // 0 a hole, negative a nine-point block
    ElementAttributes attributes;
};

struct BlockGrid {
    std::string title;  // 60 columns
    FieldBounds field;
    ElementNumber first_element{1};
    NodeNumber first_node{1};
    std::int32_t block_columns = 0, block_rows = 0;
    bool double_x = false, double_y = false;
    bool rows_first = false;
    NodePlacing placing = NodePlacing::summed;
    std::int32_t key_points = 0;
    Grid<float> key_x, key_y;  // by key row and key column from 1
    std::vector<std::int32_t> column_divisions,
        row_divisions;  // divisions by block column and row from 0, doubled where asked for
    Grid<Block> block;  // by block row and block column from 1
};

// Lays the blocks out: middles that the plan leaves open lie half way between their neighbours, and the last
// block of a column or row decides its divisions.
BlockGrid lay_out_blocks(const BlockPlan& plan);

}  // namespace brelan
