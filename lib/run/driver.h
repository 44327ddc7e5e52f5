// The driver: start-up, the decks of the run one after the other, the end.
#pragma once

namespace brelan {

struct Run;

// Carries out a run from its first step to its last. Returns when the run is finished; every other way out is
// a stop or a failure.
void run_program(Run& run);

}  // namespace brelan
