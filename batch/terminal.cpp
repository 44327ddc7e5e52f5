#include "terminal.h"

#include <algorithm>
#include <optional>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

#include "text/run_end.h"
#include "text/text_line.h"
#include "text/windows_text.h"

namespace brelan {

namespace {

constexpr std::size_t LONGEST_LINE = static_cast<std::size_t>(LINE_COLUMNS) + 1;

// The next line of a file or a pipe without its line feed; false at the end.
bool read_bytes(std::string& line) {
    int c = std::getchar();
    if (c == EOF)
        return false;
    for (; c != EOF && c != '\n'; c = std::getchar())
        if (line.size() < LONGEST_LINE)
            line += static_cast<char>(c);
    return true;
}

bool write_bytes(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() && std::fflush(stream) == 0;
}

#ifdef _WIN32

// The console behind a stream; none where it is a file or a pipe, which is then set to hand its bytes over as
// they are.
std::optional<HANDLE> console_of(std::FILE* stream) {
    const int number = _fileno(stream);
    if (number < 0)  // the program was started without this stream
        return {};
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(number));
    if (DWORD mode = 0; GetConsoleMode(handle, &mode) != 0)
        return handle;
    _setmode(number, _O_BINARY);
    return {};
}

bool write_characters(HANDLE console, std::string_view text) {
    constexpr std::size_t AT_ONCE = 8000;  // consoles refuse more than some ten thousand
    const std::wstring wide = wide_text(text);
    std::wstring_view rest = wide;
    while (!rest.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(rest.size(), AT_ONCE));
        if (WriteConsoleW(console, rest.data(), size, &written, nullptr) == 0 || written == 0)
            return false;
        rest.remove_prefix(written);
    }
    return true;
}

// The next line that is typed, without its line feed; false at the end, which is typed as Ctrl-Z.
bool read_characters(HANDLE console, std::string& line) {
    constexpr wchar_t END = 26;
    std::wstring typed;
    wchar_t c = 0;
    DWORD count = 0;
    while (ReadConsoleW(console, &c, 1, &count, nullptr) != 0 && count == 1 && c != L'\n')
        if (typed.size() < LONGEST_LINE)
            typed += c;
    if ((count == 0 && typed.empty()) || typed.starts_with(END))
        return false;
    line = bytes_of(typed);
    line.resize(std::min(line.size(), LONGEST_LINE));
    return true;
}

bool read_line(std::string& line) {
    const std::optional<HANDLE> console = console_of(stdin);
    return console ? read_characters(*console, line) : read_bytes(line);
}

#else

bool read_line(std::string& line) {
    return read_bytes(line);
}

#endif

}  // namespace

bool write_text(std::FILE* stream, std::string_view text) {
#ifdef _WIN32
    if (const std::optional<HANDLE> console = console_of(stream))
        return write_characters(*console, text);
#endif
    return write_bytes(stream, text);
}

void Terminal::write(std::string_view text) {
    if (!write_text(stdout, text))
        fail("console: standard output cannot be written");
}

bool Terminal::read(std::string& line) {
    line.clear();
    if (!read_line(line))
        return false;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

}  // namespace brelan
