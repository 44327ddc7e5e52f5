// Whole runs with groups over eight unit squares. The lines run along sides, so that every count, number and
// material can be told by hand.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "batch/group_run.h"

namespace brelan::test {
namespace {

// The attribute that a group's KF of 3 gives.
void expect_attribute(const MeshElement& e, Kind kind, int value) {
    switch (kind) {
        case Kind::coupled:
            EXPECT_EQ(e.codes[0], 0);
            EXPECT_EQ(e.codes[1], value);
            break;
        case Kind::displacement:
            EXPECT_EQ(e.reals[0], 1.0);
            EXPECT_EQ(e.reals[1], value);
            break;
        default:
            EXPECT_EQ(e.codes[0], value);
    }
}

TEST(GroupRuns, NoGroupLeavesTheMesh) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 0, {}, squares(kind));
        run.expect_counts(15, 8, 0, 0);
        EXPECT_TRUE(run.members().empty());
        EXPECT_TRUE(run.check.problems.empty());
    }
}

// A node that is only between corners counts as not in use: also where nothing is cut.
TEST(GroupRuns, MidsideNodesGoAndTheirNumbersStay) {
    for (const Kind kind : {Kind::coupled, Kind::displacement}) {
        Mesh mesh = squares(kind);
        MeshNode between = mesh.nodes.back();
        between.number = 16;
        between.x = 3.5;
        mesh.nodes.push_back(between);
        mesh.continuum.back().midsides[0] = 16;
        GroupRun run(kind, 0, {}, mesh);
        run.expect_counts(15, 8, 0, 0);
        EXPECT_EQ(run.element(8).midsides, (std::array<int, 4>{16, 0, 0, 0}));
    }
}

TEST(GroupRuns, NoGroupStillRepairsQuadrilaterals) {
    Mesh clockwise = squares(Kind::coupled);
    clockwise.continuum[0].corners = {1, 6, 7, 2};
    GroupRun run(Kind::coupled, 0, {}, clockwise);
    run.expect_counts(15, 9, 0, 0);
    EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 6, 2, 0}));
    EXPECT_EQ(run.element(9).corners, (std::array<int, 4>{6, 7, 2, 0}));
}

// Node 2 pushed inwards past the diagonal 1-7: concave at the second corner; node 1, at the first.
TEST(GroupRuns, ConcaveQuadrilateralIsSplitAtItsDent) {
    Mesh mesh = squares(Kind::displacement);
    mesh.nodes[1].x = 0.25;
    mesh.nodes[1].y = 0.75;
    GroupRun second(Kind::displacement, 0, {}, mesh);
    EXPECT_EQ(second.element(1).corners, (std::array<int, 4>{1, 2, 6, 0}));
    EXPECT_EQ(second.element(9).corners, (std::array<int, 4>{2, 7, 6, 0}));
    mesh = squares(Kind::displacement);
    mesh.nodes[0].x = 0.75;
    mesh.nodes[0].y = 0.75;
    GroupRun first(Kind::displacement, 0, {}, mesh);
    EXPECT_EQ(first.element(1).corners, (std::array<int, 4>{1, 2, 7, 0}));
    EXPECT_EQ(first.element(9).corners, (std::array<int, 4>{1, 7, 6, 0}));
}

TEST(GroupRuns, DeletesInsideOrOutside) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun inside(kind, Lines{"1", "0 0"} + outline());
        inside.expect_counts(15, 6, 0, 0);
        EXPECT_TRUE(inside.members().empty());
        GroupRun outside(kind, Lines{"-1"} + outline());
        outside.expect_counts(6, 2, 0, 0);
        EXPECT_TRUE(outside.members().empty());
        EXPECT_DOUBLE_EQ(outside.check.area, 2.0);
    }
}

TEST(GroupRuns, MaterialInside) {
    for (const Kind kind : ALL_KINDS)
        for (const char* IEND : {"2", "3"}) {
            GroupRun run(kind, Lines{"3", "7 3 0 0"} + outline(IEND));
            run.expect_counts(15, 8, 0, 0);
            EXPECT_EQ(run.materials(), (std::vector<int>{1, 7, 1, 1, 1, 7, 1, 1})) << name_of(kind);
            expect_attribute(run.element(6), kind, 3);
            EXPECT_EQ(run.members(), (Lines{"1 7 2 1 0", "1 7 6 1 0"}));
        }
}

TEST(GroupRuns, MaterialZeroOrLessChangesNothing) {
    for (const char* MAT : {"0", "-7"}) {
        GroupRun run(Kind::coupled, Lines{"3", std::string(MAT) + " 3 0 0"} + outline());
        EXPECT_EQ(run.materials(), std::vector<int>(8, 1));
    }
}

TEST(GroupRuns, OverlayDoublesAndDoublesTakeNoMoreMaterial) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 2, Lines{"3 0 1", "7 3 0 0"} + outline() + Lines{"3", "5 3 0 0"} + outline(),
                     squares(kind));
        run.expect_counts(15, 10, 0, 0);
        EXPECT_EQ(run.materials(), (std::vector<int>{1, 5, 1, 1, 1, 5, 1, 1, 7, 7})) << name_of(kind);
        EXPECT_EQ(run.element(9).corners, run.element(2).corners);
        EXPECT_EQ(run.members(), (Lines{"1 5 2 1 0", "2 5 2 1 0", "1 5 6 1 0", "2 5 6 1 0", "1 7 9 1 0",
                                        "2 7 9 1 0", "1 7 10 1 0", "2 7 10 1 0"}));
    }
}

TEST(GroupRuns, DuplicatesForStages) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, Lines{"4", "7 3 0 0 0"} + outline());
        EXPECT_EQ(run.materials(), (std::vector<int>{1, 8, 1, 1, 1, 8, 1, 1, 7, 7})) << name_of(kind);
        expect_attribute(run.element(9), kind, 3);
        GroupRun old(kind, Lines{"4", "7 3 0 0 4"} + outline());
        EXPECT_EQ(old.materials(), (std::vector<int>{1, 4, 1, 1, 1, 4, 1, 1, 7, 7}));
        GroupRun kept(kind, Lines{"4", "-7 3 0 0"} + outline());
        EXPECT_EQ(kept.materials(), (std::vector<int>{1, 1, 1, 1, 1, 1, 1, 1, 7, 7}));
    }
}

TEST(GroupRuns, UnknownTypeOnlyCuts) {
    GroupRun run(Kind::coupled, Lines{"6"} + UPWARDS);
    run.expect_counts(15, 8, 0, 0);
    EXPECT_EQ(run.materials(), std::vector<int>(8, 1));
}

// --- lines ---------------------------------------------------------------------------------------

TEST(GroupRuns, BeamsAndTrussesAlongALine) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun beams(kind, Lines{"2", "2 3"} + UPWARDS);
        beams.expect_counts(15, 8, 2, 0);
        ASSERT_EQ(beams.check.mesh.beams.size(), 2U);
        EXPECT_EQ(beams.check.mesh.beams[0].number, 9);
        EXPECT_EQ(beams.check.mesh.beams[0].i, 3);
        EXPECT_EQ(beams.check.mesh.beams[0].j, 8);
        EXPECT_EQ(beams.check.mesh.beams[1].j, 13);
        EXPECT_EQ(beams.check.mesh.beams[1].material, 3);
        EXPECT_EQ(beams.members(), (Lines{"1 3 9 2 1", "1 3 10 2 1"})) << name_of(kind);
        if (kind == Kind::coupled || kind == Kind::displacement) {
            EXPECT_EQ(beams.node(8).codes.back(), 0) << "free to turn";
            EXPECT_EQ(beams.node(7).codes.back(), 1);
        }
    }
}

TEST(GroupRuns, WithoutTypeOrMaterialALineHasNoRow) {
    GroupRun no_type(Kind::coupled, Lines{"2", "0 3"} + UPWARDS);
    no_type.expect_counts(15, 8, 0, 0);
    GroupRun no_material(Kind::coupled, Lines{"2", "2 0"} + UPWARDS);
    no_material.expect_counts(15, 8, 2, 0);
    EXPECT_TRUE(no_material.members().empty());
}

TEST(GroupRuns, HeadHeaderHidesItsTrusses) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 1, Lines{"2", "3 4"} + UPWARDS, squares(kind), {.Hi = "2.5"});
        EXPECT_NE(run.result().find("TRUSS ELEMENT"), std::string::npos);
        EXPECT_EQ(run.check.counts[3], kind == Kind::head ? 0 : 2) << name_of(kind);
        EXPECT_EQ(run.members(), (Lines{"1 4 9 3 1", "1 4 10 3 1"})) << name_of(kind);
        if (kind == Kind::head) {
            for (const MeshNode& node : run.check.mesh.nodes)
                EXPECT_DOUBLE_EQ(node.value, 2.5) << node.number;
        }
        if (kind == Kind::temperature) {
            EXPECT_DOUBLE_EQ(run.node(1).value, 0.0);
        }
    }
}

// The line ends on its first point: six beams round squares 2 and 6, backwards in the mechanical kinds, and
// the squares inside belong to the group.
TEST(GroupRuns, OpenLineThatEndsWhereItBeginsIsClosed) {
    const Lines loop{"5 0 0 0 0", "1 1 0",   "2 2 0",   "3 2 2",   "4 1 2",  "5 1 0.0005",
                     "4",         "1 1 0 2", "2 1 0 2", "3 1 0 2", "4 1 0 2"};
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, Lines{"2", "2 3"} + loop);
        run.expect_counts(15, 8, 6, 0);
        ASSERT_EQ(run.check.mesh.beams.size(), 6U);
        const bool backwards = kind == Kind::coupled || kind == Kind::displacement;
        EXPECT_EQ(run.check.mesh.beams[0].i, 2);
        EXPECT_EQ(run.check.mesh.beams[0].j, backwards ? 7 : 3) << name_of(kind);
        const Lines members = run.members();
        EXPECT_EQ(std::count(members.begin(), members.end(), "1 1 2 1 0"), 1);
        EXPECT_EQ(std::count(members.begin(), members.end(), "1 1 6 1 0"), 1);
        EXPECT_EQ(std::count(members.begin(), members.end(), "1 1 3 1 0"), 0);
    }
}

TEST(GroupRuns, FreeLineAddsItsOwnNodes) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, Lines{"2 0 1", "2 3", "3 0 0 0 0", "1 0.5 0.5", "2 1.5 0.5", "3 2 1", "2",
                                 "1 1 1 2", "2 1 1 2"});
        run.expect_counts(17, 8, 2, 0);
        EXPECT_DOUBLE_EQ(run.node(16).x, 0.5);
        EXPECT_DOUBLE_EQ(run.node(17).x, 1.5);
        ASSERT_EQ(run.check.mesh.beams.size(), 2U);
        EXPECT_EQ(run.check.mesh.beams[0].i, 16);
        EXPECT_EQ(run.check.mesh.beams[1].i, 17);
        EXPECT_EQ(run.check.mesh.beams[1].j, 8);
    }
}

// --- joints --------------------------------------------------------------------------------------

void expect_joint(const MeshElement& e, Kind kind) {
    if (kind == Kind::coupled) {
        EXPECT_EQ(e.codes[0], 1);
        EXPECT_EQ(e.codes[1], 5);
    } else if (kind == Kind::displacement) {
        EXPECT_EQ(e.reals[0], 1.0);
        EXPECT_EQ(e.reals[1], -1.0);
    } else {
        EXPECT_EQ(e.codes[0], 105);  // 205 below zero, shown without its 100
    }
    EXPECT_EQ(e.material, 9);
}

TEST(GroupRuns, JointOfNoWidthOpensTheMesh) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, Lines{"-2", "9 5 0 0 0 0 0"} + UPWARDS);
        run.expect_counts(18, 10, 0, 0);
        EXPECT_EQ(run.element(9).corners, (std::array<int, 4>{3, 8, 17, 16})) << name_of(kind);
        EXPECT_EQ(run.element(10).corners, (std::array<int, 4>{8, 13, 18, 17}));
        expect_joint(run.element(9), kind);
        EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{2, 16, 17, 7}));
        EXPECT_EQ(run.element(6).corners, (std::array<int, 4>{7, 17, 18, 12}));
        EXPECT_EQ(run.element(3).corners, (std::array<int, 4>{3, 4, 9, 8}));
        for (const int k : {0, 1, 2}) {
            EXPECT_DOUBLE_EQ(run.node(16 + k).x, 2.0);
            EXPECT_DOUBLE_EQ(run.node(16 + k).y, k);
        }
        EXPECT_EQ(run.members(), (Lines{"1 9 9 1 2", "1 9 10 1 2"})) << name_of(kind);
    }
}

TEST(GroupRuns, JointOfAWidthStandsBesideTheElements) {
    GroupRun run(Kind::coupled, Lines{"-2", "9 5 0.125 2 3 2 4"} + UPWARDS);
    run.expect_counts(18, 10, 4, 0);
    EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{2, 3, 8, 7}));
    for (const int k : {0, 1, 2}) {
        EXPECT_DOUBLE_EQ(run.node(16 + k).x, 1.875);
        EXPECT_DOUBLE_EQ(run.node(16 + k).y, k);
    }
    EXPECT_EQ(run.check.mesh.beams[2].i, 16);
    EXPECT_EQ(run.check.mesh.beams[2].material, 4);
    EXPECT_EQ(run.members(),
              (Lines{"1 9 9 1 2", "1 9 10 1 2", "1 3 11 2 1", "1 3 12 2 1", "1 4 13 2 1", "1 4 14 2 1"}));
}

// A line up the diagonal of squares 1 and 6 from the corner of the mesh: shifted to its left by d, its start
// would lie outside; it goes back to the vertical border at the height sqrt(2) d.
TEST(GroupRuns, TwinAtTheBorderStaysOnIt) {
    GroupRun run(Kind::coupled,
                 Lines{"-2", "9 5 0.125 0 0 0 0", "2 0 0 0 0", "1 0 0", "2 2 2", "1", "1 1 0 2"});
    run.expect_counts(18, 12, 0, 0);
    EXPECT_NEAR(run.node(16).x, 0.0, 1.0E-5);
    EXPECT_NEAR(run.node(16).y, 0.125 * std::sqrt(2.0), 1.0E-5);
    EXPECT_NEAR(run.node(17).x, 1.0 - 0.125 / std::sqrt(2.0), 1.0E-5);
    EXPECT_NEAR(run.node(17).y, 1.0 + 0.125 / std::sqrt(2.0), 1.0E-5);
}

TEST(GroupRuns, ClosedJointHasAsManyElementsAsNodes) {
    GroupRun run(Kind::coupled, Lines{"-3", "7 3 9 5 0 0 0 0 0"} + outline());
    run.expect_counts(21, 14, 0, 0);
    EXPECT_EQ(run.element(2).material, 7);
    EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{16, 17, 18, 21}));
    EXPECT_EQ(run.element(14).corners, (std::array<int, 4>{7, 2, 16, 21}));
}

TEST(GroupRuns, DuplicateWithAJointTakesTheNewSide) {
    GroupRun run(Kind::coupled, Lines{"-4", "7 3 9 5 0 0 0 0 0 4"} + outline());
    run.expect_counts(21, 16, 0, 0);
    EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{2, 3, 8, 7}));
    EXPECT_EQ(run.element(2).material, 4);
    EXPECT_EQ(run.element(15).corners, (std::array<int, 4>{16, 17, 18, 21}));
    EXPECT_EQ(run.element(15).material, 7);
}

}  // namespace
}  // namespace brelan::test
