// The cards of an earth dam as values.
#pragma once

#include <cstdint>
#include <vector>

#include "plane/point.h"
#include "text/run_end.h"

namespace brelan {

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
    // Of the cards and of the list of layers, for messages.
    FilePlace switches_place, profile_place, core_place, margins_place, layers_place, wall_place;
};

}  // namespace brelan
