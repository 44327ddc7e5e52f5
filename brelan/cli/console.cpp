#include "cli/console.h"

#include <fmt/core.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "cli/context.h"
#include "cli/exit_status.h"

namespace brelan::tool {

bool is_terminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

bool wants_color(std::FILE* stream) {
    const char* refused = std::getenv("NO_COLOR");
    if (refused != nullptr && *refused != '\0')
        return false;
    const char* terminal = std::getenv("TERM");
    return is_terminal(stream) && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

std::string inked(std::FILE* stream, Ink ink, std::string_view text) {
    static constexpr const char* CODES[] = {"0", "1", "2", "31", "32", "33", "34"};
    if (ink == Ink::plain || !wants_color(stream))
        return std::string(text);
    return fmt::format("\x1b[{}m{}\x1b[0m", CODES[static_cast<int>(ink)], text);
}

std::string printable(std::string_view text) {
    std::string shown;
    for (const char c : text) {
        const bool steers = static_cast<unsigned char>(c) < ' ' || c == 127;
        shown += c == '\t' ? std::string("<tab>") : std::string(1, steers ? '?' : c);
    }
    return shown;
}

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void finish_output() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw Failure(fmt::format("standard output: cannot be written: {}", std::strerror(errno)));
}

void error_line(std::string_view text) {
    std::fflush(stdout);
    fmt::print(stderr, "{} {}\n", inked(stderr, Ink::red, "brelan:"), printable(text));
}

void note(const Context& context, std::string_view text) {
    if (context.quiet)
        return;
    std::fflush(stdout);
    fmt::print(stderr, "brelan: {}\n", printable(text));
}

ProgressLine::ProgressLine(const Context& context) : on_(!context.quiet && is_terminal(stderr)) {}

ProgressLine::~ProgressLine() {
    clear();
}

void ProgressLine::show(std::string_view text) {
    if (!on_ || text == shown_)
        return;
    winsize size{};
    const std::size_t columns =
        ioctl(fileno(stderr), TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col - 1U : 79U;
    std::size_t size_shown = std::min(columns, text.size());
    while (size_shown > 0 && size_shown < text.size() &&
           (static_cast<unsigned char>(text[size_shown]) & 0xC0U) == 0x80U)
        --size_shown;  // no half of a character
    fmt::print(stderr, "\r\x1b[K{}", printable(text.substr(0, size_shown)));
    std::fflush(stderr);
    shown_ = text;
}

void ProgressLine::clear() {
    if (!shown_.empty())
        fmt::print(stderr, "\r\x1b[K");
    std::fflush(stderr);
    shown_.clear();
}

}  // namespace brelan::tool
