// The option --sound of the batch program, seen by the bottom of a high field: 2 of its 21 nodes are fixed by
// sums of 32 bits, all of them with the option.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/dam.h"
#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

class SoundOption : public ::testing::Test {
protected:
    const Project project{Kind::displacement};

    // Nodes of the base mesh that are fixed at the bottom.
    std::ptrdiff_t fixed_with(const std::vector<std::string>& arguments,
                              const std::string& follows = "0\n") const {
        project.deck("2 0\n1 1\n0 0\n20 1 0.5\n150 1 0.5\n" + follows);
        RunOptions options;
        options.arguments = arguments;
        expect_finished(project.run("", options));
        const Mesh mesh = check_mesh(project.read("Bmesh.dat"), Kind::displacement).mesh;
        return std::count_if(mesh.nodes.begin(), mesh.nodes.end(),
                             [](const MeshNode& node) { return node.codes[1] == 1; });
    }
};

TEST_F(SoundOption, HoldsWhereverItStands) {
    EXPECT_EQ(fixed_with({"--sound"}), 21);
    EXPECT_EQ(fixed_with({"other", "--sound"}), 21);
}

TEST_F(SoundOption, NothingElseIsTheOption) {
    EXPECT_EQ(fixed_with({}), 2);
    EXPECT_EQ(fixed_with({"--soun", "sound", "-sound", "--sound=1", "--SOUND", ""}), 2);
}

TEST_F(SoundOption, HoldsForABaseMeshThatAnEditFollows) {
    EXPECT_EQ(fixed_with({"--sound"}, "1\nBmesh.dat\nOut.Mes\n1 1\n0\n0 0 0 0\n1 1\n"), 21);
    EXPECT_TRUE(project.exists("Out.Mes"));
}

// The decks of a dam are made and run one after the other, and its profile is cut in one of them.
TEST_F(SoundOption, HoldsForTheDecksOfADam) {
    DamInput dam;
    dam.layers = {6.3, 8.4};
    install_dam_files(project, Kind::displacement);
    const auto mesh_with = [&](const std::vector<std::string>& arguments) {
        project.deck(dam.deck());
        RunOptions options;
        options.arguments = arguments;
        expect_finished(project.run("", options));
        return project.read(dam.mesh_name());
    };
    const std::string by_rules = mesh_with({}), sound = mesh_with({"--sound"});
    EXPECT_NE(by_rules, sound);
    EXPECT_EQ(mesh_with({}), by_rules);
}

}  // namespace
}  // namespace brelan::test
