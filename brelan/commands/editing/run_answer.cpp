#include "commands/editing/run_answer.h"

#include <bit>
#include <cstring>

#include "analysis/soundness.h"
#include "commands/memory_run.h"
#include "commands/run_failure.h"
#include "drawing/mesh_data.h"

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
    answer.body.resize(sizeof length);
    std::memcpy(answer.body.data(), &length, sizeof length);
    answer.body += text;
    answer.body += arrays.bytes();
    return answer;
}

}  // namespace

Answer run_answer(const NotedDeck& deck, const MeshRun& run, const DeckPlace& place, std::int64_t number) {
    Json head = Json::Object();
    MeshData data;
    if (run.mesh) {
        data = mesh_data(*run.mesh, PictureOptions{}, MeshParts::picture);
        head = std::move(data.values);
    }
    const RunEnd& end = run.result.end;
    head["number"] = number;
    head["cut"] = run.cut == CutMethod::sound ? "sound" : "rules";
    head["cutReason"] = run.cut_reason;
    head["seconds"] = run.seconds;
    head["console"] = run.result.console;
    head["stale"] = false;
    head["end"] = {{"status", end.status}, {"message", ""}, {"file", ""}, {"line", 0}, {"field", Json()}};
    if (end.status != STATUS_FINISHED)
        head["end"]["message"] = failure_message(
            {deck, place.project, {}, std::string(MEMORY_DECK), "", {end.status, end.text, end.text}});
    return packed(std::move(head), data.arrays);
}

Answer details_answer(const MeshLists& mesh, std::int64_t number) {
    MeshData data = mesh_data(mesh, PictureOptions{}, MeshParts::details);
    data.values["number"] = number;
    return packed(std::move(data.values), data.arrays);
}

}  // namespace brelan::tool
