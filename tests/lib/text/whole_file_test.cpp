// Files that are replaced as a whole: what is left beside them, by those that live and by those that died.
#include "text/whole_file.h"

#include <sys/wait.h>

#include <csignal>

#include "support/state.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

class WholeFiles : public ChannelTest {
protected:
    std::size_t count() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory.path()), {}));
    }
    // Begins a file in a process of its own, which is killed as it writes.
    void die_writing(const std::string& name) const {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            WholeFile whole(directory.path() / name);
            whole.write("half a te");
            std::fflush(whole.stream());
            std::raise(SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
};

TEST_F(WholeFiles, TakeTheirNameAtTheEnd) {
    directory.write("a.txt", "old\n");
    {
        WholeFile whole(directory.path() / "a.txt");
        whole.write("new\n");
        EXPECT_EQ(directory.read("a.txt"), "old\n");
        whole.commit();
    }
    EXPECT_EQ(directory.read("a.txt"), "new\n");
    EXPECT_EQ(count(), 1U);
}

TEST_F(WholeFiles, LeaveNothingWithoutTheirEnd) {
    directory.write("a.txt", "old\n");
    WholeFile(directory.path() / "a.txt").write("new\n");
    EXPECT_EQ(directory.read("a.txt"), "old\n");
    EXPECT_EQ(count(), 1U);
}

TEST_F(WholeFiles, TellTheirOwnerByTheirName) {
    const WholeFile whole(directory.path() / "a.txt");
    EXPECT_EQ(whole.beside(), directory.path() / ("a.txt.brelan-" + std::to_string(::getpid()) + "-0.part"));
    const WholeFile another(directory.path() / "a.txt");
    EXPECT_NE(whole.beside(), another.beside());
}

TEST_F(WholeFiles, OfADeadProcessAreRemovedByTheNext) {
    directory.write("a.txt", "old\n");
    die_writing("a.txt");
    EXPECT_EQ(directory.read("a.txt"), "old\n");
    EXPECT_EQ(count(), 2U);
    WholeFile whole(directory.path() / "b.txt");
    whole.commit();
    EXPECT_EQ(count(), 2U);
    EXPECT_TRUE(directory.exists("b.txt"));
}

TEST_F(WholeFiles, OfALivingProcessStay) {
    WholeFile living(directory.path() / "a.txt");
    living.write("first\n");
    WholeFile other(directory.path() / "b.txt");
    other.commit();
    living.commit();
    EXPECT_EQ(directory.read("a.txt"), "first\n");
}

TEST_F(WholeFiles, OfTheUserStayWhateverTheirNames) {
    for (const char* name :
         {"a.part", "a.brelan-.part", "a.brelan-x.part", "a.brelan-1.party", ".brelan-1.par"})
        directory.write(name, "");
    WholeFile(directory.path() / "b.txt").commit();
    EXPECT_EQ(count(), 6U);
}

TEST_F(WholeFiles, HaveNamesAsLongAsAFileMay) {
    const std::string longest(255, 'n');
    WholeFile whole(directory.path() / longest);
    whole.write("x");
    whole.commit();
    EXPECT_EQ(directory.read(longest), "x");
}

TEST_F(WholeFiles, KeepAllPermissions) {
    directory.write("a.txt", "old\n");
    fs::permissions(directory.path() / "a.txt", fs::perms{0604});
    WholeFile(directory.path() / "a.txt").commit();
    EXPECT_EQ(fs::status(directory.path() / "a.txt").permissions(), fs::perms{0604});
}

TEST_F(WholeFiles, NeedADirectoryThatTakesFiles) {
    EXPECT_THROW(WholeFile(directory.path() / "none" / "a.txt"), std::system_error);
    EXPECT_TRUE(replaceable(directory.path() / "none" / "a.txt").directory);
    EXPECT_TRUE(replaceable(directory.path() / "a.txt"));
    directory.write("closed/a.txt", "");
    directory.write("locked.txt", "");
    fs::permissions(directory.path() / "locked.txt", fs::perms{0444});
    fs::permissions(directory.path() / "closed/a.txt", fs::perms{0666});
    fs::permissions(directory.path() / "closed", fs::perms{0555});
    constexpr uid_t nobody = 65534;
    const uid_t before = ::geteuid();
    ASSERT_EQ(::seteuid(before == 0 ? nobody : before), 0);  // the super-user may write everywhere
    const Replaceable closed = replaceable(directory.path() / "closed/a.txt"),
                      locked = replaceable(directory.path() / "locked.txt");
    const std::string message =
        failure_of([&] { state.channels.open(55, "closed\\a.txt", OpenStatus::result); });
    ASSERT_EQ(::seteuid(before), 0);
    EXPECT_FALSE(closed.file);
    EXPECT_TRUE(closed.directory);
    EXPECT_TRUE(locked.file);
    EXPECT_FALSE(closed);
    EXPECT_FALSE(locked);
    EXPECT_EQ(
        message,
        "closed\\a.txt: its directory cannot hold the file that is to take its place: Permission denied");
}

TEST_F(WholeFiles, TakeNoPlaceOfADirectory) {
    fs::create_directory(directory.path() / "place");
    {
        WholeFile whole(directory.path() / "place");
        whole.write("text");
        EXPECT_THROW(whole.commit(), std::system_error);
    }
    EXPECT_TRUE(fs::is_directory(directory.path() / "place"));
    EXPECT_EQ(count(), 1U);
}

}  // namespace
}  // namespace brelan::test
