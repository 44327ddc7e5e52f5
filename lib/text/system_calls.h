// The system's own headers, and paths as its calls take them: for the sources that are written for each
// system.
#pragma once

#ifdef _WIN32

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>

#include <filesystem>
#include <string>

namespace brelan {

// A path as system calls take it. Longer ones than 247 characters (260 less a short name, which is what
// directories may have) are refused unless they are whole and begin with \\?\, in which case nothing in them
// is interpreted.
std::wstring for_calls(const std::filesystem::path& path);

}  // namespace brelan

#else

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#endif
