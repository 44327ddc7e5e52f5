#include "drawing/legend.h"

#include <algorithm>

#include "text/utf_8.h"

namespace brelan::tool {

namespace {

// Characters of a group's title that the legend has room for, and their mean width.
constexpr std::size_t LONGEST_TITLE = 36;
constexpr double CHARACTER = 6.4;

std::size_t characters_of(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

std::string legend_text(const std::string& title) {
    if (characters_of(title) <= LONGEST_TITLE)
        return title;
    constexpr std::string_view REST = "...";
    std::string text;
    for (std::string_view left = title; characters_of(text) + REST.size() < LONGEST_TITLE;) {
        const std::size_t size = std::max<std::size_t>(size_of_character(left), 1);
        text += left.substr(0, size);
        left.remove_prefix(size);
    }
    return text.append(REST);
}

double room_for_titles(const MeshLists& mesh) {
    constexpr std::size_t USUAL = 11;  // of "material 10"
    std::size_t longest = USUAL;
    for (const auto& [key, name] : mesh.names)
        longest =
            std::max(longest, std::min(characters_of(mesh.group_title(key.of, key.material)), LONGEST_TITLE));
    return CHARACTER * static_cast<double>(longest - USUAL);
}

}  // namespace brelan::tool
