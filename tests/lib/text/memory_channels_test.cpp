// Channels without a file.

#include <filesystem>

#include "support/state.h"
#include "text/free_field.h"

namespace brelan::test {
namespace {

using MemoryChannels = ChannelTest;

TEST_F(MemoryChannels, GiveTheirTextToTheReader) {
    Channel& channel = state.channels.open_in_memory(5, "a mesh", "one\r\ntwo\nthree");
    EXPECT_EQ(rest_of(channel), (std::vector<std::string>{"one", "two", "three"}));
    channel.rewind();
    channel.skip_lines(2, "a line");
    EXPECT_EQ(failure_of([&] { channel.skip_lines(2, "a fourth line"); }),
              "a mesh, line 4: the file ends here; expected a fourth line");
}

TEST_F(MemoryChannels, GiveBackWhatWasWritten) {
    Channel& channel = state.channels.open_in_memory(5, "a mesh");
    channel.write_line("one");
    channel.write_line("");
    EXPECT_EQ(channel.text(), "one\n\n");
    channel.rewind();
    channel.write_line("two");
    EXPECT_EQ(channel.text(), "two\n");
}

TEST_F(MemoryChannels, NameTheirLinesInCopies) {
    Channel& source = state.channels.open_in_memory(5, "a mesh", "* left out\nwrong\n");
    Channel& copy = state.channels.open_in_memory(6, "a copy");
    copy.follow(source);
    source.skip_lines(1, "a line");
    copy.write_line(source.read_whole_line("a line"));
    copy.rewind();
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a mesh, line 2: nothing is right");
}

TEST_F(MemoryChannels, TouchNoFileOfTheirName) {
    directory.write("a mesh", "stays\n");
    state.channels.open_in_memory(5, "a mesh").write_line("gone");
    state.channels.flush_all();
    state.channels.open_in_memory(6, "a mesh");
    state.channels.close(5, CloseAction::remove);
    state.channels.close_all();
    EXPECT_EQ(directory.read("a mesh"), "stays\n");
}

TEST_F(MemoryChannels, LinesThatAreWrittenAnewAreOfTheirNewSource) {
    Channel& source = state.channels.open_in_memory(5, "a mesh", "one\ntwo\nthree\n");
    Channel& copy = state.channels.open_in_memory(6, "a copy");
    copy.follow(source);
    for (int line = 0; line < 2; ++line)
        copy.write_line(source.read_whole_line("a line"));
    copy.rewind();
    copy.write_line(source.read_whole_line("a line"));  // in the place of "one"; "two" is gone
    EXPECT_EQ(copy.text(), "three\n");
    copy.rewind();
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a mesh, line 3: nothing is right");
}

TEST_F(MemoryChannels, ReadOfNoValueNeedsALineToo) {
    Channel& channel = state.channels.open_in_memory(5, "a mesh", "one\n");
    FreeFieldReader(channel, "nothing").finish();
    EXPECT_EQ(failure_of([&] { FreeFieldReader(channel, "nothing").finish(); }),
              "a mesh, line 2: the file ends here; expected nothing");
}

// The first line of the copy is its own, as is what stands behind all of its lines and one more.
TEST_F(MemoryChannels, LinesThatNoSourceHasAreTheirOwn) {
    Channel& source = state.channels.open_in_memory(5, "a mesh", "two\n");
    Channel& copy = state.channels.open_in_memory(6, "a copy");
    copy.write_line("one");
    copy.follow(source);
    copy.write_line(source.read_whole_line("a line"));
    copy.rewind();
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a copy, line 1: nothing is right");
    copy.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a mesh, line 1: nothing is right");
    copy.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a mesh, line 2: nothing is right");
}

// A copy of a copy's own last line has no line of the source, nor has what stands behind it.
TEST_F(MemoryChannels, WhatStandsBehindALineOfNoSourceIsItsOwnToo) {
    Channel& source = state.channels.open_in_memory(5, "a mesh", "");
    Channel& copy = state.channels.open_in_memory(6, "a copy");
    copy.write_line("one");
    copy.follow(source);
    copy.rewind();
    copy.skip_lines(1, "a line");
    EXPECT_EQ(failure_of([&] { copy.fail_here("nothing is right"); }), "a copy, line 2: nothing is right");
}

// A line feed ends a line, a carriage return in front of it or of the end of the text alone does too.
TEST_F(MemoryChannels, ACarriageReturnInALineIsText) {
    std::int32_t a = 0, b = 0;
    Channel& ended = state.channels.open_in_memory(5, "a mesh", "1 \r");
    EXPECT_EQ(failure_of([&] { read_free(ended, "two numbers", a, b); }),
              "a mesh, line 2: the file ends here; expected two numbers");
    Channel& inside = state.channels.open_in_memory(6, "a mesh", "1 \r2\n");
    EXPECT_EQ(failure_of([&] { read_free(inside, "two numbers", a, b); }),
              "a mesh, line 1: expected an integer in two numbers, found \"?2\"");
}

TEST_F(MemoryChannels, NullValuesMayBeTheEndOfTheText) {
    std::int32_t a = 7, b = 8;
    read_free(state.channels.open_in_memory(5, "a mesh", "2*"), "two numbers", a, b);
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, 8);
}

}  // namespace
}  // namespace brelan::test
