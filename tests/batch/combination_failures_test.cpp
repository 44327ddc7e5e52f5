// Combinations that cannot be made: what the user is told and what stays of earlier files.

#include <gtest/gtest.h>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

MeshElement element_of(int number, std::array<int, 4> corners) {
    return {number, corners, {}, 1, {}, {1.0, 1.8}};
}

// A unit square with one element of the type: 1 continuum, 2 beam, 3 truss; 0 for none.
Mesh square(double x, int type, int element) {
    Mesh mesh;
    mesh.nodes = {{1, {1, 1, 1}, x, 0, 0, 0},
                  {2, {1, 1, 1}, x + 1, 0, 0, 0},
                  {3, {1, 1, 1}, x, 1, 0, 0},
                  {4, {1, 1, 1}, x + 1, 1, 0, 0}};
    if (type == 1)
        mesh.continuum = {element_of(element, {1, 2, 4, 3})};
    else if (type == 2)
        mesh.beams = {{element, 1, 2, 1}};
    else if (type == 3)
        mesh.trusses = {{element, 1, 2, 1}};
    return mesh;
}

// Writes both meshes, an earlier result and the deck.
void prepare(const Project& project, const Mesh& second, const Mesh& first, const Cards& cards) {
    project.write("second.Mes", second.text());
    project.write("first.Mes", first.text());
    project.write("out.Mes", "an earlier result\n");
    Cards deck{"0", "second.Mes", "first.Mes", "out.Mes"};
    deck.insert(deck.end(), cards.begin(), cards.end());
    project.deck(text_of(deck));
}

// The run fails with a message, and no file that was there has changed.
void expect_refused(const Project& project, const std::vector<std::string>& fragments) {
    const Snapshot before = project.snapshot();
    expect_failed(project.run(), fragments);
    for (const std::string& change : project.changed_since(before))
        ADD_FAILURE() << change;
}

// --- colliding numbers ---------------------------------------------------------------------------

const Cards COLLISION_LINES = {" ************* ERROR IN THE USER INPUT **************",
                               "  REGION A element no. duplicates REGION B element no. "};

void expect_collision(const Project& project) {
    const RunResult result = project.run();
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(result.out, "100\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(project.read("out.Mes"), "an earlier result\n");
    const std::string blank(60, ' ');
    expect_work_file(project, "MESSAGE.INP",
                     {"           2", padded(COLLISION_LINES[0], 60), padded(COLLISION_LINES[1], 60), blank,
                      blank, blank, blank, blank, blank});
    expect_data_file(project, "BRELAN2D.DAT", {"           1"});
}

TEST(CombinationCollision, OfTheLowestNumbersIsReportedToTheFrontEndAndLeavesTheEarlierResult) {
    // Types that do not follow each other are not held against each other, so that equal numbers stay.
    const std::vector<std::array<int, 2>> types = {{1, 2}, {1, 3}, {2, 3}, {3, 1}};
    for (const auto& [second, first] : types) {
        const Project project;
        prepare(project, square(0, second, 5), square(1, first, 5), {"0"});
        expect_collision(project);
    }
}

TEST(CombinationCollision, OfTwoRegionsWithoutElements) {
    const Project project;
    prepare(project, square(0, 0, 0), square(1, 0, 0), {"0"});
    expect_collision(project);
}

TEST(CombinationCollision, WithListedPairsToo) {
    const Project project;
    prepare(project, square(0, 1, 5), square(1, 3, 5), {"1", "1", "2", "1"});
    expect_collision(project);
}

TEST(CombinationCollision, InEveryKind) {
    for (const Kind kind : ALL_KINDS) {
        const Project project(kind);
        Mesh empty = sample_mesh(kind);
        empty.continuum.clear();
        empty.beams.clear();
        empty.trusses.clear();
        prepare(project, empty, empty, {"0"});
        expect_collision(project);
    }
}

TEST(CombinationCollision, IsShownToAPersonWhoThenPressesEnter) {
    const Project project;
    project.write_data("MANUAL.DAT", "1\n");
    project.write_work("MESSAGE.INP", "for the front end\n");
    prepare(project, square(0, 1, 5), square(1, 3, 5), {"0"});
    const RunResult result = project.run("\n");
    EXPECT_EQ(result.status, 1) << result.err;
    const std::string blank = std::string(60, ' ') + "\n";
    EXPECT_EQ(result.out, padded(COLLISION_LINES[0], 60) + "\n" + padded(COLLISION_LINES[1], 60) + "\n" +
                              blank + blank + blank + blank + blank + blank + "100\n");
    EXPECT_EQ(project.read("out.Mes"), "an earlier result\n");
    expect_work_file(project, "MESSAGE.INP", {"for the front end"});
    expect_data_file(project, "BRELAN2D.DAT", {"           1"});
}

TEST(CombinationCollision, DoesNotAriseWhereTheLowestNumbersDiffer) {
    const Project project;
    prepare(project, square(0, 1, 5), square(1, 3, 6), {"0"});
    expect_finished(project.run());
    const Mesh mesh = expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh;
    EXPECT_EQ(mesh.continuum.at(0).number, 5);
    EXPECT_EQ(mesh.trusses.at(0).number, 6);
}

// --- numbers that leave the tables ---------------------------------------------------------------

TEST(CombinationFailures, AMissingTypeInFrontTakesTheNumbersOutOfTheTable) {
    struct Case {
        int second, first;
        const char* becomes;  // the first number that has no place
    };
    // Beams of the second region, continuum of the first: 0 - 100000 + 2. Trusses of the second, beams of the
    // first: -199998 after both sets of continuum, -299997 after the second's beams, and 1.
    for (const Case& c : {Case{2, 1, "-99998"}, Case{3, 2, "-299996"}}) {
        const Project project;
        prepare(project, square(0, c.second, 5), square(1, c.first, 5), {"0"});
        expect_refused(project, {"element 5", "1 to 99990", c.becomes});
    }
}

TEST(CombinationFailures, MissingBeamsTakeTrussesOutOfTheTable) {
    Mesh second = square(0, 1, 1), first = square(1, 1, 1);
    second.trusses = {{2, 1, 2, 1}};
    first.trusses = {{2, 1, 2, 1}};
    const Project project;
    prepare(project, second, first, {"0"});
    // E is 2, twice less 100000 and 1 more: trusses of the second region from -199995, of the first from
    // -199994.
    expect_refused(project, {"first.Mes", "element 2", "1 to 99990", "-199994"});
}

TEST(CombinationFailures, NodesBeyondTheTableAreRefused) {
    Mesh second = square(0, 1, 1);
    second.nodes[3].number = 99989;
    second.continuum[0].corners = {1, 2, 99989, 3};
    {
        const Project project;
        prepare(project, second, square(1, 1, 1), {"0"});
        expect_refused(project, {"first.Mes", "99990", "99989"});
    }
    second.nodes[3].number = 99988;
    second.continuum[0].corners = {1, 2, 99988, 3};
    const Project project;
    prepare(project, second, square(1, 1, 1), {"0"});
    expect_finished(project.run());
    EXPECT_EQ(expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh.nodes.back().number, 99990);
}

// --- lists and files -----------------------------------------------------------------------------

TEST(CombinationFailures, ListsThatAreTooShortAreRefused) {
    for (const Cards& cards : {Cards{"1", "3", "2 4", "1 3"}, Cards{"1", "2", "2 4", "1"},
                               Cards{"1", "2", "2 4"}, Cards{"1", "2"}, Cards{"1"}}) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), cards);
        expect_refused(project, {"deck.dat"});
    }
}

TEST(CombinationFailures, ListsWithTextAreRefusedWithTheirLine) {
    const Project project;
    prepare(project, square(0, 1, 1), square(1, 1, 1), {"1", "2", "2 four", "1 3"});
    expect_refused(project, {"deck.dat", "line 7", "four"});
}

TEST(CombinationFailures, AListedNodeThatTheSecondRegionDoesNotHaveIsRefused) {
    for (const char* list : {"2 5", "2 0", "2 -4", "99991 2"}) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), {"1", "2", list, "1 3"});
        expect_refused(project, {"deck.dat", "line 7", "Card 2.3"});
    }
}

TEST(CombinationFailures, AListedPartnerThatIsNoNodeNumberIsRefused) {
    for (const char* list : {"1 0", "-4 3", "1 99991"}) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), {"1", "2", "2 4", list});
        expect_refused(project, {"deck.dat", "line 7", "Card 2.3", "in the second list"});
    }
}

TEST(CombinationFailures, ListsOfMoreThanFiveHundredAreRefused) {
    std::string list;
    for (int k = 0; k < 501; ++k)
        list += "1 ";
    const Project project;
    prepare(project, square(0, 1, 1), square(1, 1, 1), {"1", "501", list, list});
    expect_refused(project, {"deck.dat", "500"});
}

TEST(CombinationFailures, AnUnknownInterfaceFailsInTheReadOfItsList) {
    for (const char* INTERFACE : {"2", "-1", "9"}) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), {INTERFACE, "1", "2", "1"});
        expect_refused(project, {"deck.dat"});
    }
}

TEST(CombinationFailures, AMissingMeshIsNamed) {
    for (const char* missing : {"second.Mes", "first.Mes"}) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), {"0"});
        std::filesystem::remove(project.file(missing));
        expect_refused(project, {missing});
        // The working copies are opened before the meshes.
        EXPECT_TRUE(project.exists_work("FILEA.TMP")) << missing;
        EXPECT_TRUE(project.exists_work("FILEB.TMP")) << missing;
    }
}

TEST(CombinationFailures, AMeshThatIsCutOffIsRefused) {
    for (const char* cut : {"second.Mes", "first.Mes"}) {
        for (const std::size_t lines : {0U, 2U, 3U, 6U, 9U, 11U}) {
            const Project project;
            prepare(project, square(0, 1, 1), square(1, 1, 1), {"0"});
            project.write(cut, first_lines(project.read(cut), lines));
            expect_refused(project, {cut});
        }
    }
}

TEST(CombinationFailures, BlankNamesAreRefused) {
    for (std::size_t name = 1; name <= 3; ++name) {
        const Project project;
        prepare(project, square(0, 1, 1), square(1, 1, 1), {"0"});
        Cards cards{"0", "second.Mes", "first.Mes", "out.Mes", "0"};
        cards[name] = "   ";
        project.deck(text_of(cards));
        expect_refused(project, {"deck.dat", "line " + std::to_string(name + 1)});
    }
}

}  // namespace
}  // namespace brelan::test
