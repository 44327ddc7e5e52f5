// The decks that fit the shells of a dam from slope templates and join them to its body.
#pragma once

#include <string_view>

#include "dam/dam_tables.h"
#include "deck/deck_tables.h"
#include "mesh/cut_method.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Mesh of the dam before the sound cut draws its core and wall.
inline constexpr std::string_view JOINED_MESH = "Dam_Joined.Mes";

// Writes "Shell_Left.dat", "Shell_Right.dat", "Combine_Shell.dat" and "Combine_All.dat" and puts them behind
// the main deck in the list of decks; for the sound cut of a core or wall "Dam_Zones.dat" as well.
void write_shell_decks(Channels& channels, LayoutKind kind, DeckList& decks, DamCards& dam, DamSizes& sizes,
                       CutMethod cut);

}  // namespace brelan
