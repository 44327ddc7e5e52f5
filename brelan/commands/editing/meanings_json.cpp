#include "commands/editing/meanings_json.h"

#include <fmt/core.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cli/words.h"
#include "commands/checking/code_meanings.h"
#include "commands/checking/field_meanings.h"

namespace brelan::tool {

namespace {

std::string count_text(const Card& row, LayoutKind kind) {
    const std::int32_t least = row.minimum_of(kind), most = row.maximum_of(kind);
    const std::string values = counted(static_cast<std::size_t>(most), "value", "values");
    return least == most ? values : fmt::format("{} to {}", least, values);
}

std::string note_of(const DeckCard& card, LayoutKind kind) {
    switch (card.type) {
        case CardType::values:
            return card.row == nullptr ? "" : count_text(*card.row, kind);
        case CardType::list:
            return "a list; it may run over several lines";
        case CardType::name:
            return "the name of a file; a bare one is a file of the project";
        case CardType::title:
            return "at most 80 columns, and no * in the first one";
    }
    return "";
}

Json values_json(std::string_view card, std::string_view field) {
    Json values = Json::Array();
    for (const CodeValue& code : code_values(card, field))
        values.push_back({{"value", code.value}, {"meaning", code.text}});
    return values;
}

Json field_json(const DeckCard& card, const CardField& field, bool is_count) {
    return {{"name", field.name},
            {"meaning", field_meaning(card.number, field.name)},
            {"default", field.otherwise ? Json(static_cast<double>(*field.otherwise)) : Json()},
            {"least", is_count ? Json(0) : Json()},
            {"most", is_count ? Json(card.row->most) : Json()},
            {"values", values_json(card.number, field.name)}};
}

// What is known of one number.
struct Meaning {
    std::string_view number;
    const DeckCard* first;
    std::vector<const Card*> rows;
};

Json meaning_json(const Meaning& meaning, LayoutKind kind) {
    std::vector<std::string_view> names;
    Json::Array fields;
    for (const Card* const row : meaning.rows) {
        bool first = true;
        for (const CardField& field : row->fields_of(kind)) {
            const bool is_count = first && row->most > 0;
            first = false;
            if (field.name == "-" || std::find(names.begin(), names.end(), field.name) != names.end())
                continue;
            names.push_back(field.name);
            fields.push_back(field_json(*meaning.first, field, is_count));
        }
    }
    return {{"heading", meaning.first->heading},
            {"note", meaning.rows.size() > 1 ? "" : note_of(*meaning.first, kind)},
            {"fields", std::move(fields)}};
}

}  // namespace

Json meanings_json(const NotedDeck& deck) {
    std::vector<Meaning> meanings;
    for (const DeckCard& card : deck.cards) {
        const bool has_fields = card.type == CardType::values;
        auto known = std::find_if(meanings.begin(), meanings.end(),
                                  [&](const Meaning& meaning) { return meaning.number == card.number; });
        if (known == meanings.end())
            known = meanings.insert(meanings.end(), {card.number, &card, {}});
        if (has_fields && card.row != nullptr &&
            std::find(known->rows.begin(), known->rows.end(), card.row) == known->rows.end())
            known->rows.push_back(card.row);
    }
    Json json = Json::Object();
    for (const Meaning& meaning : meanings)
        json[meaning.number] = meaning_json(meaning, deck.kind);
    return json;
}

}  // namespace brelan::tool
