// The commands of brelan. Each add_NAME adds its subcommand with options and help to the command line, and
// sets context.action in the subcommand's callback.
#pragma once

#include <CLI/CLI.hpp>

#include "cli/context.h"

namespace brelan::tool {

void add_run(CLI::App& app, Context& context);
void add_new(CLI::App& app, Context& context);  // commands/new_deck.cpp
void add_check(CLI::App& app, Context& context);
void add_info(CLI::App& app, Context& context);
void add_plot(CLI::App& app, Context& context);
void add_convert(CLI::App& app, Context& context);
void add_diff(CLI::App& app, Context& context);
void add_help(CLI::App& app, Context& context);

}  // namespace brelan::tool
