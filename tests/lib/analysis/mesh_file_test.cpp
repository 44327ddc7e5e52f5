#include "analysis/mesh_file.h"

#include <gtest/gtest.h>

#include "analysis/difference.h"
#include "support/mesh_sample.h"
#include "text/channel_numbers.h"
#include "text/run_end.h"

namespace brelan::test {
namespace {

// Two squares and a joint between them, a beam on its side and a truss across.
MeshLists squares(LayoutKind kind) {
    return Sample(kind)
        .nodes({{0, 0}, {1, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 0}, {1, 1}, {2, 1.5}})
        .solid({1, 2, 5, 4})
        .solid({3, 6, 8, 7}, 2)
        .joint({2, 5, 7, 3})
        .beam(2, 5)
        .truss(1, 8, 4)
        .mesh();
}

std::string text_of(const MeshLists& mesh) {
    Channels channels;
    Channel& file = channels.open_in_memory(CHANNEL_RESULT, "mesh.Mes");
    write_mesh(file, mesh, "mesh.Mes");
    return std::string(file.text());
}

TEST(MeshFile, TextBecomesTheSameMeshAndTellsItsKind) {
    for (const LayoutKind kind : ALL_KINDS) {
        const MeshLists mesh = squares(kind);
        const std::string text = text_of(mesh);
        EXPECT_EQ(kind_of_mesh_text(text, "squares.Mes"), kind);
        const std::optional<MeshLists> read = mesh_of_text(text, "squares.Mes");
        ASSERT_TRUE(read) << name_of(kind);
        EXPECT_EQ(read->name, "mesh.Mes");
        EXPECT_EQ(read->count(ElementClass::joint), 1U) << name_of(kind);
        EXPECT_TRUE(difference_by_number(mesh, *read, 0.0).none()) << name_of(kind);
    }
}

TEST(MeshFile, CommentsAndDeletedElementsAreLeftOut) {
    std::string text = text_of(squares(LayoutKind::displacement));
    const std::string record = "\n      2";
    const std::size_t element = text.find(record, text.find("NEL"));
    ASSERT_NE(element, std::string::npos);
    text.replace(element, record.size(), "\n* a remark\n     -2");
    const std::optional<MeshLists> read = mesh_of_text(text, "squares.Mes");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->deleted, 1);
    EXPECT_EQ(read->element_place(2), MeshLists::NONE);
    EXPECT_EQ(read->elements.size(), 4U);
}

TEST(MeshFile, KindMustBeGivenWhereNothingTellsIt) {
    std::string text = text_of(Sample(LayoutKind::head).nodes({{0, 0}}).mesh());
    const std::size_t heading = text.find("IDF");
    ASSERT_NE(heading, std::string::npos);
    text.replace(heading, 3, "---");
    EXPECT_FALSE(kind_of_mesh_text(text, "point.Mes"));
    EXPECT_FALSE(mesh_of_text(text, "point.Mes"));
    EXPECT_EQ(mesh_of_text(text, "point.Mes", LayoutKind::head)->nodes.size(), 1U);
}

TEST(MeshFile, ValueThatItsFieldCannotHoldEndsAsAFailure) {
    MeshLists mesh = squares(LayoutKind::displacement);
    mesh.elements[0].words.material = MaterialNumber(100000);
    try {
        text_of(mesh);
        GTEST_FAIL() << "written";
    } catch (const RunEnd& end) {
        EXPECT_EQ(end.status, STATUS_FAILED);
        EXPECT_NE(end.text.find("material of element 1: 100000 does not fit into its field"),
                  std::string::npos)
            << end.text;
    }
}

TEST(ValueName, IsThatOfTheOneValueOfANode) {
    EXPECT_EQ(value_name(LayoutKind::head), "H");
    EXPECT_EQ(value_name(LayoutKind::temperature), "T");
    EXPECT_EQ(value_name(LayoutKind::displacement), "");
    EXPECT_EQ(value_name(LayoutKind::coupled), "");
}

}  // namespace
}  // namespace brelan::test
