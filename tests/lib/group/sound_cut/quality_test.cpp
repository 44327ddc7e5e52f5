// Slender elements that the cut leaves behind are divided anew together with a neighbour.

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"

namespace brelan::test {
namespace {

void expect_no_angle_below_ten(std::initializer_list<int> numbers) {
    const auto classes = deck_classes();
    const auto well_apart =
        std::find_if(classes.begin(), classes.end(), [](const DeckClass& of) { return of.is_well_apart; });
    ASSERT_NE(well_apart, classes.end());
    for (const int number : numbers) {
        const CutDeck deck = deck_of_class(*well_apart, number);
        const CutRun run = run_cut(deck, CutMethod::sound);
        ASSERT_EQ(run.status, 0) << run.message;
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << deck.name << "\n" << verdict.text();
        EXPECT_GE(verdict.smallest_angle, 10.0) << deck.name << ", " << verdict.smallest_at;
    }
}

// Line ends and crossings that lie just beside a side: 7.9 and 2.8 degrees without another diagonal.
TEST(SoundCutQuality, NoSliverStaysBesideAFreeSide) {
    expect_no_angle_below_ten({167, 790});
}

// Crossings beside the end of a line, that rounding has put on the one hand of the line or the other: 6.5 to
// 9.9 degrees where those on one hand are held.
TEST(SoundCutQuality, ACrossingSlidesAlongItsLine) {
    expect_no_angle_below_ten({141, 264, 284, 510, 1192, 1367, 1414, 1662, 1822});
}

// A stratum ends 0.045 above a fixed node, and a wall 0.04 beside one: 9.5 degrees, or less, without nodes
// between the short side and the long ones.
TEST(SoundCutQuality, SidesGrowStepByStepFromAShortOne) {
    CutDeck stratum = deck_over_squares("stratum", Kind::displacement, 8, 6);
    stratum.groups = {region_of({{0.0F, 0.0F}, {8.0F, 0.0F}, {8.0F, 3.3F}, {0.0F, 3.0455F}}, 2)};
    CutDeck wall = deck_over_squares("wall", Kind::displacement, 8, 6);
    wall.groups = {beams_along({{4.04F, 6.0F}, {4.04F, 2.5F}}, 21)};
    for (const CutDeck& deck : {stratum, wall}) {
        const CutRun run = run_cut(deck, CutMethod::sound);
        ASSERT_EQ(run.status, 0) << run.message;
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << verdict.text();
        EXPECT_GE(verdict.smallest_angle, 20.0) << deck.name << ", " << verdict.smallest_at;
        EXPECT_LE(verdict.solids, 65U) << deck.name << ", of 48";
    }
}

}  // namespace
}  // namespace brelan::test
