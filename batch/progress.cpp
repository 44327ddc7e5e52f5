#include "progress.h"

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#endif

namespace brelan {

#ifdef _WIN32

Progress::Progress() = default;

bool Progress::goes_on(const RunProgress&) noexcept {
    return true;
}

#else

Progress::Progress() {
    const char* variable = std::getenv("BRELAN_PROGRESS");
    const std::string_view text = variable == nullptr ? "" : variable;
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc{} && end == text.data() + text.size() && number > STDERR_FILENO &&
        fcntl(number, F_GETFD) >= 0)
        descriptor_ = number;
}

bool Progress::goes_on(const RunProgress& progress) noexcept {
    // A pass that comes again does so in another deck, and a group's number in another pass.
    if (progress.pass == told_.pass && progress.deck == told_.deck && progress.group == told_.group)
        return true;
    told_ = progress;
    std::array<char, 256> line{};
    const int size =
        std::snprintf(line.data(), line.size(), "%d %d %.*s %d %d %.*s\n", progress.deck, progress.decks,
                      static_cast<int>(progress.pass.size()), progress.pass.data(), progress.group,
                      progress.groups, static_cast<int>(progress.title.size()), progress.title.data());
    if (size > 0 && static_cast<std::size_t>(size) < line.size() &&
        write(descriptor_, line.data(), static_cast<std::size_t>(size)) != size)
        descriptor_ = -1;
    return true;
}

#endif

}  // namespace brelan
