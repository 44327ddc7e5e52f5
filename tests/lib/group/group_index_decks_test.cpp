// Whole runs of random decks with groups, once with all indexes of the engine and once with plain scans: both
// leave the same files to the byte, whether a run finishes, stops or fails.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <memory>

#include "run/driver.h"
#include "run/run.h"
#include "support/campaign.h"
#include "support/group_drawing.h"
#include "support/mesh.h"
#include "text/run_end.h"

namespace brelan::test {
namespace {

// The mesh as a file; the two first code words of a coded node keep it where it is.
Mesh mesh_file(Drawing& drawing, const DrawnMesh& drawn, Kind kind) {
    Mesh mesh;
    mesh.kind = kind;
    const bool mechanical = kind == Kind::coupled || kind == Kind::displacement;
    const int gap = drawing.one_in(3) ? 7 : 1;  // between numbers, which leaves some unused
    const auto number = [&](std::int32_t n) { return gap * (n - 1) + (gap > 1 ? 3 : 1); };
    for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
        MeshNode node;
        node.number = number(static_cast<std::int32_t>(i) + 1);
        node.codes.assign(kind == Kind::coupled ? 5 : kind == Kind::displacement ? 3 : 2, 0);
        node.codes[0] = drawn.coded[i] ? 1 : 0;
        node.codes.back() = drawing.below(2);
        node.x = static_cast<double>(drawn.nodes[i].x);
        node.y = static_cast<double>(drawn.nodes[i].y);
        node.value = mechanical ? 0.0 : drawing.below(3);
        node.factor = mechanical ? 0.0 : 1.0;
        mesh.nodes.push_back(node);
    }
    for (const auto& n : drawn.elements) {
        MeshElement element;
        element.number = static_cast<int>(mesh.continuum.size()) * 2 + 1;
        for (std::size_t k = 0; k < 4; ++k)
            element.corners[k] = n[k] > 0 ? number(n[k]) : 0;
        element.material = 1 + drawing.below(2);
        element.codes.assign(kind == Kind::coupled ? 4 : mechanical ? 0 : 1, 0);
        element.reals.assign(kind == Kind::coupled ? 1 : mechanical ? 2 : 0, 1.0);
        mesh.continuum.push_back(element);
    }
    return mesh;
}

DrawnGroup any_group(Drawing& drawing, const DrawnMesh& mesh) {
    static constexpr std::array<Course, 3> courses{Course::any_slope, Course::along_sides,
                                                   Course::through_corners};
    DrawnGroup group;
    switch (drawing.below(8)) {
        case 0:
        case 1:
        case 2:
            group = draw_line(drawing, mesh, drawing.one_of(courses));
            if (drawing.one_in(3))
                group.OVERLAY = 1;
            else if (drawing.one_in(2))
                make_joint(group, drawing.one_in(2) ? 0.0F : 0.05F);
            break;
        case 3:
        case 4:
            group = draw_arc(drawing, mesh);
            break;
        default:
            group = draw_outline(drawing, mesh);
    }
    if (group.MTYPE == 3) {
        static constexpr std::array<int, 8> types{3, 3, 4, 4, 1, -1, -3, -4};
        const int type = drawing.one_of(types);
        if (type < -1)
            make_joint(group, drawing.one_in(2) ? 0.0F : 0.04F);
        group.MTYPE = type;
        group.OVERLAY = drawing.one_in(5) ? 1 : 0;
        group.MATold = drawing.one_in(2) ? 5 : 0;
    }
    if (group.MTYPE < -1) {
        group.LTo = drawing.below(4);
        group.LMo = drawing.below(3);
        if (drawing.one_in(3))
            group.LTi = -group.LTi;
    }
    return group;
}

// The sound cut has no use for the wide tolerances of some defaults.
void lay_out(const Project& project, Drawing& drawing, Kind kind, CutMethod cut) {
    const DrawnMesh mesh = draw_mesh(drawing, 9);
    project.write("mesh.Mes", mesh_file(drawing, mesh, kind).text());
    static constexpr std::array<const char*, 5> defaults{
        "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n", "1 0.01 0.05 0.01\n0 0.01 0 0 0 0 0 0\n0\n",
        "2 0.05 0.01 0.1\n0 0.01 0 0 0 0 0 0\n0\n", "1 0.01 0.01 0.6\n1 0.3 1 2 3 1 2 3\n0\n",
        "0 0.02 0.01 0.01\n0 0.01 0 0 0 0 0 0\n1\n1 2 0.5\n"};
    project.write("DV-BRELAN.dat", cut == CutMethod::sound ? defaults.front() : drawing.one_of(defaults));
    const int groups = 2 + drawing.below(6);
    std::vector<std::string> deck{
        "1 0", "mesh.Mes", "out.Mes", "1 1", "4", "0", "0", "0", std::to_string(groups), "0 0 0"};
    for (int g = 0; g < groups; ++g)
        for (const std::string& card : cards_of(any_group(drawing, mesh)))
            deck.push_back(card);
    project.deck(text_of(deck));
}

// The run of a project in a process of its own, with the indexes or without. What it says goes to a file.
int run_in_child(const Project& project, CutMethod cut, bool with_indexes) {
    const pid_t child = ::fork();
    if (child != 0) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }
    int status = STATUS_FINISHED;
    std::ofstream said(project.file("said"));
    KeptConsole console;
    const auto run = std::make_unique<Run>(Directories{project.work_file(""), project.drive()}, console);
    run->cut = cut;
    try {
        run->engine.uses_indexes = with_indexes;
        run_program(*run);
        run->channels.flush_all();
    } catch (const RunEnd& end) {
        said << end.text << "\n";
        status = end.status;
    }
    run->channels.close_all();
    said << console.text();
    said.close();
    ::_exit(status);
}

void hold_runs_against_each_other(Kind kind, CutMethod cut, std::uint32_t first_seed, int fewest_of_thirty) {
    const int decks = rounds(cut == CutMethod::sound ? 4 : 6, 300);
    std::map<int, int> ends;
    for (int d = 0; d < decks; ++d) {
        const std::uint32_t seed = first_seed + static_cast<std::uint32_t>(d);
        const Project one(kind), two(kind);
        Drawing drawing(seed), again(seed);
        lay_out(one, drawing, kind, cut);
        lay_out(two, again, kind, cut);
        const int status = run_in_child(one, cut, true);
        ASSERT_TRUE(WIFEXITED(status)) << "seed " << seed;
        EXPECT_EQ(run_in_child(two, cut, false), status) << "seed " << seed;
        const Snapshot files = one.snapshot(), scanned = two.snapshot();
        EXPECT_TRUE(files == scanned) << "seed " << seed;
        EXPECT_TRUE(one.exists("said") && one.exists_work("FILEA.TMP")) << "seed " << seed;
        ++ends[WEXITSTATUS(status)];
        if (testing::Test::HasFailure())
            return;
    }
    // One or two tell nothing of how many finish.
    if (decks > 2) {
        EXPECT_GE(30 * ends[STATUS_FINISHED], fewest_of_thirty * decks);
    }
}

TEST(GroupIndexDecks, CoupledRunsAreThoseOfScans) {
    hold_runs_against_each_other(Kind::coupled, CutMethod::by_rules, 1000, 20);
}

TEST(GroupIndexDecks, TemperatureRunsAreThoseOfScans) {
    hold_runs_against_each_other(Kind::temperature, CutMethod::by_rules, 2000, 20);
}

TEST(GroupIndexDecks, HeadRunsAreThoseOfScans) {
    hold_runs_against_each_other(Kind::head, CutMethod::by_rules, 3000, 10);
}

TEST(GroupIndexDecks, DisplacementRunsAreThoseOfScans) {
    hold_runs_against_each_other(Kind::displacement, CutMethod::by_rules, 4000, 20);
}

TEST(GroupIndexDecks, RunsOfTheSoundCutAreThoseOfScans) {
    hold_runs_against_each_other(Kind::coupled, CutMethod::sound, 5000, 10);
    hold_runs_against_each_other(Kind::head, CutMethod::sound, 6000, 5);
}

}  // namespace
}  // namespace brelan::test
