// The group cards and the defaults file through the program: the normalised deck to the column, by kind and
// MTYPE, and the project's copy of the defaults.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "batch/edit_run.h"
#include "support/mesh.h"

namespace brelan::test {
namespace {

const std::string DEFAULTS = "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n";
const Lines FRONT{"1 0", "mesh.Mes", "out.Mes", "1 1", "4"};  // up to Card 3.3

std::string I(const std::vector<int>& values) {
    std::string line;
    for (const int v : values)
        line += i_field(v, 5) + " ";
    return line;
}
std::string E(const std::vector<double>& values) {
    std::string line;
    for (const double v : values)
        line += e_field(v, 12, 5) + " ";
    return line;
}

// The normalised deck behind Card 3.3, whatever becomes of the run afterwards.
Lines normalised(Kind kind, const Lines& cards) {
    const Project project(kind);
    project.write("mesh.Mes", sample_mesh(kind).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    project.deck(text_of(FRONT + cards));
    const RunResult result = project.run();
    EXPECT_EQ(result.signal, 0) << result.err;
    Lines lines = lines_of(project.read_work("BRELAN.TMP"));
    lines.erase(lines.begin(), lines.begin() + std::min<std::ptrdiff_t>(5, std::ssize(lines)));
    return lines;
}

const Lines NO_LISTS{"0", "0", "0"};
const Lines REFERENCE{"0 0 0"};
const Lines FAR_LINE{"2 0 0 0 0", "1 100 100", "2 101 100", "1", "1 1 1 3"};

Lines front(int groups, int titled = 0) {
    return {I({0}), I({0}), I({0}), I({groups, titled}), E({0, 0, 0})};
}
const Lines FAR_LINE_NORMALISED{I({2, 0, 0}) + E({0, 0}), I({1}) + E({100, 100}), I({2}) + E({101, 100}),
                                I({1}), I({1, 1, 1, 3})};

void expect_lines(const Lines& found, const Lines& expected, const std::string& what) {
    EXPECT_EQ(first_difference(expected, found), "") << what;
}

TEST(GroupCards, ListsAreWrittenTenToALine) {
    expect_lines(normalised(Kind::displacement, {"12", "1 2 3 4 5 6 7 1 2 3 4 5", "2", "1 3", "1",
                                                 "-1 -2 100 200", "0", "1.5 2"}),
                 {I({12}), I({1, 2, 3, 4, 5, 6, 7, 1, 2, 3}), I({4, 5}), I({2}), I({1, 3}), I({1}),
                  E({-1, -2, 100, 200}), I({0, 0}), E({1.5, 2, 0})},
                 "lists");
}

TEST(GroupCards, NoGroupEndsTheDeckBehindTheReference) {
    expect_lines(normalised(Kind::coupled, NO_LISTS + Lines{"0 1", "0 0 2.5"}),
                 {I({0}), I({0}), I({0}), I({0, 1}), E({0, 0, 2.5})}, "no group");
    const Project project(Kind::coupled);
    project.write("mesh.Mes", sample_mesh(Kind::coupled).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    project.deck(text_of(FRONT + NO_LISTS + Lines{"0 0"}));
    EXPECT_NE(project.run().status, 0);
}

struct MaterialCase {
    int MTYPE;
    std::string card;
    std::string others;        // coupled, temperature and head
    std::string displacement;  // where KF is the real DEN
};

TEST(GroupCards, MaterialLineOfEachKind) {
    const std::vector<MaterialCase> cases{
        {1, "2 3", I({2, 3}), I({2, 3})},
        {2, "3 4", I({3, 4}), I({3, 4})},
        {3, "7 2 0 4", I({7, 2, 0, 4}), I({7}) + E({2}) + I({0, 4})},
        {3, "7 2 0 4 9", I({7, 2, 0, 4}), I({7}) + E({2}) + I({0, 4})},
        {4, "7 2 0 4", I({7, 2, 0, 4, 8}), I({7}) + E({2}) + I({0, 4, 8})},
        {4, "7 2 0 4 0", I({7, 2, 0, 4, 8}), I({7}) + E({2}) + I({0, 4, 8})},
        {4, "7 2 0 4 5", I({7, 2, 0, 4, 5}), I({7}) + E({2}) + I({0, 4, 5})},
        {4, "7.75 2 0 4", I({7, 2, 0, 4, 8}), I({7}) + E({2}) + I({0, 4, 8})},
        {4, "-7 2 0 4", I({-7, 2, 0, 4, -6}), I({-7}) + E({2}) + I({0, 4, -6})},
        {-2, "5 3 0.25 1 2 3 4", I({5, 3}) + E({0.25}) + I({1, 2, 3, 4}),
         I({5}) + E({3, 0.25}) + I({1, 2, 3, 4})},
        {-3, "7 2 5 3 0.25 1 2 3 4 9", I({7, 2, 5, 3}) + E({0.25}) + I({1, 2, 3, 4}),
         I({7}) + E({2}) + I({5}) + E({3, 0.25}) + I({1, 2, 3, 4})},
        {-4, "7 2 5 3 0.25 1 2 3 4", I({7, 2, 5, 3}) + E({0.25}) + I({1, 2, 3, 4, 8}),
         I({7}) + E({2}) + I({5}) + E({3, 0.25}) + I({1, 2, 3, 4, 8})},
        {-4, "7 2 5 3 0.25 1 2 3 4 6", I({7, 2, 5, 3}) + E({0.25}) + I({1, 2, 3, 4, 6}),
         I({7}) + E({2}) + I({5}) + E({3, 0.25}) + I({1, 2, 3, 4, 6})}};
    for (const Kind kind : ALL_KINDS)
        for (const MaterialCase& c : cases) {
            Lines line{kind == Kind::displacement ? c.displacement : c.others};
            if (kind == Kind::head && c.MTYPE == -4)
                line.clear();
            expect_lines(normalised(kind, NO_LISTS + Lines{"1"} + REFERENCE +
                                              Lines{std::to_string(c.MTYPE), c.card} + FAR_LINE),
                         front(1) + Lines{I({c.MTYPE, 0, 0})} + line + FAR_LINE_NORMALISED,
                         name_of(kind) + ", MTYPE " + std::to_string(c.MTYPE) + ": " + c.card);
        }
}

TEST(GroupCards, OtherTypesHaveNoMaterialLine) {
    for (const int MTYPE : {-1, 6, -5})
        expect_lines(normalised(Kind::coupled,
                                NO_LISTS + Lines{"1"} + REFERENCE + Lines{std::to_string(MTYPE)} + FAR_LINE),
                     front(1) + Lines{I({MTYPE, 0, 0})} + FAR_LINE_NORMALISED, std::to_string(MTYPE));
}

const Lines POST{"1 2", "3 4", "5 6", "7 8", "9 10", "11 12", "1", "2", "3", "4", "5", "6", "7"};

Lines switches() {
    Lines lines;
    for (int i = 1; i <= 7; ++i)
        lines.push_back(I({i}));
    return lines;
}

TEST(GroupCards, OutputLinesFollowTheMaterial) {
    expect_lines(normalised(Kind::coupled, NO_LISTS + Lines{"1"} + REFERENCE + Lines{"2 1 0 9 9 9 9", "0 0"} +
                                               POST + FAR_LINE),
                 front(1) +
                     Lines{I({2, 1, 0}), I({0, 0}), I({1, 2}), I({3, 4}), I({5, 6}), I({7, 8}), I({9, 10}),
                           I({11, 12})} +
                     switches() + FAR_LINE_NORMALISED,
                 "IGPOST 1");
}

TEST(GroupCards, OutputLinesFollowTheTypeThatHasNoMaterialLine) {
    for (const int MTYPE : {-1, 6, -5})
        expect_lines(
            normalised(Kind::coupled, NO_LISTS + Lines{"1"} + REFERENCE +
                                          Lines{std::to_string(MTYPE) + " 1 0"} + POST + FAR_LINE),
            front(1) +
                Lines{I({MTYPE, 1, 0}), I({1, 2}), I({3, 4}), I({5, 6}), I({7, 8}), I({9, 10}), I({11, 12})} +
                switches() + FAR_LINE_NORMALISED,
            std::to_string(MTYPE));
}

TEST(GroupCards, SkippedGroupHasOneCard) {
    expect_lines(
        normalised(Kind::coupled, NO_LISTS + Lines{"2"} + REFERENCE + Lines{"0 1 1", "-1"} + FAR_LINE),
        front(2) + Lines{I({0, 1, 1}), I({-1, 0, 0})} + FAR_LINE_NORMALISED, "MTYPE 0");
}

TEST(GroupCards, ClosingOutlineBecomesAGroupThatCutsNothing) {
    for (const Kind kind : ALL_KINDS)
        expect_lines(normalised(kind, NO_LISTS + Lines{"1"} + REFERENCE + Lines{"5 1 1"} + POST +
                                          Lines{"2 1 1 5 6", "1 100 100", "2 101 100", "1", "1 1 4 2"}),
                     front(1) +
                         Lines{I({3, 1, 1}), I({0, 1, 0, 1}), I({0, 0}), I({1, 2}), I({5, 6}), I({7, 8}),
                               I({9, 10}), I({11, 12})} +
                         switches() +
                         Lines{I({2, 0, 1}) + E({5, 6}), I({1}) + E({100, 100}), I({2}) + E({101, 100}),
                               I({1}), I({1, 1, 0, 3})},
                     name_of(kind));
}

TEST(GroupCards, ArcFollowsItsSegmentAndSegmentsAreCounted) {
    expect_lines(
        normalised(Kind::head, NO_LISTS + Lines{"1"} + REFERENCE +
                                   Lines{"2", "0 0", "3 0 0 0 0", "1 100 100", "2 101 100", "3 102 100",
                                         "2 7 8", "9 2 4 3", "100 90 10 10 0 45", "9 1 -1 3"}),
        front(1) + Lines{I({2, 0, 0}), I({0, 0}), I({3, 0, 0}) + E({0, 0}), I({1}) + E({100, 100}),
                         I({2}) + E({101, 100}), I({3}) + E({102, 100}), I({2}), I({1, 2, 4, 3}),
                         E({100, 90, 10, 10, 0, 45}), I({2, 1, -1, 3})},
        "arc");
}

// One arc on an open line, or as a segment of a closed outline of two.
Lines arc_cards(const std::string& arc, int MTYPE = 2, int place = 1) {
    const Lines segments = place == 1 ? Lines{"1 2 4 3", arc, "2 1 1 3"} : Lines{"1 1 1 3", "2 2 4 3", arc};
    return NO_LISTS + Lines{"1"} + REFERENCE +
           Lines{std::to_string(MTYPE),
                 MTYPE == 2 ? "0 0" : "1 0 0 0",
                 "3 0 0 0 0",
                 "1 100 100",
                 "2 101 100",
                 "3 102 100",
                 "2"} +
           segments;
}

TEST(GroupCards, ArcWithoutLengthIsRefusedAtItsCard) {
    const auto expect_refused = [](const Lines& cards, int line, const char* field, const char* found) {
        const Project project(Kind::displacement);
        project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
        project.deck(text_of(FRONT + cards));
        expect_failed(project.run(), {"deck.dat, line " +
                                          std::to_string(std::ssize(FRONT) + std::ssize(NO_LISTS) +
                                                         std::ssize(REFERENCE) + 1 + line) +
                                          ": ",
                                      std::string("Card 3.3.5.4.3.1-1 (") + field + "): ",
                                      std::string("found ") + found + ": the arc has no length"});
        EXPECT_FALSE(project.exists("out.Mes"));
    };
    expect_refused(arc_cards("100 90 0 0 0 45"), 9, "Rx", "0");
    expect_refused(arc_cards("100 90 0 2 0 45"), 9, "Rx", "0");
    expect_refused(arc_cards("100 90 2 0 0 45"), 9, "Ry", "0");
    expect_refused(arc_cards("100 90 1E-20 2 0 45"), 9, "Rx", "1e-20");  // its square is 0 in 32 bits
    expect_refused(arc_cards("100 90 2 2 90 90"), 9, "Qe", "90");
    expect_refused(arc_cards("100 90 2 2 90 90.0001"), 9, "Qe", "90.0001");  // five digits are kept
    expect_refused(arc_cards("100 90 4 2 90 90", 3), 9, "Qe", "90");
    expect_refused(arc_cards("100 90 2 2 90 90", 3, 2), 10, "Qe", "90");
}

// The last segment of a closed outline then leads from the ellipse back to the circle of Ry.
TEST(GroupCards, OneAngleMayCloseAnOutline) {
    const Project project(Kind::displacement);
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    project.deck(text_of(FRONT + arc_cards("100 90 4 2 0 0", 3, 2)));
    expect_finished(project.run());
}

TEST(GroupCards, EveryGroupHasItsTitle) {
    const std::string title = "Wall " + std::string(95, 'w');
    expect_lines(normalised(Kind::coupled, NO_LISTS + Lines{"2 1"} + REFERENCE +
                                               Lines{"left out", "0", title, "-1"} + FAR_LINE),
                 front(2, 1) + Lines{"left out", I({0, 0, 0}), title.substr(0, 80), I({-1, 0, 0})} +
                     FAR_LINE_NORMALISED,
                 "titles");
}

// --- the defaults file ---------------------------------------------------------------------------

class GroupDefaults : public ::testing::Test {
protected:
    void SetUp() override {
        project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
        project.deck(text_of(FRONT + NO_LISTS + Lines{"0"} + REFERENCE));
    }
    Project project{Kind::displacement};
};

TEST_F(GroupDefaults, FirstRunCopiesTheMasterInSixtyColumns) {
    const std::string comment = "* " + std::string(98, 'c');
    project.write_data("DV-BRELAN.dat", comment + "\n" + DEFAULTS);
    expect_finished(project.run());
    expect_file(project, "DV-BRELAN.dat",
                {comment.substr(0, 60), padded("0 0.01 0.01 0.001", 60), padded("0 0.01 0 0 0 0 0 0", 60),
                 padded("0", 60)});
    const Lines work = lines_of(project.read_work("DV-BRELAN.Tmp"));
    ASSERT_EQ(work.size(), 3U);
    EXPECT_EQ(work[0].find("0 0.01 0.01 0.001"), 0U);
}

TEST_F(GroupDefaults, CopyOnceWrittenStays) {
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    expect_finished(project.run());
    const std::string copy = project.read("DV-BRELAN.dat");
    project.write_data("DV-BRELAN.dat", "1 9 9 9\n0 0.01 0 0 0 0 0 0\n0\n");
    expect_finished(project.run());
    EXPECT_EQ(project.read("DV-BRELAN.dat"), copy);
    EXPECT_EQ(lines_of(project.read_work("DV-BRELAN.Tmp"))[0].find("0 0.01 0.01"), 0U);
}

TEST_F(GroupDefaults, CopyIsEnoughWithoutAMaster) {
    project.write("DV-BRELAN.dat", DEFAULTS);
    expect_finished(project.run());
}

TEST_F(GroupDefaults, WithoutMasterAndCopyTheRunFails) {
    expect_failed(project.run(), {"DV-BRELAN"});
}

TEST_F(GroupDefaults, ValuesBeyondColumnSixtyAreLost) {
    project.write_data("DV-BRELAN.dat",
                       "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0" + std::string(60, ' ') + "0\n0\n");
    expect_failed(project.run(), {"DV-BRELAN"});
}

TEST_F(GroupDefaults, TooFewLinesFail) {
    project.write_data("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n");
    expect_failed(project.run(), {"DV-BRELAN"});
}

TEST_F(GroupDefaults, MoreMovesThanTheTableHoldsFail) {
    project.write_data("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n1000000\n");
    expect_failed(project.run(), {"DV-BRELAN", "expected an NMOVE2 of at most", "found 1000000"});
}

// The head kind's normalised deck has no material line for MTYPE -4, so that its ten values are taken from
// the lines of the points. What is left of those is no point and no segment, and the next group begins at its
// title.
TEST(GroupCards, GroupBehindAMaterialLineThatIsNotShownBeginsAtItsTitle) {
    const Project project(Kind::head);
    project.write("mesh.Mes", sample_mesh(Kind::head).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    const Lines first{"first", "-4", "7 2 5 3 0.25 1 2 3 4", "4 0 0 0 0", "1 100 100", "2 101 100", "0 0 0",
                      "0 0 0", "0"};
    const auto deck = [&](const Lines& second) {
        return text_of(FRONT + NO_LISTS + Lines{"2 1"} + REFERENCE + first + second + FAR_LINE);
    };
    project.deck(deck({"second", "-1"}));
    expect_finished(project.run());
    // Without its title the second group is read a line late.
    project.deck(deck({"-1"}));
    EXPECT_EQ(project.run().status, 1);
}

// The material line takes both values of the second point that is shown, the count of points the third point
// and the front of the fourth: what is left names a point that no outline has.
TEST(GroupCards, PointBehindAMaterialLineThatIsNotShownMayBeNone) {
    const Project project(Kind::head);
    project.write("mesh.Mes", sample_mesh(Kind::head).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    project.deck(text_of(FRONT + NO_LISTS +
                         Lines{"1 1", "0 0 0", "first", "-4", "7 2 5 3 0.25 1 2 3 4", "5 0 0 0 0",
                               "1 100 100", "2 101 100", "1 0 0", "2 1 1", "9999 2 2", "0", "0"}));
    expect_failed(project.run(), {"Card 3.3.5.4.2-1", "expected an NP from 1 to 1100, found 9999"});
}

TEST(GroupCards, DeckThatEndsInFrontOfATitleIsNamed) {
    const Project project(Kind::coupled);
    project.write("mesh.Mes", sample_mesh(Kind::coupled).text());
    project.write_data("DV-BRELAN.dat", DEFAULTS);
    project.deck(text_of(FRONT + NO_LISTS + Lines{"1 1"} + REFERENCE));
    expect_failed(project.run(), {"deck.dat, line 11: the file ends here; expected a group's title"});
}

}  // namespace
}  // namespace brelan::test
