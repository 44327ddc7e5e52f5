// The sides of the rows of a cut.
#pragma once

#include <cstdint>

#include "group/engine.h"

namespace brelan {

// Calls the action, in ascending order, with each row that has the side between two nodes and with the mark
// of that side.
template <class Action>
void for_rows_with_side(Engine& engine, std::int32_t a, std::int32_t b, Action action) {
    for (const std::uint32_t r : rows_with(engine, a)) {
        CutRow& row = engine.rows[r];
        for (int i = 0; i < row.corners(); ++i) {
            const RowSide& side = side_of(row, i);
            if ((row.corner_node[side.a] == a && row.corner_node[side.b] == b) ||
                (row.corner_node[side.a] == b && row.corner_node[side.b] == a))
                action(row, row.side_node[side.mark]);
        }
    }
}

}  // namespace brelan
