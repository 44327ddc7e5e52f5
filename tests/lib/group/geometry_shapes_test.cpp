// The plane geometry of the group engine: a node at a segment, a point in a polygon, points of an arc.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "group/geometry.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr float PI = std::numbers::pi_v<float>;

void expect_point(const Point& found, float x, float y, float slack = 0.0F) {
    EXPECT_NEAR(found.x, x, slack);
    EXPECT_NEAR(found.y, y, slack);
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

// --- a point in a polygon ------------------------------------------------------------------------

const std::vector<Point> SQUARE{{0, 0}, {2, 0}, {2, 2}, {0, 2}};

std::int32_t scan(const Point& point, const std::vector<Point>& polygon) {
    return scan_polygon(point, polygon, SCAN_ALWAYS);
}

TEST(ScanPolygon, EmptyPolygonContainsEverything) {
    EXPECT_EQ(scan({5, 5}, {}), 1);
    EXPECT_EQ(scan_polygon({5, 0}, {}, 0), 1);
}

TEST(ScanPolygon, HeightZeroIsOutsideUnlessAsked) {
    const std::vector<Point> around{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    EXPECT_EQ(scan({0, 0}, around), 1);
    EXPECT_EQ(scan_polygon({0, 0}, around, 0), 0);
    EXPECT_EQ(scan_polygon({0, 0}, around, 1), 0);
    EXPECT_EQ(scan_polygon({0, 0.5F}, around, 0), 1);
}

TEST(ScanPolygon, CrossingsStrictlyLeftCount) {
    EXPECT_EQ(scan({1, 1}, SQUARE), 1);
    EXPECT_EQ(scan({3, 1}, SQUARE), 0);
    EXPECT_EQ(scan({-1, 1}, SQUARE), 0);
    EXPECT_EQ(scan({0, 1}, SQUARE), 0) << "on the left side";
    EXPECT_EQ(scan({2, 1}, SQUARE), 1) << "on the right side";
}

TEST(ScanPolygon, TopEndCountsAndBottomEndDoesNot) {
    EXPECT_EQ(scan({1, 2}, SQUARE), 1);
    EXPECT_EQ(scan({1, 0}, SQUARE), 0);
}

// The corner at (-2, 2) ends one edge and begins another: it counts once.
TEST(ScanPolygon, CornerBetweenTwoHeightsCountsOnce) {
    const std::vector<Point> diamond{{0, 0}, {2, 2}, {0, 4}, {-2, 2}};
    EXPECT_EQ(scan({0, 2}, diamond), 1);
    EXPECT_EQ(scan({3, 2}, diamond), 0);
}

// A peak counts twice and a dip not at all, so neither turns the answer; were one end of each counted, the
// point at its right would.
TEST(ScanPolygon, PeakCountsTwiceAndDipNotAtAll) {
    const std::vector<Point> peak{{0, 1}, {1, 3}, {2, 1}, {9, 1}, {9, 5}, {-9, 5}, {-9, 1}};
    EXPECT_EQ(scan({5, 3}, peak), 1);
    const std::vector<Point> dip{{-9, 1}, {9, 1}, {9, 5}, {2, 5}, {1, 3}, {0, 5}, {-9, 5}};
    EXPECT_EQ(scan({5, 3}, dip), 1);
    EXPECT_EQ(scan({1, 3}, dip), 1);
    EXPECT_EQ(scan({3, 2}, {{0, 0}, {4, 0}, {2, 2}}), 0);
    EXPECT_EQ(scan({3, 1}, {{2, 1}, {4, 3}, {0, 3}}), 0);
}

TEST(ScanPolygon, FirstPointMayStandAtTheEndAgain) {
    std::vector<Point> closed = SQUARE;
    closed.push_back(SQUARE[0]);
    EXPECT_EQ(scan({1, 1}, closed), 1);
    EXPECT_EQ(scan({3, 1}, closed), 0);
}

TEST(ScanPolygon, ClockwiseIsTheSame) {
    EXPECT_EQ(scan({1, 1}, {{0, 2}, {2, 2}, {2, 0}, {0, 0}}), 1);
}

// Points along the lower side of the square, then its two upper corners.
std::vector<Point> with_points(std::size_t count) {
    std::vector<Point> polygon;
    for (std::size_t i = 0; i + 2 < count; ++i)
        polygon.push_back({2.0F * static_cast<float>(i) / static_cast<float>(count - 3), 0});
    polygon.push_back({2, 2});
    polygon.push_back({0, 2});
    return polygon;
}

TEST(ScanPolygon, HoldsTwoThousandAndOnePoints) {
    EXPECT_EQ(scan({1, 1}, with_points(2001)), 1);
    EXPECT_EQ(scan({3, 1}, with_points(2001)), 0);
}

TEST(ScanPolygon, OnePointMoreStopsTheRun) {
    EXPECT_EQ(stop_of([] { scan({1, 1}, with_points(2002)); }), " NB =         2002\n222");
}

TEST(ScanPolygon, ShortAnswersComeBeforeTheLimit) {
    EXPECT_EQ(scan_polygon({1, 0}, with_points(2002), 0), 0);
}

// --- arcs ----------------------------------------------------------------------------------------

TEST(Ellipse, EachQuadrantHasItsSigns) {
    const float R = std::sqrt(2.0F);
    expect_point(ellipse_point(0.25F * PI, {10, 20}, 2, 2), 10 + R, 20 + R, 1.0E-5F);
    expect_point(ellipse_point(0.75F * PI, {10, 20}, 2, 2), 10 - R, 20 + R, 1.0E-5F);
    expect_point(ellipse_point(1.25F * PI, {10, 20}, 2, 2), 10 - R, 20 - R, 1.0E-5F);
    expect_point(ellipse_point(1.75F * PI, {10, 20}, 2, 2), 10 + R, 20 - R, 1.0E-5F);
    expect_point(ellipse_point(-0.25F * PI, {10, 20}, 2, 2), 10 + R, 20 - R, 1.0E-5F);
}

TEST(Ellipse, AxesAreItsHalfWidths) {
    expect_point(ellipse_point(0, {1, 1}, 4, 2), 5, 1);
    expect_point(ellipse_point(0.5F * PI, {1, 1}, 4, 2), 1, 3, 1.0E-5F);
    expect_point(ellipse_point(PI, {1, 1}, 4, 2), -3, 1, 1.0E-5F);
    expect_point(ellipse_point(1.5F * PI, {1, 1}, 4, 2), 1, -1, 1.0E-5F);
}

// At 45 degrees x = y, and x^2 / 16 + y^2 / 4 = 1 gives 16 / 5 for both squares.
TEST(Ellipse, AngleIsThatOfTheRayFromTheCentre) {
    const float x = std::sqrt(3.2F);
    expect_point(ellipse_point(0.25F * PI, {}, 4, 2), x, x, 1.0E-5F);
}

TEST(Ellipse, SineAndCosineAreTheWideOnesRounded) {
    const float Q = 0.7F;
    const float S = static_cast<float>(std::sin(0.7F * 1.0)), C = static_cast<float>(std::cos(0.7F * 1.0));
    EXPECT_NEAR(ellipse_point(Q, {}, 1, 1).x, C, 2.0E-7F);
    EXPECT_NEAR(ellipse_point(Q, {}, 1, 1).y, S, 2.0E-7F);
}

TEST(ArcTable, PartsHaveEqualLengths) {
    const ArcTable quarter(0, 0.5F * PI, 3, 3, 3);
    expect_point(quarter.point(1, {1, 1}), 1 + 3 * std::cos(PI / 6), 2.5F, 1.0E-3F);
    expect_point(quarter.point(2, {1, 1}), 2.5F, 1 + 3 * std::cos(PI / 6), 1.0E-3F);
    const ArcTable half(0, PI, 4, 2, 2);
    expect_point(half.point(1, {}), 0, 2, 1.0E-2F);
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
    expect_point(table.point(1, {}), -4, 0, 1.0E-2F);
}

TEST(ArcTable, BeyondTheArcTheAngleIsZero) {
    const ArcTable table(1, 2, 4, 2, 2);
    expect_point(table.point(3, {1, 1}), 5, 1);
}

TEST(ArcTable, BackwardsArcRunsTheOtherWay) {
    const ArcTable table(PI, 0, 3, 3, 2);
    expect_point(table.point(1, {}), 0, 3, 1.0E-2F);
    expect_point(table.point(2, {}), 3, 0);
}

}  // namespace
}  // namespace brelan::test
