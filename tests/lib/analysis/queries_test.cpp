// What lies where, against scans of all nodes and elements.
#include "analysis/queries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "support/mesh_sample.h"

namespace brelan::test {
namespace {

using Numbers = std::vector<Number>;

// Four columns by three rows of unit squares, nodes numbered up each column from the left; materials by
// column; the right half stands apart at a joint along x = 2, whose right side has nodes 21 to 24.
MeshLists halves() {
    Sample sample;
    sample.nodes({{0, 0}, {0, 1}, {0, 2}, {0, 3}, {1, 0}, {1, 1}, {1, 2}, {1, 3},
                  {2, 0}, {2, 1}, {2, 2}, {2, 3}, {3, 0}, {3, 1}, {3, 2}, {3, 3},
                  {4, 0}, {4, 1}, {4, 2}, {4, 3}, {2, 0}, {2, 1}, {2, 2}, {2, 3}});
    const auto node = [](int column, int row, bool right) {
        return column == 2 && right ? 21 + row : 4 * column + row + 1;
    };
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < 3; ++r)
            sample.solid({node(c, r, c >= 2), node(c + 1, r, c >= 2), node(c + 1, r + 1, c >= 2),
                          node(c, r + 1, c >= 2)},
                         c + 1);
    for (int r = 0; r < 3; ++r)
        sample.joint({9 + r, 10 + r, 22 + r, 21 + r}, 2);
    return sample.beam(9, 10, 2).truss(1, 20, 2).mesh();
}

TEST(Queries, NodesOnALineAreThoseOfAPlainScan) {
    const MeshLists mesh = halves();
    EXPECT_EQ(nodes_on(mesh, {Axis::x, 2.0}), (Numbers{9, 10, 11, 12, 21, 22, 23, 24}));
    EXPECT_EQ(nodes_on(mesh, {Axis::y, 3.0}), (Numbers{4, 8, 12, 16, 20, 24}));
    EXPECT_TRUE(nodes_on(mesh, {Axis::x, 2.5}).empty());
    EXPECT_EQ(nodes_on(mesh, {Axis::x, 2.5}, 0.5).size(), 12U);
    // A unit and a half in the sixth digit of 4.
    EXPECT_EQ(nodes_on(mesh, {Axis::x, 4.00001}).size(), 4U);
    EXPECT_TRUE(nodes_on(mesh, {Axis::x, 4.00002}).empty());
}

TEST(Queries, NodesInARectangleAreThoseOfAPlainScanEdgesIncluded) {
    std::mt19937 random(7);
    const auto real = [&] {
        return std::round(std::uniform_real_distribution<double>(-1.0, 5.0)(random) * 4) / 4;
    };
    const MeshLists mesh = halves();
    for (int round = 0; round < 200; ++round) {
        Bounds b{{real(), real()}, {real(), real()}};
        Numbers expected;
        for (const Node& n : mesh.nodes)
            if (n.x >= b.low.x && n.x <= b.high.x && n.y >= b.low.y && n.y <= b.high.y)
                expected.push_back(n.number.value);
        EXPECT_EQ(nodes_in(mesh, b), expected);
    }
}

TEST(Queries, ElementsOfAMaterialAreOfItsClassAlone) {
    const MeshLists mesh = halves();
    EXPECT_EQ(elements_of(mesh, ElementClass::solid, 2), (Numbers{4, 5, 6}));
    EXPECT_EQ(elements_of(mesh, ElementClass::joint, 2), (Numbers{13, 14, 15}));
    EXPECT_EQ(elements_of(mesh, ElementClass::beam, 2), (Numbers{16}));
    EXPECT_EQ(elements_of(mesh, ElementClass::truss, 2), (Numbers{17}));
    EXPECT_EQ(continuum_elements_of(mesh, 2), (Numbers{4, 5, 6, 13, 14, 15}));
    EXPECT_TRUE(elements_of(mesh, ElementClass::beam, 1).empty());
}

TEST(Queries, BorderIsTheOutlineWithBothNodesWhereAJointEndsInIt) {
    EXPECT_EQ(border_nodes(halves()), (Numbers{1, 2, 3, 4, 5, 8, 9, 12, 13, 16, 17, 18, 19, 20, 21, 24}));
    // A hole has a border as well, and doubles have none of their own.
    Sample ring;
    ring.nodes({{0, 0}, {3, 0}, {3, 3}, {0, 3}, {1, 1}, {2, 1}, {2, 2}, {1, 2}})
        .solid({1, 2, 6, 5})
        .solid({2, 3, 7, 6})
        .solid({3, 4, 8, 7})
        .solid({4, 1, 5, 8});
    EXPECT_EQ(border_nodes(ring.mesh()), (Numbers{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(border_nodes(ring.solid({5, 6, 7, 8}).solid({5, 6, 7, 8}, 2).mesh()), (Numbers{1, 2, 3, 4}));
}

TEST(Queries, BorderHasTheMidsideNodesOfItsSides) {
    // Two triangles with midside nodes; 9 lies on the side that they share.
    Sample sample;
    sample.nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}, {1, 1}});
    sample.solid({1, 2, 3});
    sample.last().words.midside_5 = NodeNumber(5);
    sample.last().words.midside_6 = NodeNumber(6);
    sample.last().words.midside_7 = NodeNumber(9);
    sample.solid({1, 3, 4});
    sample.last().words.midside_5 = NodeNumber(9);
    sample.last().words.midside_6 = NodeNumber(7);
    sample.last().words.midside_7 = NodeNumber(8);
    EXPECT_EQ(border_nodes(sample.mesh()), (Numbers{1, 2, 3, 4, 5, 6, 7, 8}));
}

// Nodes of whole coordinates in a square, some of them twice.
MeshLists scattered(std::mt19937& random, int side) {
    Sample sample;
    const int count = std::uniform_int_distribution<int>(0, side * side)(random);
    for (int k = 0; k < count; ++k)
        sample.nodes({{double(std::uniform_int_distribution<int>(0, side)(random)),
                       double(std::uniform_int_distribution<int>(0, side)(random))}});
    return sample.mesh();
}

TEST(Queries, PairsAreThoseOfAllPairsWhereEitherMeshHasOneNode) {
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round) {
        const MeshLists a = scattered(random, 6), b = scattered(random, 6);
        const bool on_line = round % 2 == 0;
        const auto alone = [](const MeshLists& mesh, const Node& node) {
            return std::count_if(mesh.nodes.begin(), mesh.nodes.end(), [&](const Node& other) {
                       return other.x == node.x && other.y == node.y;
                   }) == 1;
        };
        std::vector<std::pair<Number, Number>> expected;
        std::set<Number> left_a, left_b;
        for (const Node& p : a.nodes)
            for (const Node& q : b.nodes) {
                if (p.x != q.x || p.y != q.y || (on_line && p.x != 3.0F))
                    continue;
                if (alone(a, p) && alone(b, q)) {
                    expected.emplace_back(p.number.value, q.number.value);
                } else {
                    left_a.insert(p.number.value);
                    left_b.insert(q.number.value);
                }
            }
        const CoincidentPairs found =
            coincident_pairs(a, b, on_line ? std::optional(AxisLine{Axis::x, 3.0}) : std::nullopt);
        EXPECT_EQ(found.pairs, expected);
        EXPECT_EQ(found.unpaired_first, Numbers(left_a.begin(), left_a.end()));
        EXPECT_EQ(found.unpaired_second, Numbers(left_b.begin(), left_b.end()));
    }
}

TEST(Queries, RangesAreRunsOfConsecutiveNumbers) {
    EXPECT_TRUE(ranges_of({}).empty());
    EXPECT_EQ(ranges_of({1, 2, 3, 5, 8, 9}),
              (std::vector<std::pair<Number, Number>>{{1, 3}, {5, 5}, {8, 9}}));
}

}  // namespace
}  // namespace brelan::test
