// A point in a polygon.

#include "plane/polygon_scan.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/state.h"

namespace brelan::test {
namespace {

const std::vector<Point> SQUARE{{0, 0}, {2, 0}, {2, 2}, {0, 2}};

bool scan(const Point& point, const std::vector<Point>& polygon) {
    return scan_polygon(point, polygon);
}

TEST(ScanPolygon, EmptyPolygonContainsEverything) {
    EXPECT_TRUE(scan({5, 5}, {}));
    EXPECT_TRUE(scan({5, 0}, {}));
}

TEST(ScanPolygon, CrossingsStrictlyLeftCount) {
    EXPECT_TRUE(scan({1, 1}, SQUARE));
    EXPECT_FALSE(scan({3, 1}, SQUARE));
    EXPECT_FALSE(scan({-1, 1}, SQUARE));
    EXPECT_FALSE(scan({0, 1}, SQUARE)) << "on the left side";
    EXPECT_TRUE(scan({2, 1}, SQUARE)) << "on the right side";
}

TEST(ScanPolygon, TopEndCountsAndBottomEndDoesNot) {
    EXPECT_TRUE(scan({1, 2}, SQUARE));
    EXPECT_FALSE(scan({1, 0}, SQUARE));
}

// The corner at (-2, 2) ends one edge and begins another: it counts once.
TEST(ScanPolygon, CornerBetweenTwoHeightsCountsOnce) {
    const std::vector<Point> diamond{{0, 0}, {2, 2}, {0, 4}, {-2, 2}};
    EXPECT_TRUE(scan({0, 2}, diamond));
    EXPECT_FALSE(scan({3, 2}, diamond));
}

// A peak counts twice and a dip not at all, so neither turns the answer; were one end of each counted, the
// point at its right would.
TEST(ScanPolygon, PeakCountsTwiceAndDipNotAtAll) {
    const std::vector<Point> peak{{0, 1}, {1, 3}, {2, 1}, {9, 1}, {9, 5}, {-9, 5}, {-9, 1}};
    EXPECT_TRUE(scan({5, 3}, peak));
    const std::vector<Point> dip{{-9, 1}, {9, 1}, {9, 5}, {2, 5}, {1, 3}, {0, 5}, {-9, 5}};
    EXPECT_TRUE(scan({5, 3}, dip));
    EXPECT_TRUE(scan({1, 3}, dip));
    EXPECT_FALSE(scan({3, 2}, {{0, 0}, {4, 0}, {2, 2}}));
    EXPECT_FALSE(scan({3, 1}, {{2, 1}, {4, 3}, {0, 3}}));
}

TEST(ScanPolygon, FirstPointMayStandAtTheEndAgain) {
    std::vector<Point> closed = SQUARE;
    closed.push_back(SQUARE[0]);
    EXPECT_TRUE(scan({1, 1}, closed));
    EXPECT_FALSE(scan({3, 1}, closed));
}

TEST(ScanPolygon, ClockwiseIsTheSame) {
    EXPECT_TRUE(scan({1, 1}, {{0, 2}, {2, 2}, {2, 0}, {0, 0}}));
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
    EXPECT_TRUE(scan({1, 1}, with_points(2001)));
    EXPECT_FALSE(scan({3, 1}, with_points(2001)));
}

TEST(ScanPolygon, OnePointMoreStopsTheRun) {
    EXPECT_EQ(stop_of([] { scan({1, 1}, with_points(2002)); }), " NB =         2002\n222");
}

}  // namespace
}  // namespace brelan::test
