// brelan help: what --help shows.
#include <memory>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/help.h"
#include "commands/commands.h"

namespace brelan::tool {

void add_help(CLI::App& app, Context& context) {
    CLI::App* help = app.add_subcommand("help", "Show the help of a command, or of all");
    help->footer("  brelan help plot    what brelan plot --help shows\n");
    const auto name = std::make_shared<std::string>();
    help->add_option("COMMAND", *name, "Its name")->option_text(" ");
    help->callback([&app, &context, name] {
        context.action = [&app, name] {
            const CLI::App& shown = name->empty() ? app : command_named(app, *name);
            // App::help() would go by the command that the command line names.
            print(shown.get_formatter()->make_help(&shown, app.get_name(), CLI::AppFormatMode::Normal));
            return STATUS_OK;
        };
    });
}

}  // namespace brelan::tool
