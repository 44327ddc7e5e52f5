// The stages of a cut on meshes of one to three elements: which rows are taken, what a side does with a
// crossing, how rows are split and written back. All line numbers and places are worked out by hand.

#include <limits>
#include <string>

#include "lib/group/cut_fixture.h"

namespace brelan::test {
namespace {

class GroupCut : public CutFixture {};

// --- which elements are taken --------------------------------------------------------------------

// Three unit squares in a row: 1-2-3-4 below, 5-6-7-8 above.
class ThreeSquares : public GroupCut {
protected:
    void SetUp() override {
        GroupCut::SetUp();
        for (std::int32_t i = 0; i < 4; ++i) {
            node(1 + i, static_cast<float>(i), 0);
            node(5 + i, static_cast<float>(i), 1);
        }
        for (std::int32_t i = 1; i <= 3; ++i)
            element(i, {i, i + 1, i + 5, i + 4}, 10 + i);
        build_indexes(state.mesh, state.engine);
    }
    static std::vector<std::int32_t> rows() {
        std::vector<std::int32_t> numbers;
        for (const CutRow& row : cut.rows)
            numbers.push_back(row.element.value);
        return numbers;
    }
};

TEST_F(ThreeSquares, RowsComeByFirstEndThenSecondThenCrossings) {
    collect_rows(state.mesh, state.engine, cut, {2.5F, 0.5F}, {0.5F, 0.5F});
    EXPECT_EQ(rows(), (std::vector<std::int32_t>{3, 1, 2}));
    EXPECT_EQ(cut.rows[0].material.value, 13);
    EXPECT_EQ(cut.rows[0].corner_node[0].value, 3);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].corner_1.value, -3);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].corner_1.value, -2);
}

TEST_F(ThreeSquares, TakenElementIsNotTakenAgain) {
    collect_rows(state.mesh, state.engine, cut, {0.5F, 0.5F}, {0.5F, 0.75F});
    collect_rows(state.mesh, state.engine, cut, {0.5F, 0.75F}, {1.5F, 0.75F});
    EXPECT_EQ(rows(), (std::vector<std::int32_t>{1, 2}));
}

TEST_F(ThreeSquares, ElementsThatAreListedOrOfAnotherTypeAreLeft) {
    state.engine.workable[ElementNumber(1)] = {};
    state.mesh.type[ElementNumber(2)] = ELEMENT_TRUSS;
    collect_rows(state.mesh, state.engine, cut, {0.5F, 0.5F}, {2.5F, 0.5F});
    EXPECT_EQ(rows(), (std::vector<std::int32_t>{3}));
}

TEST_F(ThreeSquares, SegmentAlongSidesChangesNothing) {
    scan({1, 0}, {1, 1});
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_node.value, 8);
    EXPECT_EQ(state.engine.highest_element.value, 3);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 6, 5}));
    EXPECT_EQ(corners(2), (FourNodes{2, 3, 7, 6}));
    expect_node(1, 0, 0);
    expect_node(2, 1, 0);
    expect_node(6, 1, 1);
    EXPECT_TRUE(cut.rows.empty());
}

TEST_F(ThreeSquares, EndsAloneLeaveTheElementsBetween) {
    const Point P1{0.25F, 0.125F}, P2{2.75F, 0.875F};
    collect_rows(state.mesh, state.engine, cut, P1, P2);
    place_ends(state.mesh, state.engine, cut, P1, P2, {.first = true, .second = true});
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_node.value, 8);
    EXPECT_EQ(state.engine.highest_element.value, 3);
    expect_node(1, 0.25F, 0.125F);
    expect_node(8, 2.75F, 0.875F);
    EXPECT_EQ(corners(2), (FourNodes{2, 3, 7, 6}));
}

// A row with two corners on the line needs no side node, and its neighbour loses it as well.
TEST_F(ThreeSquares, SideNodeOfARowWithTwoCornersGoesInBothRows) {
    collect_rows(state.mesh, state.engine, cut, {0.5F, 0.5F}, {1.5F, 0.5F});
    cut.rows[0].corner_on_line[0] = cut.rows[0].corner_on_line[2] = 1;
    cut.rows[0].side_node[1] = cut.rows[1].side_node[3] = NodeNumber(9);
    cut.rows[1].corner_on_line[1] = 1;
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_element.value, 4);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 6, 0}));
    EXPECT_EQ(corners(4), (FourNodes{1, 6, 5, 0}));
    EXPECT_EQ(corners(2), (FourNodes{2, 3, 7, 6}));
}

TEST_F(ThreeSquares, CentreAndOneCornerDropSideNodesToo) {
    collect_rows(state.mesh, state.engine, cut, {0.5F, 0.5F}, {0.5F, 0.75F});
    node(9, 0.5F, 0.5F);
    cut.rows[0].centre_node = NodeNumber(9);
    cut.rows[0].corner_on_line[0] = 1;
    cut.rows[0].side_node[1] = NodeNumber(10);
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_element.value, 6);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 9, 0}));
    EXPECT_EQ(corners(4), (FourNodes{2, 6, 9, 0}));
    EXPECT_EQ(corners(5), (FourNodes{9, 6, 5, 0}));
    EXPECT_EQ(corners(6), (FourNodes{1, 9, 5, 0}));
}

TEST_F(ThreeSquares, PartsCarryMaterialAndAttributes) {
    const Edition edition(DISPLACEMENT);
    state.mesh.thickness[ElementNumber(2)] = 0.5F;
    state.mesh.density[ElementNumber(2)] = 1.75F;
    collect_rows(state.mesh, state.engine, cut, {1.5F, 0.5F}, {1.5F, 0.75F});
    cut.rows[0].corner_on_line[0] = cut.rows[0].corner_on_line[2] = 1;
    split_rows(state.mesh, state.engine, cut);
    ASSERT_EQ(state.engine.highest_element.value, 4);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].material.value, 12);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].material.value, 12);
    EXPECT_EQ(state.mesh.thickness[ElementNumber(4)], 0.5F);
    EXPECT_EQ(state.mesh.density[ElementNumber(4)], 1.75F);
    EXPECT_EQ(state.engine.workable[ElementNumber(4)].value, 4);
    EXPECT_EQ(state.mesh.type[ElementNumber(4)], ELEMENT_CONTINUUM);
}

// --- one side ------------------------------------------------------------------------------------

// The line x = 2 of a square of 10: both crossings are nearer to the left nodes.
TEST_F(GroupCut, CrossingNearAFreeNodeMovesIt) {
    rectangle(10, 10);
    scan({2, -1}, {2, 11});
    EXPECT_EQ(corner_marks(0), (FourNodes{1, 0, 0, 1}));
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_node.value, 4);
    EXPECT_EQ(state.engine.highest_element.value, 1);
    expect_node(1, 2, 0);
    expect_node(4, 2, 10);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 3, 4}));
}

TEST_F(GroupCut, CrossingHalfwayMovesTheFirstNodeOfTheSide) {
    rectangle(10, 10);
    scan({5, -1}, {5, 5});
    expect_node(1, 5, 0);
    expect_node(2, 10, 0);
}

TEST_F(GroupCut, BothNodesFrozenMoveAfterAll) {
    rectangle(10, 10, {1, 2, 3, 4});
    scan({8, -1}, {8, 5});
    expect_node(2, 8, 0);
    EXPECT_EQ(state.engine.highest_node.value, 4);
}

// F is 0.1 of the side: 0.5 is within 1 of the frozen node.
TEST_F(GroupCut, CrossingNearAFrozenNodeMarksTheCornerOnly) {
    rectangle(10, 10, {1});
    scan({0.5F, -1}, {0.5F, 11});
    EXPECT_EQ(corner_marks(0), (FourNodes{1, 0, 0, 1}));
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_node.value, 4);
    EXPECT_EQ(state.engine.highest_element.value, 1);
    expect_node(1, 0, 0);
    expect_node(4, 0.5F, 10);
}

TEST_F(GroupCut, CrossingNearAFrozenSecondNodeMarksTheCornerOnly) {
    rectangle(10, 10, {2});
    scan({9.5F, -1}, {9.5F, 5});
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 1, 0, 0}));
    EXPECT_EQ(state.engine.highest_node.value, 4);
    expect_node(2, 10, 0);
}

// The side beside the frozen node has length 2, so F is 0.02: 0.5 is beyond 0.2.
TEST_F(GroupCut, ShortNeighbourSideMakesTheCrossingClear) {
    rectangle(10, 2, {1});
    scan({0.5F, -1}, {0.5F, 3});
    EXPECT_EQ(side_marks(0), (FourNodes{5, 0, 0, 0}));
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 0, 0, 1}));
    split_rows(state.mesh, state.engine, cut);
    expect_node(5, 0.5F, 0);
    expect_node(4, 0.5F, 2);
    ASSERT_EQ(state.engine.highest_element.value, 2);
    EXPECT_EQ(corners(1), (FourNodes{5, 2, 3, 4}));
    EXPECT_EQ(corners(2), (FourNodes{1, 5, 4, 0}));
}

// Two squares of 10, one above the other, with their left nodes frozen: the side between them gets one node.
TEST_F(GroupCut, NeighboursShareTheNodeOnTheirSide) {
    rectangle(10, 10, {1, 4});
    node(5, 0, 20, true);
    node(6, 10, 20);
    element(2, {4, 3, 6, 5}, 2);
    build_indexes(state.mesh, state.engine);
    scan({2, -1}, {2, 21});
    EXPECT_EQ(side_marks(0), (FourNodes{7, 0, 8, 0}));
    EXPECT_EQ(side_marks(1), (FourNodes{8, 0, 9, 0}));
    split_rows(state.mesh, state.engine, cut);
    EXPECT_EQ(state.engine.highest_node.value, 9);
    expect_node(7, 2, 0);
    expect_node(8, 2, 10);
    expect_node(9, 2, 20);
    ASSERT_EQ(state.engine.highest_element.value, 4);
    EXPECT_EQ(corners(1), (FourNodes{7, 2, 3, 8}));
    EXPECT_EQ(corners(2), (FourNodes{8, 3, 6, 9}));
    EXPECT_EQ(corners(3), (FourNodes{1, 7, 8, 4}));
    EXPECT_EQ(corners(4), (FourNodes{4, 8, 9, 5}));
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].material.value, 1);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].material.value, 2);
}

TEST_F(GroupCut, PlannedNodeGoesWhereTheLineMisses) {
    rectangle(10, 10);
    collect_rows(state.mesh, state.engine, cut, {5, 5}, {5, 6});
    cut.rows[0].side_node[0] = NodeNumber(9);
    scan_sides(state.mesh, state.tolerances, state.engine, cut, {5, 5}, {5, 6}, {2, true});
    EXPECT_EQ(side_marks(0), (FourNodes{9, 0, 0, 0})) << "kept until all pairs are through";
    scan_sides(state.mesh, state.tolerances, state.engine, cut, {5, 5}, {5, 6}, {2, false});
    EXPECT_EQ(side_marks(0), (FourNodes{0, 0, 0, 0}));
}

TEST_F(GroupCut, MoveOnlyMarksNothing) {
    rectangle(10, 10);
    scan({2, -1}, {2, 11}, -2);
    expect_node(1, 2, 0);
    expect_node(4, 2, 10);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 0, 0, 0}));
}

TEST_F(GroupCut, MoveOnlyAddsNoNodeBesideAFrozenOne) {
    for (const std::int32_t kind : {COUPLED, TEMPERATURE, HEAD, DISPLACEMENT}) {
        const Edition edition(kind);
        clear();
        rectangle(10, 10, {2});
        collect_rows(state.mesh, state.engine, cut, {8, -1}, {8, 5});
        cut.rows[0].side_node[0] = NodeNumber(9);
        scan_sides(state.mesh, state.tolerances, state.engine, cut, {8, -1}, {8, 5}, {-2, false});
        EXPECT_EQ(state.engine.highest_node.value, 4);
        EXPECT_EQ(cut.rows[0].side_node[0].value, kind == DISPLACEMENT ? 9 : 0)
            << "second node frozen, edition " << kind;
        clear();
        rectangle(10, 10, {1});
        collect_rows(state.mesh, state.engine, cut, {2, -1}, {2, 5});
        cut.rows[0].side_node[0] = NodeNumber(9);
        scan_sides(state.mesh, state.tolerances, state.engine, cut, {2, -1}, {2, 5}, {-2, false});
        EXPECT_EQ(state.engine.highest_node.value, 4);
        EXPECT_EQ(cut.rows[0].side_node[0].value, 9) << "first node frozen, edition " << kind;
    }
}

// --- code words of a side node -------------------------------------------------------------------

TEST_F(GroupCut, SideNodeIsFreeOnlyWhereBothEndsAre) {
    for (const std::int32_t kind : {COUPLED, DISPLACEMENT}) {
        const Edition edition(kind);
        clear();
        rectangle(10, 2, {1});
        state.mesh.codes[NodeNumber(1)] = {1, 0, 1, 1, 1};
        state.mesh.codes[NodeNumber(2)] = {2, 1, 1, 0, 1};
        scan({0.5F, -1}, {0.5F, 1});
        ASSERT_EQ(state.engine.highest_node.value, 5);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][0], 1);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][1], 0);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][2], 1);
        if (kind == COUPLED) {
            EXPECT_EQ(state.mesh.codes[NodeNumber(5)][3], 0);
            EXPECT_EQ(state.mesh.codes[NodeNumber(5)][4], 1);
        }
    }
}

TEST_F(GroupCut, SideNodeTakesTheValuesOfItsEnds) {
    for (const std::int32_t kind : {TEMPERATURE, HEAD}) {
        const Edition edition(kind);
        clear();
        rectangle(10, 2, {1});
        state.mesh.codes[NodeNumber(1)] = {3, 4, 0, 0, 0};
        state.mesh.codes[NodeNumber(2)] = {0, 7, 0, 0, 0};
        state.mesh.head[NodeNumber(1)] = 2.5F;
        state.mesh.coefficient[NodeNumber(1)] = 1.0F;
        state.mesh.coefficient[NodeNumber(2)] = 0.5F;
        scan({0.5F, -1}, {0.5F, 1});
        ASSERT_EQ(state.engine.highest_node.value, 5);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][0], 3);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][1], 7);
        EXPECT_EQ(state.mesh.head[NodeNumber(5)], 2.5F);
        EXPECT_EQ(state.mesh.coefficient[NodeNumber(5)], 0.5F);
    }
}

TEST_F(ThreeSquares, WithoutIndexesEveryElementIsACandidate) {
    const auto candidates = [] {
        std::vector<std::int32_t> numbers;
        for (const ElementNumber e : elements_with(state.engine, std::vector{NodeNumber(1)}))
            numbers.push_back(e.value);
        return numbers;
    };
    EXPECT_EQ(candidates(), (std::vector<std::int32_t>{1}));
    state.engine.uses_indexes = false;
    EXPECT_EQ(candidates(), (std::vector<std::int32_t>{1, 2, 3}));
}

TEST_F(GroupCut, NodeDoesNotMoveWhereNoNumberIs) {
    rectangle(1, 1);
    state.engine.group = 4;
    const float infinite = std::numeric_limits<float>::infinity();
    for (const Point& nowhere : {Point{infinite, 0}, Point{0, -infinite}})
        EXPECT_EQ(failure_of([&] { move_node(state.mesh, state.engine, NodeNumber(2), nowhere); }),
                  "group 4: expected coordinates that are numbers, but node 2 would get one that is none");
    expect_node(2, 1, 0);
}

}  // namespace
}  // namespace brelan::test
