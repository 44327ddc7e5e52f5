#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/counts.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "commands/commands.h"
#include "commands/deck_stages.h"
#include "commands/info_text.h"
#include "commands/mesh_queries.h"
#include "commands/stage_table.h"
#include "drawing/soundness_text.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

// A file that cannot be read does not keep the others from being shown.
int info(const InfoOptions& options, const Context& context) {
    if (options.queries.any() && !options.deck.empty())
        throw Failure("--deck: expected no question about numbers beside it");
    if (options.queries.any())
        return answer_queries(options, context);
    if (options.queries.card)
        throw Failure(
            "--card: expected what to list, as --nodes-on, --nodes-in, --elements-of, --border or --pairs");
    std::vector<std::string> read = options.files;
    if (!options.deck.empty())
        read.push_back(options.deck);
    require_one_standard_input(read);
    bool sound = true, all_read = true;
    Json list = Json::Array();
    for (const std::string& file : options.files) {
        try {
            MeshLists mesh = read_any_mesh(mesh_source(file), options.kind.kind(),
                                           [&](const std::string& text) { note(context, text); });
            std::optional<StageAreas> areas;
            if (!options.deck.empty()) {
                DeckStages of_deck = stages_of_deck(options.deck, mesh, context);
                mesh.names = std::move(of_deck.names);
                areas = stage_areas(mesh, corners_of(mesh), of_deck.stages);
            }
            const MeshReport report = report_of(mesh, options.tolerance);
            sound = sound && report.soundness.sound();
            if (options.json) {
                Json json = report_json(report, options.list);
                if (areas)
                    json["stages"] = stage_json(mesh, *areas);
                list.push_back(std::move(json));
            } else if (context.quiet) {
                print(mesh.file + ": " + soundness_line(report.soundness) + "\n");
            } else {
                print((&file == &options.files.front() ? "" : "\n") + report_text(report, options.list));
                if (areas)
                    print(stage_table(mesh, *areas));
            }
        } catch (const Failure& failure) {
            error_line(failure.what());
            all_read = false;
        } catch (const RunEnd& end) {
            error_line(end.text);
            all_read = false;
        }
    }
    if (options.json && (all_read || list.size() > 0))
        print(list.text());
    return !all_read ? STATUS_BAD : sound ? STATUS_OK : STATUS_FOUND;
}

}  // namespace brelan::tool
