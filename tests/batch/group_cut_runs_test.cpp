// Whole runs in which a line cuts squares: ends, divisions, arcs, what a cut adds and how it is numbered.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "batch/group_run.h"

namespace brelan::test {
namespace {

// Nodes 3, 8 and 13 cannot move: a line at x = 2.3 puts nodes on the sides beside them.
const GroupSetting HELD{.lists = {"3", "3 8 13", "0", "0"}};

GroupRun held_run(Kind kind, const Lines& cards) {
    return {kind, 1, cards, squares(kind), HELD};
}

// The outline from x = 2.3 round everything to the right.
Lines right_of_the_line() {
    return {"4 0 0 0 0", "1 2.3 -1", "2 5 -1",  "3 5 3",   "4 2.3 3",
            "4",         "1 1 0 2",  "2 1 0 2", "3 1 0 2", "4 1 0 2"};
}

TEST(GroupCuts, NeighboursShareTheNodeOnTheirSide) {
    for (const Kind kind : ALL_KINDS) {
        const GroupRun run = held_run(kind, Lines{"2", "2 3"} + upright("2.3"));
        run.expect_counts(18, 10, 2, 0);
        EXPECT_EQ(run.element(3).corners[3], 17);
        EXPECT_EQ(run.element(7).corners[0], 17);
        EXPECT_EQ(run.check.mesh.beams.at(0).i, 16);
        EXPECT_EQ(run.check.mesh.beams.at(0).j, 17);
        EXPECT_EQ(run.check.mesh.beams.at(1).j, 18);
        EXPECT_NEAR(run.check.area, 8.0, 1.0E-6);
    }
}

// The triangle 1 2 3 as a quadrilateral that names its last node twice, cut from corner to corner: the marks
// stand at the first and third corner, and the diagonal between these splits it.
TEST(GroupCuts, QuadrilateralThatNamesANodeTwiceIsMarkedAtOneCorner) {
    Mesh mesh = squares(Kind::coupled);
    mesh.nodes.resize(3);
    mesh.nodes[1].x = mesh.nodes[2].x = mesh.nodes[2].y = 4.0;
    mesh.continuum.resize(1);
    mesh.continuum[0].corners = {1, 2, 3, 3};
    const GroupRun run(Kind::coupled, 1, Lines{"2", "0 0", "2 0 0 0 0", "1 0 0", "2 4 4", "1", "1 1 1 0"},
                       mesh);
    run.expect_counts(3, 2, 0, 0);
    EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 2, 3, 0}));
    EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{1, 3, 3, 0}));
}

TEST(GroupCuts, UnknownTypeCutsAndDoesNoMore) {
    for (const char* MTYPE : {"6", "-5"}) {
        const GroupRun run = held_run(Kind::coupled, Lines{MTYPE} + right_of_the_line());
        run.expect_counts(18, 10, 0, 0);
        EXPECT_EQ(run.materials(), std::vector<int>(10, 1));
    }
}

TEST(GroupCuts, MaterialZeroOrLessCutsAndChangesNoElement) {
    for (const char* MAT : {"0", "-7"}) {
        const GroupRun run =
            held_run(Kind::coupled, Lines{"3", std::string(MAT) + " 3 0 0"} + right_of_the_line());
        run.expect_counts(18, 10, 0, 0);
        EXPECT_EQ(run.materials(), std::vector<int>(10, 1));
    }
    const GroupRun seven = held_run(Kind::coupled, Lines{"3", "7 3 0 0"} + right_of_the_line());
    EXPECT_EQ(seven.materials(), (std::vector<int>{1, 1, 7, 7, 1, 1, 7, 7, 1, 1}));
}

// The first part keeps its element's number; the others follow the highest in the order of the rows, and
// carry the material of their element.
TEST(GroupCuts, PartsAreNumberedBehindTheHighest) {
    Mesh mesh = squares(Kind::coupled);
    mesh.continuum[2].material = 3;
    mesh.continuum[6].material = 4;
    mesh.continuum[6].codes[1] = 6;
    const GroupRun run(Kind::coupled, 1, Lines{"2", "0 0"} + upright("2.3"), mesh, HELD);
    EXPECT_EQ(run.materials(), (std::vector<int>{1, 1, 3, 1, 1, 1, 4, 1, 3, 4}));
    EXPECT_EQ(run.element(10).codes[1], 6);
    EXPECT_EQ(run.element(9).codes[1], 0);
}

// --- divisions -----------------------------------------------------------------------------------

TEST(GroupDivisions, NoneIsOnePartSplitAtTheEnd) {
    for (const Kind kind : ALL_KINDS) {
        const GroupRun none = held_run(kind, Lines{"2", "2 3"} + upright("2.3", "0"));
        const GroupRun one = held_run(kind, Lines{"2", "2 3"} + upright("2.3", "-1"));
        none.expect_counts(18, 10, 2, 0);
        EXPECT_EQ(none.result(), one.result());
    }
}

// The middle of the line lies on side 8-9. Split at the end, both neighbours share one node there; split pair
// by pair, the upper square waits with a node that it does not use and the second pair puts its own beside
// it.
TEST(GroupDivisions, SplitAtOnceAndAtTheEndDiffer) {
    const GroupRun at_the_end = held_run(Kind::coupled, Lines{"2", "0 0"} + upright("2.3", "-2"));
    at_the_end.expect_counts(18, 10, 0, 0);
    EXPECT_EQ(at_the_end.element(3).corners, (std::array<int, 4>{16, 4, 9, 17}));
    EXPECT_EQ(at_the_end.element(7).corners, (std::array<int, 4>{17, 9, 14, 18}));
    const GroupRun at_once = held_run(Kind::coupled, Lines{"2", "0 0"} + upright("2.3", "2"));
    at_once.expect_counts(19, 10, 0, 0);
    EXPECT_EQ(at_once.element(3).corners, (std::array<int, 4>{16, 4, 9, 17}));
    EXPECT_EQ(at_once.element(7).corners, (std::array<int, 4>{18, 9, 14, 19}));
    at_once.expect_place(17, 2.3, 1);
    at_once.expect_place(18, 2.3, 1);
}

// From square 1 to square 8: nodes 1 and 15 come to the ends, nothing between is cut, and the line is one
// beam.
TEST(GroupDivisions, EndsAloneMakeOneBeam) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, {"2", "2 3", "2 0 0 0 0", "1 0.3 0.4", "2 3.7 1.6", "1", "1 1 1 0"});
        run.expect_counts(15, 8, 1, 0);
        run.expect_place(1, 0.3, 0.4);
        run.expect_place(15, 3.7, 1.6);
        for (int n = 2; n < 15; ++n)
            run.expect_place(n, (n - 1) % 5, (n - 1) / 5);
        EXPECT_EQ(run.check.mesh.beams.at(0).i, 1);
        EXPECT_EQ(run.check.mesh.beams.at(0).j, 15);
    }
}

// An end well inside a square of frozen nodes becomes a node of its own, and the square four triangles.
TEST(GroupDivisions, EndInsideSplitsASquareIntoTriangles) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 1, {"2", "0 0", "2 0 0 0 0", "1 0.5 0.5", "2 0.5 0.9", "1", "1 1 0 -1"},
                     squares(kind), {.lists = {"4", "1 2 6 7", "0", "0"}});
        run.expect_counts(16, 11, 0, 0);
        run.expect_place(16, 0.5, 0.5);
        EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 2, 16, 0}));
        EXPECT_EQ(run.element(9).corners, (std::array<int, 4>{2, 7, 16, 0}));
        EXPECT_EQ(run.element(10).corners, (std::array<int, 4>{16, 7, 6, 0}));
        EXPECT_EQ(run.element(11).corners, (std::array<int, 4>{1, 16, 6, 0}));
    }
}

// The third segment starts from its own point (10, 3), with its middle above the end of the first: its first
// pair still goes from where the first segment ended, along x = 2.25.
TEST(GroupDivisions, SegmentBehindASkippedOneIsCutFromTheLastPoint) {
    const GroupRun run = held_run(Kind::coupled, {"2", "2 3", "4 0 0 0 0", "1 2.25 -2", "2 2.25 -1", "3 10 3",
                                                  "4 -5.5 3", "3", "1 1 0 3", "2 3 0 2", "3 1 2 2"});
    run.expect_counts(18, 10, 2, 0);
    run.expect_place(16, 2.25, 0);
    run.expect_place(18, 2.25, 2);
}

// --- arcs ----------------------------------------------------------------------------------------

// A free line has a node, and between two a beam, for each part.
TEST(GroupArcs, CountOfPartsComesByTheAngle) {
    struct Arc {
        const char* angles;
        const char* NDIV;
        std::size_t parts;
    };
    for (const Arc& arc : {Arc{"0 10", "0", 20}, Arc{"0 18", "0", 20}, Arc{"0 18.9", "0", 21},
                           Arc{"0 180", "0", 200}, Arc{"180 0", "0", 200}, Arc{"0 180", "-7", 7}}) {
        GroupRun run(Kind::displacement,
                     {"2 0 1", "2 3", "2 0 0 0 0", "1 0 0", "2 0 0", "1",
                      std::string("1 2 ") + arc.NDIV + " 2", std::string("20 20 3 3 ") + arc.angles});
        run.expect_counts(15 + arc.parts + 1, 8, arc.parts, 0);
    }
}

// Where float additions of a step end: they do not end on the start.
double end_of_steps(double from, double to, int parts) {
    const float begin = static_cast<float>(from) * 0.017453292F;
    const float step = (static_cast<float>(to) * 0.017453292F - begin) / static_cast<float>(parts);
    float angle = begin;
    for (int i = 0; i < parts; ++i)
        angle += step;
    return static_cast<double>(angle);
}

// The start of the circle round (2, 1) takes node 9. Begun at 0 degrees, the circle closes on it; begun at
// 10, the end takes the node away again to where the steps have led.
TEST(GroupArcs, FullCircleFromZeroClosesOnItsStart) {
    const auto circle = [](const std::string& angles) {
        return Lines{"3", "7 3 0 0", "1 0 0 0 0", "1 0 0", "1", "1 2 -2000 0", "2 1 1 1 " + angles};
    };
    GroupRun zero(Kind::coupled, circle("0 360"));
    EXPECT_GT(std::abs(end_of_steps(0, 360, 2000) - 2.0 * M_PI), 2.0E-5) << "the steps end beside the start";
    EXPECT_EQ(zero.node(9).x, 3.0);
    EXPECT_EQ(zero.node(9).y, 1.0);
    GroupRun ten(Kind::coupled, circle("10 370"));
    const double end = end_of_steps(10, 370, 2000);
    EXPECT_GT(std::abs(end - 370.0 * M_PI / 180.0), 2.0E-5);
    EXPECT_NEAR(ten.node(9).x, 2.0 + std::cos(end), 5.1E-6) << "six digits";
    EXPECT_NEAR(ten.node(9).y, 1.0 + std::sin(end), 5.1E-6);
}

// --- regions -------------------------------------------------------------------------------------

// An outline from x = 0.5 to 2.5 through the middles of squares 1 and 3: a middle on its left edge is
// outside, as only crossings strictly to the left count, and one on its right edge inside.
TEST(GroupRegions, CentroidOnAnEdgeCountsByTheCrossingsToItsLeft) {
    GroupRun run(Kind::coupled, {"3", "7 3 0 0", "4 0 0 0 0", "1 0.5 -1", "2 2.5 -1", "3 2.5 1", "4 0.5 1",
                                 "4", "1 1 0 3", "2 1 0 3", "3 1 0 3", "4 1 0 3"});
    EXPECT_EQ(run.materials(), (std::vector<int>{1, 7, 7, 1, 1, 1, 1, 1}));
}

// Node 7 as the third corner of square 1, pulled in past the diagonal 2-6; node 6 as its fourth.
TEST(GroupRegions, ConcaveThirdAndFourthCornersAreSplitAtTheirDents) {
    Mesh mesh = squares(Kind::head);
    mesh.nodes[6].x = mesh.nodes[6].y = 0.25;
    GroupRun third(Kind::head, 0, {}, mesh);
    EXPECT_EQ(third.element(1).corners, (std::array<int, 4>{1, 2, 7, 0}));
    EXPECT_EQ(third.element(9).corners, (std::array<int, 4>{1, 7, 6, 0}));
    mesh = squares(Kind::head);
    mesh.nodes[5].x = 0.75;
    mesh.nodes[5].y = 0.25;
    GroupRun fourth(Kind::head, 0, {}, mesh);
    EXPECT_EQ(fourth.element(1).corners, (std::array<int, 4>{1, 2, 6, 0}));
    EXPECT_EQ(fourth.element(9).corners, (std::array<int, 4>{2, 7, 6, 0}));
}

}  // namespace
}  // namespace brelan::test
