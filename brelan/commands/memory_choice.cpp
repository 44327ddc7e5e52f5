#include "commands/memory_choice.h"

#include <chrono>
#include <utility>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "commands/memory_run.h"
#include "formats/mesh_file.h"

namespace brelan::tool {

namespace {

MemoryRun once_in_memory(const NotedDeck& deck, LayoutKind kind, const RunInput& input) {
    MemoryRun run;
    run.cut = input.cut;
    const auto begin = std::chrono::steady_clock::now();
    run.result = run_deck(input);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const RunResult& result = run.result;
    if (result.end.status != STATUS_OK || result.files == nullptr || result.mesh.empty() ||
        !result.files->contains(result.mesh))
        return run;
    run.mesh = read_mesh_text(result.files->text(result.mesh), name_of_result(result), kind);
    run.mesh->names.take(deck.names);
    return run;
}

std::size_t faults_in(const MemoryRun& run) {
    std::size_t faults = 0;
    if (run.mesh)
        for (const Finding& finding : check_soundness(*run.mesh, corners_of(*run.mesh)).findings)
            faults += finding.unsound ? finding.places.size() : 0;
    return faults;
}

}  // namespace

MemoryRun run_in_memory(const NotedDeck& deck, LayoutKind kind, RunInput input, Cut cut) {
    input.cut = cut == Cut::sound ? CutMethod::sound : CutMethod::by_rules;
    MemoryRun by_rules = once_in_memory(deck, kind, input);
    if (cut != Cut::automatic)
        return by_rules;
    const std::size_t faults = faults_in(by_rules);
    if (faults == 0)
        return by_rules;
    input.cut = CutMethod::sound;
    MemoryRun sound = once_in_memory(deck, kind, input);
    if (sound.mesh && faults_in(sound) < faults) {
        sound.cut_reason = "by the rules the mesh is unsound";
        return sound;
    }
    by_rules.cut_reason = sound.result.end.text.empty()
                              ? "the mesh of the sound cut is no better"
                              : "the sound cut ended with: " + sound.result.end.text;
    return by_rules;
}

}  // namespace brelan::tool
