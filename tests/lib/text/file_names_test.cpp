// Where the names of decks and of the package lie on this machine.
#include "text/file_names.h"

#include "support/state.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

class FileNames : public ::testing::Test {
protected:
    WorkDirectory directory;
    Directories places{{}, directory.path() / "drive"};

    // Where a name lies, seen from the test's directory.
    std::string place(std::string_view name) const {
        const fs::path whole = fs::absolute(resolve_file_name(places, name)).lexically_normal();
        return whole.lexically_relative(directory.path()).generic_string();
    }
};

// --- drive C: ----------------------------------------------------------------------------------------------

TEST_F(FileNames, DriveIsTheDirectoryThatStandsForIt) {
    EXPECT_EQ(place("C:\\VORK\\QX\\UNIT.DAT"), "drive/VORK/QX/UNIT.DAT");
    EXPECT_EQ(place("c:\\unit.dat"), "drive/unit.dat");
}

TEST_F(FileNames, DriveWithoutAPlaceIsAMessage) {
    const std::string message = failure_of([] { resolve_file_name(Directories{}, "C:\\unit.dat"); });
    EXPECT_NE(message.find("BRELAN_DRIVE_C"), std::string::npos) << message;
}

TEST_F(FileNames, OtherDriveIsAMessage) {
    const std::string message = failure_of([this] { resolve_file_name(places, "D:\\unit.dat"); });
    EXPECT_EQ(message.find("file name D:\\unit.dat: "), 0U) << message;
}

// --- directories -------------------------------------------------------------------------------------------

TEST_F(FileNames, BackslashSeparatesDirectories) {
    EXPECT_EQ(place("sub\\deep\\a.txt"), "sub/deep/a.txt");
}

TEST_F(FileNames, ParentIsTwoPoints) {
    directory.write("work/x", "");
    fs::current_path(directory.path() / "work");
    EXPECT_EQ(place("..\\mesh.Mes"), "mesh.Mes");
    EXPECT_EQ(place("..\\..\\mesh.Mes"), "../mesh.Mes");
    EXPECT_EQ(place(".\\mesh.Mes"), "work/mesh.Mes");
    EXPECT_EQ(place("mesh.Mes"), "work/mesh.Mes");
}

TEST_F(FileNames, NamesStartInTheDirectoryThatTheRunWorksIn) {
    directory.write("elsewhere/Work/Sub/x", "");
    places.working = directory.path() / "elsewhere" / "Work";
    EXPECT_EQ(place("mesh.Mes"), "elsewhere/Work/mesh.Mes");
    EXPECT_EQ(place("SUB\\a.txt"), "elsewhere/Work/Sub/a.txt");
    EXPECT_EQ(place("..\\mesh.Mes"), "elsewhere/mesh.Mes");
    EXPECT_EQ(place("C:\\unit.dat"), "drive/unit.dat");
    EXPECT_EQ(place("\\unit.dat"),
              fs::path("/unit.dat").lexically_relative(directory.path()).generic_string());
}

TEST_F(FileNames, TrailingBlanksDoNotCount) {
    directory.write("a.txt", "");
    EXPECT_EQ(place("a.txt" + std::string(121, ' ')), "a.txt");
    EXPECT_EQ(place("sub\\b.txt "), "sub/b.txt");
}

TEST_F(FileNames, BlanksInsideANameCount) {
    EXPECT_EQ(place("my mesh.Mes"), "my mesh.Mes");
    EXPECT_EQ(place(" a.txt"), " a.txt");
}

TEST_F(FileNames, BlankNameIsAMessage) {
    for (const char* name : {"", "   "})
        EXPECT_EQ(failure_of([&] { resolve_file_name(places, name); }),
                  "expected a file name, found a blank one");
}

TEST_F(FileNames, NameWithAZeroByteIsAMessage) {
    EXPECT_EQ(failure_of([this] { resolve_file_name(places, std::string_view("a\0b", 3)); }),
              "expected a file name, found one that holds a zero byte");
}

// --- capital and small letters -----------------------------------------------------------------------------

TEST_F(FileNames, EntryThatDiffersOnlyInCaseMatches) {
    directory.write("Vork/Qx/Qxdata/Unit.Dat", "");
    EXPECT_EQ(place("VORK\\QX\\QXDATA\\UNIT.DAT"), "Vork/Qx/Qxdata/Unit.Dat");
    EXPECT_EQ(place("vork\\qx\\qxdata\\unit.dat"), "Vork/Qx/Qxdata/Unit.Dat");
}

TEST_F(FileNames, DriveMatchesWithoutRegardToCaseToo) {
    directory.write("drive/Vork/a.txt", "");
    EXPECT_EQ(place("C:\\VORK\\A.TXT"), "drive/Vork/a.txt");
}

TEST_F(FileNames, ExactMatchGoesFirst) {
    directory.write("mesh.mes", "");
    directory.write("Mesh.Mes", "");
    directory.write("MESH.MES", "");
    EXPECT_EQ(place("Mesh.Mes"), "Mesh.Mes");
    EXPECT_EQ(place("MESH.MES"), "MESH.MES");
}

TEST_F(FileNames, TwoMatchesAreAMessage) {
    directory.write("mesh.mes", "");
    directory.write("MESH.MES", "");
    const std::string message = failure_of([this] { resolve_file_name(places, "Mesh.Mes"); });
    EXPECT_EQ(message.find("file name Mesh.Mes: expected one match"), 0U) << message;
    EXPECT_NE(message.find("mesh.mes"), std::string::npos) << message;
    EXPECT_NE(message.find("MESH.MES"), std::string::npos) << message;
}

TEST_F(FileNames, TwoMatchingDirectoriesAreAMessage) {
    directory.write("sub/a.txt", "");
    directory.write("SUB/a.txt", "");
    EXPECT_NE(failure_of([this] { resolve_file_name(places, "Sub\\a.txt"); }), "");
    EXPECT_EQ(place("SUB\\a.txt"), "SUB/a.txt");
}

TEST_F(FileNames, NameThatIsNotThereStaysAsGiven) {
    directory.write("Sub/x", "");
    EXPECT_EQ(place("SUB\\NewMesh.MES"), "Sub/NewMesh.MES");
    EXPECT_EQ(place("None\\NewMesh.MES"), "None/NewMesh.MES");
}

TEST_F(FileNames, CreatedFileHasTheNameAsGiven) {
    state.channels.open(55, "NewMesh.MES", OpenStatus::result);
    state.channels.close(55);
    state.channels.open(55, "newmesh.mes", OpenStatus::result).write_line("again");
    state.channels.take_results();
    EXPECT_EQ(fs::directory_iterator(directory.path())->path().filename(), "NewMesh.MES");
    EXPECT_EQ(directory.read("NewMesh.MES"), "again\n");
    EXPECT_FALSE(directory.exists("newmesh.mes"));
}

TEST_F(FileNames, OnlyLettersOfTheAlphabetMatch) {
    // The characters "[" and "{" differ by the same bit as a small and a capital letter.
    directory.write("a[1].txt", "");
    EXPECT_EQ(place("A{1}.TXT"), "A{1}.TXT");
    EXPECT_EQ(place("A[1].TXT"), "a[1].txt");
}

// A colon behind another character is part of a name, and so is one that no separator follows.
TEST_F(FileNames, LettersAloneNameDrives) {
    for (const char* name : {"1:\\x", "{:\\x", "@:/x"})
        EXPECT_EQ(parts_of_file_name(name).start, FileNameStart::working) << name;
    for (const char* name : {"C:x", "CC:\\x", "C:"})
        EXPECT_EQ(parts_of_file_name(name).start, FileNameStart::working) << name;
    for (const char* name : {"C:\\x", "c:/x"})
        EXPECT_EQ(parts_of_file_name(name).start, FileNameStart::drive_c) << name;
}

}  // namespace
}  // namespace brelan::test
