// Expected files as text in which every column shows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brelan::test {

// The lines of a listing. A bar stands behind the last column of each, so that trailing blanks can be seen;
// the line break in front of the first line does not count.
inline std::vector<std::string> listing(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        if (const std::size_t bar = line.rfind('|'); bar != std::string_view::npos)
            lines.emplace_back(line.substr(0, bar));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

// The same as the text of a file.
inline std::string listing_text(std::string_view text) {
    std::string file;
    for (const std::string& line : listing(text))
        file += line + "\n";
    return file;
}

}  // namespace brelan::test
