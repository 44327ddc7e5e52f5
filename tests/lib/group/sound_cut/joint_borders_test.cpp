// What stands beside a joint goes with the ground that it belongs to; the twins of a joint of a width stay on
// the border.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "lib/group/sound_cut/deck_classes.h"

namespace brelan::test {
namespace {

constexpr float WIDTH = -0.05F;  // of joints that part the ground

DrawnGroup open_joint(std::vector<Point> points, float THICj = 0.0F) {
    DrawnGroup group = beams_along(std::move(points), 0);
    group.LTi = 0;
    make_joint(group, THICj);
    return group;
}

// With beams along its other side.
DrawnGroup lined_joint(std::vector<Point> points, float THICj = 0.0F) {
    DrawnGroup group = open_joint(std::move(points), THICj);
    group.LTo = 2;
    group.LMo = 22;
    return group;
}

DrawnGroup hole_of(float left, float low, float right, float high) {
    DrawnGroup group = region_of({{left, low}, {right, low}, {right, high}, {left, high}}, 0);
    group.MTYPE = 1;
    return group;
}

// Over 8 by 6 squares of a metre.
CutDeck deck_with(std::vector<DrawnGroup> groups) {
    CutDeck deck = deck_over_squares("joint at a border", Kind::displacement, 8, 6);
    deck.groups = std::move(groups);
    return deck;
}

CutRun finished_run_of(const CutDeck& deck) {
    CutRun run = run_cut(deck, CutMethod::sound);
    EXPECT_EQ(run.status, 0) << run.message;
    return run;
}

void expect_refusal(const CutDeck& deck, const std::string& text) {
    const CutRun run = run_cut(deck, CutMethod::sound);
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.message.find(text), std::string::npos) << run.message;
}

int count_at(const CutRun& run, double x, double y) {
    return static_cast<int>(
        std::count_if(run.after.nodes.begin(), run.after.nodes.end(),
                      [&](const CutNode& node) { return std::hypot(node.at.x - x, node.at.y - y) < 1e-4; }));
}

Spot place_of(const CutRun& run, int number) {
    for (const CutNode& node : run.after.nodes)
        if (node.number == number)
            return node.at;
    return {};
}

// Ends of beams of a material, from left to right and upwards.
std::vector<std::pair<Spot, Spot>> beams_in(const CutRun& run, int material) {
    std::vector<std::pair<Spot, Spot>> found;
    for (const CutLine& line : run.after.lines)
        if (line.material == material)
            found.emplace_back(place_of(run, line.from), place_of(run, line.to));
    return found;
}

void expect_beam(const CutRun& run, int material, const Spot& from, const Spot& to) {
    const auto beams = beams_in(run, material);
    const auto near = [](const Spot& a, const Spot& b) { return std::hypot(a.x - b.x, a.y - b.y) < 1e-4; };
    EXPECT_TRUE(std::any_of(beams.begin(), beams.end(),
                            [&](const auto& beam) {
                                return (near(beam.first, from) && near(beam.second, to)) ||
                                       (near(beam.first, to) && near(beam.second, from));
                            }))
        << "material " << material << " from " << from.x << " " << from.y << " to " << to.x << " " << to.y;
}

// A mesh that is read, with beams between its nodes, which stand by columns and rows.
CutDeck deck_with_beams(const std::vector<std::array<int, 4>>& beams, const std::vector<Spot>& further_nodes,
                        std::vector<DrawnGroup> groups) {
    const DrawnMesh squares = mesh_of_squares(8, 6, false);
    CutDeck deck = deck_over("beams beside a joint", Kind::displacement, squares);
    for (const Spot& place : further_nodes) {
        MeshNode node = deck.base.nodes.back();
        ++node.number;
        node.x = place.x;
        node.y = place.y;
        deck.base.nodes.push_back(node);
    }
    int number = static_cast<int>(deck.base.continuum.size()), material = 30;
    for (const auto& [column, row, other_column, other_row] : beams) {
        const int other = other_row < 0 ? static_cast<int>(squares.nodes.size()) - other_row
                                        : squares.node_at(other_column, other_row);
        deck.base.beams.push_back({++number, squares.node_at(column, row), other, ++material});
    }
    deck.groups = std::move(groups);
    return deck;
}

// Downwards, so that its left, where the twins are, is to the east.
const std::vector<Point> DOWN{{3, 6}, {3, 0}};

TEST(SoundJointLine, TakesBeamsInsideElementsWithTheirGround) {
    const CutRun run =
        finished_run_of(deck_with_beams({{3, 3, 4, 4}, {3, 3, 2, 4}}, {}, {open_joint(DOWN, WIDTH)}));
    expect_beam(run, 31, {3.05, 3}, {4, 4});
    expect_beam(run, 32, {3, 3}, {2, 4});
}

// Anchors and props in the air: those to the left of the line with its twins, at both of its ends.
TEST(SoundJointLine, TakesBeamsOutsideOfAllGroundByTheirSide) {
    const CutRun run =
        finished_run_of(deck_with_beams({{3, 6, 0, -1}, {3, 6, 0, -2}, {3, 0, 0, -3}, {3, 0, 0, -4}},
                                        {{4, 7}, {2, 7}, {4, -1}, {2, -1}}, {open_joint(DOWN, WIDTH)}));
    expect_beam(run, 31, {3.05, 6}, {4, 7});
    expect_beam(run, 32, {3, 6}, {2, 7});
    expect_beam(run, 33, {3.05, 0}, {4, -1});
    expect_beam(run, 34, {3, 0}, {2, -1});
}

// A wall along the line goes with the ground to its left, one whose type is below 0 with that to its right.
TEST(SoundJointLine, TakesBeamsAlongItToTheSideOfTheirType) {
    for (const int LTi : {2, -2}) {
        DrawnGroup wall = beams_along({{4, 1}, {4, 5}}, 23);
        wall.LTi = LTi;
        const CutRun run = finished_run_of(deck_with({wall, open_joint({{4, 6}, {4, 0}}, WIDTH)}));
        EXPECT_EQ(beams_in(run, 23).size(), 4U);
        const double x = LTi > 0 ? 4.05 : 4.0;
        for (int y = 1; y < 5; ++y)
            expect_beam(run, 23, {x, static_cast<double>(y)}, {x, y + 1.0});
    }
}

// A wall on the border: the joint stands between it and the ground, open at both ends.
TEST(SoundJointLine, PartsAWallFromTheBorder) {
    const CutRun run = finished_run_of(deck_with({lined_joint({{6, 0}, {2, 0}}, WIDTH)}));
    EXPECT_EQ(beams_in(run, 22).size(), 4U);
    for (int x = 2; x < 6; ++x)
        expect_beam(run, 22, {static_cast<double>(x), -0.05}, {x + 1.0, -0.05});
    EXPECT_EQ(count_at(run, 2, 0), 1);
}

// The line goes down to the border and along it: the wall begins on the ground to the other side of the line.
TEST(SoundJointLine, HangsAWallOnTheGroundBeyondTheLine) {
    DrawnGroup line = open_joint({{4, 3}, {4, 0}, {6, 0}});
    line.LTi = 2;
    line.LMi = 22;
    const CutRun run = finished_run_of(deck_with({line}));
    EXPECT_EQ(count_at(run, 4, 3), 1) << "a toe";
    EXPECT_EQ(count_at(run, 4, 0), 2) << "the wall has no node of its own";
    EXPECT_EQ(count_at(run, 5, 0), 2);
    EXPECT_EQ(count_at(run, 6, 0), 2);
}

// Its twins to both sides of the bend go along the border: by the width over the sine of the angle there, 45
// degrees.
TEST(SoundJointLine, OfAWidthFollowsTheBorderWhereItBendsThere) {
    const CutRun run = finished_run_of(deck_with({open_joint({{7, 3}, {4, 0}, {1, 3}}, WIDTH)}));
    EXPECT_EQ(count_at(run, 4, 0), 1);
    EXPECT_EQ(count_at(run, 4 + 0.05 * std::sqrt(2.0), 0), 1);
    EXPECT_EQ(count_at(run, 4 - 0.05 * std::sqrt(2.0), 0), 1);
}

// Two squares that touch at (4, 3) alone: the line goes round the corner of one of them.
TEST(SoundJointLine, HasNoWidthWhereTheGroundBesideItIsHeldByOneNode) {
    const CutRun run = finished_run_of(
        deck_with({hole_of(3, 2, 4, 3), hole_of(4, 3, 5, 4), lined_joint({{4, 2}, {4, 3}, {5, 3}}, WIDTH)}));
    EXPECT_EQ(count_at(run, 4, 3), 2);
    expect_beam(run, 22, {3.95, 2}, {4, 3});
    expect_beam(run, 22, {4, 3}, {5, 3.05});
}

// To its left two legs in one line: the twin between them is theirs by the width. The branch ends in a toe.
TEST(SoundJointLine, OfAWidthGoesStraightPastABranch) {
    const CutRun run =
        finished_run_of(deck_with({open_joint({{6, 3}, {4, 3}, {4, 5}, {4, 3}, {2, 3}}, WIDTH)}));
    EXPECT_EQ(count_at(run, 4, 2.95), 1);
    EXPECT_EQ(count_at(run, 4, 3), 1);
    EXPECT_EQ(count_at(run, 4, 5), 1);
}

// It begins on the border at a point that it comes back to and leaves again, to the right of its beginning:
// the ground to the right of the first leg is that to the left of the last, and the beginning goes along the
// border from there.
TEST(SoundJointLine, OfAWidthBeginsBesideAnotherLegOfItsOwn) {
    const CutRun run = finished_run_of(
        deck_with({open_joint({{4, 0}, {2, 3}, {2, 5}, {7, 5}, {7, 2}, {4, 0}, {4, 4}}, WIDTH)}));
    EXPECT_EQ(count_at(run, 4 - 0.05 * std::sqrt(13.0) / 3.0, 0), 1);
}

// A line over two holes that touch at (3, 3), where there is nothing to part.
TEST(SoundJointLine, BeginsAndEndsBehindHoles) {
    for (const std::vector<Point>& points :
         {std::vector<Point>{{2, 2}, {5, 5}}, std::vector<Point>{{5, 5}, {2, 2}}}) {
        const CutRun run =
            finished_run_of(deck_with({hole_of(2, 2, 3, 3), hole_of(3, 3, 4, 4), open_joint(points)}));
        EXPECT_EQ(run.after.joints.size(), 1U);
        EXPECT_EQ(count_at(run, 3, 3), 1);
        EXPECT_EQ(count_at(run, 4, 4), 2);
        EXPECT_EQ(count_at(run, 5, 5), 1) << "a toe";
    }
}

// A slit of three tolerances has no room for a node between its toes.
TEST(SoundJointLine, IsRefusedWhereItCannotOpen) {
    expect_refusal(deck_with({open_joint({{3.5F, 3.5F}, {3.503F, 3.5F}})}),
                   "group 1: expected a joint that can open");
}

TEST(SoundJointLine, IsRefusedOverTheOtherSideOfAnother) {
    expect_refusal(deck_with({open_joint(DOWN, WIDTH), open_joint({{3.05F, 6}, {3.05F, 0}})}),
                   "the joint of group 1");
}

TEST(SoundJointLine, IsRefusedOverAJointOfTheMesh) {
    CutDeck deck = deck_with({open_joint(DOWN), open_joint(DOWN)});
    deck.groups_of_first_deck = 1;
    expect_refusal(deck, "a joint of the mesh");
}

// --- lines of later groups -------------------------------------------------------------------------------

// A beam crosses both sides of the joint at y = 3.4 and comes back to the further one at y = 3.8: the nearer
// side gets a node there as well, that at 3.4 is there already.
TEST(SoundLineAtAJoint, DividesBothSidesAlike) {
    const CutRun run =
        finished_run_of(deck_with({open_joint({{4, 6}, {4, 0}}, WIDTH),
                                   beams_along({{2, 3.4F}, {6, 3.4F}, {6, 3.8F}, {4.05F, 3.8F}}, 23)}));
    for (const double y : {3.4, 3.8})
        for (const double x : {4.0, 4.05})
            EXPECT_EQ(count_at(run, x, y), 1) << x << " " << y;
}

// A joint of the mesh that is read as wide as a square: the line runs from one of its ends to the other.
TEST(SoundLineAtAJoint, IsRefusedAlongItsInside) {
    CutDeck deck = deck_with_beams({}, {}, {beams_along({{1.5F, 3.5F}, {6.5F, 3.5F}}, 23)});
    deck.base.continuum[27].reals[1] = -1.0;  // from (3, 3) to (4, 4), its long sides below and above
    expect_refusal(deck, "the line runs along the inside of joint element 28 at (");
}

TEST(SoundLine, IsRefusedOverInvertedGround) {
    CutDeck deck = deck_with_beams({}, {}, {beams_along({{1.5F, 3.5F}, {6.5F, 3.5F}}, 23)});
    std::swap(deck.base.continuum[27].corners[1], deck.base.continuum[27].corners[3]);
    expect_refusal(deck, "is unsound before the cut");
}

// A square of the mesh in two quadrilaterals with two sides in common, one of them with a corner pushed in.
// The line cuts the square beside it alone, and what is made better there in pairs of elements leaves these
// two.
TEST(SoundLine, IsRefusedBesideACornerThatIsPushedIn) {
    CutDeck deck = deck_with_beams({}, {{2.97, 2.03}}, {beams_along({{3.5F, 1.2F}, {3.5F, 4.7F}}, 23)});
    const int inside = deck.base.nodes.back().number;
    deck.base.nodes.back().codes[0] = 1;  // it stays there
    MeshElement& lower = deck.base.continuum[18];
    const auto [low_left, low_right, high_right, high_left] = lower.corners;
    MeshElement upper = lower;
    lower.corners = {low_left, low_right, high_right, inside};
    upper.number = static_cast<int>(deck.base.continuum.size()) + 1;
    upper.corners = {low_left, inside, high_right, high_left};
    deck.base.continuum.push_back(upper);
    expect_refusal(deck, "group 1, segment 1: element 19 at (3.000000, 2.000000) would be flat");
}

// A joint along one side of a square between two toes.
TEST(SoundJointLine, OpensInTheMiddleOfASideBetweenTwoToes) {
    const CutRun run = finished_run_of(deck_with({open_joint({{3, 3}, {4, 3}})}));
    EXPECT_EQ(count_at(run, 3, 3), 1);
    EXPECT_EQ(count_at(run, 3.5, 3), 2);
    EXPECT_EQ(count_at(run, 4, 3), 1);
}

// The same between two beams, on which its toes lie: the middle is on neither of their lines.
TEST(SoundJointLine, OpensInTheMiddleOfASideBetweenTwoBeams) {
    const CutRun run =
        finished_run_of(deck_with({beams_along({{3, 1}, {3, 5}}, 22), beams_along({{4, 1}, {4, 5}}, 23),
                                   open_joint({{3, 3}, {4, 3}})}));
    EXPECT_EQ(count_at(run, 3, 3), 1);
    EXPECT_EQ(count_at(run, 3.5, 3), 2);
    EXPECT_EQ(count_at(run, 4, 3), 1);
}

// An element with a double of another stage: the corner of the outline inside is one node of both.
TEST(SoundLine, HasOneNodeInAnElementAndItsDouble) {
    DrawnGroup stage = region_of({{2, 2}, {5, 2}, {5, 5}, {2, 5}}, 2);
    stage.MTYPE = 4;
    stage.MATold = 52;
    const CutRun run =
        finished_run_of(deck_with({stage, region_of({{3.4F, 3.3F}, {6.5F, 3.4F}, {6.5F, 4.6F}}, 3)}));
    EXPECT_EQ(count_at(run, 3.4F, 3.3F), 1);
}

}  // namespace
}  // namespace brelan::test
