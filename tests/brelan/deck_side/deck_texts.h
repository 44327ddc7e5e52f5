// Decks given as texts.
#pragma once

#include <string>

#include "model/deck.h"

namespace brelan::tool {

inline NotedDeck noted_text(const std::string& text, LayoutKind kind = LayoutKind::displacement) {
    return read_deck(DeckSource{"pit.dat", text, false}, kind);
}

}  // namespace brelan::tool
