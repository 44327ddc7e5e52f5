// What is found in meshes, in words.
#include <gtest/gtest.h>

#include "cli/words.h"
#include "commands/field_changes.h"
#include "drawing/soundness_text.h"
#include "support/mesh_sample.h"

namespace brelan::tool {
namespace {

using test::Sample;

Sample square() {
    return Sample()
        .nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}})
        .solid({1, 2, 3, 4});
}

std::string text_of(const std::vector<FieldChange>& changes) {
    std::string text;
    for (const FieldChange& change : changes)
        text += "[" + change.name + " " + change.from + " " + change.to + "]";
    return text;
}

// As a stream of the standard library parts a text, but that it says so when there is no memory for a line.
TEST(LinesOf, AreThoseBetweenTheEnds) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(lines_of(""), Lines{});
    EXPECT_EQ(lines_of("one"), Lines{"one"});
    EXPECT_EQ(lines_of("one\n\ntwo\r\n"), (Lines{"one", "", "two\r"}));
    EXPECT_EQ(lines_of("\n"), Lines{""});
}

TEST(FieldChanges, NameTheFieldAndBothValues) {
    const MeshLists a = square().mesh();
    MeshLists b = square().mesh();
    b.nodes[1].codes[1] = 1;
    b.elements[0].words.material = MaterialNumber(3);
    b.elements[0].thickness = 0.1F;
    EXPECT_EQ(text_of(node_changes(a, b, {1, 1})), "[IDY 0 1]");
    EXPECT_EQ(text_of(element_changes(a, b, {0, 0}, true)), "[material 1 3][THIC 1 0.1]");
}

TEST(FieldChanges, TellNodesOnlyWhereTheirNumbersCount) {
    const MeshLists a = square().mesh();
    MeshLists b = square().mesh();
    b.elements[0].words.corner_4 = NodeNumber(8);
    EXPECT_EQ(text_of(element_changes(a, b, {0, 0}, true)), "[nodes 1 2 3 4 1 2 3 8]");
    EXPECT_EQ(text_of(element_changes(a, b, {0, 0}, false)), "");
}

TEST(FieldChanges, MidsideNodesStandInBrackets) {
    Sample whole = square();
    whole.last().words.midside_5 = NodeNumber(5);
    whole.last().words.midside_6 = NodeNumber(6);
    whole.last().words.midside_7 = NodeNumber(7);
    whole.last().words.midside_8 = NodeNumber(8);
    MeshLists without = whole.mesh();
    without.elements[0].words.midside_6 = NodeNumber(0);
    EXPECT_EQ(text_of({midside_change(whole.mesh(), without, {0, 0})}),
              "[midside nodes (5 6 7 8) (5 0 7 8)]");
}

TEST(SoundnessLine, TellsSoundOrTheFirstPlaceOfEachFault) {
    const auto line = [](const Sample& sample) {
        const MeshLists mesh = sample.mesh();
        return soundness_line(check_soundness(mesh, corners_of(mesh)));
    };
    EXPECT_EQ(line(Sample().nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).solid({1, 2, 3, 4})), "sound");
    //  4-------5---7
    //  |       | 3 |
    //  |   1   6---8    node 6 is none of element 1
    //  |       | 2 |
    //  1-------2---3
    EXPECT_EQ(line(Sample()
                       .nodes({{0, 0}, {2, 0}, {3, 0}, {0, 2}, {2, 2}, {2, 1}, {3, 2}, {3, 1}})
                       .solid({1, 2, 5, 4})
                       .solid({2, 3, 8, 6})
                       .solid({6, 8, 7, 5})),
              "unsound: 1 hanging node (node 6 on a side of element 1 at (2, 1))");
}

}  // namespace
}  // namespace brelan::tool
