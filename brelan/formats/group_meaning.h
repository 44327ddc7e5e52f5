// What the name of a physical group says of its cells.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "analysis/element_class.h"

namespace brelan::tool {

// Elements of a class and material, as MeshLists::group_title writes it, and the material's own name.
struct GroupMeaning {
    ElementClass of;
    std::int32_t material;
    bool flow_line;
    std::string name;  // empty where the group tells none
};

// None for a name that says no such thing.
std::optional<GroupMeaning> meaning_of_group(const std::string& name);

}  // namespace brelan::tool
