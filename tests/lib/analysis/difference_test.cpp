#include "analysis/difference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "support/mesh_sample.h"

namespace brelan::test {
namespace {

// A wall: two squares on the left, two on the right of a joint without width, a beam on the right side of it.
//
//   3---6 9--12
//   | 2 | | 4 |
//   2---5 8--11
//   | 1 | | 3 |
//   1---4 7--10
Sample wall() {
    Sample sample;
    for (const double x : {0.0, 1.0, 1.0, 2.0})
        sample.nodes({{x, 0}, {x, 1}, {x, 2}});
    sample.solid({1, 4, 5, 2}).solid({2, 5, 6, 3}).solid({7, 10, 11, 8}).solid({8, 11, 12, 9});
    return sample.joint({4, 5, 8, 7}).joint({5, 6, 9, 8}).beam(7, 8).beam(8, 9);
}

// The same mesh with other numbers, and with corners that begin elsewhere.
MeshLists renumbered(MeshLists mesh, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Number> nodes(mesh.nodes.size() + 1), elements(mesh.elements.size());
    std::iota(nodes.begin(), nodes.end(), 0);
    std::shuffle(nodes.begin() + 1, nodes.end(), random);
    std::iota(elements.begin(), elements.end(), 1);
    std::shuffle(elements.begin(), elements.end(), random);
    for (Node& node : mesh.nodes)
        node.number = NodeNumber(nodes[node.number.place()]);
    for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
        Element& e = mesh.elements[i];
        e.number = ElementNumber(elements[i]);
        std::array<Number, 4> corners{};
        const auto start = static_cast<int>(random() % 4);
        for (int k = 0; k < 4; ++k)
            corners[static_cast<std::size_t>(k)] =
                nodes[static_cast<std::size_t>(e.corner(e.is_line() ? k : (k + start) % 4))];
        e.words.corner_1 = NodeNumber(corners[0]);
        e.words.corner_2 = NodeNumber(corners[1]);
        e.words.corner_3 = NodeNumber(corners[2]);
        e.words.corner_4 = NodeNumber(corners[3]);
        if (e.words.midside_5.value == 0)
            continue;
        const std::array<Number, 4> midsides{e.words.midside_5.value, e.words.midside_6.value,
                                             e.words.midside_7.value, e.words.midside_8.value};
        const auto turned = [&](int k) {
            return nodes[static_cast<std::size_t>(midsides[static_cast<std::size_t>((k + start) % 4)])];
        };
        e.words.midside_5 = NodeNumber(turned(0));
        e.words.midside_6 = NodeNumber(turned(1));
        e.words.midside_7 = NodeNumber(turned(2));
        e.words.midside_8 = NodeNumber(turned(3));
    }
    mesh.finish();
    return mesh;
}

TEST(DifferenceByNumber, MeshIsTheSameAsItself) {
    const MeshLists mesh = wall().mesh();
    EXPECT_TRUE(difference_by_number(mesh, mesh, 0.0).none());
}

TEST(DifferenceByNumber, TellsWhatHasChangedUnderEachNumber) {
    const MeshLists a = wall().mesh();
    MeshLists b = wall().mesh();
    b.nodes[0].x = -0.25F;
    b.nodes[1].codes[1] = 1;
    b.nodes.pop_back();
    b.elements[0].words.material = MaterialNumber(3);
    b.elements[1].thickness = 2.0F;
    b.elements.pop_back();
    b.finish();
    const Difference d = difference_by_number(a, b, 0.0);
    EXPECT_EQ(d.nodes_moved, (std::vector<PlacePair>{{0, 0}}));
    EXPECT_EQ(d.nodes_changed, (std::vector<PlacePair>{{1, 1}}));
    EXPECT_EQ(d.nodes_only_a, (std::vector<std::int32_t>{11}));
    EXPECT_TRUE(d.nodes_only_b.empty());
    EXPECT_EQ(d.elements_changed, (std::vector<PlacePair>{{0, 0}, {1, 1}}));
    EXPECT_EQ(d.elements_only_a, (std::vector<std::int32_t>{7}));
    EXPECT_TRUE(difference_by_number(a, b, 0.3).nodes_moved.empty());
    EXPECT_EQ(difference_by_number(a, b, 0.2).nodes_moved.size(), 1U);
}

TEST(DifferenceByPlace, NumbersAndFirstCornersDoNotMatter) {
    const MeshLists a = wall().mesh();
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const MeshLists b = renumbered(a, seed);
        EXPECT_TRUE(difference_by_place(a, b, 0.0).none()) << "seed " << seed;
        EXPECT_TRUE(difference_by_place(b, a, 0.0).none()) << "seed " << seed;
    }
}

TEST(DifferenceByPlace, BeamOnTheOtherSideOfAJointDiffers) {
    Sample other;
    for (const double x : {0.0, 1.0, 1.0, 2.0})
        other.nodes({{x, 0}, {x, 1}, {x, 2}});
    other.solid({1, 4, 5, 2}).solid({2, 5, 6, 3}).solid({7, 10, 11, 8}).solid({8, 11, 12, 9});
    other.joint({4, 5, 8, 7}).joint({5, 6, 9, 8}).beam(4, 5).beam(5, 6);
    const Difference d = difference_by_place(wall().mesh(), other.mesh(), 0.0);
    EXPECT_EQ(d.elements_only_a.size(), 2U);
    EXPECT_EQ(d.elements_only_b.size(), 2U);
    EXPECT_TRUE(d.nodes_only_a.empty());
}

TEST(DifferenceByPlace, FindsOneChangedElementAmongOtherNumbers) {
    const MeshLists a = wall().mesh();
    MeshLists changed = wall().mesh();
    changed.elements[2].words.material = MaterialNumber(8);
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Difference d = difference_by_place(a, renumbered(changed, seed), 0.0);
        ASSERT_EQ(d.elements_changed.size(), 1U) << "seed " << seed;
        EXPECT_EQ(d.elements_changed[0].first, 2);
        EXPECT_TRUE(d.elements_only_a.empty());
        EXPECT_TRUE(d.nodes_changed.empty());
    }
}

// A square with midside nodes beside one without.
Sample quadratic() {
    Sample sample;
    sample.nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}, {4, 0}, {4, 2}});
    sample.solid({1, 2, 3, 4});
    sample.last().words.midside_5 = NodeNumber(5);
    sample.last().words.midside_6 = NodeNumber(6);
    sample.last().words.midside_7 = NodeNumber(7);
    sample.last().words.midside_8 = NodeNumber(8);
    return sample.solid({2, 9, 10, 3});
}

TEST(DifferenceByPlace, MidsideNodesTurnWithTheCorners) {
    const MeshLists a = quadratic().mesh();
    for (unsigned seed = 1; seed <= 20; ++seed)
        EXPECT_TRUE(difference_by_place(a, renumbered(a, seed), 0.0).none()) << "seed " << seed;
}

TEST(DifferenceByPlace, MidsideNodesInAnotherOrderDiffer) {
    const MeshLists a = quadratic().mesh();
    MeshLists swapped = quadratic().mesh();
    std::swap(swapped.elements[0].words.midside_5.value, swapped.elements[0].words.midside_7.value);
    MeshLists without = quadratic().mesh();
    without.elements[0].words.midside_6 = NodeNumber(0);
    for (const MeshLists& b : {renumbered(swapped, 3), without}) {
        const Difference d = difference_by_place(a, b, 0.0);
        ASSERT_EQ(d.elements_changed.size(), 1U);
        EXPECT_EQ(d.elements_changed[0].first, 0);
        EXPECT_EQ(d.other_midsides, d.elements_changed);
        EXPECT_TRUE(d.elements_only_a.empty());
    }
}

TEST(DifferenceByPlace, ToleranceSaysWhatIsOnePlace) {
    const MeshLists a = wall().mesh();
    MeshLists b = wall().mesh();
    b.nodes[0].x = 0.01F;
    EXPECT_EQ(difference_by_place(a, b, 0.0).nodes_only_a.size(), 1U);
    EXPECT_TRUE(difference_by_place(a, b, 0.02).none());
}

TEST(Difference, MeshesOfTwoKindsDiffer) {
    const MeshLists a = wall().mesh();
    MeshLists b = wall().mesh();
    b.kind = LayoutKind::coupled;
    EXPECT_TRUE(difference_by_number(a, b, 0.0).other_kind);
    EXPECT_FALSE(difference_by_place(a, b, 0.0).none());
}

TEST(DifferenceByPlace, NodeWithAnotherCodeIsChangedThoughItsTwinIsNot) {
    const MeshLists a = wall().mesh();
    MeshLists b = wall().mesh();
    b.nodes[4].codes[0] = 1;  // node 5, at one place with node 8
    const Difference d = difference_by_place(a, renumbered(b, 5), 0.0);
    ASSERT_EQ(d.nodes_changed.size(), 1U);
    EXPECT_EQ(d.nodes_changed[0].first, 4);
    EXPECT_TRUE(d.nodes_only_a.empty());
    EXPECT_TRUE(d.nodes_only_b.empty());
    EXPECT_TRUE(d.elements_changed.empty());
}

}  // namespace
}  // namespace brelan::test
