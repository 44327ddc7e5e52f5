#include "commands/batch/directory_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <system_error>
#include <thread>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace fs = std::filesystem;

DirectoryLock::DirectoryLock(std::vector<fs::path> directories, const Interruption& interruption,
                             const std::function<void()>& waiting) {
    // All processes take them in one order, each once: no two can wait for each other.
    std::error_code error;
    for (fs::path& directory : directories)
        directory = fs::canonical(directory, error);
    std::sort(directories.begin(), directories.end());
    directories.erase(std::unique(directories.begin(), directories.end()), directories.end());
    for (const fs::path& directory : directories) {
        // The batch program inherits it: should this process be killed, the project is held until that one
        // ends.
        const int handle = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
        if (handle < 0) {
            release();
            throw Failure(directory.string() + ": cannot be opened: " + std::strerror(errno));
        }
        held_.push_back(handle);
        if (flock(handle, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            continue;  // a file system that knows no locks has none to wait for
        waiting();
        // A blocking wait could begin just after a signal came, and last.
        while (flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            if (interruption.came()) {
                release();
                throw Interrupted{};
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
}

DirectoryLock::~DirectoryLock() {
    release();
}

void DirectoryLock::release() {
    for (const int handle : held_)
        close(handle);
    held_.clear();
}

}  // namespace brelan::tool
