#include "commands/batch/progress_file.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <utility>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

// The next word of a line, up to a blank.
std::string_view take_word(std::string_view& line) {
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return word;
}

std::optional<std::int32_t> take_number(std::string_view& line) {
    const std::string_view word = take_word(line);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc{} || end != word.data() + word.size() || number < 0)
        return {};
    return number;
}

}  // namespace

std::optional<ToldProgress> progress_in(std::string_view line) {
    const auto deck = take_number(line), decks = take_number(line);
    const std::string_view pass = take_word(line);
    const auto group = take_number(line), groups = take_number(line);
    if (!deck || !decks || !group || !groups)
        return {};
    return ToldProgress{*deck, *decks, *group, *groups, std::string(pass), std::string(line)};
}

ProgressFile::ProgressFile() : file_(std::tmpfile()) {
    if (file_ == nullptr)
        throw Failure(fmt::format("no temporary file can be made: {}", std::strerror(errno)));
}

void ProgressFile::look() {
    char piece[4096];
    // The place that the program writes at is one that both share: nothing here may move it.
    for (ssize_t size = 0;
         (size = pread(descriptor(), piece, sizeof piece, static_cast<off_t>(read_))) > 0;) {
        read_ += static_cast<std::size_t>(size);
        rest_.append(piece, static_cast<std::size_t>(size));
    }
    for (std::size_t end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n')) {
        if (std::optional<ToldProgress> told = progress_in(std::string_view(rest_).substr(0, end)))
            last_ = std::move(*told);
        rest_.erase(0, end + 1);
    }
}

}  // namespace brelan::tool
