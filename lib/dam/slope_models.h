// The five slope templates: meshes of a triangle that an edit maps onto the triangle of a dam's slope.
//
//                        /| (X, Y)
//              slope   /  |
//         N_DIV parts /   |  rows parts        mapped onto       1 crest
//                   /     |                                     / |
//            (0, 0) ------+ (X, 0)                       toe 2 ---3 foot
//                columns parts
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "mesh/numbers.h"

namespace brelan {

struct SlopeModel {
    std::int32_t slope_code;  // slope code of a dam's side
    std::string_view file;
    float width, height;         // corners of the template's triangle, and extents of its slope
    std::int32_t divisions;      // divisions of the slope
    std::int32_t columns, rows;  // divisions of the base and of the vertical side
    std::int32_t elements;       // of the template
    std::int32_t low_points;     // slope points whose node has the point's number, from the toe
    std::int32_t high_sum,
        high_element;  // point and node above them sum up to this; parts and element to that

    // Node of a slope point from 1, the toe, to N_DIV + 1, the crest.
    constexpr NodeNumber node(std::int32_t point) const {
        return NodeNumber(point <= low_points ? point : high_sum - point);
    }

    // Element of a slope part from 0, at the toe, to N_DIV - 1.
    constexpr ElementNumber element(std::int32_t part) const {
        if (high_element == 0)
            return ElementNumber(part + 2);
        return ElementNumber(part <= 19 ? part + 1 : high_element - part);
    }
};

inline constexpr std::array<SlopeModel, 5> SLOPE_MODELS{{
    {1, "C:\\Vork\\Qx\\Qxdata\\Slope\\L_1.0.Mes", 28.2844F, 28.2844F, 40, 28, 28, 412, 21, 242, 214},
    {2, "C:\\Vork\\Qx\\Qxdata\\Slope\\L_1.5.Mes", 33.28F, 22.1846F, 40, 33, 28, 452, 21, 217, 190},
    {3, "C:\\Vork\\Qx\\Qxdata\\Slope\\L_2.0.Mes", 26.0F, 13.0F, 29, 26, 13, 182, 30, 0, 0},
    {4, "C:\\Vork\\Qx\\Qxdata\\Slope\\L_2.5.Mes", 32.5F, 13.0F, 35, 33, 13, 228, 36, 0, 0},
    {5, "C:\\Vork\\Qx\\Qxdata\\Slope\\L_3.0.Mes", 39.0F, 13.0F, 41, 39, 13, 270, 42, 0, 0},
}};

// The template of a MODEL; a number that names none has the first.
constexpr const SlopeModel& slope_model(std::int32_t code) {
    return SLOPE_MODELS[static_cast<std::size_t>(code >= 2 && code <= 5 ? code - 1 : 0)];
}

}  // namespace brelan
