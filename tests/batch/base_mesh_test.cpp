// Whole runs of base mesh decks: how blocks are divided, which nodes are fixed, wet or dry, and how a run
// ends that cannot make a mesh.

#include <gtest/gtest.h>

#include <map>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

// A column of two elements of width 1 and a row of two of height 1, from the origin:
//
//   1---4---7
//   2---5---8
//   3---6---9
Cards four_elements(const std::string& card_4_1, const std::string& card_4_2) {
    return {"2", card_4_1, card_4_2, "2 1 0.5", "2 1 0.5", "0"};
}

// Runs a deck that must finish and gives back the mesh that it leaves.
Mesh mesh_of(const Project& project, Kind kind, const Cards& cards) {
    project.deck(text_of(cards));
    expect_finished(project.run());
    return expect_sound_mesh(project, "work/Basic.Tmp", kind).mesh;
}

// The first two codes of each node, as digits: "10" for a node that is fixed in x alone.
std::string fixed_of(const Mesh& mesh) {
    std::string text;
    for (const MeshNode& node : mesh.nodes)
        text += std::to_string(node.codes[0]) + std::to_string(node.codes[1]) + " ";
    return text;
}

// The coordinates of the nodes on the top or on the left edge of a mesh with one block, as text.
std::string across(const Mesh& mesh, double y) {
    std::string text;
    for (const MeshNode& node : mesh.nodes)
        if (node.y == y)
            text += e_field(node.x, 10, 4) + " ";
    return text;
}

// --- fixed sides ---------------------------------------------------------------------------------

TEST(BaseMesh, FixesLeftRightAndBottomWhereNoSwitchIsGiven) {
    const std::string expected = "10 10 11 00 00 01 10 10 11 ";
    for (const char* card : {"1 1", "1 1 1 1 0 1", "1,1,1,1,0"}) {
        const Project project;
        EXPECT_EQ(fixed_of(mesh_of(project, Kind::displacement, four_elements(card, "0 0"))), expected)
            << card;
    }
}

TEST(BaseMesh, FixesEachSideByItsOwnSwitch) {
    const std::map<std::string, std::string> cases = {
        {"1 0 0 0", "10 10 10 00 00 00 00 00 00 "}, {"0 1 0 0", "00 00 00 00 00 00 10 10 10 "},
        {"0 0 1 0", "01 00 00 01 00 00 01 00 00 "}, {"0 0 0 1", "00 00 01 00 00 01 00 00 01 "},
        {"0 0 0 0", "00 00 00 00 00 00 00 00 00 "}, {"1 1 1 1", "11 10 11 01 00 01 11 10 11 "},
        {"2 -1 3 9", "00 00 00 00 00 00 00 00 00 "}};
    for (const auto& [switches, expected] : cases) {
        const Project project;
        EXPECT_EQ(fixed_of(mesh_of(project, Kind::displacement, four_elements("1 1 " + switches, "0 0"))),
                  expected)
            << switches;
    }
}

TEST(BaseMesh, MissesATopSideThatSixDigitsCannotHold) {
    // Yo + H is 2000.0125, in 32 bits 2000 and 102/8192; the raw list has 2000.01, which is
    // more than 0.0001 below the side.
    const Project project;
    const Mesh mesh = mesh_of(project, Kind::displacement,
                              {"2", "1 1 1 1 1 1", "1000 0.0125", "1000 1000 0.5", "2000 2000 0.5", "0"});
    EXPECT_EQ(fixed_of(mesh), "10 11 10 11 ");
    EXPECT_EQ(mesh.nodes.at(0).y, 2000.01);
    // The bottom is what is left when H is taken off again: 102/8192.
    EXPECT_EQ(mesh.nodes.at(1).y, 0.0124512);
}

// --- water ---------------------------------------------------------------------------------------

// IFX and IFY of each node, all sides free.
std::string fluid_codes(const std::string& card_4_2, const std::string& card_4_4) {
    const Project project(Kind::coupled);
    const Mesh mesh =
        mesh_of(project, Kind::coupled, {"2", "1 1 0 0 0 0", card_4_2, "2 2 0.5", card_4_4, "0"});
    std::string text;
    for (const MeshNode& node : mesh.nodes)
        text += std::to_string(node.codes[2]) + std::to_string(node.codes[3]) + " ";
    return text;
}

TEST(BaseMesh, TakesNodesNearTheWaterLevelAsWet) {
    EXPECT_EQ(fluid_codes("0 0 0", "2 2 0.5"), "11 00 11 00 ") << "at the level";
    EXPECT_EQ(fluid_codes("0 0 0.00005", "2 2 0.5"), "11 00 11 00 ") << "0.00005 under it";
    EXPECT_EQ(fluid_codes("0 0 -0.00005", "2 2 0.5"), "11 00 11 00 ") << "0.00005 above it";
    EXPECT_EQ(fluid_codes("0 0 -0.0002", "2 2 0.5"), "11 11 11 11 ") << "0.0002 above it";
}

TEST(BaseMesh, TakesANodeExactlyATenthOfAMillimetreAboveTheWaterLevelAsDry) {
    // 1.0001 + 0.5 - 0.5 gives 1.0001 again, and 1 + 0.0001 is the same 32-bit value.
    EXPECT_EQ(fluid_codes("0 1.0001 1", "0.5 0.5 0.5"), "11 11 11 11 ");
}

TEST(BaseMesh, IsDryEverywhereWhereNoWaterLevelIsGiven) {
    EXPECT_EQ(fluid_codes("0 -1000", "2 2 0.5"), "11 11 11 11 ");
}

TEST(BaseMesh, ClosesFixedSidesOfAWetFieldForTheFluid) {
    const std::map<std::string, std::string> cases = {{"1 0 0 0", "10 10 10 00 00 00 00 00 00 "},
                                                      {"0 1 0 0", "00 00 00 00 00 00 10 10 10 "},
                                                      {"0 0 1 0", "01 00 00 01 00 00 01 00 00 "},
                                                      {"0 0 0 1", "00 00 01 00 00 01 00 00 01 "}};
    for (const auto& [switches, expected] : cases) {
        const Project project(Kind::coupled);
        const Mesh mesh = mesh_of(project, Kind::coupled, four_elements("1 1 " + switches, "0 0 100"));
        std::string fluid;
        for (const MeshNode& node : mesh.nodes)
            fluid += std::to_string(node.codes[2]) + std::to_string(node.codes[3]) + " ";
        EXPECT_EQ(fluid, expected) << switches;
        EXPECT_EQ(fixed_of(mesh), expected) << switches;
    }
}

// --- divisions -----------------------------------------------------------------------------------

TEST(BaseMesh, GradesAColumnFromItsFineEnd) {
    // The quadratic map of 0, mid point, 10: 0.3 gives elements of 1, 2, 3 and 4.
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"0.3", "0.0000E+00 0.1000E+01 0.3000E+01 0.6000E+01 0.1000E+02 "},
        {"-0.3", "0.0000E+00 0.4000E+01 0.7000E+01 0.9000E+01 0.1000E+02 "},
        {"0.1", "0.0000E+00 0.1000E+01 0.3000E+01 0.6000E+01 0.1000E+02 "},
        {"-0.1", "0.0000E+00 0.4000E+01 0.7000E+01 0.9000E+01 0.1000E+02 "},
        {"0", "0.0000E+00 0.1000E+01 0.3000E+01 0.6000E+01 0.1000E+02 "}};
    for (const auto& [AX, expected] : cases) {
        const Project project;
        const Mesh mesh =
            mesh_of(project, Kind::displacement, {"2", "1 1", "0 0", "10 1 " + AX, "2 2 0.5", "0"});
        EXPECT_EQ(across(mesh, 2.0), expected) << AX;
        EXPECT_EQ(across(mesh, 0.0), expected) << AX;
    }
}

TEST(BaseMesh, DividesEvenlyWithTheMidPointInTheMiddle) {
    for (const char* AX : {"0.5", "-0.5", "0.9", "-7"}) {
        const Project project;
        const Mesh mesh = mesh_of(project, Kind::displacement,
                                  {"2", "1 1", "0 0", std::string("10 1 ") + AX, "2 2 0.5", "0"});
        EXPECT_EQ(across(mesh, 2.0),
                  "0.0000E+00 0.1000E+01 0.2000E+01 0.3000E+01 0.4000E+01 0.5000E+01 0.6000E+01 0.7000E+01 "
                  "0.8000E+01 0.9000E+01 0.1000E+02 ")
            << AX;
    }
}

TEST(BaseMesh, PutsTheFineEndOfARowAtItsTop) {
    for (const auto& [AY, expected] : std::vector<std::pair<std::string, std::vector<double>>>{
             {"0.3", {10, 9, 7, 4, 0}}, {"-0.3", {10, 6, 3, 1, 0}}}) {
        const Project project;
        const Mesh mesh =
            mesh_of(project, Kind::displacement, {"2", "1 1", "0 0", "2 2 0.5", "10 1 " + AY, "0"});
        ASSERT_EQ(mesh.nodes.size(), 10U);
        for (std::size_t k = 0; k < 5; ++k)
            EXPECT_EQ(mesh.nodes[k].y, expected[k]) << AY << ", node " << k + 1;
    }
}

TEST(BaseMesh, CountsRowsFromTheTop) {
    const Project project;
    const Mesh mesh =
        mesh_of(project, Kind::displacement, {"2", "1 2", "0 0", "2 2 0.5", "5 5 0.5", "5 2.5 0.5", "0"});
    const std::vector<std::string> blocks = lines_of(project.read_work("Bmesh.Tmp"));
    ASSERT_GT(blocks.size(), 9U);
    EXPECT_EQ(blocks[4], "           1  0.000000000E+00  0.100000000E+02");
    EXPECT_EQ(blocks[5], "           2  0.000000000E+00  0.750000000E+01");
    EXPECT_EQ(blocks[6], "           3  0.000000000E+00  0.500000000E+01");
    EXPECT_EQ(blocks[7], "           4  0.000000000E+00  0.250000000E+01");
    EXPECT_EQ(blocks[8], "           5  0.000000000E+00  0.000000000E+00");
    ASSERT_EQ(mesh.nodes.size(), 8U);
    EXPECT_EQ(mesh.nodes[1].y, 5.0);
    EXPECT_EQ(mesh.nodes[2].y, 2.5);
}

TEST(BaseMesh, MovesAMidPointAtZeroToTheMiddleOfItsSideButNotTheCentre) {
    // From -4 the mid points of 0.4 times 10 lie at 0, which counts as absent: top and bottom get 1.
    const Project project;
    const Mesh mesh =
        mesh_of(project, Kind::displacement, {"2", "1 1", "-4 1", "10 3.5 0.4", "10 5 0.5", "0"});
    ASSERT_EQ(mesh.nodes.size(), 9U);
    const std::vector<std::pair<double, double>> expected = {{-4, 11}, {-4, 6}, {-4, 1}, {1, 11}, {0, 6},
                                                             {1, 1},   {6, 11}, {6, 6},  {6, 1}};
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_EQ(mesh.nodes[k].x, expected[k].first) << "node " << k + 1;
        EXPECT_EQ(mesh.nodes[k].y, expected[k].second) << "node " << k + 1;
    }
}

TEST(BaseMesh, TakesAHundredColumnsAndAHundredRows) {
    Cards cards{"2", "100 1", "0 0"};
    cards.insert(cards.end(), 100, "1 1 0.5");
    cards.insert(cards.end(), {"1 1 0.5", "0"});
    const Project project;
    const Mesh wide = mesh_of(project, Kind::displacement, cards);
    EXPECT_EQ(wide.nodes.size(), 202U);
    EXPECT_EQ(wide.continuum.size(), 100U);
    EXPECT_EQ(wide.nodes.back().x, 100.0);

    cards = {"2", "1 100", "0 0"};
    cards.insert(cards.end(), 101, "1 1 0.5");
    cards.push_back("0");
    const Mesh high = mesh_of(project, Kind::displacement, cards);
    EXPECT_EQ(high.nodes.size(), 202U);
    EXPECT_EQ(high.nodes.front().y, 100.0);
    EXPECT_EQ(high.nodes.back().y, 0.0);
}

TEST(BaseMesh, ReadsNothingBehindTheLastCardOfABaseMeshAlone) {
    const Project project;
    const std::string deck = text_of(four_elements("1 1", "0 0"));
    project.deck(deck.substr(0, deck.size() - 1));  // the last line without an end
    expect_finished(project.run());
    const std::string alone = project.read_work("Basic.Tmp");
    project.deck(deck + "this is not read\n1 2 3\n");
    expect_finished(project.run());
    EXPECT_EQ(project.read_work("Basic.Tmp"), alone);
    EXPECT_EQ(check_mesh(alone, Kind::displacement).mesh.nodes.size(), 9U);
}

TEST(BaseMesh, TracesItsPasses) {
    const Project project;
    project.write_data("DEBUG/Brelan_P1.dat", "1 8.0\n");
    mesh_of(project, Kind::displacement, four_elements("1 1", "0 0"));
    std::vector<std::string> trace = lines_of(project.read_work("Brelan_P1.deb"));
    ASSERT_EQ(trace.size(), 10U);
    trace.erase(trace.begin(), trace.begin() + 4);
    EXPECT_EQ(trace, (std::vector<std::string>{"  Pass 3 ...", "  Pass 4A ", "  Pass 4B ", "  Pass 4C ",
                                               "  Pass 6 ", "  Pass 8 "}));
}

}  // namespace
}  // namespace brelan::test
