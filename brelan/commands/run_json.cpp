// The report of a run for programs.

#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/info_text.h"
#include "commands/run_summary.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

Json names(const std::vector<fs::path>& files) {
    Json list = Json::Array();
    for (const fs::path& file : files)
        list.push_back(file.lexically_normal().string());
    return list;
}

Json lines(const std::string& text) {
    Json list = Json::Array();
    for (const std::string_view line : lines_of(text))
        list.push_back(std::string(line));
    return list;
}

// The object of brelan info --json; null, and a remark, for a mesh that cannot be read.
Json mesh_json(const RunReport& run, Json& remarks) {
    try {
        return report_json(report_of(mesh_of(run), 0.0), USUAL_LIST);
    } catch (const Failure& failure) {
        remarks.push_back(failure.what());
    } catch (const RunEnd& end) {
        remarks.push_back(end.text);
    }
    return {};
}

}  // namespace

std::string run_json(const RunReport& run) {
    const bool finished = run.status == STATUS_OK;
    Json remarks = Json::array(run.remarks);
    const Json mesh = run.result.empty() ? Json() : mesh_json(run, remarks);
    const Json json{{"deck", run.deck.string()},
                    {"project", run.project.string()},
                    {"edition", run.edition.number},
                    {"kind", name_of(run.edition.kind)},
                    {"cut", run.cut == CutMethod::sound ? "sound" : "rules"},
                    {"cut_reason", run.cut_reason.empty() ? Json() : Json(run.cut_reason)},
                    {"seconds", run.seconds},
                    {"decks", run.decks},
                    {"pass", run.pass},
                    {"status", run.status},
                    {"message", finished ? Json() : Json(run.message)},
                    {"details", lines(run.details)},
                    {"result", run.result.empty() ? Json() : Json(run.result.lexically_normal().string())},
                    {"also", names(run.also)},
                    {"deleted", names(run.deleted)},
                    {"remarks", remarks},
                    {"mesh", mesh}};
    return json.text();
}

}  // namespace brelan::tool
