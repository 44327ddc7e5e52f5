// A file as one text.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brelan::tool {

// The name that stands for standard input or output; a file of this name is "./-".
inline constexpr std::string_view STANDARD_STREAM = "-";
inline constexpr std::string_view STANDARD_INPUT = "standard input";  // in messages
inline constexpr std::string_view STANDARD_OUTPUT = "standard output";

// Throws Failure "FILE: what was expected" for one that is missing, a directory or unreadable.
std::string read_file(const std::filesystem::path& path);

// The first characters of a file, at most `count`.
std::string read_start(const std::filesystem::path& path, std::size_t count);

// All of standard input, which comes but once. Throws Failure.
std::string read_standard_input();

// Throws Failure when more than one of the files that a command reads is to be standard input.
void require_one_standard_input(const std::vector<std::string>& files);

}  // namespace brelan::tool
