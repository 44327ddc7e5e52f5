// Runs of many decks: the five of a dam with shells, which are the only decks that follow each other in one
// run.

#include <gtest/gtest.h>

#include <algorithm>

#include "batch/edit_run.h"
#include "support/dam.h"

namespace brelan::test {
namespace {

// The decks in their order: the base mesh with its groups (IEDIT 4), two shells (IEDIT 5), two combinations.
class ManyDecks : public ::testing::Test {
protected:
    void SetUp() override {
        DamInput dam;
        dam.ISHELL = 1;
        install_dam_files(project, Kind::displacement);
        project.deck(dam.deck());
    }
    // The lines of a trace that begin with one of the texts.
    Lines trace(std::string_view name, const Lines& beginnings) const {
        Lines found;
        for (const std::string& line : lines_of(project.read_work(name)))
            if (std::any_of(beginnings.begin(), beginnings.end(),
                            [&](const std::string& text) { return line.starts_with(text); }))
                found.push_back(line);
        return found;
    }
    Project project{Kind::displacement};
};

// The first deck reaches Pass 3 and closes the trace. Lines that come later fall to the default file: those
// of the first deck's outputs, which do not look at the last pass, and Pass 3 of each further deck.
TEST_F(ManyDecks, LinesOfLaterDecksGoToTheDefaultFileOnceTheTraceIsClosed) {
    project.write_data("DEBUG/Brelan_P1.dat", "1 3\n");
    project.write_work("fort.888", "from an earlier run\n");
    expect_finished(project.run());
    const Lines closed = lines_of(project.read_work("Brelan_P1.deb"));
    EXPECT_EQ(closed.size(), 5U);  // begin, module, Passes 1 to 3
    EXPECT_EQ(closed.back(), "  Pass 3 ...");
    const Lines rest = lines_of(project.read_work("fort.888"));
    ASSERT_EQ(rest.size(), 6U);
    EXPECT_EQ(rest[0], "  Pass 27.1.1 ");
    EXPECT_TRUE(rest[1].starts_with("  GROUP_SORT: Beginning NGROUP = ")) << rest[1];
    EXPECT_EQ(Lines(rest.begin() + 2, rest.end()), Lines(4, "  Pass 3 ..."));
}

// Closed in front of the second deck, the trace goes on in the default file at every pass up to the one asked
// for.
TEST_F(ManyDecks, PassesBelowTheLastGoOnInTheDefaultFile) {
    project.write_data("DEBUG/Brelan_P1.dat", "1 27.2\n");
    expect_finished(project.run());
    EXPECT_EQ(lines_of(project.read_work("Brelan_P1.deb")).back(), "  Pass 27.2 ");
    // The shells reach 27.2 and close the file again, combinations take passes below it.
    EXPECT_EQ(trace("fort.888", {"  Pass 3 ", "  Pass 5", "  Pass 27.2"}),
              (Lines{"  Pass 3 ...", "  Pass 5F ", "  Pass 27.2 ", "  Pass 3 ...", "  Pass 5F ",
                     "  Pass 27.2 ", "  Pass 3 ...", "  Pass 5G ", "  Pass 3 ...", "  Pass 5G "}));
}

// The first deck, which has groups, uses the switch up; the shells behind it read 0.
TEST_F(ManyDecks, SecondDeckOfARunFinds0InTheLineUpSwitch) {
    project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
    expect_finished(project.run());
    const std::string without = project.read("Earth_Dam.Mes");
    project.write_work("LineUp.dat", "1\n");
    expect_finished(project.run());
    EXPECT_EQ(trace("Brelan_P1.deb", {"  Pass 5", "  Pass 14.5", "  Pass 14.6"}),
              (Lines{"  Pass 5E ", "  Pass 14.5  LINEUP =            1", "  Pass 14.6  NLNP =            0",
                     "  Pass 5F ", "  Pass 5F ", "  Pass 5G ", "  Pass 5G "}));
    expect_work_file(project, "LineUp.dat", {"           0"});
    EXPECT_EQ(project.read("Earth_Dam.Mes"), without) << "a dam has no trusses to line up";
}

}  // namespace
}  // namespace brelan::test
