#include "analysis/soundness.h"

#include <gtest/gtest.h>

#include "lib/analysis/soundness_sample.h"

namespace brelan::test {
namespace {

TEST(Soundness, SquaresThatShareASideAreSound) {
    const Soundness s = soundness_of(two_squares());
    expect_only(s, {});
    EXPECT_TRUE(s.sound());
    EXPECT_EQ(s.free_edges.count, 6U);
    EXPECT_EQ(s.free_edges.loops, 1U);
    EXPECT_DOUBLE_EQ(s.free_edges.length, 6.0);
    EXPECT_EQ(s.parts, 1U);
}

//  4-------5---7
//  |       | 3 |
//  |   1   6---8    node 6 is none of element 1
//  |       | 2 |
//  1-------2---3
TEST(Soundness, NodeOnTheSideOfAnotherElementHangs) {
    const Soundness s =
        soundness_of(Sample()
                         .nodes({{0, 0}, {2, 0}, {3, 0}, {0, 2}, {2, 2}, {2, 1}, {3, 2}, {3, 1}})
                         .solid({1, 2, 5, 4})
                         .solid({2, 3, 8, 6})
                         .solid({6, 8, 7, 5}));
    expect_only(s, {{Check::hanging_node, 1}});
    EXPECT_EQ(s.of(Check::hanging_node).places[0].node, 6);
    EXPECT_EQ(s.of(Check::hanging_node).places[0].element, 1);
    EXPECT_FALSE(s.sound());
}

// Coordinates of some tens are written to a unit in the fourth decimal: a node that is off by less lies on
// the side, one that is off by a hundredth does not.
TEST(Soundness, NodeOnASideIsFoundWithinTheDigitsOfTheFile) {
    const auto hanging = [](double x) {
        return soundness_of(
                   Sample()
                       .nodes({{60, 0}, {62, 0}, {63, 0}, {60, 2}, {62, 2}, {x, 1}, {63, 2}, {63, 1}})
                       .solid({1, 2, 5, 4})
                       .solid({2, 3, 8, 6})
                       .solid({6, 8, 7, 5}))
            .of(Check::hanging_node)
            .places.size();
    };
    EXPECT_EQ(hanging(62.0001), 1U);
    EXPECT_EQ(hanging(62.01), 0U);
}

TEST(Soundness, NodesAtOnePlaceWithoutAJointAreACrack) {
    const Soundness s = soundness_of(parted_squares());
    expect_only(s, {{Check::coincident_nodes, 2}});
    EXPECT_EQ(s.of(Check::coincident_nodes).places[0].node, 2);
    EXPECT_EQ(s.of(Check::coincident_nodes).places[0].other, 3);
    EXPECT_EQ(s.parts, 2U);
    EXPECT_EQ(s.free_edges.count, 8U);
    EXPECT_EQ(s.free_edges.loops, 2U);
}

TEST(Soundness, JointExplainsNodesAtOnePlaceWhereverItsCornersBegin) {
    for (const std::vector<Number>& corners :
         {std::vector<Number>{2, 5, 7, 3}, {5, 7, 3, 2}, {7, 3, 2, 5}, {3, 2, 5, 7}, {3, 7, 5, 2}}) {
        const Soundness s = soundness_of(parted_squares().joint(corners));
        expect_only(s, {});
        EXPECT_EQ(s.parts, 1U);
        EXPECT_EQ(s.free_edges.count, 6U);
        EXPECT_EQ(s.free_edges.loops, 1U);
    }
}

TEST(Soundness, JointOfSomeWidthJoinsItsSides) {
    const Soundness s =
        soundness_of(Sample()
                         .nodes({{0, 0}, {1, 0}, {1.1, 0}, {0, 1}, {1, 1}, {2, 0}, {1.1, 1}, {2, 1}})
                         .solid({1, 2, 5, 4})
                         .solid({3, 6, 8, 7})
                         .joint({3, 7, 5, 2}));
    expect_only(s, {});
    EXPECT_EQ(s.free_edges.count, 6U);
}

TEST(Soundness, MarksOfJointsGoByTheKind) {
    for (const LayoutKind kind : brelan::ALL_KINDS) {
        MeshLists mesh = parted_squares().joint({2, 5, 7, 3}).mesh();
        mesh.kind = kind;
        mesh.finish();
        EXPECT_TRUE(check_soundness(mesh, corners_of(mesh)).sound()) << name_of(kind);
        EXPECT_EQ(mesh.count(ElementClass::joint), 1U) << name_of(kind);
    }
}

TEST(Soundness, ClockwiseElementIsInverted) {
    const Soundness s =
        soundness_of(Sample().nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).solid({1, 4, 3, 2}).solid({1, 3, 2}));
    EXPECT_EQ(s.of(Check::inverted_element).places.size(), 2U);
}

TEST(Soundness, CornerPushedInMakesAQuadrilateralConcave) {
    const Soundness s =
        soundness_of(Sample().nodes({{0, 0}, {2, 0}, {0.5, 0.5}, {0, 2}}).solid({1, 2, 3, 4}));
    expect_only(s, {{Check::concave_element, 1}});
    EXPECT_EQ(s.of(Check::concave_element).places[0].node, 3);
}

TEST(Soundness, CornerOnAStraightSideIsNotConcave) {
    expect_only(soundness_of(Sample().nodes({{0, 0}, {2, 0}, {1, 1}, {0, 2}}).solid({1, 2, 3, 4})), {});
}

TEST(Soundness, CrossedQuadrilateralIsUnsound) {
    EXPECT_FALSE(
        soundness_of(Sample().nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1.5}}).solid({1, 2, 4, 3})).sound());
}

TEST(Soundness, ElementsWithoutAreaAndLinesWithoutLengthAreDegenerate) {
    const Soundness s = soundness_of(Sample()
                                         .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {0, 1}})
                                         .solid({1, 2, 3})     // on one line
                                         .solid({1, 3, 4, 4})  // a corner twice
                                         .beam(4, 5));
    EXPECT_EQ(s.of(Check::degenerate_element).places.size(), 3U);
}

TEST(Soundness, SameNodesAndMaterialTwiceIsADuplicateButAnotherMaterialAStage) {
    const Soundness same = soundness_of(two_squares().solid({5, 4, 1, 2}, 1));
    expect_only(same, {{Check::duplicate_element, 1}});
    EXPECT_EQ(same.of(Check::duplicate_element).places[0].element, 3);
    EXPECT_EQ(same.of(Check::duplicate_element).places[0].other, 1);
    const Soundness stage = soundness_of(two_squares().solid({1, 2, 5, 4}, 5));
    expect_only(stage, {{Check::double_element, 1}});
    EXPECT_TRUE(stage.sound());
    EXPECT_EQ(stage.free_edges.count, 6U);
}

// A stage behind a joint has the old element on the line and the new one on the twins.
TEST(Soundness, DoubleOnTheTwinsOfAJointIsAStage) {
    const Soundness s = soundness_of(parted_squares().joint({2, 5, 7, 3}).solid({2, 6, 8, 5}, 4));
    expect_only(s, {{Check::double_element, 1}});
    EXPECT_TRUE(s.sound());
}

TEST(Soundness, ThirdElementAtASideOverlapsOneOfTheOthers) {
    const Soundness s = soundness_of(two_squares().nodes({{1.5, 0.5}}).solid({2, 7, 5}));
    EXPECT_EQ(s.of(Check::crowded_side).places.size(), 1U);
    EXPECT_EQ(s.of(Check::crowded_side).places[0].element, 3);
}

TEST(Soundness, CornersThatAreNoNodesAndNumbersUsedTwiceAreTold) {
    Sample sample = two_squares();
    sample.solid({1, 2, 77});
    sample.solid({1, 2, 5, 4}, 3);
    sample.last().number = ElementNumber(2);
    const Soundness s = soundness_of(sample);
    EXPECT_EQ(s.of(Check::missing_node).places.size(), 1U);
    EXPECT_EQ(s.of(Check::missing_node).places[0].node, 77);
    EXPECT_EQ(s.of(Check::number_used_twice).places.size(), 1U);
    EXPECT_EQ(s.of(Check::number_used_twice).places[0].element, 2);
}

TEST(Soundness, LineThatPassesANodeAndNodesWithoutElementsAreRemarks) {
    const Soundness s = soundness_of(two_squares().nodes({{5, 5}}).truss(4, 6));
    expect_only(s, {{Check::unjoined_line, 1}, {Check::unused_node, 1}});
    EXPECT_EQ(s.of(Check::unjoined_line).places[0].node, 5);
    EXPECT_EQ(s.of(Check::unused_node).places[0].node, 7);
    EXPECT_TRUE(s.sound());
}

TEST(Soundness, HoleHasALoopOfItsOwn) {
    Sample ring;
    for (int y = 0; y < 4; ++y)
        ring.nodes({{0, y * 1.0}, {1, y * 1.0}, {2, y * 1.0}, {3, y * 1.0}});
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            if (x != 1 || y != 1)
                ring.solid({4 * y + x + 1, 4 * y + x + 2, 4 * y + x + 6, 4 * y + x + 5});
    const Soundness s = soundness_of(ring);
    expect_only(s, {});
    EXPECT_EQ(s.free_edges.loops, 2U);
    EXPECT_DOUBLE_EQ(s.free_edges.length, 16.0);
}

TEST(Soundness, EmptyMeshAndManyNodesAtOnePlaceAreDoneAtOnce) {
    EXPECT_TRUE(soundness_of(Sample()).sound());
    Sample heap;
    for (int k = 0; k < 30000; ++k)
        heap.nodes({{1, 1}, {1, 1}, {1, 1}}).solid({3 * k + 1, 3 * k + 2, 3 * k + 3});
    EXPECT_EQ(soundness_of(heap).of(Check::degenerate_element).places.size(), 30000U);
}

TEST(Soundness, NodeNumberUsedTwiceIsFound) {
    MeshLists mesh = two_squares().mesh();
    Node again = mesh.nodes[5];
    again.x = 3.0F;
    mesh.nodes.push_back(again);
    mesh.finish();
    const Soundness s = soundness_of(mesh);
    ASSERT_EQ(s.of(Check::number_used_twice).places.size(), 1U);
    EXPECT_EQ(s.of(Check::number_used_twice).places[0].node, 6);
    EXPECT_EQ(s.of(Check::number_used_twice).places[0].element, 0);
}

}  // namespace
}  // namespace brelan::test
