#include "cli/help.h"

namespace brelan::tool {

std::string ExamplesFirst::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    if (mode == CLI::AppFormatMode::Sub)
        return CLI::Formatter::make_help(app, name, mode);
    std::string help = make_description(app);
    if (!app->get_footer().empty())
        help += "\nExamples:\n" + app->get_footer();
    const std::string usage =
        make_usage(app, app->get_parent() != nullptr ? "brelan " + app->get_name() : name);
    help += "\n" + usage;
    help += make_positionals(app);
    help += make_groups(app, mode);
    help += make_subcommands(app, mode);
    return help;
}

std::string parsed_command(const CLI::App& app) {
    for (const CLI::App* sub : app.get_subcommands())
        return sub->get_name() + " ";
    return "";
}

}  // namespace brelan::tool
