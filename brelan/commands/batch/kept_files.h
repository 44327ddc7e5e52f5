// What stands in some files, to be put back.
#pragma once

#include <filesystem>
#include <vector>

#include "commands/batch/user_copies.h"

namespace brelan::tool {

class KeptFiles {
public:
    // Copies those of the files that there are to a directory of its own in the project. Throws Failure.
    KeptFiles(const std::filesystem::path& project, CopyKind kind,
              const std::vector<std::filesystem::path>& files);

    // Leaves every file as it was, and none where there was none. Throws Failure, with the place of the copy.
    void put_back();

private:
    struct Entry {
        std::filesystem::path file, copy;  // no copy: the file was not there
    };
    UserCopies copies_;
    std::vector<Entry> entries_;
};

}  // namespace brelan::tool
