#include "commands/editing/deck_json.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "commands/checking/deck_check.h"
#include "commands/editing/deck_columns.h"
#include "commands/editing/meanings_json.h"
#include "commands/editing/question.h"
#include "model/deck_handles.h"
#include "model/new_group.h"

namespace brelan::tool {

namespace {

constexpr std::array CARD_TYPES{"values", "name", "title", "list"};
constexpr std::array HANDLE_KINDS{"point", "centre", "radius", "angle", "block", "dam", "window"};
constexpr std::array SHAPE_ROLES{"outline", "line", "free-line", "joint", "block", "window", "dam"};

// The number as a person would write it: 0.1 and not its 32 bits in 64.
double shortest(float value) {
    return std::stod(fmt::format("{}", value));
}

// --- cards ---------------------------------------------------------------------------------------

struct Columns {
    std::int64_t from = -1, to = -1;
};

Columns columns_of(const DeckColumns& columns, const DeckCard& card, const DeckField& field) {
    if (field.first_column == 0)
        return {};
    return {
        static_cast<std::int64_t>(
            columns.column(card.line, static_cast<std::size_t>(field.first_column) - 1)),
        static_cast<std::int64_t>(columns.column(card.line, static_cast<std::size_t>(field.last_column)))};
}

Json value_json(const DeckField& field) {
    if (!field.known)
        return {};
    return field.form == FieldForm::real ? Json(shortest(field.value)) : Json(field.integer());
}

Json card_json(const DeckCard& card, const DeckColumns& columns) {
    Json json{{"line", card.line - 1},
              {"last", card.last_line - 1},
              {"number", card.number},
              {"heading", card.heading},
              {"label", card.label},
              {"group", card.group},
              {"type", CARD_TYPES[static_cast<std::size_t>(card.type)]}};
    Json::Array fields;
    for (const DeckField& field : card.fields) {
        const Columns place = columns_of(columns, card, field);
        fields.push_back({{"name", field.name},
                          {"from", place.from},
                          {"to", place.to},
                          {"value", value_json(field)},
                          {"given", field.given},
                          {"real", field.form == FieldForm::real}});
    }
    json["fields"] = std::move(fields);
    return json;
}

// --- findings ------------------------------------------------------------------------------------

Json finding_json(const NotedDeck& deck, const DeckColumns& columns, const Doubt& doubt) {
    Columns place;
    if (doubt.card && doubt.field) {
        const DeckCard& card = deck.cards[*doubt.card];
        if (*doubt.field < card.fields.size())
            place = columns_of(columns, card, card.fields[*doubt.field]);
    }
    return {{"line", std::max(doubt.line - 1, 0)},
            {"from", place.from},
            {"to", place.to},
            {"severity", doubt.ends_run ? "error" : "warning"},
            {"id", doubt.id},
            {"message", columns.shown(doubt.message)}};
}

// The message without the deck's name and line, which stand beside it.
std::string bare_message(const NotedDeck& deck, const Verdict& verdict) {
    std::string place = deck.file.string();
    if (verdict.line > 0)
        place += fmt::format(", line {}", verdict.line);
    place += ": ";
    return verdict.message.starts_with(place) ? verdict.message.substr(place.size()) : verdict.message;
}

Json list_json(const DeckCheck& check, const DeckColumns& columns) {
    const NotedDeck& deck = check.deck;
    Json findings = Json::Array();
    if (check.verdict.status != 0) {
        Doubt refusal{"refused", check.verdict.line, bare_message(deck, check.verdict), true, {}, {}};
        if (deck.fault && deck.fault->line == check.verdict.line) {
            refusal.card = deck.fault->card;
            refusal.field = deck.fault->field;
        }
        findings.push_back(finding_json(deck, columns, refusal));
    }
    for (const Doubt& doubt : check.doubts)
        findings.push_back(finding_json(deck, columns, doubt));
    return findings;
}

// --- groups and shapes ---------------------------------------------------------------------------

Json groups_json(const NotedDeck& deck, const DeckColumns& columns) {
    Json groups = Json::Array();
    for (const DeckGroup& group : deck.groups) {
        int first = 0, last = 0;
        for (const DeckCard& card : deck.cards)
            if (card.group == group.number) {
                first = first == 0 ? card.line : first;
                last = card.last_line;
            }
        groups.push_back({{"group", group.number},
                          {"title", columns.shown(group.title)},
                          {"card", group.card},
                          {"line", first - 1},
                          {"last", last - 1}});
    }
    return groups;
}

Json shapes_json(const NotedDeck& deck, const DeckColumns& columns) {
    Json shapes = Json::Array();
    for (const DeckShape& shape : shapes_of(deck)) {
        Json::Array points;
        for (const DeckPoint& point : shape.points)
            points.push_back(Json::array({point.x, point.y}));
        shapes.push_back({{"role", SHAPE_ROLES[static_cast<std::size_t>(shape.role)]},
                          {"title", columns.shown(shape.title)},
                          {"group", shape.group},
                          {"closed", shape.closed},
                          {"points", std::move(points)}});
    }
    return shapes;
}

// --- handles and edits ---------------------------------------------------------------------------

Json handles_json(const NotedDeck& deck, const DeckColumns& columns) {
    Json handles = Json::Array();
    for (const DeckHandle& handle : handles_of(deck)) {
        const DeckCard& card = deck.cards[handle.card()];
        const bool free = !handle.polar.empty() || (!handle.x.empty() && !handle.y.empty());
        handles.push_back({{"id", handle.id},
                           {"kind", HANDLE_KINDS[static_cast<std::size_t>(handle.kind)]},
                           {"x", handle.place.x},
                           {"y", handle.place.y},
                           {"line", card.line - 1},
                           {"last", card.last_line - 1},
                           {"group", handle.group},
                           {"along", free ? Json() : Json(handle.x.empty() ? "y" : "x")},
                           {"title", columns.shown(handle.title)}});
    }
    return handles;
}

Json edits_json(std::span<const TextEdit> edits, const DeckColumns& columns) {
    Json json = Json::Array();
    for (const TextEdit& edit : edits)
        json.push_back({{"line", edit.line - 1},
                        {"from", columns.column(edit.line, edit.from)},
                        {"to", columns.column(edit.line, edit.to)},
                        {"text", edit.text}});
    return json;
}

// --- questions -----------------------------------------------------------------------------------

constexpr std::array FORMS{"outline", "line", "arc"};

// A number of a line or of a material; what is far too large stays so.
int whole_in(const Json& question, std::string_view name) {
    constexpr double most = 1e9;
    return static_cast<int>(std::clamp(number_in(question, name), -most, most));
}

int line_in(const Json& question) {
    return whole_in(question, "line") + 1;
}

GroupSketch drawn_in(const Json& question) {
    const std::string& form = text_in(question, "form");
    const auto found = std::find(FORMS.begin(), FORMS.end(), form);
    if (found == FORMS.end())
        throw Failure("the question's \"form\" is none of outline, line and arc");
    GroupSketch drawn;
    drawn.form = static_cast<DrawnForm>(found - FORMS.begin());
    for (const Json& point : value_in<Json::Array>(question, "points")) {
        const auto* const place = std::get_if<Json::Array>(&point.value());
        if (place == nullptr || place->size() != 2)
            throw Failure("the question's \"points\" are no pairs of numbers");
        drawn.points.push_back({number_of(&(*place)[0], "points"), number_of(&(*place)[1], "points")});
    }
    drawn.material = whole_in(question, "material");
    drawn.title = text_in(question, "title");
    return drawn;
}

}  // namespace

Json deck_json(const NotedDeck& deck, const Edition& edition) {
    const DeckCheck check = text_check_of(deck, edition);
    const DeckColumns columns(deck.text);
    Json cards = Json::Array();
    for (const DeckCard& card : deck.cards)
        cards.push_back(card_json(card, columns));
    return {{"mode", deck.mode},
            {"kind", name_of(edition.kind)},
            {"edition", edition.number},
            {"cards", std::move(cards)},
            {"meanings", meanings_json(deck)},
            {"findings", list_json(check, columns)},
            {"groups", groups_json(deck, columns)},
            {"shapes", shapes_json(deck, columns)},
            {"handles", handles_json(deck, columns)}};
}

Json findings_json(const NotedDeck& deck, const Edition& edition, const DeckPlace& place) {
    return {{"findings", list_json(check_of(deck, edition, place), DeckColumns(deck.text))}};
}

Json move_json(const NotedDeck& deck, const Json& question) {
    const DeckPoint to{number_in(question, "x"), number_in(question, "y")};
    const Moved moved = move_handle(deck, text_in(question, "handle"), to);
    return {{"edits", edits_json(moved.edits, DeckColumns(deck.text))},
            {"x", moved.place.x},
            {"y", moved.place.y}};
}

Json draw_json(const NotedDeck& deck, const Json& question) {
    const NewGroup made = draw_group(deck, line_in(question), drawn_in(question));
    return {{"edits", edits_json(made.edits, DeckColumns(deck.text))}, {"line", made.line - 1}};
}

}  // namespace brelan::tool
