// The path of a group: points of straight segments and arcs, and what a skipped segment leaves out.

#include "group/path.h"

#include <cmath>

#include <vector>

#include "support/state.h"

namespace brelan::test {
namespace {

constexpr float DEGREE = 0.017453292F;

// Segments that do not touch the mesh (IEND 3).
class GroupPath : public ::testing::Test {
protected:
    void SetUp() override { state.engine.group = 1; }
    static SegmentRow straight(std::int32_t divisions, std::int32_t segment_type = 1) {
        SegmentRow row;
        row.segment_type = segment_type;
        row.divisions = divisions;
        row.end_rule = 3;
        return row;
    }
    static SegmentRow arc(float from, float to, std::int32_t divisions, float Rx = 2.0F, float Ry = 2.0F) {
        SegmentRow row = straight(divisions, 2);
        row.half_axis_x = Rx;
        row.half_axis_y = Ry;
        row.begin_angle = from * DEGREE;
        row.end_angle = to * DEGREE;
        return row;
    }
    static Path path(std::int32_t group_type, const std::vector<Point>& points,
                     const std::vector<SegmentRow>& segments) {
        Outline outline;
        outline.group.group_type = group_type;
        outline.group.segment_count = static_cast<std::int32_t>(segments.size());
        outline.group.point_count = static_cast<std::int32_t>(points.size());
        outline.point.resize(points.size() + 2);
        for (std::size_t i = 0; i < points.size(); ++i)
            outline.point[i + 1] = points[i];
        for (std::size_t k = 0; k < segments.size(); ++k)
            state.deck.groups.segments[1][static_cast<std::int32_t>(k) + 1] = segments[k];
        return build_path(state.mesh, state.deck.groups, state.tolerances, state.engine, 1, outline);
    }
};

TEST_F(GroupPath, ClosingPointOfStraightOutlineIsNotRepeated) {
    const Path p = path(3, {{0, 0}, {2, 0}, {0, 2}}, {straight(2), straight(0), straight(-2)});
    ASSERT_EQ(p.point.size(), 5U);
    EXPECT_EQ(p.point[1].x, 1.0F);
    EXPECT_EQ(p.point[4].y, 1.0F);
    EXPECT_EQ(p.edges, 5U);
}

TEST_F(GroupPath, OpenLineKeepsItsLastPoint) {
    const Path p = path(2, {{0, 0}, {2, 0}, {2, 2}}, {straight(2), straight(1)});
    EXPECT_EQ(p.point.size(), 4U);
    EXPECT_EQ(p.edges, 3U);
}

TEST_F(GroupPath, ArcIsDividedByItsAngle) {
    EXPECT_EQ(path(2, {{2, 0}, {0, 0}}, {arc(0, 10, 0)}).point.size(), 21U);
    EXPECT_EQ(path(2, {{2, 0}, {-2, 0}}, {arc(0, 180, 0)}).point.size(), 201U);
    EXPECT_EQ(path(2, {{2, 0}, {-2, 0}}, {arc(180, 0, 0)}).point.size(), 201U);
    EXPECT_EQ(path(2, {{2, 0}, {-2, 0}}, {arc(0, 180, -7)}).point.size(), 8U);
}

TEST_F(GroupPath, ClosingArcRepeatsItsLastPoint) {
    const Path p = path(3, {{2, 0}}, {arc(0, 360, 8)});
    ASSERT_EQ(p.point.size(), 9U);
    EXPECT_EQ(p.edges, 9U);
    EXPECT_NEAR(p.point[8].x, 2.0F, 1.0E-5F);
    EXPECT_NEAR(p.point[2].y, 2.0F, 1.0E-5F);
}

TEST_F(GroupPath, ArcOfOneAngleIsStraight) {
    const Path p = path(2, {{9, 9}, {9, 9}}, {arc(90, 90, 2, 4, 2)});
    ASSERT_EQ(p.point.size(), 3U);
    for (const Point& point : p.point) {
        EXPECT_NEAR(point.x, 0.0F, 1.0E-5F);
        EXPECT_NEAR(point.y, 2.0F, 1.0E-5F);
    }
}

TEST_F(GroupPath, SkippedSegmentMakesThePathJump) {
    const Path p = path(2, {{0, 0}, {1, 0}, {5, 0}, {6, 0}}, {straight(1), straight(1, 3), straight(1)});
    ASSERT_EQ(p.point.size(), 3U);
    EXPECT_EQ(p.point[1].x, 1.0F);
    EXPECT_EQ(p.point[2].x, 6.0F);
}

TEST_F(GroupPath, SingleSegmentsAreNoted) {
    SegmentRow ends = straight(1);
    ends.end_rule = 0;
    const Path p = path(2, {{50, 0}, {51, 0}, {52, 0}}, {straight(3), ends});
    ASSERT_EQ(p.single.size(), 1U);
    EXPECT_EQ(p.single[0], 3U);
}

TEST_F(GroupPath, WithoutSegmentsTheOutlineIsThePath) {
    const Path p = path(3, {{0, 0}, {2, 0}, {0, 2}}, {});
    EXPECT_EQ(p.point.size(), 3U);
}

}  // namespace
}  // namespace brelan::test
