// Orientations against whole numbers, in which the area has no rounding at all.
#include "plane/orientation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace brelan {
namespace {

// Coordinates that are whole multiples of 2^-20 below 2^11: the area fits into 128 bits.
int exact_orientation(const Point& a, const Point& b, const Point& c) {
    const auto whole = [](float v) { return static_cast<__int128>(std::ldexp(static_cast<double>(v), 20)); };
    const __int128 area = (whole(b.x) - whole(a.x)) * (whole(c.y) - whole(a.y)) -
                          (whole(b.y) - whole(a.y)) * (whole(c.x) - whole(a.x));
    return area > 0 ? 1 : area < 0 ? -1 : 0;
}

TEST(Orientation, TellsLeftRightAndStraight) {
    EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, 1}), 1);
    EXPECT_EQ(orientation({0, 0}, {0, 1}, {1, 0}), -1);
    EXPECT_EQ(orientation({0, 0}, {1, 1}, {3, 3}), 0);
    EXPECT_EQ(orientation({0.1F, 0.1F}, {0.2F, 0.2F}, {0.3F, 0.3F}), 0);
    EXPECT_EQ(orientation({2, 2}, {2, 2}, {5, 7}), 0);
}

TEST(Orientation, TellsAUnitInTheLastPlace) {
    const float x = 1000.0F, next = std::nextafter(x, 2000.0F);
    EXPECT_EQ(orientation({0, 0}, {x, x}, {2 * x, 2 * x}), 0);
    EXPECT_EQ(orientation({0, 0}, {x, x}, {2 * x, 2 * next}), 1);
    EXPECT_EQ(orientation({0, 0}, {x, x}, {2 * next, 2 * x}), -1);
}

TEST(Orientation, IsThatOfWholeNumbersNearALine) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> coordinate(-(1 << 23), 1 << 23), nudge(-1, 1);
    int straight = 0;
    for (int i = 0; i < 200000; ++i) {
        const auto at = [](int v) { return std::ldexp(static_cast<float>(v), -12); };
        const int ax = coordinate(random), ay = coordinate(random), dx = coordinate(random) / 8,
                  dy = coordinate(random) / 8;
        const Point a{at(ax / 4), at(ay / 4)}, b{at(ax / 4 + dx), at(ay / 4 + dy)};
        const Point c{at(ax / 4 + 2 * dx + nudge(random)), at(ay / 4 + 2 * dy + nudge(random))};
        const int expected = exact_orientation(a, b, c);
        straight += expected == 0 ? 1 : 0;
        ASSERT_EQ(orientation(a, b, c), expected) << i;
        ASSERT_EQ(orientation(b, c, a), expected) << i;
        ASSERT_EQ(orientation(b, a, c), -expected) << i;
    }
    EXPECT_GT(straight, 1000);
}

// Points above and beside each other, and two at one place, whose products are 0 without rounding.
TEST(Orientation, OfPointsInARowOrAColumnIsThatOfTheProducts) {
    std::mt19937 random(9);
    std::uniform_real_distribution<float> size(-40.0F, 40.0F);
    std::uniform_int_distribution<std::size_t> one_of(0, 2);
    int straight = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::array<float, 3> x{std::exp2(size(random)), -std::exp2(size(random)), 0.1F};
        const std::array<float, 3> y{0.3F, 0.3F, std::exp2(size(random))};
        const auto any = [&] { return Point{x[one_of(random)], y[one_of(random)]}; };
        const Point a = any(), b = any(), c = any();
        ASSERT_EQ(orientation(a, b, c), orientation_by_products(a, b, c)) << i;
        straight += orientation(a, b, c) == 0 ? 1 : 0;
    }
    EXPECT_GT(straight, 5000);
    EXPECT_LT(straight, 18000);
}

TEST(Orientation, HoldsOverAllSizesOfNumbers) {
    EXPECT_EQ(orientation({1.0e30F, 1.0e30F}, {2.0e30F, 2.0e30F}, {1.0e-30F, 1.0e-30F}), 0);
    EXPECT_EQ(orientation({1.0e30F, 0}, {0, 1.0e-30F}, {1.0e-30F, 0}), 1);
    EXPECT_EQ(orientation({1.0e30F, 0}, {1.0e-30F, 0}, {0, 1.0e-30F}), -1);
    EXPECT_EQ(orientation({1.0e-30F, 0}, {0, 1.0e-30F}, {-1.0e-30F, 0}), 1);
}

// 1 - 2^-60 is 1 in 64 bits, so that differences of the coordinates show three points of one line.
TEST(Orientation, SeesWhatTheDifferencesRoundAway) {
    const float little = std::ldexp(1.0F, -60);
    EXPECT_EQ(orientation({1, 1}, {2, 2}, {little, 0}), -1);
    EXPECT_EQ(orientation({1, 1}, {2, 2}, {0, little}), 1);
    EXPECT_EQ(orientation({1, 1}, {2, 2}, {little, little}), 0);
}

}  // namespace
}  // namespace brelan
