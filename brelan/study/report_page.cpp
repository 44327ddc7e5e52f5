#include "study/report_page.h"

#include <fmt/core.h>

#include "cli/json.h"
#include "cli/output_file.h"
#include "cli/page_text.h"

namespace brelan::tool {

namespace {

Json json_of(const StudyValue& value) {
    return std::visit(
        [](const auto& held) {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>)
                return Json();
            else
                return Json(held);
        },
        value);
}

struct ReportColumn {
    std::string name, role;
    Json::Array values;
};

Json report_data(const Database& database, const std::string& title, const std::filesystem::path& study) {
    std::vector<ReportColumn> columns{{"case", "case", {}}, {"state", "state", {}}};
    for (const std::string& name : database.parameters())
        columns.push_back({name, "parameter", {}});
    for (const std::string& name : database.gathered())
        columns.push_back({name, "value", {}});
    columns.push_back({"cut", "fact", {}});
    columns.push_back({"seconds", "fact", {}});
    Json messages = Json::Array(), bare = Json::Array();
    database.for_each([&](const CaseRow& row) {
        const CaseRecord& record = row.record;
        std::size_t at = 0;
        const auto put = [&](const Json& value) { columns[at++].values.push_back(value); };
        put(record.number);
        put(record.state);
        for (const auto& [name, value] : row.parameters)
            put(json_of(value));
        for (const auto& [name, value] : record.gathered)
            put(json_of(value));
        put(record.cut);
        put(record.seconds);
        std::error_code error;
        if (!std::filesystem::exists(picture_of_case(study, record.number), error))
            bare.push_back(record.number);
        if (!record.message.empty() || !record.details.empty())
            messages.push_back(
                Json::array({Json(record.number), Json(record.message), Json(record.details)}));
    });
    Json list = Json::Array();
    for (ReportColumn& column : columns)
        list.push_back({{"name", column.name}, {"role", column.role}, {"values", std::move(column.values)}});
    return {{"title", title},
            {"columns", std::move(list)},
            {"messages", std::move(messages)},
            {"bare", std::move(bare)}};
}

}  // namespace

std::filesystem::path picture_of_case(const std::filesystem::path& study, std::size_t number) {
    return study / PICTURES / (folder_of_case(number) + ".svg");
}

void write_report(const Database& database, const std::string& title, const std::filesystem::path& page) {
    const std::string data = for_script(report_data(database, title, page.parent_path()).compact());
    // A page that changes with its data and takes no script but its own.
    const std::string nonce = fmt::format("{:016x}", hash_of(data));
    OutputFile out(page);
    write_page(out, REPORT_PAGE,
               {{"%NONCE%", nonce},
                {"%NONCE%", nonce},
                {"%TITLE%", for_html(title)},
                {"%NONCE%", nonce},
                {"%STYLE%", REPORT_STYLE},
                {"%DATA%", data},
                {"%NONCE%", nonce},
                {"%SCRIPT%", REPORT_SCRIPT}});
    out.commit();
}

}  // namespace brelan::tool
