// brelan watch: a deck is run in memory whenever it was saved.
#include <fmt/chrono.h>
#include <fmt/core.h>

#include <ctime>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>

#include "analysis/counts.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/file_watch.h"
#include "cli/held_signals.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/deck_changes.h"
#include "commands/memory_run.h"
#include "commands/mesh_run.h"
#include "drawing/soundness_text.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// A deck as it was saved, and what came out of it.
struct Outcome {
    NotedDeck deck;
    std::optional<MeshLists> mesh;
    Counts counts;
    std::string soundness;
    std::string message;  // where there is no mesh: why
    double seconds = 0.0;
};

// Leaves a run when the command is to end.
class EndedBySignal : public RunWatcher {
public:
    explicit EndedBySignal(const HeldSignals& signals) : signals_(signals) {}
    bool goes_on(const RunProgress& /*progress*/) noexcept override {
        came_ = came_ || signals_.came_within(std::chrono::milliseconds(0));
        return !came_;
    }
    bool came() const { return came_; }

private:
    const HeldSignals& signals_;
    bool came_ = false;
};

Outcome outcome_of(const WatchOptions& options, const Context& context, RunWatcher& watcher) {
    Outcome outcome;
    try {
        const DeckSource source = deck_source(options.deck);
        fs::path project = options.project.empty() ? source.file.parent_path() : fs::path(options.project);
        const DeckPlace place{project.empty() ? "." : std::move(project), {}};
        const Edition edition = edition_of_deck(source, place.project, {}, options.edition).edition;
        outcome.deck = read_deck(source, edition.kind);
        RunInput input = run_input(outcome.deck, edition, place, package_data(context.program, edition.kind));
        input.watcher = &watcher;
        MeshRun run = run_with(options.cut, {outcome.deck, edition, place}, input);
        outcome.seconds = run.seconds;
        outcome.message = run.message;
        outcome.mesh = std::move(run.mesh);
        if (outcome.mesh) {
            outcome.counts = count_mesh(*outcome.mesh, run.corners);
            outcome.soundness =
                soundness_line(run.soundness ? *run.soundness : check_soundness(*outcome.mesh, run.corners));
        } else if (outcome.message.empty()) {
            outcome.message = options.deck + ": the deck names no mesh as its result";
        }
    } catch (const Failure& failure) {
        outcome.message = failure.what();
    } catch (const RunEnd& end) {
        outcome.message = end.text;
    }
    return outcome;
}

void show_line(const std::string& text) {
    print(fmt::format("          {}\n", printable(text)));
}

// "5 Back-fill" with the number of its elements before and after.
void show_materials(const Outcome& before, const Outcome& after) {
    std::map<std::pair<ElementClass, std::int32_t>, std::pair<std::size_t, std::size_t>> counts;
    for (const MaterialRow& row : before.counts.materials)
        counts[{row.of, row.material}].first = row.count;
    for (const MaterialRow& row : after.counts.materials)
        counts[{row.of, row.material}].second = row.count;
    for (const auto& [key, count] : counts)
        if (count.first != count.second) {
            const MeshLists& named = count.second > 0 ? *after.mesh : *before.mesh;
            show_line(fmt::format("{}: {} -> {}", named.group_title(key.first, key.second), count.first,
                                  counted(count.second, "element", "elements")));
        }
}

void show_outcome(const Outcome& now, const Outcome& last_mesh) {
    if (!now.mesh) {
        error_line(now.message);
        return;
    }
    const auto size = [](const Outcome& outcome) {
        return fmt::format("{}, {}", counted(outcome.mesh->nodes.size(), "node", "nodes"),
                           counted(outcome.mesh->elements.size(), "element", "elements"));
    };
    show_line(fmt::format("{}; {:.2f} s", size(now), now.seconds));
    if (!last_mesh.mesh) {
        show_line(now.soundness);
        return;
    }
    if (size(last_mesh) != size(now))
        show_line("before: " + size(last_mesh));
    show_materials(last_mesh, now);
    show_line(now.soundness == last_mesh.soundness
                  ? now.soundness
                  : fmt::format("{}; before: {}", now.soundness, last_mesh.soundness));
}

void show_time(const std::string& deck, std::string_view what) {
    print(fmt::format("{:%H:%M:%S}  {} {}\n", fmt::localtime(std::time(nullptr)), printable(deck), what));
}

}  // namespace

int watch(const WatchOptions& options, const Context& context) {
    if (options.deck == STANDARD_STREAM)
        throw Failure("expected a deck in a file, which can be saved again and again");
    deck_source(options.deck);
    const HeldSignals signals;
    EndedBySignal watcher(signals);
    FileWatch file(options.deck);
    Outcome last_mesh;
    Outcome first = outcome_of(options, context, watcher);
    if (!context.quiet && !watcher.came()) {
        show_time(options.deck, "as it is");
        show_outcome(first, last_mesh);
        finish_output();
    }
    NotedDeck before = first.deck;  // the last one without a fault
    if (first.mesh)
        last_mesh = std::move(first);
    note(context, "it is run again whenever it was saved; Ctrl-C ends it");
    while (!watcher.came() && !signals.came_within(FileWatch::EACH)) {
        if (!file.changed())
            continue;
        Outcome now = outcome_of(options, context, watcher);
        if (watcher.came())
            break;
        show_time(options.deck, fs::exists(options.deck) ? "was saved" : "is gone");
        if (fs::exists(options.deck)) {
            // Cards behind a fault are not known.
            const bool is_whole = !now.deck.cards.empty() && !now.deck.fault;
            if (is_whole)
                for (const std::string& change : deck_changes(before, now.deck))
                    show_line(change);
            show_outcome(now, last_mesh);
            if (is_whole)
                before = now.deck;
            if (now.mesh)
                last_mesh = std::move(now);
        }
        finish_output();
    }
    return STATUS_OK;
}

}  // namespace brelan::tool
