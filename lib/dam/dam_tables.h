// The cards of an earth dam and the sizes that follow from them. Who fills them: the cards,
// dam/dam_cards.cpp; the sizes, dam/dam_sizes.cpp. The deck writers read them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "plane/point.h"

namespace brelan {

inline constexpr float EVEN = 0.5F;        // position of the mid key point of an even block
inline constexpr float MARGIN = 0.3F;      // of the margins, which are fine towards the dam
inline constexpr float LAST_LAYER = 0.4F;  // of the last layer, which is fine at its top

// Points of the profile: the left toe is the origin, x runs to the right, y up from the dam's base.
using DamOutline = std::vector<Point>;

// Cards 5.1 to 5.5.
struct DamCards {
    std::int32_t layer_count = 0;        // NLAYER: subsoil layers; 0 or more
    bool core = false, cut_off = false;  // a core; a cut-off wall, only with layers
    bool shells = false;                 // both sides of the crest are made of slope templates
    // NCREST: divisions of the middle block column, 0 for a size like the others
    std::int32_t crest_divisions = 0;
    float initial_head = 0.0F;                 // Hi: initial head or temperature
    float height = 0.0F, water_height = 0.0F;  // HDAM, HWATER: height of the dam, water height upstream
    float left_run = 0.0F, right_run = 0.0F;   // RUNL, RUNR: horizontal runs of the slopes
    float crest = 0.0F;                        // width of the crest
    float left_width = 0.0F, middle_width = 0.0F,
          right_width = 0.0F;                       // WLEFT, WMID, WRIGHT: widths of the block columns
    float left_margin = 0.0F, right_margin = 0.0F;  // XLEFT, XRIGHT: margins beyond the dam, only with layers
    std::vector<float> layers;                      // thicknesses from the top
    DamOutline core_points, wall_points;            // four points, in the order of the card
};

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
