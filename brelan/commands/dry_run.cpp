#include "commands/dry_run.h"

#include <chrono>
#include <string_view>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "commands/batch/data_directory.h"
#include "commands/checking/drawn_lines.h"
#include "commands/run_failure.h"
#include "deck/card_stream.h"
#include "formats/mesh_file.h"
#include "run/run_deck.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view MEMORY_DECK = "..\\deck.dat";
constexpr std::string_view PARENT = "..\\";
constexpr std::string_view DATA = "C:\\Vork\\Qx\\Qxdata\\";

void take(RunInput& input, const std::string& name, const fs::path& file) {
    std::error_code error;
    if (!file.empty() && fs::is_regular_file(file, error))
        input.files[name] = read_file(file);
}

// The meshes that the deck reads, by the names on its cards.
void take_meshes(RunInput& input, const NotedDeck& deck, const DeckPlace& place) {
    for (const DeckCard& card : deck.cards) {
        if (card.type != CardType::name || (card.heading != "FILEA" && card.heading != "FILEB"))
            continue;
        const TextLine line(card.name);
        if (line.blank())
            continue;
        const std::string name(line.trimmed());
        take(input, is_bare_name(line) ? std::string(PARENT) + name : name,
             file_of_card(place.project, card.name, place.work));
    }
}

// Defaults, units and slope templates, and what the project has of its own.
void take_data(RunInput& input, const fs::path& data, const DeckPlace& place) {
    std::error_code error;
    for (const fs::directory_entry& file :
         fs::recursive_directory_iterator(data, fs::directory_options::follow_directory_symlink, error)) {
        if (!file.is_regular_file(error))
            continue;
        std::string name(DATA);
        for (const char c : file.path().lexically_relative(data).generic_string())
            name += c == '/' ? '\\' : c;
        take(input, name, file.path());
    }
    for (const std::string name : {"DV-BRELAN.dat", "LineUp.dat"}) {
        const std::string in_run = name == "LineUp.dat" ? name : std::string(PARENT) + name;
        take(input, in_run, file_of_card(place.project, name));
    }
}

}  // namespace

bool DryRun::sound() const {
    return status == STATUS_OK && (!mesh || check_soundness(*mesh, corners_of(*mesh)).sound());
}

DryRun dry_run(const DeckCheck& check, const DeckPlace& place, CutMethod cut, const fs::path& program) {
    const NotedDeck& deck = check.deck;
    const Edition& edition = check.edition;
    RunInput input;
    input.edition = edition.number;
    input.cut = cut;
    input.deck_name = MEMORY_DECK;
    {
        const DataDirectory data(program, edition, place.project);
        take_data(input, data.files(), place);
    }
    input.files[std::string(MEMORY_DECK)] = deck.text;
    take_meshes(input, deck, place);

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
    ran.result = result.mesh.starts_with(PARENT) ? result.mesh.substr(PARENT.size()) : result.mesh;
    ran.mesh = read_mesh_text(result.files->text(result.mesh), ran.result, edition.kind);
    ran.activity = result.activity;
    ran.remarks = changed_lines(deck, check.first_mesh, *ran.mesh);
    return ran;
}

}  // namespace brelan::tool
