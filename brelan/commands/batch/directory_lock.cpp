#include "commands/batch/directory_lock.h"

#include <algorithm>
#include <chrono>
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
        try {
            // The batch program inherits it: should this process be killed, the project is held until that
            // one ends.
            held_.push_back(
                std::make_unique<DirectoryHold>(directory, DirectoryHold::Inherited::by_children));
        } catch (const std::system_error& failure) {
            throw Failure(directory.string() + ": cannot be opened: " + failure.code().message());
        }
        if (held_.back()->try_to_hold())
            continue;
        waiting();
        // A blocking wait could begin just after a signal came, and last.
        while (!held_.back()->try_to_hold()) {
            if (interruption.came())
                throw Interrupted{};
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
}

}  // namespace brelan::tool
