// Files in memory: their names, and channels on them.
#include <array>

#include "support/state.h"
#include "text/files.h"
#include "text/layout.h"

namespace brelan::test {
namespace {

using Names = std::vector<std::string>;

class FilesInMemory : public ::testing::Test {
protected:
    std::shared_ptr<MemoryFiles> files = std::make_shared<MemoryFiles>();
    brelan::Channels channels{files};
};

// --- names -------------------------------------------------------------------------------------------------

TEST_F(FilesInMemory, HaveOneNameHoweverItIsWritten) {
    files->put("..\\Mesh.Mes", "a mesh\n");
    for (const char* name :
         {"..\\Mesh.Mes", "../mesh.mes", "..\\MESH.MES  ", ".\\..\\Mesh.Mes", "..\\work\\..\\Mesh.Mes"})
        EXPECT_EQ(files->text(name), "a mesh\n") << name;
    EXPECT_FALSE(files->contains("Mesh.Mes"));
    files->put("..\\MESH.mes", "another\n");
    EXPECT_EQ(files->text("..\\Mesh.Mes"), "another\n");
    EXPECT_EQ(files->names(), (Names{"project/Mesh.Mes"}));
}

TEST_F(FilesInMemory, LieInTheWorkingDirectoryAboveItOrOnTheDrive) {
    for (const char* name : {"a", "..\\b", "sub\\c", "C:\\Vork\\d", "\\e"})
        files->put(name, "");
    EXPECT_EQ(files->names(), (Names{"/e", "C/Vork/d", "project/b", "project/work/a", "project/work/sub/c"}));
}

TEST_F(FilesInMemory, RefuseNamesThatAreNone) {
    EXPECT_EQ(failure_of([&] { files->put("  ", ""); }), "expected a file name, found a blank one");
    EXPECT_EQ(failure_of([&] { files->put("D:\\a", ""); }),
              "file name D:\\a: expected drive C:, the only drive that has a place here");
}

TEST_F(FilesInMemory, DirectoriesAreThoseThatFilesNeed) {
    files->put("sub\\a", "");
    EXPECT_EQ(failure_of([&] { channels.open(4, "SUB", OpenStatus::old); }),
              "SUB: expected a file, found a directory");
    channels.open(4, "sub\\b", OpenStatus::work);
    EXPECT_EQ(failure_of([&] { channels.open(5, "none\\b", OpenStatus::work); }),
              "none\\b: the file cannot be created for writing: No such file or directory");
}

// --- channels ----------------------------------------------------------------------------------------------

TEST_F(FilesInMemory, AreReadAndWrittenAsThoseOnDisk) {
    files->put("a", "one\ntwo\n");
    EXPECT_EQ(channels.open(4, "A", OpenStatus::old).read_whole_line("a line"), "one");
    Channel& forward = channels.open(5, "a", OpenStatus::forward);
    EXPECT_TRUE(forward.more());
    EXPECT_EQ(forward.read_whole_line("a line"), "one");
    channels.close(5);
    Channel& work = channels.open(7, "b", OpenStatus::work);
    work.write_line("new");
    work.write_line("newer");
    work.rewind();
    EXPECT_EQ(files->text("b"), "new\nnewer\n");
    work.write_line("newest");
    channels.close_all();
    EXPECT_EQ(files->text("b"), "newest\n");
    channels.continue_file(4, "b").write_line("behind");
    channels.close(4);
    EXPECT_EQ(files->text("b"), "newest\nbehind\n");
}

TEST_F(FilesInMemory, AreRefusedAsThoseOnDisk) {
    EXPECT_EQ(failure_of([&] { channels.open(4, "a", OpenStatus::old); }),
              "a: expected a file, but there is none of this name");
    channels.open(4, "a", OpenStatus::work);
    EXPECT_TRUE(channels.file_exists("A"));
    EXPECT_EQ(failure_of([&] { channels.open(5, "A", OpenStatus::old); }),
              "A: the file is in use in this run as a; expected a file of its own");
    channels.close(4);
    EXPECT_EQ(failure_of([&] { channels.open(5, "A", OpenStatus::fresh); }),
              "A: expected a name that is free, but there is a file of this name");
    channels.open(4, "a", OpenStatus::old);
    channels.close(4, CloseAction::remove);
    EXPECT_FALSE(channels.file_exists("a"));
}

// --- files that nobody reads -------------------------------------------------------------------------------

constexpr Layout<"(I5,E11.4)"> RECORD;

TEST_F(FilesInMemory, TextThatNobodyReadsIsNotMade) {
    files->leave_out("coord.dat");
    Channel& channel = channels.open(22, "Coord.dat", OpenStatus::work);
    channel.set_write_only(true);
    EXPECT_TRUE(channel.discards());
    channel.write_line("one");
    channel.write_columns("two");
    RECORD.write(channel, 3, 4.0F);
    EXPECT_EQ(channel.text(), "");
    EXPECT_EQ(channel.lines_before(), 3);
    channels.close(22);
    EXPECT_EQ(files->names(), Names{});
    EXPECT_FALSE(channels.keeps_file("Coord.dat"));
}

TEST_F(FilesInMemory, WorkingCopyIsReadAgainByItsOwnChannel) {
    files->leave_out("FILEA.TMP");
    Channel& channel = channels.open(5, "FILEA.TMP", OpenStatus::work);
    channel.write_line("one");
    channel.rewind();
    EXPECT_EQ(channel.read_whole_line("a line"), "one");
    channels.close(5);
    EXPECT_FALSE(files->contains("FILEA.TMP"));
}

TEST_F(FilesInMemory, TextThatNobodyReadsIsNotContinued) {
    files->leave_out("fort.888");
    channels.open(888, "fort.888", OpenStatus::work).write_line("one");
    channels.close(888);
    channels.continue_file(888, "fort.888").write_line("two");
    channels.close(888);
    EXPECT_FALSE(files->contains("fort.888"));
}

TEST_F(FilesInMemory, ResultIsKeptWhateverItsName) {
    files->leave_out("Coord.dat");
    Channel& channel = channels.open(55, "Coord.dat", OpenStatus::result);
    channel.set_write_only(true);
    EXPECT_FALSE(channel.discards());
    channel.write_line("a mesh");
    channels.take_results();
    EXPECT_EQ(files->text("Coord.dat"), "a mesh\n");
}

TEST(FilesOnDisk, KeepAllText) {
    const WorkDirectory directory;
    Channel& channel = state.channels.open(22, "Coord.dat", OpenStatus::work);
    channel.set_write_only(true);
    EXPECT_FALSE(channel.discards());
    EXPECT_TRUE(state.channels.keeps_file("Coord.dat"));
}

TEST_F(FilesInMemory, AreReadForwardInPieces) {
    files->put("..\\list", "one two");
    const auto opened = files->open({"list", files->path_of("..\\list")}, Access::forward);
    std::array<char, 4> piece{};
    EXPECT_EQ(opened->read(piece.data(), 4), 4U);
    EXPECT_EQ(std::string_view(piece.data(), 4), "one ");
    EXPECT_EQ(opened->read(piece.data(), 4), 3U);
    EXPECT_EQ(std::string_view(piece.data(), 3), "two");
    EXPECT_EQ(opened->read(piece.data(), 4), 0U);
}

}  // namespace
}  // namespace brelan::test
