// The batch program's routines take names from the current directory.
#pragma once

#include <filesystem>

namespace brelan::tool {

// Makes a directory the current one as long as the object lives. Throws Failure where that cannot be.
class InDirectory {
public:
    explicit InDirectory(const std::filesystem::path& directory);
    ~InDirectory();
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;

private:
    int before_ = -1;
};

}  // namespace brelan::tool
