// Files as the system sees them.
#include "text/native_file.h"

#include "support/state.h"
#include "text/directory_hold.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

class NativeFile : public ::testing::Test {
protected:
    WorkDirectory directory;

    void write(const fs::path& file, const std::string& text) const {
        std::FILE* const stream = open_stream(file, "wb");
        ASSERT_NE(stream, nullptr) << file;
        EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), stream), text.size());
        EXPECT_TRUE(flush_to_disk(stream));
        std::fclose(stream);
    }
};

TEST_F(NativeFile, ReplacesAnotherWhole) {
    const fs::path old = directory.path() / "old", made = directory.path() / "made";
    write(old, "long text of before");
    write(made, "new");
    std::error_code error;
    replace_file(made, old, error);
    EXPECT_FALSE(error);
    EXPECT_TRUE(flush_directory(directory.path()));
    EXPECT_EQ(type_of_file(made), fs::file_type::not_found);
    EXPECT_EQ(size_of_file(old, error), 3U);
}

TEST_F(NativeFile, ThatIsNotThereIsAnError) {
    const fs::path none = directory.path() / "none";
    std::error_code error;
    replace_file(none, directory.path() / "other", error);
    EXPECT_TRUE(error);
    size_of_file(none, error);
    EXPECT_TRUE(error);
    EXPECT_FALSE(flush_directory(none));
    EXPECT_EQ(open_stream(none, "rb"), nullptr);
    EXPECT_FALSE(number_of_file(none));
    EXPECT_FALSE(remove_file(none, error));
    EXPECT_FALSE(error);
}

TEST_F(NativeFile, IsCutWhileItIsOpen) {
    const fs::path file = directory.path() / "file";
    write(file, "abcdef");
    std::FILE* const stream = open_stream(file, "r+b");
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(resize_stream(stream, 2));
    std::fclose(stream);
    std::error_code error;
    EXPECT_EQ(size_of_file(file, error), 2U);
}

TEST_F(NativeFile, IsTheSameByWhateverName) {
    const fs::path file = directory.path() / "file", link = directory.path() / "link";
    write(file, "");
    fs::create_hard_link(file, link);
    EXPECT_EQ(number_of_file(file), number_of_file(link));
    EXPECT_EQ(number_of_file(file), number_of_file(directory.path() / "." / "file"));
    write(directory.path() / "other", "");
    EXPECT_NE(number_of_file(file), number_of_file(directory.path() / "other"));
    std::error_code error;
    EXPECT_TRUE(remove_file(link, error));
    EXPECT_EQ(type_of_file(file), fs::file_type::regular);
}

TEST_F(NativeFile, LinksThatLeadRoundLieWhereTheyAre) {
    const fs::path one = directory.path() / "one", two = directory.path() / "two";
    fs::create_symlink(two, one);
    fs::create_symlink(one, two);
    EXPECT_EQ(behind_links(one), one);
    EXPECT_EQ(type_of_file(one), fs::file_type::none);
}

// A relative name without a directory lies in the working directory.
TEST_F(NativeFile, DirectoryWithoutANameIsTheWorkingOne) {
    EXPECT_TRUE(flush_directory({}));
    EXPECT_FALSE(may_add_files({}));
    DirectoryHold one({}), two({}, DirectoryHold::Inherited::by_children);
    EXPECT_TRUE(one.try_to_hold());
    EXPECT_FALSE(two.try_to_hold());
}

TEST_F(NativeFile, DirectoryThatKnowsNoFlushingIsNoError) {
    EXPECT_TRUE(flush_directory("/proc"));
}

TEST_F(NativeFile, WhatADiskHasNoRoomForIsNotFlushed) {
    std::FILE* const stream = open_stream("/dev/full", "wb");
    ASSERT_NE(stream, nullptr);
    std::fputs("text", stream);
    EXPECT_FALSE(flush_to_disk(stream));
    std::fputs("text", stream);
    EXPECT_FALSE(resize_stream(stream, 2));
    std::fclose(stream);
}

// A directory's permissions are none of a file's.
TEST_F(NativeFile, NewOneTakesThePermissionsOfAFileAlone) {
    const fs::path made = directory.path() / "made", place = directory.path() / "place";
    fs::create_directory(place);
    fs::permissions(place, fs::perms::owner_exec);
    std::FILE* const stream = create_stream(made, place);
    ASSERT_NE(stream, nullptr);
    std::fclose(stream);
    EXPECT_NE(fs::status(made).permissions(), fs::perms::owner_exec);
}

}  // namespace
}  // namespace brelan::test
