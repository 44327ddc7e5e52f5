// Results: when they take their places, what stays where they do not, and which files they never replace.
#include "text/results.h"

#include <memory>

#include "support/state.h"
#include "text/channels.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

// What a deck does with its results is the same on disk and in memory.
struct Place {
    std::string_view name;
    bool on_disk;
};

class ResultsOf : public ::testing::TestWithParam<Place> {
protected:
    WorkDirectory directory;
    std::shared_ptr<MemoryFiles> memory = std::make_shared<MemoryFiles>();
    brelan::Channels held{memory};

    brelan::Channels& channels() { return GetParam().on_disk ? state.channels : held; }
    void put(const std::string& name, std::string_view text) const {
        if (GetParam().on_disk)
            directory.write(name, text);
        else
            memory->put(name, text);
    }
    std::string text(const std::string& name) const {
        return GetParam().on_disk ? directory.read(name) : std::string(memory->text(name));
    }
    bool exists(const std::string& name) const {
        return GetParam().on_disk ? directory.exists(name) : memory->contains(name);
    }
    Channel& result(std::string_view name, int number = 55) {
        return channels().open(number, name, OpenStatus::result);
    }
};

INSTANTIATE_TEST_SUITE_P(Places, ResultsOf, ::testing::Values(Place{"Disk", true}, Place{"Memory", false}),
                         [](const auto& place) { return std::string(place.param.name); });

TEST_P(ResultsOf, TakeTheirPlacesWhenTheDeckHasEnded) {
    put("a.txt", "a result of yesterday\n");
    result("a.txt").write_line("today");
    result("b.txt", 56).write_line("new");
    channels().flush_all();
    channels().close(55);
    EXPECT_EQ(text("a.txt"), "a result of yesterday\n");
    EXPECT_FALSE(exists("b.txt"));
    channels().take_results();
    EXPECT_EQ(text("a.txt"), "today\n");
    EXPECT_EQ(text("b.txt"), "new\n");
}

TEST_P(ResultsOf, AreReadByLaterPassesOfTheDeck) {
    put("a.txt", "a result of yesterday\n");
    result("a.txt").write_line("today");
    channels().close(55);
    EXPECT_TRUE(channels().file_exists("a.txt"));
    EXPECT_EQ(channels().open(4, "A.TXT", OpenStatus::old).read_whole_line("a line"), "today");
    result("new.txt").write_line("first");
    channels().close(55);
    EXPECT_TRUE(channels().file_exists("NEW.txt"));
    Channel& forward = channels().open(5, "NEW.TXT", OpenStatus::forward);
    EXPECT_TRUE(forward.more());
    EXPECT_EQ(forward.read_whole_line("a line"), "first");
    EXPECT_FALSE(forward.more());
}

TEST_P(ResultsOf, AreReadAndWrittenAnewByTheSameDeck) {
    result("a.txt").write_line("first");
    result("a.txt").write_line("second");
    channels().take_results();
    EXPECT_EQ(text("a.txt"), "second\n");
}

TEST_P(ResultsOf, StayAsTheyWereWhereNothingIsWritten) {
    put("a.txt", "a result of yesterday\n");
    result("a.txt");
    result("b.txt", 56);
    channels().take_results();
    EXPECT_EQ(text("a.txt"), "a result of yesterday\n");
    EXPECT_TRUE(exists("b.txt"));
    EXPECT_EQ(text("b.txt"), "");
}

TEST_P(ResultsOf, LeaveNothingOfALongerOne) {
    put("a.txt", std::string(10000, 'x') + "\n");
    result("a.txt").write_line("y");
    channels().take_results();
    EXPECT_EQ(text("a.txt"), "y\n");
}

TEST_P(ResultsOf, AreGivenUpByAFailure) {
    put("a.txt", "a result of yesterday\n");
    result("a.txt").write_line("today");
    channels().close(55);
    result("b.txt").write_line("new");
    channels().close_all();
    EXPECT_EQ(text("a.txt"), "a result of yesterday\n");
    EXPECT_FALSE(exists("b.txt"));
}

TEST_P(ResultsOf, ThatAreWholeTakeTheirPlacesAtAStop) {
    for (const char* name : {"cut.txt", "closed.txt", "finished.txt", "again.txt"})
        put(name, "yesterday\n");
    result("closed.txt").write_line("today");
    result("again.txt").write_line("whole");
    result("again.txt").write_line("cut o");  // what was whole is written anew
    result("cut.txt", 56).write_line("today");
    result("finished.txt", 57).write_line("today");
    channels().at(57).finish();
    result("new.txt", 58);
    channels().take_finished_results();
    EXPECT_EQ(text("closed.txt"), "today\n");
    EXPECT_EQ(text("finished.txt"), "today\n");
    EXPECT_EQ(text("cut.txt"), "yesterday\n");
    EXPECT_EQ(text("again.txt"), "yesterday\n");
    EXPECT_FALSE(exists("new.txt"));
}

TEST_P(ResultsOf, ThatGrowAfterTheirEndAreNotFinished) {
    put("a.txt", "yesterday\n");
    Channel& channel = result("a.txt");
    channel.write_line("whole");
    channel.finish();
    channel.write_line("and more");
    channels().take_finished_results();
    EXPECT_EQ(text("a.txt"), "yesterday\n");
}

TEST_P(ResultsOf, AreWrittenOverFromTheirStart) {
    Channel& channel = result("a.txt");
    channel.write_line("first");
    channel.write_line("second");
    channel.rewind();
    channel.write_line("new");
    channels().take_results();
    EXPECT_EQ(text("a.txt"), "new\n");
}

// --- settings ----------------------------------------------------------------------------------------------

TEST_P(ResultsOf, SettingsAreReplacedWhenTheyAreClosed) {
    put("a.txt", "0\n");
    channels().open(88, "a.txt", OpenStatus::setting).write_line("1");
    channels().open(89, "b.txt", OpenStatus::fresh).write_line("2");
    EXPECT_EQ(text("a.txt"), "0\n");
    EXPECT_FALSE(exists("b.txt"));
    channels().close(88);
    channels().close(89);
    EXPECT_EQ(text("a.txt"), "1\n");
    EXPECT_EQ(text("b.txt"), "2\n");
}

TEST_P(ResultsOf, SettingsThatAreCutOffStayAsTheyWere) {
    put("a.txt", "0\n");
    channels().open(88, "a.txt", OpenStatus::setting).write_line("1");
    channels().close_all();
    EXPECT_EQ(text("a.txt"), "0\n");
}

TEST_P(ResultsOf, ASettingIsReadAndWritten) {
    put("LineUp.dat", "1\n");
    channels().open(4, "LineUp.dat", OpenStatus::setting_old);
    channels().open(4, "LineUp.dat", OpenStatus::side_result).write_line("0");
    channels().take_results();
    EXPECT_EQ(text("LineUp.dat"), "0\n");
}

// --- inputs ------------------------------------------------------------------------------------------------

TEST_P(ResultsOf, NoFileTakesThePlaceOfAnInput) {
    put("deck.dat", "the only copy\n");
    channels().open(3, "deck.dat", OpenStatus::old);
    channels().close(3);
    for (const OpenStatus status : {OpenStatus::work, OpenStatus::result, OpenStatus::side_result,
                                    OpenStatus::setting, OpenStatus::scratch})
        EXPECT_EQ(
            failure_of([&] { channels().open(7, ".\\DECK.dat", status); }),
            ".\\DECK.dat: the run would write it in the place of deck.dat, which it reads; expected a file "
            "of its own");
    EXPECT_EQ(text("deck.dat"), "the only copy\n");
}

TEST_P(ResultsOf, TheResultThatADeckNamesMayReplaceItsSource) {
    put("a.Mes", "the only copy\n");
    put("keep.Mes", "the only copy\n");
    channels().expect_source("a.Mes");
    channels().open(15, "a.Mes", OpenStatus::old);
    channels().close(15);
    EXPECT_EQ(
        failure_of([&] { channels().expect_result("a.Mes", OpenStatus::side_result); }),
        "a.Mes: the run would write it in the place of a.Mes, which it reads; expected a file of its own");
    EXPECT_NE(failure_of([&] { channels().open(55, "a.Mes", OpenStatus::work); }), "");
    channels().expect_result("a.Mes", OpenStatus::result);
    result("a.Mes").write_line("edited");
    channels().take_results();
    EXPECT_EQ(text("a.Mes"), "edited\n");
}

TEST_P(ResultsOf, WhatTheRunItselfHasWrittenIsNoInput) {
    result("a.Mes").write_line("first");
    channels().take_results();
    channels().expect_source("a.Mes");
    channels().open(15, "a.Mes", OpenStatus::old);
    channels().close(15);
    channels().open(34, "a.Mes", OpenStatus::side_result).write_line("second");
    channels().take_results();
    EXPECT_EQ(text("a.Mes"), "second\n");
}

TEST_P(ResultsOf, SourcesOfAnEarlierDeckAreNoneOfTheNext) {
    put("a.Mes", "source\n");
    channels().expect_source("a.Mes");
    channels().take_results();
    channels().open(34, "a.Mes", OpenStatus::side_result).write_line("result");
    channels().take_results();
    EXPECT_EQ(text("a.Mes"), "result\n");
}

// --- on disk -----------------------------------------------------------------------------------------------

using ResultsOnDisk = ChannelTest;

TEST_F(ResultsOnDisk, AreKnownByWhatTheyAre) {
    directory.write("deck.dat", "the only copy\n");
    fs::create_symlink("deck.dat", directory.path() / "link.txt");
    fs::create_hard_link(directory.path() / "deck.dat", directory.path() / "hard.txt");
    state.channels.open(3, "deck.dat", OpenStatus::old);
    state.channels.close(3);
    const std::string through_parent = "..\\" + directory.path().filename().string() + "\\deck.dat";
    for (const std::string& name : {std::string("link.txt"), std::string("hard.txt"), through_parent}) {
        EXPECT_EQ(failure_of([&] { state.channels.expect_result(name, OpenStatus::result); }),
                  name +
                      ": the run would write it in the place of deck.dat, which it reads; expected a file of "
                      "its own");
        EXPECT_NE(failure_of([&] { state.channels.open(55, name, OpenStatus::result); }), "");
    }
}

TEST_F(ResultsOnDisk, LinksStayLinksAndPermissionsStay) {
    directory.write("sub/real.txt", "yesterday\n");
    fs::permissions(directory.path() / "sub/real.txt", fs::perms{0640});
    fs::create_symlink("sub/real.txt", directory.path() / "link.txt");
    state.channels.open(55, "link.txt", OpenStatus::result).write_line("today");
    state.channels.take_results();
    EXPECT_TRUE(fs::is_symlink(directory.path() / "link.txt"));
    EXPECT_EQ(directory.read("sub/real.txt"), "today\n");
    EXPECT_EQ(fs::status(directory.path() / "sub/real.txt").permissions(), fs::perms{0640});
}

TEST_F(ResultsOnDisk, AReaderKeepsTheFileThatItHasOpened) {
    directory.write("a.txt", "yesterday\n");
    std::ifstream reader(directory.path() / "a.txt");
    state.channels.open(55, "a.txt", OpenStatus::result).write_line("today");
    state.channels.take_results();
    std::string line;
    std::getline(reader, line);
    EXPECT_EQ(line, "yesterday");
}

TEST_F(ResultsOnDisk, ADeviceIsWrittenWhereItIs) {
    fs::create_symlink("/dev/null", directory.path() / "device");
    state.channels.open(55, "device", OpenStatus::result).write_line("nowhere");
    state.channels.take_results();
    EXPECT_TRUE(fs::is_symlink(directory.path() / "device"));
}

}  // namespace
}  // namespace brelan::test
