#include "commands/stage_table.h"

#include <fmt/core.h>

#include <algorithm>

#include "cli/console.h"

namespace brelan::tool {

namespace {

constexpr int COLUMN = 12;

bool ever_stands(const StageRow& row) {
    return std::any_of(row.amounts.begin(), row.amounts.end(),
                       [](const StageAmount& at) { return at.elements > 0; });
}

std::string row_text(const StageRow& row, const std::string& name) {
    std::string text = fmt::format("  {:<12} {:<7}", group_name(row.of, row.material),
                                   row.measures_area() ? "area" : "length");
    for (const StageAmount& at : row.amounts)
        text += fmt::format("{:>{}}", at.elements == 0 ? "-" : fmt::format("{:.7g}", at.stands), COLUMN);
    text += "   " + printable(name);
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

std::string total_text(const StageAreas& areas) {
    std::string text = fmt::format("  {:<12} {:<7}", "all solids", "area");
    for (std::size_t k = 0; k < areas.steps.size(); ++k) {
        double sum = 0.0;
        for (const StageRow& row : areas.rows)
            sum += row.measures_area() ? row.amounts[k].stands : 0.0;
        text += fmt::format("{:>{}}", fmt::format("{:.7g}", sum), COLUMN);
    }
    return text + "\n";
}

}  // namespace

std::string stage_table(const MeshLists& mesh, const StageAreas& areas) {
    std::string head = fmt::format("{:<14} {:<7}", "By step", "");
    for (const std::int32_t step : areas.steps)
        head += fmt::format("{:>{}}", step, COLUMN);
    std::string text = "\n" + inked(stdout, Ink::bold, head) + "\n";
    for (const StageRow& row : areas.rows)
        if (ever_stands(row))
            text += row_text(row, mesh.names.of(row.of, row.material));
    text += total_text(areas);
    return areas.steps.size() > 1 ? text : text + "  no element comes or goes\n";
}

Json stage_json(const MeshLists& mesh, const StageAreas& areas) {
    Json rows = Json::Array();
    for (const StageRow& row : areas.rows) {
        Json elements = Json::Array(), stands = Json::Array(), comes = Json::Array(), goes = Json::Array();
        for (const StageAmount& at : row.amounts) {
            elements.push_back(at.elements);
            stands.push_back(at.stands);
            comes.push_back(at.comes);
            goes.push_back(at.goes);
        }
        rows.push_back(Json{{"class", name_of(row.of)},
                            {"material", row.material},
                            {"name", mesh.names.of(row.of, row.material)},
                            {"measure", row.measures_area() ? "area" : "length"},
                            {"elements", std::move(elements)},
                            {"stands", std::move(stands)},
                            {"comes", std::move(comes)},
                            {"goes", std::move(goes)}});
    }
    return Json{{"steps", Json::array(areas.steps)}, {"rows", std::move(rows)}};
}

}  // namespace brelan::tool
