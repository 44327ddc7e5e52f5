// Element activity and the materials that groups get for it: "..\Group.Man", "..\MatAD.Man" and the mesh
// written anew. The groups lie over eight unit squares, numbered 1 to 4 below and 5 to 8 above.

#include <gtest/gtest.h>

#include <algorithm>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

const Points WHOLE{{0, 0}, {4, 0}, {4, 2}, {0, 2}};
const Points RIGHT_HALF{{2, 0}, {4, 0}, {4, 2}, {2, 2}};  // squares 3, 4, 7, 8
const Points LOWER_ROW{{0, 0}, {4, 0}, {4, 1}, {0, 1}};

// A group over the mesh as it is that gives its elements a material and an activity.
GroupCards region(const Points& points, int MAT, const std::string& pair) {
    GroupCards group{.title = "Region",
                     .MTYPE = 3,
                     .material = std::to_string(MAT) + " 3 0 0",
                     .line = outline(points, 3)};
    group.pairs[1] = pair;
    return group;
}

// A row of beams (LTP 2) or trusses (LTP 3) upwards at x = 2, with an activity.
GroupCards wall(int LTP, const std::string& pair) {
    GroupCards group{.title = "Wall",
                     .MTYPE = 2,
                     .material = std::to_string(LTP) + " 6",
                     .line = open_line({{2, 0}, {2, 2}})};
    group.pairs[3] = pair;
    return group;
}

Mesh squares() {
    return grid_mesh(Kind::displacement, 4, 2);
}

// What stands in "..\Group.Man" below its head that is no comment.
Lines range_lines(const GroupProject& run) {
    Lines lines = section(run.lines("Group.Man"), "*  KSTEP", "");
    lines.erase(lines.begin(), lines.begin() + 2);
    std::erase_if(lines, [](const std::string& line) { return line.starts_with('*'); });
    return lines;
}

// Materials of the continuum elements in the result, by element number.
std::vector<int> materials(const GroupProject& run) {
    std::vector<int> all;
    for (const std::string& line :
         section(run.lines("out.Mes"), "    CONTINUUM ELEMENT INDEX", "    BEAM ELEMENT"))
        if (line.size() > 68 && line[6] >= '0' && line[6] <= '9')
            all.push_back(std::stoi(line.substr(63, 5)));
    return all;
}

// --- ranges --------------------------------------------------------------------------------------

TEST(GroupActivity, TwoRunsInAMaterialGiveTwoRangesAndFourLines) {
    const GroupProject run(Kind::displacement, squares(), {region(RIGHT_HALF, 5, "2 9")});
    run.run();
    EXPECT_EQ(
        section(run.lines("Group.Man"), "* Material No =   5", ""),
        (Lines{"* Material No =   5", "*", "*    NEL    NAC   NDAC    MCH", "       3      2      9      0",
               "       4      2      9      0", "       7      2      9      0",
               "       8      2      9      0", "* Number of Elements =     4", "*", "*"}));
}

TEST(GroupActivity, RangeOfOneElementGivesOneLine) {
    const GroupProject run(Kind::displacement, squares(),
                           {region({{1, 0}, {2, 0}, {2, 1}, {1, 1}}, 5, "2 9")});
    run.run();
    EXPECT_EQ(range_lines(run), Lines{"       2      2      9      0"});
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Number of Elements =     1"), 1);
}

TEST(GroupActivity, LongRunShowsItsFirstAndItsLastElement) {
    const GroupProject run(Kind::coupled, grid_mesh(Kind::coupled, 4, 2), {region(LOWER_ROW, 5, "2 9")});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      2      9", "       4      2      9"}));
}

TEST(GroupActivity, RangesAreNotMergedBetweenMaterialsOrGroups) {
    Mesh mesh = squares();
    mesh.continuum[1].material = 4;
    const GroupProject run(Kind::displacement, mesh,
                           {region({{0, 0}, {2, 0}, {2, 1}, {0, 1}}, 0, "1 0"),
                            region({{2, 0}, {4, 0}, {4, 1}, {2, 1}}, 0, "1 0")});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      0      0", "       2      1      0      0",
                                       "       3      1      0      0", "       4      1      0      0"}));
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Material No =   1"), 2);
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Material No =   4"), 1);
}

TEST(GroupActivity, CountOnCard81IsThatOfTheRangeLines) {
    const GroupProject run(Kind::displacement, squares(),
                           {region(RIGHT_HALF, 5, "2 9"), wall(2, "1 0"), region(LOWER_ROW, 0, "3 0")});
    run.run();
    EXPECT_EQ(range_lines(run).size(), 4U + 2U + 4U);
    const Lines man = run.lines("Group.Man");
    EXPECT_EQ(*(std::find(man.begin(), man.end(), "*   NFAD") + 1), "      10");
}

// --- which groups take part ----------------------------------------------------------------------

TEST(GroupActivity, GroupWithIGPOST0HasNoBlockThoughItHasElements) {
    GroupCards silent = region(RIGHT_HALF, 6, "1 1");
    silent.IGPOST = 0;
    const GroupProject run(Kind::displacement, squares(), {region(LOWER_ROW, 5, "2 0"), silent});
    run.run();
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Group No =   1"), 1);
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Group No =   2"), 0);
    EXPECT_EQ(materials(run), (std::vector<int>{7, 7, 6, 6, 1, 1, 6, 6}));
}

// Its two records lie in the group's outline, yet pair 1 is not for them.
TEST(GroupActivity, GroupWithoutElementsHasNoBlock) {
    const GroupProject run(Kind::displacement, squares(),
                           {region(LOWER_ROW, 5, "2 0"), region({{9, 9}, {10, 9}, {10, 10}}, 6, "1 1")});
    run.run();
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Group No =   2"), 0);
}

TEST(GroupActivity, OtherIGPOSTHasNoPairs) {
    for (const int IGPOST : {2, -1}) {
        GroupCards group = region(LOWER_ROW, 5, "2 0");
        group.IGPOST = IGPOST;
        const GroupProject run(Kind::displacement, squares(), {group});
        run.run();
        EXPECT_FALSE(run.project.exists("Group.Man")) << IGPOST;
        EXPECT_TRUE(run.project.exists("Group.Pos")) << IGPOST;
    }
}

TEST(GroupActivity, Type3WithoutAMaterialTakesPair2ForAllItsContinuum) {
    Mesh mesh = squares();
    mesh.continuum[1].material = 4;
    const GroupProject run(Kind::displacement, mesh, {region(LOWER_ROW, 0, "1 5")});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      5      0", "       3      1      5      0",
                                       "       4      1      5      0", "       2      1      5      0"}));
}

// Type 5 is a type 3 without a material; the first of its pairs is the one of its continuum.
TEST(GroupActivity, Type5TakesItsFirstPair) {
    GroupCards all{.title = "All", .MTYPE = 5, .line = outline(WHOLE)};
    all.pairs[0] = "1 5";
    all.pairs[1] = "8 8";
    const GroupProject run(Kind::displacement, squares(), {all});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      5      0", "       8      1      5      0"}));
    EXPECT_EQ(materials(run), std::vector<int>(8, 2));
}

TEST(GroupActivity, ElementOfMaterial0IsLeftOut) {
    Mesh mesh = squares();
    mesh.continuum[1].material = 0;
    GroupCards all = region(LOWER_ROW, 0, "1 5");
    all.switches = {1, 0, 0, 0, 0, 0, 0};
    const GroupProject run(Kind::displacement, mesh, {all});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      5      0", "       3      1      5      0",
                                       "       4      1      5      0"}));
    EXPECT_EQ(materials(run), (std::vector<int>{2, 0, 2, 2, 1, 1, 1, 1}));
    const Lines mesh_section = section_of(run.lines("Group.Pos"), 1);
    EXPECT_EQ(count_of(mesh_section, "* Number of Element Groups =   2"), 1);
}

TEST(GroupActivity, PairsOfTwoZerosGiveNeitherFileAndKeepThoseOfYesterday) {
    const GroupProject run(Kind::displacement, squares(), {region(LOWER_ROW, 5, "0 0"), wall(2, "0 0")});
    run.project.write("Group.Man", "yesterday\n");
    run.project.write("MatAD.Man", "yesterday\n");
    run.run();
    EXPECT_EQ(run.project.read("Group.Man"), "yesterday\n");
    EXPECT_EQ(run.project.read("MatAD.Man"), "yesterday\n");
    EXPECT_FALSE(run.project.exists_work("TEMPMESH.TMP"));
    EXPECT_EQ(check_mesh(run.project.read("out.Mes"), Kind::displacement).problems, Lines{});
    EXPECT_TRUE(run.project.exists("Group.Pos"));
}

TEST(GroupActivity, PairWithOneZeroCounts) {
    for (const char* pair : {"0 4", "4 0", "-1 0"}) {
        const GroupProject run(Kind::displacement, squares(), {region(LOWER_ROW, 5, pair)});
        run.run();
        EXPECT_TRUE(run.project.exists("Group.Man")) << pair;
    }
}

// A closed line (it ends where it began) with a pair for what lies inside.
TEST(GroupActivity, Type2WithPair1Or5Or6TakesThemByClass) {
    GroupCards loop{.title = "Loop",
                    .MTYPE = 2,
                    .material = "2 6",
                    .line = {"5 0 0 0 0", "1 0 0", "2 2 0", "3 2 2", "4 0 2", "5 0 0", "4", "1 1 0 2",
                             "2 1 0 2", "3 1 0 2", "4 1 0 2"}};
    loop.pairs = {"1 0", "0 0", "0 0", "4 4", "2 0", "3 0"};
    const GroupProject run(Kind::displacement, squares(), {loop});
    run.run();
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      0      0", "       2      1      0      0",
                                       "       5      1      0      0", "       6      1      0      0",
                                       "       9      2      0      0", "      16      2      0      0"}));
    loop.pairs = {"0 0", "8 8", "8 8", "4 4", "0 0", "0 0"};
    const GroupProject line(Kind::displacement, squares(), {loop});
    line.run();
    EXPECT_EQ(range_lines(line), (Lines{"       9      4      4      0", "      16      4      4      0"}));
}

// --- materials of their own ----------------------------------------------------------------------

TEST(GroupMaterials, EachGroupGetsItsOwnAndTheLastOneStaysInAnElementOfTwo) {
    const GroupProject run(Kind::displacement, squares(),
                           {region(WHOLE, 0, "1 0"), region(LOWER_ROW, 0, "2 0")});
    run.run();
    // Both blocks show the old material and the pair of their own group.
    EXPECT_EQ(range_lines(run), (Lines{"       1      1      0      0", "       8      1      0      0",
                                       "       1      2      0      0", "       4      2      0      0"}));
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Material No =   1"), 2);
    EXPECT_EQ(materials(run), (std::vector<int>{3, 3, 3, 3, 2, 2, 2, 2}));
    EXPECT_EQ(section(run.lines("MatAD.Man"), "* MATNO  MODEL  GAMAW  MATNP", "*"),
              (Lines{"* MATNO  MODEL  GAMAW  MATNP", "      2      0      0      1",
                     "      3      0      0      1"}));
}

TEST(GroupMaterials, NumbersFollowTheHighestOfTheContinuum) {
    Mesh mesh = squares();
    mesh.continuum[7].material = 40;
    const GroupProject run(Kind::displacement, mesh, {wall(2, "1 0"), region(LOWER_ROW, 5, "2 0")});
    run.run();
    EXPECT_EQ(materials(run), (std::vector<int>{41, 41, 41, 41, 1, 1, 1, 40}));
}

TEST(GroupMaterials, ActivityOfBeamsAloneMakesNoneAndLeavesTheMesh) {
    const GroupProject run(Kind::displacement, squares(), {wall(2, "1 0")});
    run.run();
    EXPECT_EQ(run.lines("MatAD.Man"), (Lines{"* Main File: Material Activity", "* Card 8.1",
                                             "*  NFAD  MCFAD  MBFAD  MTFAD", "      0      0      0      0",
                                             "* Card 8.2", "* KSTEP ", "      1 ", "* End Of Data "}));
    EXPECT_EQ(range_lines(run), (Lines{"       9      1      0      0", "      10      1      0      0"}));
    EXPECT_FALSE(run.project.exists_work("TEMPMESH.TMP"));
    EXPECT_EQ(check_mesh(run.project.read("out.Mes"), Kind::displacement).problems, Lines{});
}

TEST(GroupMaterials, MoreThan400MaterialsHaveTheSameForm) {
    Mesh mesh = grid_mesh(Kind::displacement, 30, 14);
    for (MeshElement& element : mesh.continuum)
        element.material = element.number;
    const GroupProject run(Kind::displacement, mesh,
                           {region({{0, 0}, {30, 0}, {30, 14}, {0, 14}}, 0, "1 0")});
    run.run();
    const Lines man = run.lines("Group.Man");
    EXPECT_EQ(count_of(man, "* Material No = 420"), 1);
    EXPECT_EQ(count_of(man, "     420      1      0      0"), 1);
    EXPECT_EQ(count_of(run.lines("MatAD.Man"), "    840      0      0    420"), 1);
    EXPECT_EQ(count_of(run.lines("MatAD.Man"), "    420    420      0      0"), 1);
    std::vector<int> expected;
    for (int number = 421; number <= 840; ++number)
        expected.push_back(number);
    EXPECT_EQ(materials(run), expected);
}

TEST(GroupMaterials, NumberTooWideForItsHeadingShowsAsStars) {
    Mesh mesh = squares();
    mesh.continuum[0].material = 1000;
    const GroupProject run(Kind::displacement, mesh, {region(LOWER_ROW, 0, "1 0")});
    run.run();
    EXPECT_EQ(count_of(run.lines("Group.Man"), "* Material No = ***"), 1);
    EXPECT_EQ(materials(run), (std::vector<int>{1002, 1001, 1001, 1001, 1, 1, 1, 1}));
}

// --- the mesh written anew -----------------------------------------------------------------------

TEST(GroupMaterials, NarrowColumnsOfTheCoupledMeshShowWideValuesAsStars) {
    Mesh mesh = grid_mesh(Kind::coupled, 4, 2);
    mesh.continuum[0].codes = {0, 1000, 1, 2};
    mesh.continuum[1].codes = {-9, 99, 1234, -123};
    const GroupProject run(Kind::coupled, mesh, {region(RIGHT_HALF, 5, "1 0")});
    run.run();
    const Lines result = run.lines("out.Mes");
    const Lines first = section(result, "    CONTINUUM ELEMENT INDEX", "");
    ASSERT_GT(first.size(), 4U);
    EXPECT_EQ(first[2],
              "      1      1      2      7      6      0      0      0      0    1  0***    1    2"
              " 0.1000E+01");
    EXPECT_EQ(first[3],
              "      2      2      3      8      7      0      0      0      0    1 -9 99 1234 -123"
              " 0.1000E+01");
}

TEST(GroupMaterials, MeshWithTrussesAloneKeepsTheirHeadingsAndTheClosingLines) {
    for (const Kind kind : ALL_KINDS) {
        const GroupProject run(kind, grid_mesh(kind, 4, 2), {wall(3, "0 0"), region(LOWER_ROW, 5, "1 0")});
        run.run();
        const Lines result = run.lines("out.Mes");
        EXPECT_EQ(section(result, "    TRUSS ELEMENT", ""),
                  (Lines{"    TRUSS ELEMENT", "    NEL      I      J   MATT  NODEK",
                         "      9      3      8      6      1", "     10      8     13      6      1",
                         "     0", "     0"}))
            << name_of(kind);
        EXPECT_EQ(count_of(result, "    BEAM ELEMENT"), 0);
        expect_work_file(run.project, "MeshFile.Mes", in_full(result));
    }
}

TEST(GroupMaterials, MeshWithoutLineElementsEndsBehindItsContinuum) {
    const GroupProject run(Kind::head, grid_mesh(Kind::head, 4, 2), {region(LOWER_ROW, 5, "1 0")}, "3");
    run.run();
    const Lines result = run.lines("out.Mes");
    ASSERT_GE(result.size(), 3U);
    EXPECT_EQ((Lines{result.end() - 3, result.end()}),
              (Lines{"      8      9     10     15     14      1      0", "     0", "     0"}));
}

// The copy that the mesh was written from stays, with the old materials.
TEST(GroupMaterials, CopyOfTheMeshBeforeStays) {
    const GroupProject run(Kind::head, grid_mesh(Kind::head, 4, 2), {region(LOWER_ROW, 5, "1 0")}, "3");
    run.run();
    const Lines copy = lines_of(run.project.read_work("TEMPMESH.TMP"));
    EXPECT_EQ(copy.front(), "..\\out.Mes");
    EXPECT_EQ(count_of(copy, "      1      1      2      7      6     5    3"), 1);
    EXPECT_EQ(count_of(run.lines("out.Mes"), "      1      1      2      7      6      6      3"), 1);
}

}  // namespace
}  // namespace brelan::test
