// Joints and line elements at their routines: places of twins, their return to the mesh's limits, node words.

#include "group/joints.h"

#include <vector>

#include "group/engine_mesh.h"
#include "group/line_elements.h"
#include "group/listing.h"
#include "group/membership.h"
#include "group/regions.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr std::int32_t COUPLED = 3, TEMPERATURE = 5, HEAD = 9, DISPLACEMENT = 1;

// An empty mesh of the displacement kind, to which a test gives its nodes.
class GroupJoint : public ::testing::Test {
protected:
    void SetUp() override {
        reset_mesh(state.mesh);
        state.engine.frozen.fill(0);
        state.engine.side_sign.fill(0);
        state.engine.highest_node = {};
        state.engine.highest_element = {};
        state.engine.group = 1;
        state.listing.pipes = state.listing.convection_lines = state.listing.flow_sections = 0;
        state.tolerances.line = 0.01F;
    }
    static std::vector<NodeNumber> nodes(const std::vector<Point>& points) {
        std::vector<NodeNumber> numbers;
        for (const Point& p : points)
            numbers.push_back(add_node(state.mesh, state.engine, p));
        return numbers;
    }
    static void expect_at(NodeNumber n, float x, float y) {
        EXPECT_NEAR(state.mesh.x[n], x, 1.0E-5F) << "node " << n;
        EXPECT_NEAR(state.mesh.y[n], y, 1.0E-5F) << "node " << n;
    }
    Edition edition_{DISPLACEMENT};
};

// --- places of the twins ---------------------------------------------------------------------------

TEST_F(GroupJoint, TwinsLieToTheLeftAndMeetInMitres) {
    const auto line = nodes({{0, 0}, {2, 0}, {2, 3}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, -0.5F);
    expect_at(twins[0], 0.0F, 0.5F);
    expect_at(twins[1], 1.5F, 0.5F);
    expect_at(twins[2], 1.5F, 3.0F);
    for (const NodeNumber n : {line[0], line[2], twins[0], twins[2]})
        EXPECT_EQ(state.engine.frozen[n], 1);
}

TEST_F(GroupJoint, WidthOfNothingPutsTwinsOnTheLine) {
    const auto line = nodes({{0, 0}, {2, 1}, {2, 3}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 0.0F);
    for (std::size_t k = 0; k < line.size(); ++k)
        expect_at(twins[k], state.mesh.x[line[k]], state.mesh.y[line[k]]);
}

TEST_F(GroupJoint, BendWithinTheLimitTakesTheEndOfTheEarlierEdge) {
    // The second edge rises by 1e-6 of its length. Shifted by 500 up, ends differ by 0.0005 and count as one
    // point.
    const auto line = nodes({{0, 0}, {10, 0}, {20, 0.00001F}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 500.0F);
    EXPECT_EQ(state.mesh.x[twins[1]], 10.0F);
    EXPECT_EQ(state.mesh.y[twins[1]], 500.0F);
}

TEST_F(GroupJoint, ClosedLineHasAMitreAtEachNode) {
    const auto line = nodes({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, true, 1.0F);
    expect_at(twins[0], 1.0F, 1.0F);
    expect_at(twins[1], 3.0F, 1.0F);
    expect_at(twins[2], 3.0F, 3.0F);
    expect_at(twins[3], 1.0F, 3.0F);
    add_joints(state.mesh, state.engine, line, twins, true, MaterialNumber(9), 0);
    EXPECT_EQ(state.engine.highest_element.value, 4);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_1, line[3]);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_2, line[0]);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_3, twins[0]);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_4, twins[3]);
    EXPECT_EQ(state.engine.workable[ElementNumber(4)].value, 0);
}

TEST_F(GroupJoint, LineOfOneNodeHasATwinAtTheNodeAndNoJoint) {
    const auto line = nodes({{3, 4}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 0.5F);
    ASSERT_EQ(twins.size(), 1U);
    expect_at(twins[0], 3.0F, 4.0F);
    add_joints(state.mesh, state.engine, line, twins, false, MaterialNumber(9), 0);
    EXPECT_EQ(state.engine.highest_element.value, 0);
}

// --- back onto the limits ---------------------------------------------------------------------------

TEST_F(GroupJoint, TwinAtTheLeftLimitKeepsItsX) {
    state.engine.limits = {0.0F, 10.0F, -5.0F};
    // A line that rises 3 on 4 from the left limit: shifted by 1 its start is at (-0.6, 0.8), and the shifted
    // line meets x = 0 at 1 / 0.8 above the node.
    const auto line = nodes({{0, 0}, {4, 3}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 1.0F);
    fix_twins(state.mesh, state.engine, line, twins, false, 1.0F);
    expect_at(twins[0], 0.0F, 1.25F);
    expect_at(twins[1], 3.4F, 3.8F);
}

TEST_F(GroupJoint, TwinAtTheRightLimitKeepsItsX) {
    state.engine.limits = {-5.0F, 4.0F, -5.0F};
    const auto line = nodes({{0, 0}, {4, 3}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 1.0F);
    fix_twins(state.mesh, state.engine, line, twins, false, 1.0F);
    expect_at(twins[1], 4.0F, 4.25F);
}

TEST_F(GroupJoint, TwinAtTheBottomKeepsItsY) {
    state.engine.limits = {-10.0F, 10.0F, 0.0F};
    // Shifted by 1 the start is at (-0.6, 0.8); the shifted line meets y = 0 at 1 / 0.6 to the left.
    const auto line = nodes({{0, 0}, {4, 3}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 1.0F);
    fix_twins(state.mesh, state.engine, line, twins, false, 1.0F);
    EXPECT_NEAR(state.mesh.x[twins[0]], -1.0F / 0.6F, 1.0E-5F);
    EXPECT_EQ(state.mesh.y[twins[0]], 0.0F);
}

TEST_F(GroupJoint, TwinsFollowALineThatALaterGroupHasMoved) {
    state.engine.limits = {-10.0F, 10.0F, -10.0F};
    const auto line = nodes({{0, 0}, {2, 0}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 0.5F);
    move_node(state.mesh, state.engine, line[0], {0, 1});
    move_node(state.mesh, state.engine, line[1], {2, 1});
    fix_twins(state.mesh, state.engine, line, twins, false, 0.5F);
    expect_at(twins[0], 0.0F, 1.5F);
    expect_at(twins[1], 2.0F, 1.5F);
}

// --- line elements ----------------------------------------------------------------------------------

TEST_F(GroupJoint, ClosedBeamsAreWalkedBackwardsInMechanicalKindsOnly) {
    const auto line = nodes({{0, 0}, {1, 0}, {1, 1}});
    add_line_elements(state.mesh, state.engine, state.listing, 0, true, 2, MaterialNumber(7), line);
    ASSERT_EQ(state.engine.highest_element.value, 3);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_1, line[0]);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_2, line[2]);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].corner_1, line[2]);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].corner_2, line[1]);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].corner_1, line[1]);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].corner_2, line[0]);
    EXPECT_EQ(state.mesh.type[ElementNumber(3)], ELEMENT_BEAM);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].material.value, 7);
    const Edition temperature(TEMPERATURE);
    add_line_elements(state.mesh, state.engine, state.listing, 0, true, 2, MaterialNumber(7), line);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_1, line[0]);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].corner_2, line[1]);
}

TEST_F(GroupJoint, BeamsFreeTheRotationOfTheirNodes) {
    const auto line = nodes({{0, 0}, {1, 0}});
    state.mesh.codes[line[0]] = state.mesh.codes[line[1]] = {1, 1, 1, 1, 1};
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 3, MaterialNumber(7), line);
    EXPECT_EQ(state.mesh.codes[line[0]], (NodeCodes{1, 1, 1, 1, 1}));
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 2, MaterialNumber(7), line);
    EXPECT_EQ(state.mesh.codes[line[0]], (NodeCodes{1, 1, 0, 1, 1}));
    const Edition coupled(COUPLED);
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, -2, MaterialNumber(7), line);
    EXPECT_EQ(state.mesh.codes[line[1]], (NodeCodes{1, 1, 0, 1, 0}));
    EXPECT_EQ(state.engine.side_sign[ElementNumber(2)], 0);
    EXPECT_EQ(state.engine.side_sign[ElementNumber(3)], -1);
}

TEST_F(GroupJoint, TemperatureLinesAreNumberedInTheirNodes) {
    const Edition temperature(TEMPERATURE);
    const auto first = nodes({{0, 0}, {1, 0}, {2, 0}});
    const auto second = nodes({{0, 1}, {1, 1}});
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 3, MaterialNumber(8), first);
    add_line_elements(state.mesh, state.engine, state.listing, 0, true, 3, MaterialNumber(9), second);
    EXPECT_EQ(state.mesh.codes[first[0]], (NodeCodes{3, 8, 1, 1, 3}));
    EXPECT_EQ(state.mesh.codes[first[2]], (NodeCodes{3, 8, 1, 3, 3}));
    EXPECT_EQ(state.mesh.codes[second[0]], (NodeCodes{3, 9, 2, 1, -2}));
    EXPECT_EQ(state.mesh.codes[second[1]], (NodeCodes{3, 9, 2, 2, -2}));
}

TEST_F(GroupJoint, HeadLinesWriteLess) {
    const Edition head(HEAD);
    const auto line = nodes({{0, 0}, {1, 0}});
    state.mesh.codes[line[0]] = state.mesh.codes[line[1]] = {5, 5, 5, 5, 5};
    add_line_elements(state.mesh, state.engine, state.listing, 0, true, 3, MaterialNumber(8), line);
    EXPECT_EQ(state.mesh.codes[line[0]], (NodeCodes{5, 5, 5, 5, 5}));
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 3, MaterialNumber(8), line);
    EXPECT_EQ(state.mesh.codes[line[0]], (NodeCodes{3, 0, 5, 5, 5}));
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 5, MaterialNumber(8), line);
    EXPECT_EQ(state.mesh.codes[line[1]], (NodeCodes{1, 8, 5, 5, 5}));
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 4, MaterialNumber(8), line);
    EXPECT_EQ(state.mesh.codes[line[1]], (NodeCodes{0, 8, 5, 5, 5}));
}

TEST_F(GroupJoint, MoveFreezesTheLineEvenWithoutElements) {
    const auto line = nodes({{0, 0}, {1, 0}});
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 0, MaterialNumber(0), line);
    EXPECT_EQ(state.engine.frozen[line[0]], 0);
    add_line_elements(state.mesh, state.engine, state.listing, 1, false, 0, MaterialNumber(0), line);
    EXPECT_EQ(state.engine.frozen[line[0]], 1);
    EXPECT_EQ(state.engine.highest_element.value, 0);
}

TEST_F(GroupJoint, MarkOfAGroupIsHeldInEightBits) {
    state.engine.group = 300;
    const auto line = nodes({{0, 0}, {1, 0}});
    add_line_elements(state.mesh, state.engine, state.listing, 0, false, 2, MaterialNumber(7), line);
    EXPECT_EQ(state.mesh.node_mark[line[0]], 44);
}

// --- regions and listing ----------------------------------------------------------------------------

TEST_F(GroupJoint, CentroidOnAnEdgeOfThePathIsOutside) {
    const auto corner = nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    state.engine.highest_element = ElementNumber(1);
    state.mesh.type[ElementNumber(1)] = ELEMENT_CONTINUUM;
    state.engine.workable[ElementNumber(1)] = ElementNumber(1);
    state.mesh.words[ElementNumber(1)].material = MaterialNumber(1);
    state.mesh.density[ElementNumber(1)] = 0.0F;
    set_corners(state.mesh, state.engine, ElementNumber(1), {{corner[0], corner[1], corner[2], corner[3]}});
    build_indexes(state.mesh, state.engine);
    RegionMaterial material;
    material.group_type = 3;
    material.material = MaterialNumber(6);
    // The centroid (1, 1) lies on the left edge: no crossing is strictly to its left.
    const std::vector<Point> on_edge{{1, 0}, {3, 0}, {3, 3}, {1, 3}};
    apply_region(state.mesh, state.engine, material, on_edge);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].material.value, 1);
    const std::vector<Point> around{{0.5F, 0}, {3, 0}, {3, 3}, {0.5F, 3}};
    apply_region(state.mesh, state.engine, material, around);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].material.value, 6);
}

class GroupListing : public GroupJoint {
protected:
    WorkDirectory directory_;
    Channel& file_ = state.channels.open(32, "GROUP.TMP", OpenStatus::work);
    void SetUp() override {
        GroupJoint::SetUp();
        state.listing = {};
    }
    void TearDown() override { state.listing = {}; }

    static std::vector<std::int32_t> groups_of(std::int32_t element, const ElementWords& words,
                                               std::int8_t type) {
        state.mesh.words[ElementNumber(element)] = words;
        std::vector<std::int32_t> groups;
        for (const MemberRecord& member :
             members_of(begin_membership(state.tolerances, state.engine, state.listing), state.mesh,
                        state.tolerances, ElementNumber(element), type))
            groups.push_back(member.group);
        return groups;
    }
};

TEST_F(GroupListing, JointRecordGivesLineTwinAndStrip) {
    JointRecord record;
    record.group = 4;
    record.group_type = -2;
    record.inner_line_type = 2;
    record.inner_line_material = MaterialNumber(3);
    record.nodes = nodes({{0, 0}, {1, 0}});
    record.twins = nodes({{0, 1}, {1, 1}});
    add_rows(state.mesh, state.listing, file_, record);  // no second line: LMo is 0
    record.outer_line_type = 2;
    record.outer_line_material = MaterialNumber(5);
    add_rows(state.mesh, state.listing, file_, record);
    record.inner_line_material = MaterialNumber(0);
    add_rows(state.mesh, state.listing, file_, record);
    ASSERT_EQ(state.listing.rows.size(), 7U);
    const std::vector<std::int32_t> kinds{ROW_LINE,  ROW_JOINT, ROW_LINE, ROW_LINE,
                                          ROW_JOINT, ROW_LINE,  ROW_JOINT};
    for (std::size_t i = 0; i < kinds.size(); ++i)
        EXPECT_EQ(state.listing.rows[i].sub_kind, kinds[i]) << "row " << i;
    ASSERT_EQ(state.listing.rows[1].points.size(), 4U);
    EXPECT_EQ(state.listing.rows[1].points[1], (Point{0, 1}));
    EXPECT_EQ(state.listing.rows[1].points[2], (Point{1, 0}));
    EXPECT_EQ(state.listing.rows[3].points[0], (Point{0, 1}));
    EXPECT_EQ(state.listing.rows[5].points[0], (Point{0, 1}));
}

// What a person finds in the files where a run ends.
TEST_F(GroupListing, FilesShowRecordsAndRows) {
    JointRecord record;
    record.group = 4;
    record.closed = 1;
    record.group_type = -3;
    record.joint_thickness = 0.5F;
    record.inner_line_type = -2;
    record.outer_line_material = MaterialNumber(12);
    record.nodes = node_numbers({7, 8, 9});
    record.twins = node_numbers({10, 11, 99990});
    write_joint_record(file_, record);
    add_row(state.listing, file_, {3, ROW_LINE, 2, 0, {{1, 2.5F}}});
    state.channels.close(32);
    EXPECT_EQ(directory_.read("GROUP.TMP"),
              "           4\n"
              "           1           3  0.500000000E+00          -3\n"
              "          -2           0\n"
              "           7           8           9\n"
              "           0          12\n"
              "          10          11       99990\n"
              "           3           1\n"
              "           2           0\n"
              "           1\n"
              "  0.100000000E+01  0.250000000E+01\n");
}

TEST_F(GroupListing, PointThatIsNoNumberIsAMessageWithItsLine) {
    add_row(state.listing, file_, {1, ROW_OUTLINE, 3, 1, {{1, 1}}});
    EXPECT_NO_THROW(require_numbers(state.listing));
    add_row(state.listing, file_, {2, ROW_OUTLINE, 3, 1, {{1, 1}, {0, std::nanf("")}}});
    EXPECT_EQ(failure_of([] { require_numbers(state.listing); }),
              "GROUP.TMP, line 9: expected a number in a point, found \"****************\"");
}

TEST_F(GroupListing, RowBeyondTheListingIsAMessage) {
    state.listing.rows.resize(MOST_GROUPS);
    EXPECT_THROW(add_row(state.listing, file_, {1, ROW_OUTLINE, 3, 1, {}}), RunEnd);
}

TEST_F(GroupListing, BeamOfAnotherDivisionThanItsLineIsNoMember) {
    const auto line = nodes({{0, 0}, {4, 0}, {2, 0}});
    state.listing.rows = {{7, ROW_LINE, 2, 0, {{0, 0}, {4, 0}}}};
    ElementWords beam;
    beam.corner_1 = beam.corner_4 = line[0];
    beam.corner_2 = beam.corner_3 = line[2];
    beam.material = MaterialNumber(3);
    EXPECT_TRUE(groups_of(1, beam, ELEMENT_BEAM).empty());
    beam.corner_2 = beam.corner_3 = line[1];
    EXPECT_EQ(groups_of(2, beam, ELEMENT_BEAM), (std::vector<std::int32_t>{7}));
}

TEST_F(GroupListing, ElementInsideTwoOutlinesHasTwoRecordsAndNoneForMinusOne) {
    const auto corner = nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    const std::vector<Point> around{{-1, -1}, {3, -1}, {3, 3}, {-1, 3}};
    state.listing.rows = {{1, ROW_OUTLINE, 3, 1, around},
                          {2, ROW_OUTLINE, -1, 1, around},
                          {3, ROW_OUTLINE, 2, 0, around},  // an open line
                          {4, ROW_OUTLINE, 4, 1, around}};
    ElementWords words;
    words.corner_1 = corner[0];
    words.corner_2 = corner[1];
    words.corner_3 = corner[2];
    words.corner_4 = corner[3];
    words.material = MaterialNumber(2);
    EXPECT_EQ(groups_of(5, words, ELEMENT_CONTINUUM), (std::vector<std::int32_t>{1, 4}));
}

TEST_F(GroupListing, JointElementIsAMemberOfItsStrip) {
    const auto line = nodes({{0, 0}, {2, 0}});
    const auto twins = add_twin_line(state.mesh, state.engine, line, false, 0.5F);
    state.listing.rows = {{6, ROW_JOINT, -2, 0, {{0, 0}, {0, 0.5F}, {2, 0}, {2, 0.5F}}}};
    ElementWords words;
    words.corner_1 = line[0];
    words.corner_2 = line[1];
    words.corner_3 = twins[1];
    words.corner_4 = twins[0];
    EXPECT_EQ(groups_of(5, words, ELEMENT_CONTINUUM), (std::vector<std::int32_t>{6}));
}

TEST_F(GroupListing, MembersAreTheSameWithoutIndexes) {
    const auto line = nodes({{0, 0}, {4, 0}});
    state.listing.rows = {{7, ROW_LINE, 2, 0, {{0, 0}, {4, 0}}}};
    ElementWords beam;
    beam.corner_1 = beam.corner_4 = line[0];
    beam.corner_2 = beam.corner_3 = line[1];
    beam.material = MaterialNumber(3);
    for (const bool uses_indexes : {true, false}) {
        state.engine.uses_indexes = uses_indexes;
        EXPECT_EQ(groups_of(1, beam, ELEMENT_BEAM), (std::vector<std::int32_t>{7}));
    }
    state.engine.uses_indexes = true;
}

// 3e38 + 1e38 is beyond the 32-bit numbers. The end of an open line has nothing to be turned back from.
TEST_F(GroupJoint, TwinBeyondTheNumbersIsAMessage) {
    const auto line = nodes({{3.0e38F, 1}, {3.0e38F, 0}});
    EXPECT_EQ(
        failure_of([&] { add_twin_line(state.mesh, state.engine, line, false, 1.0e38F); }),
        "group 1: expected coordinates that are numbers, but the twin of node 1 of its line would get one "
        "that is none");
}

// A triangle with its longest edge from (4, 4) back to (0, 0), which an open line does not have.
TEST_F(GroupListing, ClosedLineHasTheBeamsOfItsLastEdgeToo) {
    const auto corner = nodes({{0, 0}, {4, 4}});
    ElementWords beam;
    beam.corner_1 = beam.corner_4 = corner[1];
    beam.corner_2 = beam.corner_3 = corner[0];
    beam.material = MaterialNumber(3);
    state.listing.rows = {{7, ROW_LINE, 3, 1, {{0, 0}, {4, 0}, {4, 4}}}};
    EXPECT_EQ(groups_of(1, beam, ELEMENT_BEAM), (std::vector<std::int32_t>{7}));
    state.listing.rows = {{7, ROW_LINE, 3, 0, {{0, 0}, {4, 0}, {4, 4}}}};
    EXPECT_TRUE(groups_of(1, beam, ELEMENT_BEAM).empty());
}

TEST_F(GroupListing, LineOfAnyTypeWithAMaterialHasARow) {
    JointRecord record;
    record.group = 3;
    record.group_type = 2;
    record.nodes = nodes({{0, 0}, {1, 0}});
    record.inner_line_material = MaterialNumber(4);
    for (const std::int32_t type : {1, 2, -1}) {
        state.listing.rows.clear();
        record.inner_line_type = type;
        add_rows(state.mesh, state.listing, file_, record);
        EXPECT_EQ(state.listing.rows.size(), 1U) << type;
    }
    state.listing.rows.clear();
    record.inner_line_type = 0;
    add_rows(state.mesh, state.listing, file_, record);
    EXPECT_TRUE(state.listing.rows.empty());
}

}  // namespace
}  // namespace brelan::test
