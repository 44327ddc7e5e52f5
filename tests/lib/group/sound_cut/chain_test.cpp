// What is drawn is a chain of sides, also where sides are short, close together or nearly parallel.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"

namespace brelan::test {
namespace {

CutDeck deck_of(std::string_view name, int number) {
    const auto classes = deck_classes();
    const auto of = std::find_if(classes.begin(), classes.end(),
                                 [&](const DeckClass& each) { return each.name == name; });
    EXPECT_NE(of, classes.end()) << name;
    return deck_of_class(*of, number);
}

void expect_all_laws(std::string_view name, int number) {
    const CutDeck deck = deck_of(name, number);
    const CutRun run = run_cut(deck, CutMethod::sound);
    ASSERT_EQ(run.status, 0) << deck.name << ": " << run.message;
    const Verdict verdict = judge(deck, run);
    EXPECT_TRUE(verdict.violations.empty()) << deck.name << "\n" << verdict.text();
}

// A line crosses a fan of sides: its pieces are shorter than the distance within which things are one.
TEST(SoundCutChain, PiecesShorterThanTheToleranceAreSides) {
    expect_all_laws("three crossing groups", 633);
    expect_all_laws("joints round outlines", 149);
    expect_all_laws("lines and joints over a joint", 562);
}

// Nodes of a line over a fan of sides become one where the digits of a file would leave them at one place.
TEST(SoundCutChain, NodesOverAFanOfSidesAreOne) {
    expect_all_laws("three groups in two decks", 1299);
}

// Two pieces of one outline part at an angle of 0.2 degrees, in a fan of sides.
TEST(SoundCutChain, PiecesPartInAFanOfSides) {
    expect_all_laws("three crossing groups", 2399);
}

// A line passes by 0.00003 a node at which whole elements of an earlier outline end.
TEST(SoundCutChain, ANodeBetweenMaterialsStays) {
    expect_all_laws("three groups in two decks", 2014);
}

// A later line runs over the ends that another leaves open, and beyond its beams.
TEST(SoundCutChain, BeamsEndWhereNothingPlacesTheirEnd) {
    expect_all_laws("three crossing groups", 806);
}

// Crossings of a fan of sides become one with the point of an arc that they stand beside.
TEST(SoundCutChain, ACrossingGoesIntoThePointBesideIt) {
    expect_all_laws("three crossing groups", 1922);
}

// A crossing of a chord beside the line is no node of it, though it stands nearer than the tolerance.
TEST(SoundCutChain, ALinePassesNodesBesideIt) {
    expect_all_laws("three groups, second order", 662);
}

// The nodes of a line slide while the elements round them are made better, in every group again.
TEST(SoundCutChain, NodesThatSlideStayOnTheLineAsItIsDrawn) {
    expect_all_laws("three crossing groups", 1133);
    expect_all_laws("three groups, second order", 1827);
}

// A half disc: the arc's first points lie close beside the side that its straight piece runs along, or
// other points beside a side that has bent.
TEST(SoundCutChain, NoSideBendsPastWhatIsDrawn) {
    expect_all_laws("circles and arcs", 1636);
    expect_all_laws("deletion", 1387);
    expect_all_laws("joints round outlines", 650);
    expect_all_laws("joints round outlines", 1427);
}

// An outline has a corner on the border 0.001 from a node that is fixed: two sides leave this node beside it.
TEST(SoundCutChain, APointBesideACornerIsOnTheNearerSide) {
    expect_all_laws("strata", 121);
    expect_all_laws("strata", 286);
}

// The middle of a piece between two toes, one of which stands beside the line.
TEST(SoundCutChain, TheMiddleBetweenTwoToesIsOnTheLine) {
    expect_all_laws("lines and joints over a joint", 63);
    expect_all_laws("joints of no width", 209);  // its toes are nodes that were there
}

// A beam that begins on a joint has a node on both of its sides.
TEST(SoundCutChain, APointOnAJointIsOnBothSides) {
    expect_all_laws("lines and joints over a joint", 981);
}

// A circle of so many parts that three points of it are in one line by the digits of a file.
TEST(SoundCutChain, ElementsWithoutCornersAreRefused) {
    CutDeck deck = deck_over_squares("circle", Kind::displacement, 8, 6);
    DrawnGroup circle = region_of({{5.2F, 3.2F}}, 2);
    circle.segments = {arc_with({4.3F, 3.2F}, {0.9F, 0.9F}, 0.0F, 360.0F, 1440)};
    deck.groups = {circle};
    const CutRun run = run_cut(deck, CutMethod::sound);
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.message.find("group 1, segment "), std::string::npos) << run.message;
    EXPECT_NE(run.message.find("would be flat"), std::string::npos) << run.message;
}

// The head of a mesh file of the head kind hides trusses, and a second deck puts a node close beside them.
TEST(SoundCutChain, ALineThatTheSecondDeckDoesNotSeeHoldsNoNodes) {
    expect_all_laws("three groups in two decks", 878);
}

// Two lines at 0.1 degrees over a fan of sides: elements with a corner below a hundredth of a degree.
TEST(SoundCutChain, LinesOfTooSmallAnAngleAreRefused) {
    const CutRun run = run_cut(deck_of("three crossing groups", 2700), CutMethod::sound);
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.message.find("group 2, segment "), std::string::npos) << run.message;
    EXPECT_NE(run.message.find("would be flat"), std::string::npos) << run.message;
}

// A line that crosses a chord beside its end goes on from this one, not back to it.
TEST(SoundCutChain, ALineDoesNotTurnBackBesideAChord) {
    expect_all_laws("three groups, second order", 283);
}

// A line crosses the side of an outline and ends within the elements on both sides of it. The crossing is a
// node of both lines; only the outline has sides there.
TEST(SoundCutChain, ACrossingStaysOnBothLines) {
    expect_all_laws("three crossing groups", 1116);
    CutDeck deck = deck_over_squares("crossing", Kind::displacement, 8, 6);
    DrawnGroup line = beams_along({{2.05F, 2.98F}, {1.84F, 3.79F}}, 22);
    line.segments[0].IEND = 7;
    deck.groups = {region_of({{1.3F, 1.4F}, {6.6F, 1.9F}, {6.6F, 3.4F}, {1.7F, 3.4F}}, 2), line};
    const CutRun run = run_cut(deck, CutMethod::sound);
    ASSERT_EQ(run.status, 0) << run.message;
    // Of its 0.81 upwards the line has gone 0.42 at the height of 3.4, so it is at 2.05 - 0.21 * 0.42 / 0.81.
    EXPECT_TRUE(std::any_of(run.after.nodes.begin(), run.after.nodes.end(), [](const CutNode& node) {
        return std::abs(node.at.x - 1.941111) < 1.0E-5 && std::abs(node.at.y - 3.4) < 1.0E-5;
    }));
}

// A beam of the first deck runs along sides and, in one line with it, another across elements, tied at its
// ends alone. Where they meet is a place of the deck, which the second deck does not slide along the line.
TEST(SoundCutChain, ALineElementAcrossElementsHoldsItsEnds) {
    expect_all_laws("three groups in two decks", 3277);
}

// A later group's node lies by chance within the tolerance of what an earlier line leaves uncut.
TEST(SoundCutChain, TheUncutRestOfALineHoldsNoNodes) {
    expect_all_laws("three groups in two decks", 1719);
}

// Behind the crossing with another outline, whose material lies on both sides there, a second deck sees
// nothing of an outline of the first: right beside it is the side of the other.
TEST(SoundCutChain, AnOutlineThatASecondDeckDoesNotSeeHoldsNoNodes) {
    expect_all_laws("three groups in two decks", 3711);
    expect_all_laws("three groups in two decks", 2858);  // of beams
}

// Nodes that codes hold give way to nothing, in a second deck those whose codes it reads. A node that is free
// in the ground has none of the codes that are by its side.
TEST(SoundCutChain, NewNodesInTheGroundAreNotHeld) {
    expect_all_laws("three groups in two decks", 3862);
}

}  // namespace
}  // namespace brelan::test
