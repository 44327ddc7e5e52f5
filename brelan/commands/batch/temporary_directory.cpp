#include "commands/batch/temporary_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

fs::path place_for_temporary_files() {
    std::error_code error;
    const char* named = std::getenv("TMPDIR");
    if (named != nullptr && fs::is_directory(named, error))
        return named;
    return "/tmp";
}

constexpr std::string_view UNIQUE = "XXXXXX";

// A directory of the user's own, locked; -1 where another process has it, or it is none.
int hold(const fs::path& directory) {
    const int handle = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    struct stat about {};
    if (handle >= 0 &&
        (flock(handle, LOCK_EX | LOCK_NB) != 0 || fstat(handle, &about) != 0 || about.st_uid != geteuid())) {
        close(handle);
        return -1;
    }
    return handle;
}

void remove_left_directories(const fs::path& in, std::string_view prefix) {
    for (const fs::path& directory : left_directories(in, prefix)) {
        const int handle = hold(directory);
        if (handle < 0)
            continue;
        std::error_code ignored;
        fs::remove_all(directory, ignored);
        close(handle);
    }
}

}  // namespace

std::vector<fs::path> left_directories(const fs::path& in, std::string_view prefix) {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator there(in, error), end; !error && there != end; there.increment(error)) {
        const std::string name = there->path().filename().string();
        struct stat about {};
        if (name.starts_with(prefix) && name.size() == prefix.size() + UNIQUE.size() &&
            lstat(there->path().c_str(), &about) == 0 && S_ISDIR(about.st_mode) && about.st_uid == geteuid())
            found.push_back(there->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

TemporaryDirectory::TemporaryDirectory(const fs::path& in, std::string_view prefix, LeftDirectories left) {
    if (left == LeftDirectories::removed)
        remove_left_directories(in, prefix);
    make(in, prefix);
}

TemporaryDirectory::TemporaryDirectory(std::string_view prefix)
    : TemporaryDirectory(place_for_temporary_files(), prefix, LeftDirectories::removed) {
    // Another command may take one that is not locked yet for left.
    constexpr int attempts = 10;
    std::error_code error;
    hold_ = hold(path_);
    for (int attempt = 0; attempt < attempts && !fs::exists(path_, error); ++attempt) {
        if (hold_ >= 0)
            close(hold_);
        make(path_.parent_path(), prefix);
        hold_ = hold(path_);
    }
}

void TemporaryDirectory::make(const fs::path& in, std::string_view prefix) {
    std::error_code error;
    std::string name = (fs::absolute(in, error).lexically_normal() / prefix).string() + std::string(UNIQUE);
    if (error || mkdtemp(name.data()) == nullptr)
        throw Failure(in.string() + ": no directory can be made in it: " + std::strerror(errno));
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;  // what cannot be taken away stays
    if (!keep_)
        fs::remove_all(path_, ignored);
    if (hold_ >= 0)
        close(hold_);
}

}  // namespace brelan::tool
