// What follows from a dam's cards: slope codes, element sizes, the columns of Card 3.2.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "channel/channels.h"
#include "dam/dam_deck.h"
#include "dam/dam_sizes.h"
#include "dam/dam_tables.h"
#include "run/channel_numbers.h"
#include "unit/support.h"

namespace brelan::test {
namespace {

// --- slope codes ---------------------------------------------------------------------------------

// Height 1: the run is the cotangent of the slope.
std::int32_t code_of(float ratio) {
    return SLOPECODES(ratio, 1.0F, 1.0F).left;
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
            const SlopeCodes codes = SLOPECODES(1.0F, runs[left - 1], runs[right - 1]);
            EXPECT_EQ(codes.left, left);
            const int expected = (left <= 2) == (right <= 2) ? right : left <= 2 ? 2 : 3;
            EXPECT_EQ(codes.right, expected) << left << " and " << right;
        }
}

// --- element sizes -------------------------------------------------------------------------------

class DamSizesTest : public ::testing::Test {
protected:
    DamSizesTest() {
        DAM = DamCards{};
        DAM.HDAM = 20.0F, DAM.HWATER = 15.0F;
        DAM.RUNL = 20.0F, DAM.WLEFT = 21.0F, DAM.crest = 8.0F, DAM.WMID = 9.0F, DAM.RUNR = 30.0F,
        DAM.WRIGHT = 33.0F;
    }
    static void expect_size(float size, double expected) {
        EXPECT_NEAR(static_cast<double>(size), expected, 1.0E-6 * std::abs(expected));
    }
};

TEST_F(DamSizesTest, WithoutShellsAreATwentiethOfTheHeight) {
    SIZEDAM();
    for (const float size : {DAMSIZES.DL, DAMSIZES.DM, DAMSIZES.DR, DAMSIZES.DV})
        EXPECT_EQ(size, 1.0F);
    EXPECT_EQ(DAMSIZES.rHw, 0.75F);
    EXPECT_EQ(DAMSIZES.crest_left, 20.0F);
    EXPECT_EQ(DAMSIZES.crest_right, 28.0F);
    EXPECT_EQ(DAMSIZES.toe, 63.0F);
}

TEST_F(DamSizesTest, WithShellsAreThoseOfTheTemplates) {
    DAM.shells = true;
    SIZEDAM();
    EXPECT_EQ(DAMSIZES.left_model, 1);
    EXPECT_EQ(DAMSIZES.right_model, 2);
    expect_size(DAMSIZES.DL, 21.0 / 28.0 * 0.9999);
    expect_size(DAMSIZES.DR, 33.0 / 33.0 * 0.9999);
    expect_size(DAMSIZES.DV, 20.0 / 28.0 * 0.9999);
    EXPECT_EQ(DAMSIZES.DM, DAMSIZES.DL);
    EXPECT_EQ(DAMSIZES.crest_left, 21.0F);
    EXPECT_EQ(DAMSIZES.crest_right, 30.0F);
}

TEST_F(DamSizesTest, OfTheMiddleFollowTheDivisionsOfTheCrest) {
    DAM.NCREST = 4;
    for (const bool shells : {false, true}) {
        DAM.shells = shells;
        SIZEDAM();
        expect_size(DAMSIZES.DM, 9.0 / 4.0 * 0.9999);
    }
    DAM.NCREST = -4;
    SIZEDAM();
    EXPECT_EQ(DAMSIZES.DM, DAMSIZES.DL);
}

TEST_F(DamSizesTest, FieldReachesRoundTheGround) {
    SIZEDAM();
    EXPECT_EQ(DAMSIZES.left, 0.0F);
    EXPECT_EQ(DAMSIZES.right, 63.0F);
    EXPECT_EQ(DAMSIZES.bottom, 0.0F);
    DAM.NLAYER = 2;
    DAM.layers = {5.0F, 7.0F};
    DAM.XLEFT = 11.0F, DAM.XRIGHT = 13.0F;
    SIZEDAM();
    EXPECT_EQ(DAMSIZES.left, -11.0F);
    EXPECT_EQ(DAMSIZES.right, 76.0F);
    EXPECT_EQ(DAMSIZES.bottom, -12.0F);
}

// --- Card 3.2 ------------------------------------------------------------------------------------

class DamStartNumbers : public ChannelTest {};

TEST_F(DamStartNumbers, TakeTheColumnsThatTheyNeed) {
    struct Row {
        std::int32_t NSNEL;
        const char* line;
    };
    constexpr Row rows[] = {{1, "   1      1"},     {825, " 825      1"},   {9999, "9999      1"},
                            {10000, "10000     1"}, {99999, "99999     1"}, {100000, "100000    1"},
                            {999999, "999999    1"}};
    for (const Row& row : rows) {
        write_start_numbers(open_channel(CH_DATA, "deck.dat", OpenStatus::work), row.NSNEL, 1);
        Channel& deck = channel(CH_DATA);
        deck.rewind();
        EXPECT_EQ(rest_of(deck), (std::vector<std::string>{"* Card 3.2", "* NSNEL  NSNODE", row.line}));
    }
}

}  // namespace
}  // namespace brelan::test
