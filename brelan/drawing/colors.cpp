#include "drawing/colors.h"

#include <fmt/core.h>

#include <array>

namespace brelan::tool {

std::string hex(Rgb color) {
    return fmt::format("#{:02x}{:02x}{:02x}", color.r, color.g, color.b);
}

namespace {

using Palette = std::array<Rgb, 6>;

// Beams are drawn over joints: no beam has the colour of a joint.
constexpr Palette JOINTS{{{0xd0, 0x27, 0x8f},
                          {0x7a, 0x45, 0xe5},
                          {0x00, 0xa5, 0xa5},
                          {0x6f, 0x9e, 0x00},
                          {0xb0, 0x5c, 0x00},
                          {0xd6, 0x5a, 0x5a}}};
constexpr Palette BEAMS{{{0x1b, 0x2a, 0x6b},
                         {0x6b, 0x3a, 0x00},
                         {0x00, 0x6b, 0x3c},
                         {0x15, 0x18, 0x1c},
                         {0x0a, 0x63, 0xc9},
                         {0x6e, 0x14, 0x3c}}};
constexpr Palette TRUSSES{{{0x8a, 0x1c, 0x1c},
                           {0x1d, 0x4f, 0x91},
                           {0x3f, 0x6b, 0x00},
                           {0x7a, 0x3b, 0x8f},
                           {0x94, 0x62, 0x00},
                           {0x33, 0x3a, 0x41}}};

// The share of the way towards black or white.
Rgb towards(Rgb color, double end, double share) {
    const auto part = [&](std::uint8_t v) { return static_cast<std::uint8_t>(v + share * (end - v)); };
    return {part(color.r), part(color.g), part(color.b)};
}

}  // namespace

Rgb material_color(ElementClass of, std::int32_t material) {
    static constexpr std::array<Rgb, 9> LIGHT{{{0xee, 0xdd, 0x88},
                                               {0x99, 0xdd, 0xff},
                                               {0xee, 0x88, 0x66},
                                               {0x44, 0xbb, 0x99},
                                               {0xff, 0xaa, 0xbb},
                                               {0xbb, 0xcc, 0x33},
                                               {0x77, 0xaa, 0xdd},
                                               {0xdd, 0xdd, 0xdd},
                                               {0xaa, 0xaa, 0x00}}};
    const auto number = static_cast<std::uint32_t>(material) - 1U;
    const auto round = [number](std::size_t colors) { return static_cast<double>(number / colors % 4); };
    if (of == ElementClass::solid)
        return towards(LIGHT[number % LIGHT.size()], 0.0, 0.18 * round(LIGHT.size()));
    const Palette& strong = of == ElementClass::joint ? JOINTS : of == ElementClass::beam ? BEAMS : TRUSSES;
    return towards(strong[number % strong.size()], 255.0, 0.22 * round(strong.size()));
}

}  // namespace brelan::tool
