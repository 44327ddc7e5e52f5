// The code in which a deck is written: UTF-8, or an older one of 8 bits, each byte of which is shown as the
// character of that number.
#pragma once

#include <string>
#include <string_view>

namespace brelan::tool {

bool is_utf8(std::string_view text);

// The characters of 8-bit bytes as UTF-8.
std::string utf8_of_bytes(std::string_view bytes);

}  // namespace brelan::tool
