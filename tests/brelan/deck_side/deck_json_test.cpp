// What a page is told of a deck's text.
#include "commands/editing/deck_json.h"

#include <gtest/gtest.h>

#include <set>

#include "commands/editing/deck_columns.h"
#include "commands/starter_decks.h"
#include "deck_texts.h"

namespace brelan::tool {
namespace {

const Json& member(const Json& object, std::string_view name) {
    const Json* const found = object.find(name);
    if (found == nullptr)
        throw std::out_of_range(std::string(name));
    return *found;
}

template <class Value>
const Value& value_of(const Json& object, std::string_view name) {
    return std::get<Value>(member(object, name).value());
}

const Json::Array& array_of(const Json& object, std::string_view name) {
    return value_of<Json::Array>(object, name);
}

// The part of the text that a field or finding names; the texts here have one unit for each byte.
std::string part_of(const std::string& text, const Json& place, std::int64_t line) {
    std::size_t begin = 0;
    for (; line > 0; --line)
        begin = text.find('\n', begin) + 1;
    const auto from = value_of<std::int64_t>(place, "from"), to = value_of<std::int64_t>(place, "to");
    return from < 0
               ? ""
               : text.substr(begin + static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

const std::string MOVE =
    "* a comment\n  1  0\nRow.Mes\nNew.Mes\n  1     2\n 0\n  1.0  2.0,3.0  4.0\n  1.0   1.0\n";

TEST(DeckJson, fields_stand_where_their_columns_say) {
    const Json json = deck_json(noted_text(MOVE), {});
    std::vector<std::string> parts;
    for (const Json& card : array_of(json, "cards"))
        for (const Json& field : array_of(card, "fields"))
            if (value_of<bool>(field, "given"))
                parts.push_back(part_of(MOVE, field, value_of<std::int64_t>(card, "line")));
    EXPECT_EQ(parts,
              (std::vector<std::string>{"1", "0", "1", "2", "0", "1.0", "2.0", "3.0", "4.0", "1.0", "1.0"}));
}

TEST(DeckJson, a_finding_is_about_the_field_that_it_names) {
    std::string text = MOVE;
    text.replace(text.find(" 0\n  1.0"), 2, " 9");
    const Json json = deck_json(noted_text(text), {});
    const Json::Array& findings = array_of(json, "findings");
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(value_of<std::string>(findings[0], "id"), "unknown-code");
    EXPECT_EQ(value_of<std::int64_t>(findings[0], "line"), 5);
    EXPECT_EQ(part_of(text, findings[0], 5), "9");
}

TEST(DeckJson, a_card_that_is_refused_is_one_finding_without_the_name_of_the_file) {
    std::string text = MOVE;
    text.replace(text.find("4.0"), 3, "four");
    const Json json = deck_json(noted_text(text), {});
    const Json::Array& findings = array_of(json, "findings");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(value_of<std::string>(findings[0], "severity"), "error");
    EXPECT_EQ(part_of(text, findings[0], 6), "four");
    EXPECT_EQ(value_of<std::string>(findings[0], "message").find("pit.dat"), std::string::npos);
}

TEST(DeckJson, every_field_that_has_an_effect_has_a_meaning) {
    std::set<std::string> without;
    const auto look = [&](const NotedDeck& deck) {
        ASSERT_FALSE(deck.fault) << deck.fault->message;
        const Json json = deck_json(deck, {});
        for (const auto& [number, meaning] : value_of<Json::Object>(json, "meanings"))
            for (const Json& field : array_of(meaning, "fields"))
                if (value_of<std::string>(field, "meaning").empty())
                    without.insert(number + " " + value_of<std::string>(field, "name"));
    };
    for (const LayoutKind kind :
         {LayoutKind::coupled, LayoutKind::temperature, LayoutKind::head, LayoutKind::displacement}) {
        for (const StarterDeck& deck : starter_decks())
            look(noted_text(starter_text(deck, kind, "a.dat"), kind));
        look(noted_text("0 0\nA.Mes\nB.Mes\nC.Mes\n1\n1\n1\n2\n", kind));
        const std::string edit = "1 0\nA.Mes\nB.Mes\n1 1\n", window = "0\n0 0 1 1\n0\n";
        const bool two_codes = kind == LayoutKind::temperature || kind == LayoutKind::head;
        const char* const codes = two_codes                     ? "1 1\n"
                                  : kind == LayoutKind::coupled ? "1 1 1 1 1\n"
                                                                : "1 1 1\n";
        look(noted_text(std::string(edit).append("1\n").append(window).append(codes), kind));
        look(noted_text(std::string(edit).append("3\n").append(window).append("1 1 1\n"), kind));
        for (const char* material : {"1\n0 0", "2\n0 0", "3\n1 1 0 0", "4\n1 1 0 0 0", "-2\n1 1 0.0 0 0 0 0",
                                     "-3\n1 1 1 1 0.0 0 0 0 0", "-4\n1 1 1 1 0.0 0 0 0 0 0"}) {
            const std::string group(material);
            look(noted_text("1 0\nA.Mes\nB.Mes\n1 1\n4\n0\n0\n1\n0 0 9 9\n1 0\n0 0\n" +
                                group.substr(0, group.find('\n')) + " 1 0\n" +
                                group.substr(group.find('\n') + 1) +
                                "\n0 0\n0 0\n0 0\n0 0\n0 0\n0 0\n0\n0\n0\n0\n0\n0\n0\n2 0 0 0 0\n1 0 0\n2 1 "
                                "1\n1\n1 2 0 2\n"
                                "0 0 1 1 0 90\n",
                            kind));
        }
    }
    EXPECT_EQ(without, std::set<std::string>{});
}

TEST(DeckJson, columns_count_units_of_utf_16) {
    const std::string text = "plain\n\xC3\xA4\xE2\x82\xAC\xF0\x9D\x9B\xBCx\n";
    const DeckColumns columns(text);
    EXPECT_EQ(columns.column(1, 3), 3U);
    EXPECT_EQ(columns.column(2, 2), 1U);
    EXPECT_EQ(columns.column(2, 5), 2U);
    EXPECT_EQ(columns.column(2, 9), 4U);
    EXPECT_EQ(columns.column(2, 10), 5U);
    EXPECT_EQ(columns.column(3, 0), 0U);
}

TEST(DeckJson, a_deck_of_an_older_code_has_a_column_for_each_byte) {
    const std::string text = "\xE4\xC3\xA4 1\n";
    const DeckColumns columns(text);
    EXPECT_EQ(columns.column(1, 4), 4U);
    EXPECT_EQ(columns.shown("\xE4"), "\xC3\xA4");
}

TEST(DeckJson, questions_that_lack_something_are_refused) {
    const NotedDeck deck =
        noted_text(starter_text(*starter_deck("groups"), LayoutKind::displacement, "a.dat"));
    for (const char* question :
         {"{}", R"({"handle": "g1.p1", "x": 1})", R"({"handle": 3, "x": 1, "y": 2})",
          R"({"handle": "g9.p1", "x": 1, "y": 2})", R"({"handle": "g1.p1", "x": "1", "y": 2})"})
        EXPECT_THROW(move_json(deck, Json::parsed(question)), Failure) << question;
    for (const char* question :
         {"{}", R"({"line": 1, "form": "line", "points": [[0, 1], 2], "material": 1, "title": ""})",
          R"({"line": 1, "form": "star", "points": [[0, 1], [2, 3]], "material": 1, "title": ""})",
          R"({"line": 1, "form": "line", "points": [[0, 1], [2, null]], "material": 1, "title": ""})",
          R"({"line": 1, "form": "line", "points": [[0, 1], [2, 3]], "material": 1e40, "title": ""})"})
        EXPECT_THROW(draw_json(deck, Json::parsed(question)), Failure) << question;
    const Json moved = move_json(deck, Json::parsed(R"({"handle": "g1.p1", "x": 13, "y": 9.5})"));
    EXPECT_EQ(array_of(moved, "edits").size(), 1U);
}

}  // namespace
}  // namespace brelan::tool
