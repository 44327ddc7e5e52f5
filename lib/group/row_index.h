// Where nodes and elements stand in the cut table, so that a mark need not look at every row.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/cut_table.h"

namespace brelan {

struct Engine;

struct RowIndex {
    using Rows = std::vector<std::uint32_t>;

    std::vector<Rows> by_node;              // places of rows, ascending
    std::vector<std::uint32_t> by_element;  // place behind 1, 0 for an element without a row
    Rows every_row;                         // 0, 1, 2, ...
};

// Notes the last row of the cut, just added for an element.
void note_row(Engine& engine);

// Empties the cut table.
void clear_rows(Engine& engine);

// The places in the cut table, ascending, of the rows that may have the node as a corner.
std::span<const std::uint32_t> rows_with(Engine& engine, std::int32_t node);

// The places in the cut table, ascending, of the rows of the elements.
std::vector<std::uint32_t> rows_of(const Engine& engine, std::span<const std::int32_t> elements);

}  // namespace brelan
