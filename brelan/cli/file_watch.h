// A file that another program writes: whether it is another one than before.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <optional>

namespace brelan::tool {

// Looked at now and then. Programs write files in many ways - in place, piece by piece, by removing them, by
// giving a new one their name - so that only a file that stands still is told.
class FileWatch {
public:
    static constexpr std::chrono::milliseconds EACH{120};  // between two looks

    explicit FileWatch(std::filesystem::path file) : file_(std::move(file)), told_(now()), seen_(told_) {}

    // True once for each change, when two looks have found the same. A file that is gone is a change as well.
    bool changed();

private:
    struct Sight {
        ino_t file = 0;
        off_t size = 0;
        timespec changed{};

        friend bool operator==(const Sight& a, const Sight& b) {
            return a.file == b.file && a.size == b.size && a.changed.tv_sec == b.changed.tv_sec &&
                   a.changed.tv_nsec == b.changed.tv_nsec;
        }
    };

    std::optional<Sight> now() const;

    const std::filesystem::path file_;
    std::optional<Sight> told_, seen_;
};

}  // namespace brelan::tool
