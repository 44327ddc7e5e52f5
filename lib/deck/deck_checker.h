// The deck checker: turns the user's free-format deck into the normalised deck that every other stage reads.
#pragma once

#include <string_view>

#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/text_line.h"

namespace brelan {

enum class DeckContent { mesh, dam };

// Checks the deck card by card and writes the normalised deck: comments gone, counts checked, defaults filled
// in. Both names are fields of 126 columns. Leaves "TT55.TMP", the deck without its comments, and "T7.TMP",
// the error listing; writes the name of the result mesh to the plot tool's "FnPlot2D.dat". Channels 3, 5, 6
// and 7 are closed on return. A wrong count of values ends the run with the error report, anything else that
// cannot be read as a failure.
//
// The cards of an earth dam are no deck to be run: they stay in the normalised deck on its open channel, for
// the decks that are made of them.
DeckContent check_deck(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                       const TextLine& deck_name, std::string_view normalised_name);

// Deletes the working files of a checked dam.
void drop_checked_deck(Channels& channels);

}  // namespace brelan
