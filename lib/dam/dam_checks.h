// The cards of an earth dam, read back from the normalised deck.
#pragma once

#include "dam/dam_tables.h"
#include "text/channels.h"

namespace brelan {

// Reads Cards 5.1 to 5.5 from the start of the normalised deck into the dam and sets its sizes. Ends the run
// at a profile, core or wall that cannot be, naming the card.
void read_dam_cards(DamCards& dam, DamSizes& sizes, Channel& deck);

}  // namespace brelan
