// Joints: their shape, their lines, the gaps that they leave.
#include <gtest/gtest.h>

#include "lib/analysis/soundness_sample.h"

namespace brelan::test {
namespace {

TEST(SoundnessOfJoints, BothSidesOnTheSameNodesCollapse) {
    const Soundness s = soundness_of(two_squares().joint({2, 5, 5, 2}));
    expect_only(s, {{Check::collapsed_joint, 1}});
    EXPECT_EQ(s.of(Check::collapsed_joint).places[0].element, 3);
    EXPECT_FALSE(s.sound());
}

//  7--10 8---9    the wall from 5 to the top; 10 is the twin of 8
//  | 3 | | 4 |
//  4----5----6
//  | 1  | 2  |
//  1----2----3
Sample closed_foot(double width) {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}, {1 - width, 2}})
        .solid({1, 2, 5, 4})
        .solid({2, 3, 6, 5})
        .solid({4, 5, 10, 7})
        .solid({5, 6, 9, 8});
}

TEST(SoundnessOfJoints, LineMayCloseOnOneNodeAtItsFoot) {
    for (const double width : {0.0, 0.1})
        expect_only(soundness_of(closed_foot(width).joint({5, 8, 10, 5})), {});
}

//  7--10 8---9    two joints that meet on node 5 alone
//  | 3 | | 4 |
//  4----5----6
//  | 1 | | 2 |
//  1--11 2---3
TEST(SoundnessOfJoints, OneNodeWithinALineMakesTriangles) {
    const Soundness s = soundness_of(
        Sample()
            .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}, {1, 2}, {1, 0}})
            .solid({1, 11, 5, 4})
            .solid({2, 3, 6, 5})
            .solid({4, 5, 10, 7})
            .solid({5, 6, 9, 8})
            .joint({2, 5, 5, 11})
            .joint({5, 8, 10, 5}));
    expect_only(s, {{Check::triangular_joint, 2}});
}

//  4---8 12    a wall on the right border of three squares; its foot, node 9, stands at `foot`
//  | 3 |  |
//  3---7 11
//  | 2 |  |
//  2---6 10
//  | 1 |  |
//  1---5  9
Sample wall_on_the_border(double foot, double width = 0.0, double width_at_top = 0.0) {
    return Sample()
        .nodes({{0, 0},
                {0, 1},
                {0, 2},
                {0, 3},
                {1, 0},
                {1, 1},
                {1, 2},
                {1, 3},
                {1 + width, foot},
                {1 + width, 1},
                {1 + width, 2},
                {1 + width + width_at_top, 3}})
        .solid({1, 5, 6, 2})
        .solid({2, 6, 7, 3})
        .solid({3, 7, 8, 4})
        .joint({9, 10, 6, 5})
        .joint({10, 11, 7, 6})
        .joint({11, 12, 8, 7});
}

TEST(SoundnessOfJoints, FootNodeThatJumpedUpTheWallTurnsItsJointOver) {
    expect_only(soundness_of(wall_on_the_border(0.0)), {});
    const Soundness s = soundness_of(wall_on_the_border(2.5));
    expect_only(s, {{Check::crossed_joint, 1}});
    EXPECT_EQ(s.of(Check::crossed_joint).places[0].element, 4);
}

TEST(SoundnessOfJoints, FootNodeThatJumpedDownDoesNotFaceItsTwin) {
    expect_only(soundness_of(wall_on_the_border(-1.5)), {{Check::crossed_joint, 1}});
    expect_only(soundness_of(wall_on_the_border(-1.5, 0.1)), {{Check::crossed_joint, 1}});
}

// In a bend sharper than its width the twins of the line run back.
TEST(SoundnessOfJoints, TwinsThatRunBackTurnTheJointOver) {
    expect_only(soundness_of(Sample().nodes({{0, 0}, {0.5, 0}, {-0.1, 1}, {0.6, 1}}).joint({1, 2, 3, 4})),
                {{Check::crossed_joint, 1}});
    expect_only(soundness_of(Sample().nodes({{0, 0}, {0.5, 0}, {0.6, 1}, {-0.1, 1}}).joint({1, 2, 3, 4})),
                {});
}

TEST(SoundnessOfJoints, AnotherWidthThanTheRestOfTheLineIsARemark) {
    expect_only(soundness_of(wall_on_the_border(0.0, 0.1)), {});
    const Soundness s = soundness_of(wall_on_the_border(0.0, 0.1, 0.2));
    expect_only(s, {{Check::uneven_joint, 1}});
    EXPECT_EQ(s.of(Check::uneven_joint).places[0].element, 6);
    EXPECT_TRUE(s.sound());
}

TEST(SoundnessOfJoints, TwoOverOnePieceOfALineAreToldButNotOneOnEitherSideOfAWall) {
    const Soundness twice = soundness_of(parted_squares().joint({2, 5, 7, 3}).joint({2, 5, 7, 3}));
    expect_only(twice, {{Check::stacked_joint, 1}});
    EXPECT_EQ(twice.of(Check::stacked_joint).places[0].element, 4);
    EXPECT_EQ(twice.of(Check::stacked_joint).places[0].other, 3);
    expect_only(
        soundness_of(
            parted_squares().nodes({{1, 0}, {1, 1}}).joint({2, 5, 10, 9}).joint({9, 10, 7, 3}).beam(9, 10)),
        {});
}

//  7-10 8----9    the foot of the wall, node 5, has a twin, 11, and node 2 below it has none
//  | 3 | | 4 |
//  4-11 5----6
//  | 1 \| 2  |
//  1----2----3
Sample open_foot(double width) {
    return Sample()
        .nodes({{0, 0},
                {1, 0},
                {2, 0},
                {0, 1},
                {1, 1},
                {2, 1},
                {0, 2},
                {1, 2},
                {2, 2},
                {1 - width, 2},
                {1 - width, 1}})
        .solid({1, 2, 11, 4})
        .solid({2, 3, 6, 5})
        .solid({4, 11, 10, 7})
        .solid({5, 6, 9, 8})
        .joint({5, 8, 10, 11});
}

TEST(SoundnessOfJoints, WedgeBelowTheToeIsOpenWhereTheJointHasAWidth) {
    expect_only(soundness_of(open_foot(0.0)), {});
    const Soundness s = soundness_of(open_foot(0.1));
    expect_only(s, {{Check::open_wedge, 1}});
    const Place& place = s.of(Check::open_wedge).places[0];
    EXPECT_NEAR(place.amount, 0.05, 1e-6);  // 0.1 wide at the top, 1 high
    EXPECT_EQ(place.node + place.other, 5 + 11);
    EXPECT_FALSE(s.sound());
    // A joint of three corners fills it.
    expect_only(soundness_of(open_foot(0.1).joint({2, 5, 11, 2})), {});
    expect_only(soundness_of(open_foot(0.1).joint({2, 5, 11})), {});
}

TEST(SoundnessOfJoints, JointOfAWidthOverSoilThatStaysIsARemark) {
    const Soundness s = soundness_of(two_squares().nodes({{0.9, 0}, {0.9, 1}}).joint({2, 5, 8, 7}));
    expect_only(s, {{Check::overlapped_joint, 1}});
    EXPECT_EQ(s.of(Check::overlapped_joint).places[0].element, 3);
    EXPECT_EQ(s.of(Check::overlapped_joint).places[0].other, 1);
    EXPECT_NEAR(s.of(Check::overlapped_joint).places[0].amount, 0.1, 1e-6);
    EXPECT_TRUE(s.sound());
}

// Element 1 stays on the line, and its double of the stage on the twins: the joint's room is that of the
// stage.
TEST(SoundnessOfJoints, JointOfAWidthBetweenTheDoublesOfAStageIsAsDrawn) {
    expect_only(
        soundness_of(two_squares().nodes({{0.9, 0}, {0.9, 1}}).joint({2, 5, 8, 7}).solid({1, 7, 8, 4}, 5)),
        {{Check::double_element, 1}});
}

//  7---8 9---11      one joint from 2 to 8 past node 5, where the ground is whole
//  | 3 | | 4 |
//  4-----5---6
//  | 1 | | 2 |
//  1---2 10--3
TEST(SoundnessOfJoints, NodeWithinAJointHoldsTheGroundTogether) {
    const Soundness s = soundness_of(
        Sample()
            .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {1, 2}, {1, 0}, {2, 2}})
            .solid({1, 2, 5, 4})
            .solid({10, 3, 6, 5})
            .solid({4, 5, 8, 7})
            .solid({5, 6, 11, 9})
            .joint({10, 9, 8, 2}));
    expect_only(s, {{Check::unjoined_joint, 1}});
    EXPECT_EQ(s.of(Check::unjoined_joint).places[0].node, 5);
    EXPECT_EQ(s.of(Check::unjoined_joint).places[0].element, 5);
    EXPECT_FALSE(s.sound());
}

// A line that turns by 90 degrees: the twin of its corner lies a width off in both directions.
TEST(SoundnessOfJoints, MitredCornersAreEvenAndFaceEachOther) {
    expect_only(soundness_of(Sample()
                                 .nodes({{0, 0}, {3, 0}, {3, 3}, {0, 0.4}, {2.6, 0.4}, {2.6, 3}})
                                 .joint({1, 2, 5, 4})
                                 .joint({2, 3, 6, 5})),
                {});
}

}  // namespace
}  // namespace brelan::test
