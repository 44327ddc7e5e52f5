#include "cli/words.h"

#include <fmt/core.h>

namespace brelan::tool {

std::string lower(std::string_view text) {
    std::string small(text);
    for (char& c : small)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return small;
}

std::string mark_passed_over(const std::filesystem::path& file) {
    return fmt::format("{}, line 1: a byte order mark stands in front of the text; it is passed over",
                       file.string());
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

}  // namespace brelan::tool
