#include "text/file_names.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "text/run_end.h"
#include "text/windows_text.h"

namespace brelan {

namespace fs = std::filesystem;

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return folded(c); });
    return text;
}

std::string utf_8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool same_but_for_case(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return folded(x) == folded(y); });
}

namespace {

std::string_view whole_name(std::string_view name) {
    const std::size_t last = name.find_last_not_of(' ');
    if (last == std::string_view::npos)
        fail("expected a file name, found a blank one");
    name = name.substr(0, last + 1);
    if (name.find('\0') != std::string_view::npos)
        fail("expected a file name, found one that holds a zero byte");
    return name;
}

}  // namespace

FileNameParts parts_of_file_name(std::string_view name) {
    name = whole_name(name);
    const auto separator = [](char c) { return c == '\\' || c == '/'; };
    FileNameParts found;
    std::string_view rest = name;
    if (rest.size() >= 3 && rest[1] == ':' && separator(rest[2]) && folded(rest[0]) >= 'a' &&
        folded(rest[0]) <= 'z') {
        if (folded(rest[0]) != 'c')
            fail("file name " + std::string(name) +
                 ": expected drive C:, the only drive that has a place here");
        found.start = FileNameStart::drive_c;
        rest.remove_prefix(3);
    } else if (separator(rest[0])) {
        found.start = FileNameStart::root;
    }
    while (!rest.empty()) {
        const auto end = std::find_if(rest.begin(), rest.end(), separator);
        const std::string_view part = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        rest.remove_prefix(std::min(rest.size(), part.size() + 1));
        if (!part.empty())
            found.parts.push_back(part);
    }
    return found;
}

#ifdef _WIN32

fs::path resolve_file_name(const Directories& directories, std::string_view name) {
    return directories.working / wide_text(whole_name(name));
}

#else

namespace {

// The entry of a directory that a name stands for.
fs::path entry(const fs::path& directory, std::string_view name, std::string_view whole) {
    std::error_code error;
    fs::path exact = directory / name;
    if (fs::symlink_status(exact, error).type() != fs::file_type::not_found)
        return exact;
    fs::path match;
    for (fs::directory_iterator it(directory.empty() ? fs::path(".") : directory, error), end;
         !error && it != end; it.increment(error)) {
        const std::string found = it->path().filename().string();
        if (!same_but_for_case(found, name))
            continue;
        if (!match.empty())
            fail("file name " + std::string(whole) + ": expected one match, but " +
                 match.filename().string() + " and " + found + " differ from it only in case");
        match = directory / found;
    }
    return match.empty() ? exact : match;
}

}  // namespace

fs::path resolve_file_name(const Directories& directories, std::string_view name) {
    name = whole_name(name);
    const FileNameParts found = parts_of_file_name(name);
    fs::path path = directories.working;
    if (found.start == FileNameStart::drive_c) {
        if (directories.drive_c.empty())
            fail(
                "drive C:\\ has no place on this machine: expected its directory in the environment variable "
                "BRELAN_DRIVE_C");
        path = directories.drive_c;
    } else if (found.start == FileNameStart::root) {
        path = "/";
    }
    for (const std::string_view part : found.parts) {
        if (part == "." || part == "..")
            path /= part;
        else
            path = entry(path, part, name);
    }
    return path;
}

#endif

}  // namespace brelan
