// The cards of a deck: which card follows which, and what they say. The one place that knows.
#pragma once

#include "deck/card_source.h"
#include "deck/deck.h"
#include "deck/deck_notes.h"

namespace brelan {

// Reads all cards into the deck; a field of a card that the deck does not have keeps what it was. Throws
// WrongCount at a card with too few or too many values, and ends the run at anything else that cannot be
// read.
void read_cards(DeckCards& cards, Deck& deck, DeckNotes& notes);

}  // namespace brelan
