// The line-up of trusses: each place of a truss on its quadrilateral, both directions, and the search held
// against a plain scan of all trusses and elements.
#include "mesh/line_up.h"

#include <random>

#include "mesh/move_tables.h"
#include "mesh/tables.h"
#include "support/campaign.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class LineUp : public ::testing::Test {
protected:
    void SetUp() override {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        state.moves.first_count = 0;
        next_ = 0;
    }
    static void node(std::int32_t n, float x, float y) {
        state.mesh.x[NodeNumber(n)] = x;
        state.mesh.y[NodeNumber(n)] = y;
    }
    void quadrilateral(const std::array<std::int32_t, 4>& corners, std::int32_t material = 7) {
        state.mesh.type[ElementNumber(++next_)] = ELEMENT_CONTINUUM;
        state.mesh.words[ElementNumber(next_)] =
            words_of({corners[0], corners[1], corners[2], corners[3]}, material);
    }
    void truss(std::int32_t i, std::int32_t j) {
        state.mesh.type[ElementNumber(++next_)] = ELEMENT_TRUSS;
        state.mesh.words[ElementNumber(next_)] = words_of({i, j, j, i});
    }
    static void expect_moved(std::int32_t n, float x, float y) {
        const auto lined = std::find_if(state.line_up.nodes.begin(), state.line_up.nodes.end(),
                                        [n](const LinedNode& other) { return other.node.value == n; });
        ASSERT_NE(lined, state.line_up.nodes.end()) << "node " << n;
        EXPECT_FLOAT_EQ(lined->x, x) << n;
        EXPECT_FLOAT_EQ(lined->y, y) << n;
    }
    // The nodes to be moved, in the order in which they are.
    static std::vector<std::int32_t> moved_nodes() {
        std::vector<std::int32_t> numbers;
        for (const LinedNode& lined : state.line_up.nodes)
            numbers.push_back(lined.node.value);
        return numbers;
    }
    std::int32_t next_ = 0;
};

// --- the place of a truss on its quadrilateral ---------------------------------------------------

struct SlotRow {
    std::size_t a, b, c, d;  // slots of the truss's ends, of the corner next to each
};
constexpr SlotRow SLOTS[] = {{1, 2, 4, 3}, {1, 4, 2, 3}, {2, 3, 1, 4}, {2, 1, 3, 4},
                             {3, 4, 2, 1}, {3, 2, 4, 1}, {4, 1, 3, 2}, {4, 3, 1, 2}};

// A truss from 1 to 2 at s = 0 and s = 1 (or back), opposite corners 3 (next to 1) and 4; with the axes
// exchanged the opposite edge is vertical. The truss leans: the line through it rises by 0.5.
TEST_F(LineUp, CornersNextToTheEndsByTheirSlots) {
    for (const SlotRow& row : SLOTS)
        for (const bool vertical : {false, true})
            for (const bool falling : {false, true}) {
                SetUp();
                const auto put = [&](std::int32_t n, float s, float across) {
                    const float along = falling ? 1.0F - s : s;
                    vertical ? node(n, across, along) : node(n, along, across);
                };
                put(1, 0.0F, 0.0F);
                put(2, 1.0F, 0.5F);
                put(3, 0.25F, 2.0F);
                put(4, 0.75F, 2.0F);
                std::array<std::int32_t, 4> corners{};
                corners[row.a - 1] = 1;
                corners[row.b - 1] = 2;
                corners[row.c - 1] = 3;
                corners[row.d - 1] = 4;
                quadrilateral(corners);
                truss(1, 2);
                search_line_up(state.mesh, state.moves, state.line_up);
                EXPECT_EQ(moved_nodes(), (std::vector<std::int32_t>{1, 2})) << row.a << row.b;
                const auto moved = [&](std::int32_t n, float s, float across) {
                    const float along = falling ? 1.0F - s : s;
                    vertical ? expect_moved(n, across, along) : expect_moved(n, along, across);
                };
                moved(1, 0.25F, 0.125F);
                moved(2, 0.75F, 0.375F);
                EXPECT_EQ(state.moves.first_count, 0);
            }
}

TEST_F(LineUp, DiagonalOfAQuadrilateralStays) {
    for (const std::array<std::int32_t, 4>& corners :
         {std::array<std::int32_t, 4>{1, 3, 2, 4}, {3, 1, 4, 2}, {2, 3, 1, 4}, {4, 2, 3, 1}}) {
        SetUp();
        node(1, 0, 0);
        node(2, 1, 1);
        node(3, 0.75F, 0);
        node(4, 0.25F, 0);
        quadrilateral(corners);
        truss(1, 2);
        search_line_up(state.mesh, state.moves, state.line_up);
        EXPECT_TRUE(state.line_up.nodes.empty());
    }
}

TEST_F(LineUp, OppositeEdgeOfNoLengthIsVertical) {
    node(1, 0, 0);
    node(2, 1, 1);
    node(3, 2, 0.5F);
    node(4, 2, 0.5F);
    quadrilateral({1, 2, 4, 3});
    truss(1, 2);
    search_line_up(state.mesh, state.moves, state.line_up);
    expect_moved(1, 0.5F, 0.5F);
    expect_moved(2, 0.5F, 0.5F);
}

// A truss across the direction in which it would have to go has nowhere to slide to.
TEST_F(LineUp, TrussAcrossTheSlideStays) {
    node(1, 0, 0);
    node(2, 0, 1);
    node(3, 1, 2);
    node(4, 2, 2);
    quadrilateral({1, 2, 4, 3});
    truss(1, 2);
    search_line_up(state.mesh, state.moves, state.line_up);
    EXPECT_TRUE(state.line_up.nodes.empty());
    EXPECT_EQ(state.moves.first_count, 0);
}

// --- beyond the ends -----------------------------------------------------------------------------

// Trusses 5-1, 1-2, 2-6 at s = -1, 0, 1, 2 (times the sign); the opposite corners at C and D.
class LineUpBeyond : public LineUp {
protected:
    void line(float sign, float C, float D) {
        SetUp();
        node(5, -1 * sign, -0.5F);
        node(1, 0, 0);
        node(2, 1 * sign, 0.25F);
        node(6, 2 * sign, 1);
        node(3, C * sign, 3);
        node(4, D * sign, 3);
        quadrilateral({1, 2, 4, 3});
        truss(5, 1);
        truss(1, 2);
        truss(2, 6);
        search_line_up(state.mesh, state.moves, state.line_up);
    }
    static std::vector<std::int32_t> merges() {
        std::vector<std::int32_t> pairs;
        for (std::int32_t k = 1; k <= state.moves.first_count; ++k) {
            pairs.push_back(state.moves.first[k].moved.value);
            pairs.push_back(state.moves.first[k].target.value);
            EXPECT_EQ(state.moves.first[k].fraction, 1.0F);
        }
        return pairs;
    }
};

using Numbers = std::vector<std::int32_t>;

TEST_F(LineUpBeyond, EndsSlideOnTheirNeighboursTrussAndPassedOnesMerge) {
    for (const float sign : {1.0F, -1.0F}) {
        line(sign, -0.5F, 1.5F);  // short of both neighbours
        EXPECT_EQ(merges(), Numbers{});
        expect_moved(1, -0.5F * sign, -0.25F);
        expect_moved(2, 1.5F * sign, 0.625F);
        line(sign, -1.0F, 2.0F);  // up to them
        EXPECT_EQ(merges(), (Numbers{5, 1, 6, 2}));
        expect_moved(1, -1.0F * sign, -0.5F);
        expect_moved(2, 2.0F * sign, 1.0F);
        line(sign, -3.0F, 4.0F);  // beyond
        EXPECT_EQ(merges(), (Numbers{5, 1, 6, 2}));
        expect_moved(1, -3.0F * sign, -1.5F);
        expect_moved(2, 4.0F * sign, 2.5F);
    }
}

// C on the far side of B: A goes there along the line to its own neighbour, and passes none.
TEST_F(LineUpBeyond, TargetsOnTheFarSideOfTheOtherEnd) {
    for (const float sign : {1.0F, -1.0F}) {
        line(sign, 3.0F, -2.0F);
        EXPECT_EQ(merges(), Numbers{});
        expect_moved(1, 3.0F * sign, 1.5F);
        expect_moved(2, -2.0F * sign, -2.0F);
    }
}

TEST_F(LineUpBeyond, TargetsAtTheEndsAreWithin) {
    for (const float sign : {1.0F, -1.0F}) {
        line(sign, 0.0F, 1.0F);
        EXPECT_EQ(merges(), Numbers{});
        expect_moved(1, 0.0F, 0.0F);
        expect_moved(2, 1.0F * sign, 0.25F);
        line(sign, 1.0F, 0.0F);
        expect_moved(1, 1.0F * sign, 0.25F);
        expect_moved(2, 0.0F, 0.0F);
    }
}

TEST_F(LineUpBeyond, WithoutANeighbourTheEndStays) {
    for (const float sign : {1.0F, -1.0F}) {
        line(sign, -3.0F, 4.0F);
        state.mesh.type[ElementNumber(2)] = state.mesh.type[ElementNumber(4)] = ELEMENT_DELETED;
        state.moves.first_count = 0;
        search_line_up(state.mesh, state.moves, state.line_up);
        EXPECT_TRUE(state.line_up.nodes.empty());
        EXPECT_EQ(state.moves.first_count, 0);
    }
}

// The last truss of several counts.
TEST_F(LineUpBeyond, NeighbourIsThatOfTheHighestNumber) {
    line(1.0F, -0.5F, 0.5F);
    node(8, -1, 4);
    truss(8, 1);
    state.moves.first_count = 0;
    search_line_up(state.mesh, state.moves, state.line_up);
    expect_moved(1, -0.5F, 2.0F);
}

TEST_F(LineUpBeyond, NeighbourThatIsACornerOfTheQuadrilateralStopsTheWork) {
    for (const bool in_front : {true, false}) {
        line(1.0F, 0.25F, 0.75F);
        if (in_front)
            truss(3, 1);
        else
            truss(2, 4);
        state.moves.first_count = 0;
        search_line_up(state.mesh, state.moves, state.line_up);
        EXPECT_TRUE(state.line_up.nodes.empty());
    }
}

// A second quadrilateral on the other side of the truss finds its ends moved, yet its merges are noted.
TEST_F(LineUpBeyond, MergesAreNotedThoughTheNodeHasMoved) {
    line(1.0F, 0.25F, 0.75F);
    node(10, -2, -3);
    node(11, 5, -3);
    quadrilateral({2, 1, 10, 11});
    state.moves.first_count = 0;
    search_line_up(state.mesh, state.moves, state.line_up);
    EXPECT_EQ(merges(), (Numbers{5, 1, 6, 2}));
    expect_moved(1, 0.25F, 0.0625F);
    EXPECT_EQ(moved_nodes(), (Numbers{1, 2}));
}

TEST_F(LineUpBeyond, ApplyingMovesTheListedNodesOnly) {
    line(1.0F, 0.5F, -9.0F);
    EXPECT_EQ(moved_nodes(), (Numbers{1, 2}));
    apply_line_up(state.mesh, state.line_up);
    EXPECT_FLOAT_EQ(state.mesh.x[NodeNumber(1)], 0.5F);
    EXPECT_FLOAT_EQ(state.mesh.y[NodeNumber(1)], 0.125F);
    EXPECT_FLOAT_EQ(state.mesh.x[NodeNumber(6)], 2.0F);
    EXPECT_FLOAT_EQ(state.mesh.y[NodeNumber(6)], 1.0F);
}

// --- against a plain scan ------------------------------------------------------------------------

// The work as it is described: all elements for every truss, all trusses for every pair.
struct PlainScan {
    const brelan::Mesh& mesh;
    std::vector<LinedNode> nodes{};
    std::vector<NodeMove> moves{};

    void run(std::int32_t last) {
        for (std::int32_t t = 1; t <= last; ++t)
            if (mesh.type[ElementNumber(t)] == ELEMENT_TRUSS)
                for (std::int32_t e = 1; e <= last; ++e)
                    if (mesh.type[ElementNumber(e)] == ELEMENT_CONTINUUM &&
                        mesh.words[ElementNumber(e)].material.value == 7 &&
                        mesh.words[ElementNumber(e)].corner_4.value != 0)
                        pair(t, e, last);
    }

private:
    void pair(std::int32_t t, std::int32_t e, std::int32_t last) {
        const std::int32_t A = mesh.words[ElementNumber(t)].corner_1.value,
                           B = mesh.words[ElementNumber(t)].corner_2.value;
        const std::array<std::int32_t, 5> corner{
            0, mesh.words[ElementNumber(e)].corner_1.value, mesh.words[ElementNumber(e)].corner_2.value,
            mesh.words[ElementNumber(e)].corner_3.value, mesh.words[ElementNumber(e)].corner_4.value};
        std::size_t a = 0, b = 0;
        for (std::size_t slot = 1; slot <= 4; ++slot) {
            a = corner[slot] == A ? slot : a;
            b = corner[slot] == B ? slot : b;
        }
        if (a == 0 || b == 0)
            return;
        std::int32_t P = 0, N = 0;
        for (std::int32_t other = 1; other <= last; ++other) {
            if (other == e || mesh.type[ElementNumber(other)] != ELEMENT_TRUSS)
                continue;
            if (mesh.words[ElementNumber(other)].corner_2.value == A)
                P = mesh.words[ElementNumber(other)].corner_1.value;
            if (mesh.words[ElementNumber(other)].corner_1.value == B)
                N = mesh.words[ElementNumber(other)].corner_2.value;
        }
        for (std::size_t slot = 1; slot <= 4; ++slot)
            if (slot != a && slot != b && (corner[slot] == P || corner[slot] == N))
                return;
        for (const SlotRow& row : SLOTS)
            if (row.a == a && row.b == b)
                slides(A, B, corner[row.c], corner[row.d], P, N);
    }
    void slides(std::int32_t A, std::int32_t B, std::int32_t C, std::int32_t D, std::int32_t P,
                std::int32_t N) {
        if (mesh.x[NodeNumber(C)] != mesh.x[NodeNumber(D)] && mesh.y[NodeNumber(C)] != mesh.y[NodeNumber(D)])
            return;
        const bool vertical = mesh.x[NodeNumber(C)] == mesh.x[NodeNumber(D)];
        const auto s = [&](std::int32_t n) {
            return vertical ? mesh.y[NodeNumber(n)] : mesh.x[NodeNumber(n)];
        };
        if (s(A) <= s(B)) {
            if (s(A) <= s(C) && s(C) <= s(B)) {
                slide(A, s(C), A, B, vertical);
            } else if (P != 0) {
                if (s(C) <= s(P))
                    moves.push_back({NodeNumber(P), NodeNumber(A), 1.0F});
                slide(A, s(C), A, P, vertical);
            }
            if (s(A) <= s(D) && s(D) <= s(B)) {
                slide(B, s(D), B, A, vertical);
            } else if (N != 0) {
                if (s(N) <= s(D))
                    moves.push_back({NodeNumber(N), NodeNumber(B), 1.0F});
                slide(B, s(D), N, B, vertical);
            }
        } else {
            if (s(B) <= s(C) && s(C) <= s(A)) {
                slide(A, s(C), A, B, vertical);
            } else if (P != 0) {
                if (s(P) <= s(C))
                    moves.push_back({NodeNumber(P), NodeNumber(A), 1.0F});
                slide(A, s(C), A, P, vertical);
            }
            if (s(B) <= s(D) && s(D) <= s(A)) {
                slide(B, s(D), B, A, vertical);
            } else if (N != 0) {
                if (s(D) <= s(N))
                    moves.push_back({NodeNumber(N), NodeNumber(B), 1.0F});
                slide(B, s(D), N, B, vertical);
            }
        }
    }
    void slide(std::int32_t n, float to, std::int32_t p, std::int32_t q, bool vertical) {
        const auto s = [&](std::int32_t i) {
            return vertical ? mesh.y[NodeNumber(i)] : mesh.x[NodeNumber(i)];
        };
        const auto across = [&](std::int32_t i) {
            return vertical ? mesh.x[NodeNumber(i)] : mesh.y[NodeNumber(i)];
        };
        for (const LinedNode& lined : nodes)
            if (lined.node.value == n)
                return;
        if (s(q) == s(p))
            return;
        const float t = (to - s(p)) / (s(q) - s(p));
        const float other = across(p) + (across(q) - across(p)) * t;
        nodes.push_back({NodeNumber(n), vertical ? other : to, vertical ? to : other});
    }
};

TEST_F(LineUp, SearchGivesWhatAPlainScanGives) {
    std::mt19937 random(77);
    const auto upto = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    int moved = 0, merged = 0;
    const int count = rounds(240, 1000);
    for (int round = 0; round < count; ++round) {
        SetUp();
        const int nodes = 6 + upto(20);
        for (std::int32_t n = 1; n <= nodes; ++n)
            node(n, 0.5F * static_cast<float>(upto(7)), 0.5F * static_cast<float>(upto(4)));
        const int elements = 5 + upto(40);
        for (int i = 0; i < elements; ++i) {
            const std::int32_t first = 1 + upto(nodes);
            const auto near = [&](int step) { return 1 + (first + step - 1 + nodes) % nodes; };
            switch (upto(5)) {
                case 0:
                case 1:
                    truss(first, near(1 + upto(3)));
                    break;
                case 2:
                    quadrilateral({first, near(1), near(3), near(2)}, upto(5) == 0 ? 6 : 7);
                    break;
                case 3:
                    quadrilateral({near(2), near(1), first, upto(4) == 0 ? 0 : near(4)});
                    break;
                default:
                    ++next_;  // a number without an element
            }
        }
        PlainScan plain{state.mesh};
        plain.run(next_);
        search_line_up(state.mesh, state.moves, state.line_up);
        ASSERT_EQ(state.line_up.nodes.size(), plain.nodes.size()) << round;
        for (std::size_t i = 0; i < plain.nodes.size(); ++i) {
            ASSERT_EQ(state.line_up.nodes[i].node, plain.nodes[i].node) << round;
            ASSERT_EQ(state.line_up.nodes[i].x, plain.nodes[i].x) << round;
            ASSERT_EQ(state.line_up.nodes[i].y, plain.nodes[i].y) << round;
        }
        ASSERT_EQ(static_cast<std::size_t>(state.moves.first_count), plain.moves.size()) << round;
        for (std::int32_t k = 1; k <= state.moves.first_count; ++k) {
            const NodeMove& expected = plain.moves[static_cast<std::size_t>(k - 1)];
            ASSERT_EQ(state.moves.first[k].moved, expected.moved) << round;
            ASSERT_EQ(state.moves.first[k].target, expected.target) << round;
        }
        moved += static_cast<int>(state.line_up.nodes.size());
        merged += state.moves.first_count;
    }
    // The rounds are worth something only when most of them move nodes.
    EXPECT_GT(moved, count);
    EXPECT_GT(merged, count * 3 / 10);
}

TEST_F(LineUp, TrussWithACornerThatIsNoNodeIsPassedOver) {
    node(1, 0.0F, 0.0F);
    node(2, 1.0F, 0.0F);
    node(3, 1.0F, 1.0F);
    node(4, 0.0F, 1.0F);
    quadrilateral({1, 2, 3, 4});
    truss(0, 2);
    truss(1, -5);
    search_line_up(state.mesh, state.moves, state.line_up);
    EXPECT_TRUE(moved_nodes().empty());
}

}  // namespace
}  // namespace brelan::test
