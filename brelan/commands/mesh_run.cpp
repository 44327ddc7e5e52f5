#include "commands/mesh_run.h"

#include <chrono>

#include "analysis/soundness.h"
#include "commands/memory_run.h"
#include "formats/mesh_file.h"
#include "mesh/cut_method.h"

namespace brelan::tool {

namespace {

std::size_t faults_of(const MeshRun& run) {
    std::size_t faults = 0;
    if (run.mesh)
        for (const Finding& finding : check_soundness(*run.mesh, run.corners).findings)
            faults += finding.unsound ? finding.places.size() : 0;
    return faults;
}

}  // namespace

MeshRun run_once(const NotedDeck& deck, const Edition& edition, const RunInput& input) {
    MeshRun run;
    run.cut = input.cut;
    const auto begin = std::chrono::steady_clock::now();
    run.result = run_deck(input);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const RunResult& result = run.result;
    // The name of an earth dam's mesh is that of the last of its decks.
    if (result.end.status != STATUS_FINISHED || result.files == nullptr || result.mesh.empty() ||
        !result.files->contains(result.mesh))
        return run;
    run.mesh =
        read_mesh_text(std::string(result.files->text(result.mesh)), name_of_result(result), edition.kind);
    run.mesh->names.take(deck.names);
    run.corners = corners_of(*run.mesh);
    return run;
}

MeshRun run_with(Cut cut, const NotedDeck& deck, const Edition& edition, RunInput& input) {
    input.cut = cut == Cut::sound ? CutMethod::sound : CutMethod::by_rules;
    MeshRun first = run_once(deck, edition, input);
    const std::size_t faults = cut == Cut::automatic ? faults_of(first) : 0;
    if (faults == 0)
        return first;
    input.cut = CutMethod::sound;
    MeshRun sound = run_once(deck, edition, input);
    if (sound.mesh && faults_of(sound) < faults) {
        sound.cut_reason = "by the rules the mesh is unsound";
        return sound;
    }
    first.cut_reason = sound.result.end.text.empty() ? "the mesh of the sound cut is no better"
                                                     : "the sound cut ended with: " + sound.result.end.text;
    return first;
}

}  // namespace brelan::tool
