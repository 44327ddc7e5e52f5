#include "commands/studying/gathering.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/words.h"
#include "commands/info_text.h"
#include "commands/starter_decks.h"
#include "drawing/soundness_text.h"

namespace brelan::tool {

namespace {

constexpr std::string_view AREAS = "areas";

// "materials[0].area" and "/materials/0/area" as "materials", "0", "area".
std::vector<std::string> steps_of_path(std::string_view path) {
    if (path == "smallest_angle")
        path = "quality.smallest_angle.smallest";
    const std::string_view marks = path.starts_with('/') ? "/" : ".[]";
    std::vector<std::string> steps;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(marks), path.size());
        if (end > 0)
            steps.emplace_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return steps;
}

// What a path leads to; `missing` is the first step that is not there.
struct Found {
    const Json* json = nullptr;
    std::string missing;
    bool in_array = false;  // another mesh may have it
    std::vector<std::string> instead;
};

Found followed(const Json& root, const std::vector<std::string>& steps) {
    Found found{&root, {}, false, {}};
    for (const std::string& step : steps) {
        const Json* next = nullptr;
        if (const auto* members = std::get_if<Json::Object>(&found.json->value())) {
            found.instead.clear();
            for (const auto& [name, value] : *members) {
                found.instead.push_back(name);
                if (name == step)
                    next = &value;
            }
        } else if (const auto* items = std::get_if<Json::Array>(&found.json->value())) {
            found.in_array = true;
            std::size_t at = 0;
            const auto [end, error] = std::from_chars(step.data(), step.data() + step.size(), at);
            if (error == std::errc{} && end == step.data() + step.size() && at < items->size())
                next = &(*items)[at];
        }
        if (next == nullptr) {
            found.json = nullptr;
            found.missing = step;
            return found;
        }
        found.json = next;
    }
    return found;
}

const Json* count_of(const Json& json) {
    if (const auto* members = std::get_if<Json::Object>(&json.value()))
        for (const auto& [name, value] : *members)
            if (name == "count")
                return &value;
    return &json;
}

bool is_single(const Json& json) {
    return !std::holds_alternative<Json::Object>(json.value()) &&
           !std::holds_alternative<Json::Array>(json.value());
}

StudyValue study_value(const Json& json) {
    if (const auto* truth = std::get_if<bool>(&json.value()))
        return std::int64_t{*truth ? 1 : 0};
    if (const auto* whole = std::get_if<std::int64_t>(&json.value()))
        return *whole;
    if (const auto* number = std::get_if<double>(&json.value()))
        return *number;
    if (const auto* text = std::get_if<std::string>(&json.value()))
        return *text;
    return {};
}

// The report as far as it is asked for: angles and soundness cost more than all else of a small case.
MeshReport report_for(const MeshLists& mesh, const std::vector<Wanted>& wanted) {
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    const auto asks_for = [&](std::string_view part) {
        return std::any_of(wanted.begin(), wanted.end(), [&](const Wanted& want) {
            const std::vector<std::string> steps = steps_of_path(want.path);
            return !steps.empty() && steps.front().starts_with(part);
        });
    };
    return {mesh, count_mesh(mesh, corners), asks_for("quality") ? measure_quality(mesh, corners) : Quality{},
            asks_for("sound") ? check_soundness(mesh, corners, 0.0) : Soundness{}};
}

void gather_areas(NamedValues& values, const MeshReport& report) {
    for (const MaterialRow& row : report.counts.materials) {
        const bool has_area = row.of == ElementClass::solid;
        const std::string& name = report.mesh.names.of(row.of, row.material);
        values.emplace_back(fmt::format("{} of {}", has_area ? "area" : "length",
                                        name.empty() ? group_name(row.of, row.material) : name),
                            has_area ? row.area : row.length);
    }
}

}  // namespace

NamedValues gathered_values(const MeshLists& mesh, const std::vector<Wanted>& wanted) {
    NamedValues values;
    if (wanted.empty())
        return values;
    const MeshReport report = report_for(mesh, wanted);
    const Json json = report_json(report, 1);
    for (const Wanted& want : wanted) {
        if (want.path == AREAS) {
            gather_areas(values, report);
            continue;
        }
        const Json* found = followed(json, steps_of_path(want.path)).json;
        if (found != nullptr)
            found = count_of(*found);
        values.emplace_back(want.path,
                            found != nullptr && is_single(*found) ? study_value(*found) : StudyValue());
    }
    return values;
}

void require_known_paths(const StudyFile& study) {
    const LayoutKind kind = kind_named(study.kind).value_or(LayoutKind::displacement);
    const StarterDeck* deck = starter_deck("edit-2");
    const MeshLists mesh = starter_mesh(deck->meshes.front(), kind);
    const Json json = report_json(report_of(mesh, 0.0), 1);
    for (const Wanted& want : study.gather) {
        if (want.path == AREAS)
            continue;
        const Found found = followed(json, steps_of_path(want.path));
        if (found.json == nullptr && found.in_array)
            continue;
        if (found.json == nullptr)
            throw Failure(fmt::format("{}: gather: \"{}\": there is no \"{}\"; expected one of {}",
                                      study.place(want.line), want.path, found.missing,
                                      joined(found.instead, ", ")));
        if (!is_single(*count_of(*found.json)))
            throw Failure(
                fmt::format("{}: gather: \"{}\" is no single value; brelan info --json shows what it has",
                            study.place(want.line), want.path));
    }
}

}  // namespace brelan::tool
