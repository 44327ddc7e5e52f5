// By which cut the mesh of a run is made.
#pragma once

#include "commands/batch_run.h"

namespace brelan::tool {

// Runs the deck by the cut that the options ask for. Left to choose, it runs by the rules, and where the mesh
// is unsound once more by the sound cut, from the same files; the better mesh stands, with all that its run
// wrote, and the report says why. The report begins with what is known before. Throws Interrupted, and
// Failure.
RunReport run_by_choice(const RunPlace& place, const RunReport& begun);

}  // namespace brelan::tool
