#include <gtest/gtest.h>

#include <cmath>

#include "analysis/counts.h"
#include "analysis/geometry.h"
#include "analysis/quality.h"
#include "support/mesh_sample.h"

namespace brelan::test {
namespace {

Shape shape(std::initializer_list<Position> points) {
    Sample sample;
    sample.nodes(points);
    std::vector<Number> corners{1, 2, 3};
    if (points.size() == 4)
        corners.push_back(4);
    const MeshLists mesh = sample.solid(corners).mesh();
    return shape_of(mesh, corners_of(mesh)[0]);
}

TEST(Quality, SquareAndRectangle) {
    const Shape square = shape({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    EXPECT_NEAR(square.smallest_angle, 90.0, 1e-12);
    EXPECT_NEAR(square.largest_angle, 90.0, 1e-12);
    EXPECT_DOUBLE_EQ(square.aspect_ratio, 1.0);
    EXPECT_DOUBLE_EQ(square.area, 4.0);
    const Shape rectangle = shape({{0, 0}, {2, 0}, {2, 1}, {0, 1}});
    EXPECT_DOUBLE_EQ(rectangle.aspect_ratio, 1.5);  // 2 * 6 / (4 * 2)
    EXPECT_DOUBLE_EQ(rectangle.shortest_side, 1.0);
    EXPECT_DOUBLE_EQ(rectangle.longest_side, 2.0);
}

TEST(Quality, TriangleOfSidesThreeFourFive) {
    const Shape s = shape({{0, 0}, {4, 0}, {0, 3}});
    EXPECT_NEAR(s.smallest_angle, 36.8698976458, 1e-9);  // atan 3/4
    EXPECT_NEAR(s.largest_angle, 90.0, 1e-9);
    EXPECT_DOUBLE_EQ(s.area, 6.0);
    EXPECT_NEAR(s.aspect_ratio, 60.0 / (24.0 * std::sqrt(3.0)), 1e-12);
}

TEST(Quality, EquilateralTriangleHasAspectRatioOne) {
    EXPECT_NEAR(shape({{0, 0}, {1, 0}, {0.5, std::sqrt(0.75)}}).aspect_ratio, 1.0, 1e-7);
}

TEST(Quality, AngleAtACornerPushedInIsAbove180) {
    // The sides at the corner make 126.87 degrees, whose cosine is -0.6, seen from outside.
    EXPECT_NEAR(shape({{0, 0}, {2, 0}, {0.5, 0.5}, {0, 2}}).largest_angle, 360.0 - 126.8698976458, 1e-9);
}

TEST(Quality, ClockwiseElementsHaveTheSameAngles) {
    const Shape s = shape({{0, 0}, {0, 3}, {4, 0}});
    EXPECT_NEAR(s.smallest_angle, 36.8698976458, 1e-9);
    EXPECT_DOUBLE_EQ(s.area, 6.0);
}

TEST(Quality, ElementWithoutAreaHasAnInfiniteAspectRatio) {
    EXPECT_TRUE(std::isinf(shape({{0, 0}, {1, 0}, {2, 0}}).aspect_ratio));
}

TEST(Quality, WorstElementsComeInOrderAndJointsAreLeftOut) {
    // Rectangles 1, 2, 3 and 4 wide, 1 high: aspect ratios 1, 1.5, 2, 2.5.
    Sample sample;
    for (int w = 1; w <= 4; ++w)
        sample.nodes({{0, 0}, {w * 1.0, 0}, {w * 1.0, 1}, {0, 1}})
            .solid({4 * w - 3, 4 * w - 2, 4 * w - 1, 4 * w});
    sample.joint({1, 2, 2, 1});
    const MeshLists mesh = sample.mesh();
    const Quality q = measure_quality(mesh, corners_of(mesh), 2);
    EXPECT_EQ(q.solids, 4U);
    ASSERT_EQ(q.aspect_ratio.worst.size(), 2U);
    EXPECT_EQ(q.aspect_ratio.worst[0].element, 4);
    EXPECT_DOUBLE_EQ(q.aspect_ratio.worst[0].value, 2.5);
    EXPECT_EQ(q.aspect_ratio.worst[1].element, 3);
    EXPECT_DOUBLE_EQ(q.aspect_ratio.mean, 1.75);
    EXPECT_EQ(q.area.worst[0].element, 1);
    EXPECT_DOUBLE_EQ(q.area.largest, 4.0);
    EXPECT_EQ(q.by_angle[4], 4U);
}

TEST(Counts, AreasAndLengthsByMaterial) {
    const MeshLists mesh = Sample()
                               .nodes({{0, 0}, {3, 0}, {3, 4}, {0, 4}, {3, 0}, {3, 4}})
                               .solid({1, 2, 3, 4}, 2)
                               .solid({1, 2, 3}, 1)
                               .joint({2, 3, 6, 5}, 7)
                               .beam(1, 3, 1)
                               .truss(1, 2, 4)
                               .mesh();
    const Counts counts = count_mesh(mesh, corners_of(mesh));
    ASSERT_EQ(counts.materials.size(), 5U);
    EXPECT_EQ(counts.materials[0].material, 1);
    EXPECT_DOUBLE_EQ(counts.materials[0].area, 6.0);
    EXPECT_DOUBLE_EQ(counts.materials[1].area, 12.0);
    EXPECT_EQ(counts.materials[2].of, ElementClass::joint);
    EXPECT_DOUBLE_EQ(counts.materials[2].length, 4.0);
    EXPECT_DOUBLE_EQ(counts.materials[2].area, 0.0);
    EXPECT_DOUBLE_EQ(counts.materials[3].length, 5.0);
    EXPECT_DOUBLE_EQ(counts.materials[4].length, 3.0);
    EXPECT_DOUBLE_EQ(counts.area, 18.0);
    EXPECT_EQ(counts.triangles, 1U);
    EXPECT_EQ(counts.quadrilaterals, 1U);
    EXPECT_EQ(counts.nodes.high, 6);
}

TEST(Counts, AreaIsThatOfThe32BitCoordinatesWithoutLossFarFromZero) {
    // At 1,000,000 32-bit numbers lie 1/16 apart: a square of a quarter is exact.
    const MeshLists mesh =
        Sample()
            .nodes({{1e6, 1e6}, {1e6 + 0.5, 1e6}, {1e6 + 0.5, 1e6 + 0.5}, {1e6, 1e6 + 0.5}})
            .solid({1, 2, 3, 4})
            .mesh();
    EXPECT_DOUBLE_EQ(count_mesh(mesh, corners_of(mesh)).area, 0.25);
}

//  3
//  | \    the slanting side goes through (1, 1)
//  1---2
TEST(ShowsIn, NeedsAreaInCommonWithTheWindow) {
    const MeshLists mesh = Sample().nodes({{0, 0}, {2, 0}, {0, 2}}).solid({1, 2, 3}).mesh();
    const auto shows = [&](Position low, Position high) {
        return shows_in(mesh, corners_of(mesh)[0], {low, high});
    };
    EXPECT_TRUE(shows({-1, -1}, {3, 3}));
    EXPECT_TRUE(shows({0.25, 0.25}, {0.5, 0.5}));
    EXPECT_TRUE(shows({0.9, 0.9}, {3, 3}));
    EXPECT_FALSE(shows({1.1, 1.1}, {1.9, 1.9}));  // beyond the slanting side
    EXPECT_FALSE(shows({2.5, 0}, {3, 1}));
    EXPECT_FALSE(shows({-1, 0}, {-0.5, 1}));
    EXPECT_FALSE(shows({0, 2.5}, {1, 3}));
    EXPECT_FALSE(shows({0, -1}, {1, -0.5}));
    EXPECT_FALSE(shows({-1, 0}, {0, 1}));  // a side alone
}

}  // namespace
}  // namespace brelan::test
