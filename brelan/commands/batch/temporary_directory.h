// A directory that is gone when the command ends; where it is killed, when the next one makes such a
// directory.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace brelan::tool {

// What happens to directories of this prefix that a killed command has left. They are removed by one that has
// the directory around them for itself; those in which a batch program is still at work stay.
enum class LeftDirectories { removed, stay };

// Those of the user's with names of this prefix that stand in a directory, whoever has made them.
std::vector<std::filesystem::path> left_directories(const std::filesystem::path& in, std::string_view prefix);

class TemporaryDirectory {
public:
    // A new directory in the one given, its name beginning with the prefix. Throws Failure.
    TemporaryDirectory(const std::filesystem::path& in, std::string_view prefix, LeftDirectories left);
    // In the machine's place for such: TMPDIR, else /tmp. Those whose commands are dead are removed.
    explicit TemporaryDirectory(std::string_view prefix);
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }  // absolute
    void keep() { keep_ = true; }

private:
    void make(const std::filesystem::path& in, std::string_view prefix);

    std::filesystem::path path_;
    int hold_ = -1;  // locked as long as this process, or one that it has started, lives; none: -1
    bool keep_ = false;
};

}  // namespace brelan::tool
