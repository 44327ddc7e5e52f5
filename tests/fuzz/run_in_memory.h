// What every run in memory has to hold to.
#pragma once

#include <string>

#include "run/run_deck.h"

namespace brelan::fuzz {

// Runs the input with what the package installs on drive C, where the input does not give it: defaults, units
// and two slope templates. Throws std::logic_error where the run does not end in one of its three ways, or
// where what ended it is an exception that no stage knows of.
RunResult orderly_run(RunInput input);

// The text of a file of examples/.
const std::string& example(const std::string& name);

}  // namespace brelan::fuzz
