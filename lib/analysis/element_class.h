// What an element is for the user.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace brelan {

// A joint is a continuum record that its attributes mark: KS above 0 (coupled), IDH below 0 or from 100 on
// (temperature and head: in a file a joint's negative IDH stands as its absolute value less 100), DEN below 0
// (displacement).
enum class ElementClass : std::uint8_t { solid, joint, beam, truss };

inline constexpr std::array<std::string_view, 4> CLASS_NAMES{"solid", "joint", "beam", "truss"};
inline constexpr std::array<std::string_view, 4> CLASS_PLURALS{"solids", "joints", "beams", "trusses"};

constexpr std::string_view name_of(ElementClass of) {
    return CLASS_NAMES[static_cast<std::size_t>(of)];
}

// Elements of one class and material as one thing: "material 2", "joint 7", "beam 1", "truss 1".
std::string group_name(ElementClass of, std::int32_t material);

}  // namespace brelan
