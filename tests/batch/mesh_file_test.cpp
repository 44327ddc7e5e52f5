// Mesh files as whole runs read and write them: which sections there are, and which fields a node record has.
#include <gtest/gtest.h>

#include <string>

#include "batch/edit_run.h"
#include "support/mesh.h"

namespace brelan::test {
namespace {

const Lines FILE_IDENTITY{"1 1", "0", "0 0 0 0", "1 1"};

const Lines SECTION{"heading", "heading"};

Lines source(const std::string& counts, const Lines& rest) {
    return Lines{"a mesh", "counts", counts} + SECTION + rest;
}

// A result of the displacement kind.
void expect_mesh(const Lines& mesh, const std::string& counts, const Lines& rest,
                 const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    expect_result(Kind::displacement, mesh, FILE_IDENTITY,
                  Lines{counts} + node_headings(Kind::displacement) + rest + CLOSING, file, line);
}

const Lines NODES{"1 1 0 0 1 1 0 0", "2 0 1 0 1 1 1 0", "3 0 0 1 1 1 0 1"};
const Lines NODES_WRITTEN{"      1    1    0    0    1    1  0.000000E+00  0.000000E+00 ",
                          "      2    0    1    0    1    1  0.100000E+01  0.000000E+00 ",
                          "      3    0    0    1    1    1  0.000000E+00  0.100000E+01 "};
const Lines TRIANGLE{"1 1 2 3 0 0 0 0 0 1 1 2"};
const Lines TRIANGLE_WRITTEN =
    continuum_headings(Kind::displacement) +
    Lines{"      1      1      2      3      0      0      0      0      0    1 0.1000E+01 0.2000E+01"};
const Lines BEAM_WRITTEN = BEAM_HEADINGS + Lines{"      2      1      2      7      1"};
const Lines TRUSS_WRITTEN = TRUSS_HEADINGS + Lines{"      3      2      3      8      1"};

// --- sections ----------------------------------------------------------------------------------------------

TEST(MeshFile, HasAllSections) {
    expect_mesh(source("3 1 1 1", NODES + SECTION + TRIANGLE + SECTION + Lines{"2 1 2 7 1"} + SECTION +
                                      Lines{"3 2 3 8 1"}),
                "     3       1       1       1",
                NODES_WRITTEN + TRIANGLE_WRITTEN + BEAM_WRITTEN + TRUSS_WRITTEN);
}

TEST(MeshFile, HasNoHeadingsForASectionThatIsNotThere) {
    expect_mesh(
        source("3 1 0 1", NODES + SECTION + TRIANGLE + SECTION + Lines{"3 2 3 8 1"}),
        "     3       1       0       1",
        NODES_WRITTEN + TRIANGLE_WRITTEN + TRUSS_HEADINGS + Lines{"      2      2      3      8      1"});
    expect_mesh(source("3 1 1 0", NODES + SECTION + TRIANGLE + SECTION + Lines{"2 1 2 7 1"}),
                "     3       1       1       0", NODES_WRITTEN + TRIANGLE_WRITTEN + BEAM_WRITTEN);
    expect_mesh(source("3 1 0 0", NODES + SECTION + TRIANGLE), "     3       1       0       0",
                NODES_WRITTEN + TRIANGLE_WRITTEN);
    expect_mesh(source("3 0 1 0", NODES + SECTION + Lines{"9 1 2 7 1"}), "     3       0       1       0",
                NODES_WRITTEN + BEAM_HEADINGS + Lines{"      1      1      2      7      1"});
}

TEST(MeshFile, MayHoldNodesAlone) {
    expect_mesh(source("3 0 0 0", NODES), "     3       0       0       0", NODES_WRITTEN);
}

TEST(MeshFile, MayHoldNothing) {
    expect_mesh(source("0 0 0 0", {}), "     0       0       0       0", {});
    // What follows the sections that the counts name is not read.
    expect_mesh(source("0 0 0 0", NODES), "     0       0       0       0", {});
}

TEST(MeshFile, IsReadByItsCountsWhateverStandsBehind) {
    expect_mesh(source("2 0 0 0", NODES + SECTION + TRIANGLE), "     2       0       0       0",
                Lines(NODES_WRITTEN.begin(), NODES_WRITTEN.begin() + 2));
}

TEST(MeshFile, WrittenByOneRunIsReadByTheNext) {
    for (const Kind kind : ALL_KINDS) {
        const Project project(kind);
        project.write("mesh.Mes", sample_mesh(kind).text());
        project.deck(text_of(Lines{"1 0", "mesh.Mes", "once.Mes"} + FILE_IDENTITY));
        expect_finished(project.run());
        project.deck(text_of(Lines{"1 0", "once.Mes", "twice.Mes"} + FILE_IDENTITY));
        expect_finished(project.run());
        const Lines once = lines_of(project.read("once.Mes"));
        const Lines twice = lines_of(project.read("twice.Mes"));
        EXPECT_EQ(twice.at(0), padded("..\\twice.Mes"));
        EXPECT_EQ(
            first_difference(Lines(once.begin() + 1, once.end()), Lines(twice.begin() + 1, twice.end())), "");
        // The copy in the working directory is a mesh file too, blanks up to column 126 and all.
        project.write("copy.Mes", project.read_work("MeshFile.Mes"));
        project.deck(text_of(Lines{"1 0", "copy.Mes", "thrice.Mes"} + FILE_IDENTITY));
        expect_finished(project.run());
        const Lines thrice = lines_of(project.read("thrice.Mes"));
        EXPECT_EQ(
            first_difference(Lines(once.begin() + 1, once.end()), Lines(thrice.begin() + 1, thrice.end())),
            "");
    }
}

// --- node records with and without IEX and IEY -------------------------------------------------------------

TEST(MeshFileNodes, MayLeaveOutIEXAndIEY) {
    expect_mesh(source("3 0 0 0", {"1 1 0 0 0 0", "2 0 1 0 1 0", "3 0 0 1 0 1"}),
                "     3       0       0       0", NODES_WRITTEN);
    expect_result(Kind::coupled, source("2 0 0 0", {"1 1 0 0 2 3 0.5 0", "2 0 1 0 4 5 1 0.25"}),
                  FILE_IDENTITY,
                  Lines{"     2       0       0       0"} + node_headings(Kind::coupled) +
                      Lines{"      1    1    0    0    2    3    1    1  0.500000E+00  0.000000E+00 ",
                            "      2    0    1    0    4    5    1    1  0.100000E+01  0.250000E+00 "} +
                      CLOSING);
}

TEST(MeshFileNodes, IEXAndIEYAreWrittenAsOneWhateverTheyWere) {
    expect_mesh(source("1 0 0 0", {"1 1 0 0 5 -6 0 0"}), "     1       0       0       0",
                {NODES_WRITTEN[0]});
    expect_result(Kind::coupled, source("1 0 0 0", {"1 1 0 0 2 3 9 8 0.5 0"}), FILE_IDENTITY,
                  Lines{"     1       0       0       0"} + node_headings(Kind::coupled) +
                      Lines{"      1    1    0    0    2    3    1    1  0.500000E+00  0.000000E+00 "} +
                      CLOSING);
}

TEST(MeshFileNodes, FirstRecordDecidesForAll) {
    // The second record has IEX and IEY, which are taken for its coordinates.
    expect_mesh(source("2 0 0 0", {"1 1 0 0 0 0", "2 0 1 0 1 1 7 8"}), "     2       0       0       0",
                {NODES_WRITTEN[0], "      2    0    1    0    1    1  0.100000E+01  0.100000E+01 "});
}

TEST(MeshFileNodes, RecordOfTheTemperatureAndHeadKindsHasNoSuchChoice) {
    for (const Kind kind : {Kind::temperature, Kind::head})
        expect_result(
            kind, source("1 0 0 0", {"1 1 0 0.5 0 20 0.25 7 8 9"}), FILE_IDENTITY,
            Lines{"     1       0       0       0"} + node_headings(kind) +
                Lines{"      1    1    0  0.500000E+00  0.000000E+00  0.200000E+02  0.250000E+00 "} +
                CLOSING);
}

TEST(MeshFileNodes, RecordsComeOutInAscendingNumber) {
    expect_mesh(source("3 0 0 0", {NODES[2], NODES[0], NODES[1]}), "     3       0       0       0",
                NODES_WRITTEN);
}

TEST(MeshFileNodes, CodeTooWideForItsFieldShowsAsAsterisks) {
    expect_mesh(source("1 0 0 0", {"1 100000 -9999 99999 1 1 0 0"}), "     1       0       0       0",
                {"      1*****-999999999    1    1  0.000000E+00  0.000000E+00 "});
}

// --- elements ----------------------------------------------------------------------------------------------

TEST(MeshFileElements, NegativeRealTouchesTheFieldBeforeIt) {
    expect_mesh(source("3 1 0 0", NODES + SECTION + Lines{"1 1 2 3 0 0 0 0 0 1 -0.5 -2"}),
                "     3       1       0       0",
                NODES_WRITTEN + continuum_headings(Kind::displacement) +
                    Lines{"      1      1      2      3      0      0      0      0      0"
                          "    1-0.5000E+00-0.2000E+01"});
    expect_result(Kind::coupled,
                  source("1 1 0 0", Lines{"1 1 0 0 2 3 1 1 0.5 0"} + SECTION +
                                        Lines{"1 1 1 1 0 0 0 0 0 4 5 6 7 8 -0.125"}),
                  FILE_IDENTITY,
                  Lines{"     1       1       0       0"} + node_headings(Kind::coupled) +
                      Lines{"      1    1    0    0    2    3    1    1  0.500000E+00  0.000000E+00 "} +
                      continuum_headings(Kind::coupled) +
                      Lines{"      1      1      1      1      0      0      0      0      0"
                            "    4    5    6    7    8-0.1250E+00"} +
                      CLOSING);
}

TEST(MeshFileElements, RealHasFourDigits) {
    expect_mesh(source("3 1 0 0", NODES + SECTION + Lines{"1 1 2 3 0 0 0 0 0 1 1.23456 123454"}),
                "     3       1       0       0",
                NODES_WRITTEN + continuum_headings(Kind::displacement) +
                    Lines{"      1      1      2      3      0      0      0      0      0"
                          "    1 0.1235E+01 0.1235E+06"});
}

TEST(MeshFileElements, MaterialOfABeamMayHaveSixColumns) {
    expect_mesh(
        source("3 0 1 1", NODES + SECTION + Lines{"2 1 2 123456 1"} + SECTION + Lines{"3 2 3 -12345 1"}),
        "     3       0       1       1",
        NODES_WRITTEN + BEAM_HEADINGS + Lines{"      1      1      2 123456      1"} + TRUSS_HEADINGS +
            Lines{"      2      2      3 -12345      1"});
}

TEST(MeshFileElements, NODEKIsWrittenAsOneAndMayBeMissing) {
    expect_mesh(source("3 0 2 0", NODES + SECTION + Lines{"2 1 2 7 44", "3 2 3 7"}),
                "     3       0       2       0",
                NODES_WRITTEN + BEAM_HEADINGS +
                    Lines{"      1      1      2      7      1", "      2      2      3      7      1"});
}

// --- size --------------------------------------------------------------------------------------------------

TEST(MeshFileSize, LargestMeshMovesFromFileToFile) {
    // 330 columns and 303 rows of points; the cells between them up to number 99,000.
    constexpr int columns = 330, rows = 303, elements = 99000;
    Mesh mesh;
    mesh.kind = Kind::displacement;
    mesh.name = "mesh.Mes";
    for (int n = 0; n < columns * rows; ++n) {
        MeshNode node;
        node.number = n + 1;
        node.codes = {n % 2, n % 3, n % 5};
        node.x = n % columns;
        node.y = n / columns;
        mesh.nodes.push_back(node);
    }
    for (int row = 0; row < rows - 1; ++row) {
        for (int column = 0; column < columns - 1 && static_cast<int>(mesh.continuum.size()) < elements;
             ++column) {
            MeshElement element;
            element.number = static_cast<int>(mesh.continuum.size()) + 1;
            const int corner = row * columns + column + 1;
            element.corners = {corner, corner + 1, corner + columns + 1, corner + columns};
            element.material = 1 + row % 7;
            element.reals = {1.0, 1.8};
            mesh.continuum.push_back(element);
        }
    }
    ASSERT_EQ(mesh.nodes.size(), 99990U);
    ASSERT_EQ(mesh.continuum.size(), 99000U);

    const Project project(Kind::displacement);
    project.write("mesh.Mes", mesh.text());
    project.deck(text_of({"1 0", "mesh.Mes", "out.Mes", "1 1", "0", "0 100 500 0", "1 2"}));
    expect_finished(project.run());

    mesh.name = "..\\out.Mes";
    for (MeshNode& node : mesh.nodes) {
        node.x += 500;
        node.y = 2 * (node.y - 100);
    }
    const Lines expected = lines_of(mesh.text());
    EXPECT_EQ(first_difference(expected, lines_of(project.read("out.Mes"))), "");
    EXPECT_EQ(first_difference(in_full(expected), lines_of(project.read_work("MeshFile.Mes"))), "");
}

}  // namespace
}  // namespace brelan::test
