// The limits of the group tables: a deck that fills one runs, a deck that overruns one ends with a message
// that names it.

#include <gtest/gtest.h>

#include <string>

#include "batch/group_run.h"

namespace brelan::test {
namespace {

void expect_message(const Mesh& mesh, int groups, const Lines& cards, const Lines& fragments) {
    const Project project(mesh.kind);
    lay_out_groups(project, groups, cards, mesh);
    expect_failed(project.run(), fragments);
}
void expect_message(int groups, const Lines& cards, const Lines& fragments) {
    expect_message(squares(Kind::coupled), groups, cards, fragments);
}

// A path that touches nothing: points far away, IEND 3.
Lines path_of(int segments, const std::string& NDIV = "0") {
    Lines lines{std::to_string(segments + 1) + " 0 0 0 0"};
    for (int k = 1; k <= segments + 1; ++k)
        lines.push_back(std::to_string(k) + " " + std::to_string(10 * k) + " " + std::to_string(100 + k % 2));
    lines.push_back(std::to_string(segments));
    for (int k = 1; k <= segments; ++k)
        lines.push_back(std::to_string(k) + " 1 " + NDIV + " 3");
    return lines;
}

TEST(GroupLimits, FiveHundredGroups) {
    const Lines skipped(500, "0");
    GroupRun run(Kind::coupled, 500, skipped, squares(Kind::coupled));
    run.expect_counts(15, 8, 0, 0);
    expect_message(501, skipped + Lines{"0"}, {"3.3.5.4", "500", "501"});
}

TEST(GroupLimits, ElevenHundredPointsAndSegments) {
    GroupRun run(Kind::coupled, Lines{"2", "0 0"} + path_of(1099));
    run.expect_counts(15, 8, 0, 0);
    expect_message(1, Lines{"2", "0 0"} + path_of(1100), {"3.3.5.4.2", "1100", "1101"});
}

TEST(GroupLimits, NumberOfAPoint) {
    for (const char* NP : {"0", "-1", "1101"})
        expect_message(1, {"2", "0 0", "1 0 0 0 0", std::string(NP) + " 1 1", "0"},
                       {"3.3.5.4.2-1", "NP from 1 to 1100", std::string("found ") + NP});
    GroupRun run(Kind::coupled, {"2", "0 0", "1 0 0 0 0", "1100 1 1", "0"});
    run.expect_counts(15, 8, 0, 0);
}

TEST(GroupLimits, NumberOfSegments) {
    for (const char* NSEGMENT : {"-1", "1101"})
        expect_message(1, {"2", "0 0", "1 0 0 0 0", "1 1 1", NSEGMENT}, {"3.3.5.4.3", NSEGMENT});
}

// The region stage scans the path of every group, so one of 2,002 points stops the run.
TEST(GroupLimits, PathOfTwoThousandAndOnePoints) {
    GroupRun run(Kind::coupled, Lines{"2", "0 0"} + path_of(1, "-2000"));
    run.expect_counts(15, 8, 0, 0);
    const Project project(Kind::coupled);
    lay_out_groups(project, 1, Lines{"2", "0 0"} + path_of(1, "-2001"), squares(Kind::coupled));
    const RunResult result = project.run();
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.out.find(" NB ="), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("2002"), std::string::npos);
    EXPECT_NE(result.out.find("222"), std::string::npos);
    EXPECT_EQ(result.err, "");
}

TEST(GroupLimits, PartsOfASegment) {
    for (const char* NDIV : {"2002", "-2002", "99999"})
        expect_message(1, Lines{"2", "0 0"} + path_of(1, NDIV), {"group 1, segment 1", "2001 parts"});
}

// A free line has a node at each of its points.
TEST(GroupLimits, FourThousandNodesOfALine) {
    expect_message(1, Lines{"2 0 1", "2 3"} + path_of(4, "1000"), {"group 1", "at most 4000 nodes"});
    const Project project(Kind::coupled);
    lay_out_groups(project, 1, Lines{"2 0 1", "2 3"} + path_of(3, "1000"), squares(Kind::coupled));
    EXPECT_EQ(project.run().status, 1) << "the nodes are kept, and the path is too long for the region stage";
}

// Each group has an outline and a line: 250 groups fill the listing.
TEST(GroupLimits, FiveHundredRowsOfTheListing) {
    Lines cards;
    for (int g = 1; g <= 250; ++g)
        cards = cards + Lines{"2", "2 3"} + UPWARDS;
    GroupRun run(Kind::coupled, 250, cards, squares(Kind::coupled));
    run.expect_counts(15, 8, 500, 0);
    expect_message(251, cards + Lines{"2", "2 3"} + UPWARDS, {"group 25", "at most 500 outlines"});
}

// The highest number is taken: a cut has none for its new node, and none for a new element.
TEST(GroupLimits, NodeNumbersOfTheTables) {
    Mesh mesh = squares(Kind::coupled);
    mesh.nodes.back().number = 99990;
    for (MeshElement& e : mesh.continuum)
        for (int& n : e.corners)
            n = n == 15 ? 99990 : n;
    for (const std::size_t n : {3U, 8U, 13U})
        mesh.nodes[n - 1].codes[0] = 1;
    expect_message(mesh, 1, Lines{"2", "0 0"} + upright("2.3"), {"99990", "node numbers"});
}

TEST(GroupLimits, ElementNumbersOfTheTables) {
    Mesh mesh = squares(Kind::coupled);
    mesh.continuum.back().number = 99990;
    expect_message(mesh, 1, Lines{"2", "2 3"} + UPWARDS, {"99990", "element numbers"});
}

// Two joints of no width along one line: the second finds line nodes 3, 8, 13 and their twins 16, 17, 18 on
// it, first 3 (of element 3) and 16 (of element 2) or the other way round.
TEST(GroupLimits, CoordinatesAreNumbers) {
    const Lines joint = Lines{"-2", "9 5 0 0 0 0 0"} + UPWARDS;
    expect_message(2, joint + joint,
                   {"group 2: expected coordinates that are numbers", "the twin of node 3 of its line",
                    "nodes 3 and 16 of the line lie at one point", "two joints of no width lie on one line"});
}

// A closed outline of no width, up from node 3 to node 13 and down again: its twins at node 3 would have to
// lie on its left both ways.
TEST(GroupLimits, JointTurnsNowhereBack) {
    expect_message(1, {"-3", "0 0 9 5 0.1 0 0 0 0", "2 0 0 0 0", "1 2 0", "2 2 2", "2", "1 1 0 2", "2 1 0 2"},
                   {"group 1", "the twin of node 3 of its line", "the line turns back on itself there"});
}

}  // namespace
}  // namespace brelan::test
