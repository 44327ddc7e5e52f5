// Points of arcs.

#include "plane/arc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace brelan::test {
namespace {

constexpr float PI = std::numbers::pi_v<float>;

void expect_at(const Point& found, float x, float y, float slack = 0.0F) {
    EXPECT_NEAR(found.x, x, slack);
    EXPECT_NEAR(found.y, y, slack);
}

TEST(Ellipse, EachQuadrantHasItsSigns) {
    const float R = std::sqrt(2.0F);
    expect_at(ellipse_point(0.25F * PI, {10, 20}, 2, 2), 10 + R, 20 + R, 1.0E-5F);
    expect_at(ellipse_point(0.75F * PI, {10, 20}, 2, 2), 10 - R, 20 + R, 1.0E-5F);
    expect_at(ellipse_point(1.25F * PI, {10, 20}, 2, 2), 10 - R, 20 - R, 1.0E-5F);
    expect_at(ellipse_point(1.75F * PI, {10, 20}, 2, 2), 10 + R, 20 - R, 1.0E-5F);
    expect_at(ellipse_point(-0.25F * PI, {10, 20}, 2, 2), 10 + R, 20 - R, 1.0E-5F);
}

TEST(Ellipse, AxesAreItsHalfWidths) {
    expect_at(ellipse_point(0, {1, 1}, 4, 2), 5, 1);
    expect_at(ellipse_point(0.5F * PI, {1, 1}, 4, 2), 1, 3, 1.0E-5F);
    expect_at(ellipse_point(PI, {1, 1}, 4, 2), -3, 1, 1.0E-5F);
    expect_at(ellipse_point(1.5F * PI, {1, 1}, 4, 2), 1, -1, 1.0E-5F);
}

// At 45 degrees x = y, and x^2 / 16 + y^2 / 4 = 1 gives 16 / 5 for both squares.
TEST(Ellipse, AngleIsThatOfTheRayFromTheCentre) {
    const float x = std::sqrt(3.2F);
    expect_at(ellipse_point(0.25F * PI, {}, 4, 2), x, x, 1.0E-5F);
}

TEST(Ellipse, SineAndCosineAreTheWideOnesRounded) {
    const float Q = 0.7F;
    const float S = static_cast<float>(std::sin(0.7F * 1.0)), C = static_cast<float>(std::cos(0.7F * 1.0));
    EXPECT_NEAR(ellipse_point(Q, {}, 1, 1).x, C, 2.0E-7F);
    EXPECT_NEAR(ellipse_point(Q, {}, 1, 1).y, S, 2.0E-7F);
}

TEST(ArcTable, PartsHaveEqualLengths) {
    const ArcTable quarter(0, 0.5F * PI, 3, 3, 3);
    expect_at(quarter.point(1, {1, 1}), 1 + 3 * std::cos(PI / 6), 2.5F, 1.0E-3F);
    expect_at(quarter.point(2, {1, 1}), 2.5F, 1 + 3 * std::cos(PI / 6), 1.0E-3F);
    const ArcTable half(0, PI, 4, 2, 2);
    expect_at(half.point(1, {}), 0, 2, 1.0E-2F);
}

TEST(ArcTable, LastPointIsThatOfTheLastAngle) {
    for (const float QE : {0.3F, 1.1F, 2.9F, 6.1F}) {
        const ArcTable table(0.1F, QE, 4, 2, -7);
        const Point last = ellipse_point(QE, {1, 2}, 4, 2);
        EXPECT_EQ(table.point(7, {1, 2}).x, last.x);
        EXPECT_EQ(table.point(7, {1, 2}).y, last.y);
    }
}

TEST(ArcTable, MinusSignOfTheCountDoesNotMatter) {
    const ArcTable plus(0.1F, 2, 4, 2, 5), minus(0.1F, 2, 4, 2, -5);
    for (std::int32_t k = 1; k <= 5; ++k)
        EXPECT_TRUE(plus.point(k, {}) == minus.point(k, {})) << k;
}

TEST(ArcTable, WithoutACountOneStepIsTheWholeArc) {
    const ArcTable table(0, PI, 4, 2, 0);
    expect_at(table.point(1, {}), -4, 0, 1.0E-2F);
}

TEST(ArcTable, BeyondTheArcTheAngleIsZero) {
    const ArcTable table(1, 2, 4, 2, 2);
    expect_at(table.point(3, {1, 1}), 5, 1);
}

TEST(ArcTable, BackwardsArcRunsTheOtherWay) {
    const ArcTable table(PI, 0, 3, 3, 2);
    expect_at(table.point(1, {}), 0, 3, 1.0E-2F);
    expect_at(table.point(2, {}), 3, 0);
}

}  // namespace
}  // namespace brelan::test
