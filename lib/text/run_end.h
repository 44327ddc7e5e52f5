// The ways in which a run ends before its last step. All throw RunEnd, which is caught where a run is
// started as a whole: unwinding leaves every channel to be closed, so that listings and traces are complete
// on disk.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace brelan {

inline constexpr int STATUS_FINISHED = 0;  // the run reached its last step
inline constexpr int STATUS_STOPPED = 1;   // a stop of the program's own: its text stands on the console
inline constexpr int STATUS_FAILED = 2;    // something could not be read, opened, written or held
inline constexpr int STATUS_ENDED = 3;     // its watcher ended the run: no failure, and no result

// Where in a file of the user something stands.
struct FilePlace {
    std::string file;
    int line = 0;  // from 1; 0: the file as a whole

    std::string text() const { return line == 0 ? file : file + ", line " + std::to_string(line); }
};

// The end of a run: exit status and the text for the console (a stop) or for standard error (a failure). The
// text begins with the place where one is known.
struct RunEnd {
    int status = STATUS_FAILED;
    std::string text;
    std::optional<FilePlace> place{};
    std::optional<std::size_t> field{};  // of the card at the place, from 0

    // The text without the place.
    std::string message() const { return place ? text.substr(place->text().size() + 2) : text; }
};

// Ends the run with a stop text of the program's own ("300", "100", ...). Exit status 1.
[[noreturn]] void stop_run(std::string_view text);

// Ends the run as a failure. The message is one line that names the file, the line and what was expected.
// Exit status 2.
[[noreturn]] void fail(std::string_view message);

// The same for something at a known place, and for a field of the card there.
[[noreturn]] void fail_at(const FilePlace& place, std::string_view message,
                          std::optional<std::size_t> field = std::nullopt);

}  // namespace brelan
