// Second order: numbers and places of midside nodes.
#include <gtest/gtest.h>

#include "lib/analysis/soundness_sample.h"

namespace brelan::test {
namespace {

void set_midsides(Sample& sample, Number m5, Number m6, Number m7, Number m8) {
    ElementWords& w = sample.last().words;
    w.midside_5 = NodeNumber(m5);
    w.midside_6 = NodeNumber(m6);
    w.midside_7 = NodeNumber(m7);
    w.midside_8 = NodeNumber(m8);
}

//  4-13-5-12-6
//  |    |    |
// 10    8    11     midside nodes of both squares; node 8 is at `middle`
//  |    |    |
//  1--7-2--9-3
Sample second_order(Position middle = {1, 0.5}) {
    Sample sample;
    sample.nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}})
        .nodes({{0.5, 0}, middle, {1.5, 0}, {0, 0.5}, {2, 0.5}, {1.5, 1}, {0.5, 1}});
    sample.solid({1, 2, 5, 4});
    set_midsides(sample, 7, 8, 13, 10);
    sample.solid({2, 3, 6, 5});
    set_midsides(sample, 9, 11, 12, 8);
    return sample;
}

TEST(SoundnessOfMidsides, OnTheirSidesAndSharedTheyAreSound) {
    expect_only(soundness_of(second_order()), {});
    expect_only(soundness_of(second_order({1.2, 0.5})), {});  // a curved side
}

TEST(SoundnessOfMidsides, NumberThatNamesNoNodeIsTold) {
    Sample sample = second_order();
    sample.last().words.midside_7 = NodeNumber(77);
    const Soundness s = soundness_of(sample);
    expect_only(s, {{Check::missing_midside, 1}, {Check::unused_node, 1}});
    EXPECT_EQ(s.of(Check::missing_midside).places[0].element, 2);
    EXPECT_EQ(s.of(Check::missing_midside).places[0].node, 77);
    EXPECT_FALSE(s.sound());
}

TEST(SoundnessOfMidsides, NodeFarFromTheMiddleOfItsSideIsTold) {
    const Soundness s = soundness_of(second_order({1.3, 0.5}));
    expect_only(s, {{Check::stray_midside, 2}});  // of both elements
    EXPECT_EQ(s.of(Check::stray_midside).places[0].node, 8);
}

TEST(SoundnessOfMidsides, NodeOfTwoSidesOrOfACornerIsShared) {
    Sample sample = second_order();
    sample.last().words.midside_6 = NodeNumber(12);  // 12 stands on the upper side
    expect_only(soundness_of(sample),
                {{Check::unshared_midside, 1}, {Check::stray_midside, 1}, {Check::unused_node, 1}});
    sample.last().words.midside_6 = NodeNumber(6);  // a corner
    expect_only(soundness_of(sample),
                {{Check::unshared_midside, 1}, {Check::stray_midside, 1}, {Check::unused_node, 1}});
}

TEST(SoundnessOfMidsides, NeighbourThatLacksTheNodeIsTold) {
    Sample sample = second_order();
    sample.last().words.midside_8 = {};
    const Soundness s = soundness_of(sample);
    expect_only(s, {{Check::unshared_midside, 1}});
    EXPECT_EQ(s.of(Check::unshared_midside).places[0].node, 8);
}

TEST(SoundnessOfMidsides, BeamBesideAMidsideNodeIsARemark) {
    const Soundness s = soundness_of(second_order().beam(2, 5));
    expect_only(s, {{Check::midside_beside_line, 1}});
    EXPECT_EQ(s.of(Check::midside_beside_line).places[0].node, 8);
    EXPECT_EQ(s.of(Check::midside_beside_line).places[0].other, 3);
    EXPECT_TRUE(s.sound());
}

TEST(SoundnessOfMidsides, TriangleHasThree) {
    Sample sample;
    sample.nodes({{0, 0}, {1, 0}, {0, 1}, {0.5, 0}, {0.5, 0.5}, {0, 0.5}}).solid({1, 2, 3});
    set_midsides(sample, 4, 5, 6, 0);
    expect_only(soundness_of(sample), {});
    set_midsides(sample, 4, 5, 0, 6);  // none of its sides
    expect_only(soundness_of(sample), {{Check::stray_midside, 1}});
}

}  // namespace
}  // namespace brelan::test
