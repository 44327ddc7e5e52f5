// Text of the program, which is bytes, and of Windows, which is wide characters.
#pragma once

#ifdef _WIN32

#include <string>
#include <string_view>

namespace brelan {

// Bytes are UTF-8, or else characters of the system's code page: decks were written in it before.
std::wstring wide_text(std::string_view bytes);

// UTF-8; what is half a character becomes the sign of one that is not known.
std::string bytes_of(std::wstring_view text);

}  // namespace brelan

#endif
