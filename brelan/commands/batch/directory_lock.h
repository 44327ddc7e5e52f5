// One run at a time in a project: runs share its files, such as Bmesh.dat.
#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "cli/interruption.h"

namespace brelan::tool {

// Holds directories as long as it lives; other processes that want one of them wait. Leaves no file.
class DirectoryLock {
public:
    // `waiting` is called once when another process holds one of them. Throws Interrupted when a signal comes
    // meanwhile.
    DirectoryLock(std::vector<std::filesystem::path> directories, const Interruption& interruption,
                  const std::function<void()>& waiting);
    ~DirectoryLock();
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

private:
    void release();

    std::vector<int> held_;
};

}  // namespace brelan::tool
