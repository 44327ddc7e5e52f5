#include "text/native_file.h"

#include <cerrno>
#include <string>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace brelan {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

std::error_code last_error() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

// A path as system calls take it. Longer ones than 247 characters (260 less a short name, which is what
// directories may have) are refused unless they are whole and begin with \\?\, in which case nothing in them
// is interpreted.
std::wstring for_calls(const fs::path& path) {
    constexpr DWORD LONGEST_PLAIN = 247;
    const std::wstring& given = path.native();
    if (given.starts_with(LR"(\\?\)"))
        return given;
    const DWORD room = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
    if (room <= LONGEST_PLAIN)
        return given;
    std::wstring whole(room, L'\0');
    whole.resize(GetFullPathNameW(given.c_str(), room, whole.data(), nullptr));
    if (whole.starts_with(LR"(\\)"))  // \\server\share
        return LR"(\\?\UNC)" + whole.substr(1);
    return LR"(\\?\)" + whole;
}

// An open file or directory that is only asked about.
class Handle {
public:
    explicit Handle(const fs::path& path)
        : handle_(CreateFileW(for_calls(path).c_str(), FILE_READ_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }

    bool describe(BY_HANDLE_FILE_INFORMATION& to) const {
        return handle_ != INVALID_HANDLE_VALUE && GetFileInformationByHandle(handle_, &to) != 0;
    }
    // Of the devices NUL, CON, COM1 and so on.
    bool is_device() const {
        return handle_ != INVALID_HANDLE_VALUE && GetFileType(handle_) != FILE_TYPE_DISK;
    }

private:
    HANDLE handle_;
};

}  // namespace

std::FILE* open_stream(const fs::path& path, const char* mode) {
    return _wfopen(for_calls(path).c_str(), fs::path(mode).c_str());
}

bool flush_to_disk(std::FILE* stream) {
    return std::fflush(stream) == 0 && _commit(_fileno(stream)) == 0;
}

bool resize_stream(std::FILE* stream, std::uintmax_t size) {
    if (std::fflush(stream) != 0)
        return false;
    const errno_t error = _chsize_s(_fileno(stream), static_cast<long long>(size));
    if (error != 0)
        errno = error;
    return error == 0;
}

void replace_file(const fs::path& from, const fs::path& to, std::error_code& error) {
    error.clear();
    if (MoveFileExW(for_calls(from).c_str(), for_calls(to).c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
        error = last_error();
}

bool flush_directory(const fs::path&) {
    return true;
}

fs::file_type type_of_file(const fs::path& path) {
    const Handle handle(path);
    if (handle.is_device())
        return fs::file_type::character;
    BY_HANDLE_FILE_INFORMATION found{};
    // A file that somebody holds for himself cannot be opened, but is there.
    if (!handle.describe(found))
        found.dwFileAttributes = GetFileAttributesW(for_calls(path).c_str());
    if (found.dwFileAttributes == INVALID_FILE_ATTRIBUTES)
        return fs::file_type::not_found;
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? fs::file_type::directory
                                                                    : fs::file_type::regular;
}

std::uintmax_t size_of_file(const fs::path& path, std::error_code& error) {
    error.clear();
    BY_HANDLE_FILE_INFORMATION found{};
    if (!Handle(path).describe(found)) {
        error = last_error();
        return static_cast<std::uintmax_t>(-1);
    }
    return std::uintmax_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
}

bool same_file(const fs::path& a, const fs::path& b) {
    // Both are open at once: the number of a file may be given to another when it is closed.
    const Handle one(a), other(b);
    BY_HANDLE_FILE_INFORMATION first{}, second{};
    return one.describe(first) && other.describe(second) &&
           first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

bool remove_file(const fs::path& path, std::error_code& error) {
    error.clear();
    if (DeleteFileW(for_calls(path).c_str()) != 0)
        return true;
    const DWORD reason = GetLastError();
    if (reason != ERROR_FILE_NOT_FOUND && reason != ERROR_PATH_NOT_FOUND)
        error = last_error();
    return false;
}

#else

std::FILE* open_stream(const fs::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

bool flush_to_disk(std::FILE* stream) {
    return std::fflush(stream) == 0 && fsync(fileno(stream)) == 0;
}

bool resize_stream(std::FILE* stream, std::uintmax_t size) {
    return std::fflush(stream) == 0 && ftruncate(fileno(stream), static_cast<off_t>(size)) == 0;
}

void replace_file(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::rename(from, to, error);
}

bool flush_directory(const fs::path& directory) {
    const int opened = open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0)
        return false;
    // Some file systems know no flushing of directories.
    const bool flushed = fsync(opened) == 0 || errno == EINVAL;
    const int reason = errno;
    close(opened);
    errno = reason;
    return flushed;
}

fs::file_type type_of_file(const fs::path& path) {
    std::error_code error;
    return fs::status(path, error).type();
}

std::uintmax_t size_of_file(const fs::path& path, std::error_code& error) {
    return fs::file_size(path, error);
}

bool same_file(const fs::path& a, const fs::path& b) {
    std::error_code error;
    return fs::equivalent(a, b, error) && !error;
}

bool remove_file(const fs::path& path, std::error_code& error) {
    return fs::remove(path, error);
}

#endif

}  // namespace brelan
