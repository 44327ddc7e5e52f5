// What stands in some files, to be put back.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "commands/batch/temporary_directory.h"

namespace brelan::tool {

// Copies a file to a place that it replaces as a whole, with the time of its last change, by which other
// programs tell what is new. Throws Failure.
void copy_with_time(const std::filesystem::path& from, const std::filesystem::path& to);

class KeptFiles {
public:
    // Copies those of the files that there are to a directory of its own in the project. Throws Failure.
    KeptFiles(const std::filesystem::path& project, const std::vector<std::filesystem::path>& files);

    // Leaves every file as it was, and none where there was none. Throws Failure, with the place of the copy.
    void put_back();

private:
    struct Entry {
        std::filesystem::path file, copy;  // no copy: the file was not there
    };
    TemporaryDirectory directory_;
    std::vector<Entry> entries_;
};

}  // namespace brelan::tool
