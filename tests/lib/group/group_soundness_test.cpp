// Thousands of meshes and groups through the engine. Every run holds: neighbours share the nodes on their
// sides unless a path has met nodes that must not move; there is no hole; an element whose corners stand as
// drawn is as drawn; the area inside a border that stands is kept; joints have as many elements as their line
// has pieces; no element repeats a corner, and every coordinate is a number.

#include "lib/group/group_soundness.h"

#include "support/campaign.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// What is drawn in a run of a class.
using Draw = std::vector<DrawnGroup> (*)(Drawing&, const DrawnMesh&);

// Runs a class of decks.
void hold_class(const std::string& name, std::uint32_t seed, int sample, Draw draw) {
    const WorkDirectory directory;
    Drawing drawing(seed);
    Tally tally;
    static constexpr std::array<std::int32_t, 4> editions{COUPLED, TEMPERATURE, HEAD, DISPLACEMENT};
    for (int r = 0; r < rounds(sample, 10 * sample); ++r) {
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
    // Most runs end by themselves, enough of them with the border in place, and most pieces of a line are
    // sides.
    EXPECT_GE(tally.compared, tally.runs / 8) << name;
    EXPECT_LE(tally.ended, tally.runs / 5) << name;
    EXPECT_LE(4 * tally.off_line, tally.line_pieces) << name;
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
    hold_class("lines of any slope", 1, 600, line<Course::any_slope>);
}

TEST(GroupSoundness, LinesAlongSides) {
    hold_class("lines along sides", 2, 300, line<Course::along_sides>);
}

TEST(GroupSoundness, LinesThroughCorners) {
    hold_class("lines through corners", 3, 400, line<Course::through_corners>);
}

TEST(GroupSoundness, Outlines) {
    hold_class("closed outlines", 4, 600, outline);
}

TEST(GroupSoundness, Arcs) {
    hold_class("circles and arcs", 5, 500, arc);
}

TEST(GroupSoundness, Deletion) {
    hold_class("deletion inside or outside", 6, 300, deletion);
}

TEST(GroupSoundness, Stages) {
    hold_class("duplicates for stages", 7, 300, stages);
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
    hold_class("joints of no width", 8, 400, joint);
}

TEST(GroupSoundness, JointsOfAWidth) {
    hold_class("joints of a width", 9, 300, wide_joint);
}

TEST(GroupSoundness, JointsRoundOutlines) {
    hold_class("joints round outlines", 10, 400, closed_joint);
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
    hold_class("three crossing groups", 11, 500, crossing);
}

TEST(GroupSoundness, GroupsOverJoints) {
    hold_class("lines and joints over a joint", 12, 400, crossing_joints);
}

}  // namespace
}  // namespace brelan::test
