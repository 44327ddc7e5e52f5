// Triangulations of small polygons: they fill the polygon, keep what is fixed, and have no flat triangle.
#include "plane/triangulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "plane/orientation.h"
#include "support/campaign.h"

namespace brelan {
namespace {

double area_of(const std::vector<Point>& points, const Triangulation::Part& part) {
    double area = 0.0;
    const std::size_t n = part[3] < 0 ? 3 : 4;
    for (std::size_t i = 0; i < n; ++i) {
        const Point &a = points[static_cast<std::size_t>(part[i])],
                    &b = points[static_cast<std::size_t>(part[(i + 1) % n])];
        area += static_cast<double>(a.x) * static_cast<double>(b.y) -
                static_cast<double>(b.x) * static_cast<double>(a.y);
    }
    return area / 2.0;
}

double area_of(const Triangulation& triangulation) {
    double area = 0.0;
    for (const Triangulation::Part& part : triangulation.parts())
        area += area_of(triangulation.points(), part);
    return area;
}

void expect_convex(const Triangulation& triangulation) {
    for (const Triangulation::Part& part : triangulation.parts()) {
        const std::size_t n = part[3] < 0 ? 3 : 4;
        for (std::size_t i = 0; i < n; ++i) {
            const auto at = [&](std::size_t k) {
                return triangulation.points()[static_cast<std::size_t>(part[k % n])];
            };
            EXPECT_GT(orientation(at(i), at(i + 1), at(i + 2)), 0);
        }
    }
}

bool has_edge(const Triangulation& triangulation, int a, int b) {
    for (const Triangulation::Part& part : triangulation.parts()) {
        const std::size_t n = part[3] < 0 ? 3 : 4;
        for (std::size_t i = 0; i < n; ++i)
            if (std::set<int>{part[i], part[(i + 1) % n]} == std::set<int>{a, b})
                return true;
    }
    return false;
}

const std::vector<Point> SQUARE{{0, 0}, {1, 0}, {1, 1}, {0, 1}};

// A way across the mouth of a bay, over a corner of it, runs outside.
TEST(Triangulation, FixesNoEdgeThatRunsOutside) {
    const std::vector<Point> bays{{0, 0}, {5, 0}, {5, 2}, {4, 2}, {4, 1}, {3, 1},
                                  {3, 2}, {2, 2}, {2, 1}, {1, 1}, {1, 2}, {0, 2}};
    Triangulation triangulation(bays);
    EXPECT_FALSE(triangulation.fix(10, 7, 0.001)) << "one mouth";
    EXPECT_FALSE(triangulation.fix(10, 3, 0.001)) << "both, over the land between them";
    EXPECT_FALSE(triangulation.fix(10, 6, 0.001)) << "one, and a side of that land";
    EXPECT_TRUE(triangulation.fix(6, 7, 0.001)) << "a side";
    EXPECT_EQ(area_of(triangulation), 8.0);
}

TEST(Triangulation, OfASquareIsTheSquare) {
    const Triangulation triangulation(SQUARE);
    ASSERT_EQ(triangulation.parts().size(), 1U);
    EXPECT_EQ(triangulation.parts()[0], (Triangulation::Part{0, 1, 2, 3}));
}

TEST(Triangulation, BetweenOppositeSidesIsTwoQuadrilaterals) {
    Triangulation triangulation(std::vector<Point>{{0, 0}, {0.4F, 0}, {1, 0}, {1, 1}, {0.6F, 1}, {0, 1}});
    ASSERT_TRUE(triangulation.fix(1, 4, 1e-3));
    triangulation.improve();
    ASSERT_EQ(triangulation.parts().size(), 2U);
    EXPECT_EQ(triangulation.parts()[0], (Triangulation::Part{0, 1, 4, 5}));
    EXPECT_EQ(triangulation.parts()[1], (Triangulation::Part{1, 2, 3, 4}));
}

TEST(Triangulation, CrossingChainsShareAPoint) {
    Triangulation triangulation(SQUARE);
    ASSERT_TRUE(triangulation.fix(0, 2, 1e-3));
    ASSERT_TRUE(triangulation.fix(1, 3, 1e-3));
    ASSERT_EQ(triangulation.points().size(), 5U);
    EXPECT_EQ(triangulation.points()[4], (Point{0.5F, 0.5F}));
    EXPECT_EQ(triangulation.parts().size(), 4U);
    for (int corner = 0; corner < 4; ++corner)
        EXPECT_TRUE(triangulation.is_fixed(corner, 4));
}

TEST(Triangulation, AChainRunsThroughPointsThatLieOnIt) {
    Triangulation triangulation(SQUARE);
    const int middle = triangulation.add_inside({0.5F, 0.5002F});
    ASSERT_TRUE(triangulation.fix(0, 2, 1e-3));
    EXPECT_EQ(triangulation.points().size(), 5U);
    EXPECT_TRUE(triangulation.is_fixed(0, middle));
    EXPECT_TRUE(triangulation.is_fixed(middle, 2));
}

TEST(Triangulation, ASlitEndsInside) {
    Triangulation triangulation(std::vector<Point>{{0, 0}, {0.5F, 0}, {1, 0}, {1, 1}, {0, 1}});
    const int end = triangulation.add_inside({0.5F, 0.6F});
    ASSERT_TRUE(triangulation.fix(1, end, 1e-3));
    triangulation.improve();
    EXPECT_TRUE(has_edge(triangulation, 1, end));
    EXPECT_NEAR(area_of(triangulation), 1.0, 1e-12);
    expect_convex(triangulation);
}

TEST(Triangulation, NoTriangleLiesAlongAStraightSide) {
    for (const float bend : {-6.0e-8F, 0.0F, 6.0e-8F}) {
        const Triangulation triangulation(
            std::vector<Point>{{0, 0}, {0.3F, bend}, {0.7F, bend}, {1, 0}, {0.5F, 0.8F}});
        EXPECT_EQ(triangulation.points().size(), 5U);
        for (const Triangulation::Part& part : triangulation.parts())
            EXPECT_GT(area_of(triangulation.points(), part), 0.05);
        EXPECT_NEAR(area_of(triangulation), 0.4, 1e-6);
    }
}

TEST(Triangulation, OfASideThatIsDrawnInStaysOutsideTheNotch) {
    const std::vector<Point> ring{{0, 0}, {0.5F, 0.3F}, {1, 0}, {1, 1}, {0, 1}};
    const Triangulation triangulation(ring);
    EXPECT_FALSE(has_edge(triangulation, 0, 2));
    EXPECT_NEAR(area_of(triangulation), 0.85, 1e-7);
    expect_convex(triangulation);
}

// Rounding puts the opening of its narrow corners 2 in 10^16 below 0.
TEST(Triangulation, OfATriangleWithoutWidthIsTheTriangle) {
    const std::vector<Point> narrow{
        {9.125F, 0.5F}, {0x1.2a2f54p+2F, 0x1.b5b238p-4F}, {0x1.b8b9e4p+2F, 0x1.363232p-2F}};
    ASSERT_LT(openings_of(narrow).smallest, 0.0);
    ASSERT_GT(orientation(narrow[0], narrow[1], narrow[2]), 0);
    EXPECT_EQ(Triangulation(narrow).parts(), (std::vector<Triangulation::Part>{{0, 1, 2, -1}}));
}

TEST(Triangulation, OfNoPolygonIsEmpty) {
    EXPECT_TRUE(Triangulation(std::vector<Point>{{0, 0}, {0, 1}, {1, 1}, {1, 0}}).parts().empty());
    EXPECT_EQ(Triangulation(SQUARE).add_inside({2, 2}), -1);
}

TEST(Triangulation, FillsRandomPolygonsWithChainsAndPoints) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> any(0.05F, 0.95F);
    for (int i = 0; i < test::rounds(2000); ++i) {
        std::vector<Point> ring{{0, 0}};
        for (int k = i % 4; k > 0; --k)
            ring.push_back({static_cast<float>(4 - k) / 4.0F, 0});
        ring.insert(ring.end(), {{1, 0}, {1, any(random)}, {1, 1}, {0, 1}});
        Triangulation triangulation(ring);
        std::vector<int> inside;
        for (int k = 0; k < 5; ++k)
            inside.push_back(triangulation.add_inside({any(random), any(random)}));
        std::vector<std::pair<int, int>> chains{
            {inside[0], inside[1]}, {inside[2], inside[3]}, {0, inside[4]}};
        bool fixed = true;
        for (const auto& [a, b] : chains)
            fixed = fixed && triangulation.fix(a, b, 1e-3);
        triangulation.improve();
        ASSERT_TRUE(fixed) << i;
        ASSERT_NEAR(area_of(triangulation), 1.0, 1e-6) << i;
        expect_convex(triangulation);
        for (const auto& [a, b] : triangulation.fixed_edges())
            ASSERT_TRUE(has_edge(triangulation, a, b)) << i;
    }
}

TEST(Triangulation, HoldsWhatCanBePutInside) {
    std::mt19937 random(17);
    std::uniform_real_distribution<float> any(-0.5F, 1.5F);
    int inside = 0;
    for (int i = 0; i < test::rounds(500); ++i) {
        Triangulation triangulation(SQUARE);
        const Point point{any(random), i % 4 == 0 ? 0.0F : any(random)};
        const bool held = triangulation.holds(point);
        ASSERT_EQ(held, triangulation.add_inside(point) == 4) << i;
        inside += held ? 1 : 0;
    }
    EXPECT_GT(10 * inside, test::rounds(500));
    EXPECT_FALSE(Triangulation(std::vector<Point>{{0, 0}, {0, 1}, {1, 1}, {1, 0}}).holds({0.5F, 0.5F}));
}

TEST(Triangulation, PointOnAnEdgeDividesTheTrianglesOnBothSides) {
    Triangulation triangulation(SQUARE);
    EXPECT_EQ(triangulation.add_inside({0.5F, 0.5F}), 4);
    EXPECT_NEAR(area_of(triangulation), 1.0, 1e-6);
    for (int corner = 0; corner < 4; ++corner)
        EXPECT_TRUE(has_edge(triangulation, corner, 4)) << corner;
}

// The ring's first corner lies within its lower side.
TEST(Triangulation, ChainGoesThroughTheFirstPointWhereItLiesOnIt) {
    Triangulation triangulation(std::vector<Point>{{1, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}});
    ASSERT_TRUE(triangulation.fix(4, 1, 1e-3));
    EXPECT_EQ(triangulation.fixed_edges(), (std::set<std::pair<int, int>>{{0, 1}, {0, 4}}));
}

}  // namespace
}  // namespace brelan
