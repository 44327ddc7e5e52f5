// Runs in one process: each has all that is its own, so two at a time leave what they leave one after the
// other, and the floating-point mode of the thread is as it was.

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "run/driver.h"
#include "run/run.h"
#include "support/project.h"
#include "text/run_end.h"

namespace brelan::test {
namespace {

struct Ended {
    int status = STATUS_FINISHED;
    std::string said;
    bool operator==(const Ended&) const = default;
};

// The run of a project in this process.
Ended run_here(const Project& project) {
    Ended ended;
    KeptConsole console;
    const auto run = std::make_unique<Run>(Directories{project.work_file(""), project.drive()}, console);
    try {
        run_program(*run);
    } catch (const RunEnd& end) {
        ended = {end.status, end.text};
    }
    run->channels.close_all();
    ended.said += console.text();
    return ended;
}

// An example with the data directory that the package brings.
void lay_out(const Project& project, std::string_view deck) {
    const std::filesystem::path source = BRELAN_SOURCE_DIR;
    project.deck(read_text(source / "examples" / deck));
    for (const char* file : {"DV-BRELAN.dat", "UNIT.DAT"})
        project.write_data(file, read_text(source / "data" / "Vork" / "Qx" / "Qxdata" / file));
}

struct Pair {
    const char *one, *other;  // decks of the examples
    Kind kind, other_kind;
    int status = STATUS_FINISHED;  // of both
};

void hold_side_by_side_against_one_after_the_other(const Pair& pair) {
    const Project first(pair.kind), second(pair.other_kind), one(pair.kind), other(pair.other_kind);
    for (const Project* project : {&first, &one})
        lay_out(*project, pair.one);
    for (const Project* project : {&second, &other})
        lay_out(*project, pair.other);
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
    for (int round = 0; round < 3; ++round) {
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

TEST(RunsSideBySide, GiveTheFloatingPointModeBack) {
    const Project project(Kind::displacement);
    lay_out(project, "pit_left.dat");
    EXPECT_EQ(run_here(project).status, STATUS_FINISHED);
    volatile float smallest = std::numeric_limits<float>::min();
    EXPECT_GT(smallest / 2.0F, 0.0F);
}

}  // namespace
}  // namespace brelan::test
