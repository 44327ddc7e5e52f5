// Groups with outputs and materials below 0: an output that would list one is refused, with the card that
// asks for it, before the run has written anything that a user keeps.

#include <gtest/gtest.h>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

constexpr const char* YESTERDAY = "what an earlier run left\n";
const Lines RESULTS{"out.Mes", "Group.Pos", "Group.Man", "MatAD.Man", "Boundary.Man"};
const Points RIGHT_HALF{{2, 0}, {4, 0}, {4, 2}, {2, 2}};  // squares 3, 4, 7, 8 of eight

// Element 3 has a material below 0.
Mesh marked_squares(Kind kind) {
    Mesh mesh = grid_mesh(kind, 4, 2);
    mesh.continuum[2].material = -3;
    return mesh;
}

GroupCards right_half(const std::string& material) {
    return {.title = "Right", .MTYPE = 3, .material = material, .line = outline(RIGHT_HALF, 3)};
}

// The run is refused at the card of its only group, which stands behind ten cards and the title.
void expect_refused(Kind kind, const GroupCards& group, const std::string& element) {
    const GroupProject run(kind, marked_squares(kind), {group});
    for (const std::string& name : RESULTS)
        run.project.write(name, YESTERDAY);
    expect_failed(
        run.project.run(),
        {"..\\deck.dat, line 12: Card 3.3.5.4.1: expected materials of 1 or more in a group with outputs",
         "group 1 lists " + element});
    for (const std::string& name : RESULTS)
        EXPECT_EQ(run.project.read(name), YESTERDAY) << name_of(kind) << ", " << name;
}

void expect_taken(const GroupCards& group) {
    const GroupProject run(Kind::displacement, marked_squares(Kind::displacement), {group});
    run.run();
    EXPECT_NE(run.project.read("out.Mes").find("   -3"), std::string::npos);
}

TEST(MaterialsOfOutputs, ActivityOfAMaterialBelow0IsRefusedAndResultsStay) {
    for (const Kind kind : ALL_KINDS) {
        GroupCards group = right_half("0 3 0 0");
        group.pairs[1] = "2 0";
        expect_refused(kind, group, "element 3 with material -3");
    }
}

TEST(MaterialsOfOutputs, EachPlotThatListsAMaterialBelow0IsRefused) {
    for (const int NPTYPE : {1, 2, 3, 6}) {
        GroupCards group = right_half("0 3 0 0");
        group.switches[static_cast<std::size_t>(NPTYPE - 1)] = 1;
        expect_refused(Kind::displacement, group, "element 3 with material -3");
    }
}

// Beams and trusses are listed where no group asks for them; an IGPOST that is not 1 has no further cards.
TEST(MaterialsOfOutputs, LineElementsOfAMaterialBelow0AreRefused) {
    for (const char* LTP : {"2", "3"})
        for (const int IGPOST : {1, 2})
            expect_refused(Kind::coupled,
                           {.MTYPE = 2,
                            .material = std::string(LTP) + " -6",
                            .line = open_line({{2, 0}, {2, 2}}),
                            .IGPOST = IGPOST},
                           "element 9 with material -6");
}

TEST(MaterialsOfOutputs, JointOfAMaterialBelow0IsRefused) {
    GroupCards joint{.MTYPE = -2, .material = "-9 5 0 0 0 0 0", .line = open_line({{2, 0}, {2, 2}})};
    joint.switches[2] = 1;
    expect_refused(Kind::displacement, joint, "element 9 with material -9");
}

TEST(MaterialsOfOutputs, MaterialBelow0ThatNoOutputListsIsTaken) {
    expect_taken(right_half("0 3 0 0"));  // two zeros in each pair, and no switch
    GroupCards plotted_beams = right_half("0 3 0 0");
    plotted_beams.switches[3] = plotted_beams.switches[4] = 1;
    expect_taken(plotted_beams);
    GroupCards without_outputs = right_half("0 3 0 0");
    without_outputs.IGPOST = 0;
    expect_taken(without_outputs);
    GroupCards elsewhere = right_half("0 3 0 0");
    elsewhere.line = outline({{0, 0}, {2, 0}, {2, 2}, {0, 2}}, 3);
    elsewhere.pairs[1] = "2 0";
    expect_taken(elsewhere);
}

// A temperature deck has the plots of the mesh and of results only.
TEST(MaterialsOfOutputs, PlotThatTheKindDoesNotHaveListsNothing) {
    GroupCards group = right_half("0 3 0 0");
    group.switches = {0, 1, 1, 1, 1, 0, 0};
    const GroupProject run(Kind::temperature, marked_squares(Kind::temperature), {group});
    run.run();
}

// MAT of 0 or below in types 3 and 4 says what becomes of the old materials; it is no material of an element.
TEST(MaterialsOfOutputs, MinusSignOfMATKeepsItsMeaning) {
    GroupCards doubled{
        .title = "Doubled", .MTYPE = 4, .material = "-7 3 0 0", .line = outline(RIGHT_HALF, 3)};
    doubled.pairs[0] = "2 0";
    doubled.switches[0] = 1;
    GroupCards kept = right_half("-7 3 0 0");
    kept.pairs[1] = "2 0";
    for (const GroupCards& group : {doubled, kept}) {
        const GroupProject run(Kind::displacement, grid_mesh(Kind::displacement, 4, 2), {group});
        run.run();
        const bool twice = group.MTYPE == 4;
        const std::vector<MeshElement> elements =
            check_mesh(run.project.read("out.Mes"), Kind::displacement).mesh.continuum;
        EXPECT_EQ(elements.size(), twice ? 12U : 8U);
        EXPECT_EQ(elements[0].material, 1);
        // The group's elements get materials of their own behind the highest: those of 1, then those of 7.
        EXPECT_EQ(elements[2].material, twice ? 8 : 2);
        if (twice) {
            EXPECT_EQ(elements[8].material, 9);
        }
    }
}

}  // namespace
}  // namespace brelan::test
