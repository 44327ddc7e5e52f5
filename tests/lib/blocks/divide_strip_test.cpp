// The division of a block column or row: count and mid key point.

#include <cmath>
#include <limits>
#include <random>

#include "blocks/block_plan.h"
#include "support/state.h"

namespace brelan::test {
namespace {

struct Case {
    float W, DX, AX;
    std::int32_t count;
    float middle;
};

void expect_divisions(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        const BlockDivision division = divide_strip({c.W, c.DX, c.AX});
        EXPECT_EQ(division.count, c.count) << c.W << " " << c.DX << " " << c.AX;
        EXPECT_EQ(division.middle, c.middle) << c.W << " " << c.DX << " " << c.AX;
    }
}

TEST(DivideStrip, AHalfGivesEvenElements) {
    expect_divisions({{10, 1, 0.5F, 10, 5},
                      {10, 2, 0.5F, 5, 5},
                      {10, 3, 0.5F, 3, 5},  // 3.3
                      {10, 9.5F, 0.5F, 1, 5},
                      {0.5F, 0.125F, 0.5F, 4, 0.25F},
                      {1000, 1, 0.5F, 1000, 500}});
}

TEST(DivideStrip, LessThanAHalfGradesTowardsTheStart) {
    // 0.4: b = 3, 3 + sqrt(9 + 4) = 6.6.
    // 0.375: b = 2.5, 2.5 + sqrt(6.25 + 5) = 5.85.
    // 0.3: b = 1, 1 + sqrt(1 + 8) = 4.
    expect_divisions({{10, 1, 0.4F, 6, 4}, {10, 1, 0.375F, 5, 3.75F}, {10, 1, 0.3F, 4, 3}});
}

TEST(DivideStrip, TheSignTurnsTheFineEndRound) {
    expect_divisions(
        {{10, 1, -0.5F, 10, 5}, {10, 1, -0.4F, 6, 6}, {10, 1, -0.375F, 5, 6.25F}, {10, 1, -0.3F, 4, 7}});
}

TEST(DivideStrip, PositionsActAsTheNearestOfTheirRange) {
    expect_divisions({{10, 1, 0.1F, 4, 3},
                      {10, 1, 0.2999F, 4, 3},
                      {10, 1, -0.1F, 4, 7},
                      {10, 1, 0.6F, 10, 5},
                      {10, 1, 25.0F, 10, 5},
                      {10, 1, -25.0F, 10, 5},
                      {10, 1, 0.0F, 4, 3}});  // zero counts as positive
}

TEST(DivideStrip, AnElementThatIsNotSmallerThanTheBlockFillsIt) {
    expect_divisions({{10, 10, 0.5F, 1, 5},
                      {10, 10, 0.3F, 1, 5},
                      {10, 11, -0.3F, 1, 5},
                      {7, 1.0E30F, 0.4F, 1, 3.5F},
                      {0, 0, 0.4F, 1, 0},
                      {-4, 0, 0.3F, 1, -2}});
}

TEST(DivideStrip, LengthsThatMakeNoSenseGiveNoDivision) {
    const BlockStrip strips[] = {
        {10, 0, 0.5F}, {10, 0, 0.4F}, {10, -1, 0.5F}, {10, -1, 0.3F}, {10, 1.0E-30F, 0.5F}};
    for (const BlockStrip& strip : strips)
        EXPECT_LT(divide_strip(strip).count, 1) << strip.smallest << " " << strip.position;
    // Beyond 32 bits the count is the smallest integer.
    EXPECT_EQ(divide_strip({1.0E20F, 1, 0.5F}).count, std::numeric_limits<std::int32_t>::min());
}

TEST(DivideStrip, TheFirstElementIsAsLongAsAskedForAndOneMoreWouldBeShorter) {
    // The quadratic map of 0, a L and L at the share t of the way is L ((4a - 1) t + (2 - 4a) t t).
    std::mt19937 random(11);
    const auto between = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    for (int round = 0; round < 20000; ++round) {
        const float W = between(0.5F, 500.0F);
        const float DX = W / between(1.0F, 300.0F);
        const float AX = between(0.3F, 0.5F) * (random() % 2 == 0 ? 1.0F : -1.0F);
        const BlockDivision division = divide_strip({W, DX, AX});
        if (!(DX < W)) {
            EXPECT_EQ(division.count, 1);
            continue;
        }
        const double L = W, a = std::abs(AX);
        const auto first_element = [&](int n) {
            const double t = 1.0 / n;
            return L * ((4.0 * a - 1.0) * t + (2.0 - 4.0 * a) * t * t);
        };
        const double slack = 1.0E-5 * L / division.count;
        ASSERT_GE(division.count, 1);
        EXPECT_GE(first_element(division.count), static_cast<double>(DX) - slack)
            << W << " " << DX << " " << AX;
        EXPECT_LE(first_element(division.count + 1), static_cast<double>(DX) + slack)
            << W << " " << DX << " " << AX;
        EXPECT_NEAR(static_cast<double>(division.middle), AX < 0.0F ? L - a * L : a * L, 1.0E-6 * L);
    }
}

TEST(PlannedBlocks, ARowWithoutADivisionIsNamed) {
    BlockCards cards;
    cards.block_columns = 1;
    cards.block_rows = 2;
    cards.columns[1] = {10, 1, 0.5F};
    cards.rows[1] = {10, 1, 0.5F};
    cards.rows[2] = {10, -1, 0.5F};  // -10 divisions
    EXPECT_EQ(failure_of([&] { plan_blocks(cards); }),
              "Card 4.4, row 2: expected values that give at least one division");
    cards.rows[2] = {10, 5, 0.5F};
    EXPECT_EQ(plan_blocks(cards).blocks.at(1).row_divisions, 2);
}

}  // namespace
}  // namespace brelan::test
