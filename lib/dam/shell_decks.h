// The decks that fit the shells of a dam from slope templates and join them to its body.
#pragma once

#include "dam/dam_tables.h"
#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Writes "Shell_Left.dat", "Shell_Right.dat", "Combine_Shell.dat" and "Combine_All.dat" and puts them behind
// the main deck in the list of decks.
void write_shell_decks(Channels& channels, LayoutKind kind, DeckList& decks, DamCards& dam, DamSizes& sizes);

}  // namespace brelan
