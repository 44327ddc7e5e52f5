// Files that are read forward, a piece at a time: what comes out is what a channel that holds the whole file
// gives, wherever a piece ends.
#include <random>

#include "support/state.h"
#include "text/channels.h"
#include "text/free_field.h"

namespace brelan::test {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t PIECE = std::size_t{1} << 20;

class ForwardReading : public ChannelTest {
protected:
    Channel& holding(std::string_view text) const {
        directory.write("a.txt", text);
        return state.channels.open(4, "a.txt", OpenStatus::forward);
    }
    static Lines all_of(Channel& channel) {
        Lines lines;
        while (channel.more())
            lines.emplace_back(channel.read_whole_line("a line"));
        return lines;
    }
    Lines whole(std::string_view text) const {
        directory.write("b.txt", text);
        return rest_of(state.channels.open(5, "b.txt", OpenStatus::old));
    }
};

TEST_F(ForwardReading, GivesTheLinesOfAFile) {
    EXPECT_EQ(all_of(holding("one\r\ntwo\n\nthree\n")), (Lines{"one", "two", "", "three"}));
}

TEST_F(ForwardReading, EmptyFileHasNoLine) {
    Channel& channel = holding("");
    EXPECT_FALSE(channel.more());
    EXPECT_FALSE(channel.more());
    EXPECT_TRUE(channel.at_end());
    EXPECT_EQ(failure_of([&] { channel.read_line("a record"); }),
              "a.txt, line 1: the file ends here; expected a record");
}

TEST_F(ForwardReading, LastLineWithoutAnEndCounts) {
    EXPECT_EQ(all_of(holding("one\ntwo")), (Lines{"one", "two"}));
    EXPECT_EQ(all_of(holding("one\r\ntwo\r")), (Lines{"one", "two"}));
    const std::string tail(PIECE + 5, 'x');
    EXPECT_EQ(all_of(holding("one\n" + tail)), (Lines{"one", tail}));
}

TEST_F(ForwardReading, AskingAgainChangesNothing) {
    Channel& channel = holding("one\ntwo\n");
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(channel.more());
    EXPECT_EQ(channel.lines_before(), 0);
    EXPECT_EQ(all_of(channel), (Lines{"one", "two"}));
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(channel.more());
}

// A line that begins before the border of a piece and ends behind it, with its end on either side.
TEST_F(ForwardReading, LineAcrossTheBorderOfAPieceIsWhole) {
    for (const std::string line_end : {"\n", "\r\n"})
        for (std::size_t before = PIECE - 6; before <= PIECE + 2; ++before) {
            const std::string text =
                std::string(before - line_end.size(), 'a') + line_end + "bcd" + line_end + "e" + line_end;
            EXPECT_EQ(all_of(holding(text)), (Lines{std::string(before - line_end.size(), 'a'), "bcd", "e"}))
                << before;
        }
}

TEST_F(ForwardReading, LineLongerThanSeveralPiecesIsWhole) {
    const std::string line(3 * PIECE + 17, 'y');
    EXPECT_EQ(all_of(holding("one\n" + line + "\nthree\n")), (Lines{"one", line, "three"}));
}

TEST_F(ForwardReading, FileOfWholePiecesEndsAtTheirBorder) {
    for (const std::size_t pieces : {1U, 2U, 3U}) {
        std::string text;
        while (text.size() < pieces * PIECE)
            text += "0123456\n";
        ASSERT_EQ(text.size(), pieces * PIECE);
        EXPECT_EQ(all_of(holding(text)), Lines(pieces * PIECE / 8, "0123456"));
    }
}

TEST_F(ForwardReading, IsWhatTheWholeFileGives) {
    std::mt19937 random(9);
    for (int round = 0; round < 4; ++round) {
        std::string text;
        while (text.size() < 3 * PIECE) {
            text.append(random() % 300, static_cast<char>('a' + random() % 26));
            text += random() % 3 == 0 ? "\r\n" : "\n";
        }
        text += round % 2 == 0 ? "" : "the last line";
        EXPECT_TRUE(all_of(holding(text)) == whole(text)) << round;
    }
}

TEST_F(ForwardReading, FreeFieldRecordsOfAFileOfSeveralPieces) {
    std::string text;
    constexpr std::int32_t count = 60000;
    for (std::int32_t i = 1; i <= count; ++i)
        text += "   " + std::to_string(i % 500) + " " + std::to_string(i) + "        7\n";
    ASSERT_GT(text.size(), PIECE);
    Channel& channel = holding(text);
    std::int32_t read = 0;
    while (channel.more()) {
        std::int32_t group = 0, number = 0, seven = 0;
        read_free(channel, "a record", group, number, seven);
        ++read;
        ASSERT_EQ(number, read);
        ASSERT_EQ(group, read % 500);
    }
    EXPECT_EQ(read, count);
}

TEST_F(ForwardReading, MessageNamesTheLineFarBehindTheFirstPiece) {
    std::string text;
    while (text.size() < 2 * PIECE)
        text += "1234567\n";
    const std::size_t lines = text.size() / 8;
    Channel& channel = holding(text + "seven\n");
    std::int32_t number = 0;
    for (std::size_t i = 0; i < lines; ++i) {
        ASSERT_TRUE(channel.more());
        read_free(channel, "a number", number);
    }
    ASSERT_TRUE(channel.more());
    const std::string message = failure_of([&] { read_free(channel, "a number", number); });
    EXPECT_EQ(message.find("a.txt, line " + std::to_string(lines + 1) + ": "), 0U) << message;
}

TEST_F(ForwardReading, FileMustBeThereAndIsOnlyRead) {
    EXPECT_EQ(failure_of([] { state.channels.open(4, "none.txt", OpenStatus::forward); }),
              "none.txt: expected a file, but there is none of this name");
    Channel& channel = holding("one\n");
    EXPECT_EQ(failure_of([&] { channel.write_line("two"); }), "a.txt: the file is open for reading only");
    std::filesystem::create_directory(directory.path() / "d");
    EXPECT_EQ(failure_of([] { state.channels.open(6, "d", OpenStatus::forward); }),
              "d: expected a file, found a directory");
}

TEST_F(ForwardReading, FileCanBeDeletedOnClosing) {
    EXPECT_TRUE(holding("one\n").more());
    state.channels.close(4, CloseAction::remove);
    EXPECT_FALSE(directory.exists("a.txt"));
}

}  // namespace
}  // namespace brelan::test
