// Distances, areas, crossings with their closed bounds and limits, a node at a segment.

#include "plane/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/state.h"

namespace brelan::test {
namespace {

void expect_point(const Point& found, float x, float y, float slack = 0.0F) {
    if (slack == 0.0F) {
        EXPECT_EQ(found.x, x);
        EXPECT_EQ(found.y, y);
    } else {
        EXPECT_NEAR(found.x, x, slack);
        EXPECT_NEAR(found.y, y, slack);
    }
}

void expect_met(const Meeting& meeting, float x, float y, float slack = 0.0F) {
    EXPECT_TRUE(meeting.meets);
    expect_point(meeting.point, x, y, slack);
}

void expect_snap(const Snap& snap, float x, float y, float D) {
    EXPECT_TRUE(snap.near);
    expect_point(snap.point, x, y);
    EXPECT_FLOAT_EQ(snap.distance, D);
}

void expect_left(const Snap& snap, const Point& node, float D) {
    EXPECT_FALSE(snap.near);
    expect_point(snap.point, node.x, node.y);
    EXPECT_FLOAT_EQ(snap.distance, D);
}

// --- distance and areas --------------------------------------------------------------------------

TEST(Geometry, DistanceIsTheHypotenuse) {
    EXPECT_EQ(distance_between(1.0F, 2.0F, 4.0F, 6.0F), 5.0F);
    EXPECT_EQ(distance_between(4.0F, 6.0F, 4.0F, 6.0F), 0.0F);
}

TEST(Geometry, AreaIsPositiveCounterClockwise) {
    EXPECT_EQ(area_64({0, 0}, {4, 0}, {0, 3}), 6.0);
    EXPECT_EQ(area_64({0, 0}, {0, 3}, {4, 0}), -6.0);
    EXPECT_EQ(area_64({1, 1}, {2, 2}, {3, 3}), 0.0);
}

// Twice the area is 8191 * 8193 - 8192 * 8192 = -1; 32 bits do not hold the first product.
TEST(Geometry, AreaOfASliverNeedsTheWideForm) {
    EXPECT_EQ(area_64({0, 0}, {8193, 8192}, {8192, 8191}), -0.5);
    EXPECT_EQ(area_32({0, 0}, {8193, 8192}, {8192, 8191}), 0.0F);
    EXPECT_EQ(area_32({0, 0}, {4, 0}, {0, 3}), 6.0F);
}

TEST(Geometry, TriangleContainsItsCornersSidesAndInside) {
    const Point A{0, 0}, B{10, 0}, C{0, 10};
    for (const Point& p : std::vector<Point>{A, B, C, {5, 0}, {0, 5}, {5, 5}, {1, 1}, {0.125F, 0.25F}}) {
        EXPECT_TRUE(in_triangle(p, A, B, C)) << p.x << ' ' << p.y;
        EXPECT_TRUE(in_triangle(p, A, C, B)) << "clockwise " << p.x << ' ' << p.y;
    }
    EXPECT_FALSE(in_triangle({6, 6}, A, B, C));
    EXPECT_FALSE(in_triangle({-1, 5}, A, B, C));
}

// A point d below the lower side of this triangle makes 100 + 20 d of 100: the limit 1e-4 is d = 0.0005.
TEST(Geometry, TriangleToleranceIsAShareOfItsArea) {
    EXPECT_TRUE(in_triangle({5, -0.0004F}, {0, 0}, {10, 0}, {0, 10}));
    EXPECT_FALSE(in_triangle({5, -0.0006F}, {0, 0}, {10, 0}, {0, 10}));
    EXPECT_TRUE(in_triangle({5000, -0.4F}, {0, 0}, {10000, 0}, {0, 10000}));
    EXPECT_FALSE(in_triangle({5000, -0.6F}, {0, 0}, {10000, 0}, {0, 10000}));
}

TEST(Geometry, FlatTriangleContainsThePointsOnIt) {
    EXPECT_TRUE(in_triangle({1.5F, 0}, {0, 0}, {1, 0}, {2, 0}));
    EXPECT_TRUE(in_triangle({1, 0}, {1, 0}, {1, 0}, {1, 0}));
    EXPECT_FALSE(in_triangle({1, 0.001F}, {0, 0}, {1, 0}, {2, 0}));
}

// --- lines ---------------------------------------------------------------------------------------

TEST(Geometry, LinesMeetInsideBothBoxes) {
    expect_met(segment_meeting({0, 0}, {4, 4}, {0, 4}, {4, 0}), 2, 2);
    expect_met(segment_meeting({1, 0}, {1, 5}, {0, 0}, {4, 4}), 1, 1);
    expect_met(segment_meeting({0, 0}, {2, 2}, {0, 4}, {4, 0}), 2, 2);
}

TEST(Geometry, LinesThatMeetOutsideStillGiveThePoint) {
    const Meeting meeting = segment_meeting({0, 0}, {1, 1}, {0, 4}, {4, 0});
    EXPECT_FALSE(meeting.meets);
    EXPECT_TRUE(meeting.computed);
    expect_point(meeting.point, 2, 2);
}

TEST(Geometry, ParallelLinesGiveNoPoint) {
    for (const Meeting& meeting :
         {segment_meeting({0, 0}, {1, 1}, {0, 1}, {1, 2}), segment_meeting({1, 0}, {1, 5}, {2, 0}, {2, 5})}) {
        EXPECT_FALSE(meeting.meets);
        EXPECT_FALSE(meeting.computed);
    }
}

// Only the width is looked at: two ends in one place are the vertical through them.
TEST(Geometry, PointCountsAsAVerticalLine) {
    expect_point(segment_meeting({1, 7}, {1, 7}, {0, 0}, {4, 4}).point, 1, 1);
    expect_point(crossing_of_lines({1, 7}, {1, 7}, {0, 0}, {4, 4}), 1, 1);
}

TEST(Geometry, InfiniteLinesCrossAnywhere) {
    expect_point(crossing_of_lines({0, 0}, {1, 0}, {5, 2}, {5, 4}), 5, 0);
    EXPECT_FALSE(std::isfinite(crossing_of_lines({0, 0}, {1, 1}, {0, 1}, {1, 2}).x));
}

TEST(Geometry, MitreTakesTheFirstEndAcrossASmallGap) {
    const float gap = 0.001F;
    expect_point(mitre_corner({-3, 0}, {0, 0}, {gap, gap}, {gap, 5}), 0, 0);
    const float wide = std::nextafter(gap, 1.0F);
    expect_point(mitre_corner({-3, 0}, {0, 0}, {wide, 0}, {wide, 5}), wide, 0);
    expect_point(mitre_corner({-3, 0}, {0, 0}, {5, wide}, {5, 7}), 5, 0);
}

// Line one is y = 0. Line two has slope s through (0.5, 0), so that its offset is s / 2.
TEST(Geometry, MitreTakesTheFirstEndOnOneLine) {
    expect_point(mitre_corner({2, 0}, {1, 0}, {0.5F, 0}, {1.5F, 1.0E-5F}), 1, 0);
    expect_point(mitre_corner({2, 0}, {1, 0}, {0.5F, 0}, {1.5F, 2.0E-5F}), 0.5F, 0);
}

TEST(Geometry, MitreOfLinesAlikeInSlopeOnlyIsTheirCrossing) {
    // Slope 1e-5 through (4, 0): the offset 4e-5 is over its limit.
    expect_point(mitre_corner({0, 0}, {1, 0}, {4, 0}, {5, 1.0E-5F}), 4, 0);
}

TEST(Geometry, MitreOfACornerIsTheCrossing) {
    expect_point(mitre_corner({0, 1}, {3, 1}, {5, 2}, {5, 4}), 5, 1);
}

TEST(Geometry, OffsetGoesToTheLeft) {
    const Segment east = offset_segment(2, {0, 2}, {5, 2});
    expect_point(east.from, 0, 4);
    expect_point(east.to, 5, 4);
    const Segment south = offset_segment(0.5F, {1, 3}, {1, -1});
    expect_point(south.from, 1.5F, 3);
    expect_point(south.to, 1.5F, -1);
    const Segment slant = offset_segment(1, {0, 0}, {3, 4});
    expect_point(slant.from, -0.8F, 0.6F, 1.0E-6F);
    expect_point(slant.to, 2.2F, 4.6F, 1.0E-6F);
}

TEST(Geometry, OffsetOfAPointIsNoNumber) {
    EXPECT_FALSE(std::isfinite(offset_segment(1, {2, 2}, {2, 2}).from.x));
}

// --- classes and crossings -----------------------------------------------------------------------

TEST(Geometry, ClassesAreToldAfterSorting) {
    const ClassedSegment horizontal = classify_segment({5, 1}, {2, 1});
    EXPECT_EQ(horizontal.kind, SegmentClass::horizontal);
    expect_point(horizontal.low, 2, 1);
    expect_point(horizontal.high, 5, 1);
    const ClassedSegment vertical = classify_segment({5, 4}, {5, 1});
    EXPECT_EQ(vertical.kind, SegmentClass::vertical);
    expect_point(vertical.low, 5, 1);
    expect_point(vertical.high, 5, 4);
    const ClassedSegment rising = classify_segment({4, 4}, {0, 0});
    EXPECT_EQ(rising.kind, SegmentClass::rising);
    expect_point(rising.low, 0, 0);
    const ClassedSegment falling = classify_segment({4, 0}, {0, 4});
    EXPECT_EQ(falling.kind, SegmentClass::falling);
    expect_point(falling.low, 0, 4);
}

TEST(Geometry, ClassLimitIsOpen) {
    const float limit = 1.0E-10F;
    EXPECT_EQ(classify_segment({0, 0}, {1, limit}).kind, SegmentClass::rising);
    EXPECT_EQ(classify_segment({0, 0}, {1, limit / 2}).kind, SegmentClass::horizontal);
    EXPECT_EQ(classify_segment({0, 0}, {limit, 1}).kind, SegmentClass::rising);
    EXPECT_EQ(classify_segment({0, 0}, {limit / 2, 1}).kind, SegmentClass::vertical);
    EXPECT_EQ(classify_segment({3, 3}, {3, 3}).kind, SegmentClass::horizontal);
}

TEST(Geometry, SegmentsOfOneAxisDoNotCross) {
    EXPECT_FALSE(segment_crossing({0, 0}, {4, 0}, {1, 0}, {6, 0}).meets);
    EXPECT_FALSE(segment_crossing({0, 0}, {0, 4}, {0, 1}, {0, 6}).meets);
}

TEST(Geometry, AxisSegmentsCrossWithClosedBounds) {
    expect_met(segment_crossing({0, 1}, {4, 1}, {2, 0}, {2, 3}), 2, 1);
    expect_met(segment_crossing({2, 0}, {2, 3}, {0, 1}, {4, 1}), 2, 1);
    expect_met(segment_crossing({0, 1}, {4, 1}, {4, 1}, {4, 3}), 4, 1);
    EXPECT_FALSE(segment_crossing({0, 1}, {4, 1}, {4.5F, 0}, {4.5F, 3}).meets);
    EXPECT_FALSE(segment_crossing({0, 1}, {4, 1}, {2, 2}, {2, 3}).meets);
}

TEST(Geometry, HorizontalCrossesASlantInBothSpans) {
    expect_met(segment_crossing({0, 1}, {4, 1}, {0, 0}, {2, 2}), 1, 1);
    expect_met(segment_crossing({0, 0}, {2, 2}, {0, 1}, {4, 1}), 1, 1);
    expect_met(segment_crossing({0, 2}, {4, 2}, {2, 2}, {0, 0}), 2, 2);
    expect_met(segment_crossing({0, 1}, {4, 1}, {0, 2}, {2, 0}), 1, 1);
    EXPECT_FALSE(segment_crossing({0, 3}, {4, 3}, {0, 0}, {2, 2}).meets);
    EXPECT_FALSE(segment_crossing({1.5F, 1}, {4, 1}, {0, 0}, {2, 2}).meets);
}

TEST(Geometry, VerticalCrossesASlantInBothSpans) {
    expect_met(segment_crossing({1, 0}, {1, 4}, {0, 0}, {2, 2}), 1, 1);
    expect_met(segment_crossing({0, 2}, {2, 0}, {1, 4}, {1, 0}), 1, 1);
    expect_met(segment_crossing({2, 2}, {2, 5}, {0, 0}, {2, 2}), 2, 2);
    EXPECT_FALSE(segment_crossing({3, 0}, {3, 4}, {0, 0}, {2, 2}).meets);
    EXPECT_FALSE(segment_crossing({1, 1.5F}, {1, 4}, {0, 0}, {2, 2}).meets);
}

TEST(Geometry, SlantsCrossInEveryOrderOfClasses) {
    expect_met(segment_crossing({0, 0}, {4, 4}, {0, 1}, {4, 3}), 2, 2);
    expect_met(segment_crossing({0, 4}, {4, 0}, {0, 3}, {4, 1}), 2, 2);
    expect_met(segment_crossing({0, 0}, {4, 4}, {0, 4}, {4, 0}), 2, 2);
    expect_met(segment_crossing({0, 4}, {4, 0}, {0, 0}, {4, 4}), 2, 2);
    expect_met(segment_crossing({4, 4}, {0, 0}, {4, 0}, {0, 4}), 2, 2);
}

TEST(Geometry, EndOnTheOtherSegmentCrosses) {
    expect_met(segment_crossing({0, 0}, {2, 2}, {0, 4}, {4, 0}), 2, 2);
    expect_met(segment_crossing({0, 4}, {4, 0}, {2, 2}, {5, 5}), 2, 2);
}

TEST(Geometry, SlantsInBoxesThatAreApartDoNotCross) {
    EXPECT_FALSE(segment_crossing({0, 0}, {1, 1}, {2, 4}, {4, 2}).meets);
    EXPECT_FALSE(segment_crossing({0, 0}, {4, 1}, {0, 4}, {4, 2}).meets);
}

TEST(Geometry, OverlappingRisingSegmentsOfOneLineDoNotCross) {
    EXPECT_FALSE(segment_crossing({0, 0}, {4, 4}, {2, 2}, {6, 6}).meets);
    EXPECT_FALSE(segment_crossing({0, 0}, {4, 4}, {0, 0}, {4, 4}).meets);
}

// Both pairs cross near (2, 2). The share of a slope within which another is parallel holds no negative one.
TEST(Geometry, OnlyRisingSlopesCanBeAlike) {
    EXPECT_FALSE(segment_crossing({0, 0}, {4, 4}, {0, -0.0001F}, {4, 4.0001F}).meets);
    expect_met(segment_crossing({0, 4}, {4, 0}, {0, 4.0001F}, {4, -0.0001F}), 2, 2, 0.05F);
    expect_met(segment_crossing({0, 0}, {4, 4}, {0, -0.002F}, {4, 4.002F}), 2, 2, 0.01F);
    EXPECT_FALSE(segment_crossing({0, 4}, {4, 0}, {1, 3}, {5, -1}).meets);
}

TEST(Geometry, UnboundedCrossingGoesByClassToo) {
    Point Q;
    EXPECT_FALSE(line_crossing({0, 0}, {1, 0}, {5, 2}, {6, 2}, Q));
    EXPECT_FALSE(line_crossing({0, 0}, {0, 1}, {2, 5}, {2, 6}, Q));
    EXPECT_FALSE(line_crossing({0, 0}, {1, 1}, {5, 0}, {6, 1}, Q));
    EXPECT_FALSE(line_crossing({0, 1}, {1, 0}, {5, 1}, {6, 0}, Q));
    ASSERT_TRUE(line_crossing({0, 1}, {1, 1}, {5, 2}, {5, 4}, Q));
    expect_point(Q, 5, 1);
    ASSERT_TRUE(line_crossing({0, 6}, {1, 6}, {0, 0}, {2, 2}, Q));
    expect_point(Q, 6, 6);
    ASSERT_TRUE(line_crossing({0, 0}, {2, 2}, {-3, 0}, {-3, 1}, Q));
    expect_point(Q, -3, -3);
    ASSERT_TRUE(line_crossing({0, 0}, {1, 1}, {4, 12}, {6, 10}, Q));
    expect_point(Q, 8, 8);
}

// --- a node near a segment -----------------------------------------------------------------------

TEST(NearLine, EndsComeFirst) {
    expect_snap(snap_to_segment({0, 0}, {10, 0}, {0.25F, 0}, 0.5F), 0, 0, 0.25F);
    expect_snap(snap_to_segment({0, 0}, {10, 0}, {10, 0.5F}, 0.5F), 10, 0, 0.5F);
    expect_snap(snap_to_segment({0, 0}, {10, 0}, {10.25F, 0}, 0.5F), 10, 0, 0.25F);
}

TEST(NearLine, FirstEndIsTakenBeforeANearerSecond) {
    expect_snap(snap_to_segment({0, 0}, {1, 0}, {0.75F, 0}, 1.0F), 0, 0, 0.75F);
}

TEST(NearLine, HorizontalGivesItsHeight) {
    expect_snap(snap_to_segment({0, 1}, {10, 1}, {5, 1.25F}, 0.5F), 5, 1, 0.25F);
    expect_snap(snap_to_segment({10, 1}, {0, 1}, {5, 0.5F}, 0.5F), 5, 1, 0.5F);
    expect_left(snap_to_segment({0, 1}, {10, 1}, {5, 3}, 0.5F), {5, 3}, 2);
}

TEST(NearLine, BeyondTheEndOfAnAxisSegmentIsFarAway) {
    expect_left(snap_to_segment({0, 1}, {10, 1}, {12, 1}, 0.5F), {12, 1}, 1.0E30F);
    expect_left(snap_to_segment({1, 0}, {1, 10}, {1, -2}, 0.5F), {1, -2}, 1.0E30F);
}

TEST(NearLine, VerticalGivesItsPlace) {
    expect_snap(snap_to_segment({1, 0}, {1, 10}, {1.25F, 5}, 0.5F), 1, 5, 0.25F);
    expect_left(snap_to_segment({1, 10}, {1, 0}, {4, 5}, 0.5F), {4, 5}, 3);
}

// The foot of (1, 2) on the diagonal is (1.5, 1.5), half a diagonal of a unit square away.
TEST(NearLine, SlantGivesTheFootOfThePerpendicular) {
    const float D = std::sqrt(0.5F);
    expect_snap(snap_to_segment({0, 0}, {4, 4}, {1, 2}, 1.0F), 1.5F, 1.5F, D);
    expect_snap(snap_to_segment({4, 4}, {0, 0}, {1, 2}, 1.0F), 1.5F, 1.5F, D);
    expect_left(snap_to_segment({0, 0}, {4, 4}, {1, 2}, 0.5F), {1, 2}, D);
    expect_snap(snap_to_segment({0, 4}, {4, 0}, {3, 3}, 2.0F), 2, 2, std::sqrt(2.0F));
}

TEST(NearLine, BeyondTheEndOfASlantTheDistanceIsThatOfTheLine) {
    expect_left(snap_to_segment({0, 0}, {4, 4}, {5, 6}, 1.0F), {5, 6}, std::sqrt(0.5F));
}

}  // namespace
}  // namespace brelan::test
