// Where nodes and elements stand in CUTTAB, so that a mark need not look at every row.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/cut_table.h"

namespace brelan {

// Notes the last row of CUTTAB, just added for an element.
void note_row(Engine& engine);

// Empties CUTTAB.
void clear_rows(Engine& engine);

// The places in CUTTAB, ascending, of the rows that may have the node as a corner.
std::span<const std::uint32_t> rows_with(Engine& engine, std::int32_t node);

// The places in CUTTAB, ascending, of the rows of the elements.
std::vector<std::uint32_t> rows_of(Engine& engine, std::span<const std::int32_t> elements);

// Calls the action, in ascending order, with each row that has the side between two nodes and with the mark
// of that side.
template <class Action>
void for_rows_with_side(Engine& engine, std::int32_t a, std::int32_t b, Action action) {
    for (const std::uint32_t r : rows_with(engine, a)) {
        CutRow& row = engine.rows[r];
        for (int i = 0; i < row.corners(); ++i) {
            const RowSide& side = side_of(row, i);
            if ((row.N[side.A] == a && row.N[side.B] == b) || (row.N[side.A] == b && row.N[side.B] == a))
                action(row, row.S[side.S]);
        }
    }
}

}  // namespace brelan
