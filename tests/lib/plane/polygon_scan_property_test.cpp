// A polygon that is asked for many points answers as scan_polygon does: at the heights of corners, on edges,
// far outside, for polygons that cross themselves, lie flat, double back or have coordinates that are no
// numbers.

#include "plane/polygon_scan.h"

#include <cmath>
#include <limits>

#include "support/group_drawing.h"
#include "support/state.h"

namespace brelan::test {
namespace {

std::vector<Point> polygon(Drawing& drawing, float size) {
    std::vector<Point> points;
    const int count = drawing.one_in(10) ? 1 + drawing.below(2001) : 1 + drawing.below(60);
    const int shape = drawing.below(5);
    for (int i = 0; i < count; ++i) {
        const double angle = 6.2831853 * i / count;
        Point p{drawing.between(-size, size), drawing.between(-size, size)};
        if (shape == 0)
            p = {size * static_cast<float>(std::cos(angle)), size * static_cast<float>(std::sin(angle))};
        else if (shape == 1)  // corners of a few heights
            p.y = static_cast<float>(drawing.below(4)) * size;
        else if (shape == 2)  // from top to bottom and back
            p = {static_cast<float>(i), i % 2 == 0 ? 0.0F : size};
        else if (shape == 3 && i > 0 && drawing.one_in(3))  // the same point again
            p = points.back();
        points.push_back(p);
    }
    return points;
}

TEST(PolygonScan, GivesWhatScanPolygonGives) {
    int inside = 0, outside = 0;
    for (std::uint32_t seed = 1; seed <= 1500 && !testing::Test::HasFailure(); ++seed) {
        Drawing drawing(seed);
        static constexpr std::array<float, 4> sizes{1.0F, 37.5F, 1.0E5F, 1.0E-6F};
        const float size = drawing.one_of(sizes);
        std::vector<Point> points = polygon(drawing, size);
        if (drawing.one_in(15)) {
            static constexpr std::array<float, 3> odd{std::numeric_limits<float>::quiet_NaN(),
                                                      std::numeric_limits<float>::infinity(), 3.0E38F};
            Point& p = points[static_cast<std::size_t>(drawing.below(static_cast<int>(points.size())))];
            (drawing.one_in(2) ? p.x : p.y) = drawing.one_of(odd);
        }
        const PolygonScan scan(true, points);
        for (int i = 0; i < 120; ++i) {
            const auto corner = [&] {
                return points[static_cast<std::size_t>(drawing.below(static_cast<int>(points.size())))];
            };
            Point p{drawing.between(-1.5F * size, 1.5F * size), drawing.between(-1.5F * size, 1.5F * size)};
            if (drawing.one_in(3))
                p.y = corner().y;
            if (drawing.one_in(4))
                p.x = corner().x;
            if (drawing.one_in(4)) {
                const Point a = corner(), b = corner();
                p = {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F};
            }
            const bool expected = scan_polygon(p, points);
            EXPECT_EQ(scan.inside(p), expected) << "seed " << seed << " at " << p.x << ", " << p.y;
            ++(expected ? inside : outside);
        }
    }
    EXPECT_GT(inside, 20000);
    EXPECT_GT(outside, 50000);
}

TEST(PolygonScan, EmptyPolygonHoldsEverythingAndALongOneStops) {
    const std::vector<Point> none, many(2002);
    EXPECT_TRUE(PolygonScan(true, none).inside({5.0F, 5.0F}));
    EXPECT_FALSE(PolygonScan(true, none).has_box());
    const PolygonScan scan(true, many);
    EXPECT_EQ(stop_of([&] { scan.inside({}); }), " NB =         2002\n222");
}

TEST(PolygonScan, WithoutIndexesEveryEdgeIsLookedAt) {
    const std::vector<Point> square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    const PolygonScan scan(false, square);
    EXPECT_FALSE(scan.has_box());
    EXPECT_TRUE(scan.inside({1.0F, 1.0F}));
    EXPECT_FALSE(scan.inside({3.0F, 1.0F}));
}

}  // namespace
}  // namespace brelan::test
