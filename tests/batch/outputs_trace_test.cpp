// The trace of the groups' outputs over a pit in stages, of which cases/outputs_of_a_pit holds every file.
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

// The case with a trace.
void run_pit(const Project& project, const std::string& settings) {
    const std::filesystem::path pit = TEST_DATA_DIR "/batch/cases/outputs_of_a_pit";
    project.write("mesh.Mes", read_text(pit / "mesh.Mes"));
    project.write_data("DV-BRELAN.dat", read_text(pit / "data" / "DV-BRELAN.dat"));
    project.deck(read_text(pit / "deck.dat"));
    project.write_data("DEBUG/Brelan_P1.dat", settings);
    expect_finished(project.run());
}

// Lines of the trace from Pass 27.1 on.
Lines end_of_trace(const std::string& settings) {
    const Project project;
    run_pit(project, settings);
    return section(lines_of(project.read_work("Brelan_P1.deb")), "  Pass 27.1 ", "");
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
    const Project project;
    run_pit(project, "1 27.1\n");
    EXPECT_EQ(lines_of(project.read_work("Brelan_P1.deb")).back(), "  Pass 27.1 ");
    expect_work_file(project, "fort.888", {BEGIN_OF_OUTPUTS[1], BEGIN_OF_OUTPUTS[2]});
}

}  // namespace
}  // namespace brelan::test
