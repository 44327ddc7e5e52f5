// Help that begins with examples.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace brelan::tool {

// The footer of a command holds its examples; they are shown first.
class ExamplesFirst : public CLI::Formatter {
public:
    ExamplesFirst() { column_width(30); }
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

// The command of a name. Throws Failure that names the nearest one, or all of them, where there is none.
CLI::App& command_named(CLI::App& app, const std::string& name);

// "info " when the command line came as far as naming a command, else "".
std::string parsed_command(const CLI::App& app);

}  // namespace brelan::tool
