#include "commands/checking/verdict.h"

#include <memory>

#include "cli/exit_status.h"
#include "dam/dam_deck.h"
#include "deck/deck_checker.h"
#include "formats/mesh_file.h"
#include "run/base_mesh_run.h"
#include "run/flush_to_zero.h"
#include "run/run.h"
#include "run/run_deck.h"
#include "text/console.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

constexpr std::string_view DECK_NAME = "..\\deck.dat";
constexpr std::string_view DAM_DECK = "..\\EarthDam.Meg";
constexpr std::string_view BASE_FILE = "..\\Bmesh.dat";
constexpr std::string_view NORMALISED = "BRELAN.TMP";

void take_end(const RunEnd& end, const NotedDeck& deck, Verdict& verdict) {
    verdict.status = end.status;
    if (end.status == STATUS_STOPPED) {  // the report of a wrong count
        verdict.line = deck.fault ? deck.fault->line : 0;
        verdict.message = deck.file.string();
        if (verdict.line > 0)
            verdict.message += ", line " + std::to_string(verdict.line) + ": " + deck.fault->message;
        else
            verdict.message += ": a card has a wrong count of values";
        return;
    }
    verdict.message = deck.file.string();
    if (end.place && end.place->file == DECK_NAME) {
        verdict.line = end.place->line;
        verdict.message += ", line " + std::to_string(verdict.line);
    }
    verdict.message += ": " + end.message();
}

void make_base_mesh(const NotedDeck& deck, const MemoryFiles& files, Run& run, Verdict& verdict) {
    try {
        run_base_mesh(run);
        run.channels.take_results();
        verdict.base_mesh = read_mesh_text(files.text(BASE_FILE), std::string(BASE_MESH), deck.kind);
    } catch (const RunEnd& end) {
        verdict.no_base_mesh =
            end.status == STATUS_STOPPED ? "the base mesh is larger than the program can hold" : end.text;
    } catch (const Failure& failure) {
        verdict.no_base_mesh = failure.what();
    }
}

// The mesh of a dam's main deck. What a project's own defaults collapse and move, and its units, are no
// matter of the zones.
std::optional<MeshLists> body_of_dam(const Edition& edition, const std::string& main_deck) {
    RunInput input;
    input.edition = edition.number;
    input.deck_name = DAM_DECK;
    input.files[std::string(DAM_DECK)] = main_deck;
    input.files["..\\DV-BRELAN.dat"] = "1 0.001 0.01 0.001\n0 0.0 0 0 0 0 0 0\n0\n";
    input.files["C:\\Vork\\Qx\\Qxdata\\UNIT.DAT"] = std::string(15, '\n') + "2 2 4 1 1\n";
    const RunResult result = run_deck(input);
    if (result.end.status != STATUS_OK || !result.files->contains(result.mesh))
        return std::nullopt;
    return read_mesh_text(result.files->text(result.mesh), result.mesh, edition.kind);
}

// Has the program's own checker look at the deck in memory, and goes on with what it has accepted.
template <class GoOn>
Verdict checked(const NotedDeck& deck, const Edition& edition, GoOn&& go_on) {
    Verdict verdict;
    RunInput input;
    input.files[std::string(DECK_NAME)] = deck.text;
    const std::shared_ptr<MemoryFiles> files = files_of(input);

    const FlushToZero mode;
    KeptConsole console;
    const auto run = std::make_unique<Run>(files, console);
    run->set_edition(edition.number);
    const LayoutKind kind = run->settings.kind();
    try {
        check_deck(run->channels, kind, run->card_memory, run->deck, run->console, TextLine(DECK_NAME),
                   NORMALISED);
        if (run->deck.is_dam())
            write_dam_decks(run->channels, kind, run->cut, run->card_memory, run->decks, run->deck.dam,
                            run->sizes);
    } catch (const RunEnd& end) {
        take_end(end, deck, verdict);
        return verdict;
    }
    go_on(*run, *files, verdict);
    return verdict;
}

}  // namespace

Verdict verdict_of(const NotedDeck& deck, const Edition& edition) {
    constexpr std::int32_t base_mesh = 2;
    return checked(deck, edition, [&](Run& run, const MemoryFiles& files, Verdict& verdict) {
        if (run.deck.is_dam()) {
            const DamCards& dam = run.deck.dam;
            if (dam.shells && (dam.core || dam.cut_off))
                verdict.dam_body = body_of_dam(edition, std::string(files.text(DAM_DECK)));
        } else if (deck.mode == base_mesh) {
            make_base_mesh(deck, files, run, verdict);
        }
    });
}

Verdict verdict_of_fault(const NotedDeck& deck) {
    Verdict verdict;
    verdict.status = deck.fault->wrong_count ? STATUS_STOPPED : STATUS_FAILED;
    verdict.line = deck.fault->line;
    verdict.message = deck.file.string();
    if (verdict.line > 0)
        verdict.message += ", line " + std::to_string(verdict.line);
    verdict.message += ": " + deck.fault->message;
    return verdict;
}

Verdict verdict_of_dam(const NotedDeck& deck, const Edition& edition) {
    constexpr std::int32_t dam = 3;
    if (deck.mode != dam)
        return {};
    return checked(deck, edition, [](Run&, const MemoryFiles&, Verdict&) {});
}

}  // namespace brelan::tool
