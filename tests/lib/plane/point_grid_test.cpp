// The search among points on small sets that can be checked by eye; point_grid_property_test.cpp holds it
// against the scan of all pairs.

#include "plane/point_grid.h"

#include "support/state.h"

namespace brelan::test {
namespace {

PointGrid grid_of(float reach, const std::vector<NumberedPoint>& points) {
    PointGrid grid(reach, points.size());
    for (const NumberedPoint& point : points)
        grid.add(point);
    return grid;
}

TEST(PointGrid, GivesNothingWithoutPoints) {
    EXPECT_EQ(grid_of(1.0F, {}).highest_within_reach(0.0F, 0.0F), 0);
}

TEST(PointGrid, TakesAPointExactlyAtTheReach) {
    const PointGrid grid = grid_of(5.0F, {{7, 3.0F, 4.0F}});
    EXPECT_EQ(grid.highest_within_reach(0.0F, 0.0F), 7);
    EXPECT_EQ(grid.highest_within_reach(0.0F, -0.000001F), 0);
}

TEST(PointGrid, GivesTheHighestNumberAndNotTheNearestPoint) {
    const PointGrid grid = grid_of(1.0F, {{2, 0.0F, 0.0F}, {5, 0.9F, 0.0F}, {6, 1.1F, 0.0F}});
    EXPECT_EQ(grid.highest_within_reach(0.0F, 0.0F), 5);
    EXPECT_EQ(grid.highest_within_reach(0.05F, 0.0F), 5);
    EXPECT_EQ(grid.highest_within_reach(0.15F, 0.0F), 6);
}

TEST(PointGrid, SeesAllCellsAroundThePoint) {
    // One point in each of the nine cells around the origin; each is asked for alone.
    for (const float x : {-0.9F, 0.0F, 0.9F})
        for (const float y : {-0.4F, 0.0F, 0.4F})
            EXPECT_EQ(grid_of(1.0F, {{3, x, y}}).highest_within_reach(0.0F, 0.0F), 3) << x << " " << y;
}

TEST(PointGrid, WithoutAReachFindsCoincidentPointsOnly) {
    const PointGrid grid = grid_of(0.0F, {{1, 2.0F, 3.0F}, {4, 2.0F, 3.0F}, {9, 2.0000002F, 3.0F}});
    EXPECT_EQ(grid.highest_within_reach(2.0F, 3.0F), 4);
    EXPECT_EQ(grid.highest_within_reach(-2.0F, 3.0F), 0);
}

TEST(PointGrid, TakesPlusAndMinusZeroAsOnePlace) {
    EXPECT_EQ(grid_of(0.0F, {{1, 0.0F, -0.0F}}).highest_within_reach(-0.0F, 0.0F), 1);
}

TEST(SmallestDistance, IsTheStartWithoutPairs) {
    EXPECT_EQ(smallest_distance({}, 1.0E35F), 1.0E35F);
    const std::vector<NumberedPoint> one{{1, 0.0F, 0.0F}};
    EXPECT_EQ(smallest_distance(one, 1.0E35F), 1.0E35F);
}

TEST(SmallestDistance, IsNeverAboveTheStart) {
    const std::vector<NumberedPoint> points{{1, 0.0F, 0.0F}, {2, 3.0F, 4.0F}};
    EXPECT_EQ(smallest_distance(points, 4.5F), 4.5F);
    EXPECT_EQ(smallest_distance(points, 5.5F), 5.0F);
}

TEST(SmallestDistance, IsZeroForTwoPointsInOnePlace) {
    const std::vector<NumberedPoint> points{
        {1, 7.0F, 8.0F}, {2, 3.0F, 4.0F}, {3, 7.0F, 8.0F}, {4, 7.0F, 9.0F}};
    EXPECT_EQ(smallest_distance(points, 1.0E35F), 0.0F);
}

TEST(SmallestDistance, LooksAcrossTheMiddle) {
    // Left and right half have 3 and 2; the two points nearest to the middle line are 1 apart.
    const std::vector<NumberedPoint> points{{1, 0.0F, 0.0F},  {2, 3.0F, 0.0F}, {3, 6.0F, 50.0F},
                                            {4, 7.0F, 50.0F}, {5, 9.0F, 0.0F}, {6, 11.0F, 0.0F}};
    EXPECT_EQ(smallest_distance(points, 1.0E35F), 1.0F);
}

// The pair in a column comes first; the one in the row is nearer.
TEST(SmallestDistance, IsFoundBehindAFarPairOfOneColumn) {
    const std::vector<NumberedPoint> points{{1, 0.0F, 0.0F}, {2, 0.0F, 5.0F}, {3, 2.0F, 0.0F}};
    EXPECT_EQ(smallest_distance(points, 1.0E35F), 2.0F);
}

}  // namespace
}  // namespace brelan::test
