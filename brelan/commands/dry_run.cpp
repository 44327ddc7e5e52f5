#include "commands/dry_run.h"

#include <utility>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "commands/checking/drawn_lines.h"
#include "commands/memory_run.h"
#include "commands/mesh_run.h"

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

    MeshRun run = run_once({deck, edition, place}, input);
    DryRun ran;
    ran.seconds = run.seconds;
    ran.status = run.result.end.status;
    if (ran.status != STATUS_OK) {
        ran.message = run.message;
        return ran;
    }
    if (!run.mesh)
        return ran;
    ran.result = name_of_result(run.result);
    ran.mesh = std::move(run.mesh);
    ran.activity = std::move(run.result.activity);
    ran.remarks = changed_lines(deck, check.first_mesh, *ran.mesh);
    return ran;
}

}  // namespace brelan::tool
