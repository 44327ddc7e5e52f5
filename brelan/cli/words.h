// Words and names as commands compare and count them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brelan::tool {

// The letters A to Z made small, as names of files are compared.
std::string lower(std::string_view text);

// How many letters have to be put in, taken out, changed, or swapped with the next one, to make one word the
// other.
std::size_t edit_distance(std::string_view a, std::string_view b);

// What is said where there is no command of a name: the nearest one, or all of them.
std::string no_command_of_name(const std::string& name, const std::vector<std::string>& commands);

// The remark about a file that begins with a byte order mark.
std::string mark_passed_over(const std::filesystem::path& file);

// The remark about names of materials in a file that could not be kept as they stand.
std::string names_changed(const std::filesystem::path& file, std::size_t count);

// "1 node", "2 nodes".
std::string counted(std::size_t count, std::string_view one, std::string_view many);

// The lines of a text without their ends. No stream, as that would take a want of memory for the end of the
// text.
std::vector<std::string_view> lines_of(std::string_view text);

// Words with a text between each two.
std::string joined(const std::vector<std::string>& words, std::string_view between);

}  // namespace brelan::tool
