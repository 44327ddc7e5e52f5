// The cards of a base mesh and the bounds of its field. Who fills them: the cards, run/read_cards.cpp; the
// bounds, basemesh/block_deck.cpp. The base mesh stages read them.
#pragma once

#include <cstdint>

#include "mesh/table.h"

namespace brelan {

inline constexpr std::int32_t MAXBLOCKROWS = 100;  // block columns, and block rows, on cards

// A block column (W, DX, AX) or a block row (H, DY, AY).
struct BlockStrip {
    float length = 0.0F;    // width of the column, height of the row
    float smallest = 0.0F;  // wanted length of the smallest element
    float position = 0.0F;  // of the mid key point: 0.3 to 0.5, the sign tells the fine end
};

struct BlockCards {
    std::int32_t NBX = 0, NBY = 0;
    std::int32_t IB_LEFT = 1, IB_RIGHT = 1, IB_TOP = 0, IB_BOTTOM = 1;  // 1 fixes the side
    float Xo = 0.0F, Yo = 0.0F;                                         // lower left corner of the field
    float third = 0.0F;  // Ywater, temperature or total head by kind; displacement has none
    Table<BlockStrip, MAXBLOCKROWS, "the rows of Card 4.3"> columns;
    Table<BlockStrip, MAXBLOCKROWS, "the rows of Card 4.4"> rows;
    std::int32_t IGMOD = 0;
};

// Bounds of the field.
struct FieldBounds {
    float XMIN = 0.0F, XMAX = 0.0F, YMIN = 0.0F, YTOP = 0.0F;
};

}  // namespace brelan
