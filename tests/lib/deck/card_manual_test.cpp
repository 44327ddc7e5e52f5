// The card tables of the manual say of each card what the program goes by: number, counts, fields, defaults.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "deck/card_table.h"
#include "deck/group_card_table.h"

namespace brelan::test {
namespace {

// The cards with a row of their own in the manual whose fields are the same in all kinds.
const std::vector<const Card*> CARDS{
    &CARD_1_1,     &CARD_2_2,       &CARD_2_3,   &CARD_3_2,      &CARD_3_3,   &CARD_3_3_1_1,
    &CARD_3_3_1_2, &CARD_3_3_4_4,   &CARD_3_6_1, &CARD_3_6_2,    &CARD_3_6_3, &CARD_3_3_6_1,
    &CARD_3_3_6_2, &CARD_3_3_6_3,   &CARD_4_1,   &CARD_4_3,      &CARD_4_4,   &CARD_4_5,
    &CARD_5_1,     &CARD_5_4_1,     &CARD_NODES, &CARD_ELEMENTS, &CARD_BOUND, &CARD_BOUNDS,
    &CARD_GROUPS,  &CARD_REFERENCE, &CARD_GROUP, &CARD_POINTS,   &CARD_POINT, &CARD_SEGMENTS,
    &CARD_SEGMENT, &CARD_ARC};

// Those of which the manual names not all fields, or other ones by kind.
const std::vector<const Card*> COUNTED_CARDS{&CARD_3_6_1_1,   &CARD_3_6_2_1,    &CARD_4_2,
                                             &CARD_5_2,       &CARD_5_3,        &CARD_5_5,
                                             &CARD_POST_PAIR, &CARD_POST_SWITCH};

// The rows "| card | values | fields |" of the chapters about decks.
std::vector<std::string> rows_of_the_manual() {
    std::vector<std::string> rows;
    for (const char* chapter : {"3-deck-language.md", "7-groups.md", "10-earth-dam.md"}) {
        std::ifstream page(std::string(BRELAN_SOURCE_DIR "/docs/manual/") + chapter);
        for (std::string line; std::getline(page, line);)
            if (line.starts_with("| "))
                rows.push_back(line);
    }
    return rows;
}

std::string counts_of(const Card& card) {
    const std::int32_t least = card.minimum_of(LayoutKind::coupled);
    const std::int32_t most = card.maximum_of(LayoutKind::coupled);
    return least == most ? std::to_string(least) : std::to_string(least) + " to " + std::to_string(most);
}

bool has_counts(const std::string& row, const Card& card) {
    return row.starts_with("| " + std::string(card.number) + " | " + counts_of(card) + " | ");
}

std::string shown_name(const CardField& field) {
    std::ostringstream text;
    text << '`' << field.name << '`';
    if (field.otherwise)
        text << " (" << *field.otherwise << ')';
    return text.str();
}

bool has_fields(const std::string& row, const Card& card) {
    std::size_t at = 0;
    for (const CardField& field : card.fields_of(LayoutKind::coupled)) {
        // JK has a default of its own: it may stem from a dam.
        at = row.find(field.name == "JK" ? "`JK` (0)" : shown_name(field), at);
        if (at == std::string::npos)
            return false;
    }
    return true;
}

TEST(CardsOfTheManual, HaveTheNumberAndTheCountsOfTheTable) {
    const std::vector<std::string> rows = rows_of_the_manual();
    ASSERT_FALSE(rows.empty());
    for (const std::vector<const Card*>& cards : {CARDS, COUNTED_CARDS})
        for (const Card* card : cards)
            EXPECT_TRUE(std::any_of(rows.begin(), rows.end(),
                                    [&](const std::string& row) { return has_counts(row, *card); }))
                << card->number << ", " << counts_of(*card);
}

TEST(CardsOfTheManual, HaveTheFieldsAndTheDefaultsOfTheTable) {
    const std::vector<std::string> rows = rows_of_the_manual();
    for (const Card* card : CARDS)
        EXPECT_TRUE(std::any_of(
            rows.begin(), rows.end(),
            [&](const std::string& row) { return has_counts(row, *card) && has_fields(row, *card); }))
            << card->number << ": " << card->names(LayoutKind::coupled);
}

}  // namespace
}  // namespace brelan::test
