// The reader of the command line, which knows a command by what it adds.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <utility>

#include "cli/context.h"

namespace brelan::tool {

struct Parser {
    CLI::App app{"Decks and meshes of BRELAN-2D: run, check, look at, carry to other programs.", "brelan"};
    Context context;
    std::function<int()> action;  // of the command that was named

    // A command, and where its options go.
    template <class Options>
    std::pair<CLI::App*, Options*> add(const char* name, const char* purpose, const char* examples,
                                       int (*run)(const Options&, const Context&)) {
        CLI::App* command = app.add_subcommand(name, purpose);
        command->footer(examples);
        const auto options = std::make_shared<Options>();
        command->callback(
            [this, options, run] { action = [this, options, run] { return run(*options, context); }; });
        return {command, options.get()};
    }
};

// brelan study.
void add_study(Parser& parser);

}  // namespace brelan::tool
