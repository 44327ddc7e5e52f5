#include "text/directory_hold.h"

#include <cerrno>
#include <system_error>

#include "text/system_calls.h"

namespace brelan {

namespace fs = std::filesystem;

#ifdef _WIN32

DirectoryHold::DirectoryHold(const fs::path& directory, Inherited) : lock_(directory / L".brelan-lock") {}

DirectoryHold::~DirectoryHold() {
    if (handle_ != nullptr)
        CloseHandle(handle_);
}

bool DirectoryHold::try_to_hold() {
    const HANDLE handle = CreateFileW(for_calls(lock_).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle != INVALID_HANDLE_VALUE)
        handle_ = handle;
    return handle_ != nullptr || GetLastError() != ERROR_SHARING_VIOLATION;
}

#else

DirectoryHold::DirectoryHold(const fs::path& directory, Inherited inherited)
    : handle_(open(directory.empty() ? "." : directory.c_str(),
                   O_RDONLY | O_DIRECTORY | (inherited == Inherited::by_nobody ? O_CLOEXEC : 0))) {
    if (handle_ < 0)
        throw std::system_error(errno, std::generic_category());
}

DirectoryHold::~DirectoryHold() {
    close(handle_);
}

bool DirectoryHold::try_to_hold() {
    return flock(handle_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

#endif

}  // namespace brelan
