// "..\Boundary.Man": pipes and convection lines of the temperature kind, flow sections of the head kind, over
// unit squares. Nodes are numbered row by row, 1 to 5 below, 6 to 10 in the middle, 11 to 15 above.

#include <gtest/gtest.h>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

GroupCards line_of(int LTP, int LMAT, const Points& points, const std::string& title = "Line") {
    return {.title = title,
            .MTYPE = 2,
            .material = std::to_string(LTP) + " " + std::to_string(LMAT),
            .line = open_line(points)};
}

GroupCards ring_of(int LTP, int LMAT, const Points& points) {
    return {.title = "Ring",
            .MTYPE = 3,
            .material = "0 3 " + std::to_string(LTP) + " " + std::to_string(LMAT),
            .line = outline(points)};
}

const Points BOX{{1, 0}, {2, 0}, {2, 2}, {1, 2}};  // nodes 2, 3, 8, 13, 12, 7

GroupProject finished(Kind kind, const std::vector<GroupCards>& groups, int columns = 4, int rows = 2) {
    return GroupProject(kind, grid_mesh(kind, columns, rows), groups);
}

// --- pipes and convection lines ------------------------------------------------------------------

Lines properties(const std::vector<int>& materials) {
    Lines lines{"* Card 9.1.1", "* NTNP ", "  " + i_field(std::ssize(materials), 4), "*"};
    int number = 0;
    for (const int material : materials)
        lines = lines + Lines{"* Card 9.1.2.1",
                              "* TITLE       ",
                              "  Property No : " + i_field(++number, 3),
                              "* Card 9.1.2.2",
                              "*  MATP       FVOL       SPHL        ROL        HCL",
                              "  " + i_field(material, 5) + "      0.000      0.000      0.000      0.000"};
    return lines;
}

Lines pipe(const std::string& number, const std::string& values, const Lines& nodes) {
    return Lines{"* Card 9.2.2.1",
                 "* TITLE       ",
                 "  Group No :   " + number,
                 "* Card 9.2.2.2-1",
                 "*   IDP   MATP  IDFNP  NODEP",
                 values,
                 "* Card 9.2.2.2-2",
                 "* Listing of Nodes --- "} +
           nodes;
}

Lines convection(const std::string& number, const std::string& values, const Lines& nodes) {
    return Lines{"* Card 9.3.2.1",
                 "* TITLE       ",
                 "  Group No :   " + number,
                 "* Card 9.3.2.2-1",
                 "*   IDC  IDFNC  IDFNT  NODEC",
                 values,
                 "* Card 9.3.2.2-2",
                 "* Listing of Nodes --- "} +
           nodes;
}

Lines pipes(const std::string& count) {
    return {"* Card 9.2.1", "* NPIPE", count, "*"};
}
Lines convections(const std::string& count) {
    return {"* Card 9.3.1", "* NCONV", count, "*"};
}

TEST(BoundaryFile, IsNotWrittenWithoutPipesAndConvectionLines) {
    const std::vector<GroupCards> groups[] = {
        {}, {line_of(4, 6, {{2, 0}, {2, 2}}), line_of(5, 6, {{3, 0}, {3, 2}})}, {ring_of(0, 0, BOX)}};
    for (const auto& cards : groups) {
        const GroupProject run = finished(Kind::temperature, cards);
        run.project.write("Boundary.Man", "yesterday\n");
        run.run();
        EXPECT_EQ(run.project.read("Boundary.Man"), "yesterday\n");
    }
}

TEST(BoundaryFile, IsOnlyWrittenByTheKindsThatHaveSuchLines) {
    for (const Kind kind : {Kind::coupled, Kind::displacement}) {
        const GroupProject run = finished(
            kind, {line_of(2, 6, {{2, 0}, {2, 2}}), line_of(3, 6, {{3, 0}, {3, 2}}), ring_of(3, 6, BOX)});
        run.run();
        EXPECT_FALSE(run.project.exists("Boundary.Man")) << name_of(kind);
    }
    const GroupProject head = finished(Kind::head, {line_of(2, 6, {{2, 0}, {2, 2}}), ring_of(3, 6, BOX)});
    head.run();
    EXPECT_FALSE(head.project.exists("Boundary.Man"));
}

TEST(BoundaryFile, PipeWithoutConvectionLineHasACountOf0ForThem) {
    const GroupProject run = finished(Kind::temperature, {line_of(2, 6, {{2, 0}, {2, 2}})});
    run.run();
    expect_file(run.project, "Boundary.Man",
                properties({6}) + pipes("      1") +
                    pipe("1", "      1      6      0      3", {"      3      8     13"}) +
                    convections("      0"));
}

TEST(BoundaryFile, ConvectionLineWithoutPipeHasNoProperty) {
    const GroupProject run = finished(Kind::temperature, {line_of(3, 6, {{0, 1}, {4, 1}})});
    run.run();
    expect_file(run.project, "Boundary.Man",
                properties({}) + pipes("      0") + convections("      1") +
                    convection("1", "      1      6      0      5", {"      6      7      8      9     10"}));
}

TEST(BoundaryFile, ListGoesOnInANewLineAfterTenNumbers) {
    const GroupProject run = finished(
        Kind::temperature, {line_of(2, 6, {{0, 0}, {12, 0}}), line_of(3, 4, {{1, 1}, {11, 1}})}, 12, 1);
    run.run();
    expect_file(run.project, "Boundary.Man",
                properties({6}) + pipes("      1") +
                    pipe("1", "      1      6      0     13",
                         {"      1      2      3      4      5      6      7      8      9     10",
                          "     11     12     13"}) +
                    convections("      1") +
                    convection("1", "      1      4      0     11",
                               {"     15     16     17     18     19     20     21     22     23     24",
                                "     25"}));
}

// A pipe and a convection line that end in themselves; the second's count is negative in the node words.
TEST(BoundaryFile, ClosedLinesListEachNodeOnce) {
    const GroupProject run = finished(Kind::temperature, {ring_of(2, 6, BOX)});
    run.run();
    expect_file(
        run.project, "Boundary.Man",
        properties({6}) + pipes("      1") +
            pipe("1", "      1      6      0      6", {"      2      3      8     13     12      7"}) +
            convections("      0"));
    const GroupProject truss = finished(Kind::temperature, {ring_of(3, 6, BOX)});
    truss.run();
    expect_file(
        truss.project, "Boundary.Man",
        properties({}) + pipes("      0") + convections("      1") +
            convection("1", "      1      6      0      6", {"      2      3      8     13     12      7"}));
}

TEST(BoundaryFile, PropertyForEachMaterialOfThePipesAscending) {
    const GroupProject run =
        finished(Kind::temperature, {line_of(2, 9, {{0, 0}, {0, 1}}), line_of(2, 4, {{1, 0}, {1, 1}}),
                                     line_of(2, 9, {{2, 0}, {2, 1}}), line_of(3, 2, {{3, 0}, {3, 1}})});
    run.run();
    expect_file(run.project, "Boundary.Man",
                properties({4, 9}) + pipes("      3") +
                    pipe("1", "      1      9      0      2", {"      1      6"}) +
                    pipe("2", "      2      4      0      2", {"      2      7"}) +
                    pipe("3", "      3      9      0      2", {"      3      8"}) + convections("      1") +
                    convection("1", "      1      2      0      2", {"      4      9"}));
}

// A line outside the mesh takes its number and finds no node.
TEST(BoundaryFile, LineWithoutNodesHasACountOf0AndAnEmptyLine) {
    const GroupProject run =
        finished(Kind::temperature, {line_of(2, 9, {{8, 8}, {9, 8}}), line_of(2, 4, {{1, 0}, {1, 1}})});
    run.run();
    expect_file(run.project, "Boundary.Man",
                properties({4}) + pipes("      2") + pipe("1", "      1      0      0      0", {""}) +
                    pipe("2", "      2      4      0      2", {"      2      7"}) + convections("      0"));
}

// Nodes are named as in the result.
TEST(BoundaryFile, NumbersAreThoseOfTheResult) {
    const GroupProject run = finished(Kind::temperature, {});
    run.project.deck(group_deck({line_of(2, 6, {{2, 0}, {2, 2}})}, "0", "1 1000"));
    run.run();
    EXPECT_EQ(count_of(run.lines("Boundary.Man"), "   1002   1007   1012"), 1);
}

TEST(BoundaryFile, CodesOfItsNodesAreClearedInTheMeshAndOthersAreNot) {
    Mesh mesh = grid_mesh(Kind::temperature, 4, 2);
    for (MeshNode& node : mesh.nodes)
        node.codes = {2, 5};
    const GroupProject run(
        Kind::temperature, mesh,
        {line_of(2, 6, {{2, 0}, {2, 2}}), line_of(3, 7, {{3, 0}, {3, 2}}), line_of(5, 8, {{4, 0}, {4, 2}})});
    run.run();
    EXPECT_EQ(section(run.lines("Boundary.Man"), "* Card 9.1.1", "* Card 9.1.2.1"),
              (Lines{"* Card 9.1.1", "* NTNP ", "     1", "*"}));
    for (const MeshNode& node : check_mesh(run.project.read("out.Mes"), Kind::temperature).mesh.nodes) {
        const int column = (node.number - 1) % 5;
        EXPECT_EQ(node.codes, column == 2 || column == 3 ? (std::vector<int>{0, 0})
                              : column == 4              ? (std::vector<int>{1, 8})
                                                         : (std::vector<int>{2, 5}))
            << node.number;
    }
}

TEST(BoundaryFile, OtherEditsWriteNone) {
    Mesh mesh = grid_mesh(Kind::temperature, 4, 2);
    for (MeshNode& node : mesh.nodes)
        node.codes = {2, 5};
    const GroupProject run(Kind::temperature, mesh, {});
    run.project.deck(text_of({"1", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"}));
    run.run();
    EXPECT_FALSE(run.project.exists("Boundary.Man"));
}

// --- flow sections -------------------------------------------------------------------------------

Lines flow_head(int NFSEC) {
    return {"* Card 10.8 ", "* NFSEC   IBFQ", "  " + i_field(NFSEC, 5) + "      0", "*"};
}

Lines section_head(const std::string& number, const std::string& title) {
    const std::string row = "* ====================================================================";
    return {"* ", "* FLOW SECTION  " + number, row, padded("* " + title, 82), row, "*"};
}

Lines section_list(const std::string& count, const Lines& nodes) {
    return Lines{"* Card 10.8.1", "* NODES", count, "* LIST OF NODES"} + nodes;
}

TEST(FlowSections, EachOpenLineIsASectionUnderTheTitleOfItsGroup) {
    const GroupProject run = finished(Kind::head, {line_of(3, 6, {{1, 0}, {1, 2}}, "Left"),
                                                   line_of(3, 6, {{4, 2}, {2, 2}}, std::string(90, 'r'))});
    run.run();
    expect_file(
        run.project, "Boundary.Man",
        flow_head(2) + section_head("1", "Left") + section_list("      3", {"      2      7     12"}) +
            section_head("2", std::string(80, 'r')) + section_list("      3", {"     15     14     13"}));
}

TEST(FlowSections, ListGoesOnInANewLineAfterTenNumbers) {
    const GroupProject run = finished(Kind::head, {line_of(3, 6, {{0, 0}, {12, 0}})}, 12, 1);
    run.run();
    EXPECT_EQ(
        section(run.lines("Boundary.Man"), "* LIST OF NODES", ""),
        (Lines{"* LIST OF NODES", "      1      2      3      4      5      6      7      8      9     10",
               "     11     12     13"}));
}

TEST(FlowSections, TrussesOfTheMeshThatWasReadFormASectionWithoutATitle) {
    Mesh mesh = grid_mesh(Kind::head, 4, 2);
    mesh.trusses = {{9, 11, 12, 3}, {10, 12, 13, 3}};
    const GroupProject run(
        Kind::head, mesh,
        {line_of(3, 6, {{1, 0}, {3, 0}}, "Drawn"), line_of(3, 6, {{8, 8}, {9, 8}}, "Outside the mesh")});
    run.run();
    expect_file(run.project, "Boundary.Man",
                flow_head(2) + section_head("1", "") + section_list("      3", {"     11     12     13"}) +
                    section_head("2", "Drawn") + section_list("      3", {"      2      3      4"}));
}

// A wall drawn later marks the node in which it crosses a line of trusses: the line is cut one node behind
// it, and the piece in front has the title of the wall. One section is counted.
TEST(FlowSections, LastRunBeyondTheCountIsNotListed) {
    const GroupProject run = finished(
        Kind::head, {line_of(3, 6, {{0, 1}, {4, 1}}, "Drain"), line_of(2, 6, {{1, 0}, {1, 2}}, "Wall")});
    run.run();
    expect_file(
        run.project, "Boundary.Man",
        flow_head(1) + section_head("1", "Wall") + section_list("      3", {"      6      7      8"}));
}

TEST(FlowSections, RunBeyondTheCountHasNoHeadAndIsListedWhenAnotherFollows) {
    const GroupProject run = finished(
        Kind::head, {line_of(3, 6, {{0, 1}, {4, 1}}, "Drain"), line_of(2, 6, {{1, 0}, {1, 2}}, "Wall"),
                     line_of(4, 6, {{0, 2}, {4, 2}}, "Other trusses")});
    run.run();
    expect_file(run.project, "Boundary.Man",
                flow_head(1) + section_head("1", "Wall") +
                    section_list("      3", {"      6      7      8"}) +
                    section_list("      3", {"      8      9     10"}));
}

TEST(FlowSections, ClosedLinesAreNotCountedButTheirTrussesFormRuns) {
    const GroupProject run =
        finished(Kind::head, {ring_of(3, 6, BOX), line_of(3, 6, {{3, 0}, {3, 2}}, "Line")});
    run.run();
    expect_file(run.project, "Boundary.Man",
                flow_head(1) + section_head("1", "Ring") +
                    section_list("      7", {"      2      3      8     13     12      7      2"}));
}

TEST(FlowSections, CountWithoutATrussInTheMeshWritesNoFile) {
    const GroupProject run = finished(Kind::head, {line_of(3, 6, {{8, 8}, {9, 8}})});
    run.run();
    EXPECT_FALSE(run.project.exists("Boundary.Man"));
}

// A joint with trusses on both sides counts twice.
TEST(FlowSections, BothLinesOfAJointAreSections) {
    const GroupCards joint{
        .title = "Joint", .MTYPE = -2, .material = "9 5 0 3 6 3 7", .line = open_line({{2, 0}, {2, 2}})};
    const GroupProject run = finished(Kind::head, {joint});
    run.run();
    expect_file(run.project, "Boundary.Man",
                flow_head(2) + section_head("1", "Joint") +
                    section_list("      3", {"      3      8     13"}) + section_head("2", "Joint") +
                    section_list("      3", {"     16     17     18"}));
}

}  // namespace
}  // namespace brelan::test
