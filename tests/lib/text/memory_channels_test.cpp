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

}  // namespace
}  // namespace brelan::test
