// What the fields of the cards mean, in a few words each.
#pragma once

#include <string_view>

namespace brelan::tool {

// Empty for a field without effect and for one that is not known.
std::string_view field_meaning(std::string_view card_number, std::string_view field);

}  // namespace brelan::tool
