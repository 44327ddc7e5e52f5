// Base mesh decks that go on as edit decks: the edit reads the base mesh that the same run has just written.

#include <gtest/gtest.h>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

// Two elements side by side:
//
//   1---3---5     y = 1
//   | 1 | 2 |
//   2---4---6     y = 0, x = 0, 1, 2
Cards deck_with(const Cards& edit_cards) {
    Cards cards{"2", "1 1", "0 0", "2 1 0.5", "1 1 0.5", "1", "Bmesh.dat", "out.Mes"};
    cards.insert(cards.end(), edit_cards.begin(), edit_cards.end());
    return cards;
}

// Node codes of the base mesh by kind: fixed left, right and below, dry everywhere.
std::vector<int> codes_of(Kind kind, int cx, int cy) {
    switch (kind) {
        case Kind::coupled:
            return {cx, cy, 1, 1, 1};
        case Kind::temperature:
            return {-100 * cx, -100 * cy};
        case Kind::head:
            return {cx, cy};
        default:
            return {cx, cy, 1};
    }
}

MeshElement element_of(Kind kind, int number, std::array<int, 4> corners, int material) {
    MeshElement element{number, corners, {}, material, {}, {}};
    if (kind == Kind::coupled) {
        element.codes = {0, 1, 2, 2};
        element.reals = {0.0};
    } else if (kind == Kind::displacement) {
        element.reals = {1.0, 2.3};
    } else {
        element.codes = {0};
    }
    return element;
}

Mesh base_mesh(Kind kind) {
    Mesh mesh;
    mesh.kind = kind;
    mesh.name = "..\\out.Mes";
    const double factor = 1.0;
    mesh.nodes = {{1, codes_of(kind, 1, 0), 0, 1, 0, factor}, {2, codes_of(kind, 1, 1), 0, 0, 0, factor},
                  {3, codes_of(kind, 0, 0), 1, 1, 0, factor}, {4, codes_of(kind, 0, 1), 1, 0, 0, factor},
                  {5, codes_of(kind, 1, 0), 2, 1, 0, factor}, {6, codes_of(kind, 1, 1), 2, 0, 0, factor}};
    mesh.continuum = {element_of(kind, 1, {3, 1, 2, 4}, 1), element_of(kind, 2, {5, 3, 4, 6}, 1)};
    return mesh;
}

void expect_edited(Kind kind, const Cards& edit_cards, const Mesh& expected) {
    const Project project(kind);
    project.deck(text_of(deck_with(edit_cards)));
    expect_finished(project.run());
    const std::vector<std::string> lines = lines_of(expected.text());
    expect_file(project, "out.Mes", lines);
    std::vector<std::string> copy;
    for (const std::string& line : lines)
        copy.push_back(padded(line));
    expect_work_file(project, "MeshFile.Mes", copy);
    EXPECT_FALSE(project.exists_work("Basic.Tmp")) << "the name belongs to a base mesh alone";
}

class BaseMeshEdit : public ::testing::TestWithParam<Kind> {};

TEST_P(BaseMeshEdit, MovesAndRenumbers) {
    Mesh expected = base_mesh(GetParam());
    for (MeshNode& node : expected.nodes) {
        node.number += 10;
        node.x = node.x * 2 + 5;
        node.y += 7;
    }
    for (MeshElement& element : expected.continuum) {
        element.number += 100;
        for (int& corner : element.corners)
            corner += 10;
    }
    expect_edited(GetParam(), {"101 11", "0", "0 0 5 7", "2 1"}, expected);
}

TEST_P(BaseMeshEdit, SetsCodesInAWindow) {
    Mesh expected = base_mesh(GetParam());
    const std::vector<int> codes = GetParam() == Kind::coupled        ? std::vector<int>{9, 8, 7, 6, 5}
                                   : GetParam() == Kind::displacement ? std::vector<int>{9, 8, 7}
                                                                      : std::vector<int>{9, 8};
    std::string card;
    for (const int code : codes)
        card += std::to_string(code) + " ";
    expected.nodes[4].codes = expected.nodes[5].codes = codes;
    expect_edited(GetParam(), {"1 1", "1", "0", "1.5 -1 3 2", "0", card}, expected);
}

TEST_P(BaseMeshEdit, DeletesInAWindowAndClosesUp) {
    // The left element goes, and nodes 1 and 2 with it.
    Mesh expected = base_mesh(GetParam());
    expected.nodes.erase(expected.nodes.begin(), expected.nodes.begin() + 2);
    for (MeshNode& node : expected.nodes)
        node.number -= 2;
    expected.continuum = {element_of(GetParam(), 1, {3, 1, 2, 4}, 1)};
    if (GetParam() == Kind::head) {
        for (MeshNode& node : expected.nodes)
            node.value = 0.0;  // all heads are the same: that they stay behind does not show
    }
    expect_edited(GetParam(), {"1 1", "2", "0", "0 0 1 1", "0"}, expected);
}

TEST_P(BaseMeshEdit, ChangesMaterialsByNumber) {
    Mesh expected = base_mesh(GetParam());
    expected.continuum[1].material = 6;
    expect_edited(GetParam(), {"1 1", "3", "1", "1", "2", "0", "6 0 0"}, expected);
}

TEST_P(BaseMeshEdit, RebuildsElements) {
    Mesh expected = base_mesh(GetParam());
    expected.continuum = {element_of(GetParam(), 1, {1, 2, 4, 3}, 5),
                          element_of(GetParam(), 2, {3, 4, 6, 5}, 5)};
    expect_edited(GetParam(), {"1 1", "6", "1", "1 2 3 4 1 5", "0", "0"}, expected);
}

INSTANTIATE_TEST_SUITE_P(Kinds, BaseMeshEdit, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& test) { return name_of(test.param); });

TEST(BaseMeshEditFiles, TheFilesOfTheBaseMeshStay) {
    const Project project;
    project.deck(text_of(deck_with({"1 1", "0", "0 0 0 0", "1 1"})));
    expect_finished(project.run());
    expect_work_file(project, "Coord.dat",
                     {"      1     0     0     0  0.000000E+00  0.100000E+01 ",
                      "      2     0     0     0  0.000000E+00  0.000000E+00 ",
                      "      3     0     0     0  0.100000E+01  0.100000E+01 ",
                      "      4     0     0     0  0.100000E+01  0.000000E+00 ",
                      "      5     0     0     0  0.200000E+01  0.100000E+01 ",
                      "      6     0     0     0  0.200000E+01  0.000000E+00 "});
    EXPECT_TRUE(project.exists_work("Bmesh.Tmp"));
    EXPECT_TRUE(project.exists_work("Index.dat"));
    EXPECT_EQ(lines_of(project.read("Bmesh.dat")).size(), 17U);
}

TEST(BaseMeshEditFiles, TheEditMayTakeAnotherMesh) {
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    Cards cards = deck_with({"1 1", "0", "0 0 0 0", "1 1"});
    cards[6] = "mesh.Mes";
    project.deck(text_of(cards));
    expect_finished(project.run());
    Mesh expected = sample_mesh(Kind::displacement);
    expected.name = "..\\out.Mes";
    expect_file(project, "out.Mes", lines_of(expected.text()));
}

TEST(BaseMeshEditFiles, PassesFollowThoseOfTheBaseMesh) {
    const Project project;
    project.write_data("DEBUG/Brelan_P1.dat", "1 6.0\n");
    project.deck(text_of(deck_with({"1 1", "2", "1", "1", "1", "0"})));
    expect_finished(project.run());
    std::vector<std::string> trace = lines_of(project.read_work("Brelan_P1.deb"));
    ASSERT_EQ(trace.size(), 10U);
    trace.erase(trace.begin(), trace.begin() + 4);
    EXPECT_EQ(trace, (std::vector<std::string>{"  Pass 3 ...", "  Pass 4A ", "  Pass 4B ", "  Pass 4D ",
                                               "  Pass 5C ", "  Pass 6 "}));
}

TEST(BaseMeshEditFiles, ADeckWithoutTheEditCardsFailsInTheChecker) {
    const Project project;
    project.write("Bmesh.dat", "an earlier base mesh\n");
    project.deck(text_of({"2", "1 1", "0 0", "2 1 0.5", "1 1 0.5", "1"}));
    expect_failed(project.run(), {"deck.dat"});
    expect_file(project, "Bmesh.dat", {"an earlier base mesh"});
}

}  // namespace
}  // namespace brelan::test
