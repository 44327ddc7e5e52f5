// Where an end of a pair becomes a node: the square has nodes 1 (0, 0), 2 (10, 0), 3 (10, 10), 4 (0, 10), and
// the end lies above its lower side unless a test says otherwise.

#include <string>

#include "lib/group/cut_fixture.h"

namespace brelan::test {
namespace {

class GroupCutEnd : public CutFixture {};

const std::vector<std::int32_t> ALL{1, 2, 3, 4};

TEST_F(GroupCutEnd, EndTakesTheNearestFreeCorner) {
    rectangle(10, 10);
    place({7, 1}, {7, 30});
    expect_node(2, 7, 1);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 1, 0, 0}));
    EXPECT_EQ(state.engine.highest_node.value, 4);
}

TEST_F(GroupCutEnd, EndHalfwayTakesTheFirstCorner) {
    rectangle(10, 10);
    place({5, 1}, {5, 30});
    expect_node(1, 5, 1);
    expect_node(2, 10, 0);
}

TEST_F(GroupCutEnd, CornerOfAnEndIsMarkedInItsNeighbours) {
    rectangle(10, 10);
    node(5, 20, 0);
    node(6, 20, 10);
    element(2, {2, 5, 6, 3});
    build_indexes(state.mesh, state.engine);
    place({9, 1}, {15, 1});
    ASSERT_EQ(cut.rows[0].element.value, 2) << "the other point lies in it";
    EXPECT_EQ(corner_marks(0), (FourNodes{1, 0, 0, 0}));
    EXPECT_EQ(corner_marks(1), (FourNodes{0, 1, 0, 0}));
}

// Element 2 names node 3 twice: as a neighbour it is marked at both corners, as the row in work at the one
// that takes the end.
TEST_F(GroupCutEnd, CornerNamedTwiceIsMarkedTwiceInTheNeighboursOnly) {
    rectangle(4, 4);
    node(5, 8, 4);
    element(2, {2, 5, 3, 3});
    build_indexes(state.mesh, state.engine);
    place({4, 3.8F}, {1, 1});
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 0, 1, 0}));
    ASSERT_EQ(cut.rows.size(), 2U);
    EXPECT_EQ(corner_marks(1), (FourNodes{0, 0, 1, 1}));
    clear();
    rectangle(4, 4);
    node(5, 8, 4);
    element(2, {2, 5, 3, 3});
    build_indexes(state.mesh, state.engine);
    place({4.3F, 3.9F}, {6, 3.6F});
    EXPECT_EQ(cut.rows.at(0).element.value, 2);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 0, 1, 0}));
}

TEST_F(GroupCutEnd, SkippedEndsAreNotPlaced) {
    rectangle(10, 10);
    collect_rows(state.mesh, state.engine, cut, {2, 1}, {8, 1});
    place_ends(state.mesh, state.engine, cut, {2, 1}, {8, 1}, {});
    expect_node(1, 0, 0);
    place_ends(state.mesh, state.engine, cut, {2, 1}, {8, 1}, {.first = true});
    expect_node(1, 2, 1);
    expect_node(2, 10, 0);
}

// The nearer node is frozen and the other is not: the end goes by the crossing (x, 0) of its line, 9 from the
// other end, with the side.
TEST_F(GroupCutEnd, EndNearASideGoesOntoIt) {
    const auto side_point = [](float x) {
        clear();
        rectangle(10, 10, ALL);
        place({x, 1}, {x, 9});
        EXPECT_EQ(side_marks(0), (FourNodes{5, 0, 0, 0})) << x;
        EXPECT_EQ(state.engine.highest_node.value, 5) << x;
    };
    side_point(5);
    expect_node(5, 5, 0);
    side_point(6);
    expect_node(5, 6, 0);
    side_point(4);
    expect_node(5, 4, 0);
}

TEST_F(GroupCutEnd, NodeOnASideKeepsClearOfTheFirstCorner) {
    rectangle(10, 10, ALL);
    place({2, 1}, {2, 9});
    expect_node(5, 3, 0);
}

TEST_F(GroupCutEnd, NodeOnASideGoesOutBeyondTheSecondCorner) {
    rectangle(10, 10, ALL);
    place({8, 1}, {8, 9});
    expect_node(5, 13, 0);
}

TEST_F(GroupCutEnd, CrossingAtACornerMovesItOnlyWhenBothAreFrozen) {
    rectangle(10, 10, ALL);
    place({0.75F, 0.5F}, {0.75F, 9});
    expect_node(1, 0.75F, 0);
    EXPECT_EQ(corner_marks(0), (FourNodes{1, 0, 0, 0}));
    clear();
    rectangle(10, 10, {1});
    place({0.75F, 0.5F}, {0.75F, 9});
    expect_node(1, 0, 0);
    EXPECT_EQ(corner_marks(0), (FourNodes{1, 0, 0, 0}));
    EXPECT_EQ(state.engine.highest_node.value, 4);
    clear();
    rectangle(10, 10, ALL);
    place({9.25F, 0.5F}, {9.25F, 9});
    expect_node(2, 9.25F, 0);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 1, 0, 0}));
    clear();
    rectangle(10, 10, {2});
    place({9.25F, 0.5F}, {9.25F, 9});
    expect_node(2, 10, 0);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 1, 0, 0}));
}

TEST_F(GroupCutEnd, LineAlongTheSideDoesNothing) {
    rectangle(10, 10, ALL);
    place({5, 1}, {7, 1});
    EXPECT_EQ(state.engine.highest_node.value, 4);
    EXPECT_EQ(corner_marks(0), (FourNodes{0, 0, 0, 0}));
    EXPECT_EQ(side_marks(0), (FourNodes{0, 0, 0, 0}));
}

// The crossing (5, 0) is 3 from the end and 5 from the other point: more than half.
TEST_F(GroupCutEnd, EndWellInsideBecomesTheCentre) {
    rectangle(10, 10, ALL);
    place({5, 3}, {5, -5});
    EXPECT_EQ(cut.rows[0].centre_node.value, 5);
    expect_node(5, 5, 3);
    split_rows(state.mesh, state.engine, cut);
    ASSERT_EQ(state.engine.highest_element.value, 4);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 5, 0}));
    EXPECT_EQ(corners(2), (FourNodes{2, 3, 5, 0}));
    EXPECT_EQ(corners(3), (FourNodes{5, 3, 4, 0}));
    EXPECT_EQ(corners(4), (FourNodes{1, 5, 4, 0}));
}

// 3 of 9: between a fifth and a half, so the node goes halfway from the crossing to the other point.
TEST_F(GroupCutEnd, EndRatherNearASideGoesBackHalfTheWay) {
    rectangle(10, 10, ALL);
    place({5, 3}, {5, 9});
    EXPECT_EQ(cut.rows[0].centre_node.value, 5);
    expect_node(5, 5, 4.5F);
}

// Each quarter of the square by its own side: its mark, and where the node lies.
TEST_F(GroupCutEnd, QuarterOfTheEndDecidesTheSide) {
    struct Case {
        Point P, Q0;
        FourNodes sides;
        Point at;
    };
    for (const Case& c :
         {Case{{5, 1}, {5, 9}, {5, 0, 0, 0}, {5, 0}}, Case{{9, 5}, {1, 5}, {0, 5, 0, 0}, {10, 5}},
          Case{{5, 9}, {5, 1}, {0, 0, 5, 0}, {5, 10}}, Case{{1, 5}, {9, 5}, {0, 0, 0, 5}, {0, 5}}}) {
        clear();
        rectangle(10, 10, ALL);
        place(c.P, c.Q0);
        EXPECT_EQ(side_marks(0), c.sides);
        expect_node(5, c.at.x, c.at.y);
    }
}

// --- a triangle ----------------------------------------------------------------------------------

class GroupCutEndTriangle : public GroupCutEnd {
protected:
    void SetUp() override {
        GroupCutEnd::SetUp();
        node(1, 0, 0, true);
        node(2, 9, 0, true);
        node(3, 0, 9, true);
        element(1, {1, 2, 3, 0});
        build_indexes(state.mesh, state.engine);
    }
};

TEST_F(GroupCutEndTriangle, EndWellInsideBecomesTheCentre) {
    place({4, 2}, {4, -2});
    EXPECT_EQ(cut.rows[0].centre_node.value, 4);
    expect_node(4, 4, 2);
    split_rows(state.mesh, state.engine, cut);
    ASSERT_EQ(state.engine.highest_element.value, 3);
    EXPECT_EQ(corners(1), (FourNodes{1, 2, 4, 0}));
    EXPECT_EQ(corners(2), (FourNodes{4, 2, 3, 0}));
    EXPECT_EQ(corners(3), (FourNodes{1, 4, 3, 0}));
}

// The side between corners 1 and 2 is the one opposite corner 3; 4 of 9 is clear of both.
TEST_F(GroupCutEndTriangle, SidesAreNumberedByTheCornerOpposite) {
    place({4, 0.5F}, {4, 6});
    EXPECT_EQ(side_marks(0), (FourNodes{0, 0, 4, 0}));
    expect_node(4, 4, 0);
}

TEST_F(GroupCutEndTriangle, LastSideIsOppositeTheSecondCorner) {
    place({0.5F, 4}, {6, 4});
    EXPECT_EQ(side_marks(0), (FourNodes{0, 4, 0, 0}));
    expect_node(4, 0, 4);
}

// (4.25, 4.25) by the line through the origin meets the long side at (4.5, 4.5), halfway.
TEST_F(GroupCutEndTriangle, LongSideIsOppositeTheFirstCorner) {
    place({4.25F, 4.25F}, {0, 0});
    EXPECT_EQ(side_marks(0), (FourNodes{4, 0, 0, 0}));
    expect_node(4, 4.5F, 4.5F);
}

// --- code words of a centre node -----------------------------------------------------------------

TEST_F(GroupCutEnd, CentreStartsByKindAndFollowsItsCorners) {
    for (const std::int32_t kind : {COUPLED, TEMPERATURE, HEAD, DISPLACEMENT}) {
        const Edition edition(kind);
        const bool has_values = kind == TEMPERATURE || kind == HEAD;
        clear();
        rectangle(10, 10, ALL);
        for (const std::int32_t n : ALL)
            state.mesh.codes[NodeNumber(n)] = has_values ? NodeCodes{} : NodeCodes{1, 1, 1, 1, 1};
        state.mesh.codes[NodeNumber(3)][1] = has_values ? 6 : 0;
        state.mesh.head[NodeNumber(2)] = 4.0F;
        place({5, 3}, {5, -5});
        ASSERT_EQ(state.engine.highest_node.value, 5);
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][0], kind == TEMPERATURE ? 0 : 1) << kind;
        EXPECT_EQ(state.mesh.codes[NodeNumber(5)][1], has_values ? 6 : 0) << kind;
        if (kind != TEMPERATURE) {
            EXPECT_EQ(state.mesh.codes[NodeNumber(5)][2], 1) << kind;
        }
        if (has_values) {
            EXPECT_EQ(state.mesh.head[NodeNumber(5)], 4.0F) << kind;
        }
    }
}

}  // namespace
}  // namespace brelan::test
