// How messages name groups and places, and where their cards are.
#pragma once

#include <string>
#include <string_view>

#include "model/deck.h"

namespace brelan::tool {

// "(1.5, 2)"
std::string place_text(const DeckPoint& point);

// "group 2", "group 2 (Wall)"
std::string group_name(const DeckGroup& group);

// The first card of a group with a number; nullptr for none.
const DeckCard* card_of(const NotedDeck& deck, const DeckGroup& group, std::string_view number);

}  // namespace brelan::tool
