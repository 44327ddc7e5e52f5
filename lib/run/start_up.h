// Start-up: the edition, the debug switches and the name of the deck.
#pragma once

namespace brelan {

struct Run;

// Turns on flush-to-zero, reads the start-up files of the data directory, opens the trace and leaves the
// deck's name in DeckList::name. Only a person at the console (MANUAL.DAT 1, HUBPLOT.DAT not 1) is asked for
// it; else it stands in "TFNAME.TMP".
void start_up(Run& run);

}  // namespace brelan
