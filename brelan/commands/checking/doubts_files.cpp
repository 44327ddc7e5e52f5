// Files that are not there or in each other's way.
#include <fmt/core.h>

#include <system_error>

#include "cli/words.h"
#include "commands/batch/edition.h"
#include "commands/batch/side_files.h"
#include "commands/card_report.h"
#include "commands/checking/doubts.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

void doubt_source(Doubts& doubts, const DeckCard& card, const DeckPlace& place) {
    const NotedDeck& deck = doubts.deck();
    constexpr std::int32_t base_mesh = 2;
    if (deck.mode == base_mesh) {
        if (lower(card.name) != lower(BASE_MESH))
            doubts.doubt(
                "other-mesh", &card,
                fmt::format("{} is edited, and not {}, which the cards before make", card.name, BASE_MESH));
        else
            return;
    }
    const fs::path file = file_of_card(place.project, card.name, place.work);
    std::error_code error;
    if (in_working_directory(card.name) && place.work.empty())
        doubts.end_of_run("no-file", &card, name_here(card.name));
    else if (!fs::is_regular_file(file, error))
        doubts.end_of_run("no-file", &card,
                          fmt::format("{}: there is no mesh of this name, or more than one",
                                      file.empty() ? card.name : file.lexically_normal().string()));
}

}  // namespace

void doubt_files(Doubts& doubts, const DeckPlace& place, const DeckMeshes& meshes) {
    const NotedDeck& deck = doubts.deck();
    std::error_code error;
    if (const std::string text = contradiction_of_deck(deck, place.project); !text.empty())
        doubts.doubt("other-kind", nullptr,
                     fmt::format("this run is one of the {} kind, but {}", name_of(deck.kind), text));
    for (const std::string& name : side_file_names(deck, place.project))
        if (fs::equivalent(file_of_card(place.project, name), deck.file, error) && !error)
            doubts.end_of_run("own-name", nullptr,
                              fmt::format("{}: the run would put it in the place of this deck", name));
    for (const DeckCard& card : deck.cards) {
        if (card.type != CardType::name || card.name.empty())
            continue;
        const bool source = card.heading == "FILEA" || card.heading == "FILEB";
        const bool result = card.heading == "FILEM" || card.heading == "FILEC";
        if (source)
            doubt_source(doubts, card, place);
        if (result && in_working_directory(card.name) && place.work.empty())
            doubts.doubt("lost-result", &card, lost_result(card.name));
        const fs::path file = file_of_card(place.project, card.name, place.work);
        if (result && !file.empty() && fs::is_directory(file, error))
            doubts.end_of_run("bad-result", &card, fmt::format("{}: a directory has this name", card.name));
        else if (result && card.name.find(':') == std::string::npos && file.has_parent_path() &&
                 !fs::is_directory(file.parent_path(), error))
            doubts.end_of_run("bad-result", &card,
                              fmt::format("{}: there is no directory for it", card.name));
        else if (result && !file.empty() && fs::equivalent(file, deck.file, error) && !error)
            doubts.end_of_run("own-name", &card,
                              fmt::format("{}: the result would take the place of this deck", card.name));
        for (const MeshLists* mesh :
             {card.heading == "FILEA" ? meshes.a : nullptr, card.heading == "FILEB" ? meshes.b : nullptr})
            if (mesh != nullptr && mesh->kind != deck.kind)
                doubts.doubt("other-kind", &card,
                             fmt::format("{} is a mesh of the {} kind, and this run one of the {} kind",
                                         card.name, name_of(mesh->kind), name_of(deck.kind)));
    }
}

}  // namespace brelan::tool
