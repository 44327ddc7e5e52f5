// Exit status of the command and the one way to fail.
#pragma once

#include <stdexcept>

namespace brelan::tool {

inline constexpr int STATUS_OK = 0;
inline constexpr int STATUS_FOUND = 1;  // the mesh is unsound, two meshes differ, the checker refuses
inline constexpr int STATUS_BAD = 2;    // bad input, bad command line, or a file that cannot be written

// Ends a command with exit status 2 and one line on standard error: "brelan: <message>". Messages about a
// file begin with its name: "FILE: ..." or "FILE, line N: ...".
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace brelan::tool
