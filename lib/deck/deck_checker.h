// The deck checker: reads a person's free-format deck and leaves it checked, as the files beside a run show
// it.
#pragma once

#include <string_view>

#include "deck/deck.h"
#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/text_line.h"

namespace brelan {

// Reads the deck card by card, counts checked and defaults filled in. Both names are fields of 126 columns.
// Leaves the normalised deck, "TT55.TMP", the deck without its comments, and "T7.TMP", the error listing;
// writes the name of the result mesh to the plot tool's "FnPlot2D.dat". Channels 3, 5, 6 and 7 are closed on
// return. A wrong count of values ends the run with the error report, anything else that cannot be read as a
// failure. The values of a deck that the program has made are given; its text is not read for them again.
//
// The cards of an earth dam (Deck::is_dam) are no deck to be run: their channels stay open, for
// drop_checked_deck.
void check_deck(Channels& channels, LayoutKind kind, CardMemory& memory, Deck& deck, Console& console,
                const TextLine& deck_name, std::string_view normalised_name, const MadeCards* made = nullptr);

// Deletes the working files of a checked dam.
void drop_checked_deck(Channels& channels);

}  // namespace brelan
