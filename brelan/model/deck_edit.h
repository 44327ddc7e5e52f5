// A deck's text with one value changed: its layout, its comments and all other values stay.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "model/deck.h"

namespace brelan::tool {

// Card and field are places in NotedDeck::cards and in their fields. A value that was not given is written
// behind the last one of its card, with the defaults of those between. Each throws Failure where the card has
// no room for it, and where the text is no one value.
std::string with_value(const NotedDeck& deck, std::size_t card, std::size_t field, std::string_view value);

// The name of a file, or the title of a group.
std::string with_name(const NotedDeck& deck, std::size_t card, std::string_view name);

// A list of whole numbers or of thicknesses; it may take more or fewer lines than before.
std::string with_list(const NotedDeck& deck, std::size_t card, std::span<const float> values);

// The shortest text that is read back as the value; a real number has its point. Throws Failure for what is
// no finite number.
std::string shortest_text(float value, FieldForm form);

}  // namespace brelan::tool
