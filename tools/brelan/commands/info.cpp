#include <memory>

#include "analysis/counts.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "commands/commands.h"
#include "commands/info_text.h"
#include "commands/options.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

namespace {

constexpr const char* EXAMPLES =
    R"(  brelan info PitStages.Mes              what is in it, and whether it is sound
  brelan info --json *.Mes | jq '.[].sound'
  brelan info --list 50 PitStages.Mes    up to 50 places of each fault
)";

struct InfoOptions {
    std::vector<std::string> files;
    bool json = false;
    std::size_t list = 5;
    double tolerance = 0.0;
    KindOption kind;
};

// A file that cannot be read does not keep the others from being shown.
int info(const InfoOptions& options, const Context& context) {
    bool sound = true, all_read = true;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& file : options.files) {
        try {
            const Mesh mesh = read_any_mesh(file, options.kind.kind(),
                                            [&](const std::string& text) { note(context, text); });
            const std::vector<Corners> corners = corners_of(mesh);
            const MeshReport report{mesh, count_mesh(mesh, corners), measure_quality(mesh, corners),
                                    check_soundness(mesh, corners, options.tolerance)};
            sound = sound && report.soundness.sound();
            if (options.json)
                list.push_back(report_json(report, options.list));
            else if (context.quiet)
                print(mesh.file + ": " + soundness_line(report.soundness) + "\n");
            else
                print((&file == &options.files.front() ? "" : "\n") + report_text(report, options.list));
        } catch (const Failure& failure) {
            error_line(failure.what());
            all_read = false;
        } catch (const RunEnd& end) {
            error_line(end.text);
            all_read = false;
        }
    }
    if (options.json && (all_read || !list.empty()))
        print(list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    return !all_read ? STATUS_BAD : sound ? STATUS_OK : STATUS_FOUND;
}

}  // namespace

void add_info(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("info", "Show counts, areas, quality and soundness of meshes");
    command->footer(EXAMPLES);
    const auto options = std::make_shared<InfoOptions>();
    command->add_option("MESH", options->files, "Mesh files (.Mes, .vtu, .msh)")->required();
    command->add_flag("--json", options->json, "A list with one object for each mesh");
    command->add_option("--list", options->list, "Places shown of each finding (5; 0 all)")->type_name("N");
    command
        ->add_option("--tolerance", options->tolerance,
                     "Nodes so near are at one place (the resolution of the file's digits)")
        ->type_name("LENGTH")
        ->check(CLI::PositiveNumber);
    options->kind.add_to(*command, "Kind of mesh, where the file does not tell it");
    command->callback(
        [options, &context] { context.action = [options, &context] { return info(*options, context); }; });
}

}  // namespace brelan::tool
