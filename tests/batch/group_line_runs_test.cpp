// Lines and joints in whole runs: the values of LTP, twins at bends and borders, members of lines and strips,
// the group of the head editions whose material line is missing.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "batch/group_deck.h"
#include "batch/group_run.h"

namespace brelan::test {
namespace {

TEST(GroupLines, TypesFourAndFiveWriteTheCodesOfTheirNodes) {
    for (const Kind kind : ALL_KINDS)
        for (const int LTP : {4, 5}) {
            GroupRun run(kind, Lines{"2", std::to_string(LTP) + " 6"} + UPWARDS);
            EXPECT_EQ(run.members(), (Lines{"1 6 9 3 1", "1 6 10 3 1"}));
            if (kind != Kind::head) {  // whose header hides them
                run.expect_counts(15, 8, 0, 2);
                EXPECT_EQ(run.check.mesh.trusses.at(0).i, 3);
                EXPECT_EQ(run.check.mesh.trusses.at(1).j, 13);
            }
            const bool flow = kind == Kind::temperature || kind == Kind::head;
            for (const int n : {3, 8, 13})
                EXPECT_EQ(run.node(n).codes,
                          flow ? (std::vector<int>{LTP - 4, 6}) : squares(kind).nodes[0].codes)
                    << name_of(kind) << ", LTP " << LTP;
            EXPECT_EQ(run.node(7).codes, squares(kind).nodes[0].codes);
        }
}

// A small outline through node 8 that meets no other node. Its line leads from the node back to it.
TEST(GroupLines, ClosedLineOfOneNodeHasItsElement) {
    for (const int LTP : {2, 3, 4, 5}) {
        GroupRun run(Kind::displacement, {"3", "1 2.3 " + std::to_string(LTP) + " 6", "3 0 0 0 0", "1 2 1",
                                          "2 2.3 1.2", "3 1.7 1.3", "3", "1 1 1 3", "2 1 1 3", "3 1 1 3"});
        run.expect_counts(15, 8, LTP == 2 ? 1 : 0, LTP == 2 ? 0 : 1);
        const MeshLine& e = LTP == 2 ? run.check.mesh.beams.at(0) : run.check.mesh.trusses.at(0);
        EXPECT_EQ(e.i, 8);
        EXPECT_EQ(e.j, 8);
    }
}

// Beams of a line stand on the line that a joint opens later: they go over to the twins as what lies on the
// left does, or stay, by the sign of their LTP.
TEST(GroupLines, MinusSignLeavesBeamsOnTheOtherSideOfAJoint) {
    for (const Kind kind : ALL_KINDS)
        for (const char* LTP : {"2", "-2"}) {
            GroupRun run(
                kind, 2,
                Lines{"2", std::string(LTP) + " 3"} + UPWARDS + Lines{"-2", "9 5 0 0 0 0 0"} + UPWARDS,
                squares(kind));
            run.expect_counts(18, 10, 2, 0);
            const bool stays = *LTP == '-';
            EXPECT_EQ(run.check.mesh.beams.at(0).i, stays ? 3 : 16) << name_of(kind);
            EXPECT_EQ(run.check.mesh.beams.at(0).j, stays ? 8 : 17);
            EXPECT_EQ(run.check.mesh.beams.at(1).j, stays ? 13 : 18);
        }
}

TEST(GroupLines, TypeOneMakesNoElementAndNoRow) {
    GroupRun run(Kind::coupled, Lines{"2", "1 3"} + UPWARDS);
    run.expect_counts(15, 8, 0, 0);
    EXPECT_TRUE(run.members().empty());
}

// A beam of the source mesh over both pieces of the line: its middle is not the middle of a piece.
TEST(GroupLines, BeamOfAnotherDivisionIsNoMember) {
    Mesh mesh = squares(Kind::displacement);
    mesh.beams.push_back({9, 3, 13, 5});
    mesh.beams.push_back({10, 3, 8, 5});
    GroupRun run(Kind::displacement, 1, Lines{"2", "2 3"} + UPWARDS, mesh);
    run.expect_counts(15, 8, 4, 0);
    EXPECT_EQ(run.members(), (Lines{"1 5 10 2 1", "1 3 11 2 1", "1 3 12 2 1"}));
}

// --- joints --------------------------------------------------------------------------------------

// Nodes 6, 7, 8 in a line with a bend at 7. The edges shifted by 1/8 to the left end 1/8 of the bend apart:
// up to 0.001 the twin is the end of the earlier one, beyond it lies where the two cross.
TEST(GroupJoints, TwinAtABendWithinTheLimitEndsTheEarlierEdge) {
    for (const double bend : {0.005, 0.01}) {
        Mesh mesh = squares(Kind::coupled);
        mesh.nodes[7].y = 1.0 + bend;
        GroupRun run(Kind::coupled, 1,
                     {"-2", "9 5 0.125 0 0 0 0", "3 0 0 0 0", "1 0 1", "2 1 1",
                      "3 2 " + std::to_string(1 + bend), "2", "1 1 0 2", "2 1 0 2"},
                     mesh);
        run.expect_counts(18, 10, 0, 0);
        // The crossing of edges so nearly alike is good to five digits in 32 bits.
        const double x = bend < 0.008 ? 1.0 : 1.0 - 0.125 * std::tan(std::atan(bend) / 2.0);
        EXPECT_NEAR(run.node(17).x, x, bend < 0.008 ? 1.0E-6 : 1.5E-5);
        EXPECT_NEAR(run.node(17).y, 1.125, 1.0E-6);
    }
}

// From the bottom up the diagonals of squares 2 and 7: the first twin would lie below the mesh.
TEST(GroupJoints, TwinAtTheBottomStaysOnIt) {
    const double d = 0.125;
    GroupRun run(Kind::coupled, {"-2", "9 5 0.125 0 0 0 0", "2 0 0 0 0", "1 1 0", "2 3 2", "1", "1 1 0 2"});
    run.expect_counts(18, 12, 0, 0);
    run.expect_place(16, 1.0 - d * std::sqrt(2.0), 0.0);
    run.expect_place(17, 2.0 - d / std::sqrt(2.0), 1.0 + d / std::sqrt(2.0));
    run.expect_place(18, 3.0 - d / std::sqrt(2.0), 2.0 + d / std::sqrt(2.0));
}

TEST(GroupJoints, LineOfNoMaterialHasBeamsAndNoRow) {
    GroupRun run(Kind::coupled, Lines{"-2", "9 5 0.125 2 0 2 0"} + UPWARDS);
    run.expect_counts(18, 10, 4, 0);
    EXPECT_EQ(run.members(), (Lines{"1 9 9 1 2", "1 9 10 1 2"})) << "the strip alone";
}

// A joint of a width inside its outline: six joints, each in the strip and, as it lies inside, in the
// outline. The joint along the bottom of the mesh is flat, as twins of nodes on the bottom stay on it, and so
// outside.
TEST(GroupJoints, JointInsideItsOutlineBelongsToOutlineAndStrip) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, Lines{"-3", "7 3 9 5 0.125 0 0 0 0"} + outline());
        run.expect_counts(21, 14, 0, 0);
        run.expect_place(16, 1.125, 0);
        run.expect_place(17, 1.875, 0);
        run.expect_place(18, 1.875, 1);
        Lines expected{"1 7 2 1 0", "1 7 6 1 0", "1 9 9 1 2"};
        for (int e = 10; e <= 14; ++e) {
            expected.push_back("1 9 " + std::to_string(e) + " 1 0");
            expected.push_back("1 9 " + std::to_string(e) + " 1 2");
        }
        EXPECT_EQ(run.members(), expected) << name_of(kind);
    }
}

// --- the missing line ----------------------------------------------------------------------------

// In the head editions no material line is written for MTYPE -4, and its ten values come from what follows:
// the outline's card, the first point and two values of the second. The outline is read from the third point
// on. This deck gives a whole group in either reading.
// Two squares side by side, nodes 1 to 3 below, with a truss between them that joints are to leave on its
// side. The joint's line touches the mesh at the upper end of the truss alone.
TEST(GroupJoints, LineOfOneNodeMovesNothingAcross) {
    for (const Kind kind : ALL_KINDS)
        for (const bool closed : {false, true})
            for (const char* LTP : {"3", "-3"}) {
                const Lines joint =
                    closed ? Lines{"-3", "0 0 9 0 0 0 0 0 0"} + outline({{1, 1}, {1.5, 2}, {0.5, 2}}, 3)
                           : Lines{"-2", "9 0 0 0 0 0 0"} + open_line({{1, 1}, {1.5, 2}}, 3);
                const Lines truss = Lines{"2", std::string(LTP) + " 11"} + open_line({{1, 0}, {1, 1}});
                const GroupRun run(kind, 2, truss + joint, grid_mesh(kind, 2, 1));
                const bool shown = kind != Kind::head;  // whose header hides its trusses
                run.expect_counts(6, 2, 0, shown ? 1 : 0);
                EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 2, 5, 4})) << name_of(kind);
                EXPECT_EQ(run.element(2).corners, (std::array<int, 4>{2, 3, 6, 5})) << name_of(kind);
                EXPECT_NE(run.result().find("      3      2      5     11"), std::string::npos)
                    << name_of(kind) << ", LTP " << LTP << (closed ? ", closed" : ", open");
            }
}

// The line's node is still that of the mesh: what is written of the line names it.
TEST(GroupJoints, LineOfOneNodeKeepsItsNodeInThePlotDeck) {
    GroupCards joint{.MTYPE = -2, .material = "9 0 0 0 0 0 0", .line = open_line({{1, 1}, {1.5, 2}}, 3)};
    joint.switches[6] = 1;
    const GroupProject run(Kind::displacement, grid_mesh(Kind::displacement, 2, 1), {joint});
    run.run();
    EXPECT_EQ(section(run.lines("Group.Pos"), "* NODE1  NODE2  NODE3  NODE4  NODE5", "* Card 11.5.1").at(1),
              "      5");
}

TEST(GroupJoints, HeadGroupOfTypeMinusFourIsReadShifted) {
    const Lines cards{"-4",        "70 30 90 50 0.5 2 3 2 3 40",
                      "8 3 9 5 0",           // MAT, IH, MATj, IHj, THICj
                      "0 0 0",               // LTi, LFi, LTo
                      "0 4 0",               // LFo, MATold; the rest is lost
                      "4 0 0",     "0 0 0",  // NPOINT, MOVE, IREF, XLo, YLo
                      "1 1 0",     "2 2 0",
                      "3 2 2",     "4 1 2",  // the outline
                      "4",         "1 1 0 2",
                      "2 1 0 2",   "3 1 0 2",
                      "4 1 0 2"};
    for (const int edition : {9, 10}) {
        const Project project(edition);
        lay_out_groups(project, 1, cards, squares(Kind::head));
        expect_finished(project.run());
        const MeshCheck check = check_mesh(project.read("out.Mes"), Kind::head);
        EXPECT_EQ(check.mesh.nodes.size(), 21U);
        ASSERT_EQ(check.mesh.continuum.size(), 16U);
        EXPECT_TRUE(check.mesh.beams.empty());
        const auto& elements = check.mesh.continuum;
        EXPECT_EQ(elements[1].material, 4) << "MATold";
        EXPECT_EQ(elements[5].material, 4);
        EXPECT_EQ(elements[8].material, 9) << "MATj";
        EXPECT_EQ(elements[14].material, 8) << "MAT";
        EXPECT_EQ(elements[14].codes[0], 3) << "IH";
        EXPECT_EQ(elements[14].corners, (std::array<int, 4>{16, 17, 18, 21}));
    }
}

}  // namespace
}  // namespace brelan::test
