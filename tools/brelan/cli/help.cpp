#include "cli/help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "cli/exit_status.h"
#include "cli/words.h"

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

CLI::App& command_named(CLI::App& app, const std::string& name) {
    std::vector<std::string> names;
    for (CLI::App* command : app.get_subcommands({})) {
        if (command->get_name() == name)
            return *command;
        names.push_back(command->get_name());
    }
    const std::string word = lower(name);
    const auto distance = [&](const std::string& known) {
        return !word.empty() && known.starts_with(word) ? 0 : edit_distance(word, known);
    };
    const auto nearest = std::min_element(
        names.begin(), names.end(), [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
    // What is further from it is no slip of the finger.
    if (distance(*nearest) <= 1 + word.size() / 3)
        throw Failure(fmt::format(
            "{}: there is no command of this name; the nearest is {}; see \"brelan --help\"", name, *nearest));
    throw Failure(fmt::format("{}: there is no command of this name; expected one of {}", name,
                              fmt::join(names, ", ")));
}

std::string parsed_command(const CLI::App& app) {
    for (const CLI::App* sub : app.get_subcommands())
        return sub->get_name() + " ";
    return "";
}

}  // namespace brelan::tool
