#include "cli/words.h"

#include <fmt/core.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace brelan::tool {

std::string lower(std::string_view text) {
    std::string small(text);
    for (char& c : small)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return small;
}

std::size_t edit_distance(std::string_view a, std::string_view b) {
    // Rows of the table of distances between the beginnings of both words: this one and the two before it.
    std::vector<std::size_t> row(b.size() + 1), last(row.size()), last_but_one(row.size());
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        last_but_one.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], last_but_one[j - 2] + 1);
        }
    }
    return row.back();
}

std::string no_command_of_name(const std::string& name, const std::vector<std::string>& commands) {
    const std::string word = lower(name);
    const auto distance = [&](const std::string& known) {
        return !word.empty() && known.starts_with(word) ? 0 : edit_distance(word, known);
    };
    const auto nearest =
        std::min_element(commands.begin(), commands.end(),
                         [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
    // What is further from it is no slip of the finger.
    if (distance(*nearest) <= 1 + word.size() / 3)
        return fmt::format("{}: there is no command of this name; the nearest is {}; see \"brelan --help\"",
                           name, *nearest);
    return fmt::format("{}: there is no command of this name; expected one of {}", name,
                       joined(commands, ", "));
}

std::string mark_passed_over(const std::filesystem::path& file) {
    return fmt::format("{}, line 1: a byte order mark stands in front of the text; it is passed over",
                       file.string());
}

std::string names_changed(const std::filesystem::path& file, std::size_t count) {
    return file.string() + ": " + counted(count, "name of a material was", "names of materials were") +
           " cut or lost control characters";
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string joined(const std::vector<std::string>& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words)
        text.append(&word == &words.front() ? "" : between).append(word);
    return text;
}

}  // namespace brelan::tool
