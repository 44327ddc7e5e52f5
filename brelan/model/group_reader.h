// The group cards of IEDIT 4, and the paths that they draw.
#pragma once

#include "model/card_reader.h"
#include "model/deck.h"

namespace brelan::tool {

// Reads the cards behind a Card 3.3 with IEDIT 4 into the deck's groups.
void read_groups(Deck& deck, CardReader& cards);

}  // namespace brelan::tool
