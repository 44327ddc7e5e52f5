// A directory that is gone when the command ends.
#pragma once

#include <filesystem>
#include <string_view>

namespace brelan::tool {

class TemporaryDirectory {
public:
    // A new directory in the one given, its name beginning with the prefix. Throws Failure.
    TemporaryDirectory(const std::filesystem::path& in, std::string_view prefix);
    // In the machine's place for such: TMPDIR, else /tmp.
    explicit TemporaryDirectory(std::string_view prefix);
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }  // absolute
    void keep() { keep_ = true; }

private:
    std::filesystem::path path_;
    bool keep_ = false;
};

}  // namespace brelan::tool
