// The bytes of a deck's file as an editor has them, and back.
#include "commands/editing/deck_text.h"

#include <gtest/gtest.h>

#include <string>

#include "cli/exit_status.h"

namespace {

using brelan::tool::DeckText;
using brelan::tool::Failure;

std::string bytes_of(const std::string& file, const std::string& edited) {
    return DeckText(file, "deck.dat").bytes_of(edited);
}

TEST(DeckTextOfFile, GivesTheSameBytesForAnUnchangedText) {
    for (const std::string file : {"", "2 0", "2 0\n", "a\r\nb\nc\r\n", "\r\n", "\n\n\r\n",
                                   "\xEF\xBB\xBF"
                                   "a\r\n",
                                   "B\xC3\xB6\n", "B\xF6\r\n\x80", "\xEF\xBB\xBF\xF6\n"}) {
        const DeckText text(file, "deck.dat");
        EXPECT_EQ(text.bytes_of(text.shown()), file);
    }
}

TEST(DeckTextOfFile, KeepsTheLineEndsOfLinesThatDoNotChange) {
    EXPECT_EQ(bytes_of("a\r\nb\nc\nd\r\n", "a\nb\nnew\nc\nd\n"), "a\r\nb\nnew\nc\nd\r\n");
    EXPECT_EQ(bytes_of("a\r\nb\r\nc\n", "a\nx\ny\nc\n"), "a\r\nx\r\ny\r\nc\n");  // new ones as most have it
    EXPECT_EQ(bytes_of("a\r\nb\r\nc\n", "c\n"), "c\n");
    EXPECT_EQ(bytes_of("a\nb\r\n", ""), "");
}

TEST(DeckTextOfFile, ShowsAnOlderCodeByteByByte) {
    const DeckText text("\xF6\x80\n", "deck.dat");
    EXPECT_EQ(text.shown(), "\xC3\xB6\xC2\x80\n");
    EXPECT_EQ(text.deck_of("\xC3\xBF\n"), "\xFF\n");
    EXPECT_THROW(static_cast<void>(text.deck_of("\xE2\x82\xAC")), Failure);  // beyond the 256 of the code
    EXPECT_THROW(static_cast<void>(text.deck_of("\xC4\x80")), Failure);      // the first beyond them
}

TEST(DeckTextOfFile, RefusesWhatIsNoText) {
    EXPECT_THROW(DeckText(std::string("a\0b", 3), "deck.dat"), Failure);
    EXPECT_THROW(DeckText("a\rb\n", "deck.dat"), Failure);
    EXPECT_THROW(DeckText("a\r", "deck.dat"), Failure);
}

}  // namespace
