#include "commands/editing/run_answer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "analysis/quality.h"
#include "analysis/stages.h"
#include "drawing/mesh_data.h"
#include "drawing/soundness_text.h"

namespace brelan::tool {

namespace {

static_assert(std::endian::native == std::endian::little, "the page takes the arrays as they are");

Answer packed(Json head, const ArrayList& arrays) {
    head["arrays"] = arrays.list();
    std::string text = head.compact();
    text.append((4 - text.size() % 4) % 4, ' ');
    const auto length = static_cast<std::uint32_t>(text.size());
    Answer answer;
    answer.type = "application/octet-stream";
    answer.body.reserve(sizeof length + text.size() + arrays.bytes().size());
    answer.body.resize(sizeof length);
    std::memcpy(answer.body.data(), &length, sizeof length);
    answer.body += text;
    answer.body += arrays.bytes();
    return answer;
}

Json end_json(const MeshRun& run) {
    const RunEnd& end = run.result.end;
    return {{"status", end.status},
            {"message", run.end.text},
            {"file", run.end.file},
            {"line", run.end.line},
            {"field", end.field ? Json(*end.field) : Json()}};
}

// What was found, the worst first, with so many places of each that a page can show them.
Json findings_json(const Soundness& soundness, const Json& origin) {
    constexpr std::size_t MOST = 500;
    const auto at = [&](std::size_t axis) {
        return std::get<double>(std::get<Json::Array>(origin.value())[axis].value());
    };
    Json findings = Json::Array();
    for (const Finding& finding : soundness.findings) {
        if (finding.places.empty())
            continue;
        Json places = Json::Array();
        for (std::size_t k = 0; k < std::min(MOST, finding.places.size()); ++k) {
            const Place& place = finding.places[k];
            places.push_back({{"x", place.at.x - at(0)},
                              {"y", place.at.y - at(1)},
                              {"element", place.element},
                              {"node", place.node},
                              {"text", place_text(finding, place)}});
        }
        findings.push_back({{"check", finding.id},
                            {"severity", finding.unsound ? "error" : "remark"},
                            {"title", finding.places.size() == 1 ? finding.singular : finding.plural},
                            {"count", finding.places.size()},
                            {"places", places}});
    }
    return findings;
}

// The smallest angle of each solid in degrees, below 0 where an element has none, and how many have which.
void add_quality(Json& head, ArrayList& arrays, const MeshLists& mesh,
                 const std::vector<CornerPlaces>& corners) {
    constexpr double STEP = 5.0, LARGEST = 90.0;
    constexpr auto BINS = static_cast<std::size_t>(LARGEST / STEP);
    std::vector<float> values;
    std::array<std::int32_t, BINS> histogram{};
    double smallest = std::numeric_limits<double>::infinity();
    Number worst = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        values.push_back(-1.0F);
        if (mesh.elements[i].of != ElementClass::solid || !corners[i].complete())
            continue;
        const double angle = shape_of(mesh, corners[i]).smallest_angle;
        values.back() = static_cast<float>(angle);
        const double bin = std::clamp(angle / STEP, 0.0, static_cast<double>(BINS - 1));
        ++histogram[static_cast<std::size_t>(bin)];
        if (angle < smallest) {
            smallest = angle;
            worst = mesh.elements[i].number.value;
        }
    }
    Json edges = Json::Array();
    for (std::size_t k = 0; k <= BINS; ++k)
        edges.push_back(STEP * static_cast<double>(k));
    head["quality"] = {{"measure", "smallest angle"},
                       {"unit", "degrees"},
                       {"smallest", smallest},
                       {"element", worst},
                       {"limits", Json::array(ANGLE_LIMITS)},
                       {"histogram", Json::array(histogram)},
                       {"edges", edges}};
    arrays.add("elementQuality", values);
}

// At which steps elements come and go, 0 for those that do not, and the group of the material that an element
// had before it came to its own, or that it has.
void add_stages(MeshData& data, Json& head, const MeshLists& mesh,
                const std::vector<ElementActivity>& activity) {
    const Stages stages(mesh, activity);
    head["stages"] = {{"steps", Json::array(stages.steps())}};
    if (stages.steps().empty())
        return;
    std::vector<std::int32_t> comes, goes, never, old_groups;
    for (const Element& element : mesh.elements) {
        const ActivityPair pair = stages.pair_of(element.number.value);
        const StageSet set{element.of, pair, {}};
        comes.push_back(set.comes());
        goes.push_back(set.goes());
        never.push_back(set.never_there() ? 1 : 0);
        const MaterialNumber old = stages.old_material(element.number.value);
        const std::int32_t material = old == MaterialNumber{} ? element.words.material.value : old.value;
        const auto [group, is_new] =
            data.groups.try_emplace({element.of, material}, static_cast<std::int32_t>(head["groups"].size()));
        if (is_new)
            head["groups"].push_back(group_json(mesh, element.of, material, 0));
        old_groups.push_back(group->second);
    }
    data.arrays.add("elementComes", comes);
    data.arrays.add("elementGoes", goes);
    data.arrays.add("elementNever", never);
    data.arrays.add("elementOldGroup", old_groups);
}

}  // namespace

Answer run_answer(const MeshRun& run, std::int64_t number) {
    Json head = Json::Object();
    MeshData data;
    if (run.mesh) {
        const MeshLists& mesh = *run.mesh;
        data = mesh_data(mesh, PictureOptions{}, MeshParts::picture);
        head = std::move(data.values);
        head["findings"] = findings_json(run.soundness ? *run.soundness : check_soundness(mesh, run.corners),
                                         head["origin"]);
        add_quality(head, data.arrays, mesh, run.corners);
        add_stages(data, head, mesh, run.result.activity);
    }
    head["number"] = number;
    head["cut"] = run.cut == CutMethod::sound ? "sound" : "rules";
    head["cutReason"] = run.cut_reason;
    head["seconds"] = run.seconds;
    head["console"] = run.result.console;
    head["end"] = end_json(run);
    return packed(std::move(head), data.arrays);
}

Answer details_answer(const MeshLists& mesh, std::int64_t number) {
    MeshData data = mesh_data(mesh, PictureOptions{}, MeshParts::details);
    data.values["number"] = number;
    return packed(std::move(data.values), data.arrays);
}

}  // namespace brelan::tool
