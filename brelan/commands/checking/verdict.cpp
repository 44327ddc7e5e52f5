#include "commands/checking/verdict.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "commands/batch/temporary_directory.h"
#include "dam/dam_deck.h"
#include "deck/deck_checker.h"
#include "model/mesh_file.h"
#include "run/base_mesh_run.h"
#include "run/flush_to_zero.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/console.h"
#include "text/free_field.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view DECK_NAME = "..\\deck.dat";
constexpr std::string_view NORMALISED = "BRELAN.TMP";

// The line that a message about the deck names.
int line_in(const std::string& message) {
    constexpr std::string_view line = ", line ";
    return message.starts_with(line) ? std::atoi(message.c_str() + line.size()) : 0;
}

void take_end(const RunEnd& end, const Deck& deck, Verdict& verdict) {
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
    if (!end.text.starts_with(DECK_NAME)) {
        verdict.message = deck.file.string() + ": " + end.text;
        return;
    }
    const std::string rest = end.text.substr(DECK_NAME.size());
    verdict.line = line_in(rest);
    verdict.message = deck.file.string() + rest;
}

// Drive C: with what the checker reads there, and room for what it writes.
void make_drive(const fs::path& drive) {
    const fs::path files = drive / "Vork" / "Qx" / "Qxdata";
    fs::create_directories(files);
    write_file(files / "MANUAL.DAT", "0\n");
}

void make_base_mesh(const Deck& deck, const fs::path& project, Run& run, Verdict& verdict) {
    try {
        Channel& cards = run.channels.open(CHANNEL_DECK, NORMALISED, OpenStatus::old);
        std::int32_t mode = 0, kind_code = 0;
        read_free(cards, "Card 1.1", mode, kind_code);
        run_base_mesh(run);
        run.channels.close_all();
        verdict.base_mesh = read_mesh_file(project / BASE_MESH, deck.kind);
    } catch (const RunEnd& end) {
        verdict.no_base_mesh =
            end.status == STATUS_STOPPED ? "the base mesh is larger than the program can hold" : end.text;
    } catch (const Failure& failure) {
        verdict.no_base_mesh = failure.what();
    }
}

}  // namespace

Verdict verdict_of(const Deck& deck, const Edition& edition) {
    constexpr std::int32_t base_mesh = 2;
    Verdict verdict;
    const TemporaryDirectory place("brelan-check-");
    const fs::path project = place.path() / "project", work = project / "work", drive = place.path() / "C";
    fs::create_directories(work);
    write_file(project / "deck.dat", deck.text);
    make_drive(drive);

    const FlushToZero mode;
    KeptConsole console;
    const auto run = std::make_unique<Run>(Directories{work, drive}, console);
    run->set_edition(edition.number);
    const LayoutKind kind = run->settings.kind();
    try {
        const DeckContent content =
            check_deck(run->channels, kind, run->checker, run->console, TextLine(DECK_NAME), NORMALISED);
        if (content == DeckContent::dam) {
            write_dam_decks(run->channels, kind, run->checker, run->decks, run->dam, run->sizes);
            return verdict;  // the decks made of its cards are no matter of this check
        }
    } catch (const RunEnd& end) {
        take_end(end, deck, verdict);
        return verdict;
    }
    run->channels.close_all();
    std::ifstream normalised(work / NORMALISED, std::ios::binary);
    verdict.normalised.assign(std::istreambuf_iterator<char>(normalised), {});
    if (deck.mode == base_mesh)
        make_base_mesh(deck, project, *run, verdict);
    return verdict;
}

}  // namespace brelan::tool
