// The judge itself: a mesh that is as drawn keeps all laws, and each thing that may be wrong breaks its own.

#include "lib/group/sound_cut/judge.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "lib/group/sound_cut/deck_classes.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

// Four squares in a row along y = 0 to 1, and the deck that draws a beam along the side in the middle.
//
//    6---7---8---9--10
//    | 1 | 2 | 3 | 4 |
//    1---2---3---4---5
struct Row {
    CutDeck deck;
    CutRun run;

    Row() {
        deck.high = {4.0, 1.0};
        for (int n = 1; n <= 10; ++n)
            run.after.nodes.push_back(
                {n, {static_cast<double>((n - 1) % 5), static_cast<double>((n - 1) / 5)}});
        for (int e = 1; e <= 4; ++e)
            run.after.solids.push_back({e, 1, {e, e + 1, e + 6, e + 5}});
        run.after.lines.push_back({5, 21, 3, 8});
        run.before = run.after;
        run.before.lines.clear();
        DrawnPath path;
        path.group = 1;
        path.type = 2;
        path.line_type = 2;
        path.line_material = 21;
        path.pieces.push_back({1, true, true, true, {{2.0, 0.0}, {2.0, 1.0}}});
        path.polygon = path.pieces[0].points;
        run.paths.push_back(path);
    }

    CutSolid& solid(int number) { return run.after.solids[static_cast<std::size_t>(number - 1)]; }
    Spot& place(int node) { return run.after.nodes[static_cast<std::size_t>(node - 1)].at; }
    int add_node(Spot at) {
        run.after.nodes.push_back({static_cast<int>(run.after.nodes.size() + 1), at});
        return run.after.nodes.back().number;
    }
    // Material 2 between x = 1 and x = 3.
    void draw_region() {
        DrawnPath path;
        path.group = 2;
        path.type = 3;
        path.material = 2;
        path.closed = path.exact = true;
        path.polygon = {{1.0, 0.0}, {3.0, 0.0}, {3.0, 1.0}, {1.0, 1.0}};
        for (std::size_t i = 0; i < 4; ++i)
            path.pieces.push_back({i + 1, true, true, true, {path.polygon[i], path.polygon[(i + 1) % 4]}});
        run.paths.push_back(path);
        solid(2).material = solid(3).material = 2;
    }
    std::string text() const { return judge(deck, run).text(); }
    void expect_broken(Law law, const std::string& fragment) const {
        const Verdict verdict = judge(deck, run);
        const auto told = [&](const Violation& v) {
            return v.law == law && v.text.find(fragment) != std::string::npos;
        };
        EXPECT_TRUE(std::any_of(verdict.violations.begin(), verdict.violations.end(), told))
            << fragment << "\n"
            << verdict.text();
    }
};

TEST(CutJudge, AMeshAsDrawnKeepsAllLaws) {
    Row row;
    EXPECT_EQ(row.text(), "");
    row.draw_region();
    EXPECT_EQ(row.text(), "");
    EXPECT_DOUBLE_EQ(judge(row.deck, row.run).smallest_angle, 90.0);
}

// Its line of beams leaves its ends open, and another line runs over the first of them: the side there is no
// beam of the first. All others are.
TEST(CutJudge, OpenEnds) {
    Row row;
    DrawnPath& path = row.run.paths[0];
    path.pieces = {{1, true, false, false, {{0.0, 0.0}, {4.0, 0.0}}}};
    row.run.after.lines = {{5, 21, 2, 3}, {6, 21, 3, 4}, {7, 21, 4, 5}};
    row.expect_broken(Law::line, "line elements have a length of 3.000000, its sides 4.000000");
    DrawnPath other = path;
    other.group = 2;
    other.line_type = 0;
    other.pieces = {{1, true, true, true, {{0.0, 0.0}, {0.4, 0.0}}}};
    row.run.paths.push_back(other);
    EXPECT_EQ(row.text(), "");
    row.run.after.lines.erase(row.run.after.lines.begin() + 1);
    row.expect_broken(Law::line, "line elements have a length of 2.000000, its sides 4.000000");
    row.run.after.lines.erase(row.run.after.lines.begin() + 1);
    row.expect_broken(Law::line, "line elements have a length of 1.000000, its sides 4.000000");
    Row earlier = row;
    earlier.run.after.lines = {{5, 21, 2, 3}, {6, 21, 3, 4}, {7, 21, 4, 5}};
    std::swap(earlier.run.paths[0].group, earlier.run.paths[1].group);
    earlier.expect_broken(Law::line, "line elements have a length of 3.000000, its sides 4.000000");
}

TEST(CutJudge, Shapes) {
    Row inverted;
    inverted.solid(2).corners = {2, 7, 8, 3};
    inverted.expect_broken(Law::shape, "element 2 (2 7 8 3) at (1, 0) is inverted");
    Row concave;
    concave.place(7) = {1.6, 0.3};
    concave.expect_broken(Law::shape, "element 2 (2 3 8 7) at (1, 0) is concave");
    Row flat;
    flat.solid(1).corners = {1, 2, 7};
    flat.run.after.solids.push_back({6, 1, {1, 7, 6}});
    EXPECT_EQ(flat.text(), "");
    flat.place(7) = {1.0, 1.0E-5};
    flat.expect_broken(Law::shape, "is flat");
    Row twice;
    twice.solid(1).corners = {1, 2, 2, 6};
    twice.expect_broken(Law::shape, "has a corner twice");
    Row unnamed;
    unnamed.solid(1).corners[2] = 77;
    unnamed.expect_broken(Law::shape, "element 1 names node 77, which is not there");
    Row doubled;
    doubled.run.after.solids.push_back({6, 1, {1, 2, 7, 6}});
    doubled.expect_broken(Law::shape, "is there twice with material 1");
    Row over;
    over.run.after.solids.push_back({6, 3, {1, 2, 7, 6}});
    over.expect_broken(Law::shape, "1 elements lie over others");
    over.run.paths[0].type = 4;  // as the deck asks
    EXPECT_EQ(judge(over.deck, over.run).breaks(Law::shape), false);
}

// A node beside the beam, within the tolerance, that no side of the chain needs.
TEST(CutJudge, ANodeThatStandsBesideALineIsPassed) {
    Row row;
    const int n = row.add_node({2.0004, 0.5});
    row.solid(3).corners = {3, 4, n};
    row.run.after.solids.push_back({6, 1, {4, 9, n}});
    row.run.after.solids.push_back({7, 1, {9, 8, n}});
    row.run.after.solids.push_back({8, 1, {8, 3, n}});
    EXPECT_EQ(row.text(), "");
}

// A node on a side that goes on from the last of the beams, within the tolerance of the rest of a line whose
// end nothing places. Were it the line's own, or tells no beam where the line ends, it lies off.
TEST(CutJudge, ANodeThatStandsBesideTheRestOfALineIsPassed) {
    Row row;
    const int last = row.add_node({2.0, 0.5}), beside = row.add_node({2.0004, 0.8});
    row.solid(2).corners = {2, 3, last, 7};
    row.solid(3).corners = {3, 4, 9, last};
    row.run.after.solids.push_back({6, 1, {7, last, beside}});
    row.run.after.solids.push_back({7, 1, {7, beside, 8}});
    row.run.after.solids.push_back({8, 1, {last, 9, beside}});
    row.run.after.solids.push_back({10, 1, {beside, 9, 8}});
    row.run.after.lines = {{5, 21, 3, last}};
    row.run.paths[0].pieces = {{1, true, true, false, {{2.0, 0.0}, {2.0, 0.9}}}};
    EXPECT_EQ(row.text(), "");
    Row turned = row;
    turned.run.paths[0].pieces = {{1, true, false, true, {{2.0, 0.9}, {2.0, 0.0}}}};
    EXPECT_EQ(turned.text(), "");
    Row placed = row;
    placed.run.paths[0].pieces[0].places_end = true;
    placed.expect_broken(Law::line, "no side along (2, 0.8) to (2, 0.9)");
    Row own = row;
    own.run.after.lines.push_back({11, 21, last, beside});
    own.expect_broken(Law::line, "node 12 is 0.000400 off it");
    Row held = own;  // by the codes that a second deck reads
    held.deck.groups_of_first_deck = 1;
    held.run.paths[0].group = 2;
    held.run.between = held.run.reread = held.run.after;
    held.expect_broken(Law::line, "node 12 is 0.000400 off it");
    held.run.still_frozen = {beside};
    EXPECT_EQ(held.text(), "");
    Row without = row;
    without.run.after.lines.clear();
    without.run.paths[0].line_type = 0;
    without.expect_broken(Law::line, "node 12 is 0.000400 off it");
}

// Its own digits are good, those of the file are not.
TEST(CutJudge, ShapesByTheDigitsOfTheFile) {
    Row row;
    for (int n = 1; n <= 10; ++n)
        row.place(n).x += 20000.0;
    row.place(7).x = row.place(2).x + 0.01;
    row.place(6).x = row.place(7).x - 0.02;
    row.place(1).x = row.place(6).x;
    row.expect_broken(Law::shape, "by the digits of the file");
}

TEST(CutJudge, Fit) {
    Row hanging;
    const int middle = hanging.add_node({2.0, 0.5});
    hanging.solid(2).corners = {2, 3, middle, 7};
    hanging.run.after.solids.push_back({6, 1, {middle, 8, 7}});
    hanging.expect_broken(Law::fit, "node 11 hangs on the side from node 3 (2, 0) to 8 (2, 1) at (2, 0.5)");
    Row apart;
    apart.solid(3).corners[0] = apart.add_node({2.0, 0.0});
    apart.expect_broken(Law::fit, "nodes 3 and 11 are at one place, unconnected: (2, 0)");
    Row hole;
    hole.run.after.solids.erase(hole.run.after.solids.begin() + 1);
    hole.expect_broken(Law::fit, "no neighbour at the side from node 2 (1, 0) to 7 (1, 1)");
    Row crowded;
    crowded.run.after.solids.push_back({6, 1, {2, 3, 8}});
    crowded.expect_broken(Law::fit, "3 elements at the side");
}

TEST(CutJudge, Joints) {
    const auto joint = [](Row& row) {
        const int below = row.add_node({2.0, 0.0}), above = row.add_node({2.0, 1.0});
        row.run.after.joints.push_back({6, 41, {3, 8, above, below}});
        row.run.paths[0].type = -2;
        row.run.paths[0].joint_material = 41;
        row.solid(2).corners = {2, below, above, 7};
        return below;
    };
    Row good;
    joint(good);
    EXPECT_EQ(good.text(), "");
    Row closed;
    joint(closed);
    closed.solid(2).corners = {2, 3, 8, 7};
    closed.expect_broken(Law::fit, "no element at the face of joint 6 from node 12 to 11");
    Row wedge;  // the toe has a twin that one element below it has and its neighbour has not
    const int twin = joint(wedge);
    wedge.solid(3).corners[0] = twin;
    wedge.run.after.joints[0].corners[0] = 3;
    wedge.expect_broken(Law::fit, "the ground is open, without a joint");
    Row open;
    open.place(joint(open)).x += 0.01;
    open.expect_broken(Law::line, "joint 6 of no width is open");
}

TEST(CutJudge, Border) {
    Row notch;
    notch.place(8) = {2.0, 0.9};
    notch.expect_broken(Law::border, "the elements have an area of 3.900000, the ground 4.000000");
    notch.expect_broken(Law::border, "the border has a length of 8.000000, was 10.000000");
    Row corner;
    corner.place(10) = {4.0, 0.999999};
    corner.expect_broken(Law::border, "no node at the corner (4, 1)");
    Row frozen;
    frozen.deck.frozen = {9};
    frozen.place(9).x += 1.0E-6;
    frozen.expect_broken(Law::pinned, "the frozen node 9 has left (3, 1)");
}

TEST(CutJudge, Lines) {
    Row off;
    off.place(8) = {2.1, 1.0};
    off.expect_broken(Law::line, "group 1, segment 1: no side along (2, 0) to (2, 1)");
    Row beside;
    beside.place(8) = {2.0001, 1.0};
    beside.run.paths[0].pieces[0].points = {{2.0, -0.5}, {2.0, 1.5}};
    EXPECT_EQ(beside.text(), "");  // the border holds it
    Row within;
    within.run.paths[0].pieces[0].points = {{2.0, 0.0}, {2.0, 0.6}};
    within.expect_broken(Law::line, "no side along (2, 0) to (2, 0.6)");
    within.run.paths[0].pieces[0].places_end = false;  // an end that nothing places may lie in an element
    within.run.after.lines.clear();
    within.run.paths[0].line_type = 0;
    EXPECT_EQ(within.text(), "");
    Row beam;
    beam.run.after.lines[0].to = 9;
    beam.expect_broken(Law::line, "line element 5 runs along no side from node 3 (2, 0) to 9 (3, 1)");
    Row missing;
    missing.run.after.lines.clear();
    missing.expect_broken(Law::line, "its line elements have a length of 0.000000, its sides 1.000000");
}

TEST(CutJudge, Regions) {
    Row row;
    row.draw_region();
    row.solid(3).material = 1;
    row.expect_broken(Law::region, "material 2 has an area of 1.000000, its outlines 2.000000");
    Row crossing;  // even-odd: two triangles of a quarter each
    crossing.draw_region();
    crossing.run.paths[1].polygon = {{1.0, 0.0}, {2.0, 1.0}, {2.0, 0.0}, {1.0, 1.0}};
    crossing.expect_broken(Law::region, "material 2 has an area of 2.000000, its outlines 0.500000");
}

TEST(CutJudge, MidsideNodes) {
    Row row;
    row.run.before.solids[0].midsides = {11, 12, 13, 14};
    row.expect_broken(Law::midside, "the side from node 1 to 2 of element 1 has no midside node (0)");
    row.solid(1).midsides = {row.add_node({0.5, 0.0}), row.add_node({1.2, 0.5}), 0, 0};
    row.expect_broken(Law::midside, "node 12 is off the middle of the side from node 2 to 7 of element 1");
}

// What the cut by the rules is known for.
TEST(CutJudge, FindsTheFaultsOfTheCutByTheRules) {
    const auto slopes = std::find_if(deck_classes().begin(), deck_classes().end(),
                                     [](const DeckClass& of) { return of.name == "cuts with two slopes"; });
    int unsound = 0;
    constexpr int decks = 20;
    for (int i = 0; i < decks; ++i) {
        const CutDeck deck = deck_of_class(*slopes, i);
        const CutRun run = run_cut(deck, CutMethod::by_rules);
        ASSERT_EQ(run.status, 0) << run.message;
        unsound += judge(deck, run).is_unsound() ? 1 : 0;
    }
    EXPECT_GT(unsound, 0);
    EXPECT_LT(unsound, decks);
}

// The same deck by its files is drawn as by the test.
TEST(CutJudge, ADeckThatIsDrawnRuns) {
    for (const DeckClass& of : deck_classes()) {
        const CutRun run = run_cut(deck_of_class(of, 1), CutMethod::by_rules);
        EXPECT_TRUE(run.status == 0 || run.message.find("Card") == std::string::npos)
            << of.name << ": " << run.message;
        EXPECT_FALSE(run.status == 0 && run.after.solids.empty()) << of.name;
        EXPECT_FALSE(run.status == 0 && run.before.solids.empty()) << of.name;
    }
    const std::vector<CutDeck> nasty = nasty_decks();
    for (std::size_t i = 0; i < nasty.size(); i += SAMPLE_SHARE) {
        const CutDeck& deck = nasty[i];
        const CutRun run = run_cut(deck, CutMethod::by_rules);
        EXPECT_TRUE(run.status == 0 || run.message.find("Card") == std::string::npos)
            << deck.name << ": " << run.message;
        EXPECT_EQ(run.status != 0 || run.paths.size() == deck.groups.size(), true) << deck.name;
    }
}

}  // namespace
}  // namespace brelan::test
