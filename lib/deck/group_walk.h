// The cards of the groups of IEDIT 4: which card follows which, and what they say.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "deck/card_source.h"
#include "deck/deck.h"
#include "deck/deck_notes.h"

namespace brelan {

// What is wrong with an arc that has no length, and with which field of its card (Xo, Yo, Rx, Ry, Qb, Qe),
// from 0. No point of an ellipse with an axis of 0 can be told, and one angle is one point, except at the end
// of an outline: there a segment of one angle goes back to the circle of Ry.
struct ArcFault {
    std::string message;  // empty for an arc that has a length
    std::size_t field = 0;
};
ArcFault fault_of_arc(std::span<const float, 6> values, bool closes_outline);

// Reads the cards behind a Card 3.3 with IEDIT 4 into the groups of the deck.
void read_groups(DeckCards& cards, Deck& deck, DeckNotes& notes);

}  // namespace brelan
