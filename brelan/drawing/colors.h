// Colours of materials and of what is drawn over them.
#pragma once

#include <cstdint>
#include <string>

#include "analysis/mesh_lists.h"

namespace brelan::tool {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;
};

std::string hex(Rgb color);  // "#77aadd"

// A material has the same colour in every picture. Solids have light colours that are told apart by
// colour-blind eyes as well; from the tenth material on darker ones. Joints, beams and trusses have strong
// colours, each class six of its own; from the seventh material on lighter ones.
Rgb material_color(ElementClass of, std::int32_t material);

inline constexpr Rgb INK{0x22, 0x28, 0x30};        // text and frame
inline constexpr Rgb MESH_LINE{0x5b, 0x66, 0x70};  // sides of elements
inline constexpr Rgb REGION_LINE{0x33, 0x3c, 0x46};
inline constexpr Rgb ELEMENT_NUMBER{0x1b, 0x2a, 0x6b};
inline constexpr Rgb JOINT_CORE{0xff, 0xff, 0xff};
inline constexpr Rgb CODE_COLOR{0x0b, 0x6e, 0x4f};
inline constexpr Rgb SECOND_CODE_COLOR{0x1f, 0x6f, 0xc4};
inline constexpr Rgb SHAPE_COLOR{0xe0, 0x4f, 0x00};  // outlines of a deck
inline constexpr Rgb FAULT_COLOR{0xe0, 0x00, 0x1b};
inline constexpr Rgb COMES_COLOR{0x00, 0x4c, 0xc8};  // at a step of an analysis
inline constexpr Rgb GOES_COLOR{0xa8, 0x00, 0x6c};

}  // namespace brelan::tool
