// "..\Group.Pos": which groups and elements its sections list, the node lists, the labels. The groups lie
// over eight unit squares, numbered 1 to 4 below and 5 to 8 above; nodes 1 to 15, row by row.

#include <gtest/gtest.h>

#include <algorithm>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

const Points WHOLE{{0, 0}, {4, 0}, {4, 2}, {0, 2}};
const Points LOWER_ROW{{0, 0}, {4, 0}, {4, 1}, {0, 1}};

GroupCards region(const Points& points, const std::array<int, 7>& switches, int IEND = 3) {
    return {.title = "Region",
            .MTYPE = 3,
            .material = "0 3 0 0",
            .line = outline(points, IEND),
            .switches = switches};
}

// Beams (LTP 2) or trusses (LTP 3) upwards at an x.
GroupCards wall(double x, int LTP, int LMAT, const std::array<int, 7>& switches) {
    return {.title = "Wall",
            .MTYPE = 2,
            .material = std::to_string(LTP) + " " + std::to_string(LMAT),
            .line = open_line({{x, 0}, {x, 2}}),
            .switches = switches};
}

Mesh squares(Kind kind = Kind::displacement) {
    return grid_mesh(kind, 4, 2);
}

Lines plot_deck(const Mesh& mesh, const std::vector<GroupCards>& groups) {
    const GroupProject run(mesh.kind, mesh, groups);
    run.run();
    return run.lines("Group.Pos");
}

std::string line_behind(const Lines& lines, std::string_view line) {
    const auto found = std::find(lines.begin(), lines.end(), line);
    return found == lines.end() || found + 1 == lines.end() ? std::string() : *(found + 1);
}

// Numbers of the groups that have a block in a section, in its order. Node lists have such heads too.
std::vector<int> groups_in(const Lines& section) {
    std::vector<int> groups;
    for (const std::string& line : section) {
        if (line == "*   NRL      ")
            break;
        if (line.starts_with("* Group No = "))
            groups.push_back(std::stoi(line.substr(13)));
    }
    return groups;
}

// --- the mesh by default -------------------------------------------------------------------------

Lines displacements(const std::string& NSR, const std::string& NJR) {
    const std::string range = NSR + "      1" + NJR + "      1      1";
    return {"       1      0", range, "       1      1", range, "       1      2", range};
}

TEST(PlotDeck, DisplacementsOfTheWholeMeshWhenNoGroupAsksForThem) {
    const Lines post = plot_deck(squares(), {wall(2, 2, 6, {1, 1, 0, 1, 1, 1, 1}), wall(3, 3, 7, {})});
    EXPECT_EQ(
        section(section_of(post, 3), "    1.0           ", ""),
        (Lines{"    1.0           ", "*", "* Continuum Element"} + displacements("      -1", "      8") +
         Lines{"* Beam Element"} + displacements("      -9", "      2") + Lines{"* Truss Element"} +
         displacements("     -11", "      2") +
         Lines{"* For End of Plot", "*  0,    0       ", "   0,    0       ",
               "**************************************************",
               "*                                                *",
               "*         POST FILE: GRAF-2D PLOT                *"}));
}

TEST(PlotDeck, ClassesWithoutElementsAreNotInTheDefaultList) {
    const Lines trusses = section_of(plot_deck(squares(), {wall(2, 3, 6, {})}), 3);
    EXPECT_EQ(count_of(trusses, "* Beam Element"), 0);
    EXPECT_EQ(line_behind(trusses, "* Truss Element"), "       1      0");
    EXPECT_EQ(count_of(trusses, "      -9      1      2      1      1"), 3);
    const Lines squares_only = section_of(plot_deck(squares(), {}), 3);
    EXPECT_EQ(count_of(squares_only, "* Truss Element"), 0);
    EXPECT_EQ(count_of(squares_only, "* Continuum Element"), 1);
}

TEST(PlotDeck, NoGroupAtAllStillHasEverySection) {
    for (const Kind kind : ALL_KINDS) {
        const Lines post = plot_deck(squares(kind), {});
        const Lines mesh =
            section(post, section_banner(1), section_banner(kind == Kind::temperature ? 6 : 2));
        EXPECT_EQ(line_behind(mesh, "*  NGROUP    "), "       0") << name_of(kind);
        EXPECT_EQ(line_behind(section_of(post, 6), "*  NGROUP"), "       0");
        EXPECT_EQ(post.back(), "*                      ");
        for (const int NPTYPE : {2, 3, 4, 5})
            EXPECT_EQ(count_of(post, section_banner(NPTYPE)), kind == Kind::temperature ? 0 : 1);
    }
}

TEST(PlotDeck, ScratchTextOfABrokenOffRunGoes) {
    const GroupProject run(Kind::displacement, squares(), {});
    run.project.write_work("Group.dat", "left\n");
    run.run();
    EXPECT_FALSE(run.project.exists_work("Group.dat"));
}

// --- the switches --------------------------------------------------------------------------------

TEST(PlotDeck, CountOfAMeshSectionIsThatOfItsRanges) {
    const GroupCards right = region({{2, 0}, {4, 0}, {4, 2}, {2, 2}}, {1, 0, 0, 0, 0, 0, 0});
    const Lines mesh = section_of(plot_deck(squares(), {right, region(WHOLE, {1, 0, 0, 0, 0, 0, 0})}), 1);
    EXPECT_EQ(line_behind(mesh, "*  NGROUP    "), "       3");
    EXPECT_EQ(section(mesh, "*    NSS    NEE    NIC    NNN", "*"),
              (Lines{"*    NSS    NEE    NIC    NNN", "       3      2      1      1",
                     "       7      2      1      1", "* Number of Element Groups =   2"}));
}

TEST(PlotDeck, EachSwitchOpensItsOwnSection) {
    for (const Kind kind : {Kind::displacement, Kind::temperature})
        for (int wanted = 1; wanted <= 6; ++wanted)
            for (const int value : {1, -1, 7}) {
                std::array<int, 7> switches{};
                switches.at(static_cast<std::size_t>(wanted - 1)) = value;
                const Lines post = plot_deck(squares(kind), {region(WHOLE, {}), region(LOWER_ROW, switches)});
                for (const int NPTYPE : {1, 2, 3, 6}) {
                    if (kind == Kind::temperature && NPTYPE != 1 && NPTYPE != 6)
                        continue;
                    const Lines lines = section(post, section_banner(NPTYPE),
                                                NPTYPE == 1 && kind == Kind::temperature ? section_banner(6)
                                                : NPTYPE == 6 ? "* For End of GRAF-2D   "
                                                              : section_banner(NPTYPE + 1));
                    EXPECT_EQ(groups_in(lines), NPTYPE == wanted ? std::vector<int>{2} : std::vector<int>{})
                        << name_of(kind) << " switch " << wanted << " = " << value << " section " << NPTYPE;
                }
            }
}

struct LineSwitches {
    int first, second;
    std::vector<int> groups;
};

// Unless a group has a switch above 0 all are listed; then those that are not 0.
TEST(PlotDeck, BeamsAndTrussesOfAllGroupsAreListedWhenNoneAsksForThem) {
    const LineSwitches rows[] = {{0, 0, {1, 2}},  {1, 0, {1}},      {0, 1, {2}},     {1, 1, {1, 2}},
                                 {-1, 0, {1, 2}}, {-1, -1, {1, 2}}, {1, -1, {1, 2}}, {0, 5, {2}}};
    for (const LineSwitches& row : rows) {
        const Lines post =
            plot_deck(squares(), {wall(1, 2, 6, {0, 0, 0, row.first, 0, 0, 0}),
                                  wall(2, 2, 6, {0, 0, 0, row.second, 0, 0, 0}),
                                  wall(3, 3, 6, {0, 0, 0, 0, row.first, 0, 0}),
                                  wall(4, 3, 6, {0, 0, 0, 0, row.second, 0, 0}), region(WHOLE, {})});
        std::vector<int> beams = groups_in(section_of(post, 4));
        std::vector<int> trusses = groups_in(section_of(post, 5));
        std::vector<int> expected_beams = row.groups;
        std::vector<int> expected_trusses;
        for (const int group : row.groups)
            expected_trusses.push_back(group + 2);
        // The outline round the mesh holds the walls at x = 1 to 3; the one at x = 4 lies on its side.
        if (row.first <= 0 && row.second <= 0) {
            expected_beams.push_back(5);
            expected_trusses.push_back(5);
        }
        EXPECT_EQ(beams, expected_beams) << row.first << ' ' << row.second;
        EXPECT_EQ(trusses, expected_trusses) << row.first << ' ' << row.second;
    }
}

TEST(PlotDeck, GroupOfAnotherIGPOSTIsListedWithTheLinesOfAllGroups) {
    GroupCards silent = wall(1, 2, 6, {});
    silent.IGPOST = 0;
    GroupCards other = wall(2, 2, 6, {});
    other.IGPOST = 2;
    const Lines post = plot_deck(squares(), {silent, other, region(WHOLE, {})});
    EXPECT_EQ(groups_in(section_of(post, 4)), (std::vector<int>{2, 3}));
    EXPECT_EQ(groups_in(section_of(post, 1)), (std::vector<int>{}));
}

TEST(PlotDeck, BeamSectionHasOnlyBeamsAndTrussSectionOnlyTrusses) {
    const Lines post =
        plot_deck(squares(), {wall(1, 2, 6, {}), wall(2, 3, 7, {}), region(WHOLE, {0, 0, 0, 1, 1, 0, 0})});
    const Lines beams = section(section_of(post, 4), "*  NTGROUP", "* Card 11.5.8");
    EXPECT_EQ(count_of(beams, "* Truss Element") + count_of(beams, "* Continuum Element"), 0);
    EXPECT_EQ(section(beams, "*  NFBEAM NLBEAM", "*"),
              (Lines{"*  NFBEAM NLBEAM", "       0", "       9     10", "* Number of Element Groups =   1"}));
    const Lines trusses = section(section_of(post, 5), "*  NTGROUP", "* Card 11.6.8");
    EXPECT_EQ(count_of(trusses, "* Beam Element") + count_of(trusses, "* Continuum Element"), 0);
    EXPECT_EQ(count_of(trusses, "      11     12"), 1);
}

// The elements along a line, and those of a joint, are not part of a picture of what lies inside.
TEST(PlotDeck, ElementsOfLinesAndJointsAreOnlyInTheDisplacementSection) {
    const GroupCards joint{.title = "Joint",
                           .MTYPE = -2,
                           .material = "9 5 0 2 6 0 0",
                           .line = open_line({{2, 0}, {2, 2}}),
                           .switches = {1, 1, 1, 0, 0, 1, 0}};
    const Lines post = plot_deck(squares(), {joint});
    for (const int NPTYPE : {1, 2, 6})
        EXPECT_EQ(groups_in(section_of(post, NPTYPE)), std::vector<int>{}) << NPTYPE;
    const Lines moved = section_of(post, 3);
    EXPECT_EQ(groups_in(moved), std::vector<int>{1});
    EXPECT_EQ(count_of(moved, "      -9      1      2      1      1"), 3);  // joints 9 and 10
    EXPECT_EQ(count_of(moved, "     -11      1      2      1      1"), 3);  // beams 11 and 12
}

// A joint that an outline of the same group surrounds counts as inside it.
TEST(PlotDeck, JointRoundAnOutlineIsNotInside) {
    const GroupCards ring{.title = "Ring",
                          .MTYPE = -3,
                          .material = "5 3 9 5 0 0 0 0 0",
                          .line = outline({{1, 0}, {3, 0}, {3, 2}, {1, 2}}),
                          .switches = {1, 0, 1, 0, 0, 0, 0}};
    const Lines post = plot_deck(squares(), {ring});
    EXPECT_EQ(count_of(section_of(post, 3), "* Material No =   9"), 1);
    EXPECT_EQ(count_of(section_of(post, 1), "* Material No =   5"), 1);
}

TEST(PlotDeck, NumbersWiderThanTheirColumnsShowAsStars) {
    const GroupProject run(Kind::displacement, squares(), {region(LOWER_ROW, {1, 0, 1, 0, 0, 0, 0})});
    run.project.deck(group_deck({region(LOWER_ROW, {1, 0, 1, 0, 0, 0, 0})}, "0", "10000 1"));
    run.run();
    const Lines post = run.lines("Group.Pos");
    EXPECT_EQ(count_of(section_of(post, 1), "   10000      4      1      1"), 1);
    EXPECT_EQ(count_of(section_of(post, 3), "   *****      1      4      1      1"), 3);
}

// --- node lists ----------------------------------------------------------------------------------

// The node lists of the second section.
Lines node_lists(const Lines& post) {
    return section(section_of(post, 2), "* Card 11.3.7",
                   "**************************************************");
}

// Numbers of all lists.
std::vector<int> listed_nodes(const Lines& lists) {
    std::vector<int> nodes;
    for (auto line = lists.begin() + std::min<std::ptrdiff_t>(3, std::ssize(lists)); line != lists.end();
         ++line)
        if (!line->starts_with('*'))
            for (std::size_t at = 0; at + 7 <= line->size(); at += 7)
                nodes.push_back(std::stoi(line->substr(at, 7)));
    return nodes;
}

GroupCards listed_line(const Points& points) {
    return {.title = "Line",
            .MTYPE = 2,
            .material = "0 0",
            .line = open_line(points),
            .switches = {0, 0, 0, 0, 0, 0, 1}};
}

TEST(NodeLists, NoneStillHasItsCardWithACountOf0) {
    const Lines post = plot_deck(squares(), {region(WHOLE, {1, 1, 1, 1, 1, 1, 0})});
    EXPECT_EQ(node_lists(post), (Lines{"* Card 11.3.7", "*   NRL      ", "      0"}));
    for (const char* card : {"* Card 11.5.8", "* Card 11.6.8", "* Card 11.7.9"})
        EXPECT_EQ(section(post, card, "*   NRL      ").size(), 1U) << card;
    EXPECT_EQ(count_of(post, "      0"), 4);
}

TEST(NodeLists, LineOfFiveNodesFillsOneRecordAndOneOfSixBeginsAnother) {
    EXPECT_EQ(node_lists(plot_deck(squares(), {listed_line({{0, 1}, {4, 1}})})),
              (Lines{"* Card 11.3.7", "*   NRL      ", "      1", "*",
                     "*=================================================", "*", "* Group No =   1",
                     padded("* Line", 82), "*", "* Number of Nodes =    5", "*", "* Card 11.3.8",
                     "* NODE1  NODE2  NODE3  NODE4  NODE5", "      6      7      8      9     10"}));
    const Lines six = node_lists(plot_deck(squares(), {listed_line({{0, 1}, {4, 1}, {4, 2}})}));
    EXPECT_EQ((Lines{six.end() - 2, six.end()}), (Lines{"      6      7      8      9     10", "     15"}));
}

TEST(NodeLists, GroupIsCountedWhenItWantsOneAndHasNodes) {
    GroupCards silent = listed_line({{0, 0}, {4, 0}});
    silent.IGPOST = 0;
    GroupCards outside = listed_line({{9, 9}, {11, 9}});
    GroupCards wants_none = listed_line({{0, 2}, {4, 2}});
    wants_none.switches[6] = 0;
    const Lines lists =
        node_lists(plot_deck(squares(), {silent, outside, listed_line({{2, 0}, {2, 2}}), wants_none}));
    EXPECT_EQ(line_behind(lists, "*   NRL      "), "      1");
    EXPECT_EQ(count_of(lists, "* Group No =   3"), 1);
    EXPECT_EQ(listed_nodes(lists), (std::vector<int>{3, 8, 13}));
}

TEST(NodeLists, AnyNumberButZeroAsksForOne) {
    for (const int wanted : {-1, 1, 3}) {
        GroupCards line = listed_line({{2, 0}, {2, 2}});
        line.switches[6] = wanted;
        EXPECT_EQ(listed_nodes(node_lists(plot_deck(squares(), {line}))), (std::vector<int>{3, 8, 13}));
    }
}

TEST(NodeLists, NumbersAreThoseOfTheResult) {
    const GroupProject run(Kind::displacement, squares(), {});
    run.project.deck(group_deck({listed_line({{2, 0}, {2, 2}})}, "0", "1 1000"));
    run.run();
    EXPECT_EQ(listed_nodes(node_lists(run.lines("Group.Pos"))), (std::vector<int>{1002, 1007, 1012}));
}

// Square 5 goes, and with it node 11 in the corner of the mesh.
TEST(NodeLists, NodeThatIsDroppedLeavesListAndCount) {
    const GroupCards deletes{
        .title = "Cut", .MTYPE = 1, .material = "0 0", .line = outline({{0, 1}, {1, 1}, {1, 2}, {0, 2}})};
    const Lines lists = node_lists(plot_deck(squares(), {listed_line({{0, 2}, {4, 2}}), deletes}));
    EXPECT_EQ(line_behind(lists, "* Group No =   1"), padded("* Line", 82));
    EXPECT_EQ(count_of(lists, "* Number of Nodes =    4"), 1);
    EXPECT_EQ(listed_nodes(lists), (std::vector<int>{11, 12, 13, 14}));
}

TEST(NodeLists, GroupWhoseNodesAllGoIsNotCounted) {
    const GroupCards deletes{
        .title = "Cut", .MTYPE = 1, .material = "0 0", .line = outline({{3, 0}, {4, 0}, {4, 2}, {3, 2}})};
    const Lines lists = node_lists(
        plot_deck(squares(), {listed_line({{4, 0}, {4, 2}}), deletes, listed_line({{0, 0}, {0, 2}})}));
    EXPECT_EQ(line_behind(lists, "*   NRL      "), "      1");
    EXPECT_EQ(count_of(lists, "* Group No =   1"), 0);
    EXPECT_EQ(listed_nodes(lists), (std::vector<int>{1, 5, 9}));
}

// Node 7 goes to node 8: the line passes it twice.
TEST(NodeLists, EntriesThatBecameOneNodeBothStay) {
    const GroupProject run(Kind::displacement, squares(), {listed_line({{0, 1}, {4, 1}})});
    run.project.write_data("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n1\n7 8 1.0\n");
    run.run();
    const Lines lists = node_lists(run.lines("Group.Pos"));
    EXPECT_EQ(count_of(lists, "* Number of Nodes =    5"), 1);
    EXPECT_EQ(listed_nodes(lists), (std::vector<int>{6, 7, 7, 8, 9}));
}

// --- labels --------------------------------------------------------------------------------------

Lines plot_deck_with_units(Kind kind, const std::string& title, const std::string& codes) {
    const GroupProject run(kind, squares(kind), {});
    run.project.write_data("UNIT.DAT", "\n\n\n\n" + title + "\n\n\n\n\n\n\n\n\n\n\n" + codes + "\n");
    run.run();
    return run.lines("Group.Pos");
}

TEST(PlotDeckLabels, KeepTheirBlanks) {
    const Lines post = plot_deck_with_units(Kind::displacement, "T", "7 3 3 1 1");
    for (const char* label : {" Time (hr) ", " Stress (Ksi)    ", " Force (Kip)", " Moment (Kip-in)",
                              " Displacement in  ", " Velocity (in/hr)  ", " Acceleration (in/hr2) ",
                              " Effective Mean Pressure (Ksi)    ", " Deviatoric Stress (Ksi)    "})
        EXPECT_GE(count_of(post, label), 1) << label;
    EXPECT_EQ(count_of(plot_deck_with_units(Kind::displacement, "T", "2 2 1 1 1"), " Force (KN) "), 1);
}

TEST(PlotDeckLabels, StayBlankWithoutAKnownCode) {
    const Lines post = plot_deck_with_units(Kind::displacement, "T", "0 2.5 9 1 1");
    for (const char* label :
         {" Time      ", " Stress          ", " Strain (%)", " Force      ", " Moment         ",
          " Displacement     ", " Velocity          ", " Acceleration          "})
        EXPECT_GE(count_of(post, label), 1) << label;
}

TEST(PlotDeckLabels, TemperatureAndHeadHaveUnitsOfTheirOwn) {
    const Lines temperature = plot_deck_with_units(Kind::temperature, "T", "1 1 1 1 4");
    EXPECT_EQ(count_of(temperature, " Temperature(K)  "), 1);
    EXPECT_EQ(count_of(temperature, " Temperature  (K)  "), 1);
    EXPECT_EQ(count_of(plot_deck_with_units(Kind::head, "T", "1 1 1 1 4"), " Total Head    ft  "), 1);
}

TEST(PlotDeckLabels, TitleHas80Columns) {
    const std::string title(100, 'x');
    const Lines post = plot_deck_with_units(Kind::displacement, title, "1 1 1 1 1");
    EXPECT_EQ(count_of(post, std::string(80, 'x')), 6 + 4 + 3);
    EXPECT_EQ(count_of(plot_deck_with_units(Kind::head, " T", "1 1 1 1 1"), padded(" T", 80)), 6 + 4 + 1);
    EXPECT_EQ(count_of(plot_deck_with_units(Kind::temperature, "", "1 1 1 1 1"), padded("", 80)), 2 + 1 + 1);
}

// --- which runs write it -------------------------------------------------------------------------

TEST(PlotDeck, IsNotWrittenByAnotherEdit) {
    const GroupProject run(Kind::displacement, squares(), {});
    run.project.deck(text_of({"1", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"}));
    std::filesystem::remove(run.project.data_file("UNIT.DAT"));
    run.run();
    for (const char* name : {"Group.Pos", "Group.Man", "MatAD.Man", "Boundary.Man"})
        EXPECT_FALSE(run.project.exists(name)) << name;
}

}  // namespace
}  // namespace brelan::test
