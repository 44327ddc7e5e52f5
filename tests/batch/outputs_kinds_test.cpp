// A pit in stages in each kind: every file that the groups' outputs leave is compared, line by line, with a
// file of tests/batch/expected that was written by hand.
//
//   11--12,18-13---14---15      1 "Pit": squares 3, 4, 7, 8 doubled: material 3, doubles 9 to 12 of 2
//    | 5  || 6  | 7  || 8 |     2 "Wall": beams 13, 14 along 4-9-14
//    6---7,17--8====9====10     3 "Struts": trusses 15, 16 along 8-9-10
//    | 1  || 2  | 3  || 4 |     4 "Joint": 17, 18 along 2-7-12, beams 19, 20 along its twins 16-17-18
//    1---2,16--3----4-----5     5 "Layer": material 5 in squares 1 and 2, drawn over the mesh as it is
//                               6 wants no outputs and holds the whole mesh

#include <gtest/gtest.h>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

std::vector<GroupCards> pit() {
    GroupCards stage{.title = "Pit, first stage",
                     .MTYPE = 4,
                     .material = "2 3 0 0",
                     .line = outline({{2, 0}, {4, 0}, {4, 2}, {2, 2}}),
                     .switches = {1, 1, 1, 0, 0, 1, 1}};
    stage.pairs[0] = "1 4";
    stage.pairs[1] = "5 0";
    GroupCards wall{.title = "Wall",
                    .MTYPE = 2,
                    .material = "2 6",
                    .line = open_line({{3, 0}, {3, 2}}),
                    .switches = {0, 0, 0, 1, 0, 0, 1}};
    wall.pairs[3] = "2 0";
    GroupCards struts{.title = "Struts",
                      .MTYPE = 2,
                      .material = "3 7",
                      .line = open_line({{2, 1}, {4, 1}}),
                      .switches = {0, 0, 1, 0, 1, 0, 0}};
    struts.pairs[4] = "9 9";
    struts.pairs[5] = "3 8";
    GroupCards joint{.title = "Joint of the old wall",
                     .MTYPE = -2,
                     .material = "9 5 0 0 0 2 8",
                     .line = open_line({{1, 0}, {1, 2}}),
                     .switches = {1, 0, 1, 0, 0, 0, 1}};
    joint.pairs[2] = "6 0";
    joint.pairs[5] = "7 0";
    GroupCards layer{.title = "Layer",
                     .MTYPE = 3,
                     .material = "5 3 0 0",
                     .line = outline({{0, 0}, {2, 0}, {2, 1}, {0, 1}}, 3),
                     .switches = {1, 1, 0, 0, 0, 1, 0}};
    layer.pairs[1] = "1 0";
    const GroupCards unwanted{
        .title = "Not wanted", .MTYPE = 5, .line = outline({{0, 0}, {4, 0}, {4, 2}, {0, 2}}), .IGPOST = 0};
    return {stage, wall, struts, joint, layer, unwanted};
}

struct ExpectedFiles {
    std::string mesh, group, materials, boundary, graf_2d, elements, nodes;
};

void expect_outputs(int edition, Kind kind, const ExpectedFiles& files) {
    const GroupProject run(edition, grid_mesh(kind, 4, 2), pit(), "4.5");
    run.run();
    const Project& project = run.project;
    expect_file(project, "Group.Man", expected_lines(files.group));
    expect_file(project, "MatAD.Man", expected_lines(files.materials));
    expect_file(project, "Group.Pos",
                expected_lines(files.graf_2d) + expected_lines(files.elements) + expected_lines(files.nodes));
    if (files.boundary.empty())
        EXPECT_FALSE(project.exists("Boundary.Man"));
    else
        expect_file(project, "Boundary.Man", expected_lines(files.boundary));
    const Lines mesh = expected_lines(files.mesh);
    expect_file(project, "out.Mes", mesh);
    expect_work_file(project, "MeshFile.Mes", in_full(mesh));
    EXPECT_TRUE(project.exists_work("TEMPMESH.TMP"));
    for (const char* gone : {"GROUP.TMP", "JOINT.TMP", "Group.dat", "LineUp.dat"})
        EXPECT_FALSE(project.exists_work(gone)) << gone;
}

TEST(OutputsOfAPit, DisplacementEdition1) {
    expect_outputs(1, Kind::displacement,
                   {"mesh.displacement", "Group.Man.displacement", "MatAD.Man.edition_1", "", "graf_2d",
                    "graf_xy_elements", "graf_xy_nodes"});
}

// The short forms of "..\MatAD.Man", though "..\Group.Man" has its column MCH.
TEST(OutputsOfAPit, DisplacementEditions7And8) {
    for (const int edition : {7, 8})
        expect_outputs(edition, Kind::displacement,
                       {"mesh.displacement", "Group.Man.displacement", "MatAD.Man", "", "graf_2d",
                        "graf_xy_elements", "graf_xy_nodes"});
}

TEST(OutputsOfAPit, Coupled) {
    for (const int edition : {2, 11})
        expect_outputs(
            edition, Kind::coupled,
            {"mesh.coupled", "Group.Man", "MatAD.Man", "", "graf_2d", "graf_xy_elements", "graf_xy_nodes"});
}

TEST(OutputsOfAPit, Temperature) {
    for (const int edition : {5, 6})
        expect_outputs(edition, Kind::temperature,
                       {"mesh.temperature", "Group.Man", "MatAD.Man", "Boundary.Man.temperature",
                        "graf_2d.temperature", "graf_xy_elements.temperature", "graf_xy_nodes.temperature"});
}

TEST(OutputsOfAPit, Head) {
    for (const int edition : {9, 10})
        expect_outputs(edition, Kind::head,
                       {"mesh.head", "Group.Man", "MatAD.Man", "Boundary.Man.head", "graf_2d",
                        "graf_xy_elements", "graf_xy_nodes.head"});
}

// --- the trace -----------------------------------------------------------------------------------

// Lines of the trace from Pass 27.1 on.
Lines end_of_trace(const std::string& settings) {
    const GroupProject run(Kind::displacement, grid_mesh(Kind::displacement, 4, 2), pit());
    run.project.write_data("DEBUG/Brelan_P1.dat", settings);
    run.run();
    return section(lines_of(run.project.read_work("Brelan_P1.deb")), "  Pass 27.1 ", "");
}

const Lines BEGIN_OF_OUTPUTS{"  Pass 27.1 ", "  Pass 27.1.1 ",
                             "  GROUP_SORT: Beginning NGROUP =            6"};

TEST(OutputsOfAPit, TraceOfLevel1HasItsBeginning) {
    EXPECT_EQ(end_of_trace("1 43\n"), (BEGIN_OF_OUTPUTS + Lines{"  Pass 27.2 ", "  Pass 43 "}));
}

TEST(OutputsOfAPit, TraceOfLevel2HasEveryRangeAndEveryElementWrittenAnew) {
    const Lines ranges{
        "  Pass 27.1.2  II =            1  K =            2  NSS =            9  MAXMC =            3",
        "  Pass 27.1.2  II =            1  K =            3  NSS =            3  MAXMC =            3",
        "  Pass 27.1.2  II =            1  K =            3  NSS =            7  MAXMC =            3",
        "  Pass 27.1.2  II =            2  K =            6  NSS =           13  MAXMC =            6",
        "  Pass 27.1.2  II =            3  K =            7  NSS =           15  MAXMC =            7",
        "  Pass 27.1.2  II =            1  K =            9  NSS =           17  MAXMC =            9",
        "  Pass 27.1.2  II =            2  K =            8  NSS =           19  MAXMC =            9",
        "  Pass 27.1.2  II =            1  K =            5  NSS =            1  MAXMC =            5",
        "  Pass 27.1.3  NEWMAT(1261) =            0",
        "  Pass 27.1.4 IPROGM =            1",
        "  Pass 27.1.5 ",
        "  Pass 27.1.6 "};
    // Record i of element N, with the new materials of elements i and N.
    const int records[14][4] = {{1, 1, 13, 13},  {2, 2, 13, 13},   {3, 3, 11, 11},   {4, 4, 11, 11},
                                {5, 5, 0, 0},    {6, 6, 0, 0},     {7, 7, 11, 11},   {8, 8, 11, 11},
                                {9, 9, 10, 10},  {10, 10, 10, 10}, {11, 11, 10, 10}, {12, 12, 10, 10},
                                {13, 17, 0, 12}, {14, 18, 0, 12}};
    Lines expected = BEGIN_OF_OUTPUTS + ranges;
    for (const auto& [i, N, of_i, of_N] : records)
        expected.push_back("  Pass 27.1.7  I = " + i_field(i, 12) + "  N = " + i_field(N, 12) +
                           "  NEWMAT(I) = " + i_field(of_i, 12) + "  NEWMAT(N) = " + i_field(of_N, 12));
    expected.push_back("  Pass 27.1.8  NBEAMA=            4  NNBEAMA=            4  NTRUSA =            2");
    expected = expected + Lines{"  Pass 27.2 ", "  Pass 43 "};
    EXPECT_EQ(first_difference(expected, end_of_trace("2 43\n")), "");
}

// The lines come whatever pass the trace is to end with; one that is closed goes on in "fort.888".
TEST(OutputsOfAPit, TraceLinesOfTheOutputsDoNotLookAtTheLastPass) {
    const GroupProject run(Kind::displacement, grid_mesh(Kind::displacement, 4, 2), pit());
    run.project.write_data("DEBUG/Brelan_P1.dat", "1 27.1\n");
    run.run();
    EXPECT_EQ(lines_of(run.project.read_work("Brelan_P1.deb")).back(), "  Pass 27.1 ");
    expect_work_file(run.project, "fort.888", {BEGIN_OF_OUTPUTS[1], BEGIN_OF_OUTPUTS[2]});
}

}  // namespace
}  // namespace brelan::test
