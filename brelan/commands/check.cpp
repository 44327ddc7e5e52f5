// brelan check: a deck card by card, and what may be wrong with it.
#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/words.h"
#include "commands/batch/edition.h"
#include "commands/card_report.h"
#include "commands/checking/code_meanings.h"
#include "commands/checking/doubts.h"
#include "commands/checking/free_sides.h"
#include "commands/checking/verdict.h"
#include "commands/commands.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

struct Report {
    NotedDeck deck;
    Edition edition;
    Verdict verdict;
    std::vector<Doubt> doubts;

    // The batch program will finish, as far as can be seen without running it.
    bool accepted() const {
        return verdict.status == 0 &&
               std::none_of(doubts.begin(), doubts.end(), [](const Doubt& doubt) { return doubt.ends_run; });
    }
};

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

void look_for_doubts(Report& report, const DeckPlace& place) {
    const NotedDeck& deck = report.deck;
    Doubts doubts(deck);
    doubt_codes(doubts);
    doubt_numbers(doubts);
    doubt_cards(doubts);
    doubt_dam(doubts);
    doubt_outlines(doubts);
    std::optional<MeshLists> a, b;
    if (deck.mode == 2) {
        a = std::move(report.verdict.base_mesh);
        if (!report.verdict.no_base_mesh.empty())
            doubts.end_of_run("no-base-mesh", deck.card("4.1"), report.verdict.no_base_mesh);
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
    report.doubts = doubts.list();
}

// --- text ----------------------------------------------------------------------------------------

std::string fields_text(const DeckCard& card) {
    if (card.type != CardType::values)
        return card_line(card);
    std::string text;
    for (const DeckField& field : card.fields) {
        if (!field.given && !field.written)
            continue;
        const CodeMeaning meaning = meaning_of(card, field);
        text += (text.empty() ? "" : "  ") + (field.name.empty() || field.name == "-" ? "?" : field.name) +
                " " + value_text(field);
        if (meaning.known)
            text += fmt::format(" ({})", meaning.text);
        if (!field.given)
            text += inked(stdout, Ink::faint, " default");
    }
    return text;
}

std::string cards_text(const NotedDeck& deck) {
    std::string text;
    int group = 0;
    for (const DeckCard& card : deck.cards) {
        if (card.group != group && card.group > 0)
            text += fmt::format("      Group {}\n", card.group);
        group = card.group;
        const bool refused = deck.fault && deck.fault->card && &deck.cards[*deck.fault->card] == &card;
        const std::string shown = refused ? printable(card.text) : printable(fields_text(card));
        text +=
            fmt::format("{:>5} {} {}: {}\n", card.line,
                        inked(stdout, Ink::bold, fmt::format("{:<13}", card.number)), card.heading, shown);
    }
    return text;
}

void show_text(const Context& context, const Report& report) {
    const std::string file = report.deck.file.string();
    if (!context.quiet)
        print(cards_text(report.deck));
    for (const Doubt& doubt : report.doubts) {
        const std::string place = doubt.line > 0 ? fmt::format("{}, line {}", file, doubt.line) : file;
        print(fmt::format("{}: {} {}\n", printable(place),
                          doubt.ends_run ? inked(stdout, Ink::red, "the run will end:")
                                         : inked(stdout, Ink::yellow, "warning:"),
                          printable(doubt.message)));
    }
    if (report.verdict.status != 0) {
        error_line(report.verdict.message);
        if (report.deck.fault && report.deck.fault->line == report.verdict.line)
            fmt::print(stderr, "{}", card_report(report.deck, *report.deck.fault));
        return;
    }
    if (!context.quiet)
        print(fmt::format(
            "{}: {}; {}, {}, edition {} ({})\n", printable(file),
            report.accepted() ? inked(stdout, Ink::green, "accepted by the checker")
                              : inked(stdout, Ink::red, "the run will end with a message"),
            counted(report.deck.cards.size(), "card", "cards"),
            report.doubts.empty() ? "no warnings" : counted(report.doubts.size(), "warning", "warnings"),
            report.edition.number, name_of(report.edition.kind)));
}

// --- JSON ----------------------------------------------------------------------------------------

// The number as a person would write it: 0.1 and not its 32 bits in 64.
double shortest(float value) {
    return std::stod(fmt::format("{}", value));
}

Json card_json(const DeckCard& card) {
    Json json{{"line", card.line}, {"card", card.number}, {"heading", card.heading}};
    if (card.group > 0)
        json["group"] = card.group;
    if (card.type == CardType::name)
        json["file"] = card.name;
    if (card.type == CardType::title)
        json["title"] = card.name;
    if (card.type == CardType::list)
        for (const float value : card.list)
            json["list"].push_back(shortest(value));
    if (card.type != CardType::values)
        return json;
    json["fields"] = Json::Array();
    for (const DeckField& field : card.fields) {
        Json entry{{"name", field.name}};
        if (!field.known) {
            entry["value"] = Json();
            entry["text"] = field.text;
        } else if (field.form != FieldForm::real) {
            entry["value"] = field.integer();
        } else {
            entry["value"] = shortest(field.value);
        }
        entry["given"] = field.given;
        if (const CodeMeaning meaning = meaning_of(card, field); meaning.known)
            entry["meaning"] = meaning.text;
        json["fields"].push_back(entry);
    }
    return json;
}

Json report_json(const Report& report) {
    const NotedDeck& deck = report.deck;
    Json json{{"deck", deck.file.string()},
              {"edition", report.edition.number},
              {"kind", name_of(report.edition.kind)},
              {"accepted", report.accepted()}};
    if (report.verdict.status != 0) {
        Json& refusal = json["refusal"];
        refusal = {{"line", report.verdict.line}, {"message", report.verdict.message}};
        if (deck.fault && deck.fault->wrong_count) {
            refusal["card"] = deck.cards[*deck.fault->card].number;
            refusal["minimum"] = deck.fault->minimum;
            refusal["maximum"] = deck.fault->maximum;
            refusal["found"] = deck.fault->found;
        }
    }
    json["cards"] = Json::Array();
    for (const DeckCard& card : deck.cards)
        json["cards"].push_back(card_json(card));
    json["warnings"] = Json::Array();
    for (const Doubt& doubt : report.doubts)
        json["warnings"].push_back({{"id", doubt.id},
                                    {"line", doubt.line},
                                    {"ends_run", doubt.ends_run},
                                    {"message", doubt.message}});
    return json;
}

}  // namespace

int check(const CheckOptions& options, const Context& context) {
    const DeckSource source = deck_source(options.deck);
    fs::path project = options.project.empty() ? source.file.parent_path() : fs::path(options.project);
    if (project.empty())
        project = ".";
    const fs::path work = options.work.empty() ? fs::path{} : project / options.work;
    Report report;
    report.edition = edition_of_deck(source, project, work, options.edition).edition;
    report.deck = read_deck(source, report.edition.kind);
    report.verdict = verdict_of(report.deck, report.edition);
    look_for_doubts(report, {project, work});
    if (options.json)
        print(report_json(report).text());
    else
        show_text(context, report);
    if (options.json && report.verdict.status != 0)
        error_line(report.verdict.message);
    if (!report.accepted())
        return STATUS_FOUND;
    return options.strict && !report.doubts.empty() ? STATUS_FOUND : STATUS_OK;
}

}  // namespace brelan::tool
