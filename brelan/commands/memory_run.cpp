#include "commands/memory_run.h"

#include "cli/input_file.h"
#include "commands/batch/data_directory.h"
#include "deck/card_stream.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view PARENT = "..\\";
constexpr std::string_view DATA = "C:\\Vork\\Qx\\Qxdata\\";
constexpr std::string_view SLOPES = "C:\\Vork\\Qx\\Qxdata\\Slope\\";

void take(TextsByName& files, const std::string& name, const fs::path& file) {
    std::error_code error;
    if (!file.empty() && fs::is_regular_file(file, error))
        files[name] = read_file(file);
}

// Dams and the edit of a slope look up slope templates.
bool uses_slopes(const NotedDeck& deck) {
    constexpr std::int32_t dam = 3, slope_edit = 5;
    const DeckCard* edit = deck.card("3.3");
    return deck.mode == dam || (edit != nullptr && edit->integer("IEDIT") == slope_edit);
}

// The meshes that the deck reads, by the names on its cards.
void take_meshes(TextsByName& files, const NotedDeck& deck, const DeckPlace& place) {
    for (const DeckCard& card : deck.cards) {
        if (card.type != CardType::name || (card.heading != "FILEA" && card.heading != "FILEB"))
            continue;
        const TextLine line(card.name);
        if (!line.blank())
            take(files, name_in_run(line.trimmed()), file_of_card(place.project, card.name, place.work));
    }
}

}  // namespace

std::string name_in_run(std::string_view name) {
    return is_bare_name(TextLine(name)) ? std::string(PARENT) + std::string(name) : std::string(name);
}

std::string name_of_result(const RunResult& result) {
    return result.mesh.starts_with(PARENT) ? result.mesh.substr(PARENT.size()) : result.mesh;
}

TextsByName package_data(const fs::path& program, LayoutKind kind) {
    TextsByName texts;
    for (const auto& [name, file] : master_files(program, kind)) {
        std::string in_run(DATA);
        for (const char c : name.generic_string())
            in_run += c == '/' ? '\\' : c;
        texts[in_run] = read_file(file);
    }
    return texts;
}

RunInput run_input(const NotedDeck& deck, const Edition& edition, const DeckPlace& place,
                   const TextsByName& data) {
    RunInput input;
    input.edition = edition.number;
    input.deck_name = MEMORY_DECK;
    const bool with_slopes = uses_slopes(deck);
    for (const auto& [name, text] : data)
        if (with_slopes || !name.starts_with(SLOPES))
            input.files.emplace(name, text);
    take(input.files, std::string(DATA) + "UNIT.DAT", file_of_card(place.project, "UNIT.DAT"));
    take(input.files, std::string(PARENT) + "DV-BRELAN.dat", file_of_card(place.project, "DV-BRELAN.dat"));
    take(input.files, "LineUp.dat", file_of_card(place.project, "LineUp.dat"));
    input.files[std::string(MEMORY_DECK)] = deck.text;
    take_meshes(input.files, deck, place);
    return input;
}

}  // namespace brelan::tool
