// Runs in one process: each has all that is its own, so two at a time leave what they leave one after the
// other, and the floating-point mode of the thread is as it was.

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <thread>

#include "lib/run/memory_run.h"
#include "run/run_deck.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

struct Ended {
    int status = STATUS_FINISHED;
    std::string said;
    bool operator==(const Ended&) const = default;
};

// The run of a project in this process, on disk.
Ended run_here(const Project& project) {
    const brelan::RunResult result = run_deck(Directories{project.work_file(""), project.drive()});
    return {result.end.status, result.end.text + result.console};
}

struct Pair {
    const char *one, *other;  // decks of the examples
    Kind kind, other_kind;
    int status = STATUS_FINISHED;  // of both
};

void hold_side_by_side_against_one_after_the_other(const Pair& pair) {
    const Project first(pair.kind), second(pair.other_kind), one(pair.kind), other(pair.other_kind);
    for (const Project* project : {&first, &one})
        lay_out(*project, pair.kind, example(pair.one));
    for (const Project* project : {&second, &other})
        lay_out(*project, pair.other_kind, example(pair.other));
    const Ended first_end = run_here(first), second_end = run_here(second);
    Ended one_end, other_end;
    std::thread beside([&] { other_end = run_here(other); });
    one_end = run_here(one);
    beside.join();
    EXPECT_EQ(first_end.status, pair.status) << first_end.said;
    EXPECT_TRUE(one_end == first_end) << one_end.said;
    EXPECT_TRUE(other_end == second_end) << other_end.said;
    EXPECT_TRUE(one.snapshot() == first.snapshot()) << pair.one;
    EXPECT_TRUE(other.snapshot() == second.snapshot()) << pair.other;
}

TEST(RunsSideBySide, LeaveTheFilesThatTheyLeaveOneAfterTheOther) {
    for (int round = 0; round < rounds(3); ++round) {
        hold_side_by_side_against_one_after_the_other(
            {"pit_stages.dat", "dam.dat", Kind::displacement, Kind::displacement});
        hold_side_by_side_against_one_after_the_other(
            {"pit_left.dat", "pit_left.dat", Kind::head, Kind::coupled});
        hold_side_by_side_against_one_after_the_other(
            {"stage.dat", "pit_stages.dat", Kind::displacement, Kind::displacement});
    }
}

// Its mesh is not there.
TEST(RunsSideBySide, FailWithoutAnEffectOnTheOther) {
    hold_side_by_side_against_one_after_the_other(
        {"mirror.dat", "dam.dat", Kind::displacement, Kind::displacement, STATUS_FAILED});
}

// Name and text of each file that a run in memory left.
std::map<std::string, std::string> left_by(const brelan::RunResult& result) {
    std::map<std::string, std::string> left;
    for (const std::string& name : result.files->names())
        left[name] = result.files->text("..\\..\\" + name);
    return left;
}

TEST(RunsSideBySide, LeaveTheSameTextsInMemory) {
    const Project pit(Kind::displacement), dam(Kind::coupled);
    lay_out(pit, Kind::displacement, example("pit_stages.dat"));
    lay_out(dam, Kind::coupled, example("dam.dat"));
    const RunInput one = input_of(pit, Listings::left_out), other = input_of(dam, Listings::left_out);
    const brelan::RunResult first = run_deck(one), second = run_deck(other);
    EXPECT_EQ(first.end.status, STATUS_FINISHED) << first.end.text;
    EXPECT_EQ(second.end.status, STATUS_FINISHED) << second.end.text;
    for (int round = 0; round < rounds(3); ++round) {
        brelan::RunResult beside;
        std::thread thread([&] { beside = run_deck(other); });
        const brelan::RunResult here = run_deck(one);
        thread.join();
        EXPECT_TRUE(left_by(here) == left_by(first));
        EXPECT_TRUE(left_by(beside) == left_by(second));
    }
}

TEST(RunsSideBySide, GiveTheFloatingPointModeBack) {
    const Project project(Kind::displacement);
    lay_out(project, Kind::displacement, example("pit_left.dat"));
    EXPECT_EQ(run_here(project).status, STATUS_FINISHED);
    volatile float smallest = std::numeric_limits<float>::min();
    EXPECT_GT(smallest / 2.0F, 0.0F);
}

}  // namespace
}  // namespace brelan::test
