// Beams and trusses: along the ground, and over each other.
#include <gtest/gtest.h>

#include "lib/analysis/soundness_sample.h"

namespace brelan::test {
namespace {

//  4---5---6
//  |   |   |
//  1---2---3
TEST(SoundnessOfLines, StrutOverSeveralNodesIsOneRemarkBelowAllOthers) {
    const Soundness s = soundness_of(two_squares().nodes({{3, 0}, {3, 1}}).solid({3, 7, 8, 6}).truss(4, 8));
    expect_only(s, {{Check::free_line, 1}});
    EXPECT_EQ(s.of(Check::free_line).places[0].element, 4);
    EXPECT_EQ(s.of(Check::free_line).places[0].amount, 2.0);  // nodes 5 and 6
    EXPECT_EQ(s.findings.back().check, Check::free_line);
    EXPECT_TRUE(s.sound());
}

// One node between two sides was meant to be the line's; one that lies there by chance is passed over.
TEST(SoundnessOfLines, SingleNodeOnAnAnchorIsNoneOfItsNodes) {
    expect_only(soundness_of(four_squares().nodes({{1.7, 1.7}}).beam(1, 10)),
                {{Check::free_line, 1}, {Check::loose_end, 1}});
    expect_only(soundness_of(four_squares().beam(4, 6)), {{Check::unjoined_line, 1}});
}

// Two parts of a wall follow the sides, the third passes over node 7: there the wall was to be tied.
TEST(SoundnessOfLines, NodeWithinAWallThatFollowsTheSidesIsTold) {
    const Soundness s = soundness_of(two_squares()
                                         .nodes({{3, 1}, {4, 1}, {3, 0}, {4, 0}})
                                         .solid({3, 9, 7, 6})
                                         .solid({9, 10, 8, 7})
                                         .beam(4, 5)
                                         .beam(5, 6)
                                         .beam(6, 8));
    expect_only(s, {{Check::unjoined_line, 1}});
    EXPECT_EQ(s.of(Check::unjoined_line).places[0].node, 7);
}

// One over nodes 7 and 8 is no strut either where it goes on from the wall.
TEST(SoundnessOfLines, NodesWithinTheLastPartOfAWallAreTold) {
    const auto ground = [] {
        return two_squares()
            .nodes({{3, 1}, {4, 1}, {5, 1}, {3, 0}, {4, 0}, {5, 0}})
            .solid({3, 10, 7, 6})
            .solid({10, 11, 8, 7})
            .solid({11, 12, 9, 8});
    };
    expect_only(soundness_of(ground().beam(4, 5).beam(5, 6).beam(6, 9)), {{Check::unjoined_line, 2}});
    expect_only(soundness_of(ground().beam(6, 9)), {{Check::free_line, 1}});
    // Of another material, or round a corner, it is another line.
    expect_only(soundness_of(ground().beam(4, 5).beam(5, 6).beam(6, 9, 2)), {{Check::free_line, 1}});
    expect_only(soundness_of(ground().beam(3, 6).beam(6, 9)), {{Check::free_line, 1}});
}

// Node 7 stands at the place of node 5 and is none of the ground.
TEST(SoundnessOfLines, NodeOfALiningAtThePlaceOfAGroundNodeIsTold) {
    const Soundness s = soundness_of(two_squares().nodes({{1, 1}}).beam(4, 7).beam(7, 6));
    expect_only(s, {{Check::unjoined_line, 1}});
    EXPECT_EQ(s.of(Check::unjoined_line).places[0].node, 5);
}

// The parts of a strut need no nodes of the ground between its ends.
TEST(SoundnessOfLines, StrutOfSeveralPartsAlongASideIsNoRemark) {
    expect_only(soundness_of(two_squares().nodes({{0.3, 1}, {0.7, 1}}).truss(4, 7).truss(7, 8).truss(8, 5)),
                {});
}

TEST(SoundnessOfLines, ElementThatRunsBackOverTheOneBeforeItIsFolded) {
    const Soundness s = soundness_of(two_squares().beam(4, 6).beam(6, 5));
    expect_only(s, {{Check::folded_line, 1}, {Check::unjoined_line, 1}});
    EXPECT_EQ(s.of(Check::folded_line).places[0].element, 4);
    EXPECT_EQ(s.of(Check::folded_line).places[0].other, 3);
    EXPECT_FALSE(s.sound());
}

TEST(SoundnessOfLines, LinesThatCrossOrMeetWithoutANodeAreRemarks) {
    const Soundness crossing = soundness_of(two_squares().truss(1, 5).truss(2, 4));
    expect_only(crossing, {{Check::crossing_lines, 1}});
    EXPECT_DOUBLE_EQ(crossing.of(Check::crossing_lines).places[0].at.x, 0.5);
    EXPECT_DOUBLE_EQ(crossing.of(Check::crossing_lines).places[0].at.y, 0.5);
    // Node 7 lies on the other truss, but is none of it.
    expect_only(soundness_of(two_squares().nodes({{0.5, 0.5}}).truss(1, 5).truss(2, 7)),
                {{Check::crossing_lines, 1}, {Check::loose_end, 1}});
    expect_only(soundness_of(two_squares().nodes({{0.5, 0.5}}).truss(1, 7).truss(7, 5).truss(2, 7)), {});
}

TEST(SoundnessOfLines, LineAlongASideWithoutItsNodesIsARemark) {
    const Soundness s = soundness_of(two_squares().nodes({{0.2, 0}, {0.8, 0}}).beam(7, 8));
    expect_only(s, {{Check::line_beside_side, 1}, {Check::loose_end, 2}});
    EXPECT_EQ(s.of(Check::line_beside_side).places[0].other, 1);
    EXPECT_TRUE(s.sound());
}

// A wall may stand out of the ground; a truss there is held by nothing.
TEST(SoundnessOfLines, EndInTheAirIsToldOfTrussesAndWithinTheGround) {
    expect_only(soundness_of(two_squares().nodes({{1, 2}}).beam(5, 7)), {});
    const Soundness s = soundness_of(two_squares().nodes({{1, 2}}).truss(5, 7));
    expect_only(s, {{Check::loose_end, 1}});
    EXPECT_EQ(s.of(Check::loose_end).places[0].node, 7);
    expect_only(soundness_of(two_squares().nodes({{0.5, 0.5}}).beam(5, 7)), {{Check::loose_end, 1}});
    MeshLists held = two_squares().nodes({{0.5, 0.5}}).truss(5, 7).mesh();
    held.nodes[6].codes[0] = held.nodes[6].codes[1] = 1;
    expect_only(soundness_of(held), {});
}

// Node 7 lies within the strut from 5 to 8, and the joint ties it to node 5.
TEST(SoundnessOfLines, TwinBesideTheEndOfAStrutIsNotPassedOver) {
    expect_only(soundness_of(Sample()
                                 .nodes({{0, 0}, {1, 0}, {1.1, 0}, {0, 1}, {1, 1}, {2, 0}, {1.1, 1}, {2, 1}})
                                 .solid({1, 2, 5, 4})
                                 .solid({3, 6, 8, 7})
                                 .joint({3, 7, 5, 2})
                                 .truss(5, 8)),
                {});
}

TEST(SoundnessOfLines, LiningsOnBothSidesOfAJointAreSound) {
    expect_only(soundness_of(parted_squares().joint({2, 5, 7, 3}).beam(2, 5).beam(3, 7)), {});
}

// Nodes 2 and 4 are of the joint and the wall alone, as on the border of a half model.
TEST(SoundnessOfLines, WallThatOnlyAJointTiesToTheGroundIsSound) {
    expect_only(soundness_of(Sample()
                                 .nodes({{0, 0}, {1, 0}, {0, 1}, {1, 1}, {1, 0}, {1, 1}})
                                 .solid({1, 5, 6, 3})
                                 .joint({2, 4, 6, 5})
                                 .beam(2, 4)),
                {});
}

}  // namespace
}  // namespace brelan::test
