#include "commands/options.h"

#include "cli/exit_status.h"

namespace brelan::tool {

void KindOption::add_to(CLI::App& command, const std::string& help) {
    command.add_option("--kind", name, help)
        ->type_name("KIND")
        ->check(CLI::IsMember({"coupled", "temperature", "head", "displacement"}));
}

std::optional<LayoutKind> KindOption::kind() const {
    return name.empty() ? std::nullopt : kind_named(name);
}

}  // namespace brelan::tool
