#include "commands/editing/character_code.h"

#include "text/utf_8.h"

namespace brelan::tool {

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = size_of_character(text);
        if (size == 0)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

std::string utf8_of_bytes(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0U | (byte >> 6U));
            text += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return text;
}

}  // namespace brelan::tool
