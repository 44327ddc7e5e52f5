// The card table against the laws that every card keeps, and against the counts of each card.
#include "deck/card_table.h"

#include <string>

#include "deck/deck_tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr LayoutKind KINDS_OF_CARDS[] = {LayoutKind::coupled, LayoutKind::temperature, LayoutKind::head,
                                         LayoutKind::displacement};

// A card as the manual has it: counts and written form in the order of the kinds, defaults behind the fields
// that must be given.
struct Row {
    const Card& card;
    std::string_view label;
    std::int32_t minimum;
    ByKind<std::int32_t> maximum;
    ByKind<std::string_view> form;
    ByKind<std::vector<float>> defaults = {};
};

template <class T>
ByKind<T> all(const T& value) {
    return {value, value, value, value};
}
ByKind<std::string_view> form(std::string_view text) {
    return all(text);
}
ByKind<std::vector<float>> defaults(const std::vector<float>& values) {
    return all(values);
}

const std::vector<Row>& rows() {
    static const std::vector<Row> table = {
        {CARD_1_1, "1.1", 1, all(2), form("II")},
        {CARD_2_2, "1.1", 1, all(1), form("I")},
        {CARD_2_3, "2.3", 1, all(1), form("I")},
        {CARD_3_2, "3.2", 2, all(4), form("IIII"), defaults({0, 0})},
        {CARD_3_3, "3.3", 1, all(6), form("IIIIII"), defaults({0, 0, 0, 0, 0})},
        {CARD_3_3_1_1, "3.3.1.1", 4, all(4), form("EEEE")},
        {CARD_3_3_1_2, "3.3.1.2", 2, all(2), form("EE")},
        {CARDS_3_3_2.location, "3.3.2.1", 1, all(1), form("I")},
        {CARDS_3_3_2.window, "3.3.2.2.1", 4, all(4), form("EEEE")},
        {CARDS_3_3_2.list, "3.3.2.2.2", 1, all(1), form("I")},
        {CARDS_3_3_2.side, "3.3.2.3", 1, all(1), form("I")},
        {CARD_3_3_2_4, "3.3.2.4", 0, {5, 2, 2, 3}, {"IIIII", "II", "II", "III"}},
        {CARDS_3_3_3.location, "3.3.3.1", 1, all(1), form("I")},
        {CARDS_3_3_3.window, "3.3.3.2.1", 4, all(4), form("EEEE")},
        {CARDS_3_3_3.list, "3.3.3.2.2", 1, all(1), form("I")},
        {CARDS_3_3_3.side, "3.3.3.3", 1, all(1), form("I")},
        {CARDS_3_3_4.location, "3.3.4.1", 1, all(1), form("I")},
        {CARDS_3_3_4.window, "3.3.4.2.1", 4, all(4), form("EEEE")},
        {CARDS_3_3_4.list, "3.3.4.2.2", 1, all(1), form("I")},
        {CARDS_3_3_4.side, "3.3.4.3", 1, all(1), form("I")},
        {CARD_3_3_4_4, "3.3.4.4", 3, all(3), form("III")},
        {CARD_3_3_6_1, "3.3.6.1", 1, all(1), form("I")},
        {CARD_3_3_6_2, "3.3.6.2", 2, all(3), form("IEE"), defaults({0})},
        {CARD_3_3_6_3, "3.3.6.3", 6, all(6), form("EEEEEE")},
        {CARD_3_6_1, "3.6.1", 1, all(1), form("I")},
        {CARD_3_6_1_1,
         "3.6.1-1",
         5,
         all(8),
         {"IIIIIIII", "IIIIIII", "IIIIIII", "IIIIIIEE"},
         defaults({-10, -10, -10})},
        {CARD_3_6_2, "3.6.2", 1, all(1), form("I")},
        {CARD_3_6_2_1, "3.6.2-1", 3, all(5), form("IIIII"), defaults({-10, -10})},
        {CARD_3_6_3, "3.6.3", 1, all(1), form("I")},
        {CARD_3_6_3_1, "3.6.3-1", 3, all(5), form("IIIII"), defaults({-10, -10})},
        {CARD_4_1, "4.1", 2, all(6), form("IIIIII"), defaults({1, 1, 0, 1})},
        {CARD_4_2, "4.2", 2, {3, 3, 3, 2}, {"EEE", "EEE", "EEE", "EE"}, {{{-1.0E+30F}, {0}, {0}, {}}}},
        {CARD_4_3, "4.3", 3, all(3), form("EEE")},
        {CARD_4_4, "4.4", 3, all(3), form("EEE")},
        {CARD_4_5, "4.5", 1, all(1), form("I")},
        {CARD_5_1, "5.1", 4, all(6), form("IIIIIE"), defaults({0, 0})},
        {CARD_5_2, "5.2", 8, all(8), form("EEEEEEEE")},
        {CARD_5_3, "5.3", 8, all(8), form("EEEEEEEE")},
        {CARD_5_4_1, "5.4-1", 2, all(2), form("EE")},
        {CARD_5_5, "5.5", 8, all(8), form("EEEEEEEE")},
    };
    return table;
}

// The fields as the normalised deck shows them.
std::string letters_of(const Card& card, LayoutKind kind) {
    std::string letters;
    for (std::int32_t i = 1; i <= card.fields_of(kind).shown(); ++i)
        letters += static_cast<char>(card.fields_of(kind)[i].form);
    return letters;
}

TEST(CardTable, HoldsTheCountsAndFormOfEachCard) {
    for (const Row& row : rows()) {
        EXPECT_EQ(row.card.label, row.label);
        EXPECT_EQ(row.card.minimum, row.minimum) << row.label;
        for (const LayoutKind kind : KINDS_OF_CARDS) {
            const auto at = static_cast<std::size_t>(kind);
            EXPECT_EQ(row.card.maximum_of(kind), row.maximum[at]) << row.label;
            EXPECT_EQ(letters_of(row.card, kind), row.form[at]) << row.label;
        }
    }
}

TEST(CardTable, HoldsTheDefaultOfEachFieldThatMayBeLeftOut) {
    for (const Row& row : rows()) {
        for (const LayoutKind kind : KINDS_OF_CARDS) {
            std::vector<float> defaults;
            for (const CardField& field : row.card.fields_of(kind))
                if (field.otherwise)
                    defaults.push_back(*field.otherwise);
            EXPECT_EQ(defaults, row.defaults[static_cast<std::size_t>(kind)]) << row.label;
        }
    }
}

TEST(CardTable, LabelsFitTheirColumnsInTheReport) {
    for (const Row& row : rows()) {
        EXPECT_FALSE(row.card.label.empty());
        EXPECT_LE(row.card.label.size(), 11U) << row.label;
    }
}

TEST(CardTable, MinimumIsNotAboveTheMaximum) {
    for (const Row& row : rows()) {
        for (const LayoutKind kind : KINDS_OF_CARDS) {
            EXPECT_GE(row.card.minimum_of(kind), 1) << row.label;
            EXPECT_LE(row.card.minimum_of(kind), row.card.maximum_of(kind)) << row.label;
            EXPECT_LE(row.card.maximum_of(kind), MOST_CARD_VALUES) << row.label;
        }
    }
}

TEST(CardTable, ShowsTheFirstFieldsAndDropsTheLast) {
    for (const Row& row : rows())
        for (const LayoutKind kind : KINDS_OF_CARDS) {
            const CardFields& fields = row.card.fields_of(kind);
            for (std::int32_t i = fields.shown() + 1; i <= fields.count(); ++i)
                EXPECT_EQ(fields[i].form, FieldForm::dropped) << row.label;
        }
}

TEST(CardTable, DefaultsStandForFieldsThatMayBeLeftOut) {
    for (const Row& row : rows())
        for (const LayoutKind kind : KINDS_OF_CARDS) {
            const CardFields& fields = row.card.fields_of(kind);
            for (std::int32_t i = 1; i <= row.card.minimum_of(kind); ++i)
                EXPECT_FALSE(fields[i].otherwise) << row.label << ", field " << i;
        }
}

TEST(CardFields, AreReadFromTheirNotation) {
    constexpr CardFields fields("I: NBX IB_LEFT=1 E: Xo=-1E30 -: GCOLOR=-10");
    static_assert(fields.count() == 4 && fields.shown() == 3);
    EXPECT_EQ(fields[1].name, "NBX");
    EXPECT_FALSE(fields[1].otherwise);
    EXPECT_EQ(fields[2].otherwise, 1.0F);
    EXPECT_EQ(fields[3].form, FieldForm::real);
    EXPECT_EQ(fields[3].otherwise, -1.0E+30F);
    EXPECT_EQ(fields[4].form, FieldForm::dropped);
    EXPECT_EQ(fields[4].otherwise, -10.0F);
}

}  // namespace
}  // namespace brelan::test
