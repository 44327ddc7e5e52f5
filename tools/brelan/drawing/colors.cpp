#include "drawing/colors.h"

#include <fmt/core.h>

#include <array>

namespace brelan::tool {

std::string hex(Rgb color) {
    return fmt::format("#{:02x}{:02x}{:02x}", color.r, color.g, color.b);
}

Rgb material_color(std::int32_t material) {
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
    const Rgb color = LIGHT[number % LIGHT.size()];
    const double share = 1.0 - 0.18 * static_cast<double>(number / LIGHT.size() % 4);
    const auto darker = [share](std::uint8_t v) { return static_cast<std::uint8_t>(v * share); };
    return {darker(color.r), darker(color.g), darker(color.b)};
}

}  // namespace brelan::tool
