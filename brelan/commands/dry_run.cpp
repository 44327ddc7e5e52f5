#include "commands/dry_run.h"

#include <chrono>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "commands/checking/drawn_lines.h"
#include "commands/memory_run.h"
#include "commands/run_failure.h"
#include "formats/mesh_file.h"

namespace brelan::tool {

namespace fs = std::filesystem;

bool DryRun::sound() const {
    return status == STATUS_OK && (!mesh || check_soundness(*mesh, corners_of(*mesh)).sound());
}

DryRun dry_run(const DeckCheck& check, const DeckPlace& place, CutMethod cut, const fs::path& program) {
    const NotedDeck& deck = check.deck;
    const Edition& edition = check.edition;
    RunInput input = run_input(deck, edition, place, package_data(program, edition.kind));
    input.cut = cut;

    const auto begin = std::chrono::steady_clock::now();
    const RunResult result = run_deck(input);
    DryRun ran;
    ran.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    ran.status = result.end.status;
    if (ran.status != STATUS_OK) {
        ran.message = failure_message({deck,
                                       place.project,
                                       {},
                                       std::string(MEMORY_DECK),
                                       "",
                                       {result.end.status, result.end.text, result.end.text}});
        return ran;
    }
    // The name of an earth dam's mesh is that of the last of its decks.
    if (result.files == nullptr || result.mesh.empty() || !result.files->contains(result.mesh))
        return ran;
    ran.result = name_of_result(result);
    ran.mesh = read_mesh_text(result.files->text(result.mesh), ran.result, edition.kind);
    ran.mesh->names.take(deck.names);
    ran.activity = result.activity;
    ran.remarks = changed_lines(deck, check.first_mesh, *ran.mesh);
    return ran;
}

}  // namespace brelan::tool
