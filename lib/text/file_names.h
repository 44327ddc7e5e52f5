// File names as decks and the program write them, and where they lie on this machine.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brelan {

// Where a run works: names without a drive start in the working directory (the process's own when empty),
// drive C:\ is a directory elsewhere than on Windows (no place when empty).
struct Directories {
    std::filesystem::path working;
    std::filesystem::path drive_c;
};

// A letter as names are compared.
constexpr char folded(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string folded(std::string text);
// A path as text that keeps every character, on every system.
std::string utf_8(const std::filesystem::path& path);
bool same_but_for_case(std::string_view a, std::string_view b);

enum class FileNameStart { working, drive_c, root };

// A name taken apart at its separators, `\` and `/`; the parts are views of it.
struct FileNameParts {
    FileNameStart start = FileNameStart::working;
    std::vector<std::string_view> parts;
};

// Trailing blanks do not count. Ends the run when the name is blank, holds a zero byte or names a drive other
// than C:\.
FileNameParts parts_of_file_name(std::string_view name);

// Finds the file that a name of the package stands for.
//
// On Windows a name is used as it is, its bytes being UTF-8, or else characters of the system's code page, as
// decks of old have them. Elsewhere `\` separates directories. Each directory and
// file name matches exactly, or else the one entry that differs only in the case of its letters (the
// package's home system does not tell them apart); a name that is not there stays as given. Trailing blanks
// do not count.
//
// Ends the run when the name is blank, when two entries match it equally well, or when drive C:\ has no
// place.
std::filesystem::path resolve_file_name(const Directories& directories, std::string_view name);

}  // namespace brelan
