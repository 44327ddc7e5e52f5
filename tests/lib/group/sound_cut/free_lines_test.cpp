// Struts and anchors that are strung through the air.

#include <gtest/gtest.h>

#include "lib/group/sound_cut/deck_classes.h"

namespace brelan::test {
namespace {

CutRun strung_along(std::vector<Point> points) {
    CutDeck deck = deck_over_squares("strut", Kind::displacement, 8, 6);
    DrawnGroup strut = beams_along(std::move(points), 21);
    strut.OVERLAY = 1;
    deck.groups = {std::move(strut)};
    CutRun run = run_cut(deck, CutMethod::sound);
    EXPECT_EQ(run.status, 0) << run.message;
    for (const CutLine& line : run.after.lines)
        EXPECT_NE(line.from, line.to);
    return run;
}

TEST(SoundFreeLine, HasNoElementWhereItsPointsAreOneNode) {
    EXPECT_EQ(strung_along({{2, 2}, {2.0004F, 2}}).after.lines.size(), 0U);
    EXPECT_EQ(strung_along({{2, 2}, {2.0004F, 2}, {6, 2}}).after.lines.size(), 1U);
}

TEST(SoundFreeLine, GoesNoWayBackOnASingleElement) {
    EXPECT_EQ(strung_along({{2, 2}, {6, 2}, {2, 2}}).after.lines.size(), 1U);
}

TEST(SoundFreeLine, ClosesRoundThreeNodes) {
    EXPECT_EQ(strung_along({{2, 2}, {6, 2}, {4, 4}, {2, 2}}).after.lines.size(), 3U);
}

// Points near the one that the line comes back to are its node.
TEST(SoundFreeLine, ClosesOnceWhereItsEndHasTwoPoints) {
    EXPECT_EQ(strung_along({{2, 2}, {6, 2}, {4, 4}, {2.0004F, 2}, {2, 2}}).after.lines.size(), 3U);
}

}  // namespace
}  // namespace brelan::test
