// brelan check: a deck card by card, and what may be wrong with it.
#include <fmt/core.h>

#include <optional>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/words.h"
#include "commands/card_report.h"
#include "commands/checking/code_meanings.h"
#include "commands/checking/deck_check.h"
#include "commands/commands.h"
#include "commands/dry_run.h"
#include "commands/info_text.h"
#include "commands/run_summary.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

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

void show_text(const Context& context, const DeckCheck& report) {
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

void show_dry_run(const Context& context, const DeckCheck& report, CutMethod cut, const DryRun& ran) {
    const std::string file = printable(report.deck.file.string());
    if (ran.status != STATUS_OK) {
        error_line(ran.message);
        return;
    }
    if (!context.quiet)
        print(fmt::format("{}: dry run finished in {:.1f} s\n", file, ran.seconds));
    if (ran.mesh && (!context.quiet || !ran.sound() || !ran.remarks.empty()))
        print(
            mesh_summary({*ran.mesh,
                          {},
                          cut == CutMethod::by_rules && has_cut(report.deck) ? report.deck.file : fs::path{},
                          ran.remarks,
                          cut}));
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

Json dry_run_json(const DryRun& ran) {
    const bool finished = ran.status == STATUS_OK;
    return {{"status", ran.status},
            {"message", finished ? Json() : Json(ran.message)},
            {"seconds", ran.seconds},
            {"result", ran.result},
            {"remarks", Json::array(ran.remarks)},
            {"mesh", ran.mesh ? report_json(report_of(*ran.mesh, 0.0), USUAL_LIST) : Json()}};
}

Json report_json(const DeckCheck& report) {
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
    const Edition edition = edition_of_deck(source, project, work, options.edition).edition;
    const DeckPlace place{project, work};
    DeckCheck report = check_of(read_deck(source, edition.kind), edition, place);
    const CutMethod cut = options.cut == Cut::sound ? CutMethod::sound : CutMethod::by_rules;
    if (cut == CutMethod::sound)
        std::erase_if(report.doubts, is_of_rules);
    std::optional<DryRun> ran;
    if (options.dry_run && report.verdict.status == 0)
        ran = dry_run(report, place, cut, context.program);
    if (options.json) {
        Json json = report_json(report);
        if (options.dry_run)
            json["dry_run"] = ran ? dry_run_json(*ran) : Json();
        print(json.text());
    } else {
        show_text(context, report);
        if (ran)
            show_dry_run(context, report, cut, *ran);
    }
    if (options.json && report.verdict.status != 0)
        error_line(report.verdict.message);
    if (!report.accepted() || (ran && !ran->sound()))
        return STATUS_FOUND;
    return options.strict && !report.doubts.empty() ? STATUS_FOUND : STATUS_OK;
}

}  // namespace brelan::tool
