// The cards of the groups of IEDIT 4: which card follows which, and what they say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "deck/card_source.h"
#include "deck/deck.h"

namespace brelan {

// What is wrong with an arc; no message where nothing is. Two files of the person's own meet it: the deck's
// line, and the field of the card (from 0).
struct ArcFault {
    std::string message;
    std::size_t field = 0;
};

// Xo, Yo, Rx, Ry, Qb, Qe of an arc that has to have a length. One that closes an outline of several segments
// may end where it began, as a whole ellipse... 
ArcFault fault_of_arc(std::span<const float, 6> values, bool closes_outline);

// Reads the cards behind Card 3.3 into the groups of the deck. Ends of arcs become points of the outline.
void read_groups(DeckCards& cards, Deck& deck, DeckNotes& notes);

}  // namespace brelan
