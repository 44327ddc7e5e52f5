// The defaults file: tuning values of the group engine that a project keeps beside its decks.
#pragma once

#include "mesh/group_tables.h"
#include "mesh/move_tables.h"
#include "text/channels.h"

namespace brelan {

// Reads "..\DV-BRELAN.dat" into TOLMODE, TOLLENGTH, TOLFACTOR and TOLSAME, the values of the short-element
// collapse and the second move list. A project that has none gets a copy of the package's master first, of 60
// columns a line. Leaves the copy without comments in "DV-BRELAN.Tmp".
void load_defaults(Channels& channels, Tolerances& tolerances, MoveLists& moves);

}  // namespace brelan
