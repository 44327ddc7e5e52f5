// Slender elements that the cut leaves behind are divided anew together with a neighbour.

#include <gtest/gtest.h>

#include <algorithm>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"

namespace brelan::test {
namespace {

// Line ends and crossings that lie just beside a side: 7.9 and 2.8 degrees without another diagonal.
TEST(SoundCutQuality, NoSliverStaysBesideAFreeSide) {
    const auto classes = deck_classes();
    const auto well_apart =
        std::find_if(classes.begin(), classes.end(), [](const DeckClass& of) { return of.is_well_apart; });
    ASSERT_NE(well_apart, classes.end());
    for (const int number : {167, 790}) {
        const CutDeck deck = deck_of_class(*well_apart, number);
        const CutRun run = run_cut(deck, CutMethod::sound);
        ASSERT_EQ(run.status, 0) << run.message;
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << deck.name << "\n" << verdict.text();
        EXPECT_GE(verdict.smallest_angle, 10.0) << deck.name << ", " << verdict.smallest_at;
    }
}

}  // namespace
}  // namespace brelan::test
