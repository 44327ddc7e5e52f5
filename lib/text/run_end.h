// The two ways in which a run ends before its last step. Both throw RunEnd, which only main catches:
// unwinding leaves every channel to be closed, so that listings and traces are complete on disk.
#pragma once

#include <string>
#include <string_view>

namespace brelan {

inline constexpr int STATUS_FINISHED = 0;  // the run reached its last step
inline constexpr int STATUS_STOPPED = 1;   // a stop of the program's own: its text stands on the console
inline constexpr int STATUS_FAILED = 2;    // something could not be read, opened, written or held

// The end of a run: exit status and the text for the console (a stop) or for standard error (a failure).
struct RunEnd {
    int status;
    std::string text;
};

// Ends the run with a stop text of the program's own ("300", "100", ...). Exit status 1.
[[noreturn]] void stop_run(std::string_view text);

// Ends the run as a failure. The message is one line that names the file, the line and what was expected.
// Exit status 2.
[[noreturn]] void fail(std::string_view message);

}  // namespace brelan
