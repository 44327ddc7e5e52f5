// The sizes that follow from the cards of an earth dam. Who fills them: dam/dam_sizes.cpp. The deck writers
// read them.
#pragma once

#include <cstdint>

#include "deck/dam_cards.h"

namespace brelan {

inline constexpr float EVEN = 0.5F;        // position of the mid key point of an even block
inline constexpr float MARGIN = 0.3F;      // of the margins, which are fine towards the dam
inline constexpr float LAST_LAYER = 0.4F;  // of the last layer, which is fine at its top

// What follows from the cards.
struct DamSizes {
    float water_share = 0.0F;  // water level as a share of the height
    float left_size = 0.0F, middle_size = 0.0F, right_size = 0.0F,
          vertical_size = 0.0F;                               // element sizes: left, middle, right, vertical
    std::int32_t left_model = 1, right_model = 1;             // slope codes, only with shells
    float left = 0.0F, right = 0.0F, bottom = 0.0F;           // limits of the field
    float crest_left = 0.0F, crest_right = 0.0F, toe = 0.0F;  // of the profile: the crest's ends, right toe
};

}  // namespace brelan
