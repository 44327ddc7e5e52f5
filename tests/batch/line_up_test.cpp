// Whole runs with "LineUp.dat": trusses along y = 0 under quadrilaterals of material 7. What a run does with
// the switch file, and what becomes of the mesh; the rules of the slides are at tests/lib/mesh.

#include <gtest/gtest.h>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

struct Corner {
    double x, y;
};

// Nodes 1 to 4 at x = 0 to 3 with trusses 11 (1-2), 12 (2-3), 13 (3-4), and quadrilaterals over some of them:
//
//        C------D        one over the truss from node k has the corners k, k + 1, D, C; the nodes D and C
//       /      /         follow those before them
//   1---2-----3---4
struct Quadrilateral {
    int truss;  // k
    Corner D, C;
    int material = 7;
};

Mesh truss_line(const std::vector<Quadrilateral>& quadrilaterals) {
    Mesh mesh;
    const auto node = [&mesh](double x, double y) {
        MeshNode made;
        made.number = static_cast<int>(mesh.nodes.size()) + 1;
        made.codes = {0, 0, 1};
        made.x = x;
        made.y = y;
        mesh.nodes.push_back(made);
        return made.number;
    };
    for (const double x : {0.0, 1.0, 2.0, 3.0})
        node(x, 0.0);
    for (const Quadrilateral& q : quadrilaterals) {
        MeshElement element;
        element.number = static_cast<int>(mesh.continuum.size()) + 1;
        const int D = node(q.D.x, q.D.y);
        element.corners = {q.truss, q.truss + 1, D, node(q.C.x, q.C.y)};
        element.material = q.material;
        element.reals = {1.0, 1.0};
        mesh.continuum.push_back(element);
    }
    for (const int k : {1, 2, 3})
        mesh.trusses.push_back({10 + k, k, k + 1, 5});
    return mesh;
}

const Quadrilateral LEANING{2, {2.25, 1}, {1.25, 1}};

class LineUpRun {
public:
    explicit LineUpRun(const std::vector<Quadrilateral>& quadrilaterals, const char* text = "1\n")
        : run_(Kind::displacement, truss_line(quadrilaterals), {}) {
        if (text != nullptr)
            run_.project.write_work("LineUp.dat", text);
        again();
    }
    void again() {
        run_.run();
        mesh = expect_sound_mesh(run_.project, "out.Mes", Kind::displacement).mesh;
    }
    const Project& project() const { return run_.project; }
    // The places of the first nodes on the line.
    std::vector<double> places(std::size_t count = 4) const {
        std::vector<double> x;
        for (std::size_t i = 0; i < count; ++i) {
            x.push_back(mesh.nodes.at(i).x);
            EXPECT_EQ(mesh.nodes.at(i).y, 0.0);
        }
        return x;
    }
    Mesh mesh;

private:
    GroupProject run_;
};

const std::vector<double> UNMOVED{0.0, 1.0, 2.0, 3.0};

// --- the switch ----------------------------------------------------------------------------------

TEST(LineUpRuns, TrussStandsLevelWithTheOppositeEdge) {
    const LineUpRun run({LEANING});
    EXPECT_EQ(run.places(), (std::vector<double>{0.0, 1.25, 2.25, 3.0}));
    EXPECT_EQ(run.mesh.trusses.size(), 3U);
    expect_work_file(run.project(), "LineUp.dat", {"           0"});
}

TEST(LineUpRuns, WithoutTheSwitchFileNothingMovesAndNoFileAppears) {
    const LineUpRun run({LEANING}, nullptr);
    EXPECT_EQ(run.places(), UNMOVED);
    EXPECT_FALSE(run.project().exists_work("LineUp.dat"));
}

TEST(LineUpRuns, NextRunFinds0) {
    LineUpRun run({LEANING});
    run.again();
    EXPECT_EQ(run.places(), UNMOVED);
    expect_work_file(run.project(), "LineUp.dat", {"           0"});
}

TEST(LineUpRuns, Value0LeavesMeshAndFile) {
    const LineUpRun run({LEANING}, "0 off\n");
    EXPECT_EQ(run.places(), UNMOVED);
    expect_work_file(run.project(), "LineUp.dat", {"0 off"});
}

TEST(LineUpRuns, NegativeValueWorksInEveryRunAndLeavesTheFile) {
    LineUpRun run({LEANING}, "-1\n");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(run.places(), (std::vector<double>{0.0, 1.25, 2.25, 3.0}));
        expect_work_file(run.project(), "LineUp.dat", {"-1"});
        run.again();
    }
}

TEST(LineUpRuns, AnotherEditUsesTheSwitchUpWithoutMoving) {
    const GroupProject run(Kind::displacement, truss_line({LEANING}), {});
    run.project.deck(text_of({"1", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"}));
    run.project.write_work("LineUp.dat", "3\n");
    run.run();
    expect_work_file(run.project, "LineUp.dat", {"           0"});
    EXPECT_EQ(check_mesh(run.project.read("out.Mes"), Kind::displacement).mesh.nodes.at(1).x, 1.0);
}

TEST(LineUpRuns, BaseMeshUsesTheSwitchUpAndACombinationDoesNot) {
    const Project project(Kind::displacement);
    project.write_work("LineUp.dat", "1\n");
    project.deck("2 0\n1 1\n0. 0.\n4. 1. 0.5\n2. 1. 0.5\n0\n");
    expect_finished(project.run());
    expect_work_file(project, "LineUp.dat", {"           0"});
    project.write("a.Mes", sample_mesh(Kind::displacement).text());
    project.write("b.Mes", sample_mesh(Kind::displacement).text());
    project.write_work("LineUp.dat", "1\n");
    project.deck("0\na.Mes\nb.Mes\nc.Mes\n0\n");
    expect_finished(project.run());
    expect_work_file(project, "LineUp.dat", {"1"});
}

TEST(LineUpRuns, TraceShowsSwitchNodesAndMoves) {
    const GroupProject run(Kind::displacement, truss_line({{2, {2, 1}, {-0.25, 1}}}), {});
    run.project.write_work("LineUp.dat", "2\n");
    run.project.write_data("DEBUG/Brelan_P1.dat", "1 15\n");
    run.run();
    EXPECT_EQ(section(lines_of(run.project.read_work("Brelan_P1.deb")), "  Pass 14.4 ", "  Pass 15 "),
              (Lines{"  Pass 14.4 ", "  Pass 14.5  LINEUP =            2", "  Pass 14.6  NLNP =            2",
                     "  Pass 14.7  NMOVE =            1"}));
}

// Two texts carry 14.6: the first closes the trace, and the second goes to the default file with what
// follows.
TEST(LineUpRuns, SecondFiringAt146FindsTheTraceClosed) {
    const GroupProject run(Kind::displacement, truss_line({{2, {2, 1}, {-0.25, 1}}}), {});
    run.project.write_work("LineUp.dat", "1\n");
    run.project.write_data("DEBUG/Brelan_P1.dat", "1 14.6\n");
    run.run();
    EXPECT_EQ(lines_of(run.project.read_work("Brelan_P1.deb")).back(), "  Pass 14.6  NLNP =            2");
    expect_work_file(run.project, "fort.888",
                     {"  Pass 14.7  NMOVE =            1", "  Pass 27.1.1 ",
                      "  GROUP_SORT: Beginning NGROUP =            0"});
}

// --- the mesh ------------------------------------------------------------------------------------

TEST(LineUpRuns, QuadrilateralOfAnotherMaterialMovesNothing) {
    for (const int material : {1, 8, -7}) {
        Quadrilateral other = LEANING;
        other.material = material;
        EXPECT_EQ(LineUpRun({other}).places(), UNMOVED) << material;
    }
}

TEST(LineUpRuns, SlantedOppositeEdgeMovesNothing) {
    EXPECT_EQ(LineUpRun({{2, {2.25, 1.5}, {1.25, 1}}}).places(), UNMOVED);
}

// Node 2 is the end of truss 11 and the beginning of truss 12.
TEST(LineUpRuns, NodeOfTwoTrussesMovesOnceAndTheFirstSlideStands) {
    const LineUpRun run({{1, {1.25, 1}, {0.25, 1}}, {2, {2.5, 1}, {1.5, 1}}});
    EXPECT_EQ(run.places(), (std::vector<double>{0.25, 1.25, 2.5, 3.0}));
}

// C lies to the left of node 1: node 1 becomes one with node 2, and truss 11 is gone.
TEST(LineUpRuns, NodeThatIsPassedMergesAndItsTrussDisappears) {
    const LineUpRun run({{2, {2, 1}, {-0.25, 1}}});
    EXPECT_EQ(run.places(3), (std::vector<double>{-0.25, 2.0, 3.0}));
    EXPECT_EQ(run.mesh.nodes.size(), 5U);
    ASSERT_EQ(run.mesh.trusses.size(), 2U);
    EXPECT_EQ(run.mesh.trusses[0].i, 1);
    EXPECT_EQ(run.mesh.trusses[0].j, 2);
}

TEST(LineUpRuns, NodeBehindTheTrussThatIsPassedMergesToo) {
    const LineUpRun run({{2, {3.5, 1}, {1, 1}}});
    EXPECT_EQ(run.places(3), (std::vector<double>{0.0, 1.0, 3.5}));
    ASSERT_EQ(run.mesh.trusses.size(), 2U);
    EXPECT_EQ(run.mesh.trusses[1].j, 3);
}

TEST(LineUpRuns, EndOfTheLineStaysWhenItWouldHaveToGoBeyond) {
    EXPECT_EQ(LineUpRun({{1, {0.75, 1}, {-0.5, 1}}}).places(), (std::vector<double>{0.0, 0.75, 2.0, 3.0}));
    EXPECT_EQ(LineUpRun({{3, {3.5, 1}, {2.5, 1}}}).places(), (std::vector<double>{0.0, 1.0, 2.5, 3.0}));
}

// The rows of the defaults file give way to the merges of the line-up, not to its slides.
TEST(LineUpRuns, MovesOfTheDefaultsFileAreMadeUnlessTheLineUpMergesNodes) {
    const std::string defaults = "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n1\n4 3 0.5\n";
    const GroupProject slides(Kind::displacement, truss_line({{2, {2, 1}, {1.5, 1}}}), {});
    slides.project.write_data("DV-BRELAN.dat", defaults);
    slides.project.write_work("LineUp.dat", "1\n");
    slides.run();
    EXPECT_EQ(check_mesh(slides.project.read("out.Mes"), Kind::displacement).mesh.nodes.at(3).x, 2.5);
    const GroupProject merges(Kind::displacement, truss_line({{2, {2, 1}, {-0.25, 1}}}), {});
    merges.project.write_data("DV-BRELAN.dat", defaults);
    merges.project.write_work("LineUp.dat", "1\n");
    merges.run();
    EXPECT_EQ(check_mesh(merges.project.read("out.Mes"), Kind::displacement).mesh.nodes.at(2).x, 3.0);
}

}  // namespace
}  // namespace brelan::test
