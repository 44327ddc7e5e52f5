// The cards of a base mesh and the bounds of its field. Who fills them: the cards, deck/deck_walk.cpp; the
// bounds, blocks/block_deck.cpp. The base mesh stages read them.
#pragma once

#include <cstdint>

#include "mesh/table.h"

namespace brelan {

inline constexpr std::int32_t MOST_BLOCK_ROWS = 100;  // block columns, and block rows, on cards

// A block column (W, DX, AX) or a block row (H, DY, AY).
struct BlockStrip {
    float length = 0.0F;    // width of the column, height of the row
    float smallest = 0.0F;  // wanted length of the smallest element
    float position = 0.0F;  // of the mid key point: 0.3 to 0.5, the sign tells the fine end
    FilePlace place{};      // of its card
};

struct BlockCards {
    std::int32_t block_columns = 0, block_rows = 0;  // NBX, NBY
    std::int32_t fixes_left = 1, fixes_right = 1, fixes_top = 0,
                 fixes_bottom = 1;           // IB_LEFT, IB_RIGHT, IB_TOP, IB_BOTTOM: 1 fixes the side
    float origin_x = 0.0F, origin_y = 0.0F;  // Xo, Yo: lower left corner of the field
    float third = 0.0F;  // Ywater, temperature or total head by kind; displacement has none
    Table<BlockStrip, MOST_BLOCK_ROWS, "the rows of Card 4.3"> columns;
    Table<BlockStrip, MOST_BLOCK_ROWS, "the rows of Card 4.4"> rows;
    std::int32_t edit_follows = 0;  // IGMOD
};

// Bounds of the field.
struct FieldBounds {
    float left = 0.0F, right = 0.0F, bottom = 0.0F, top = 0.0F;
};

}  // namespace brelan
