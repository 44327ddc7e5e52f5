#include "commands/checking/deck_check.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "cli/exit_status.h"
#include "commands/checking/free_sides.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// A mesh that the deck reads; none when it is not there. What is wrong with it is told as a doubt.
std::optional<MeshLists> source_mesh(Doubts& doubts, const DeckPlace& place, const std::string& name,
                                     std::string_view field) {
    const fs::path file = file_of_card(place.project, name, place.work);
    std::error_code error;
    if (file.empty() || !fs::is_regular_file(file, error))
        return std::nullopt;
    std::string message;
    try {
        MeshLists mesh = read_mesh_file(file);
        if (!mesh.byte_order_mark)
            return mesh;
        message = fmt::format("{}, line 1: a byte order mark stands in front of the mesh", file.string());
    } catch (const Failure& failure) {
        message = failure.what();
    } catch (const RunEnd& end) {
        message = end.text;
    }
    for (const DeckCard& card : doubts.deck().cards)
        if (card.type == CardType::name && card.heading == field)
            doubts.end_of_run("bad-mesh", &card, message);
    return std::nullopt;
}

// What the text alone tells.
void doubt_text(Doubts& doubts, const Verdict& verdict) {
    doubt_codes(doubts);
    doubt_numbers(doubts);
    doubt_cards(doubts);
    doubt_dam(doubts, verdict.dam_body ? &*verdict.dam_body : nullptr);
    doubt_outlines(doubts);
}

void look_for_doubts(DeckCheck& check, const DeckPlace& place) {
    const NotedDeck& deck = check.deck;
    Doubts doubts(deck);
    doubt_text(doubts, check.verdict);
    std::optional<MeshLists> a, b;
    if (deck.mode == 2) {
        a = std::move(check.verdict.base_mesh);
        if (!check.verdict.no_base_mesh.empty())
            doubts.end_of_run("no-base-mesh", deck.card("4.1"), check.verdict.no_base_mesh);
        if (a)
            for (const std::string& side : free_sides(*deck.card("4.1"), *a))
                doubts.doubt("free-side", deck.card("4.1"), side);
    } else {
        a = source_mesh(doubts, place, deck.first_mesh, "FILEA");
    }
    b = source_mesh(doubts, place, deck.second_mesh, "FILEB");
    std::optional<MeshPlaces> places;
    if (a)
        places.emplace(*a);
    const DeckMeshes meshes{a ? &*a : nullptr, b ? &*b : nullptr, places ? &*places : nullptr};
    doubt_files(doubts, place, meshes);
    doubt_mesh(doubts, meshes);
    doubt_cuts(doubts, meshes);
    doubt_joints(doubts, meshes);
    doubts.sort();
    check.doubts = doubts.list();
    check.first_mesh = std::move(a);
}

}  // namespace

bool DeckCheck::accepted() const {
    return verdict.status == 0 &&
           std::none_of(doubts.begin(), doubts.end(), [](const Doubt& doubt) { return doubt.ends_run; });
}

bool is_of_rules(const Doubt& doubt) {
    return doubt.id == "zone-cut-off" || doubt.id == "may-be-unsound" || doubt.id == "free-side";
}

DeckCheck check_of(NotedDeck deck, const Edition& edition, const DeckPlace& place) {
    DeckCheck check{std::move(deck), edition, {}, {}, {}};
    check.verdict = verdict_of(check.deck, edition);
    look_for_doubts(check, place);
    return check;
}

DeckCheck text_check_of(NotedDeck deck, const Edition& edition) {
    DeckCheck check{std::move(deck), edition, {}, {}, {}};
    check.verdict = check.deck.fault ? verdict_of_fault(check.deck) : verdict_of_dam(check.deck, edition);
    Doubts doubts(check.deck);
    doubt_text(doubts, check.verdict);
    doubts.sort();
    check.doubts = doubts.list();
    return check;
}

}  // namespace brelan::tool
