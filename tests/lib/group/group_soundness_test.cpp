// Thousands of meshes and groups through the engine: the area inside the border is kept, neighbours share the
// nodes on their sides, joints have as many elements as their line has pieces, no element repeats a corner
// and every coordinate is a number. Where the patterns of the cut leave a node hanging or a move turns an
// element over, the cases are counted, and the counts are held.

#include "lib/group/group_soundness.h"

#include <iostream>

#include "support/state.h"

namespace brelan::test {
namespace {

// What is drawn in a run of a class.
using Draw = std::vector<DrawnGroup> (*)(Drawing&, const DrawnMesh&);

// Runs a class of decks, prints its row of counts and holds it.
void hold_class(const std::string& name, std::uint32_t seed, int runs, Draw draw, const Tally& expected) {
    const WorkDirectory directory;
    Drawing drawing(seed);
    Tally tally;
    static constexpr std::array<std::int32_t, 4> editions{COUPLED, TEMPERATURE, HEAD, DISPLACEMENT};
    for (int r = 0; r < runs; ++r) {
        const Edition edition(editions[static_cast<std::size_t>(r % 4)]);
        const DrawnMesh mesh = draw_mesh(drawing);
        const std::vector<DrawnGroup> groups = draw(drawing, mesh);
        static constexpr std::array<float, 3> lengths{0.01F, 0.001F, 0.05F};
        const std::string message = run_engine(mesh, groups, drawing.one_of(lengths));
        ++tally.runs;
        if (!message.empty()) {
            ++tally.ended;
            EXPECT_NE(message.find("expected coordinates that are numbers"), std::string::npos) << message;
            continue;
        }
        check_mesh_of_engine(mesh, groups, tally);
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << name << ", run " << r;
            return;
        }
    }
    const Tally& t = tally;
    std::cout << "| " << name << " | " << t.runs << " | " << t.ended << " | " << t.moved << " | " << t.hanging
              << " | " << t.inverted << " | " << t.flat << " | " << t.off_line << " of " << t.line_pieces
              << " | " << t.compared << " |\n";
    EXPECT_EQ(t.runs, expected.runs);
    EXPECT_EQ(t.ended, expected.ended);
    EXPECT_EQ(t.moved, expected.moved);
    EXPECT_EQ(t.hanging, expected.hanging);
    EXPECT_EQ(t.inverted, expected.inverted);
    EXPECT_EQ(t.flat, expected.flat);
    EXPECT_EQ(t.off_line, expected.off_line);
    EXPECT_EQ(t.compared, expected.compared);
    EXPECT_EQ(t.line_pieces, expected.line_pieces);
}

// --- one group -----------------------------------------------------------------------------------

template <Course COURSE>
std::vector<DrawnGroup> line(Drawing& drawing, const DrawnMesh& mesh) {
    return {draw_line(drawing, mesh, COURSE)};
}

std::vector<DrawnGroup> outline(Drawing& drawing, const DrawnMesh& mesh) {
    return {draw_outline(drawing, mesh)};
}

std::vector<DrawnGroup> arc(Drawing& drawing, const DrawnMesh& mesh) {
    return {draw_arc(drawing, mesh)};
}

std::vector<DrawnGroup> closed(Drawing& drawing, const DrawnMesh& mesh) {
    return {drawing.one_in(2) ? draw_arc(drawing, mesh) : draw_outline(drawing, mesh)};
}

std::vector<DrawnGroup> deletion(Drawing& drawing, const DrawnMesh& mesh) {
    std::vector<DrawnGroup> groups = closed(drawing, mesh);
    groups[0].MTYPE = drawing.one_in(2) ? 1 : -1;
    return groups;
}

std::vector<DrawnGroup> stages(Drawing& drawing, const DrawnMesh& mesh) {
    std::vector<DrawnGroup> groups = closed(drawing, mesh);
    groups[0].MTYPE = 4;
    groups[0].MAT = DUPLICATE;
    return groups;
}

TEST(GroupSoundness, LinesOfAnySlope) {
    hold_class("lines of any slope", 1, 600, line<Course::any_slope>,
               {.runs = 600,
                .ended = 0,
                .moved = 287,
                .hanging = 78,
                .inverted = 68,
                .flat = 13,
                .off_line = 164,
                .compared = 247,
                .line_pieces = 1970});
}

TEST(GroupSoundness, LinesAlongSides) {
    hold_class("lines along sides", 2, 300, line<Course::along_sides>,
               {.runs = 300,
                .ended = 0,
                .moved = 7,
                .hanging = 0,
                .inverted = 0,
                .flat = 2,
                .off_line = 16,
                .compared = 293,
                .line_pieces = 815});
}

TEST(GroupSoundness, LinesThroughCorners) {
    hold_class("lines through corners", 3, 400, line<Course::through_corners>,
               {.runs = 400,
                .ended = 0,
                .moved = 69,
                .hanging = 11,
                .inverted = 2,
                .flat = 12,
                .off_line = 120,
                .compared = 323,
                .line_pieces = 1215});
}

TEST(GroupSoundness, Outlines) {
    hold_class("closed outlines", 4, 600, outline,
               {.runs = 600,
                .ended = 0,
                .moved = 296,
                .hanging = 178,
                .inverted = 111,
                .flat = 48,
                .off_line = 788,
                .compared = 178,
                .line_pieces = 4117});
}

TEST(GroupSoundness, Arcs) {
    hold_class("circles and arcs", 5, 500, arc,
               {.runs = 500,
                .ended = 0,
                .moved = 247,
                .hanging = 82,
                .inverted = 39,
                .flat = 7,
                .off_line = 496,
                .compared = 194,
                .line_pieces = 2602});
}

TEST(GroupSoundness, Deletion) {
    hold_class("deletion inside or outside", 6, 300, deletion,
               {.runs = 300,
                .ended = 0,
                .moved = 147,
                .hanging = 63,
                .inverted = 49,
                .flat = 14,
                .off_line = 349,
                .compared = 106,
                .line_pieces = 1783});
}

TEST(GroupSoundness, Stages) {
    hold_class("duplicates for stages", 7, 300, stages,
               {.runs = 300,
                .ended = 0,
                .moved = 153,
                .hanging = 68,
                .inverted = 28,
                .flat = 15,
                .off_line = 335,
                .compared = 101,
                .line_pieces = 1760});
}

// --- joints --------------------------------------------------------------------------------------

DrawnGroup any_line(Drawing& drawing, const DrawnMesh& mesh) {
    static constexpr std::array<Course, 3> courses{Course::any_slope, Course::along_sides,
                                                   Course::through_corners};
    return draw_line(drawing, mesh, drawing.one_of(courses));
}

std::vector<DrawnGroup> joint(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_line(drawing, mesh);
    make_joint(group, 0.0F);
    return {group};
}

std::vector<DrawnGroup> wide_joint(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_line(drawing, mesh);
    make_joint(group, drawing.between(0.01F, 0.1F));
    return {group};
}

std::vector<DrawnGroup> closed_joint(Drawing& drawing, const DrawnMesh& mesh) {
    std::vector<DrawnGroup> groups = closed(drawing, mesh);
    make_joint(groups[0], 0.0F);
    return groups;
}

TEST(GroupSoundness, JointsOfNoWidth) {
    hold_class("joints of no width", 8, 400, joint,
               {.runs = 400,
                .ended = 2,
                .moved = 90,
                .hanging = 24,
                .inverted = 8,
                .flat = 3,
                .off_line = 69,
                .compared = 290,
                .line_pieces = 1295});
}

TEST(GroupSoundness, JointsOfAWidth) {
    hold_class("joints of a width", 9, 300, wide_joint,
               {.runs = 300,
                .ended = 2,
                .moved = 56,
                .hanging = 12,
                .inverted = 3,
                .flat = 4,
                .off_line = 60,
                .compared = 231,
                .line_pieces = 915});
}

TEST(GroupSoundness, JointsRoundOutlines) {
    hold_class("joints round outlines", 10, 400, closed_joint,
               {.runs = 400,
                .ended = 0,
                .moved = 220,
                .hanging = 79,
                .inverted = 63,
                .flat = 9,
                .off_line = 470,
                .compared = 120,
                .line_pieces = 2340});
}

// --- several groups ------------------------------------------------------------------------------

std::vector<DrawnGroup> crossing(Drawing& drawing, const DrawnMesh& mesh) {
    std::vector<DrawnGroup> groups;
    for (int g = 0; g < 3; ++g)
        groups.push_back(drawing.one_in(2) ? any_line(drawing, mesh) : closed(drawing, mesh)[0]);
    return groups;
}

std::vector<DrawnGroup> crossing_joints(Drawing& drawing, const DrawnMesh& mesh) {
    std::vector<DrawnGroup> groups{any_line(drawing, mesh), any_line(drawing, mesh)};
    make_joint(groups[0], 0.0F);
    if (drawing.one_in(2))
        make_joint(groups[1], 0.0F);
    return groups;
}

TEST(GroupSoundness, CrossingGroups) {
    hold_class("three crossing groups", 11, 500, crossing,
               {.runs = 500,
                .ended = 0,
                .moved = 244,
                .hanging = 287,
                .inverted = 152,
                .flat = 38,
                .off_line = 1091,
                .compared = 82,
                .line_pieces = 6947});
}

TEST(GroupSoundness, GroupsOverJoints) {
    hold_class("lines and joints over a joint", 12, 400, crossing_joints,
               {.runs = 400,
                .ended = 53,
                .moved = 112,
                .hanging = 59,
                .inverted = 23,
                .flat = 17,
                .off_line = 234,
                .compared = 189,
                .line_pieces = 2160});
}

}  // namespace
}  // namespace brelan::test
