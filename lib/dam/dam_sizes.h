// The sizes that follow from a dam's cards: slope codes, element sizes, limits.
#pragma once

#include <cstdint>

#include "dam/dam_tables.h"

namespace brelan {

// Slope codes of the two sides of a dam.
struct SlopeCodes {
    std::int32_t left = 1, right = 1;
};

// The codes by the ratios of height and run. The right one follows the left one where the two lie on
// different sides of the limit between the steep and the flat templates, which have different numbers of
// rows.
SlopeCodes slope_codes(float height, float left_run, float right_run);

// The sizes of a dam.
DamSizes size_dam(const DamCards& dam);

}  // namespace brelan
