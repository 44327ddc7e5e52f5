#include "commands/editing/deck_file.h"

#include <fmt/core.h>

#include <utility>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"

namespace brelan::tool {

namespace fs = std::filesystem;

namespace {

// Told from all others by what it holds: two that hold the same need not be told from each other. Two sums of
// 64 bits.
std::string stamp_of(std::string_view bytes) {
    std::uint64_t a = 0xCBF29CE484222325U, b = bytes.size();
    for (const char c : bytes) {
        a = (a ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        b = (b + static_cast<unsigned char>(c)) * 0x9E3779B97F4A7C15U;
        b ^= b >> 29U;
    }
    return fmt::format("{:016x}{:016x}", a, b);
}

}  // namespace

DeckFile::DeckFile(fs::path path) : path_(std::move(path)) {
    known_ = state().stamp;
    if (known_.empty())
        read_file(path_);  // which says that it is not there
}

DeckState DeckFile::state() {
    const std::scoped_lock lock(mutex_);
    return read();
}

DeckState DeckFile::read() {
    std::error_code error;
    if (!fs::exists(path_, error) && !error) {
        if (!text_)
            text_.emplace("", path_.string());
        return {};
    }
    std::string bytes = read_file(path_);
    std::string stamp = stamp_of(bytes);
    text_.emplace(std::move(bytes), path_.string());
    return {text_->shown(), std::move(stamp)};
}

DeckState DeckFile::save(const std::string& shown, const std::string& stamp, Replace replace) {
    const std::scoped_lock lock(mutex_);
    const std::string bytes = text_->bytes_of(shown);
    if (replace == Replace::what_is_known)
        if (DeckState now = read(); now.stamp != stamp)
            throw ChangedOnDisk{std::move(now)};
    write_file(path_, bytes);
    DeckState saved = read();
    known_ = saved.stamp;
    return saved;
}

std::optional<DeckState> DeckFile::news() {
    const std::scoped_lock lock(mutex_);
    DeckState now = read();
    if (now.stamp == known_)
        return std::nullopt;
    known_ = now.stamp;
    return now;
}

std::string DeckFile::deck_of(const std::string& shown) {
    const std::scoped_lock lock(mutex_);
    return text_->deck_of(shown);
}

}  // namespace brelan::tool
