// The decks that are written for a dam, card by card (cases/dam_on_layers has a whole one), and what a dam's
// run leaves behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/dam.h"

namespace brelan::test {
namespace {

using Lines = std::vector<std::string>;

// Height 20, slopes of 1:2, a crest of 8.
DamInput plain_dam() {
    DamInput dam;
    dam.crest = dam.WMID = 8.0;
    dam.HWATER = 15.0;
    dam.Hi = 2.5;
    return dam;
}

DamInput whole_dam() {
    DamInput dam = plain_dam();
    dam.layers = {6.0, 8.0};
    dam.XLEFT = dam.XRIGHT = 30.0;
    dam.core = {{42.0, 0.0}, {46.0, 0.0}, {45.0, 18.0}, {43.0, 18.0}};
    dam.wall = {{43.0, 0.0}, {43.0, -11.0}, {45.0, -11.0}, {45.0, 0.0}};
    return dam;
}

// The lines of a text without the blanks at their ends.
Lines trimmed(const std::string& text) {
    Lines lines;
    for (const std::string& line : lines_of(text))
        lines.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    return lines;
}

// The main deck of a dam. A dam with shells deletes it at the end of its run: there the run is stopped on its
// way, by the missing directory of the templates.
std::string main_deck(const DamInput& dam, Kind kind) {
    const Project project(kind);
    install_dam_files(project, kind);
    if (dam.ISHELL != 0)
        std::filesystem::remove_all(project.data_file("Slope"));
    project.deck(dam.deck());
    const RunResult result = project.run();
    EXPECT_EQ(result.status, dam.ISHELL != 0 ? 2 : 0) << result.err;
    return project.read("EarthDam.Meg");
}

// The cards of a deck, comments left out, blanks between values made one.
Lines cards_of(const std::string& deck) {
    Lines cards;
    for (const std::string& line : lines_of(deck)) {
        if (!line.empty() && line.front() == '*')
            continue;
        std::istringstream words(line);
        std::string card;
        for (std::string word; words >> word;)
            card += (card.empty() ? "" : " ") + word;
        cards.push_back(card);
    }
    return cards;
}

Lines part(const Lines& lines, std::size_t first, std::size_t count) {
    Lines found;
    for (std::size_t i = first; i < std::min(first + count, lines.size()); ++i)
        found.push_back(lines[i]);
    return found;
}

Lines group_titles(const std::string& deck) {
    Lines titles;
    for (const std::string& line : lines_of(deck))
        if (line.rfind("* Group No = ", 0) == 0)
            titles.push_back(line.substr(16));
    return titles;
}

// --- the main deck -------------------------------------------------------------------------------

TEST(DamDeck, OfEachKindDiffersInJKThirdValueAndMaterialLines) {
    const DamInput dam = plain_dam();
    struct Row {
        Kind kind;
        std::string mode, heading, origin, material_heading, material;
    };
    const Row rows[] = {
        {Kind::coupled, "2 3", "*    Xo            Yo          Ywater", "0.00000E+00 0.00000E+00 1.50000E+01",
         "* MAT   KF    LTP   LMAT", "2 1 0 0"},
        {Kind::temperature, "2 1", "*    Xo            Yo          Temperature",
         "0.00000E+00 0.00000E+00 2.50000E+00", "* MAT   IH    LTP   LFUN", "2 0 0 0"},
        {Kind::head, "2 9", "*    Xo            Yo          Total Head  ",
         "0.00000E+00 0.00000E+00 2.50000E+00", "* MAT   IH    LTP   LFUN", "2 0 0 0"},
        {Kind::displacement, "2 2", "*    Xo            Yo ", "0.00000E+00 0.00000E+00",
         "* MAT   DEN            LTP   LMAT", "2 2.30000E+00 0 0"},
    };
    for (const Row& row : rows) {
        const std::string deck = main_deck(dam, row.kind);
        const Lines cards = cards_of(deck);
        EXPECT_EQ(cards.at(0), row.mode);
        EXPECT_EQ(cards.at(1), "3 1 1 1 0 1");
        EXPECT_EQ(cards.at(2), row.origin);
        EXPECT_EQ(part(cards, 3, 5),
                  (Lines{"4.00000E+01 1.00000E+00 5.00000E-01", "8.00000E+00 1.00000E+00 5.00000E-01",
                         "4.00000E+01 1.00000E+00 5.00000E-01", "2.00000E+01 1.00000E+00 5.00000E-01", "1"}));
        const Lines lines = lines_of(deck);
        EXPECT_NE(std::find(lines.begin(), lines.end(), row.heading), lines.end());
        EXPECT_NE(std::find(lines.begin(), lines.end(), row.material_heading), lines.end());
        const auto shell = std::find(cards.begin(), cards.end(), "Upstream Shell");
        ASSERT_LT(shell + 2, cards.end());
        EXPECT_EQ(*(shell + 1), "3 0 0 0 0 0 0");
        EXPECT_EQ(*(shell + 2), row.material);
    }
}

TEST(DamDeck, WithShellsHasTheSizesOfTheTemplates) {
    DamInput dam = whole_dam();
    dam.ISHELL = 1;
    dam.RUNL = 26.0;  // code 2 on the left: the right one, which would be 3, follows
    dam.WLEFT = 33.0;
    dam.WRIGHT = 66.0;
    dam.WMID = 8.0;
    dam.core = {{35.0, 0.0}, {39.0, 0.0}, {38.0, 18.0}, {36.0, 18.0}};
    dam.wall = {{35.0, 0.0}, {35.0, -11.0}, {39.0, -11.0}, {39.0, 0.0}};
    const Lines cards = cards_of(main_deck(dam, Kind::displacement));
    EXPECT_EQ(part(cards, 3, 8),
              (Lines{"3.00000E+01 9.99900E-01 -3.00000E-01", "3.30000E+01 9.99900E-01 5.00000E-01",
                     "8.00000E+00 9.99900E-01 5.00000E-01", "6.60000E+01 1.99980E+00 5.00000E-01",
                     "3.00000E+01 1.99980E+00 3.00000E-01", "2.00000E+01 7.14214E-01 5.00000E-01",
                     "6.00000E+00 7.14214E-01 5.00000E-01", "8.00000E+00 7.14214E-01 4.00000E-01"}));
    EXPECT_EQ(cards.at(14), "905 1");  // behind 452 + 452 elements of the shells
}

TEST(DamDeck, WithDivisionsOfTheCrestHasThatManyInTheMiddle) {
    DamInput dam = plain_dam();
    dam.NCREST = 3;
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    project.deck(dam.deck());
    expect_finished(project.run());
    EXPECT_EQ(cards_of(project.read("EarthDam.Meg")).at(4), "8.00000E+00 2.66640E+00 5.00000E-01");
    // Node columns of the base mesh between the ends of the crest.
    std::set<double> columns;
    for (const auto& [number, node] : DamMesh(project.read("Bmesh.dat"), Kind::displacement).nodes)
        if (node.at.x > 40.5 && node.at.x < 47.5)
            columns.insert(node.at.x);
    EXPECT_EQ(columns.size(), 2U);
}

// --- groups --------------------------------------------------------------------------------------

TEST(DamGroups, StandInTheirOrder) {
    DamInput dam = whole_dam();
    EXPECT_EQ(group_titles(main_deck(dam, Kind::head)),
              (Lines{" Ground Surface", " Main Shell", " Upstream Shell", " Downstream Shell", " Dam Core",
                     " Upstream Total Head Boundary", " Downstream Total Head Boundary",
                     " Potential Seepage Face Boundary", " Cut-off Wall", " Subsoil Layer   1",
                     " Subsoil Layer   2"}));
    dam.ISHELL = 1;
    EXPECT_EQ(group_titles(main_deck(dam, Kind::head)),
              (Lines{" Ground Surface", " Main Shell", " Dam Core", " Upstream Total Head Boundary",
                     " Downstream Total Head Boundary", " Potential Seepage Face Boundary", " Cut-off Wall",
                     " Subsoil Layer   1", " Subsoil Layer   2"}));
    EXPECT_EQ(group_titles(main_deck(dam, Kind::temperature)),
              (Lines{" Ground Surface", " Main Shell", " Dam Core", " Cut-off Wall", " Subsoil Layer   1",
                     " Subsoil Layer   2"}));
}

TEST(DamGroups, AreAsManyAsTheCardsAskFor) {
    for (const Kind kind : {Kind::displacement, Kind::head})
        for (const int ISHELL : {0, 1})
            for (const bool core : {false, true})
                for (const int layers : {0, 2})
                    for (const bool wall : {false, true}) {
                        DamInput dam = whole_dam();
                        dam.ISHELL = ISHELL;
                        if (!core)
                            dam.core.clear();
                        if (!wall)
                            dam.wall.clear();
                        if (layers == 0)
                            dam.layers.clear();
                        int expected = (ISHELL != 0 ? 2 : 4) + (core ? 1 : 0);
                        if (layers > 0)
                            expected += layers + (wall ? 1 : 0);
                        if (kind == Kind::head)
                            expected += layers > 0 ? 3 : ISHELL != 0 ? 0 : 2;
                        const std::string deck = main_deck(dam, kind);
                        EXPECT_EQ(group_titles(deck).size(), static_cast<std::size_t>(expected));
                        const Lines cards = cards_of(deck);
                        const std::string count = std::to_string(expected) + " 1";
                        EXPECT_NE(std::find(cards.begin(), cards.end(), count), cards.end()) << count;
                    }
}

// The cards of a group from its title to the next.
Lines group_of(const std::string& deck, const std::string& title) {
    const Lines lines = lines_of(deck);
    Lines cards;
    bool inside = false;
    for (const std::string& line : lines) {
        if (line.rfind("* Group No = ", 0) == 0)
            inside = line.substr(16) == title;
        else if (inside && !line.empty() && line.front() != '*')
            cards.push_back(line);
    }
    return cards_of(text_of(cards));
}

TEST(DamGroups, OfTheHeadKindFollowTheWater) {
    DamInput dam = plain_dam();
    const std::string water = " Upstream Total Head Boundary";
    const std::string deck = main_deck(dam, Kind::head);
    EXPECT_EQ(group_of(deck, water),
              (Lines{"Upstream Total Head Boundary", "2 0 0 0 0 0 0", "5 1", "2 0 0 0.00000E+00 0.00000E+00",
                     "1 0.00000E+00 0.00000E+00", "2 3.00000E+01 1.50000E+01", "1 0.00000E+00 0.00000E+00",
                     "1 1 0 2"}));
    EXPECT_EQ(group_of(deck, " Potential Seepage Face Boundary"),
              (Lines{"Potential Seepage Face Boundary", "2 0 0 0 0 0 0", "3 1",
                     "2 0 0 0.00000E+00 0.00000E+00", "1 4.80000E+01 2.00000E+01",
                     "2 8.80000E+01 0.00000E+00", "1 0.00000E+00 0.00000E+00", "1 1 0 2"}));
    dam.layers = {6.0};
    const std::string on_layer = main_deck(dam, Kind::head);
    EXPECT_EQ(part(group_of(on_layer, water), 3, 4),
              (Lines{"3 0 0 0.00000E+00 0.00000E+00", "1 -2.50000E+01 0.00000E+00",
                     "2 0.00000E+00 0.00000E+00", "3 3.00000E+01 1.50000E+01"}));
    EXPECT_EQ(group_of(on_layer, " Downstream Total Head Boundary"),
              (Lines{"Downstream Total Head Boundary", "2 0 0 0 0 0 0", "5 2",
                     "2 0 0 0.00000E+00 0.00000E+00", "1 8.80000E+01 0.00000E+00",
                     "2 1.13000E+02 0.00000E+00", "1 0.00000E+00 0.00000E+00", "1 1 0 3"}));
    dam.ISHELL = 1;
    const std::string with_shells = main_deck(dam, Kind::head);
    EXPECT_EQ(
        part(group_of(with_shells, water), 3, 3),
        (Lines{"2 0 0 0.00000E+00 0.00000E+00", "1 -2.50000E+01 0.00000E+00", "2 0.00000E+00 0.00000E+00"}));
    EXPECT_EQ(part(group_of(with_shells, " Potential Seepage Face Boundary"), 4, 2),
              (Lines{"1 4.00000E+01 2.00000E+01", "2 4.80000E+01 2.00000E+01"}));
}

TEST(DamGroups, HoldTheWaterLevelOnTheSlope) {
    DamInput dam = plain_dam();
    dam.HWATER = 25.0;
    EXPECT_EQ(group_of(main_deck(dam, Kind::head), " Upstream Total Head Boundary").at(5),
              "2 4.00000E+01 2.00000E+01");
    // Without water nothing of the boundary is left but the toe: the group stands there and is skipped.
    for (const double HWATER : {0.0, -3.0}) {
        dam.HWATER = HWATER;
        EXPECT_EQ(group_of(main_deck(dam, Kind::head), " Upstream Total Head Boundary"),
                  (Lines{"Upstream Total Head Boundary", "0 0 0 0 0 0 0"}));
    }
    dam.layers = {6.0};
    EXPECT_EQ(
        part(group_of(main_deck(dam, Kind::head), " Upstream Total Head Boundary"), 3, 3),
        (Lines{"2 0 0 0.00000E+00 0.00000E+00", "1 -2.50000E+01 0.00000E+00", "2 0.00000E+00 0.00000E+00"}));
}

// IEND of the sides of a group.
Lines ends_of(const Lines& group) {
    Lines ends;
    for (const std::string& card : group)
        if (std::count(card.begin(), card.end(), ' ') == 3 &&
            card.find_first_not_of("-0123456789 ") > card.size())
            ends.push_back(card.substr(card.rfind(' ') + 1));
    return ends;
}

TEST(DamGroups, CutACoreOnlyWhereItIsClearOfTheShells) {
    DamInput dam = whole_dam();
    const auto core_ends = [&] { return ends_of(group_of(main_deck(dam, Kind::head), " Dam Core")); };
    const Lines cut{"0", "3", "2", "2", "2"},
        uncut{"0", "3", "3", "3", "3"};  // the first is the material line
    EXPECT_EQ(core_ends(), cut);
    dam.ISHELL = 1;
    EXPECT_EQ(core_ends(), cut);
    dam.core[0].x = 41.0;  // less than an element, 40 / 26, from the side of the block
    EXPECT_EQ(core_ends(), uncut);
    dam.ISHELL = 0;
    EXPECT_EQ(core_ends(), cut);
}

// Points of a group as they stand on its cards.
Lines points_of(const Lines& group) {
    Lines points;
    for (const std::string& card : group)
        if (std::count(card.begin(), card.end(), ' ') == 2 && card.find("E+") < card.size())
            points.push_back(card.substr(card.find(' ') + 1));
    points.pop_back();  // the card of NSEGMENT has the same form
    return points;
}

// The elements are 1 by 1. An end of the crest must not become a core's corner, nor may a corner stand
// between the crest and the middle of the row below it: there the sides end in the line of that row.
TEST(DamGroups, CutACoreUpToTheRowBelowTheCrestWhereItWouldTakeNodesOfTheCrest) {
    DamInput dam = whole_dam();
    const auto core = [&] { return group_of(main_deck(dam, Kind::coupled), " Dam Core"); };
    const Lines to_the_crest{"0", "3", "2", "3", "2"}, to_the_row{"0", "3", "2", "3", "3", "3", "2"};
    dam.core = {{42.0, 0.0}, {46.0, 0.0}, {46.0, 20.0}, {42.0, 20.0}};
    EXPECT_EQ(ends_of(core()), to_the_crest);
    dam.core[3].x = 40.6;  // 0.4 from the node at 41, 0.6 from the end
    EXPECT_EQ(ends_of(core()), to_the_crest);
    dam.core[3].x = 40.4;
    EXPECT_EQ(ends_of(core()), to_the_row);
    EXPECT_EQ(points_of(core()),
              (Lines{"4.20000E+01 0.00000E+00", "4.60000E+01 0.00000E+00", "4.60000E+01 1.90000E+01",
                     "4.60000E+01 2.00000E+01", "4.04000E+01 2.00000E+01", "4.04800E+01 1.90000E+01"}));
    dam.core = {{42.0, 0.0}, {46.0, 0.0}, {46.0, 19.4}, {42.0, 19.4}};
    EXPECT_EQ(ends_of(core()), (Lines{"0", "3", "2", "2", "2"}));
    dam.core[2].y = dam.core[3].y = 19.7;
    EXPECT_EQ(ends_of(core()), to_the_row);
}

// A middle block of two elements of 4: the right corner takes the node between them, and then the left end of
// the crest is the nearest to the left corner.
TEST(DamGroups, KnowTheNodesThatACoresFirstCornerHasMoved) {
    DamInput dam = whole_dam();
    dam.NCREST = 2;
    const auto core_ends = [&] { return ends_of(group_of(main_deck(dam, Kind::coupled), " Dam Core")); };
    dam.core = {{42.5, 0.0}, {47.9, 0.0}, {48.0, 20.0}, {42.5, 20.0}};
    EXPECT_EQ(core_ends(), (Lines{"0", "3", "2", "3", "2"}));
    dam.core = {{42.5, 0.0}, {45.5, 0.0}, {45.5, 20.0}, {42.5, 20.0}};
    EXPECT_EQ(core_ends(), (Lines{"0", "3", "2", "3", "3", "3", "2"}));
}

// The lowest row is taken as 2.4 elements high at most.
TEST(DamGroups, CutAWallDownToTheLowestRowWhereItWouldTakeNodesOfTheBottom) {
    DamInput dam = whole_dam();
    const auto wall = [&] { return group_of(main_deck(dam, Kind::coupled), " Cut-off Wall"); };
    const Lines cut{"0", "2", "2", "2", "3"};
    EXPECT_EQ(ends_of(wall()), cut);
    dam.wall[1].y = dam.wall[2].y = -12.7;
    EXPECT_EQ(ends_of(wall()), cut);
    dam.wall[1].y = dam.wall[2].y = -12.9;
    EXPECT_EQ(ends_of(wall()), (Lines{"0", "2", "3", "3", "3", "2", "3"}));
    EXPECT_EQ(points_of(wall()),
              (Lines{"4.30000E+01 0.00000E+00", "4.30000E+01 -1.16000E+01", "4.30000E+01 -1.29000E+01",
                     "4.50000E+01 -1.29000E+01", "4.50000E+01 -1.16000E+01", "4.50000E+01 0.00000E+00"}));
    dam.wall[1].y = dam.wall[2].y = -14.0;  // on the bottom
    EXPECT_EQ(ends_of(wall()), (Lines{"0", "2", "3", "2", "3"}));
    dam.wall[1].y = dam.wall[2].y = -6.0;  // on the line between the layers
    EXPECT_EQ(ends_of(wall()), (Lines{"0", "2", "3", "2", "3"}));
}

TEST(DamGroups, LeaveAWallUncutUnderTheFeetOfTheShells) {
    DamInput dam = whole_dam();
    const auto wall_ends = [&] { return ends_of(group_of(main_deck(dam, Kind::coupled), " Cut-off Wall")); };
    const Lines cut{"0", "2", "2", "2", "3"}, uncut{"0", "3", "3", "3", "3"};
    dam.wall = {{20.0, 0.0}, {20.0, -11.0}, {24.0, -11.0}, {24.0, 0.0}};
    EXPECT_EQ(wall_ends(), cut);
    dam.ISHELL = 1;
    EXPECT_EQ(wall_ends(), uncut);
    dam.wall = {{20.0, -3.0}, {20.0, -11.0}, {24.0, -11.0}, {24.0, -3.0}};
    EXPECT_EQ(wall_ends(), (Lines{"0", "2", "2", "2", "2"}));
}

TEST(DamGroups, PlaceTheEndsOfSlopesAndCrest) {
    DamInput dam = plain_dam();
    const auto surface = [&] { return group_of(main_deck(dam, Kind::displacement), " Ground Surface"); };
    EXPECT_EQ(ends_of(surface()), (Lines{"3", "2", "2", "2"}));
    dam.ISHELL = 1;  // the crest alone
    EXPECT_EQ(ends_of(surface()), (Lines{"3", "3", "2", "3"}));
    dam.layers = {6.0};
    EXPECT_EQ(ends_of(surface()), (Lines{"3", "3", "3", "3", "2", "3", "3", "3"}));
}

// Its cut moves the next node of the crest onto the slope: an end between two nodes is not placed.
TEST(DamGroups, DrawASlopeBeyondACrestsEndBesideTheBlockColumns) {
    DamInput dam = plain_dam();
    const auto surface = [&] { return group_of(main_deck(dam, Kind::displacement), " Ground Surface"); };
    EXPECT_EQ(surface().back(), "4 1 0 2");
    dam.RUNL = 40.5;
    dam.crest = 7.5;  // the right end is on the edge
    EXPECT_EQ(ends_of(surface()), (Lines{"3", "2", "3", "1"}));
    EXPECT_EQ(surface().back(), "4 1 1 1");
    EXPECT_EQ(points_of(surface()), (Lines{"0.00000E+00 0.00000E+00", "8.80000E+01 0.00000E+00",
                                           "4.80000E+01 2.00000E+01", "4.09050E+01 2.02000E+01"}));
    dam.crest = 7.0;  // neither
    EXPECT_EQ(ends_of(surface()), (Lines{"3", "-1", "3", "1"}));
    EXPECT_EQ(points_of(surface()).at(2), "4.70950E+01 2.02000E+01");
}

// The elements are 1 wide, the slope 1:2: an element below the end it is half an element lower.
TEST(DamGroups, CutTheVerticalUnderACrestsEndBesideTheBlockColumnsUpToTheSlope) {
    DamInput dam = plain_dam();
    const auto group = [&](const char* title) { return group_of(main_deck(dam, Kind::displacement), title); };
    // The first is the material line.
    const Lines cut{"3", "2", "3", "2"}, uncut{"3", "3", "2"};
    EXPECT_EQ(ends_of(group(" Upstream Shell")), uncut);
    EXPECT_EQ(ends_of(group(" Downstream Shell")), uncut);
    dam.RUNL = 40.5;
    EXPECT_EQ(ends_of(group(" Upstream Shell")), cut);
    EXPECT_EQ(ends_of(group(" Downstream Shell")), cut);
    EXPECT_EQ(points_of(group(" Upstream Shell")),
              (Lines{"0.00000E+00 0.00000E+00", "4.05000E+01 0.00000E+00", "4.05000E+01 1.95062E+01",
                     "4.05000E+01 2.00000E+01"}));
    dam.WMID = 8.5;  // the crest's right end is on the edge again
    EXPECT_EQ(ends_of(group(" Upstream Shell")), cut);
    EXPECT_EQ(ends_of(group(" Downstream Shell")), uncut);
}

TEST(DamGroups, CutTheSlopeUnderALowWaterLevel) {
    DamInput dam = plain_dam();
    const auto water = [&] { return group_of(main_deck(dam, Kind::head), " Upstream Total Head Boundary"); };
    dam.HWATER = 0.01;
    EXPECT_EQ(part(water(), 5, 1), (Lines{"2 2.00000E-02 1.00000E-02"}));
    EXPECT_EQ(ends_of(water()), (Lines{"2"}));
    dam.layers = {6.0};
    EXPECT_EQ(part(water(), 6, 1), (Lines{"3 2.00000E-02 1.00000E-02"}));
    EXPECT_EQ(ends_of(water()), (Lines{"3", "2"}));
}

// --- the shells' decks ---------------------------------------------------------------------------

TEST(ShellDecks, AreTheseTexts) {
    DamInput dam = plain_dam();
    dam.ISHELL = 1;
    dam.RUNL = 40.0;
    dam.RUNR = 60.0;
    dam.WRIGHT = 60.0;
    const DamRun run(dam, Kind::temperature);
    expect_finished(run.result());
    const auto shell = [](const std::string& mesh, const std::string& number, const std::string& code,
                          const std::string& triangle) {
        return Lines{"* Card 1.1",
                     "* IMOD  JK",
                     "   1     1",
                     "* Card 3.1-1",
                     "* FILEA",
                     "Dummy.dat",
                     "* Card 3.1-2",
                     "* FILEM",
                     mesh,
                     "* Card 3.2",
                     "* NSNEL  NSNODE",
                     number,
                     "* Card 3.3",
                     "* IEDIT",
                     "    5",
                     "* Card 3.3.6.1",
                     "* MODEL",
                     code,
                     "* Card 3.3.6.2",
                     "* MATNO_T    rHw           Hi",
                     "    1       7.50000E-01   2.50000E+00",
                     "* Card 3.3.6.3",
                     "* X1           Y1           X2           Y2           X3           Y3",
                     triangle,
                     "* END OF DATA"};
    };
    const auto combination = [](const std::string& a, const std::string& b, const std::string& c) {
        return Lines{"* Card 1.1",   "* IMOD  JK",  "   0     1",
                     "* Card 2.1-1", "* FILEA",     a,
                     "* Card 2.1-2", "* FILEB",     b,
                     "* Card 2.1-3", "* FILEC",     c,
                     "* Card 2.2",   "* INTERFACE", "    0",
                     "* END OF DATA"};
    };
    const std::string left = " 0.40000E+02  0.20000E+02  0.00000E+00  0.00000E+00  0.40000E+02  0.00000E+00";
    const std::string right = " 0.48000E+02  0.20000E+02  0.10800E+03  0.00000E+00  0.48000E+02  0.00000E+00";
    const auto expect_deck = [&](const char* name, const Lines& expected) {
        EXPECT_EQ(first_difference(expected, trimmed(run.project().read_work(name))), "") << name;
    };
    expect_deck("Shell_Left.dat", shell("Shell_Left.Mes", "   1      1", "    3", left));
    expect_deck("Shell_Right.dat", shell("Shell_Right.Mes", " 183      1", "    5", right));
    expect_deck("Combine_Shell.dat", combination("Shell_Left.Mes", "Shell_Right.Mes", "Dam_Shell.Mes"));
    expect_deck("Combine_All.dat", combination("Dam_Shell.Mes", "EarthDam.Mes", "Earth_Dam.Mes"));
}

TEST(ShellDecks, ShareOfTheWaterIsItsHeightOverThatOfTheDam) {
    for (const double HWATER : {5.0, 25.0, -4.0}) {
        DamInput dam = plain_dam();
        dam.ISHELL = 1;
        dam.HWATER = HWATER;
        const DamRun run(dam, Kind::displacement);
        expect_finished(run.result());
        const Lines left = cards_of(run.project().read_work("Shell_Left.dat"));
        const Lines right = cards_of(run.project().read_work("Shell_Right.dat"));
        std::istringstream words(left.at(6));
        int MATNO_T = 0;
        double rHw = 0.0;
        words >> MATNO_T >> rHw;
        EXPECT_EQ(MATNO_T, 1);
        EXPECT_NEAR(rHw, HWATER / 20.0, 1.0E-5);
        EXPECT_EQ(left.at(6), right.at(6));
        // Without a level on it the whole slope has the codes 3 and 0.
        const bool level = HWATER == 5.0;
        for (const auto& [number, node] : run.mesh().nodes)
            if (std::abs(node.at.x - 2.0 * node.at.y) < 1.0E-3 && !level) {
                EXPECT_EQ(node.codes.at(0), 3) << number;
                EXPECT_EQ(node.codes.at(1), 0) << number;
            }
    }
}

// --- what a run leaves ---------------------------------------------------------------------------

constexpr const char* SHELL_DECKS[] = {"Shell_Left.dat", "Shell_Right.dat", "Combine_Shell.dat",
                                       "Combine_All.dat"};

TEST(DamFiles, OfADamWithoutShellsAreOneDeckAndItsMesh) {
    const DamRun run(plain_dam(), Kind::head);
    expect_finished(run.result());
    EXPECT_TRUE(run.project().exists("EarthDam.Meg"));
    EXPECT_TRUE(run.project().exists("EarthDam.Mes"));
    EXPECT_FALSE(run.project().exists("Earth_Dam.Mes"));
    for (const char* name : SHELL_DECKS)
        EXPECT_FALSE(run.project().exists_work(name)) << name;
    EXPECT_EQ(run.project().read_data("BRELAN2D.DAT"), "           0\n");
}

TEST(DamFiles, OfADamWithShellsAreTheFinishedMeshAndTheDecks) {
    DamInput dam = whole_dam();
    dam.ISHELL = 1;
    const DamRun run(dam, Kind::coupled);
    expect_finished(run.result());
    EXPECT_TRUE(run.project().exists("Earth_Dam.Mes"));
    for (const char* name :
         {"Shell_Left.Mes", "Shell_Right.Mes", "Dam_Shell.Mes", "EarthDam.Meg", "EarthDam.Mes"})
        EXPECT_FALSE(run.project().exists(name)) << name;
    for (const char* name : SHELL_DECKS)
        EXPECT_TRUE(run.project().exists_work(name)) << name;
    EXPECT_EQ(run.project().read_data("BRELAN2D.DAT"), "           0\n");
    // The result is copied as that of any deck, and its name told to the plot tool.
    EXPECT_EQ(trimmed(run.project().read_work("MeshFile.Mes")), trimmed(run.mesh_text()));
    EXPECT_EQ(trimmed(run.project().read_data("FnPlot2D.dat")), Lines{"..\\Earth_Dam.Mes"});
}

// The checker's files are those of the last deck: nothing of the dam's own cards is left.
TEST(DamFiles, NormalisedDeckIsThatOfTheWrittenDeck) {
    const DamRun run(plain_dam(), Kind::displacement);
    expect_finished(run.result());
    EXPECT_EQ(lines_of(run.project().read_work("BRELAN.TMP")).at(0), "    2     2 ");
    EXPECT_EQ(lines_of(run.project().read_work("TT55.TMP")).at(0), padded("   2     2"));
}

TEST(DamFiles, OldDecksAreReplaced) {
    DamInput dam = plain_dam();
    dam.ISHELL = 1;
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    const std::string old = std::string(100, 'x') + "\n";
    project.write("EarthDam.Meg", old);
    for (const char* name : SHELL_DECKS)
        project.write_work(name, old + old + old);
    project.deck(dam.deck());
    expect_finished(project.run());
    for (const char* name : SHELL_DECKS)
        EXPECT_EQ(project.read_work(name).find('x'), std::string::npos) << name;
}

TEST(DamFiles, RunInTheOrderOfTheirList) {
    DamInput dam = plain_dam();
    dam.ISHELL = 1;
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    project.write_data("DEBUG/Brelan_P1.dat", "1 99.0\n");
    project.deck(dam.deck());
    expect_finished(project.run());
    Lines passes;
    for (const std::string& line : trimmed(project.read_work("Brelan_P1.deb")))
        if (line.rfind("  Pass 5", 0) == 0 || line.rfind("  Pass 4A", 0) == 0 || line == "  Pass 43")
            passes.push_back(line.substr(2));
    EXPECT_EQ(passes, (Lines{"Pass 4A", "Pass 5E", "Pass 5F", "Pass 5F", "Pass 5G", "Pass 5G", "Pass 43"}));
}

// A steep slope beside a flat one: the template of the right one follows the left.
TEST(DamFiles, ForcedRightSlopeJoinsWithoutAGap) {
    for (const auto& [left, right] : {std::pair{20.0, 60.0}, std::pair{60.0, 20.0}}) {
        DamInput dam = plain_dam();
        dam.ISHELL = 1;
        dam.RUNL = dam.WLEFT = left;
        dam.RUNR = dam.WRIGHT = right;
        const DamRun run(dam, Kind::displacement);
        expect_finished(run.result());
        EXPECT_EQ(cards_of(run.project().read_work("Shell_Right.dat")).at(5), left == 20.0 ? "2" : "3");
        EXPECT_EQ(dam_problems(dam, run.mesh()), std::vector<std::string>{});
    }
}

}  // namespace
}  // namespace brelan::test
