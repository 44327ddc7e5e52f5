// What a run never does to the files of its user: decks, sources and earlier results.
#include <sys/file.h>

#include <future>
#include <thread>

#include "batch/edit_run.h"
#include "batch/group_deck.h"
#include "support/mesh.h"
#include "text/directory_hold.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

// Moves a mesh up by 1 into a result; the two names are cards.
std::string edit_deck(const std::string& source, const std::string& result) {
    return text_of({"1", source, result, "1 1", "0", "0 0 0 1", "1 1"});
}

std::string taken(const std::string& written, const std::string& input) {
    return written + ": the run would write it in the place of " + input +
           ", which it reads; expected a file of its own";
}

class SafeFiles : public ::testing::Test {
protected:
    Project project;
    const std::string mesh = grid_mesh(Kind::displacement, 2, 2).text();

    SafeFiles() { project.write("mesh.Mes", mesh); }

    // The run fails with the message, and every file of the user's is as it was: the checker alone has been
    // at work.
    void expect_refused(const std::string& message) const {
        const Snapshot before = project.snapshot();
        expect_failed(project.run(), {message});
        for (const std::string& change : project.changed_since(before))
            if (!change.starts_with("project/work/") && change.find("FnPlot2D.dat") == std::string::npos)
                ADD_FAILURE() << change;
        EXPECT_FALSE(project.exists_work("TEMPO.TMP"));
    }
};

// --- the deck ----------------------------------------------------------------------------------------------

TEST_F(SafeFiles, AResultTakesNoPlaceOfTheDeckHoweverItIsSpelled) {
    for (const std::string result : {"deck.dat", ".\\..\\DECK.DAT", "..\\work\\..\\deck.dat"}) {
        project.deck(edit_deck("mesh.Mes", result));
        const std::string shown = result == "deck.dat" ? "..\\deck.dat" : result;
        expect_refused(taken(shown, "..\\deck.dat"));
    }
}

TEST_F(SafeFiles, AResultTakesNoPlaceOfTheDeckThroughALink) {
    project.deck(edit_deck("mesh.Mes", "link.Mes"));
    fs::create_symlink("deck.dat", project.file("link.Mes"));
    expect_refused(taken("..\\link.Mes", "..\\deck.dat"));
    fs::remove(project.file("link.Mes"));
    fs::create_hard_link(project.file("deck.dat"), project.file("link.Mes"));
    expect_refused(taken("..\\link.Mes", "..\\deck.dat"));
}

TEST_F(SafeFiles, ASideOutputTakesNoPlaceOfTheDeck) {
    for (const char* name : {"Group.Pos", "Group.Man", "MatAD.Man", "Boundary.Man"}) {
        project.deck(group_deck({{.title = "one", .line = outline({{0, 0}, {1, 0}, {1, 1}, {0, 1}})}}), name);
        expect_refused(taken(std::string("..\\") + name, std::string("..\\") + name));
    }
    project.deck(text_of({"2", "1 1", "0 0", "1 1 0.5", "1 1 0.5", "0"}), "Bmesh.dat");
    expect_refused(taken("..\\Bmesh.dat", "..\\Bmesh.dat"));
}

TEST_F(SafeFiles, ACombinationTakesNoPlaceOfTheDeck) {
    project.deck(text_of({"0", "mesh.Mes", "mesh.Mes", "deck.dat", "0"}));
    expect_refused(taken("..\\deck.dat", "..\\deck.dat"));
}

// --- other files that a run reads --------------------------------------------------------------------------

TEST_F(SafeFiles, NoResultTakesThePlaceOfTheDefaults) {
    project.write("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n");
    project.deck(group_deck({{.title = "one", .line = outline({{0, 0}, {1, 0}, {1, 1}, {0, 1}})}}));
    std::string deck = project.read("deck.dat");
    deck.replace(deck.find("out.Mes"), 7, "DV-BRELAN.dat");
    project.deck(deck);
    const std::string before = project.read("DV-BRELAN.dat");
    const RunResult result = project.run();
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("DV-BRELAN.dat"), std::string::npos) << result.err;
    EXPECT_EQ(project.read("DV-BRELAN.dat"), before);
}

TEST_F(SafeFiles, NoSideOutputTakesThePlaceOfASource) {
    project.write("Group.Pos", mesh);
    project.deck(group_deck({{.title = "one", .line = outline({{0, 0}, {1, 0}, {1, 1}, {0, 1}})}}));
    std::string deck = project.read("deck.dat");
    deck.replace(deck.find("mesh.Mes"), 8, "Group.Pos");
    project.deck(deck);
    expect_refused(taken("..\\Group.Pos", "..\\Group.Pos"));
}

TEST_F(SafeFiles, NoWorkingFileTakesThePlaceOfASource) {
    project.write_work("FILEA.TMP", mesh);
    project.deck(edit_deck(".\\FILEA.TMP", "out.Mes"));
    expect_failed(project.run(), {taken("FILEA.TMP", ".\\FILEA.TMP")});
    EXPECT_EQ(project.read_work("FILEA.TMP"), mesh);
}

TEST_F(SafeFiles, NoResultTakesThePlaceOfASettingOfTheRun) {
    project.deck(edit_deck("mesh.Mes", "C:\\VORK\\QX\\QXDATA\\PROGRAM.DAT"));
    expect_refused("PROGRAM.DAT, which it reads");
}

// --- results -----------------------------------------------------------------------------------------------

TEST_F(SafeFiles, AMeshIsEditedInPlace) {
    project.deck(edit_deck("mesh.Mes", "..\\MESH.Mes"));
    expect_finished(project.run());
    const std::string in_place = project.read("mesh.Mes");
    project.write("mesh.Mes", mesh);
    project.deck(edit_deck("mesh.Mes", "out.Mes"));
    expect_finished(project.run());
    EXPECT_EQ(lines_of(in_place).size(), lines_of(project.read("out.Mes")).size());
    EXPECT_EQ(in_place.substr(in_place.find('\n')), project.read("out.Mes").substr(in_place.find('\n')));
}

TEST_F(SafeFiles, AnEditThatFailsLeavesTheMeshItWasToReplace) {
    const std::string broken = with_line(mesh, 6, "not a node");
    project.write("mesh.Mes", broken);
    project.deck(edit_deck("mesh.Mes", "mesh.Mes"));
    expect_failed(project.run(), {"mesh.Mes"});
    EXPECT_EQ(project.read("mesh.Mes"), broken);
}

TEST_F(SafeFiles, ARunThatFailsLeavesNoEmptyResult) {
    project.write("mesh.Mes", with_line(mesh, 6, "not a node"));
    project.deck(edit_deck("mesh.Mes", "out.Mes"));
    expect_failed(project.run(), {"mesh.Mes"});
    EXPECT_FALSE(project.exists("out.Mes"));
}

TEST_F(SafeFiles, LinksToResultsStayLinks) {
    project.write("kept/out.Mes", "yesterday\n");
    fs::create_symlink("kept/out.Mes", project.file("out.Mes"));
    project.deck(edit_deck("mesh.Mes", "out.Mes"));
    expect_finished(project.run());
    EXPECT_TRUE(fs::is_symlink(project.file("out.Mes")));
    EXPECT_NE(project.read("kept/out.Mes"), "yesterday\n");
}

TEST_F(SafeFiles, ADirectoryThatTakesNoFilesIsToldBeforeTheRun) {
    project.write("closed/out.Mes", "yesterday\n");
    fs::permissions(project.file("closed/out.Mes"), fs::perms{0666});
    project.deck(edit_deck("mesh.Mes", "..\\closed\\out.Mes"));
    fs::permissions(project.file("closed"), fs::perms{0555});
    RunOptions options;
    options.unprivileged = true;
    expect_failed(project.run("", options),
                  {"..\\closed\\out.Mes: its directory cannot hold the file that is to take its place: "
                   "Permission denied"});
    EXPECT_FALSE(project.exists_work("FILEA.TMP"));
    EXPECT_EQ(project.read("closed/out.Mes"), "yesterday\n");
    fs::permissions(project.file("closed"), fs::perms{0755});
}

// --- names -------------------------------------------------------------------------------------------------

TEST_F(SafeFiles, ANameThatRunsOnBehindColumn126IsRefused) {
    const std::string name(127, 'n');
    project.deck(edit_deck("mesh.Mes", "..\\" + name));
    expect_refused(
        "deck.dat, line 3: expected the file name of Card 3.1-2 (FILEM) in columns 1 to 126, found a "
        "longer one");
}

TEST_F(SafeFiles, WhatStandsFarBehindANameIsNotSeen) {
    project.deck(edit_deck("mesh.Mes", padded("out.Mes", 130) + "the result"));
    expect_finished(project.run());
    EXPECT_TRUE(project.exists("out.Mes"));
}

// --- side by side ------------------------------------------------------------------------------------------

TEST_F(SafeFiles, ASecondRunInADirectoryWaitsForTheFirst) {
    project.deck(edit_deck("mesh.Mes", "out.Mes"));
    auto first = std::make_unique<DirectoryHold>(project.work_file(""));
    ASSERT_TRUE(first->try_to_hold());
    std::future<RunResult> second = std::async(std::launch::async, [&] { return project.run(); });
    EXPECT_EQ(second.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
    EXPECT_FALSE(project.exists("out.Mes"));
    first.reset();
    const RunResult result = second.get();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "brelan2d: another run is at work in this directory; waiting for it to end\n");
    EXPECT_TRUE(project.exists("out.Mes"));
}

}  // namespace
}  // namespace brelan::test
