// Channels: how files are opened, read, stepped through, written and closed.
#include "text/channels.h"

#include "support/state.h"
#include "text/free_field.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;
using Channels = ChannelTest;

// --- opening -----------------------------------------------------------------------------------------------

TEST_F(Channels, OldFileIsReadFromItsStart) {
    directory.write("a.txt", "first\nsecond\n");
    Channel& channel = state.channels.open(4, "a.txt", OpenStatus::old);
    EXPECT_EQ(channel.lines_before(), 0);
    EXPECT_EQ(rest_of(channel), (Lines{"first", "second"}));
}

TEST_F(Channels, OldFileIsOnlyRead) {
    directory.write("a.txt", "first\n");
    Channel& channel = state.channels.open(4, "a.txt", OpenStatus::old);
    EXPECT_EQ(failure_of([&] { channel.write_line("second"); }), "a.txt: the file is open for reading only");
    state.channels.close(4);
    EXPECT_EQ(directory.read("a.txt"), "first\n");
}

TEST_F(Channels, FreshFileMustNotBeThere) {
    directory.write("a.txt", "kept\n");
    EXPECT_EQ(failure_of([] { state.channels.open(4, "a.txt", OpenStatus::fresh); }),
              "a.txt: expected a name that is free, but there is a file of this name");
    EXPECT_EQ(directory.read("a.txt"), "kept\n");
    state.channels.open(4, "b.txt", OpenStatus::fresh).write_line("new");
    state.channels.close(4);
    EXPECT_EQ(directory.read("b.txt"), "new\n");
}

TEST_F(Channels, WorkFileIsEmptiedAtOnce) {
    directory.write("a.txt", "of an earlier run\n");
    state.channels.open(7, "a.txt", OpenStatus::work);
    EXPECT_EQ(directory.read("a.txt"), "");
}

TEST_F(Channels, WorkFileThatIsNotThereIsCreatedAtOpening) {
    state.channels.open(7, "work.txt", OpenStatus::work);
    EXPECT_TRUE(directory.exists("work.txt"));
}

TEST_F(Channels, ContinuedFileGrowsBehindItsEnd) {
    directory.write("a.txt", "first\n");
    state.channels.continue_file(888, "a.txt").write_line("second");
    state.channels.close(888);
    EXPECT_EQ(directory.read("a.txt"), "first\nsecond\n");
}

TEST_F(Channels, OpenChannelIsClosedBeforeItIsOpenedAgain) {
    state.channels.open(7, "a.txt", OpenStatus::work).write_line("first");
    state.channels.open(7, "b.txt", OpenStatus::work);
    EXPECT_EQ(directory.read("a.txt"), "first\n");
    EXPECT_EQ(state.channels.at(7).name(), "b.txt");
}

// --- what cannot be opened ---------------------------------------------------------------------------------

TEST_F(Channels, MissingFileIsAMessage) {
    EXPECT_EQ(failure_of([] { state.channels.open(4, "..\\none.txt  ", OpenStatus::old); }),
              "..\\none.txt: expected a file, but there is none of this name");
    EXPECT_FALSE(state.channels.is_open(4));
}

TEST_F(Channels, DirectoryIsAMessage) {
    fs::create_directory(directory.path() / "sub");
    for (const OpenStatus status : {OpenStatus::old, OpenStatus::work, OpenStatus::result})
        EXPECT_EQ(failure_of([&] { state.channels.open(4, "sub", status); }),
                  "sub: expected a file, found a directory");
}

TEST_F(Channels, DeviceIsNoMeshAndNoDeck) {
    fs::create_symlink("/dev/null", directory.path() / "device");
    EXPECT_EQ(failure_of([] { state.channels.open(4, "device", OpenStatus::old); }),
              "device: expected an ordinary file");
}

TEST_F(Channels, FileInADirectoryThatIsNotThereIsAMessage) {
    const std::string message = failure_of([] { state.channels.open(4, "sub\\a.txt", OpenStatus::work); });
    EXPECT_EQ(message.find("sub\\a.txt: the file cannot be created for writing: "), 0U) << message;
}

TEST_F(Channels, UnreadableFileIsAMessage) {
    directory.write("a.txt", "secret\n");
    fs::permissions(directory.path() / "a.txt", fs::perms::none);
    constexpr uid_t nobody = 65534;
    const uid_t before = ::geteuid();
    // The super-user may read everything.
    ASSERT_EQ(::seteuid(before == 0 ? nobody : before), 0);
    const std::string reading = failure_of([] { state.channels.open(4, "a.txt", OpenStatus::old); });
    const std::string writing = failure_of([] { state.channels.open(4, "a.txt", OpenStatus::result); });
    ASSERT_EQ(::seteuid(before), 0);
    EXPECT_EQ(reading.find("a.txt: the file cannot be opened: "), 0U) << reading;
    EXPECT_EQ(writing.find("a.txt: the file cannot be opened for writing: "), 0U) << writing;
}

TEST_F(Channels, NumberWithoutAFileIsAMessage) {
    EXPECT_EQ(failure_of([] { state.channels.at(5); }), "channel 5: no file is open on it");
    for (const int number : {0, -1, 1000})
        EXPECT_EQ(failure_of([&] { state.channels.is_open(number); }),
                  "channel " + std::to_string(number) + ": expected a number from 1 to 999");
}

// --- one file on two channels ------------------------------------------------------------------------------

TEST_F(Channels, FileInUseIsRefusedBeforeItIsEmptied) {
    directory.write("a.txt", "the only copy\n");
    state.channels.open(3, "a.txt", OpenStatus::old);
    EXPECT_EQ(failure_of([] { state.channels.open(7, "A.TXT", OpenStatus::work); }),
              "A.TXT: the file is in use in this run as a.txt; expected a file of its own");
    EXPECT_EQ(directory.read("a.txt"), "the only copy\n");
}

TEST_F(Channels, FileInUseIsKnownByAnotherPathToo) {
    fs::create_symlink("a.txt", directory.path() / "link.txt");
    state.channels.open(55, "a.txt", OpenStatus::work);
    const std::string through_parent = "..\\" + directory.path().filename().string() + "\\a.txt";
    for (const std::string& name : {through_parent, std::string("link.txt"), std::string(".\\a.txt")})
        for (const OpenStatus status : {OpenStatus::old, OpenStatus::work, OpenStatus::result})
            EXPECT_EQ(failure_of([&] { state.channels.open(7, name, status); }),
                      name + ": the file is in use in this run as a.txt; expected a file of its own");
}

TEST_F(Channels, TwoReadersShareAFile) {
    directory.write("a.txt", "first\nsecond\n");
    Channel& one = state.channels.open(15, "a.txt", OpenStatus::old);
    Channel& two = state.channels.open(16, "a.txt", OpenStatus::old);
    one.skip_lines(1, "a line");
    EXPECT_EQ(rest_of(two), (Lines{"first", "second"}));
    EXPECT_EQ(rest_of(one), (Lines{"second"}));
}

TEST_F(Channels, ResultMayReplaceASourceThatIsStillRead) {
    directory.write("a.txt", "old first\nold second\n");
    state.channels.expect_source("a.txt");
    Channel& input = state.channels.open(15, "a.txt", OpenStatus::old);
    state.channels.open(55, "a.txt", OpenStatus::result).write_line("new");
    state.channels.take_results();
    EXPECT_EQ(directory.read("a.txt"), "new\n");
    EXPECT_EQ(rest_of(input), (Lines{"old first", "old second"}));
}

TEST_F(Channels, ClosedFileMayBeOpenedAgain) {
    state.channels.open(7, "a.txt", OpenStatus::work).write_line("first");
    state.channels.close(7);
    EXPECT_EQ(rest_of(state.channels.open(5, "a.txt", OpenStatus::old)), (Lines{"first"}));
}

// --- closing -----------------------------------------------------------------------------------------------

TEST_F(Channels, ClosingWithDeletionLeavesNoFile) {
    state.channels.open(123, "work.txt", OpenStatus::work).write_line("gone soon");
    state.channels.close(123, CloseAction::remove);
    EXPECT_FALSE(directory.exists("work.txt"));
    EXPECT_FALSE(state.channels.is_open(123));
    directory.write("old.txt", "gone soon\n");
    state.channels.open(805, "old.txt", OpenStatus::old);
    state.channels.close(805, CloseAction::remove);
    EXPECT_FALSE(directory.exists("old.txt"));
}

TEST_F(Channels, ClosingAChannelThatIsNotOpenIsPassedOver) {
    state.channels.close(55);
    state.channels.close(55, CloseAction::remove);
    EXPECT_FALSE(state.channels.is_open(55));
}

TEST_F(Channels, EndOfTheRunWritesWhatIsPending) {
    state.channels.open(7, "a.txt", OpenStatus::work).write_line("listing");
    state.channels.open(888, "b.txt", OpenStatus::work).write_line("trace");
    state.channels.close_all();
    EXPECT_EQ(directory.read("a.txt"), "listing\n");
    EXPECT_EQ(directory.read("b.txt"), "trace\n");
    EXPECT_FALSE(state.channels.is_open(7));
}

TEST_F(Channels, ExistenceIsAskedByTheSameNames) {
    directory.write("Sub/File.Txt", "");
    EXPECT_TRUE(state.channels.file_exists("sub\\FILE.TXT   "));
    EXPECT_FALSE(state.channels.file_exists("sub\\other.txt"));
    EXPECT_FALSE(state.channels.file_exists("   "));
    EXPECT_FALSE(state.channels.file_exists(""));
}

}  // namespace
}  // namespace brelan::test
