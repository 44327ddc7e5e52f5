// Characters of a text in UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace brelan {

// Bytes of the character that the text begins with; 0 where it begins with none: an overlong form, a
// surrogate, half a character, no byte at all.
constexpr std::size_t size_of_character(std::string_view text) {
    if (text.empty())
        return 0;
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char c = byte(0);
    const std::size_t size = c < 0x80U                 ? 1
                             : c >= 0xC2U && c < 0xE0U ? 2
                             : c >= 0xE0U && c < 0xF0U ? 3
                             : c >= 0xF0U && c < 0xF5U ? 4
                                                       : 0;
    if (size > text.size())
        return 0;
    for (std::size_t k = 1; k < size; ++k)
        if ((byte(k) & 0xC0U) != 0x80U)
            return 0;
    // Overlong forms, surrogates and what lies beyond the last code point.
    const unsigned char second = size > 1 ? byte(1) : 0x90;
    const bool none = (c == 0xE0U && second < 0xA0U) || (c == 0xEDU && second > 0x9FU) ||
                      (c == 0xF0U && second < 0x90U) || (c == 0xF4U && second > 0x8FU);
    return none ? 0 : size;
}

}  // namespace brelan
