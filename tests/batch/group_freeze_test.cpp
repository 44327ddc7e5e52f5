// What keeps a node in its place, and what else steers a cut from outside: lists and limits of the cards, the
// distance limits and the moves of the defaults file. A line upwards at x = 2.3 crosses the sides 3-4, 8-9
// and 13-14 nearer to nodes 3, 8 and 13: where these are free they move onto it, else each side gets a node.

#include <gtest/gtest.h>

#include <string>

#include "batch/group_run.h"

namespace brelan::test {
namespace {

const Lines LINE = Lines{"2", "0 0"} + upright("2.3");

void expect_moved(const GroupRun& run) {
    run.expect_counts(15, 8, 0, 0);
    run.expect_place(3, 2.3, 0);
    run.expect_place(8, 2.3, 1);
    run.expect_place(13, 2.3, 2);
}

// Squares 3 and 7 are cut from side to side: the right part keeps the number.
void expect_cut(const GroupRun& run) {
    run.expect_counts(18, 10, 0, 0);
    run.expect_place(3, 2, 0);
    run.expect_place(8, 2, 1);
    run.expect_place(13, 2, 2);
    run.expect_place(16, 2.3, 0);
    run.expect_place(17, 2.3, 1);
    run.expect_place(18, 2.3, 2);
    EXPECT_EQ(run.element(3).corners, (std::array<int, 4>{16, 4, 9, 17}));
    EXPECT_EQ(run.element(9).corners, (std::array<int, 4>{3, 16, 17, 8}));
    EXPECT_EQ(run.element(7).corners, (std::array<int, 4>{17, 9, 14, 18}));
    EXPECT_EQ(run.element(10).corners, (std::array<int, 4>{8, 17, 18, 13}));
}

TEST(GroupFreezing, CrossingNearAFreeNodeMovesIt) {
    for (const Kind kind : ALL_KINDS)
        expect_moved(GroupRun(kind, LINE));
}

TEST(GroupFreezing, NodesOfTheFirstListStay) {
    for (const Kind kind : ALL_KINDS)
        expect_cut(GroupRun(kind, 1, LINE, squares(kind), {.lists = {"3", "3 8 13", "0", "0"}}));
}

TEST(GroupFreezing, ListNamesRangesByAMinusSign) {
    const Kind kind = Kind::coupled;
    Mesh mesh = squares(kind);
    // All nodes are frozen: a node at a crossing moves after all, as no node of its side is free.
    expect_moved(GroupRun(kind, 1, LINE, mesh, {.lists = {"2", "1 -15", "0", "0"}}));
    expect_cut(GroupRun(kind, 1, LINE, mesh, {.lists = {"6", "1 -3 6 -8 11 -13", "0", "0"}}));
}

TEST(GroupFreezing, NodesOfListedElementsStay) {
    for (const Kind kind : ALL_KINDS)
        expect_cut(GroupRun(kind, 1, LINE, squares(kind), {.lists = {"0", "2", "2 6", "0"}}));
}

TEST(GroupFreezing, ListedElementsAreNotCutAndTakeNoMaterial) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun cut(kind, 1, Lines{"2", "0 0"} + upright("1.3"), squares(kind),
                     {.lists = {"0", "2", "2 6", "0"}});
        cut.expect_counts(15, 8, 0, 0);
        EXPECT_EQ(cut.element(2).corners, (std::array<int, 4>{2, 3, 8, 7}));
        GroupRun material(kind, 1, Lines{"3", "7 3 0 0"} + outline(), squares(kind),
                          {.lists = {"0", "1", "2", "0"}});
        EXPECT_EQ(material.materials(), (std::vector<int>{1, 1, 1, 1, 1, 7, 1, 1})) << name_of(kind);
    }
}

TEST(GroupFreezing, NodesOnOrBeyondTheLimitsStay) {
    struct Limits {
        const char* card;
        bool frozen;
    };
    // Of the three lines of nodes the left two lie at or below x = 2.
    for (const Limits& limits :
         {Limits{"2 -9 9 9", true}, Limits{"1.999 -9 9 9", false}, Limits{"-9 -9 9 9", false}})
        for (const Kind kind : ALL_KINDS) {
            GroupRun run(kind, 1, LINE, squares(kind), {.lists = {"0", "0", "1", limits.card}});
            limits.frozen ? expect_cut(run) : expect_moved(run);
        }
    // The mirrored line lies nearer to nodes 3, 8 and 13 from the left.
    for (const char* card : {"-9 -9 2 9", "-9 -9 2.001 9"}) {
        GroupRun run(Kind::head, 1, Lines{"2", "0 0"} + upright("1.7"), squares(Kind::head),
                     {.lists = {"0", "0", "1", card}});
        run.expect_place(3, std::string(card) == "-9 -9 2 9" ? 2 : 1.7, 0);
    }
    // By height: the middle of the mesh is free between 0 and 2.
    GroupRun low(Kind::coupled, 1,
                 Lines{"2", "0 0"} + Lines{"2 0 0 0 0", "1 -1 0.3", "2 5 0.3", "1", "1 1 0 2"},
                 squares(Kind::coupled), {.lists = {"0", "0", "1", "-9 0 9 9"}});
    low.expect_place(3, 2, 0);
    EXPECT_EQ(low.check.mesh.nodes.size(), 20U);
    GroupRun high(Kind::coupled, 1,
                  Lines{"2", "0 0"} + Lines{"2 0 0 0 0", "1 -1 1.7", "2 5 1.7", "1", "1 1 0 2"},
                  squares(Kind::coupled), {.lists = {"0", "0", "1", "-9 -9 9 2"}});
    high.expect_place(13, 2, 2);
    EXPECT_EQ(high.check.mesh.nodes.size(), 20U);
}

TEST(GroupFreezing, LimitsCountOnlyWithTheirSwitch) {
    expect_moved(GroupRun(Kind::coupled, 1, LINE, squares(Kind::coupled), {.lists = {"0", "0", "2"}}));
}

TEST(GroupFreezing, CodedNodesStay) {
    for (const Kind kind : ALL_KINDS)
        for (const std::size_t word : {0U, 1U}) {
            Mesh mesh = squares(kind);
            for (const std::size_t n : {3U, 8U, 13U})
                mesh.nodes[n - 1].codes[word] = 1;
            expect_cut(GroupRun(kind, 1, LINE, mesh));
        }
}

TEST(GroupFreezing, OtherCodesLeaveANodeFree) {
    Mesh mesh = squares(Kind::coupled);
    for (const std::size_t n : {3U, 8U, 13U})
        mesh.nodes[n - 1].codes[2] = mesh.nodes[n - 1].codes[3] = 1;
    expect_moved(GroupRun(Kind::coupled, 1, LINE, mesh));
}

TEST(GroupFreezing, LineOfAGroupStaysWhenItsCardSaysSo) {
    for (const Kind kind : ALL_KINDS)
        for (const char* MOVE : {"1", "0", "2"}) {
            const Lines first{"2", "0 0",    std::string("2 ") + MOVE + " 0 0 0", "1 2 0", "2 2 2",
                              "1", "1 1 0 2"};
            GroupRun run(kind, 2, first + LINE, squares(kind));
            *MOVE == '1' ? expect_cut(run) : expect_moved(run);
        }
}

TEST(GroupFreezing, GroupAheadOfTheOneThatFreezesStillMoves) {
    const Lines second{"2", "0 0", "2 1 0 0 0", "1 2.3 -1", "2 2.3 3", "1", "1 1 0 2"};
    expect_moved(GroupRun(Kind::coupled, 2, LINE + second, squares(Kind::coupled)));
}

// --- distance limits -----------------------------------------------------------------------------

std::string defaults(const std::string& limits) {
    return limits + " 0.001\n0 0.01 0 0 0 0 0 0\n0\n";
}

// A line at x = 2.04 beside coded nodes: a node at most TOLLINE away is one of the line's.
std::size_t beams_beside(const std::string& limits, double right = 4.0) {
    Mesh mesh = squares(Kind::displacement);
    for (const std::size_t n : {3U, 8U, 13U})
        mesh.nodes[n - 1].codes[0] = 1;
    mesh.nodes[4].x = right;
    const GroupRun run(Kind::displacement, 1, Lines{"2", "2 3"} + upright("2.04"), mesh,
                       {.defaults = defaults(limits)});
    EXPECT_EQ(run.check.mesh.nodes.size(), 15U) << "a crossing so near to a frozen node is the node";
    return run.check.mesh.beams.size();
}

TEST(GroupTolerances, ReachOfALineComesByMode) {
    EXPECT_EQ(beams_beside("0 0.05 0.001"), 2U) << "the length";
    EXPECT_EQ(beams_beside("0 0.01 0.05"), 0U);
    EXPECT_EQ(beams_beside("1 0.001 0.05"), 2U) << "a share of the shortest distance, which is 1";
    EXPECT_EQ(beams_beside("1 0.05 0.01"), 0U);
    EXPECT_EQ(beams_beside("2 0.001 0.05"), 2U) << "a share as well";
    EXPECT_EQ(beams_beside("2 0.05 0.01"), 0U);
    EXPECT_EQ(beams_beside("7 0.001 0.05"), 2U) << "any other mode is as 2";
}

TEST(GroupTolerances, ShareIsOfTheShortestDistance) {
    EXPECT_EQ(beams_beside("1 9 0.05", 3.5), 0U) << "side 4-5 is half as long";
    EXPECT_EQ(beams_beside("1 9 0.09", 3.5), 2U);
}

// A joint of 0.25 between its lines in the source mesh is not looked at.
TEST(GroupTolerances, JointsDoNotCountForTheShortestDistance) {
    for (const bool joint : {true, false}) {
        Mesh mesh = squares(Kind::displacement);
        for (const std::size_t n : {3U, 8U, 13U})
            mesh.nodes[n - 1].codes[0] = 1;
        for (const std::size_t n : {5U, 10U, 15U})
            mesh.nodes[n - 1].x = 3.25;
        for (const std::size_t e : {4U, 8U})
            mesh.continuum[e - 1].reals[1] = joint ? -1.0 : 1.0;
        const GroupRun run(Kind::displacement, 1, Lines{"2", "2 3"} + upright("2.04"), mesh,
                           {.defaults = defaults("1 9 0.05")});
        EXPECT_EQ(run.check.mesh.beams.size(), joint ? 2U : 0U);
    }
}

// A short piece across the side 3-8, steep to it, whose ends are not placed: node 3 moves onto it unless both
// nodes of the side are nearer to its line than TOLMOVE.
double height_of_node_3(const std::string& limits) {
    const GroupRun run(Kind::coupled, 1, {"2", "0 0", "2 0 0 0 0", "1 1.9 0.4", "2 2.1 0.45", "1", "1 1 0 7"},
                       squares(Kind::coupled), {.defaults = defaults(limits)});
    return run.node(3).y;
}

TEST(GroupTolerances, SideOnTheLineStaysByMode) {
    EXPECT_NEAR(height_of_node_3("0 0.01 0.6"), 0.425, 1.0E-6);
    EXPECT_EQ(height_of_node_3("0 0.6 0.01"), 0.0) << "the length";
    EXPECT_NEAR(height_of_node_3("1 0.6 0.01"), 0.425, 1.0E-6) << "the share";
    EXPECT_EQ(height_of_node_3("1 0.01 0.6"), 0.0);
    EXPECT_NEAR(height_of_node_3("2 0.01 0.6"), 0.425, 1.0E-6) << "the length again";
    EXPECT_EQ(height_of_node_3("2 0.6 0.01"), 0.0);
}

// --- moves of the defaults file ------------------------------------------------------------------

GroupSetting moves(const std::string& rows) {
    return {.defaults = "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n" + rows};
}

TEST(GroupMoves, FractionShiftsANode) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 0, {}, squares(kind), moves("2\n1 2 0.5\n8 13 0.25\n"));
        run.expect_counts(15, 8, 0, 0);
        run.expect_place(1, 0.5, 0);
        run.expect_place(8, 2, 1.25);
        EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 2, 7, 6}));
    }
}

// Square 1 loses its side 1-2 and becomes a triangle; the numbers close up.
TEST(GroupMoves, WholeMoveMergesTheNodes) {
    for (const Kind kind : ALL_KINDS) {
        GroupRun run(kind, 0, {}, squares(kind), moves("1\n1 2 1\n"));
        run.expect_counts(14, 8, 0, 0);
        run.expect_place(1, 1, 0);
        EXPECT_EQ(run.element(1).corners, (std::array<int, 4>{1, 6, 5, 0}));
    }
}

// Squares 1 and 5 are deleted, and with them nodes 1, 6 and 11: the first node is number 2 now.
TEST(GroupMoves, NodesAreCountedWithoutTheUnused) {
    const Lines cards{"1",     "0 0", "4 0 0 0 0", "1 0 0",   "2 1 0",   "3 1 2",
                      "4 0 2", "4",   "1 1 0 3",   "2 1 0 3", "3 1 0 3", "4 1 0 3"};
    GroupRun run(Kind::temperature, 1, cards, squares(Kind::temperature), moves("1\n1 2 0.5\n"));
    run.expect_counts(12, 6, 0, 0);
    run.expect_place(1, 1.5, 0);
}

TEST(GroupMoves, PositionBeyondTheNodesIsAMessage) {
    for (const char* row : {"1\n16 1 0.5\n", "1\n0 1 0.5\n"}) {
        const Project project(Kind::coupled);
        lay_out_groups(project, 0, {}, squares(Kind::coupled), moves(row));
        expect_failed(project.run(), {"second move list", "from 1 to 15"});
    }
}

}  // namespace
}  // namespace brelan::test
