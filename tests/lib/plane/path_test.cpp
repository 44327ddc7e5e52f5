// The path of a group: points of straight segments and arcs, and what a skipped segment leaves out.

#include "plane/path.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace brelan::test {
namespace {

constexpr float DEGREE = 0.017453292F;

// Segments that do not touch the mesh (IEND 3).
class OutlinePath : public ::testing::Test {
protected:
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
    static Path path(OutlineUse use, const std::vector<Point>& points,
                     const std::vector<SegmentRow>& segments) {
        return path_along(points, segments, use, 0.001F);
    }
};

TEST_F(OutlinePath, ClosingPointOfStraightOutlineIsNotRepeated) {
    const Path p =
        path(OutlineUse::region, {{0, 0}, {2, 0}, {0, 2}}, {straight(2), straight(0), straight(-2)});
    ASSERT_EQ(p.points.size(), 5U);
    EXPECT_EQ(p.points[1].x, 1.0F);
    EXPECT_EQ(p.points[4].y, 1.0F);
    EXPECT_EQ(p.edges, 5U);
}

TEST_F(OutlinePath, OpenLineKeepsItsLastPoint) {
    const Path p = path(OutlineUse::line, {{0, 0}, {2, 0}, {2, 2}}, {straight(2), straight(1)});
    EXPECT_EQ(p.points.size(), 4U);
    EXPECT_EQ(p.edges, 3U);
}

TEST_F(OutlinePath, ArcIsDividedByItsAngle) {
    EXPECT_EQ(path(OutlineUse::line, {{2, 0}, {0, 0}}, {arc(0, 10, 0)}).points.size(), 21U);
    EXPECT_EQ(path(OutlineUse::line, {{2, 0}, {-2, 0}}, {arc(0, 180, 0)}).points.size(), 201U);
    EXPECT_EQ(path(OutlineUse::line, {{2, 0}, {-2, 0}}, {arc(180, 0, 0)}).points.size(), 201U);
    EXPECT_EQ(path(OutlineUse::line, {{2, 0}, {-2, 0}}, {arc(0, 180, -7)}).points.size(), 8U);
}

TEST_F(OutlinePath, ClosingArcRepeatsItsLastPoint) {
    const Path p = path(OutlineUse::region, {{2, 0}}, {arc(0, 360, 8)});
    ASSERT_EQ(p.points.size(), 9U);
    EXPECT_EQ(p.edges, 9U);
    EXPECT_NEAR(p.points[8].x, 2.0F, 1.0E-5F);
    EXPECT_NEAR(p.points[2].y, 2.0F, 1.0E-5F);
}

TEST_F(OutlinePath, ArcOfOneAngleIsStraight) {
    const Path p = path(OutlineUse::line, {{9, 9}, {5, 5}}, {arc(90, 90, 2, 4, 2)});
    ASSERT_EQ(p.points.size(), 3U);
    for (const Point& point : p.points) {
        EXPECT_NEAR(point.x, 0.0F, 1.0E-5F);
        EXPECT_NEAR(point.y, 2.0F, 1.0E-5F);
    }
}

TEST_F(OutlinePath, SkippedSegmentMakesThePathJump) {
    const Path p =
        path(OutlineUse::line, {{0, 0}, {1, 0}, {5, 0}, {6, 0}}, {straight(1), straight(1, 3), straight(1)});
    ASSERT_EQ(p.points.size(), 3U);
    EXPECT_EQ(p.points[1].x, 1.0F);
    EXPECT_EQ(p.points[2].x, 6.0F);
}

TEST_F(OutlinePath, SingleSegmentsAreNoted) {
    SegmentRow ends = straight(1);
    ends.end_rule = 0;
    const Path p = path(OutlineUse::line, {{50, 0}, {51, 0}, {52, 0}}, {straight(3), ends});
    ASSERT_EQ(p.single.size(), 1U);
    EXPECT_EQ(p.single[0], 3U);
}

TEST_F(OutlinePath, WithoutSegmentsTheOutlineIsThePath) {
    const Path p = path(OutlineUse::region, {{0, 0}, {2, 0}, {0, 2}}, {});
    EXPECT_EQ(p.points.size(), 3U);
}

TEST_F(OutlinePath, LineWhoseEndsMeetIsClosed) {
    const std::vector<Point> around{{0, 0}, {2, 0}, {0, 2}, {0, 0.0005F}};
    const std::vector<SegmentRow> sides{straight(1), straight(1), straight(1)};
    EXPECT_TRUE(path(OutlineUse::line, around, sides).closed);
    EXPECT_EQ(path(OutlineUse::line, around, sides).points.size(), 3U);
    EXPECT_FALSE(path(OutlineUse::line, {{0, 0}, {2, 0}, {0, 2}, {0, 0.002F}}, sides).closed);
}

// The cut of a segment begins where the one before it ended, and a full circle is closed exactly.
TEST_F(OutlinePath, PiecesHangTogether) {
    const Path p =
        path(OutlineUse::line, {{0, 0}, {9, 9}, {9, 9}, {5, 5}}, {straight(2), arc(0, 90, 3), straight(1)});
    ASSERT_EQ(p.pieces.size(), 3U);
    EXPECT_EQ(p.pieces[1].parts, 3U);
    for (std::size_t k = 1; k < p.pieces.size(); ++k)
        EXPECT_EQ(p.pieces[k].start, p.pieces[k - 1].end);
    for (const PathPiece& piece : p.pieces)
        for (std::size_t i = 1; i <= piece.parts; ++i)
            EXPECT_EQ(p.point_of(piece, i), p.points[piece.first + i - 1]);
    const Path circle = path(OutlineUse::region, {{2, 0}}, {arc(0, 360, 8)});
    EXPECT_EQ(circle.pieces[0].end, circle.pieces[0].start);
}

TEST_F(OutlinePath, EndsBeforeASegmentOfTooManyParts) {
    const Path p =
        path(OutlineUse::line, {{0, 0}, {1, 0}, {2, 0}, {3, 0}}, {straight(2), straight(-2002), straight(1)});
    ASSERT_TRUE(p.overlong);
    EXPECT_EQ(p.overlong->segment, 1U);
    EXPECT_EQ(p.overlong->parts, 2002);
    EXPECT_EQ(p.points.size(), 3U);
    EXPECT_FALSE(path(OutlineUse::line, {{0, 0}, {1, 0}}, {straight(2001)}).overlong);
    EXPECT_TRUE(path(OutlineUse::line, {{0, 0}, {1, 0}}, {arc(0, 36000, 0)}).overlong);
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();  // has no opposite
    EXPECT_TRUE(path(OutlineUse::line, {{0, 0}, {1, 0}}, {straight(lowest)}).overlong);
    EXPECT_TRUE(path(OutlineUse::line, {{0, 0}, {1, 0}}, {arc(0, 90, lowest)}).overlong);
}

TEST_F(OutlinePath, ArcGivesItsEndsToTheOutline) {
    const Segment quarter = ends_of_arc(arc(0, 90, 4, 4, 2));
    EXPECT_NEAR(quarter.from.x, 4.0F, 1.0E-5F);
    EXPECT_NEAR(quarter.to.y, 2.0F, 1.0E-5F);
    const Segment alike = ends_of_arc(arc(90, 90, 4, 4, 2));
    EXPECT_NEAR(alike.from.y, 2.0F, 1.0E-5F);
    EXPECT_NEAR(alike.to.y, 2.0F, 1.0E-5F);
    EXPECT_NEAR(ends_of_arc(arc(0, 0, 4, 4, 2)).to.x, 2.0F, 1.0E-5F)
        << "on the circle of the upper half axis";
}

}  // namespace
}  // namespace brelan::test
