// One run at a time in a directory: runs share the files in it.
#pragma once

#include <filesystem>

namespace brelan {

// Leaves no file behind. A process that dies holds nothing.
class DirectoryHold {
public:
    enum class Inherited { by_children, by_nobody };

    // Throws std::system_error when the directory cannot be opened.
    explicit DirectoryHold(const std::filesystem::path& directory,
                           Inherited inherited = Inherited::by_nobody);
    ~DirectoryHold();
    DirectoryHold(const DirectoryHold&) = delete;
    DirectoryHold& operator=(const DirectoryHold&) = delete;

    // False as long as another has it. A file system that knows no locks has none to wait for.
    bool try_to_hold();

private:
#ifdef _WIN32
    std::filesystem::path lock_;
    void* handle_ = nullptr;
#else
    int handle_;
#endif
};

}  // namespace brelan
