// Meshes that passed as sound: each is made by the deck that made it, and told by what is wrong with it.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "lib/analysis/site_deck.h"
#include "lib/analysis/soundness_sample.h"

namespace brelan::test {
namespace {

SiteGroup wall(double x, double foot, double top, const std::string& width) {
    return {-2, "7 0.0 " + width + " 0 0 0 0", {{x, foot}, {x, top}}};
}

// Second order: a strip of triangles with midside nodes, as a mesher for finite elements leaves them.
std::string triangles_of_second_order(int columns, int rows) {
    std::string nodes, elements;
    const int across = 2 * columns + 1;
    const auto node = [&](int i, int j) { return j * across + i + 1; };
    char line[160];
    for (int j = 0; j <= 2 * rows; ++j)
        for (int i = 0; i < across; ++i) {
            std::snprintf(line, sizeof line, " %6d 0 0 1 1 1 %.6E %.6E\n", node(i, j), i * 0.5, j * 0.5);
            nodes += line;
        }
    int count = 0;
    for (int j = 0; j < 2 * rows; j += 2)
        for (int i = 0; i < 2 * columns; i += 2) {
            std::snprintf(line, sizeof line, " %d %d %d %d 0 %d %d %d 0 1 1.0 2.3\n", ++count, node(i, j),
                          node(i + 2, j), node(i, j + 2), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1));
            elements += line;
            std::snprintf(line, sizeof line, " %d %d %d %d 0 %d %d %d 0 1 1.0 2.3\n", ++count, node(i + 2, j),
                          node(i + 2, j + 2), node(i, j + 2), node(i + 2, j + 1), node(i + 1, j + 2),
                          node(i + 1, j + 1));
            elements += line;
        }
    return "second order\n  NUMNP   NCONT   NBEAM   NTRUS\n " + std::to_string(across * (2 * rows + 1)) +
           " " + std::to_string(count) +
           " 0 0\n  NODAL COORDINATES\n  NODE  IDX  IDY  IDT  IEX  IEY  XC  YC\n" + nodes +
           "  CONTINUUM ELEMENT INDEX\n  NEL I1 I2 I3 I4 M5 M6 M7 M8 MATC THIC DEN\n" + elements;
}

TEST(SoundnessOfDecks, LineOverAMeshOfSecondOrderLeavesMidsideNumbersOfNoNode) {
    const std::string before = triangles_of_second_order(10, 5);
    expect_only(soundness_of(mesh_of(before)), {});
    const Ground ground{0.0, 0.0, 10.0, 5.0};
    const MeshLists mesh = mesh_of(mesh_text_of(
        edit_deck("Second.Mes", ground, {{2, "2 1", {{3.3, 0.0}, {3.3, 5.0}}}}), {{"Second.Mes", before}}));
    // The rule by itself: numbers of midside nodes against the numbers of nodes.
    std::size_t missing = 0;
    for (const Element& e : mesh.elements)
        for (const NodeNumber m :
             {e.words.midside_5, e.words.midside_6, e.words.midside_7, e.words.midside_8})
            missing += m.names_one() && mesh.node_place(m.value) == MeshLists::NONE ? 1U : 0U;
    EXPECT_GT(missing, 100U);
    const Soundness s = soundness_of(mesh);
    EXPECT_EQ(s.of(Check::missing_midside).places.size(), missing);
    EXPECT_FALSE(s.sound());
}

// The joints of the wall are elements of the next deck, which cuts them along with the ground: the corner of
// its stage touches the wall 3.5 m above its foot. The solids fit together; the joints do not.
TEST(SoundnessOfDecks, StageOfALaterDeckThatTouchesAWallCutsItsJoints) {
    const Ground ground{0.0, -20.0, 40.0, 20.0};
    const std::string walled = mesh_text_of(base_deck(ground, {wall(20.0, 0.0, -11.5, "0.0")}));
    expect_only(soundness_of(mesh_of(walled)), {});
    const MeshLists mesh = mesh_of(
        mesh_text_of(edit_deck("Wall.Mes", ground, {{4, "5 1.9 0 0 2", {{12, 0}, {20, -8}, {20, 0}}}}),
                     {{"Wall.Mes", walled}}));
    const Soundness s = soundness_of(mesh);
    const std::size_t joints = mesh.count(ElementClass::joint);
    EXPECT_GT(joints, 12U);
    EXPECT_GT(s.of(Check::triangular_joint).places.size(), 0U);
    EXPECT_FALSE(s.sound());
    for (const Finding& finding : s.findings)
        EXPECT_TRUE(!finding.unsound || finding.check == Check::triangular_joint || finding.places.empty())
            << finding.id;
}

// The nodes of both sides of the joint fall together with one of the mesh that it is joined to.
TEST(SoundnessOfDecks, CombinationThroughAJointCollapsesIt) {
    const Ground left{0.0, 0.0, 20.0, 12.0, 0.5}, right{20.0, 0.0, 10.0, 12.0, 0.5};
    const std::string walled = mesh_text_of(base_deck(left, {wall(20.0, 0.0, 12.0, "0.0")}));
    const std::string plain = mesh_text_of(base_deck(right, {}));
    const MeshLists mesh = mesh_of(
        mesh_text_of("0 0\nPlain.Mes\nWall.Mes\nOut.Mes\n0\n", {{"Wall.Mes", walled}, {"Plain.Mes", plain}}));
    const Soundness s = soundness_of(mesh);
    EXPECT_EQ(s.of(Check::collapsed_joint).places.size(), 24U);  // 12 m in halves
    EXPECT_FALSE(s.sound());
}

// The second line takes the nodes of the wall and their twins, which lie within the tolerance of a line, for
// its own: 25 and 25 nodes are 49 pieces.
TEST(SoundnessOfDecks, SecondThinJointOnALineHasMoreJointsThanPieces) {
    const Ground ground{0.0, 0.0, 40.0, 20.0, 0.5};
    const SiteGroup thin = wall(20.0, 8.0, 20.0, "-0.0049");
    const MeshLists mesh = mesh_of(mesh_text_of(base_deck(ground, {thin, thin})));
    EXPECT_EQ(mesh.count(ElementClass::joint), 24U + 49U);
    const Soundness s = soundness_of(mesh);
    EXPECT_GE(s.of(Check::stacked_joint).places.size() + s.of(Check::crossed_joint).places.size(), 48U);
    EXPECT_FALSE(s.sound());
}

TEST(SoundnessOfDecks, SecondWideJointOnALineLiesOverTheFirstAndTheToeIsOpen) {
    const Ground ground{0.0, 0.0, 40.0, 20.0, 0.5};
    const SiteGroup wide = wall(20.0, 8.0, 20.0, "-0.05");
    const Soundness s = soundness_of(mesh_of(mesh_text_of(base_deck(ground, {wide, wide}))));
    EXPECT_EQ(s.of(Check::stacked_joint).places.size(), 24U);
    // 0.05 wide at the toe, 0.5 deep.
    ASSERT_EQ(s.of(Check::open_wedge).places.size(), 1U);
    const Place& wedge = s.of(Check::open_wedge).places[0];
    EXPECT_NEAR(wedge.amount, 0.0125, 1e-4);
    EXPECT_NEAR(wedge.at.x, 20.0, 0.051);
    EXPECT_NEAR(wedge.at.y, 8.0, 1e-4);
}

// The deck fixes all 21 nodes of the bottom; sums of 32 bits leave 19 of them beside the bound.
TEST(SoundnessOfDecks, BottomOfADeepBaseMeshStaysFree) {
    const Soundness s = soundness_of(mesh_of(mesh_text_of(base_deck({0.0, 0.0, 20.0, 150.0, 1.0}, {}))));
    expect_only(s, {{Check::free_side_node, 19}});
    expect_only(soundness_of(mesh_of(mesh_text_of(base_deck({0.0, 0.0, 20.0, 20.0, 1.0}, {})))), {});
}

TEST(SoundnessOfDecks, StagesThatDoubleTheSameGroundAreTold) {
    const Ground ground{0.0, 0.0, 12.0, 8.0, 1.0};
    const auto stage = [](double left, double right, const std::string& material) {
        return SiteGroup{4, material, {{left, 6}, {right, 6}, {right, 8}, {left, 8}}};
    };
    // Apart: each element twice. One over the other by 2 m by 2 m: four elements of which two have
    // material 5.
    expect_only(soundness_of(mesh_of(mesh_text_of(
                    base_deck(ground, {stage(2, 4, "5 1.9 0 0 2"), stage(4, 6, "5 1.9 0 0 3")})))),
                {{Check::double_element, 8}});
    const Soundness s = soundness_of(
        mesh_of(mesh_text_of(base_deck(ground, {stage(2, 6, "5 1.9 0 0 2"), stage(4, 8, "5 1.9 0 0 3")}))));
    EXPECT_EQ(s.of(Check::stacked_double).places.size(), 8U);  // third and fourth of four places
    EXPECT_GT(s.of(Check::duplicate_element).places.size(), 0U);
    EXPECT_FALSE(s.sound());
}

// A quarter turn about the origin, which no digit of a coordinate is lost by.
MeshLists turned(MeshLists mesh) {
    for (Node& node : mesh.nodes)
        node.x = -std::exchange(node.y, node.x);
    return mesh;
}

// Searches by place find the same whichever way the mesh lies; the sides of the mesh are others.
TEST(SoundnessOfDecks, FindingsTurnWithTheMesh) {
    const Ground ground{0.0, 0.0, 40.0, 20.0, 1.0};
    const std::string walled = mesh_text_of(base_deck(ground, {wall(20.0, 20.0, 8.5, "0.0")}));
    const std::vector<std::string> meshes{
        mesh_text_of(base_deck(ground, {wall(20.0, 8.0, 20.0, "-0.0049"), wall(20.0, 8.0, 20.0, "-0.0049")})),
        mesh_text_of(edit_deck("Wall.Mes", ground, {{4, "5 1.9 0 0 2", {{12, 20}, {20, 12}, {20, 20}}}}),
                     {{"Wall.Mes", walled}}),
        mesh_text_of(base_deck(ground, {{-2, "7 0.0 0.1 2 1 3 2", {{5.3, 4.1}, {31.7, 15.2}}},
                                        {2, "3 4", {{2, 3}, {33, 11}}, 1, 0, {"1 3 0"}},
                                        {2, "2 5", {{4, 18}, {30, 2}}}})),
        mesh_text_of(edit_deck("Second.Mes", {0.0, 0.0, 10.0, 5.0}, {{2, "2 1", {{3.3, 0.0}, {3.3, 5.0}}}}),
                     {{"Second.Mes", triangles_of_second_order(10, 5)}})};
    for (const std::string& text : meshes) {
        MeshLists mesh = mesh_of(text);
        const Soundness upright = soundness_of(mesh);
        for (int quarter = 1; quarter < 4; ++quarter) {
            mesh = turned(mesh);
            const Soundness lying = soundness_of(mesh);
            for (std::size_t k = 0; k < CHECKS; ++k)
                EXPECT_TRUE(upright.findings[k].check == Check::free_side_node ||
                            lying.findings[k].places.size() == upright.findings[k].places.size())
                    << upright.findings[k].id << ", quarter " << quarter;
        }
    }
}

}  // namespace
}  // namespace brelan::test
