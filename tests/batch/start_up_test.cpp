// What the batch program finds before and around a run: a directory that cannot be read, a console that takes
// nothing, a disk without room.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "batch/edit_run.h"
#include "support/mesh.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

TEST(StartUpFails, WorkingDirectoryThatCannotBeReadIsAMessage) {
    const Project project(Kind::head);
    project.deck("0\n");
    const fs::path work = project.work_file("").parent_path();
    fs::permissions(work, fs::perms::owner_write | fs::perms::owner_exec);
    RunOptions options;
    options.unprivileged = true;
    const RunResult result = project.run("", options);
    fs::permissions(work, fs::perms::owner_all);
    expect_failed(result, {"the run cannot go on: Permission denied"});
}

// Runs the program by a shell that has been prepared; gives its exit status.
int run_prepared(const Project& project, const std::string& preparation, const std::string& out,
                 const std::string& errors = "../said") {
    const fs::path work = project.work_file("").parent_path();
    const std::string command = "cd '" + work.string() + "' && " + preparation + " BRELAN_DRIVE_C='" +
                                project.drive().string() + "' '" BRELAN_PROGRAM "' < /dev/null > " + out +
                                " 2> " + errors;
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StartUpFails, ConsoleThatTakesNothingIsAMessage) {
    const Project project(Kind::head);
    fs::remove(project.work_file("TFNAME.TMP"));
    project.write_data("MANUAL.DAT", "1\n");  // asks for the deck
    project.write_data("HUBPLOT.DAT", "0\n");
    EXPECT_EQ(run_prepared(project, "", "/dev/full"), 2);
    EXPECT_EQ(project.read("said"), "brelan2d: console: standard output cannot be written\n");
}

TEST(StartUpFails, StatusIsRightWhereNoMessageCanBeShown) {
    const Project project(Kind::head);
    project.deck("1 0\nnone.Mes\n");
    EXPECT_EQ(run_prepared(project, "", "../shown", "/dev/full"), 2);
    EXPECT_EQ(project.read("shown"), "");
}

// A block of 512 bytes holds neither the copy of the deck nor the mesh.
TEST(StartUpFails, DiskWithoutRoomIsAMessage) {
    const Project project(Kind::head);
    project.write("mesh.Mes", sample_mesh(Kind::head).text());
    project.deck("1 0\nmesh.Mes\nout.Mes\n1 1\n0\n0 0 0 0\n1 1\n");
    EXPECT_EQ(run_prepared(project, "trap '' XFSZ; ulimit -f 1;", "/dev/null"), 2);
    const std::string said = project.read("said");
    EXPECT_EQ(said.find("brelan2d: "), 0U) << said;
    EXPECT_NE(said.substr(0, said.find('\n')).find("File too large"), std::string::npos) << said;
    EXPECT_FALSE(fs::exists(project.file("out.Mes")));
}

// The size that is asked for is written as the run stops.
TEST(StartUpFails, DiskWithoutRoomAtAStopIsAMessage) {
    const Project project(Kind::displacement);
    fs::create_symlink("/dev/full", project.work_file("Coord.dat"));
    project.deck("2\n1 1\n0 0\n1E5 1 0.5\n1E5 1 0.5\n0\n");
    EXPECT_EQ(run_prepared(project, "", "../shown"), 2);
    EXPECT_EQ(project.read("said"),
              "brelan2d: Coord.dat: the file cannot be written: No space left on device\n");
    EXPECT_EQ(project.read("shown"), "");
}

}  // namespace
}  // namespace brelan::test
