// A file as one text.
#pragma once

#include <filesystem>
#include <string>

namespace brelan::tool {

// Throws Failure "FILE: what was expected" for one that is missing, a directory or unreadable.
std::string read_file(const std::filesystem::path& path);

// The first characters of a file, at most `count`.
std::string read_start(const std::filesystem::path& path, std::size_t count);

}  // namespace brelan::tool
