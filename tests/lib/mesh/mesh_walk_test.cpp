// The walk through a mesh file, whole and part by part.

#include "mesh/mesh_walk.h"

#include "mesh/attributes.h"
#include "mesh/kinds.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr std::string_view WALKED_MESH =
    "a mesh\ncounts\n2 1 0 2\nnodes\nheading\n"
    "7 0 0 1 1 1 0.5 1.5\n3 0 0 1 1 1 2.5 3.5\n"
    "elements\nheading\n12 7 3 7 3 0 0 0 0 4 1.0 2.3\n"
    "trusses\nheading\n30 7 3 2 1\n20 3 7 2 1\n"
    "0\n0\n";

class MeshWalkTest : public ChannelTest {
protected:
    Channel& file = state.channels.open_in_memory(5, "a mesh", WALKED_MESH);
    StrippedMesh form{8, {2, 2, 2}};
    MeshWalk walk{LayoutKind::displacement, file, form};
};

TEST_F(MeshWalkTest, MeetsEachPartOnce) {
    const MeshCounts counts = walk.head();
    EXPECT_EQ(counts.nodes, 2);
    EXPECT_EQ(counts.of(ELEMENT_TRUSS), 2);
    std::string met;
    walk.each_node([&](const NodeRecord& node) { met += "n" + to_string(node.number) + " "; });
    for (const std::int8_t type : ELEMENT_TYPES)
        walk.each_element(type, [&](const ElementRecord& element) {
            met += std::to_string(type) + ":" + to_string(element.number) + " ";
        });
    EXPECT_EQ(met, "n7 n3 1:12 3:30 3:20 ");
    EXPECT_EQ(rest_of(file), (std::vector<std::string>{"0", "0"}));
}

TEST_F(MeshWalkTest, LooksAheadForTheRangesOfNumbers) {
    walk.head();
    const NumberRange nodes = walk.node_numbers();
    EXPECT_EQ(nodes.lowest.value, 3);
    EXPECT_EQ(nodes.highest.value, 7);
    walk.each_node([](const NodeRecord&) {});
    walk.look_ahead([&] {
        EXPECT_EQ(walk.element_numbers(ELEMENT_CONTINUUM).highest.value, 12);
        const NumberRange beams = walk.element_numbers(ELEMENT_BEAM);
        EXPECT_EQ(beams.lowest.value, NO_LOWEST_NUMBER);
        EXPECT_EQ(beams.highest.value, 0);
        EXPECT_EQ(walk.element_numbers(ELEMENT_TRUSS).lowest.value, 20);
    });
    EXPECT_EQ(file.peek_line(), "elements");
}

TEST_F(MeshWalkTest, PassesTheHeadingsOfSectionsThatLostTheirRecords) {
    Channel& stripped = state.channels.open_in_memory(
        6, "a mesh",
        "a mesh\ncounts\n0 0 0 1\nnodes\nheading\nelements\nheading\ntrusses\nheading\n30 7 3 2 1\n");
    form.heading_lines[2] = 4;
    MeshWalk over(LayoutKind::displacement, stripped, form);
    over.head();
    EXPECT_EQ(over.element_numbers(ELEMENT_CONTINUUM).highest.value, 0);
    EXPECT_EQ(over.element_numbers(ELEMENT_TRUSS).lowest.value, 30);
}

// --- attributes ----------------------------------------------------------------------------------

std::string names_of(LayoutKind kind, bool on_cards) {
    std::string names;
    for_each_attribute(kind, [&](const auto& attribute) {
        if (!on_cards || attribute.on_cards)
            names.append(attribute.name).append(" ");
    });
    return names;
}

TEST(Attributes, AreThoseOfTheRecordsInTheirOrder) {
    EXPECT_EQ(names_of(LayoutKind::coupled, false), "KS KF INTR INTS TBJWL ");
    EXPECT_EQ(names_of(LayoutKind::temperature, false), "IDH ");
    EXPECT_EQ(names_of(LayoutKind::head, false), "IDH ");
    EXPECT_EQ(names_of(LayoutKind::displacement, false), "THIC DEN ");
    EXPECT_EQ(names_of(LayoutKind::coupled, true), "KS KF ");
    EXPECT_EQ(names_of(LayoutKind::displacement, true), "THIC DEN ");
}

TEST(Attributes, MarkAJointByKind) {
    ElementAttributes none;
    none.fluid = none.integration_r = 9;
    none.thickness = -1.0F;
    for (const KindRow& row : KINDS)
        EXPECT_FALSE(is_joint(row.kind, none));
    ElementAttributes all;
    all.skeleton = 1;
    all.attribute = -101;
    all.density = -1.0F;
    for (const KindRow& row : KINDS)
        EXPECT_TRUE(is_joint(row.kind, all));
    ElementAttributes other_way;
    other_way.skeleton = -1;
    other_way.attribute = 101;
    other_way.density = 2.3F;
    for (const KindRow& row : KINDS)
        EXPECT_FALSE(is_joint(row.kind, other_way));
}

}  // namespace
}  // namespace brelan::test
