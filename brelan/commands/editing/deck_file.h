// The deck's file while a page edits it.
#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "commands/editing/deck_text.h"

namespace brelan::tool {

// What a file holds at a moment, and a stamp that tells it from any other; "" where there is none.
struct DeckState {
    std::string text, stamp;
};

// Thrown where the file is another one than the page knows.
struct ChangedOnDisk {
    DeckState state;
};

class DeckFile {
public:
    // Throws Failure where it cannot be read.
    explicit DeckFile(std::filesystem::path path);

    const std::filesystem::path& path() const { return path_; }

    // As it is now. Throws Failure where it cannot be read; one that is not there is empty.
    DeckState state();

    enum class Replace { what_is_known, whatever_is_there };

    // Replaces the file as a whole. Throws ChangedOnDisk where it is not what `stamp` was given for, and
    // Failure where it cannot be written.
    DeckState save(const std::string& shown, const std::string& stamp, Replace replace);

    // As it is now, where it is neither what was there first, nor what was saved or told last.
    std::optional<DeckState> news();

    // The text as a run reads it.
    std::string deck_of(const std::string& shown);

private:
    DeckState read();

    const std::filesystem::path path_;
    std::mutex mutex_;
    std::optional<DeckText> text_;  // that was read or saved last
    std::string known_;             // stamp of what was there first, or was saved or told last
};

}  // namespace brelan::tool
