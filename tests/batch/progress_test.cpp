// The batch program tells its passes and groups on a descriptor that it is given, and nowhere else.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "lib/run/memory_run.h"

namespace brelan::test {
namespace {

// Runs the program by a shell that has been prepared.
void run_prepared(const Project& project, const std::string& preparation) {
    const std::string command = "cd '" + project.work_file("").string() + "' && " + preparation +
                                " BRELAN_DRIVE_C='" + project.drive().string() +
                                "' '" BRELAN_PROGRAM "' < /dev/null > ../said 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << project.read("said");
}

class ProgressTold : public ::testing::Test {
protected:
    ProgressTold() { lay_out(project, Kind::displacement, example("crossing.dat")); }
    const Project project{Kind::displacement};
};

TEST_F(ProgressTold, ALineForEachPassAndEachGroup) {
    run_prepared(project, "BRELAN_PROGRESS=7 7> ../told");
    const std::vector<std::string> lines = lines_of(project.read("told"));
    ASSERT_GT(lines.size(), 20U);
    EXPECT_EQ(lines[0], "0 0 2 0 0 ");
    EXPECT_EQ(lines[1], "1 1 3 0 0 ");
    const auto groups = std::find(lines.begin(), lines.end(), "1 1 14.2 0 0 ");
    ASSERT_TRUE(lines.end() - groups > 4);
    EXPECT_EQ(groups[1], "1 1 14.2 1 3 Clay below a sloping level");
    EXPECT_EQ(groups[2], "1 1 14.2 2 3 Trench");
    EXPECT_EQ(groups[3], "1 1 14.2 3 3 Lens of sand");
    EXPECT_EQ(groups[4], "1 1 14.3 0 0 ");
    EXPECT_EQ(lines.back(), "1 1 27.2 0 0 ");
}

// A number that names no descriptor that was there before, or one of the standard streams.
TEST_F(ProgressTold, NothingWhereNobodyHasOpenedTheDescriptor) {
    run_prepared(project, "");
    const std::string mesh = project.read("Crossing.Mes");
    EXPECT_NE(mesh, "");
    for (const char* variable : {"7", "1", "2", "0", "-1", "7x", "", "99999999999"}) {
        run_prepared(project, "BRELAN_PROGRESS='" + std::string(variable) + "'");
        EXPECT_EQ(project.read("said"), "") << variable;
        EXPECT_TRUE(project.read("Crossing.Mes") == mesh) << variable;
    }
}

// One that takes nothing keeps no run from its end.
TEST_F(ProgressTold, NothingOnADescriptorThatTakesNone) {
    run_prepared(project, "BRELAN_PROGRESS=7 7< /dev/null");
    run_prepared(project, "BRELAN_PROGRESS=7 7> /dev/full");
    EXPECT_EQ(project.read("said"), "");
    EXPECT_NE(project.read("Crossing.Mes"), "");
}

}  // namespace
}  // namespace brelan::test
