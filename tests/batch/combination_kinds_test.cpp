// Two meshes joined along a side, in every kind, every file compared.
//
//   left.Mes, Card 2.1-1: the second region     right.Mes, Card 2.1-2: the first region
//
//     3-----4                                     3-----4
//     |  1  |   beam 2 from 1 to 2                |  1  |   the same elements; its left side lies at 1.125,
//     1-----2   truss 3 from 3 to 4               1-----2   the right side of the other at 1
//
// Half the smallest spacing, 0.4375, is more than the gap of 0.125: both sides become one.

#include <gtest/gtest.h>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

// Codes that count up from the first.
MeshNode node_of(Kind kind, int number, double x, double y, int first_code, double value) {
    MeshNode node{number, {}, x, y, 0.0, 0.0};
    const int count = kind == Kind::coupled ? 5 : kind == Kind::displacement ? 3 : 2;
    for (int k = 0; k < count; ++k)
        node.codes.push_back(first_code + k);
    if (kind == Kind::temperature || kind == Kind::head) {
        node.value = value;
        node.factor = value / 10.0;
    }
    return node;
}

MeshElement element_of(Kind kind, int number, std::array<int, 4> corners, int middle, int material) {
    MeshElement element{number, corners, {}, material, {}, {}};
    if (kind == Kind::coupled) {
        element.codes = {material, 1, 2, 3};
        element.reals = {material + 0.5};
    } else if (kind == Kind::displacement) {
        element.reals = {material + 0.25, material + 0.75};
    } else {
        element.codes = {10 * material};
    }
    if (kind == Kind::coupled || kind == Kind::displacement)
        element.midsides[1] = middle;
    return element;
}

Mesh region(Kind kind, const std::string& name, double left, double right, int code, int material) {
    Mesh mesh;
    mesh.kind = kind;
    mesh.name = name;
    mesh.nodes = {node_of(kind, 1, left, 0, code, code), node_of(kind, 2, right, 0, code + 10, code + 10),
                  node_of(kind, 3, left, 1, code + 20, code + 20),
                  node_of(kind, 4, right, 1, code + 30, code + 30)};
    mesh.continuum = {element_of(kind, 1, {1, 2, 4, 3}, 2, material)};
    mesh.beams = {{2, 1, 2, material}};
    mesh.trusses = {{3, 3, 4, material}};
    return mesh;
}

Mesh left_region(Kind kind) {
    return region(kind, "left.Mes", 0, 1, 100, 1);
}
Mesh right_region(Kind kind) {
    return region(kind, "right.Mes", 1.125, 2, 500, 2);
}

// The nodes of the left region stay; of the right region 2 and 4 go on as 5 and 6.
Mesh joined(Kind kind, bool first_region_wins) {
    Mesh mesh = left_region(kind);
    mesh.name = "..\\joined.Mes";
    mesh.closing_lines = false;
    mesh.nodes.push_back(node_of(kind, 5, 2, 0, 510, 510));
    mesh.nodes.push_back(node_of(kind, 6, 2, 1, 530, 530));
    if (first_region_wins) {
        mesh.nodes[1] = node_of(kind, 2, 1.125, 0, 500, 500);
        mesh.nodes[3] = node_of(kind, 4, 1.125, 1, 520, 520);
    }
    // Continuum of the second and the first region, then beams, then trusses, all from 1.
    mesh.continuum.push_back(element_of(kind, 2, {2, 5, 6, 4}, 5, 2));
    mesh.beams = {{3, 1, 2, 1}, {4, 2, 5, 2}};
    mesh.trusses = {{5, 3, 4, 1}, {6, 4, 6, 2}};
    return mesh;
}

// The working copy of a region: counts in free form, all lines but the elements in 126 columns.
std::vector<std::string> working_copy(const Mesh& mesh) {
    std::vector<std::string> lines = lines_of(mesh.text());
    lines.resize(lines.size() - 2);
    for (std::size_t k = 0; k < lines.size(); ++k)
        if (k < 11 || k == 12 || k == 13 || k == 15 || k == 16)  // elements on lines 12, 15 and 18
            lines[k] = padded(lines[k]);
    lines[2] = "           4           1           1           1";
    return lines;
}

class CombinationOfKinds : public ::testing::TestWithParam<Kind> {
protected:
    static void expect_joined(const char* IMOD, const char* card_1_1_line, bool first_region_wins) {
        const Kind kind = GetParam();
        const Project project(kind);
        project.write("left.Mes", left_region(kind).text());
        project.write("right.Mes", right_region(kind).text());
        project.deck(text_of({IMOD, "left.Mes", "right.Mes", "joined.Mes", "0"}));
        const Snapshot before = project.snapshot();
        expect_finished(project.run());
        EXPECT_TRUE(project.changed_since(before).empty());

        expect_work_file(project, "BRELAN.TMP",
                         {card_1_1_line, padded("..\\left.Mes"), padded("..\\right.Mes"),
                          padded("..\\joined.Mes"), "    0 "});
        expect_work_file(project, "FILEA.TMP", working_copy(right_region(kind)));
        expect_work_file(project, "FILEB.TMP", working_copy(left_region(kind)));
        const std::vector<std::string> lines = lines_of(joined(kind, first_region_wins).text());
        expect_file(project, "joined.Mes", lines);
        std::vector<std::string> copy;
        for (const std::string& line : lines)
            copy.push_back(padded(line));
        expect_work_file(project, "MeshFile.Mes", copy);
        expect_data_file(project, "BRELAN2D.DAT", {"           0"});
        expect_data_file(project, "FnPlot2D.dat", {padded("..\\joined.Mes")});
    }
};

TEST_P(CombinationOfKinds, MergedNodesHaveTheDataOfTheSecondRegion) {
    expect_joined("0", "    0     0 ", false);
}

TEST_P(CombinationOfKinds, MergedNodesTakeTheDataOfTheFirstRegionWithModeMinusOne) {
    expect_joined("-1", "   -1     0 ", true);
}

TEST_P(CombinationOfKinds, NegativeBoundaryCodesOfElementsAreWrittenLessAHundred) {
    const Kind kind = GetParam();
    if (kind != Kind::temperature && kind != Kind::head)
        return;
    const Project project(kind);
    Mesh left = left_region(kind), right = right_region(kind);
    left.continuum[0].codes = {-105};
    right.continuum[0].codes = {-100};
    project.write("left.Mes", left.text());
    project.write("right.Mes", right.text());
    project.deck(text_of({"0", "left.Mes", "right.Mes", "joined.Mes", "0"}));
    expect_finished(project.run());
    Mesh expected = joined(kind, false);
    expected.continuum[0].codes = {5};
    expected.continuum[1].codes = {0};
    expect_file(project, "joined.Mes", lines_of(expected.text()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, CombinationOfKinds, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& test) { return name_of(test.param); });

}  // namespace
}  // namespace brelan::test
