// The code words of nodes that a cut adds. In the temperature and head kinds a word that is not 0 fixes the
// node or ties it to a line: the sound cut leaves a node free that lies beside fixed ones, the cut by the
// rules does not.

#include "group/new_nodes.h"

#include <gtest/gtest.h>

#include <tuple>

#include "lib/group/cut_fixture.h"

namespace brelan::test {
namespace {

using Words = std::tuple<int, int>;

// A rectangle whose lower side is fixed, its first corner by two words.
class NewNodes : public CutFixture {
protected:
    void lay_out(LayoutKind kind) {
        rectangle(4.0F, 2.0F);
        state.mesh.kind = kind;
        for (std::int32_t n = 1; n <= 4; ++n)
            state.mesh.codes[NodeNumber(n)] = {};
        state.mesh.codes[NodeNumber(1)] = {1, 1};
        state.mesh.codes[NodeNumber(2)] = {1, 0};
    }
    void TearDown() override {
        state.mesh.kind = {};
        CutFixture::TearDown();
    }
    static Words words_of_node(NodeNumber n) { return {state.mesh.codes[n][0], state.mesh.codes[n][1]}; }
    static Words on_side(std::int32_t a, std::int32_t b, Codes codes) {
        return words_of_node(
            add_side_node(state.mesh, state.engine, {1.0F, 0.0F}, NodeNumber(a), NodeNumber(b), codes));
    }
    static Words inside(Codes codes) {
        const std::array<NodeNumber, 4> corners{NodeNumber(1), NodeNumber(2), NodeNumber(3), NodeNumber(4)};
        return words_of_node(add_inner_node(state.mesh, state.engine, {2.0F, 1.0F}, corners, codes));
    }
};

TEST_F(NewNodes, AreFreeInTheSoundCutWhereANeighbourIs) {
    for (const LayoutKind kind : {LayoutKind::temperature, LayoutKind::head}) {
        lay_out(kind);
        EXPECT_EQ(on_side(1, 2, Codes::of_all), Words(1, 0));
        EXPECT_EQ(on_side(2, 1, Codes::of_all), Words(1, 0));
        EXPECT_EQ(on_side(1, 4, Codes::of_all), Words(0, 0));
        EXPECT_EQ(on_side(4, 1, Codes::of_all), Words(0, 0));
        EXPECT_EQ(inside(Codes::of_all), Words(0, 0));
        state.mesh.codes[NodeNumber(2)] = state.mesh.codes[NodeNumber(3)] =
            state.mesh.codes[NodeNumber(4)] = {1, 1};
        EXPECT_EQ(inside(Codes::of_all), Words(1, 1));
    }
}

TEST_F(NewNodes, TakeTheWordsOfAnyByTheRules) {
    for (const LayoutKind kind : {LayoutKind::temperature, LayoutKind::head}) {
        lay_out(kind);
        EXPECT_EQ(on_side(1, 2, Codes::of_any), Words(1, 1));
        EXPECT_EQ(on_side(4, 1, Codes::of_any), Words(1, 1));
        EXPECT_EQ(inside(Codes::of_any), Words(1, 1));
        state.mesh.codes[NodeNumber(1)] = state.mesh.codes[NodeNumber(2)] = {};
        EXPECT_EQ(inside(Codes::of_any), kind == LayoutKind::head ? Words(1, 1) : Words(0, 0));
    }
}

// In the other kinds both cuts fix what all are fixed by.
TEST_F(NewNodes, AreFixedInTheOtherKindsByWhatFixesAll) {
    for (const Codes codes : {Codes::of_any, Codes::of_all}) {
        lay_out(LayoutKind::displacement);
        EXPECT_EQ(on_side(1, 2, codes), Words(1, 0));
        EXPECT_EQ(on_side(1, 4, codes), Words(0, 0));
        EXPECT_EQ(inside(codes), Words(0, 0));
    }
}

}  // namespace
}  // namespace brelan::test
