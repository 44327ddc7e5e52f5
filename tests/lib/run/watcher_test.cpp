// A watcher is told how far a run has come, and may end it: then nothing of it is left, and no other run
// knows of it.

#include <algorithm>
#include <string>
#include <vector>

#include "lib/run/memory_run.h"
#include "run/run_deck.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

// A step of a run as one word: "deck 1/1: 14.2 [2/3 Clay]".
std::string word_of(const RunProgress& progress) {
    std::string word = std::to_string(progress.deck) + "/" + std::to_string(progress.decks) + " " +
                       std::string(progress.pass);
    if (progress.groups != 0)
        word += " " + std::to_string(progress.group) + "/" + std::to_string(progress.groups) + " " +
                std::string(progress.title);
    return word;
}

// Notes the steps and ends the run at the call of a number, from 0.
class Witness : public RunWatcher {
public:
    static constexpr std::size_t NEVER = static_cast<std::size_t>(-1);

    explicit Witness(std::size_t last = NEVER) : last_(last) {}

    bool goes_on(const RunProgress& progress) noexcept override {
        if (std::string word = word_of(progress); steps.empty() || steps.back() != word) {
            steps.push_back(std::move(word));
            step_calls.push_back(calls);
        }
        return calls++ != last_;
    }

    std::vector<std::string> steps;
    std::vector<std::size_t> step_calls;  // the first call of each
    std::size_t calls = 0;

private:
    std::size_t last_;
};

struct WatchedDeck {
    const char* name;
    Kind kind;
    CutMethod cut;
};

// Of a run with many decks the steps of some are left out. A build with sanitizers ends a run at one in so
// many of the others; in `scripts/long` at all of them.
std::size_t stride_over(const std::vector<std::string>& steps) {
    const std::size_t share = is_long_run() ? 1 : SAMPLE_SHARE;
    return share * (steps.size() > 60 ? 11 : 1);
}

class RunsWatched : public ::testing::TestWithParam<WatchedDeck> {
protected:
    RunsWatched() : project(GetParam().kind) {
        for (const char* mesh : {"Quay.Mes", "Row.Mes"})
            project.write(mesh, example(mesh));
        if (std::string_view(GetParam().name) == "pit_join.dat")
            for (const char* half : {"pit_left.dat", "pit_right.dat"}) {
                lay_out(project, GetParam().kind, example(half));
                expect_finished(project.run());
            }
        lay_out(project, GetParam().kind, example(GetParam().name));
    }

    RunInput input(RunWatcher* watcher) const {
        RunInput input = input_of(project, Listings::left_out);
        input.cut = GetParam().cut;
        input.watcher = watcher;
        return input;
    }

    const Project project;
};

std::map<std::string, std::string> texts_of(const brelan::RunResult& result) {
    std::map<std::string, std::string> texts;
    for (const std::string& name : result.files->names())
        texts[name] = std::string(result.files->text(name));
    return texts;
}

TEST_P(RunsWatched, LeaveWhatTheyLeaveUnwatched) {
    Witness witness;
    const brelan::RunResult alone = run_deck(input(nullptr)), watched = run_deck(input(&witness));
    ASSERT_EQ(alone.end.status, STATUS_FINISHED) << alone.end.text;
    EXPECT_EQ(watched.end.status, STATUS_FINISHED);
    EXPECT_EQ(watched.mesh, alone.mesh);
    EXPECT_TRUE(texts_of(watched) == texts_of(alone));
}

TEST_P(RunsWatched, EndAtEachStepAndLeaveOthersAlone) {
    Witness witness;
    const RunInput whole = input(&witness);
    const auto before = texts_of(run_deck(whole));
    ASSERT_GT(witness.steps.size(), 10U);
    RunInput again = input(nullptr);
    for (std::size_t i = 0; i < witness.steps.size(); i += stride_over(witness.steps)) {
        Witness ending(witness.step_calls[i]);
        again.watcher = &ending;
        const brelan::RunResult ended = run_deck(again);
        EXPECT_EQ(ended.end.status, STATUS_ENDED) << witness.steps[i];
        EXPECT_EQ(ended.end.text, "the run was ended");
        EXPECT_EQ(ended.mesh, "");
        EXPECT_TRUE(ended.activity.empty());
        ASSERT_EQ(ending.steps, std::vector(witness.steps.begin(),
                                            witness.steps.begin() + static_cast<std::ptrdiff_t>(i) + 1));
    }
    again.watcher = nullptr;
    EXPECT_TRUE(texts_of(run_deck(again)) == before);
}

// Within a step the watcher is asked as well.
TEST_P(RunsWatched, EndWithinAStep) {
    Witness witness;
    const RunInput whole = input(&witness);
    run_deck(whole);
    const std::size_t ends = is_long_run() ? 20 : 20 / SAMPLE_SHARE;
    for (std::size_t call = 0; call < witness.calls; call += 1 + witness.calls / ends) {
        Witness ending(call);
        RunInput ended = whole;
        ended.watcher = &ending;
        EXPECT_EQ(run_deck(ended).end.status, STATUS_ENDED) << call;
        EXPECT_EQ(ending.calls, call + 1);
    }
}

std::size_t open_files() {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

// On disk no result has taken its place, no text beside its place is left, and all files are closed. What the
// passes renew at once are settings.
TEST_P(RunsWatched, LeaveNoResultOnDisk) {
    Witness witness;
    const std::string mesh = run_deck(input(&witness)).mesh;
    const auto names = [&] {
        std::vector<std::string> found;
        for (const auto& [path, text] : project.snapshot())
            if (path.find("/work/") == std::string::npos && !path.ends_with("/DV-BRELAN.dat") &&
                !path.ends_with("/FnPlot2D.dat"))
                found.push_back(path);
        return found;
    };
    const std::vector<std::string> before = names();
    const std::size_t files = open_files();
    // The decks of a dam leave each its own: those before the one that is ended have.
    const bool is_dam = std::string_view(GetParam().name) == "dam.dat";
    // From the middle of a stride: other steps than those of the runs in memory.
    const std::size_t stride = stride_over(witness.steps);
    for (std::size_t i = stride / 2; i < witness.steps.size(); i += stride) {
        Witness ending(witness.step_calls[i]);
        const brelan::RunResult ended =
            run_deck(Directories{project.work_file(""), project.drive()}, GetParam().cut, &ending);
        EXPECT_EQ(ended.end.status, STATUS_ENDED);
        EXPECT_EQ(open_files(), files);
        EXPECT_TRUE(is_dam || !project.exists(mesh)) << mesh;
    }
    for (const std::string& name : names())
        EXPECT_TRUE(is_dam || std::find(before.begin(), before.end(), name) != before.end()) << name;
}

INSTANTIATE_TEST_SUITE_P(
    Decks, RunsWatched,
    ::testing::Values(WatchedDeck{"crossing.dat", Kind::displacement, CutMethod::by_rules},
                      WatchedDeck{"crossing.dat", Kind::head, CutMethod::sound},
                      WatchedDeck{"stage.dat", Kind::displacement, CutMethod::by_rules},
                      WatchedDeck{"mirror.dat", Kind::displacement, CutMethod::by_rules},
                      WatchedDeck{"pit_left.dat", Kind::temperature, CutMethod::by_rules},
                      WatchedDeck{"pit_join.dat", Kind::coupled, CutMethod::by_rules},
                      WatchedDeck{"dam.dat", Kind::displacement, CutMethod::by_rules},
                      WatchedDeck{"dam.dat", Kind::displacement, CutMethod::sound}),
    [](const auto& deck) {
        const std::string name = deck.param.name;
        return name.substr(0, name.find('.')) + (deck.param.cut == CutMethod::sound ? "Sound" : "ByRules");
    });

// --- what is told ----------------------------------------------------------------------------------------

// The deck makes a base mesh and draws three groups over it.
TEST(RunProgressTold, PassesAndGroupsInTheirOrder) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("crossing.dat"));
    Witness witness;
    RunInput input = input_of(project);
    input.watcher = &witness;
    ASSERT_EQ(run_deck(input).end.status, STATUS_FINISHED);
    std::vector<std::string> expected = {"0/0 2"};
    for (const char* step : {"3",
                             "4A",
                             "4B",
                             "4D",
                             "5E",
                             "6",
                             "8",
                             "9",
                             "10",
                             "11",
                             "14.1",
                             "14.2",
                             "14.2 1/3 Clay below a sloping level",
                             "14.2 2/3 Trench",
                             "14.2 3/3 Lens of sand",
                             "14.3",
                             "14.4",
                             "14.7",
                             "15",
                             "16",
                             "17",
                             "18",
                             "19",
                             "20",
                             "21",
                             "22.1",
                             "22.2",
                             "23",
                             "24",
                             "27.1",
                             "27.2"})
        expected.push_back("1/1 " + std::string(step));
    EXPECT_EQ(witness.steps, expected);
}

// The decks of an earth dam are known when its own deck has been read.
TEST(RunProgressTold, DecksOfADam) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("dam.dat"));
    Witness witness;
    RunInput input = input_of(project);
    input.watcher = &witness;
    ASSERT_EQ(run_deck(input).end.status, STATUS_FINISHED);
    std::vector<std::string> begun;
    for (const std::string& step : witness.steps)
        if (step.ends_with(" 3"))
            begun.push_back(step);
    ASSERT_GT(begun.size(), 2U);
    for (std::size_t i = 0; i < begun.size(); ++i)
        EXPECT_EQ(begun[i], std::to_string(i + 1) + "/" + std::to_string(begun.size()) + " 3");
}

TEST(PassName, IsTheWordBehindPass) {
    EXPECT_EQ(pass_name(" Pass 14.5  LINEUP = "), "14.5");
    EXPECT_EQ(pass_name(" Pass 4A "), "4A");
    EXPECT_EQ(pass_name(" Pass 3 ..."), "3");
    EXPECT_EQ(pass_name("  14.5 Pass"), "");
    EXPECT_EQ(pass_name(""), "");
}

}  // namespace
}  // namespace brelan::test
