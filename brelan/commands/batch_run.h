// One start of the batch program, with all that it needs around it.
#pragma once

#include <filesystem>
#include <string_view>

#include "cli/context.h"
#include "cli/interruption.h"
#include "commands/batch/data_directory.h"
#include "commands/commands.h"
#include "commands/run_summary.h"
#include "mesh/cut_method.h"
#include "model/deck.h"

namespace brelan::tool {

struct RunPlace {
    const RunOptions& options;
    const Context& context;
    const Interruption& interruption;
    const NotedDeck& deck;
    const std::filesystem::path &project, &kept_work, &program;
    const DataDirectory& data;
};

// A file of the project that the batch program looks for in its working directory.
inline constexpr std::string_view LINE_UP = "LineUp.dat";

// Runs the batch program once, shows its passes, and gives the report what came out. Throws Interrupted, and
// Failure.
RunReport run_once(const RunPlace& place, RunReport report, CutMethod cut);

}  // namespace brelan::tool
