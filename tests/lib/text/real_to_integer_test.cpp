// Reals become integers by cutting, whatever the real.
#include "text/real_to_integer.h"

#include <gtest/gtest.h>

#include <limits>

namespace brelan {
namespace {

constexpr std::int32_t BEYOND = -2147483648;
using Real = std::numeric_limits<float>;

// The compiler refuses a conversion that has no defined result, where a processor gives some number.
static_assert(to_integer(3.0E9F) == BEYOND && to_integer(-3.0E9F) == BEYOND);
static_assert(to_integer(2147483648.0F) == BEYOND && to_integer(-2147483648.0F) == BEYOND);
static_assert(to_integer(Real::infinity()) == BEYOND && to_integer(-Real::infinity()) == BEYOND);
static_assert(to_integer(Real::quiet_NaN()) == BEYOND);
static_assert(to_integer(2147483520.0F) == 2147483520);

TEST(RealToInteger, CutsTowardsZero) {
    EXPECT_EQ(to_integer(2.9F), 2);
    EXPECT_EQ(to_integer(-2.9F), -2);
    EXPECT_EQ(to_integer(0.999999F), 0);
    EXPECT_EQ(to_integer(-0.5F), 0);
}

TEST(RealToInteger, KeepsWholeNumbers) {
    EXPECT_EQ(to_integer(0.0F), 0);
    EXPECT_EQ(to_integer(-0.0F), 0);
    EXPECT_EQ(to_integer(1.0E3F), 1000);
    EXPECT_EQ(to_integer(-99990.0F), -99990);
    EXPECT_EQ(to_integer(16777216.0F), 16777216);
}

TEST(RealToInteger, HoldsUpToTheLastRealBelowTheRange) {
    // Neighbours of 2**31 are 128 apart below it.
    EXPECT_EQ(to_integer(2147483520.0F), 2147483520);
    EXPECT_EQ(to_integer(-2147483520.0F), -2147483520);
}

TEST(RealToInteger, GivesTheLowestIntegerBeyondTheRange) {
    EXPECT_EQ(to_integer(2147483648.0F), BEYOND);
    EXPECT_EQ(to_integer(-2147483648.0F), BEYOND);
    EXPECT_EQ(to_integer(3.0E9F), BEYOND);
    EXPECT_EQ(to_integer(-1.0E30F), BEYOND);
    EXPECT_EQ(to_integer(Real::max()), BEYOND);
}

TEST(RealToInteger, GivesTheLowestIntegerForWhatIsNoNumber) {
    EXPECT_EQ(to_integer(Real::infinity()), BEYOND);
    EXPECT_EQ(to_integer(-Real::infinity()), BEYOND);
    EXPECT_EQ(to_integer(Real::quiet_NaN()), BEYOND);
}

TEST(RealToInteger, GivesZeroForTheSmallestReals) {
    EXPECT_EQ(to_integer(Real::min()), 0);
    EXPECT_EQ(to_integer(-Real::denorm_min()), 0);
}

}  // namespace
}  // namespace brelan
