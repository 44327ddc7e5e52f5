// Cards as the checker sees them: comments, columns, the count of values and the values.
#include "deck/card_stream.h"

#include <array>

#include "deck/deck_tables.h"
#include "deck/error_report.h"
#include "support/state.h"
#include "text/real_to_integer.h"

namespace brelan::test {
namespace {

using Lines = std::vector<std::string>;

std::string blanks(std::size_t count) {
    return std::string(count, ' ');
}

// A text that begins in a column.
std::string at_column(std::size_t column, std::string_view text) {
    return blanks(column - 1) + std::string(text);
}

class Cards : public ChannelTest {
protected:
    static constexpr int DECK = 5, LISTING = 7;

    void SetUp() override {
        directory.write("C/Vork/Qx/Qxdata/MANUAL.DAT", "0\n");
        state.card_memory.values.fill(9.0F);
    }

    // A deck without its comments, as the checker reads it.
    Channel& deck(std::string_view text) const {
        directory.write("deck.dat", text);
        state.channels.open(3, "deck.dat", OpenStatus::old);
        state.channels.open(DECK, "TT55.TMP", OpenStatus::work);
        state.channels.open(LISTING, "T7.TMP", OpenStatus::work);
        strip_deck(state.channels, 3, DECK);
        return state.channels.at(DECK);
    }

    // The next card of the deck, with the report of a wrong count.
    static void read_card(const std::string& label, std::int32_t minimum, std::int32_t maximum) {
        std::int32_t known = 0;
        try {
            read_values(state.channels.at(DECK), state.card_memory.values, "Card " + label, label, minimum,
                        maximum, known);
        } catch (const WrongCount& card) {
            report_card(state.channels, state.console, card);
        }
    }

    // The values that a card leaves in front of the 9 that stood there before.
    std::vector<float> values_of(std::string_view card, std::int32_t minimum, std::int32_t maximum) const {
        deck(std::string(card) + "\n");
        read_card("3.2", minimum, maximum);
        return {state.card_memory.values[1], state.card_memory.values[2], state.card_memory.values[3],
                state.card_memory.values[4]};
    }

    static std::int32_t count_of(std::string_view card) { return count_values(TextLine(card)).count; }
};

using Values = std::vector<float>;

// --- comments ----------------------------------------------------------------------------------------------

TEST_F(Cards, LinesWithAStarInColumnOneAreComments) {
    EXPECT_EQ(rest_of(deck("* head\n1 0\n*\n2 0\n*3 0")), (Lines{"1 0" + blanks(123), "2 0" + blanks(123)}));
}

TEST_F(Cards, StarInAnotherColumnIsNoComment) {
    EXPECT_EQ(rest_of(deck(" * text\n1 * 2\n")), (Lines{" * text" + blanks(119), "1 * 2" + blanks(121)}));
}

TEST_F(Cards, BlankLineIsACard) {
    EXPECT_EQ(rest_of(deck("\n1 0\r\n\r\n")), (Lines{blanks(126), "1 0" + blanks(123), blanks(126)}));
}

TEST_F(Cards, CopyIsCutAtColumn126AndFilledUpToIt) {
    EXPECT_EQ(rest_of(deck(std::string(130, 'x') + "\ny")),
              (Lines{std::string(126, 'x'), "y" + blanks(125)}));
}

TEST_F(Cards, CopyingClosesTheSourceAndRewindsTheCopy) {
    Channel& copy = deck("1\n2\n");
    EXPECT_FALSE(state.channels.is_open(3));
    EXPECT_EQ(copy.lines_before(), 0);
    EXPECT_EQ(directory.read("TT55.TMP"), "1" + blanks(125) + "\n2" + blanks(125) + "\n");
}

TEST_F(Cards, StarBehindABlankFailsWhenItIsReadAsAValue) {
    deck("* comment\n * text\n");
    EXPECT_EQ(failure_of([] { read_card("1.1", 1, 2); }),
              "deck.dat, line 2: expected a number in Card 1.1, found \"*\"");
}

// --- the count of values -----------------------------------------------------------------------------------

TEST_F(Cards, ValueThatEndsInColumn125Counts) {
    EXPECT_EQ(count_of("1 2" + at_column(117, "123456")), 3);  // columns 120 to 125
    EXPECT_EQ(values_of("1 2" + at_column(117, "123456"), 3, 3), (Values{1, 2, 123456, 9}));
}

TEST_F(Cards, ValueThatReachesColumn126DoesNotCount) {
    EXPECT_EQ(count_of("1 2" + at_column(118, "123456")), 2);  // columns 121 to 126
    EXPECT_EQ(values_of("1 2" + at_column(118, "123456"), 2, 2), (Values{1, 2, 9, 9}));
}

TEST_F(Cards, LineWithoutASeparatorIsReportedAsBlankData) {
    deck(std::string(126, '1') + "\n");
    EXPECT_EQ(stop_of([] { read_card("3.3.1.1", 4, 4); }), "300");
    state.channels.close_all();
    EXPECT_EQ(directory.read("T7.TMP"),
              " ************* ERROR IN THE USER INPUT **************\n"
              " Card Group No: 3.3.1.1     requires     4 data entry\n"
              " But user input contains     0 data \n"
              " Please check the following listing of input data   \n"
              "\n"
              " ------------\n"
              "  Blank data \n"
              " ------------\n");
}

TEST_F(Cards, CountOutsideTheLimitsStopsTheRun) {
    for (const char* card : {"1", "1 2 3 4 5", ""}) {
        deck(std::string(card) + "\n");
        EXPECT_EQ(stop_of([] { read_card("3.2", 2, 4); }), "300") << card;
        EXPECT_EQ(state.card_memory.values[1], 9.0F) << "values are read behind the check only";
        EXPECT_EQ(directory.read("C/Vork/Qx/Qxdata/BRELAN2D.DAT"), "           1\n");
    }
}

TEST_F(Cards, BothLimitsBelongToTheRange) {
    EXPECT_EQ(values_of("1 2", 2, 4), (Values{1, 2, 9, 9}));
    EXPECT_EQ(values_of("1 2 3 4", 2, 4), (Values{1, 2, 3, 4}));
}

// --- the values --------------------------------------------------------------------------------------------

TEST_F(Cards, EmptyValueBetweenCommasLeavesItsFieldAndTakesThePlaceOfTheNext) {
    EXPECT_EQ(count_of("1,2,,3"), 3);
    EXPECT_EQ(values_of("1,2,,3", 3, 3), (Values{1, 2, 9, 9}));
}

TEST_F(Cards, EmptyValueInFrontOfACommaLeavesItsField) {
    EXPECT_EQ(count_of(",1"), 1);
    EXPECT_EQ(values_of(",1", 1, 2), (Values{9, 9, 9, 9}));
}

TEST_F(Cards, FieldsThatAreNotGivenKeepWhatStood) {
    state.card_memory.values[2] = 0.5F;
    deck("7\n");
    read_card("1.1", 1, 2);
    EXPECT_EQ(state.card_memory.values[1], 7.0F);
    EXPECT_EQ(state.card_memory.values[2], 0.5F);
}

TEST_F(Cards, IntegerFieldMayBeWrittenAsAReal) {
    EXPECT_EQ(values_of("1E3 2.9 -0.5 3.0", 4, 4), (Values{1000, 2.9F, -0.5F, 3}));
    EXPECT_EQ(to_integer(state.card_memory.values[1]), 1000);
    EXPECT_EQ(to_integer(state.card_memory.values[2]), 2);
    EXPECT_EQ(to_integer(state.card_memory.values[3]), 0);
    EXPECT_EQ(to_integer(state.card_memory.values[4]), 3);
}

TEST_F(Cards, TabSeparatesTheValuesThatTheCountTookForOne) {
    EXPECT_EQ(values_of("1\t2 3", 2, 2), (Values{1, 2, 9, 9}));
}

TEST_F(Cards, CardOfATabHasAValueThatIsNotThere) {
    deck("\t\n5\n");
    EXPECT_EQ(failure_of([] { read_card("1.1", 1, 2); }),
              "deck.dat, line 1: the line ends here; expected Card 1.1");
}

TEST_F(Cards, SignBehindAnExponentSplitsAValueThatTheCountTookForOne) {
    EXPECT_EQ(count_of("0.1E+01-0.2E+01"), 1);
    EXPECT_EQ(values_of("0.1E+01-0.2E+01 3", 2, 2), (Values{1, -2, 9, 9}));
}

TEST_F(Cards, ValueThatIsCutAtColumn126IsNotCounted) {
    EXPECT_EQ(values_of("1 2" + at_column(121, "1234567890"), 2, 2), (Values{1, 2, 9, 9}));
}

TEST_F(Cards, NothingBehindColumn126IsSeen) {
    EXPECT_EQ(values_of("1 2" + at_column(124, " 3 4 5"), 2, 2), (Values{1, 2, 9, 9}));
}

TEST_F(Cards, ReadingLeavesTheDeckAtTheNextCard) {
    Channel& cards = deck("1 2\n* comment\n3 4\n");
    read_card("1.1", 1, 2);
    EXPECT_EQ(cards.read_line("a card").trimmed(), "3 4");
}

TEST_F(Cards, TextInAValueNamesTheLineOfTheUsersDeck) {
    deck("* head\n1 0\n* comment\n1 two\n");
    read_card("1.1", 1, 2);
    EXPECT_EQ(failure_of([] { read_card("3.2", 2, 4); }),
              "deck.dat, line 4: expected a number in Card 3.2, found \"two\"");
}

TEST_F(Cards, DeckThatEndsWhereACardIsExpectedIsAMessage) {
    deck("1 0\n");
    read_card("1.1", 1, 2);
    EXPECT_EQ(failure_of([] { read_card("3.2", 2, 4); }),
              "deck.dat, line 2: the file ends here; expected Card 3.2");
}

}  // namespace
}  // namespace brelan::test
