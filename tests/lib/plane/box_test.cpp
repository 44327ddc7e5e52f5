// Boxes with room: how far beyond a segment something may lie that a test still counts to it.
#include "plane/box.h"

#include <gtest/gtest.h>

#include <limits>

namespace brelan {
namespace {

TEST(Box, HoldsThePointsThatItIncludes) {
    Box box = box_of({3, 1}, {2, 5});
    EXPECT_EQ(box.x0, 2.0F);
    EXPECT_EQ(box.y0, 1.0F);
    EXPECT_EQ(box.x1, 3.0F);
    EXPECT_EQ(box.y1, 5.0F);
    EXPECT_EQ(box.size(), 4.0F);
    box.include({-7, 2});
    EXPECT_EQ(box.x0, -7.0F);
    EXPECT_EQ(box.x1, 3.0F);
    EXPECT_EQ(box.size(), 10.0F);
}

TEST(Box, MeetsWhatItTouches) {
    const Box box{0, 0, 2, 1};
    EXPECT_TRUE(box.meets({2, 1, 3, 3}));
    EXPECT_TRUE(box.meets({-1, -1, 5, 5}));
    EXPECT_TRUE(box.meets({1, 0.5F, 1, 0.5F}));
    EXPECT_FALSE(box.meets({2.1F, 0, 3, 1}));
    EXPECT_FALSE(box.meets({-3, 0, -0.1F, 1}));
    EXPECT_FALSE(box.meets({0, 1.1F, 2, 2}));
    EXPECT_FALSE(box.meets({0, -2, 2, -0.1F}));
}

// What has a coordinate that is no number is looked at, not passed over.
TEST(Box, MeetsOneWithoutAPlace) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE((Box{0, 0, 2, 1}.meets({none, none, none, none})));
    EXPECT_TRUE((Box{none, 0, none, 1}.meets({7, 0, 8, 1})));
}

TEST(Extent, IsThatOfTheWidestAndTheHighestSlantingSegment) {
    Extent extent;
    extent.include({0, 0}, {9, 0});
    extent.include({0, 0}, {0, 9});
    EXPECT_EQ(extent.width, 0.0F);
    EXPECT_EQ(extent.height, 0.0F);
    extent.include({1, 1}, {3, 2});
    extent.include({5, 5}, {4, 9});
    EXPECT_EQ(extent.width, 2.0F);
    EXPECT_EQ(extent.height, 4.0F);
}

// A crossing may lie beyond a slanting segment by its whole width and height.
TEST(Box, HasRoomForTheWidestSlantingSegmentAndTheReach) {
    const Box box = box_of({0, 0}, {1, 1}).with_room({3, 5}, 0.5F);
    EXPECT_LE(box.x0, -3.5F);
    EXPECT_GE(box.x1, 4.5F);
    EXPECT_LE(box.y0, -5.5F);
    EXPECT_GE(box.y1, 6.5F);
    EXPECT_GE(box.x0, -3.52F);
    EXPECT_LE(box.x1, 4.52F);
    EXPECT_GE(box.y0, -5.52F);
    EXPECT_LE(box.y1, 6.52F);
}

// Products of such coordinates leave the range of the reals.
TEST(Box, BeyondTheRangeOfProductsReachesEverywhere) {
    constexpr float everywhere = std::numeric_limits<float>::infinity();
    for (const Point& far : {Point{2.0e15F, 0}, Point{-2.0e15F, 0}, Point{0, 2.0e15F}, Point{0, -2.0e15F}}) {
        const Box box = box_of({1, 1}, far).with_room({}, 0.0F);
        EXPECT_EQ(box.x0, -everywhere);
        EXPECT_EQ(box.y0, -everywhere);
        EXPECT_EQ(box.x1, everywhere);
        EXPECT_EQ(box.y1, everywhere);
    }
    EXPECT_LT(box_of({1, 1}, {1.0e15F, 2}).with_room({}, 0.0F).x1, everywhere);
}

}  // namespace
}  // namespace brelan
