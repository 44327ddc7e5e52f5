// What every run in memory has to hold to.
#pragma once

#include "run/run_deck.h"

namespace brelan::fuzz {

// Runs the input, with what the package installs on drive C: for files that the input does not give: defaults, units and
// two slope templates. Throws std::logic_error where the run does not end in one of its
// three ways, or where what ended it is an exception that no stage knows of.
RunResult orderly_run(RunInput input);

}  // namespace brelan::fuzz
