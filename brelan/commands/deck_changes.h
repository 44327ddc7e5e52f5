// What differs between two texts of a deck, card by card.
#pragma once

#include <string>
#include <vector>

#include "model/deck.h"

namespace brelan::tool {

// "line 35: Card 3.3.5.4.2-1, point of the outline: Y 17.0 -> 16.5", one for each card that has changed;
// where cards came or went, what they are. Cards at the start and the end that are the same in both are not
// compared.
std::vector<std::string> deck_changes(const NotedDeck& before, const NotedDeck& after);

}  // namespace brelan::tool
