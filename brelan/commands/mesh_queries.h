// Numbers of nodes and elements that a person wants to name on a card.
#pragma once

#include "cli/context.h"
#include "commands/commands.h"

namespace brelan::tool {

// Prints what the queries ask of the meshes, as text, as JSON or as lines of a card. Returns 0, or 1 where
// one of them finds nothing. Throws Failure and RunEnd.
int answer_queries(const InfoOptions& options, const Context& context);

}  // namespace brelan::tool
