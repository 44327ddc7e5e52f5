#include "text/windows_text.h"

#ifdef _WIN32

#include <windows.h>

#include <utility>

namespace brelan {

std::wstring wide_text(std::string_view bytes) {
    const int size = static_cast<int>(bytes.size());
    for (const auto& [page, flags] : {std::pair<UINT, DWORD>{CP_UTF8, MB_ERR_INVALID_CHARS}, {CP_ACP, 0}}) {
        const int room = MultiByteToWideChar(page, flags, bytes.data(), size, nullptr, 0);
        if (room <= 0)
            continue;
        std::wstring text(static_cast<std::size_t>(room), L'\0');
        MultiByteToWideChar(page, flags, bytes.data(), size, text.data(), room);
        return text;
    }
    return {};
}

std::string bytes_of(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int room = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), room, nullptr, nullptr);
    return bytes;
}

}  // namespace brelan

#endif
