#include "text/native_file.h"

#include <cerrno>
#include <string>

#include "text/system_calls.h"

namespace brelan {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

std::error_code last_error() {
    return {static_cast<int>(GetLastError()), std::system_category()};
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
    // Where it lies, whatever links led to it; empty where that is not known.
    fs::path place() const {
        const DWORD room = GetFinalPathNameByHandleW(handle_, nullptr, 0, VOLUME_NAME_DOS);
        std::wstring path(room, L'\0');
        path.resize(GetFinalPathNameByHandleW(handle_, path.data(), room, VOLUME_NAME_DOS));
        return path;
    }
    // Of the devices NUL, CON, COM1 and so on.
    bool is_device() const {
        return handle_ != INVALID_HANDLE_VALUE && GetFileType(handle_) != FILE_TYPE_DISK;
    }

private:
    HANDLE handle_;
};

}  // namespace

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

fs::path behind_links(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(for_calls(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    fs::path target = Handle(path).place();
    return target.empty() ? path : target;
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

std::optional<FileNumber> number_of_file(const fs::path& path) {
    BY_HANDLE_FILE_INFORMATION found{};
    if (!Handle(path).describe(found))
        return {};
    return FileNumber{found.dwVolumeSerialNumber,
                      std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow};
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

int process_number() {
    return _getpid();
}

std::FILE* create_stream(const fs::path& path, const fs::path&) {
    const int handle =
        _wopen(for_calls(path).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
               _S_IREAD | _S_IWRITE);
    return handle < 0 ? nullptr : _fdopen(handle, "wb");
}

// An open file cannot be deleted.
void remove_unless_locked(const fs::path& path) {
    std::error_code in_use;
    remove_file(path, in_use);
}

std::error_code may_write(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(for_calls(path).c_str());
    const bool locked = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    return locked ? std::error_code(ERROR_ACCESS_DENIED, std::system_category()) : std::error_code{};
}

std::error_code may_add_files(const fs::path& directory) {
    const fs::path tried = directory / L".brelan-tried";
    const HANDLE made = CreateFileW(for_calls(tried).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (made == INVALID_HANDLE_VALUE)
        return last_error();
    CloseHandle(made);
    return {};
}

#else

namespace {

std::error_code may(const fs::path& path, int what) {
    if (faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0)
        return {};
    return {errno, std::generic_category()};
}

// The stream of a new file that is locked. Whoever looks for files that nobody has open may remove it just
// before.
std::FILE* locked_stream(const fs::path& path, int handle) {
    struct stat about {};
    const bool locked = flock(handle, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    std::FILE* stream = nullptr;
    if (!locked || fstat(handle, &about) != 0 || about.st_nlink == 0)
        errno = EEXIST;  // GCOVR_EXCL_LINE: no test can come in between
    else
        stream = fdopen(handle, "wb");
    // GCOVR_EXCL_START: nor be without memory here alone, as tests/faults is in its long runs
    if (stream == nullptr) {
        const int reason = errno;
        if (reason != EEXIST)
            unlink(path.c_str());
        close(handle);
        errno = reason;
    }
    // GCOVR_EXCL_STOP
    return stream;
}

}  // namespace

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

fs::path behind_links(const fs::path& path) {
    std::error_code error;
    if (!fs::is_symlink(path, error))
        return path;
    fs::path target = fs::weakly_canonical(path, error);
    return error ? path : target;
}

fs::file_type type_of_file(const fs::path& path) {
    std::error_code error;
    return fs::status(path, error).type();
}

std::uintmax_t size_of_file(const fs::path& path, std::error_code& error) {
    return fs::file_size(path, error);
}

std::optional<FileNumber> number_of_file(const fs::path& path) {
    struct stat about {};
    if (stat(path.c_str(), &about) != 0)
        return {};
    return FileNumber{about.st_dev, about.st_ino};
}

bool remove_file(const fs::path& path, std::error_code& error) {
    return fs::remove(path, error);
}

int process_number() {
    return getpid();
}

std::FILE* create_stream(const fs::path& path, const fs::path& replaced) {
    constexpr mode_t of_new_files = 0666, permissions = 07777;
    const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, of_new_files);
    if (handle < 0)
        return nullptr;
    struct stat known {};
    if (stat(replaced.c_str(), &known) == 0 && S_ISREG(known.st_mode)) {
        // Only the super-user may give a file away; a file of one's own need not be given.
        [[maybe_unused]] const bool given = fchown(handle, known.st_uid, known.st_gid) == 0;
        [[maybe_unused]] const bool set = fchmod(handle, known.st_mode & permissions) == 0;
    }
    return locked_stream(path, handle);
}

void remove_unless_locked(const fs::path& path) {
    const int handle = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (handle < 0)
        return;
    if (flock(handle, LOCK_EX | LOCK_NB) == 0)
        unlink(path.c_str());
    close(handle);
}

std::error_code may_write(const fs::path& path) {
    return may(path, W_OK);
}

std::error_code may_add_files(const fs::path& directory) {
    return may(directory.empty() ? "." : directory, W_OK | X_OK);
}

#endif

}  // namespace brelan
