#include "formats/group_meaning.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace brelan::tool {

std::optional<GroupMeaning> meaning_of_group(const std::string& name) {
    static constexpr std::array<std::pair<std::string_view, ElementClass>, 5> WORDS{
        {{"material ", ElementClass::solid},
         {"joint ", ElementClass::joint},
         {"beam ", ElementClass::beam},
         {"truss ", ElementClass::truss},
         {"flow line ", ElementClass::truss}}};
    for (const auto& [word, of] : WORDS) {
        if (!name.starts_with(word))
            continue;
        std::int32_t material = 0;
        const char* const end = name.data() + name.size();
        const auto [stop, error] = std::from_chars(name.data() + word.size(), end, material);
        if (error == std::errc{} && (stop == end || *stop == ':'))
            return GroupMeaning{of, material, word.starts_with("flow"),
                                std::string(std::min(stop + 1, end), end)};
    }
    return std::nullopt;
}

}  // namespace brelan::tool
