// What std::filesystem and <cstdio> lack, or do not do alike on every system: files of any name and length of
// path are opened, asked about, flushed to the disk and replaced.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
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

// As their namesakes of std::filesystem, for paths of any length.
std::filesystem::file_type type_of_file(const std::filesystem::path& path);
std::uintmax_t size_of_file(const std::filesystem::path& path, std::error_code& error);
bool same_file(const std::filesystem::path& a, const std::filesystem::path& b);
bool remove_file(const std::filesystem::path& path, std::error_code& error);

}  // namespace brelan
