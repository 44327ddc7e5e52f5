// One run at a time in a project: runs share its files, such as Bmesh.dat.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "cli/interruption.h"
#include "text/directory_hold.h"

namespace brelan::tool {

// Holds directories as long as it lives; other processes that want one of them wait. Leaves no file.
class DirectoryLock {
public:
    // `waiting` is called once when another process holds one of them. Throws Interrupted when a signal comes
    // meanwhile.
    DirectoryLock(std::vector<std::filesystem::path> directories, const Interruption& interruption,
                  const std::function<void()>& waiting);
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

private:
    std::vector<std::unique_ptr<DirectoryHold>> held_;
};

}  // namespace brelan::tool
