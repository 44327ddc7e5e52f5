#include "commands/mesh_run.h"

#include <chrono>
#include <utility>

#include "commands/memory_run.h"
#include "commands/run_failure.h"
#include "formats/mesh_file.h"

namespace brelan::tool {

namespace {

// A mesh that is not there, or cannot be read as a whole, is one that a card names.
PlacedRemark end_of(const std::string& message, const PlacedDeck& placed) {
    const auto& [deck, edition, place] = placed;
    PlacedRemark remark = taken_apart(message, deck.file.string());
    for (const DeckCard& card : deck.cards)
        if (remark.file.empty() && card.type == CardType::name)
            remark = taken_apart(message, file_of_card(place.project, card.name).lexically_normal().string());
    return remark;
}

// Of a mesh by the rules, or by the sound cut.
std::size_t faults_of(MeshRun& run) {
    if (!run.mesh)
        return 0;
    run.soundness = check_soundness(*run.mesh, run.corners);
    std::size_t faults = 0;
    for (const Finding& finding : run.soundness->findings)
        faults += finding.unsound ? finding.places.size() : 0;
    return faults;
}

}  // namespace

MeshRun run_once(const PlacedDeck& placed, const RunInput& input) {
    MeshRun run;
    run.cut = input.cut;
    const auto begin = std::chrono::steady_clock::now();
    run.result = run_deck(input);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const RunResult& result = run.result;
    if (result.end.status != STATUS_FINISHED) {
        const RunEnd& end = result.end;
        run.message = failure_message({placed.deck,
                                       placed.place.project,
                                       {},
                                       std::string(MEMORY_DECK),
                                       "",
                                       {end.status, end.text, end.text}});
        run.end = end_of(run.message, placed);
        return run;
    }
    // The name of an earth dam's mesh is that of the last of its decks.
    if (result.files == nullptr || result.mesh.empty() || !result.files->contains(result.mesh))
        return run;
    run.mesh = read_mesh_text(result.files->text(result.mesh), name_of_result(result), placed.edition.kind);
    run.mesh->names.take(placed.deck.names);
    run.corners = corners_of(*run.mesh);
    return run;
}

MeshRun run_with(Cut cut, const PlacedDeck& placed, RunInput& input) {
    input.cut = cut == Cut::sound ? CutMethod::sound : CutMethod::by_rules;
    MeshRun by_rules = run_once(placed, input);
    const std::size_t faults = cut == Cut::automatic ? faults_of(by_rules) : 0;
    if (faults == 0)
        return by_rules;
    input.cut = CutMethod::sound;
    MeshRun sound = run_once(placed, input);
    const bool ended = sound.result.end.status == STATUS_ENDED;
    if (ended || (sound.mesh && faults_of(sound) < faults)) {
        sound.cut_reason = "by the rules the mesh is unsound";
        return sound;
    }
    by_rules.cut_reason = sound.result.end.text.empty()
                              ? "the mesh of the sound cut is no better"
                              : "the sound cut ended with: " + sound.result.end.text;
    return by_rules;
}

}  // namespace brelan::tool
