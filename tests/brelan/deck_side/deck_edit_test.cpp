// One value of a deck's text changes, and nothing else.
#include "model/deck_edit.h"

#include <gtest/gtest.h>

#include <array>

#include "cli/exit_status.h"
#include "deck_texts.h"

namespace brelan::tool {
namespace {

std::size_t place_of_card(const NotedDeck& deck, std::string_view number) {
    std::size_t place = 0;
    while (deck.cards.at(place).number != number)
        ++place;
    return place;
}

const std::string SELECTION =
    "* a comment\n  1  0\r\nRow.Mes\n  New.Mes\n 1, 1   1\n*\n 3\n 1\n 3\n 2 -3\n* between\n 7\n 1\n 7 0 4\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST(DeckEdit, words_behind_a_longer_value_keep_their_columns_while_there_is_room) {
    const NotedDeck deck = noted_text(SELECTION);
    const std::size_t card = place_of_card(deck, "3.2");
    EXPECT_EQ(with_value(deck, card, 1, "12"), replaced(SELECTION, " 1, 1   1\n", " 1, 12  1\n"));
    EXPECT_EQ(with_value(deck, card, 1, "1234567"), replaced(SELECTION, " 1, 1   1\n", " 1, 1234567 1\n"));
    EXPECT_EQ(with_value(deck, card, 2, "123"), replaced(SELECTION, " 1, 1   1\n", " 1, 1   123\n"));
}

TEST(DeckEdit, words_behind_a_shorter_value_keep_their_columns) {
    const NotedDeck deck = noted_text(SELECTION);
    const std::size_t card = place_of_card(deck, "3.3.4.4");
    ASSERT_EQ(deck.cards[card].fields[1].text, "0");
    const NotedDeck wide = noted_text(with_value(deck, card, 1, "1000"));
    EXPECT_EQ(with_value(wide, card, 1, "5"), replaced(SELECTION, " 7 0 4\n", " 7 5    4\n"));
}

TEST(DeckEdit, a_value_next_to_a_comma_leaves_the_comma) {
    const NotedDeck deck = noted_text(SELECTION);
    const std::size_t card = place_of_card(deck, "3.2");
    EXPECT_EQ(with_value(deck, card, 0, "10"), replaced(SELECTION, " 1, 1   1\n", " 10, 1   1\n"));
}

TEST(DeckEdit, a_value_that_was_not_given_follows_the_defaults_of_those_before_it) {
    const NotedDeck deck = noted_text(SELECTION);
    const std::size_t card = place_of_card(deck, "3.3");
    ASSERT_FALSE(deck.cards[card].fields[3].given);
    const std::string text = with_value(deck, card, 3, "7");
    EXPECT_EQ(text, replaced(SELECTION, " 3\n 1\n", " 3  0  0  7\n 1\n"));
    EXPECT_EQ(noted_text(text).cards[card].integer("MATX3"), 7);
}

TEST(DeckEdit, a_number_is_written_like_the_one_whose_place_it_takes) {
    EXPECT_EQ(text_like(2.5, "13.00"), "2.50");
    EXPECT_EQ(text_like(12.0, "11.234"), "12.0");
    EXPECT_EQ(text_like(12.0, "11"), "12");
    EXPECT_EQ(text_like(12.5, "11"), "12.5");
    EXPECT_EQ(text_like(12.0, "11."), "12.");
    EXPECT_EQ(text_like(1234.567, "0.0"), "1234.6");
    EXPECT_EQ(text_like(-0.00000001, "1E3"), "-1e-08");
    EXPECT_EQ(text_like(-0.0, "1.0"), "0.0");
    EXPECT_EQ(text_like(0.1 + 0.2, "1.0"), "0.3");
}

TEST(DeckEdit, line_ends_and_comments_stay) {
    const NotedDeck deck = noted_text(SELECTION);
    EXPECT_EQ(with_value(deck, 0, 1, "5"), replaced(SELECTION, "  1  0\r\n", "  1  5\r\n"));
}

TEST(DeckEdit, a_list_takes_as_many_lines_as_it_needs_and_keeps_the_comments_between) {
    const NotedDeck deck = noted_text(SELECTION);
    const std::size_t card = place_of_card(deck, "3.3.4.2.2") + 1;
    ASSERT_EQ(deck.cards[card].type, CardType::list);
    const std::array<float, 2> values{4.0F, -6.0F};
    EXPECT_EQ(with_list(deck, card, values),
              replaced(SELECTION, " 2 -3\n* between\n 7\n", "  4  -6\n* between\n"));
}

TEST(DeckEdit, names_take_the_place_of_a_whole_line) {
    const NotedDeck deck = noted_text(SELECTION);
    EXPECT_EQ(with_name(deck, 1, "Other.Mes"), replaced(SELECTION, "Row.Mes", "Other.Mes"));
    EXPECT_THROW(with_name(deck, 1, "two\nlines"), Failure);
    EXPECT_THROW(with_name(deck, 1, "* a comment"), Failure);
    EXPECT_THROW(with_name(deck, 0, "Other.Mes"), Failure);
}

TEST(DeckEdit, what_is_no_single_value_is_refused) {
    const NotedDeck deck = noted_text(SELECTION);
    for (const char* text : {"", "1 2", "1,2", "3*1", "1\n"})
        EXPECT_THROW(with_value(deck, 0, 0, text), Failure) << text;
    EXPECT_THROW(with_value(deck, 1, 0, "1"), std::exception);
}

TEST(DeckEdit, a_line_has_room_for_125_columns) {
    const std::string wide = "  1  0" + std::string(118, ' ') + "\n";
    const NotedDeck deck = noted_text(replaced(SELECTION, "  1  0\r\n", wide));
    EXPECT_NO_THROW(with_value(deck, 0, 1, std::string(120, '1')));
    EXPECT_THROW(with_value(deck, 0, 1, std::string(121, '1')), Failure);
}

TEST(DeckEdit, numbers_are_written_as_short_as_they_are_read_back) {
    EXPECT_EQ(shortest_text(0.1F, FieldForm::real), "0.1");
    EXPECT_EQ(shortest_text(20.0F, FieldForm::real), "20.0");
    EXPECT_EQ(shortest_text(-3.0F, FieldForm::integer), "-3");
    EXPECT_EQ(shortest_text(1e-7F, FieldForm::real), "1e-07");
    EXPECT_THROW(shortest_text(std::numeric_limits<float>::infinity(), FieldForm::real), Failure);
}

}  // namespace
}  // namespace brelan::tool
