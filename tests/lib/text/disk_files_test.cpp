// Files on disk of which a call fails.
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "support/state.h"
#include "text/files.h"
#include "text/whole_file.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

// Files of this process cannot grow beyond so many bytes as long as it lives.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{size, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

class FailingDisk : public ::testing::Test {
protected:
    NamedFile file(const std::string& name) const { return {name, directory_.path() / name}; }

    WorkDirectory directory_;
    DiskFiles disk_{Directories{}};
};

TEST_F(FailingDisk, WriteThatFindsNoRoomIsAMessage) {
    const auto opened = disk_.open(file("list"), Access::work);
    opened->write("some text");
    const SmallFiles limit(16);
    EXPECT_EQ(failure_of([&] { opened->write(std::string(100, 'x')); }),
              "list: the file cannot be written: File too large");
}

TEST_F(FailingDisk, CutThatWouldMakeAFileTooLargeIsAMessage) {
    const auto opened = disk_.open(file("list"), Access::work);
    opened->cut(7);
    EXPECT_EQ(fs::file_size("list"), 7U);
    const SmallFiles limit(16);
    EXPECT_EQ(failure_of([&] { opened->cut(100); }), "list: the file cannot be written: File too large");
}

TEST_F(FailingDisk, FileThatCannotBeReplacedStays) {
    directory_.write("mesh", "the old one");
    {
        const SmallFiles limit(16);
        EXPECT_EQ(failure_of([&] { disk_.replace(file("mesh"), std::string(100, 'x')); }),
                  "mesh: the file cannot be written: File too large");
    }
    EXPECT_EQ(directory_.read("mesh"), "the old one");
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 1);
}

// What comes behind a piece that was lost does not make the file whole.
TEST_F(FailingDisk, FileOfWhichAPieceIsLostTakesNoPlace) {
    directory_.write("mesh", "the old one");
    {
        WholeFile whole(directory_.path() / "mesh");
        {
            const SmallFiles limit(16);
            EXPECT_THROW(whole.write(std::string(100000, 'x')), std::system_error);
        }
        whole.write("the end");
        EXPECT_THROW(whole.commit(), std::system_error);
    }
    EXPECT_EQ(directory_.read("mesh"), "the old one");
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 1);
}

TEST_F(FailingDisk, PipeHasNoEndToWriteBehind) {
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    EXPECT_EQ(failure_of([&] { disk_.open(file("pipe"), Access::append); }),
              "pipe: the file cannot be opened for writing: Illegal seek");
}

// The memory of a process reads as a file of which the first bytes are not there.
TEST_F(FailingDisk, ReadThatFailsIsAMessage) {
    const auto opened = disk_.open({"memory", "/proc/self/mem"}, Access::forward);
    char byte = 0;
    EXPECT_EQ(failure_of([&] { opened->read(&byte, 1); }),
              "memory: the file cannot be read: Input/output error");
}

TEST_F(FailingDisk, DirectoryWithFilesCannotBeDeleted) {
    directory_.write("full/of", "files");
    EXPECT_EQ(failure_of([&] { disk_.remove(file("full")); }),
              "full: the file cannot be deleted: Directory not empty");
    EXPECT_TRUE(directory_.exists("full/of"));
}

TEST_F(FailingDisk, PipeCannotBeCut) {
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    const auto opened = disk_.open(file("pipe"), Access::work);
    EXPECT_EQ(failure_of([&] { opened->cut(3); }), "pipe: the file cannot be written: Illegal seek");
}

TEST(GrowingFile, GoesOnRightBehindItsEnd) {
    const WorkDirectory directory;
    directory.write("list", "one\n");
    DiskFiles disk{Directories{}};
    const auto opened = disk.open({"list", directory.path() / "list"}, Access::append);
    opened->write("two\n");
    opened->close();
    EXPECT_EQ(directory.read("list"), "one\ntwo\n");
}

}  // namespace
}  // namespace brelan::test
