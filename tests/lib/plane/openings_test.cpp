// Openings of small polygons: they are what angles are, without an angle.
#include "plane/openings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/campaign.h"

namespace brelan {
namespace {

const std::vector<Point> UNIT_SQUARE{{0, 0}, {1, 0}, {1, 1}, {0, 1}};

TEST(Openings, AreOneMinusCosine) {
    EXPECT_NEAR(openings_of(UNIT_SQUARE).smallest, 1.0, 1e-12);
    EXPECT_NEAR(openings_of(UNIT_SQUARE).largest, 1.0, 1e-12);
    const std::vector<Point> equilateral{{0, 0}, {1, 0}, {0.5F, 0.8660254F}};
    EXPECT_NEAR(openings_of(equilateral).smallest, 0.5, 1e-6);
    const std::vector<Point> thin{{0, 0}, {1, 0}, {1, 0.17632698F}};  // tangent of 10 degrees
    EXPECT_NEAR(openings_of(thin).smallest, OPENING_10, 1e-6);
}

TEST(Openings, OfAFlatCornerAreTwoAndOfOneThatIsPushedInMore) {
    const std::vector<Point> flat{{0, 0}, {1, 0}, {2, 0}, {1, 1}}, arrow{{0, 0}, {2, 0}, {1, 0.5F}, {1, 2}};
    EXPECT_NEAR(openings_of(flat).largest, OPENING_180, 1e-12);
    EXPECT_GT(openings_of(arrow).largest, OPENING_180);
}

// Told are those alone that are, and nearly all of them.
TEST(Openings, AreToldToBeAtMostALimitWhereTheyAre) {
    std::mt19937 random(13);
    std::uniform_real_distribution<float> at(-10.0F, 10.0F), thin(1.0e-6F, 1.0F);
    std::uniform_real_distribution<double> any_limit(0.0, 1.1);
    int told = 0, less = 0;
    for (int i = 0; i < test::rounds(20000); ++i) {
        std::vector<Point> corners;
        const float flat = i % 3 == 0 ? thin(random) : 1.0F;
        for (int k = i % 2 == 0 ? 3 : 4; k > 0; --k)
            corners.push_back({at(random), flat * at(random)});
        const Openings openings = openings_of(corners);
        const double shape = std::min(openings.smallest, OPENING_180 - openings.largest);
        // Any limit, and some that the shape itself nearly is.
        const double beside = shape * (1.0 + 1.0e-15 * (i % 7 - 3));
        const double limit = i % 5 == 0 && shape > 0.0 ? beside : any_limit(random);
        if (opens_at_most(corners, limit)) {
            ASSERT_LE(shape, limit) << i;
            ++told;
        }
        less += shape <= limit ? 1 : 0;
        ASSERT_FALSE(shape > limit * (1.0 + 1.0e-6) + 1.0e-6 && opens_at_most(corners, limit)) << i;
    }
    EXPECT_GT(told, less / 2);
    EXPECT_FALSE(opens_at_most(UNIT_SQUARE, 0.98));
    EXPECT_TRUE(opens_at_most(std::vector<Point>{{0, 0}, {1, 0}, {1, 0.17632698F}}, 1.001 * OPENING_10));
    EXPECT_FALSE(opens_at_most(std::vector<Point>{{0, 0}, {1, 0}, {1, 0.17632698F}}, 0.999 * OPENING_10));
}

}  // namespace
}  // namespace brelan
