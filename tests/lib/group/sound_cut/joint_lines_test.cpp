// Joints along lines that cross, meet and branch, and that leave the ground that can be cut.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"

namespace brelan::test {
namespace {

DrawnGroup joint_along(std::vector<Point> points, float THICj = 0.0F) {
    DrawnGroup group = beams_along(std::move(points), 21);
    group.LTi = 0;
    make_joint(group, THICj);
    group.MATj = 41;
    return group;
}

// Over 8 by 6 squares of a metre.
CutRun run_of(std::vector<DrawnGroup> groups) {
    CutDeck deck = deck_over_squares("joint", Kind::displacement, 8, 6);
    deck.groups = std::move(groups);
    CutRun run = run_cut(deck, CutMethod::sound);
    EXPECT_EQ(run.status, 0) << run.message;
    if (run.status == 0) {
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << verdict.text();
    }
    return run;
}

std::ptrdiff_t nodes_at(const CutRun& run, double x, double y, double room = 1e-4) {
    return std::count_if(run.after.nodes.begin(), run.after.nodes.end(), [&](const CutNode& node) {
        return std::hypot(node.at.x - x, node.at.y - y) <= room;
    });
}

double length_of_joints(const CutRun& run) {
    double length = 0.0;
    for (const CutJoint& joint : run.after.joints) {
        Spot from, to;
        for (const CutNode& node : run.after.nodes) {
            if (node.number == joint.corners[0])
                from = node.at;
            if (node.number == joint.corners[1])
                to = node.at;
        }
        length += std::hypot(to.x - from.x, to.y - from.y);
    }
    return length;
}

// A bow tie: the second piece comes back, and the third crosses the first at (4, 3).
const std::vector<Point> CROSSING{{2, 1}, {6, 5}, {6, 1}, {2, 5}};

TEST(SoundJointLine, FallsIntoFourNodesWhereItCrossesItself) {
    const CutRun run = run_of({joint_along(CROSSING)});
    EXPECT_EQ(nodes_at(run, 4, 3), 4);
    EXPECT_EQ(nodes_at(run, 6, 3), 2);
    EXPECT_EQ(nodes_at(run, 2, 1), 1) << "a toe";
    EXPECT_NEAR(length_of_joints(run), 4.0 + 2.0 * std::sqrt(32.0), 1e-4);
}

TEST(SoundJointLine, FallsIntoFourNodesWhereAnotherGroupCrossesIt) {
    const CutRun run = run_of({joint_along({{2, 1}, {6, 5}}), joint_along({{6, 1}, {2, 5}})});
    EXPECT_EQ(nodes_at(run, 4, 3), 4);
    EXPECT_NEAR(length_of_joints(run), 2.0 * std::sqrt(32.0), 1e-4);
}

// The mitred corners of two strips of a width stand round the crossing: a square of that width, one corner
// where it is drawn.
TEST(SoundJointLine, LeavesTheRoomOfItsWidthWhereItCrossesItself) {
    const CutRun run = run_of({joint_along({{2, 3}, {6, 3}, {6, 5}, {4, 5}, {4, 1}}, -0.02F)});
    // East, then south: the left of the first is above, that of the last to the east.
    for (const auto& [x, y] : {std::pair{4.0, 3.0}, {4.02, 3.0}, {4.0, 3.02}, {4.02, 3.02}})
        EXPECT_EQ(nodes_at(run, x, y, 1e-3), 1) << x << " " << y;
}

TEST(SoundJointLine, FallsIntoThreeNodesWhereItBranches) {
    const CutRun run = run_of({joint_along({{2, 3}, {4, 3}, {4, 5}, {4, 3}, {6, 3}})});
    EXPECT_EQ(nodes_at(run, 4, 3), 3);
    EXPECT_EQ(nodes_at(run, 4, 5), 1) << "a toe";
    EXPECT_NEAR(length_of_joints(run), 6.0, 1e-4) << "one joint on the way that it goes twice";
}

TEST(SoundJointLine, FallsIntoThreeNodesWhereItEndsOnItself) {
    const CutRun run = run_of({joint_along({{1, 2}, {6, 2}, {6, 5}, {3, 5}, {3, 2}})});
    EXPECT_EQ(nodes_at(run, 3, 2), 3);
    EXPECT_NEAR(length_of_joints(run), 14.0, 1e-4);
}

TEST(SoundJointLine, PartsAllAroundWhereItComesBackToItsBeginning) {
    const CutRun run = run_of({joint_along({{2, 2}, {6, 2}, {6, 5}, {2, 5}, {2, 2}})});
    EXPECT_EQ(nodes_at(run, 2, 2), 2);
    EXPECT_NEAR(length_of_joints(run), 14.0, 1e-4);
}

// Two toes at one node part the ground between them.
TEST(SoundJointLine, OpensTheToeOfAnotherThatEndsAtOneNodeWithIt) {
    const CutRun run = run_of({joint_along({{4, 6}, {4, 3}}), joint_along({{7, 1}, {4, 3}})});
    EXPECT_EQ(nodes_at(run, 4, 3), 2);
}

TEST(SoundJointLine, EndsWhereElementsStayAndGoesOnBehindThem) {
    CutDeck deck = deck_over_squares("joint", Kind::displacement, 8, 6);
    deck.groups = {joint_along({{1, 3.5F}, {7, 3.5F}})};
    deck.listed = {21, 27};  // from x = 3 to 5, and the line runs through their middles
    const CutRun run = run_cut(deck, CutMethod::sound);
    ASSERT_EQ(run.status, 0) << run.message;
    EXPECT_NEAR(length_of_joints(run), 4.0, 1e-4);
    for (const double toe : {1.0, 3.0, 5.0, 7.0})
        EXPECT_EQ(nodes_at(run, toe, 3.5), 1) << toe;
}

// A slit of one piece has toes at both ends: it opens in between.
TEST(SoundJointLine, OpensInTheMiddleBetweenTwoToes) {
    const CutRun run = run_of({joint_along({{3.2F, 3.4F}, {3.8F, 3.6F}})});
    EXPECT_EQ(nodes_at(run, 3.2, 3.4), 1);
    EXPECT_EQ(nodes_at(run, 3.5, 3.5), 2);
    EXPECT_EQ(nodes_at(run, 3.8, 3.6), 1);
    EXPECT_NEAR(length_of_joints(run), std::sqrt(0.4), 1e-4);
}

TEST(SoundJointLine, OfAWidthOpensInTheMiddleBetweenTwoToes) {
    const CutRun run = run_of({joint_along({{3.2F, 3.5F}, {3.8F, 3.5F}}, -0.02F)});
    EXPECT_EQ(nodes_at(run, 3.5, 3.5), 1);
    EXPECT_EQ(nodes_at(run, 3.5, 3.52), 1);
}

// What an earlier joint has after a later one has crossed it is cut as well: both sides get the node.
TEST(SoundJointLine, IsFollowedThroughItsCrossingByLaterGroups) {
    DrawnGroup beam = beams_along({{3, 5.5F}, {5, 5.5F}}, 23);
    const CutRun run =
        run_of({joint_along({{4, 6}, {4, 1}}), joint_along({{1, 3}, {7, 3}}), std::move(beam)});
    EXPECT_EQ(nodes_at(run, 4, 3), 4);
    EXPECT_EQ(nodes_at(run, 4, 5.5), 2);
}

TEST(SoundJointLine, NamesGroupAndPlaceWhereItsWidthHasNoRoomBetweenItsParts) {
    CutDeck deck = deck_over_squares("joint", Kind::displacement, 8, 6);
    deck.groups = {joint_along({{2, 3}, {7, 3}, {7, 3.4F}, {1, 2.9F}}, -0.05F)};
    const CutRun run = run_cut(deck, CutMethod::sound);
    ASSERT_NE(run.status, 0);
    EXPECT_NE(run.message.find("group 1: its joint of width 0.05"), std::string::npos) << run.message;
    EXPECT_NE(run.message.find("between two parts of its line at ("), std::string::npos) << run.message;
}

}  // namespace
}  // namespace brelan::test
