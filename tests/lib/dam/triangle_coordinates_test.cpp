// triangle_coordinates: the shares of a triangle's corners that make a point.

#include <gtest/gtest.h>

#include <cmath>

#include "dam/phreatic_line.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// Corners in the order crest, toe, foot, as the templates have them.
constexpr Triangle TEMPLATE{26.0F, 13.0F, 0.0F, 0.0F, 26.0F, 0.0F};

void expect_shares(const TriangleCoordinates& c, double r, double s, double t) {
    EXPECT_NEAR(static_cast<double>(c.r), r, 1.0E-5);
    EXPECT_NEAR(static_cast<double>(c.s), s, 1.0E-5);
    EXPECT_NEAR(static_cast<double>(c.t), t, 1.0E-5);
}

TEST(TriangleCoordinates, OfACornerAreOneForThatCorner) {
    expect_shares(triangle_coordinates(state.trace, 26.0F, 13.0F, TEMPLATE), 1.0, 0.0, 0.0);
    expect_shares(triangle_coordinates(state.trace, 0.0F, 0.0F, TEMPLATE), 0.0, 1.0, 0.0);
    expect_shares(triangle_coordinates(state.trace, 26.0F, 0.0F, TEMPLATE), 0.0, 0.0, 1.0);
    EXPECT_TRUE(triangle_coordinates(state.trace, 26.0F, 13.0F, TEMPLATE).in);
    EXPECT_TRUE(triangle_coordinates(state.trace, 0.0F, 0.0F, TEMPLATE).in);
    EXPECT_TRUE(triangle_coordinates(state.trace, 26.0F, 0.0F, TEMPLATE).in);
}

// One triangle for each coefficient that is 0, and one where none is. The point is made of the shares 0.5,
// 0.25 and 0.25.
TEST(TriangleCoordinates, AreFoundWhicheverCoefficientIsZero) {
    struct Row {
        int zero_coefficient;
        Triangle triangle;
    };
    constexpr Row rows[] = {
        {1, {4.0F, 8.0F, 0.0F, 2.0F, 4.0F, 0.0F}},  // x1 = x3
        {2, {0.0F, 8.0F, 4.0F, 2.0F, 4.0F, 0.0F}},  // x2 = x3
        {3, {0.0F, 4.0F, 8.0F, 2.0F, 2.0F, 4.0F}},  // y1 = y3
        {4, {0.0F, 8.0F, 8.0F, 4.0F, 2.0F, 4.0F}},  // y2 = y3
        {0, {0.0F, 8.0F, 8.0F, 4.0F, 2.0F, 0.0F}},
    };
    for (const Row& row : rows) {
        const Triangle& t = row.triangle;
        const float x = 0.5F * t.x1 + 0.25F * t.x2 + 0.25F * t.x3;
        const float y = 0.5F * t.y1 + 0.25F * t.y2 + 0.25F * t.y3;
        const TriangleCoordinates c = triangle_coordinates(state.trace, x, y, t);
        EXPECT_EQ(c.zero_coefficient, row.zero_coefficient);
        expect_shares(c, 0.5, 0.25, 0.25);
        EXPECT_TRUE(c.in);
    }
}

TEST(TriangleCoordinates, TakeTheFirstCoefficientThatIsZero) {
    EXPECT_EQ(
        triangle_coordinates(state.trace, 1.0F, 1.0F, {4.0F, 8.0F, 0.0F, 0.0F, 4.0F, 0.0F}).zero_coefficient,
        1);  // a1 and b2
    EXPECT_EQ(
        triangle_coordinates(state.trace, 1.0F, 1.0F, {0.0F, 0.0F, 4.0F, 8.0F, 4.0F, 0.0F}).zero_coefficient,
        2);  // b1 and a2
}

TEST(TriangleCoordinates, CountADifferenceBelow1EMinus20AsZero) {
    EXPECT_EQ(triangle_coordinates(state.trace, 1.0F, 1.0F, {0.9E-20F, 8.0F, 4.0F, 2.0F, 0.0F, 0.0F})
                  .zero_coefficient,
              1);
    EXPECT_NE(triangle_coordinates(state.trace, 1.0F, 1.0F, {1.1E-20F, 8.0F, 4.0F, 2.0F, 0.0F, 0.0F})
                  .zero_coefficient,
              1);
}

// The unit triangle: r is x, s is y.
constexpr Triangle UNIT{1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F};

TEST(TriangleCoordinates, LieInWithinAThousandthOfASide) {
    EXPECT_TRUE(triangle_coordinates(state.trace, -0.0005F, 0.5F, UNIT).in);
    EXPECT_TRUE(triangle_coordinates(state.trace, 0.5F, -0.0005F, UNIT).in);
    EXPECT_TRUE(triangle_coordinates(state.trace, 0.50025F, 0.50025F, UNIT).in);
    EXPECT_FALSE(triangle_coordinates(state.trace, -0.0015F, 0.5F, UNIT).in);
    EXPECT_FALSE(triangle_coordinates(state.trace, 0.5F, -0.0015F, UNIT).in);
    EXPECT_FALSE(triangle_coordinates(state.trace, 0.501F, 0.501F, UNIT).in);
    EXPECT_FALSE(triangle_coordinates(state.trace, 1.0015F, -0.0015F, UNIT).in);
}

TEST(TriangleCoordinates, OfAPointOutsideAreGivenAllTheSame) {
    const TriangleCoordinates c = triangle_coordinates(state.trace, 3.0F, -4.0F, UNIT);
    expect_shares(c, 3.0, -4.0, 2.0);
    EXPECT_FALSE(c.in);
}

TEST(TriangleCoordinates, InATriangleWithoutAreaAreNoNumbers) {
    const TriangleCoordinates c =
        triangle_coordinates(state.trace, 1.0F, 0.0F, {0.0F, 0.0F, 1.0F, 1.0F, 2.0F, 2.0F});
    EXPECT_FALSE(std::isfinite(c.r) && std::isfinite(c.s));
    EXPECT_FALSE(c.in);
}

}  // namespace
}  // namespace brelan::test
