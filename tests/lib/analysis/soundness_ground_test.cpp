// The ground as a whole: overlaps, parts, stages, codes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/box_tree.h"
#include "lib/analysis/soundness_sample.h"
#include "support/group_drawing.h"

namespace brelan::test {
namespace {

TEST(SoundnessOfGround, SolidsOverEachOtherAreToldWithTheArea) {
    const Soundness s = soundness_of(Sample()
                                         .nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}})
                                         .nodes({{0.5, 0.5}, {1.5, 0.5}, {1.5, 1.5}, {0.5, 1.5}})
                                         .solid({1, 2, 3, 4})
                                         .solid({5, 6, 7, 8}));
    expect_only(s, {{Check::overlapping_solid, 1}, {Check::separate_part, 1}});
    const Place& place = s.of(Check::overlapping_solid).places[0];
    EXPECT_EQ(place.element + place.other, 3);
    EXPECT_NEAR(place.amount, 0.25, 1e-9);
    EXPECT_FALSE(s.sound());
}

// A mesh that winds round and over itself: all elements share their sides, the last lies over the first.
TEST(SoundnessOfGround, StripThatWindsOverItselfOverlaps) {
    Sample spiral;
    constexpr int STEPS = 9;  // of 45 degrees
    for (int k = 0; k <= STEPS; ++k) {
        const double angle = 0.7853981633974483 * k, grow = 1.0 + 0.01 * k;
        spiral.nodes({{std::cos(angle) * grow, std::sin(angle) * grow},
                      {2 * std::cos(angle) * grow, 2 * std::sin(angle) * grow}});
    }
    for (int k = 0; k < STEPS; ++k)
        spiral.solid({2 * k + 1, 2 * k + 2, 2 * k + 4, 2 * k + 3});
    const Soundness s = soundness_of(spiral);
    EXPECT_GE(s.of(Check::overlapping_solid).places.size(), 1U);
    EXPECT_EQ(s.of(Check::overlapping_solid).places[0].element, 9);
    EXPECT_EQ(s.of(Check::overlapping_solid).places[0].other, 1);
}

//  5---6---7    the strip turns back at nodes 3 and 7: element 3, whose other nodes stand at 1.25, lies
//  | 1 | 2 |    over element 2
//  1---2---3
TEST(SoundnessOfGround, StripThatIsFoldedBackOverlaps) {
    const Soundness s = soundness_of(Sample()
                                         .nodes({{0, 0}, {1, 0}, {2, 0}, {9, 9}, {0, 1}, {1, 1}, {2, 1}})
                                         .nodes({{1.25, 0}, {1.25, 1}})
                                         .solid({1, 2, 6, 5})
                                         .solid({2, 3, 7, 6})
                                         .solid({8, 3, 7, 9}));
    ASSERT_EQ(s.of(Check::overlapping_solid).places.size(), 1U);
    EXPECT_EQ(s.of(Check::overlapping_solid).places[0].element, 3);
    EXPECT_EQ(s.of(Check::overlapping_solid).places[0].other, 2);
    EXPECT_NEAR(s.of(Check::overlapping_solid).places[0].amount, 0.75, 1e-6);
}

// The corner of a fan stands beyond side 2-3 of its square, and triangle 2 is turned to run anti-clockwise:
// it lies over the ring round the square. Neither it nor the other triangles have a free side, and no sum of
// signed areas tells.
TEST(SoundnessOfGround, FoldWithinTheGroundOverlaps) {
    const auto fan = [](double x, const std::vector<Number>& second) {
        return Sample()
            .nodes({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {x, 2}, {-4, -4}, {8, -4}, {8, 8}, {-4, 8}})
            .solid({1, 2, 5})
            .solid(second)
            .solid({3, 4, 5})
            .solid({4, 1, 5})
            .solid({6, 7, 2, 1})
            .solid({7, 8, 3, 2})
            .solid({8, 9, 4, 3})
            .solid({9, 6, 1, 4});
    };
    expect_only(soundness_of(fan(3, {2, 3, 5})), {});
    // As it runs clockwise, the ends of triangles 1, 3 and 4 lie over element 6.
    expect_only(soundness_of(fan(5, {2, 3, 5})),
                {{Check::inverted_element, 1}, {Check::overlapping_solid, 3}});
    const Soundness s = soundness_of(fan(5, {2, 5, 3}));
    // The tip of area 2 once as triangle 2, once as element 6 and once as the ends of triangles 1, 3 and 4.
    expect_only(s, {{Check::overlapping_solid, 7}});
    double sum = 0.0;
    for (const Place& place : s.of(Check::overlapping_solid).places)
        sum += place.amount;
    EXPECT_NEAR(sum, 6.0, 1e-5);
}

// A part with nodes of its own in the midst of another.
TEST(SoundnessOfGround, PartLaidOverAnotherOverlaps) {
    const Soundness s = soundness_of(four_squares()
                                         .nodes({{0.75, 0.75}, {1.25, 0.75}, {1.25, 1.25}, {0.75, 1.25}})
                                         .solid({10, 11, 12, 13}));
    expect_only(s, {{Check::overlapping_solid, 4}, {Check::separate_part, 1}});
    for (const Place& place : s.of(Check::overlapping_solid).places)
        EXPECT_NEAR(place.amount, 0.0625, 1e-6);
}

TEST(SoundnessOfGround, PartOnASingleNodeIsUnsoundAndOneApartARemark) {
    const Soundness pinned = soundness_of(two_squares().nodes({{3, 1}, {3, 2}, {2, 2}}).solid({6, 7, 8, 9}));
    expect_only(pinned, {{Check::pinned_part, 1}});
    EXPECT_EQ(pinned.of(Check::pinned_part).places[0].element, 3);
    EXPECT_EQ(pinned.of(Check::pinned_part).places[0].node, 6);
    EXPECT_FALSE(pinned.sound());
    const Sample apart = two_squares().nodes({{3, 0}, {4, 0}, {4, 1}, {3, 1}}).solid({7, 8, 9, 10});
    expect_only(soundness_of(apart), {{Check::separate_part, 1}});
    EXPECT_TRUE(soundness_of(apart).sound());
    expect_only(soundness_of(Sample(apart).beam(6, 10)), {});
}

TEST(SoundnessOfGround, ThirdElementOverOnePlaceIsARemarkUnlessItsMaterialIsThereTwice) {
    const Soundness stages = soundness_of(two_squares().solid({1, 2, 5, 4}, 5).solid({1, 2, 5, 4}, 6));
    expect_only(stages, {{Check::double_element, 2}, {Check::stacked_double, 1}});
    EXPECT_EQ(stages.of(Check::stacked_double).places[0].element, 4);
    EXPECT_EQ(stages.of(Check::stacked_double).places[0].other, 1);
    EXPECT_TRUE(stages.sound());
    // Material 5 is not that of the element before it.
    const Soundness twice =
        soundness_of(two_squares().solid({1, 2, 5, 4}, 5).solid({1, 2, 5, 4}, 6).solid({1, 2, 5, 4}, 5));
    expect_only(twice,
                {{Check::double_element, 2}, {Check::duplicate_element, 1}, {Check::stacked_double, 2}});
    EXPECT_EQ(twice.of(Check::duplicate_element).places[0].other, 3);
}

TEST(SoundnessOfGround, NodeFixedAmongFreeOnesIsARemarkWhereCodesFixNodes) {
    for (const LayoutKind kind : brelan::ALL_KINDS) {
        const bool fixes = kind == LayoutKind::coupled || kind == LayoutKind::displacement;
        MeshLists mesh = four_squares(kind).mesh();
        mesh.nodes[4].codes[1] = 1;
        expect_only(soundness_of(mesh), {{Check::fixed_inside, fixes ? 1U : 0U}});
        mesh.nodes[5].codes[1] = 1;  // its neighbour on the border as well
        expect_only(soundness_of(mesh), {});
    }
}

TEST(SoundnessOfGround, FreeNodesOnASideThatIsFixedElsewhereAreRemarks) {
    MeshLists mesh = four_squares().mesh();
    mesh.nodes[0].codes[1] = 1;
    expect_only(soundness_of(mesh), {});  // one alone may hold the mesh
    mesh.nodes[2].codes[1] = 1;
    const Soundness s = soundness_of(mesh);
    expect_only(s, {{Check::free_side_node, 1}});
    EXPECT_EQ(s.of(Check::free_side_node).places[0].node, 2);
    mesh.nodes[1].codes[1] = 1;
    expect_only(soundness_of(mesh), {});
}

// Numbers without nodes, corners twice, joints and lines of nothing: whatever a file holds, it is looked
// through.
TEST(SoundnessOfGround, MeshesOfRandomNumbersAreLookedThrough) {
    Drawing drawing(3);
    for (int r = 0; r < 300; ++r) {
        Sample sample(brelan::ALL_KINDS[static_cast<std::size_t>(r % 4)]);
        const int nodes = 1 + drawing.below(20), places = 1 + drawing.below(4);
        for (int n = 0; n < nodes; ++n)
            sample.nodes({{1.0 * drawing.below(places), 1.0 * drawing.below(places)}});
        const auto any = [&] { return drawing.below(nodes + 2); };
        for (int e = drawing.below(30); e >= 0; --e) {
            const std::vector<Number> corners{any(), any(), any(), drawing.one_in(3) ? 0 : any()};
            switch (drawing.below(4)) {
                case 0:
                    sample.joint(corners, drawing.below(2));
                    break;
                case 1:
                    sample.beam(any(), any(), drawing.below(2));
                    break;
                default:
                    sample.solid(corners, drawing.below(2));
            }
            if (drawing.one_in(2))
                sample.last().words.midside_5 = NodeNumber(any());
            if (drawing.one_in(2))
                sample.last().words.midside_8 = NodeNumber(any());
            if (drawing.one_in(9))
                sample.last().number = ElementNumber(1);
        }
        const MeshLists mesh = sample.mesh();
        const Soundness s = soundness_of(mesh);
        for (const Finding& finding : s.findings)
            for (const Place& place : finding.places) {
                EXPECT_TRUE(std::isfinite(place.at.x) && std::isfinite(place.at.y)) << finding.id;
                EXPECT_TRUE(std::isfinite(place.amount)) << finding.id;
            }
    }
}

// The tree finds what a look at every box finds.
TEST(BoxTree, FindsAllBoxesThatMeetAnother) {
    Drawing drawing(7);
    std::vector<Bounds> boxes;
    for (int k = 0; k < 300; ++k) {
        const double x = static_cast<double>(drawing.between(0, 10)),
                     y = static_cast<double>(drawing.between(0, 10));
        const double size = drawing.one_in(10) ? 4.0 : 0.3;
        boxes.push_back({{x, y}, {x + size, y + size * static_cast<double>(drawing.between(0, 1))}});
    }
    BoxTree tree(boxes);
    for (const Bounds& box : boxes) {
        std::vector<std::int32_t> found, expected;
        tree.meeting(box, [&](std::int32_t k) {
            found.push_back(k);
            return true;
        });
        for (std::size_t k = 0; k < boxes.size(); ++k)
            if (boxes_meet(boxes[k], box))
                expected.push_back(static_cast<std::int32_t>(k));
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
    }
}

TEST(BoxTree, BoxThatIsDoneIsNotLookedForAgain) {
    BoxTree tree({{{0, 0}, {1, 1}}, {{0, 0}, {1, 1}}});
    int calls = 0;
    for (int k = 0; k < 3; ++k)
        tree.meeting({{0, 0}, {1, 1}}, [&](std::int32_t) {
            ++calls;
            return false;
        });
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace brelan::test
