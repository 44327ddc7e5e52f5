// What follows from a dam's cards: slope codes, element sizes, the columns of Card 3.2.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "dam/dam_deck.h"
#include "dam/dam_sizes.h"
#include "dam/dam_tables.h"
#include "support/state.h"
#include "text/channel_numbers.h"
#include "text/channels.h"

namespace brelan::test {
namespace {

// --- slope codes ---------------------------------------------------------------------------------

// Height 1: the run is the cotangent of the slope.
std::int32_t code_of(float ratio) {
    return slope_codes(ratio, 1.0F, 1.0F).left;
}

TEST(SlopeCodes, ChangeAtTheirLimits) {
    struct Row {
        float limit;
        std::int32_t from, below;
    };
    constexpr Row rows[] = {{0.8333F, 1, 2}, {0.5833F, 2, 3}, {0.45F, 3, 4}, {0.3667F, 4, 5}};
    for (const Row& row : rows) {
        EXPECT_EQ(code_of(row.limit), row.from);
        EXPECT_EQ(code_of(std::nextafter(row.limit, 1.0F)), row.from);
        EXPECT_EQ(code_of(std::nextafter(row.limit, 0.0F)), row.below);
    }
    EXPECT_EQ(code_of(5.0F), 1);
    EXPECT_EQ(code_of(0.01F), 5);
}

TEST(SlopeCodes, OfBothSidesAreOnOneSideOfTheLimitBetweenSteepAndFlat) {
    constexpr float runs[] = {1.0F, 1.5F, 2.0F, 2.5F, 3.0F};
    for (int left = 1; left <= 5; ++left)
        for (int right = 1; right <= 5; ++right) {
            const SlopeCodes codes = slope_codes(1.0F, runs[left - 1], runs[right - 1]);
            EXPECT_EQ(codes.left, left);
            const int expected = (left <= 2) == (right <= 2) ? right : left <= 2 ? 2 : 3;
            EXPECT_EQ(codes.right, expected) << left << " and " << right;
        }
}

// --- element sizes -------------------------------------------------------------------------------

class DamSizesTest : public ::testing::Test {
protected:
    DamSizesTest() {
        state.deck.dam = DamCards{};
        state.deck.dam.height = 20.0F, state.deck.dam.water_height = 15.0F;
        state.deck.dam.left_run = 20.0F, state.deck.dam.left_width = 21.0F, state.deck.dam.crest = 8.0F,
        state.deck.dam.middle_width = 9.0F, state.deck.dam.right_run = 30.0F,
        state.deck.dam.right_width = 33.0F;
    }
    static void expect_size(float size, double expected) {
        EXPECT_NEAR(static_cast<double>(size), expected, 1.0E-6 * std::abs(expected));
    }
};

TEST_F(DamSizesTest, WithoutShellsAreATwentiethOfTheHeight) {
    state.sizes = size_dam(state.deck.dam);
    for (const float size :
         {state.sizes.left_size, state.sizes.middle_size, state.sizes.right_size, state.sizes.vertical_size})
        EXPECT_EQ(size, 1.0F);
    EXPECT_EQ(state.sizes.water_share, 0.75F);
    EXPECT_EQ(state.sizes.crest_left, 20.0F);
    EXPECT_EQ(state.sizes.crest_right, 28.0F);
    EXPECT_EQ(state.sizes.toe, 63.0F);
}

TEST_F(DamSizesTest, WithShellsAreThoseOfTheTemplates) {
    state.deck.dam.shells = true;
    state.sizes = size_dam(state.deck.dam);
    EXPECT_EQ(state.sizes.left_model, 1);
    EXPECT_EQ(state.sizes.right_model, 2);
    expect_size(state.sizes.left_size, 21.0 / 28.0 * 0.9999);
    expect_size(state.sizes.right_size, 33.0 / 33.0 * 0.9999);
    expect_size(state.sizes.vertical_size, 20.0 / 28.0 * 0.9999);
    EXPECT_EQ(state.sizes.middle_size, state.sizes.left_size);
    EXPECT_EQ(state.sizes.crest_left, 21.0F);
    EXPECT_EQ(state.sizes.crest_right, 30.0F);
}

TEST_F(DamSizesTest, OfTheMiddleFollowTheDivisionsOfTheCrest) {
    state.deck.dam.crest_divisions = 4;
    for (const bool shells : {false, true}) {
        state.deck.dam.shells = shells;
        state.sizes = size_dam(state.deck.dam);
        expect_size(state.sizes.middle_size, 9.0 / 4.0 * 0.9999);
    }
    state.deck.dam.crest_divisions = -4;
    state.sizes = size_dam(state.deck.dam);
    EXPECT_EQ(state.sizes.middle_size, state.sizes.left_size);
}

TEST_F(DamSizesTest, FieldReachesRoundTheGround) {
    state.sizes = size_dam(state.deck.dam);
    EXPECT_EQ(state.sizes.left, 0.0F);
    EXPECT_EQ(state.sizes.right, 63.0F);
    EXPECT_EQ(state.sizes.bottom, 0.0F);
    state.deck.dam.layer_count = 2;
    state.deck.dam.layers = {5.0F, 7.0F};
    state.deck.dam.left_margin = 11.0F, state.deck.dam.right_margin = 13.0F;
    state.sizes = size_dam(state.deck.dam);
    EXPECT_EQ(state.sizes.left, -11.0F);
    EXPECT_EQ(state.sizes.right, 76.0F);
    EXPECT_EQ(state.sizes.bottom, -12.0F);
}

// --- Card 3.2 ------------------------------------------------------------------------------------

class DamStartNumbers : public ChannelTest {};

TEST_F(DamStartNumbers, TakeTheColumnsThatTheyNeed) {
    struct Row {
        std::int32_t first_element;
        const char* line;
    };
    constexpr Row rows[] = {{1, "   1      1"},     {825, " 825      1"},   {9999, "9999      1"},
                            {10000, "10000     1"}, {99999, "99999     1"}, {100000, "100000    1"},
                            {999999, "999999    1"}};
    for (const Row& row : rows) {
        Channel& deck = state.channels.open(CHANNEL_DATA, "deck.dat", OpenStatus::work);
        MadeCards cards;
        DeckWriter writer(deck, cards);
        write_start_numbers(writer, row.first_element, 1);
        EXPECT_EQ(cards.values,
                  (std::vector<std::vector<float>>{{static_cast<float>(row.first_element), 1}}));
        deck.rewind();
        EXPECT_EQ(rest_of(deck), (std::vector<std::string>{"* Card 3.2", "* NSNEL  NSNODE", row.line}));
    }
}

}  // namespace
}  // namespace brelan::test
