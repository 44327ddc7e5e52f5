// The search for a node at a point gives with its index what a scan of all numbers gives: among scattered and
// crowded nodes, unused numbers at (0, 0), nodes that move and nodes that come.

#include <cmath>
#include <limits>

#include "group/engine.h"
#include "group/engine_mesh.h"
#include "group/line_nodes.h"
#include "group/node_index.h"
#include "support/group_drawing.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class GroupNodeIndex : public ::testing::Test {
protected:
    void TearDown() override {
        state.engine.uses_indexes = true;
        state.engine.highest_node = NodeNumber(0);
        build_indexes(state.mesh, state.engine);
    }

    // Nodes of which some stand alone, some in crowds, some nowhere.
    static void scatter(Drawing& drawing, int count, float size) {
        state.engine.highest_node = NodeNumber(count);
        Point crowd;
        for (NodeNumber n{1}; n <= state.engine.highest_node; ++n) {
            if (drawing.one_in(10))
                crowd = {drawing.between(-size, size), drawing.between(-size, size)};
            Point p;
            if (drawing.one_in(3))
                p = {drawing.between(-size, size), drawing.between(-size, size)};
            else if (!drawing.one_in(4))
                p = {crowd.x + drawing.between(-0.01F, 0.01F), crowd.y + drawing.between(-0.01F, 0.01F)};
            state.mesh.x[n] = p.x;
            state.mesh.y[n] = p.y;
        }
        state.engine.highest_element = ElementNumber(0);
        build_indexes(state.mesh, state.engine);
    }

    static void expect_same(const Point& p, float reach) {
        state.engine.uses_indexes = false;
        const NodeNumber scanned = lowest_node_within(state.mesh, state.engine, p, reach);
        state.engine.uses_indexes = true;
        EXPECT_EQ(lowest_node_within(state.mesh, state.engine, p, reach), scanned)
            << "at " << p.x << ", " << p.y << " within " << reach << " of " << state.engine.highest_node
            << " nodes";
        found += scanned.names_one() ? 1 : 0;
        missed += scanned.is_none() ? 1 : 0;
    }

    static inline int found = 0, missed = 0;
};

TEST_F(GroupNodeIndex, FindsWhatAScanFindsWhileNodesMoveAndCome) {
    found = missed = 0;
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        Drawing drawing(seed);
        static constexpr std::array<float, 3> sizes{1.0F, 100.0F, 3.0E5F};
        const float size = drawing.one_of(sizes);
        scatter(drawing, 1 + drawing.below(400), size);
        static constexpr std::array<float, 6> reaches{0.001F, 0.005F, 0.02F, 0.5F, 30.0F, 0.0F};
        for (int i = 0; i < 300 && !HasFailure(); ++i) {
            const NodeNumber n(1 + drawing.below(state.engine.highest_node.value));
            const float reach = drawing.one_of(reaches);
            Point p = node_point(state.mesh, n);
            switch (drawing.below(5)) {
                case 0:
                    p = {drawing.between(-1.5F * size, 1.5F * size), drawing.between(-size, size)};
                    break;
                case 1:
                    p = {};
                    break;
                case 2:  // exactly at the reach, where the strict test decides
                    p.x = p.x + reach;
                    break;
                default:
                    p = {p.x + drawing.between(-reach, reach), p.y + drawing.between(-reach, reach)};
            }
            expect_same(p, reach);
            if (drawing.one_in(3))
                move_node(state.mesh, state.engine, n,
                          {drawing.between(-size, size), drawing.between(-2.0F * size, size)});
            if (drawing.one_in(5))
                add_node(state.mesh, state.engine, p);
        }
    }
    EXPECT_GT(found, 3000);
    EXPECT_GT(missed, 3000);
}

TEST_F(GroupNodeIndex, FindsNothingAtAPointOrReachThatIsNoNumber) {
    Drawing drawing(5);
    scatter(drawing, 50, 10.0F);
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    constexpr float endless = std::numeric_limits<float>::infinity();
    found = 0;
    expect_same({none, 0.0F}, 0.1F);
    expect_same({0.0F, none}, 0.1F);
    expect_same({0.0F, 0.0F}, none);
    expect_same({endless, 0.0F}, 0.1F);
    expect_same({0.0F, 0.0F}, -1.0F);
    EXPECT_EQ(found, 0);
    expect_same({0.0F, 0.0F}, endless);
    EXPECT_EQ(found, 1);
}

// Of numbers 1 to 20 only 1, 4, 7 and 9 are nodes: the lowest unused number is taken for the origin, the
// lower of two nodes at one place, and none exactly at the distance.
TEST_F(GroupNodeIndex, FreeLineTakesTheLowestUnusedNumberAtTheOrigin) {
    for (const bool on : {true, false}) {
        state.engine.highest_node = NodeNumber(20);
        for (NodeNumber n{1}; n <= state.engine.highest_node; ++n)
            state.mesh.x[n] = state.mesh.y[n] = 0.0F;
        state.mesh.x[NodeNumber(4)] = 2.0F;
        state.mesh.x[NodeNumber(7)] = 2.0F;
        state.mesh.x[NodeNumber(9)] = state.mesh.y[NodeNumber(9)] = 3.0F;
        state.mesh.x[NodeNumber(1)] = 5.0F;
        build_indexes(state.mesh, state.engine);
        state.engine.uses_indexes = on;
        state.tolerances.same = 0.0078125F;
        Path path;
        path.points = {{0.0F, 0.005F}, {2.005F, 0.0F}, {2.5F, 0.0F}, {2.505F, 0.0F}, {3.0078125F, 3.0F}};
        const std::vector<NodeNumber> line =
            list_free_nodes(state.mesh, state.tolerances, state.engine, path);
        EXPECT_EQ(values_of(line), (std::vector<std::int32_t>{2, 4, 21, 21, 22}));
        EXPECT_EQ(state.engine.highest_node.value, 22);
        EXPECT_EQ(state.mesh.codes[NodeNumber(21)][4], 1);
    }
}

}  // namespace
}  // namespace brelan::test
