// Lines on a channel: their ends and their columns, stepping back, writing over, where they stem from.
#include "support/state.h"
#include "text/channels.h"
#include "text/free_field.h"

namespace brelan::test {
namespace {

using Lines = std::vector<std::string>;

class ChannelLines : public ChannelTest {
protected:
    Channel& holding(std::string_view text) const {
        directory.write("a.txt", text);
        return state.channels.open(4, "a.txt", OpenStatus::old);
    }
};

// --- line ends ---------------------------------------------------------------------------------------------

TEST_F(ChannelLines, BothKindsOfLineEndAreTakenOff) {
    EXPECT_EQ(rest_of(holding("one\r\ntwo\nthree\r\n")), (Lines{"one", "two", "three"}));
}

TEST_F(ChannelLines, LastLineWithoutAnEndCounts) {
    EXPECT_EQ(rest_of(holding("one\ntwo")), (Lines{"one", "two"}));
    EXPECT_EQ(rest_of(holding("one\r\ntwo\r")), (Lines{"one", "two"}));
}

TEST_F(ChannelLines, EmptyLinesAreLines) {
    EXPECT_EQ(rest_of(holding("\n\r\none\n\n")), (Lines{"", "", "one", ""}));
}

TEST_F(ChannelLines, EmptyFileHasNoLine) {
    Channel& channel = holding("");
    EXPECT_TRUE(channel.at_end());
    EXPECT_EQ(channel.peek_line(), "");
    EXPECT_EQ(failure_of([&] { channel.read_line("a card"); }),
              "a.txt, line 1: the file ends here; expected a card");
}

TEST_F(ChannelLines, ReadingBehindTheLastLineNamesTheLineThatIsMissing) {
    for (const char* text : {"one\ntwo\n", "one\ntwo"}) {
        Channel& channel = holding(text);
        EXPECT_EQ(failure_of([&] { channel.skip_lines(3, "a heading line"); }),
                  "a.txt, line 3: the file ends here; expected a heading line");
    }
}

TEST_F(ChannelLines, OrdinaryCharactersStayAsTheyAre) {
    const std::string odd = "tab\there, \xE4\xFF, a\rb";
    EXPECT_EQ(rest_of(holding(odd + "\n")), (Lines{odd}));
}

TEST_F(ChannelLines, PeekingDoesNotMove) {
    Channel& channel = holding("one\r\ntwo\n");
    EXPECT_EQ(channel.peek_line(), "one");
    EXPECT_EQ(channel.lines_before(), 0);
    EXPECT_EQ(rest_of(channel), (Lines{"one", "two"}));
}

// --- columns -----------------------------------------------------------------------------------------------

TEST_F(ChannelLines, TextSeesNothingBehindColumn126) {
    const std::string line = std::string(123, '.') + "12345";  // columns 124 to 128
    EXPECT_EQ(holding(line + "\n").read_line("a line").view(), std::string(123, '.') + "123");
}

TEST_F(ChannelLines, TextShorterThan126ColumnsIsPadded) {
    const TextLine line = holding("abc\r\n").read_line("a line");
    EXPECT_EQ(line.view(), "abc" + std::string(123, ' '));
    EXPECT_EQ(line.trimmed(), "abc");
}

TEST_F(ChannelLines, FreeFieldSeesTheWholeLine) {
    Channel& channel = holding(std::string(123, ' ') + "12345 67\n8\n");
    std::int32_t a = 0;
    std::int32_t b = 0;
    read_free(channel, "two numbers", a, b);
    EXPECT_EQ(a, 12345);
    EXPECT_EQ(b, 67);
    EXPECT_EQ(channel.peek_line(), "8");
}

TEST_F(ChannelLines, CopiedLineHas126Columns) {
    Channel& copy = state.channels.open(7, "copy.txt", OpenStatus::work);
    copy.write_columns(std::string(125, 'x') + "yz");
    copy.write_columns("short");
    state.channels.close(7);
    EXPECT_EQ(directory.read("copy.txt"),
              std::string(125, 'x') + "y\n" + "short" + std::string(121, ' ') + "\n");
}

TEST_F(ChannelLines, WrittenLineHasTheLengthOfItsText) {
    Channel& copy = state.channels.open(7, "copy.txt", OpenStatus::work);
    copy.write_line("");
    copy.write_line("two ");
    copy.write_line(std::string(130, 'x'));
    state.channels.close(7);
    EXPECT_EQ(directory.read("copy.txt"), "\ntwo \n" + std::string(130, 'x') + "\n");
}

// --- moving back -------------------------------------------------------------------------------------------

TEST_F(ChannelLines, RewindGoesToTheFirstLine) {
    Channel& channel = holding("one\ntwo\n");
    rest_of(channel);
    channel.rewind();
    EXPECT_EQ(channel.lines_before(), 0);
    EXPECT_EQ(rest_of(channel), (Lines{"one", "two"}));
}

TEST_F(ChannelLines, StepBackFromTheEndIsTheSameForEveryLineEnd) {
    for (const char* text : {"one\ntwo\nthree\n", "one\ntwo\nthree", "one\r\ntwo\r\nthree\r\n",
                             "one\r\ntwo\r\nthree", "one\r\ntwo\r\nthree\r"}) {
        Channel& channel = holding(text);
        rest_of(channel);
        channel.step_back(1);
        EXPECT_EQ(channel.lines_before(), 2) << text;
        EXPECT_EQ(rest_of(channel), (Lines{"three"})) << text;
        channel.step_back(2);
        EXPECT_EQ(channel.lines_before(), 1) << text;
        EXPECT_EQ(rest_of(channel), (Lines{"two", "three"})) << text;
    }
}

TEST_F(ChannelLines, StepBackPassesEmptyLinesOneByOne) {
    Channel& channel = holding("one\n\n\n");
    rest_of(channel);
    channel.step_back(1);
    EXPECT_EQ(rest_of(channel), (Lines{""}));
    channel.step_back(3);
    EXPECT_EQ(rest_of(channel), (Lines{"one", "", ""}));
}

TEST_F(ChannelLines, StepBackStopsAtTheFirstLine) {
    Channel& channel = holding("one\ntwo\n");
    channel.skip_lines(1, "a line");
    channel.step_back(5);
    EXPECT_EQ(channel.lines_before(), 0);
    EXPECT_EQ(rest_of(channel), (Lines{"one", "two"}));
}

TEST_F(ChannelLines, StepBackUndoesAFreeFieldReadOverSeveralLines) {
    Channel& channel = holding("1\n2\n3 ignored\n4\n");
    std::int32_t a = 0;
    std::int32_t b = 0;
    std::int32_t c = 0;
    read_free(channel, "three numbers", a, b, c);
    EXPECT_EQ(channel.lines_before(), 3);
    channel.step_back(channel.lines_before());
    EXPECT_EQ(channel.peek_line(), "1");
}

// --- writing behind a position -----------------------------------------------------------------------------

TEST_F(ChannelLines, RecordReplacesWhatFollowedIt) {
    Channel& work = state.channels.open(7, "a.txt", OpenStatus::work);
    for (const char* line : {"one", "two", "three"})
        work.write_line(line);
    work.rewind();
    work.skip_lines(1, "a line");
    work.write_line("new");
    EXPECT_TRUE(work.at_end());
    state.channels.close(7);
    EXPECT_EQ(directory.read("a.txt"), "one\nnew\n");
}

TEST_F(ChannelLines, WrittenFileIsReadBackOnTheSameChannel) {
    Channel& work = state.channels.open(7, "a.txt", OpenStatus::work);
    work.write_line("one");
    work.write_line("two");
    work.step_back(1);
    EXPECT_EQ(rest_of(work), (Lines{"two"}));
    work.rewind();
    EXPECT_EQ(directory.read("a.txt"), "one\ntwo\n");
    EXPECT_EQ(rest_of(work), (Lines{"one", "two"}));
}

TEST_F(ChannelLines, WriteThroughPutsEveryRecordOnDiskAtOnce) {
    Channel& trace = state.channels.open(888, "a.txt", OpenStatus::work);
    trace.set_write_through(true);
    trace.write_line("one");
    EXPECT_EQ(directory.read("a.txt"), "one\n");
}

TEST_F(ChannelLines, FullDiskEndsTheRunAsAFailure) {
    std::filesystem::create_symlink("/dev/full", directory.path() / "full");
    Channel& result = state.channels.open(55, "full", OpenStatus::work);
    result.write_line("no room for this");
    const std::string message = failure_of([&] { result.rewind(); });
    EXPECT_EQ(message.find("full: the file cannot be written: "), 0U) << message;
    state.channels.close_all();  // the end of the run tries no second time and stays quiet
    EXPECT_FALSE(state.channels.is_open(55));
}

TEST_F(ChannelLines, FullDiskIsFoundAtClosingToo) {
    std::filesystem::create_symlink("/dev/full", directory.path() / "full");
    state.channels.open(7, "full", OpenStatus::work).write_line("no room for this");
    const std::string message = failure_of([] { state.channels.close(7); });
    EXPECT_EQ(message.find("full: the file cannot be written: "), 0U) << message;
}

TEST_F(ChannelLines, LongFileIsWhole) {
    // More than what is held back before it is written.
    constexpr int count = 50000;
    Channel& work = state.channels.open(7, "a.txt", OpenStatus::work);
    for (int i = 0; i < count; ++i)
        work.write_columns(std::to_string(i));
    state.channels.close(7);
    const Lines lines = rest_of(state.channels.open(4, "a.txt", OpenStatus::old));
    ASSERT_EQ(lines.size(), 50000U);
    EXPECT_EQ(lines.front(), "0" + std::string(125, ' '));
    EXPECT_EQ(lines[12345], "12345" + std::string(121, ' '));
    EXPECT_EQ(lines.back(), "49999" + std::string(121, ' '));
}

// --- where a working copy's lines stem from ----------------------------------------------------------------

class ChannelOrigins : public ChannelLines {
protected:
    // Copies the lines that are no comments, as the working copies of decks and meshes are made.
    static void copy(Channel& from, Channel& to) {
        to.follow(from);
        while (!from.at_end())
            if (const std::string_view line = from.read_whole_line("a line"); !line.starts_with('*'))
                to.write_columns(line);
        to.rewind();
    }
};

TEST_F(ChannelOrigins, MessageNamesTheLineOfTheSource) {
    Channel& source = holding("* head\none\n* middle\n* middle\ntwo\n");
    Channel& work = state.channels.open(5, "copy.tmp", OpenStatus::work);
    copy(source, work);
    state.channels.close(4);
    EXPECT_EQ(failure_of([&] { work.fail_here("wrong"); }), "a.txt, line 2: wrong");
    work.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { work.fail_here("wrong"); }), "a.txt, line 5: wrong");
    EXPECT_EQ(failure_of([&] { work.fail_behind("wrong"); }), "a.txt, line 2: wrong");
}

TEST_F(ChannelOrigins, MessageOfACopyOfACopyNamesTheFirstFile) {
    Channel& source = holding("* head\none\n* middle\ntwo\n");
    Channel& first = state.channels.open(123, "first.tmp", OpenStatus::work);
    copy(source, first);
    state.channels.close(4);
    Channel& second = state.channels.open(5, "second.tmp", OpenStatus::work);
    copy(first, second);
    state.channels.close(123, CloseAction::remove);
    second.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { second.fail_here("wrong"); }), "a.txt, line 4: wrong");
}

TEST_F(ChannelOrigins, MessageOfAFreeFieldReadNamesTheLineOfTheSource) {
    Channel& source = holding("1\n* middle\n2\nthree\n");
    Channel& work = state.channels.open(5, "copy.tmp", OpenStatus::work);
    copy(source, work);
    std::int32_t a = 0;
    std::int32_t b = 0;
    std::int32_t c = 0;
    EXPECT_EQ(failure_of([&] { read_free(work, "three numbers", a, b, c); }),
              "a.txt, line 4: expected an integer in three numbers, found \"three\"");
}

TEST_F(ChannelOrigins, MessageAtTheEndNamesTheLineBehindTheLastOne) {
    Channel& source = holding("* head\none\n");
    Channel& work = state.channels.open(5, "copy.tmp", OpenStatus::work);
    copy(source, work);
    work.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { work.read_line("a card"); }),
              "a.txt, line 3: the file ends here; expected a card");
}

TEST_F(ChannelOrigins, CopyOfNothingNamesTheFirstLineOfItsSource) {
    Channel& work = state.channels.open(5, "copy.tmp", OpenStatus::work);
    copy(holding(""), work);
    EXPECT_EQ(failure_of([&] { work.read_line("a card"); }),
              "a.txt, line 1: the file ends here; expected a card");
}

}  // namespace
}  // namespace brelan::test
