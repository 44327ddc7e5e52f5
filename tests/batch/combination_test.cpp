// Combination of two meshes: which nodes match, which numbers stay, what the lists of pairs do.

#include <gtest/gtest.h>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

// A mesh of nodes alone; codes tell where a node comes from.
Mesh nodes_of(int code, const std::vector<std::array<double, 3>>& nodes) {
    Mesh mesh;
    for (const auto& [number, x, y] : nodes)
        mesh.nodes.push_back({static_cast<int>(number), {code, code, code}, x, y, 0.0, 0.0});
    return mesh;
}

Mesh& with_element(Mesh& mesh, int number, std::array<int, 4> corners, int material = 1) {
    mesh.continuum.push_back({number, corners, {}, material, {}, {1.0, 1.8}});
    return mesh;
}

// A unit square with its lower left corner at x, nodes 1 to 4 from there by rows, one element.
Mesh square_of_code(double x, int code, int element) {
    Mesh mesh = nodes_of(code, {{1, x, 0}, {2, x + 1, 0}, {3, x, 1}, {4, x + 1, 1}});
    return with_element(mesh, element, {1, 2, 4, 3}, code);
}

// Joins the second and the first region; the deck's cards behind the names are given.
void join(const Project& project, const Mesh& second, const Mesh& first, const Cards& cards,
          const std::string& IMOD = "0") {
    project.write("second.Mes", second.text());
    project.write("first.Mes", first.text());
    Cards deck{IMOD, "second.Mes", "first.Mes", "out.Mes"};
    deck.insert(deck.end(), cards.begin(), cards.end());
    project.deck(text_of(deck));
    expect_finished(project.run());
}

Mesh joined(const Mesh& second, const Mesh& first, const Cards& cards) {
    const Project project;
    join(project, second, first, cards);
    return expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh;
}

// "number:code" of each node, "number(corners)" of each continuum element.
std::string nodes_in(const Mesh& mesh) {
    std::string text;
    for (const MeshNode& node : mesh.nodes)
        text += std::to_string(node.number) + ":" + std::to_string(node.codes[0]) + " ";
    return text;
}
std::string elements_in(const Mesh& mesh) {
    std::string text;
    for (const MeshElement& element : mesh.continuum) {
        text += std::to_string(element.number) + "(";
        for (const int corner : element.corners)
            text += std::to_string(corner) + " ";
        text.back() = ')';
        text += " ";
    }
    return text;
}

// --- matching ------------------------------------------------------------------------------------

TEST(Combination, EachNodeOfACommonSideFindsItsPartner) {
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(1, 2, 1), {"0"});
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 ");
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 5 6 4) ");
    EXPECT_EQ(mesh.continuum[1].material, 2);
}

TEST(Combination, CardTwoNamesTheFirstRegion) {
    const Project project;
    join(project, square_of_code(0, 1, 1), square_of_code(1, 2, 1), {"0"});
    EXPECT_EQ(lines_of(project.read_work("FILEA.TMP")).at(5).substr(0, 12), "      1    2");
    EXPECT_EQ(lines_of(project.read_work("FILEB.TMP")).at(5).substr(0, 12), "      1    1");
}

TEST(Combination, RegionsThatDoNotTouchStayApart) {
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(2, 2, 1), {"0"});
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 7:2 8:2 ");
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(5 6 8 7) ");
}

TEST(Combination, HalfTheSmallestSpacingIsTheReach) {
    EXPECT_EQ(joined(square_of_code(0, 1, 1), square_of_code(1.5, 2, 1), {"0"}).nodes.size(), 6U);
    EXPECT_EQ(joined(square_of_code(0, 1, 1), square_of_code(1.50001, 2, 1), {"0"}).nodes.size(), 8U);
    // A node of its own in the first region makes the reach smaller: 0.25 / 2.
    Mesh finer = square_of_code(1.125, 2, 1);
    finer.nodes.push_back({9, {2, 2, 2}, 3, 0.25, 0, 0});
    finer.nodes.push_back({10, {2, 2, 2}, 3, 0.5, 0, 0});
    EXPECT_EQ(joined(square_of_code(0, 1, 1), finer, {"0"}).nodes.size(), 8U);
    finer.nodes[4].y = 0.375;
    EXPECT_EQ(joined(square_of_code(0, 1, 1), finer, {"0"}).nodes.size(), 10U);
    // And so does one in the second.
    Mesh second = square_of_code(0, 1, 1);
    second.nodes.push_back({9, {1, 1, 1}, -1, 0.25, 0, 0});
    second.nodes.push_back({10, {1, 1, 1}, -1, 0.375, 0, 0});
    EXPECT_EQ(joined(second, square_of_code(1.125, 2, 1), {"0"}).nodes.size(), 10U);
}

TEST(Combination, CoincidentNodesInARegionLeaveOnlyExactMatches) {
    Mesh second = square_of_code(0, 1, 1);
    second.nodes.push_back({7, {1, 1, 1}, 1, 0, 0, 0});  // on node 2
    const Mesh exact = joined(second, square_of_code(1, 2, 1), {"0"});
    // Of the two in one place the higher number wins.
    EXPECT_EQ(nodes_in(exact), "1:1 2:1 3:1 4:1 7:1 8:2 9:2 ");
    EXPECT_EQ(elements_in(exact), "1(1 2 4 3) 2(7 8 9 4) ");
    EXPECT_EQ(joined(second, square_of_code(1.00001, 2, 1), {"0"}).nodes.size(), 9U);
}

TEST(Combination, ANodeBetweenTwoGoesToTheHigherNumber) {
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(0.5, 2, 1), {"0"});
    // 1 and 3 lie half way between 1 and 2, 3 and 4; 2 and 4 are half a side beyond 2 and 4.
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 ");
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 2 4 4) ");
}

TEST(Combination, NodeNumbersOfTheSecondRegionMayHaveGaps) {
    Mesh second = nodes_of(1, {{10, 0, 0}, {20, 1, 0}, {30, 0, 1}, {40, 1, 1}});
    with_element(second, 1, {10, 20, 40, 30});
    Mesh first = nodes_of(2, {{99, 1, 0}, {7, 2, 0}, {98, 1, 1}, {50, 2, 1}});
    with_element(first, 1, {99, 7, 50, 98});
    const Mesh mesh = joined(second, first, {"0"});
    // In ascending number 7 and 50 go on behind 40.
    EXPECT_EQ(nodes_in(mesh), "10:1 20:1 30:1 40:1 41:2 42:2 ");
    EXPECT_EQ(elements_in(mesh), "1(10 20 40 30) 2(20 41 42 40) ");
    EXPECT_EQ(mesh.nodes[4].y, 0.0);
    EXPECT_EQ(mesh.nodes[5].y, 1.0);
}

// --- lists of pairs ------------------------------------------------------------------------------

TEST(Combination, ListedPairsBecomeOneWhereverTheyLie) {
    // 2 and 4 of the second region with 1 and 3 of the first, three units away.
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(4, 2, 1), {"1", "2", "2 4", "1 3"});
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 ");
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 5 6 4) ");
    EXPECT_EQ(mesh.nodes[1].x, 1.0);
}

TEST(Combination, ListedPairsTakeTheFirstRegionsPlaceWithModeMinusOne) {
    const Project project;
    join(project, square_of_code(0, 1, 1), square_of_code(4, 2, 1), {"1", "2", "2 4", "1 3"}, "-1");
    const Mesh mesh = check_mesh(project.read("out.Mes"), Kind::displacement).mesh;
    EXPECT_EQ(nodes_in(mesh), "1:1 2:2 3:1 4:2 5:2 6:2 ");
    EXPECT_EQ(mesh.nodes[1].x, 4.0);
    EXPECT_EQ(mesh.nodes[3].y, 1.0);
}

TEST(Combination, AnEmptyListMergesNothing) {
    for (const char* count : {"0", "-3"}) {
        const Project project;
        join(project, square_of_code(0, 1, 1), square_of_code(1, 2, 1), {"1", count});
        const Mesh mesh = expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh;
        EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 7:2 8:2 ") << count;
        EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(5 6 8 7) ") << count;
        const std::vector<std::string> deck = lines_of(project.read_work("BRELAN.TMP"));
        ASSERT_EQ(deck.size(), 8U) << count;
        EXPECT_EQ(deck[6], "");
        EXPECT_EQ(deck[7], "");
    }
}

TEST(Combination, APairWithoutANodeInTheFirstRegionHasNoEffect) {
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(4, 2, 1), {"1", "3", "2 4 1", "1 3 77"});
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 ");
}

TEST(Combination, TheLastPairOfANodeCounts) {
    const Mesh mesh = joined(square_of_code(0, 1, 1), square_of_code(4, 2, 1), {"1", "3", "1 2 4", "1 1 3"});
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 5 6 4) ");
}

TEST(Combination, ListsRunOverSeveralLines) {
    const Mesh mesh =
        joined(square_of_code(0, 1, 1), square_of_code(4, 2, 1), {"1", "2", "2", "4", "1,", "3"});
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 5 6 4) ");
}

// --- element numbers -----------------------------------------------------------------------------

TEST(Combination, ElementNumbersThatRiseStay) {
    EXPECT_EQ(elements_in(joined(square_of_code(0, 1, 7), square_of_code(1, 2, 20), {"0"})),
              "7(1 2 4 3) 20(2 5 6 4) ");
    EXPECT_EQ(elements_in(joined(square_of_code(0, 1, 20), square_of_code(1, 2, 7), {"0"})),
              "1(1 2 4 3) 2(2 5 6 4) ");
    EXPECT_EQ(elements_in(joined(square_of_code(0, 1, 7), square_of_code(1, 2, 99990), {"0"})),
              "7(1 2 4 3) 99990(2 5 6 4) ");
}

TEST(Combination, GapsInTheNumbersOfATypeAreKept) {
    Mesh second = square_of_code(0, 1, 3);
    with_element(second, 9, {1, 2, 4, 0});
    Mesh first = square_of_code(1, 2, 5);
    with_element(first, 7, {1, 2, 4, 0});
    EXPECT_EQ(elements_in(joined(second, first, {"0"})), "1(1 2 4 3) 7(1 2 4 0) 8(2 5 6 4) 10(2 5 6 0) ");
}

TEST(Combination, BeamsOfTheSecondRegionAloneGoOnBehindTheContinuum) {
    // The missing beams of the first region and the missing trusses stand behind what is there.
    Mesh second = square_of_code(0, 1, 1);
    second.beams = {{2, 1, 2, 5}, {3, 3, 4, 6}};
    const Mesh mesh = joined(second, square_of_code(1, 2, 1), {"0"});
    ASSERT_EQ(mesh.beams.size(), 2U);
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(2 5 6 4) ");
    EXPECT_EQ(mesh.beams[0].number, 3);
    EXPECT_EQ(mesh.beams[1].number, 4);
}

TEST(Combination, OtherCollisionsThanOfTheLowestNumbersGoUnseen) {
    // Two elements of the second region and a truss with the number of the second of them: the later region's
    // words stand at the number, the first region's names of nodes are put into them, and both
    // sections show them.
    Mesh second = nodes_of(1, {{1, 0, 0}, {2, 1, 0}, {3, 2, 0}, {4, 0, 1}, {5, 1, 1}, {6, 2, 1}});
    with_element(second, 1, {1, 2, 5, 4});
    with_element(second, 2, {2, 3, 6, 5}, 4);
    Mesh first = nodes_of(2, {{1, 5, 5}, {2, 6, 5}});
    first.trusses = {{2, 1, 2, 9}};
    const Project project;
    join(project, second, first, {"0"});

    Mesh expected = second;
    expected.name = "..\\out.Mes";
    expected.closing_lines = false;
    expected.nodes.push_back({7, {2, 2, 2}, 5, 5, 0, 0});
    expected.nodes.push_back({8, {2, 2, 2}, 6, 5, 0, 0});
    expected.continuum[1].corners = {8, 3, 6, 5};
    expected.trusses = {{2, 8, 3, 4}};
    // The counts give the number to the truss.
    expect_file(project, "out.Mes",
                lines_of(with_line(expected.text(), 3, "     8       1       0       1")));
}

// --- files ---------------------------------------------------------------------------------------

TEST(Combination, TheResultMayTakeTheNameOfEitherMesh) {
    for (const char* name : {"second.Mes", "first.Mes"}) {
        const Project project;
        project.write("second.Mes", square_of_code(0, 1, 1).text());
        project.write("first.Mes", square_of_code(1, 2, 1).text());
        project.deck(text_of({"0", "second.Mes", "first.Mes", name, "0"}));
        expect_finished(project.run());
        const Mesh mesh = expect_sound_mesh(project, name, Kind::displacement).mesh;
        EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 5:2 6:2 ") << name;
    }
}

TEST(Combination, AMeshMayBeJoinedToItself) {
    const Project project;
    project.write("mesh.Mes", square_of_code(0, 1, 1).text());
    project.deck(text_of({"0", "mesh.Mes", "mesh.Mes", "out.Mes", "0"}));
    expect_finished(project.run());
    const Mesh mesh = expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh;
    EXPECT_EQ(nodes_in(mesh), "1:1 2:1 3:1 4:1 ");
    EXPECT_EQ(elements_in(mesh), "1(1 2 4 3) 2(1 2 4 3) ");
}

TEST(Combination, TracesItsPasses) {
    const std::vector<std::string> begin = {"  Pass 3 ...", "  Pass 4D ", "  Pass 5G ", "  Pass 6 ",
                                            "  Pass 8 ",    "  Pass 9 ",  "  Pass 10 ", "  Pass 11 ",
                                            "  Pass 28 ",   "  Pass 29 "};
    const std::vector<std::string> end = {"  Pass 32 ", "  Pass 33 ", "  Pass 34 ",
                                          "  Pass 35 ", "  Pass 36 ", "  Pass 37 ",
                                          "  Pass 38 ", "  Pass 39 ", "  Pass 43 "};
    for (const bool listed : {false, true}) {
        const Project project;
        project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
        join(project, square_of_code(0, 1, 1), square_of_code(1, 2, 1),
             listed ? Cards{"1", "1", "2", "1"} : Cards{"0"});
        std::vector<std::string> expected = begin;
        if (!listed)
            expected.insert(expected.end(), {"  Pass 30 ", "  Pass 31 "});
        expected.insert(expected.end(), end.begin(), end.end());
        std::vector<std::string> trace = lines_of(project.read_work("Brelan_P1.deb"));
        ASSERT_GT(trace.size(), 4U);
        trace.erase(trace.begin(), trace.begin() + 4);
        EXPECT_EQ(first_difference(expected, trace), "") << (listed ? "listed" : "automatic");
    }
}

}  // namespace
}  // namespace brelan::test
