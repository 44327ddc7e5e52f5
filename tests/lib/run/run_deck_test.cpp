// Decks run in memory leave what the program leaves on disk, and say the same.

#include "run/run_deck.h"

#include "lib/run/memory_run.h"

namespace brelan::test {
namespace {

// What the program says at the end of a run.
std::string said(const brelan::RunResult& result) {
    return result.end.status == STATUS_FAILED    ? "brelan2d: " + result.end.text + "\n"
           : result.end.status == STATUS_STOPPED ? result.console + result.end.text + "\n"
                                                 : result.console;
}

// Runs the deck of a project in memory, then by the program: status, texts and all files are the same.
brelan::RunResult hold_against_the_program(const Project& project) {
    const brelan::RunResult result = run_deck(input_of(project)),
                            brief = run_deck(input_of(project, Listings::left_out));
    const RunResult program = project.run();
    EXPECT_EQ(result.end.status, program.status) << result.end.text;
    EXPECT_EQ(said(result), program.out + program.err);
    EXPECT_EQ(said(brief), said(result));
    const auto files = files_of(project);
    EXPECT_EQ(result.files->names().size(), files.size());
    for (const auto& [name, text] : files) {
        EXPECT_TRUE(result.files->contains(name)) << name;
        EXPECT_TRUE(result.files->text(name) == text) << name;
        EXPECT_TRUE(!brief.files->contains(name) || brief.files->text(name) == text)
            << name << ", listings left out";
    }
    EXPECT_EQ(brief.mesh, result.mesh);
    EXPECT_TRUE(result.end.status != STATUS_FINISHED || brief.files->contains("..\\" + result.mesh) ||
                brief.files->contains(result.mesh))
        << result.mesh;
    return result;
}

class RunsInMemory : public ::testing::TestWithParam<Kind> {
protected:
    const Project project{GetParam()};
    void deck(std::string_view text) const { lay_out(project, GetParam(), text); }
};

TEST_P(RunsInMemory, BaseMesh) {
    deck("2 0\n2 2 1 1 0 1\n-0.3 1.5\n20. 1. -0.35\n10. 1. 0.5\n6. 0.7 0.5\n14. 1. 0.35\n0\n");
    EXPECT_EQ(hold_against_the_program(project).mesh, "Basic.Tmp");
    EXPECT_NE(project.read_work("Basic.Tmp"), "");
}

TEST_P(RunsInMemory, EditsAndACombination) {
    for (const char* name : {"pit_left.dat", "pit_right.dat", "pit_join.dat"}) {
        deck(example(name));
        EXPECT_EQ(hold_against_the_program(project).end.status, STATUS_FINISHED) << name;
    }
    EXPECT_NE(project.read("Pit.Mes"), "");
}

TEST_P(RunsInMemory, WrongCount) {
    for (const char* mode : {"0\n", "1\n"}) {
        project.write_data("MANUAL.DAT", mode);
        deck("2 0\n1 1\n0.\n4. 1. 0.5\n4. 1. 0.5\n0\n");
        const brelan::RunResult result = hold_against_the_program(project);
        EXPECT_EQ(result.end.status, STATUS_STOPPED);
        EXPECT_EQ(result.end.text, "300");
    }
}

TEST_P(RunsInMemory, UnreadableValue) {
    deck("* a base mesh\n2 0\n1 1\n0. 0.\n4. 1x 0.5\n4. 1. 0.5\n0\n");
    const brelan::RunResult result = hold_against_the_program(project);
    EXPECT_EQ(result.end.status, STATUS_FAILED);
    ASSERT_TRUE(result.end.place);
    EXPECT_EQ(result.end.place->file, "..\\deck.dat");
    EXPECT_EQ(result.end.place->line, 5);
}

TEST_P(RunsInMemory, MeshThatIsNotThere) {
    deck(example("mirror.dat"));
    EXPECT_EQ(hold_against_the_program(project).end.status, STATUS_FAILED);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RunsInMemory, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& kind) { return name_of(kind.param); });

// --- one kind ------------------------------------------------------------------------------------------

TEST(RunsInMemoryOnce, GroupsAndTheirOutputs) {
    const Project project(Kind::displacement);
    for (const char* name : {"stage.dat", "pit_stages.dat"}) {
        for (const char* mesh : {"Quay.Mes", "Row.Mes"})
            project.write(mesh, example(mesh));
        lay_out(project, Kind::displacement, example(name));
        EXPECT_EQ(hold_against_the_program(project).end.status, STATUS_FINISHED) << name;
    }
}

// The pit of stage.dat: the ground of elements 1 and 3 goes at step 2, the fill of their doubles 9 and 10
// comes at step 6, the wall of beams 11 and 12 at step 1.
TEST(RunsInMemoryOnce, TellsWhenElementsComeAndGo) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("stage.dat"));
    const RunInput input = input_of(project);
    const brelan::RunResult result = run_deck(input);
    ASSERT_EQ(result.end.status, STATUS_FINISHED) << result.end.text;
    std::string activity;
    for (const ElementActivity& e : result.activity)
        activity += to_string(e.element) + ":" + std::to_string(e.pair.activated) + "-" +
                    std::to_string(e.pair.deactivated) + "/" + to_string(e.old_material) + " ";
    EXPECT_EQ(activity, "1:0-2/2 3:0-2/2 9:6-0/5 10:6-0/5 11:1-0/0 12:1-0/0 ");
}

TEST(RunsInMemoryOnce, TellsNothingOfElementsWithoutActivity) {
    const Project project(Kind::displacement);
    for (const char* mesh : {"Quay.Mes", "Row.Mes"})
        project.write(mesh, example(mesh));
    lay_out(project, Kind::displacement, example("mirror.dat"));
    const brelan::RunResult result = run_deck(input_of(project));
    ASSERT_EQ(result.end.status, STATUS_FINISHED) << result.end.text;
    EXPECT_TRUE(result.activity.empty());
}

// What is passed on as a value is refused as its file is.
TEST(RunsInMemoryOnce, BaseMeshThatCannotBeReadBack) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, "2 0\n1 1\n0. 0.\n49996. 1. 0.5\n1. 1. 0.5\n0\n");
    EXPECT_EQ(hold_against_the_program(project).end.text,
              "..\\Bmesh.dat, line 3: expected a NUMNP of 0 to 99990, found 99994");
}

TEST(RunsInMemoryOnce, DamWithShells) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("dam.dat"));
    EXPECT_EQ(hold_against_the_program(project).end.status, STATUS_FINISHED);
}

TEST(RunsInMemoryOnce, TraceOfAllPasses) {
    const Project project(Kind::displacement);
    project.write_data("DEBUG/Brelan_P1.dat", "2 99.\n");
    lay_out(project, Kind::displacement, "2 0\n1 1\n0. 0.\n4. 1. 0.5\n4. 1. 0.5\n0\n");
    hold_against_the_program(project);
    EXPECT_NE(project.read_work("Brelan_P1.deb"), "");
}

TEST(RunsInMemoryOnce, NeedADeckAlone) {
    RunInput input;
    input.edition = 2;
    input.files["..\\deck.dat"] = "2 0\n1 1\n0. 0.\n4. 1. 0.5\n4. 1. 0.5\n0\n";
    const brelan::RunResult result = run_deck(input);
    EXPECT_EQ(result.end.status, STATUS_FINISHED) << result.end.text;
    EXPECT_TRUE(result.files->contains(result.mesh));
    for (const char* name : {"Coord.dat", "Index.dat", "Bmesh.Tmp", "FILEA.TMP", "MeshFile.Mes"})
        EXPECT_FALSE(result.files->contains(name)) << name;
}

TEST(RunsInMemoryOnce, NameThatIsNoneIsTheEndOfTheRun) {
    RunInput input;
    input.files["D:\\deck.dat"] = "";
    EXPECT_EQ(run_deck(input).end.status, STATUS_FAILED);
    input.files.clear();
    EXPECT_EQ(run_deck(input).end.text, "..\\deck.dat: expected a file, but there is none of this name");
}

// Numbers too small for full digits count as 0 in a run, and not behind it.
TEST(RunsInMemoryOnce, LeavesTheArithmeticAsItWas) {
    RunInput input;
    input.files["..\\deck.dat"] = "2 0\n1 1\n0. 0.\n4. 1. 0.5\n4. 1. 0.5\n0\n";
    ASSERT_EQ(run_deck(input).end.status, STATUS_FINISHED);
    volatile float tiny = 1.0E-38F;
    volatile float share = tiny / 16.0F;
    EXPECT_GT(share, 0.0F);
}

TEST(RunsInMemoryOnce, IsCutByTheMethodThatIsAskedFor) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("crossing.dat"));
    RunInput input = input_of(project);
    const brelan::RunResult by_rules = run_deck(input);
    input.cut = CutMethod::sound;
    const brelan::RunResult sound = run_deck(input);
    ASSERT_EQ(by_rules.end.status, STATUS_FINISHED) << by_rules.end.text;
    ASSERT_EQ(sound.end.status, STATUS_FINISHED) << sound.end.text;
    EXPECT_TRUE(by_rules.files->text(by_rules.mesh) != sound.files->text(sound.mesh));
}

}  // namespace
}  // namespace brelan::test
