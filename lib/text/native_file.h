// What std::filesystem and <cstdio> lack, or do not do alike on every system: files of any name and length of
// path are opened, asked about, flushed to the disk and replaced.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

namespace brelan {

// The stream of a file, as std::fopen gives it; null and errno set when there is none. On Windows the path
// may hold any character and be longer than 260 of them.
std::FILE* open_stream(const std::filesystem::path& path, const char* mode);

// Has all that was written to a stream reach the disk; false and errno set when that fails.
bool flush_to_disk(std::FILE* stream);

// Makes the file behind a stream so many bytes long; false and errno set when that fails. The place in the
// file is undefined afterwards.
bool resize_stream(std::FILE* stream, std::uintmax_t size);

// Gives a file the name of another, which it replaces: whoever opens that name finds the old file or the new
// one.
void replace_file(const std::filesystem::path& from, const std::filesystem::path& to, std::error_code& error);

// Has the names in a directory reach the disk; false and errno set when that fails. Where a system has no
// such call a name is as durable as replace_file made it.
bool flush_directory(const std::filesystem::path& directory);

// Where a file lies that links may lead to.
std::filesystem::path behind_links(const std::filesystem::path& path);

// As their namesakes of std::filesystem, for paths of any length.
std::filesystem::file_type type_of_file(const std::filesystem::path& path);
std::uintmax_t size_of_file(const std::filesystem::path& path, std::error_code& error);
bool remove_file(const std::filesystem::path& path, std::error_code& error);

// What tells a file or directory from all others that there are meanwhile, whatever it is called; none where
// there is no such file.
struct FileNumber {
    std::uint64_t volume = 0, number = 0;
    bool operator==(const FileNumber&) const = default;
};
std::optional<FileNumber> number_of_file(const std::filesystem::path& path);

// --- files that are written beside others ---------------------------------------------------------

int process_number();

// The stream of a new file, locked as long as it is open; with the permissions and, where that is allowed,
// the owner of the file that it is to replace. Null and errno set where none can be made; EEXIST: there is
// one of this name.
std::FILE* create_stream(const std::filesystem::path& path, const std::filesystem::path& replaced);

// Removes a file that no process has open as create_stream opened it.
void remove_unless_locked(const std::filesystem::path& path);

// Why this process must not write a file, or add files to a directory; no error where it may.
std::error_code may_write(const std::filesystem::path& path);
std::error_code may_add_files(const std::filesystem::path& directory);

#ifdef _WIN32
inline constexpr bool CLOSED_BEFORE_REPLACING = true;
#else
inline constexpr bool CLOSED_BEFORE_REPLACING = false;
#endif

}  // namespace brelan
