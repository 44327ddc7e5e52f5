// What --json tells of every kind of finding: its count, whether it makes a mesh unsound, and of each place
// the numbers, the coordinates and the measure. Each kind is shown by a mesh of its own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "commands/info_text.h"
#include "lib/analysis/soundness_sample.h"

namespace brelan::tool {
namespace {

using test::four_squares;
using test::parted_squares;
using test::Sample;
using test::two_squares;

// A square of the side 2 whose lower side has node 5 for its middle.
Sample second_order(Number midside, Position at = {1, 0}) {
    Sample sample = Sample().nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}, at}).solid({1, 2, 3, 4});
    sample.last().words.midside_5 = NodeNumber(midside);
    return sample;
}

//  7-10 8----9    a joint of a width from 5 to 8; its toe has a twin, 11, which node 2 below has not
//  | 3 | | 4 |
//  4-11 5----6
//  | 1 \| 2  |
//  1----2----3
Sample open_toe() {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}})
        .nodes({{0.875, 2}, {0.875, 1}})
        .solid({1, 2, 11, 4})
        .solid({2, 3, 6, 5})
        .solid({4, 11, 10, 7})
        .solid({5, 6, 9, 8})
        .joint({5, 8, 10, 11});
}

//  7--10 8---9    joints above and below node 5, which is on both sides of both
//  | 3 | | 4 |
//  4----5----6
//  | 1 | | 2 |
//  1--11 2---3
Sample pinched_joints() {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}, {1, 2}, {1, 0}})
        .solid({1, 11, 5, 4})
        .solid({2, 3, 6, 5})
        .solid({4, 5, 10, 7})
        .solid({5, 6, 9, 8})
        .joint({2, 5, 5, 11})
        .joint({5, 8, 10, 5});
}

//  7---8 9---11    one joint from 2 to 8 past node 5, where the ground is whole
//  | 3 | | 4 |
//  4-----5---6
//  | 1 | | 2 |
//  1---2 10--3
Sample joint_past_a_node() {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {1, 2}, {1, 0}, {2, 2}})
        .solid({1, 2, 5, 4})
        .solid({10, 3, 6, 5})
        .solid({4, 5, 8, 7})
        .solid({5, 6, 11, 9})
        .joint({10, 9, 8, 2});
}

//  4---8--12    joints of a width on the right border, twice as wide at the top
//  | 3 |  |
//  3---7-11
//  | 2 |  |
//  2---6-10
//  | 1 |  |
//  1---5--9
Sample widening_joints() {
    return Sample()
        .nodes({{0, 0}, {0, 1}, {0, 2}, {0, 3}, {1, 0}, {1, 1}, {1, 2}, {0.875, 3}})
        .nodes({{1.125, 0}, {1.125, 1}, {1.125, 2}, {1.125, 3}})
        .solid({1, 5, 6, 2})
        .solid({2, 6, 7, 3})
        .solid({3, 7, 8, 4})
        .joint({9, 10, 6, 5})
        .joint({10, 11, 7, 6})
        .joint({11, 12, 8, 7});
}

// Squares whose nodes of these numbers are fixed upright.
MeshLists fixed_squares(const std::vector<Number>& fixed) {
    MeshLists mesh = four_squares().mesh();
    for (const Number n : fixed)
        mesh.nodes[static_cast<std::size_t>(n) - 1].codes[1] = 1;
    return mesh;
}

struct Shown {
    Check check;
    MeshLists mesh;
    std::string expected;
};

Shown shown(Check check, const Sample& sample, const std::string& expected) {
    return {check, sample.mesh(), expected};
}

Sample number_of_another() {
    Sample sample = two_squares().solid({1, 2, 5, 4}, 3);
    sample.last().number = ElementNumber(2);
    return sample;
}

std::vector<Shown> all_kinds() {
    const auto unsound = [](const std::string& places, int count = 1) {
        return R"({"count":)" + std::to_string(count) + R"(,"unsound":true,"places":[)" + places + "]}";
    };
    const auto remark = [](const std::string& places, int count = 1) {
        return R"({"count":)" + std::to_string(count) + R"(,"unsound":false,"places":[)" + places + "]}";
    };
    return {
        shown(Check::number_used_twice, number_of_another(), unsound(R"({"element":2,"x":0.5,"y":0.5})")),
        shown(Check::missing_node, two_squares().solid({1, 2, 77}),
              unsound(R"({"element":3,"node":77,"x":0.5,"y":0.0})")),
        shown(Check::missing_midside, second_order(77),
              unsound(R"({"element":1,"node":77,"x":1.0,"y":1.0})")),
        shown(Check::degenerate_element, two_squares().solid({1, 2, 3}),
              unsound(R"({"element":3,"x":1.0,"y":0.0})")),
        shown(Check::inverted_element, Sample().nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).solid({1, 4, 3, 2}),
              unsound(R"({"element":1,"x":0.5,"y":0.5})")),
        shown(Check::concave_element,
              Sample().nodes({{0, 0}, {2, 0}, {0.5, 0.5}, {0, 2}}).solid({1, 2, 3, 4}),
              unsound(R"({"element":1,"node":3,"x":0.5,"y":0.5})")),
        shown(Check::hanging_node,
              Sample()
                  .nodes({{0, 0}, {2, 0}, {3, 0}, {0, 2}, {2, 2}, {2, 1}, {3, 2}, {3, 1}})
                  .solid({1, 2, 5, 4})
                  .solid({2, 3, 8, 6})
                  .solid({6, 8, 7, 5}),
              unsound(R"({"element":1,"node":6,"x":2.0,"y":1.0})")),
        shown(Check::coincident_nodes, parted_squares(),
              unsound(R"({"node":2,"other_node":3,"x":1.0,"y":0.0},)"
                      R"({"node":5,"other_node":7,"x":1.0,"y":1.0})",
                      2)),
        shown(Check::duplicate_element, two_squares().solid({5, 4, 1, 2}),
              unsound(R"({"element":3,"other_element":1,"x":0.5,"y":0.5})")),
        shown(Check::crowded_side, two_squares().nodes({{1.5, 0.5}}).solid({2, 7, 5}),
              unsound(R"({"element":3,"node":2,"other_node":5,"x":1.0,"y":0.0})")),
        shown(Check::overlapping_solid,
              Sample()
                  .nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}})
                  .nodes({{0.5, 0.5}, {1.5, 0.5}, {1.5, 1.5}, {0.5, 1.5}})
                  .solid({1, 2, 3, 4})
                  .solid({5, 6, 7, 8}),
              unsound(R"({"element":2,"other_element":1,"x":1.0,"y":1.0,"area":0.25})")),
        shown(Check::pinned_part, two_squares().nodes({{3, 1}, {3, 2}, {2, 2}}).solid({6, 7, 8, 9}),
              unsound(R"({"element":3,"node":6,"x":2.0,"y":1.0})")),
        shown(Check::collapsed_joint, two_squares().joint({2, 5, 5, 2}),
              unsound(R"({"element":3,"x":1.0,"y":0.5})")),
        shown(Check::triangular_joint, pinched_joints(),
              unsound(R"({"element":5,"x":1.0,"y":0.5},{"element":6,"x":1.0,"y":1.5})", 2)),
        shown(Check::crossed_joint,
              Sample().nodes({{0, 0}, {0.5, 0}, {-0.125, 1}, {0.625, 1}}).joint({1, 2, 3, 4}),
              unsound(R"({"element":1,"x":0.25,"y":0.5})")),
        shown(Check::stacked_joint, parted_squares().joint({2, 5, 7, 3}).joint({2, 5, 7, 3}),
              unsound(R"({"element":4,"other_element":3,"x":1.0,"y":0.5})")),
        shown(Check::unjoined_joint, joint_past_a_node(),
              unsound(R"({"element":5,"node":5,"x":1.0,"y":1.0})")),
        // An eighth wide and 1 deep.
        shown(Check::open_wedge, open_toe(),
              unsound(R"({"element":1,"node":11,"other_node":5,"x":0.875,"y":1.0,"area":0.0625})")),
        shown(Check::stray_midside, second_order(5, {1, -0.75}),
              unsound(R"({"element":1,"node":5,"x":1.0,"y":-0.75})")),
        shown(Check::unshared_midside, second_order(3), unsound(R"({"element":1,"node":3,"x":2.0,"y":2.0})")),
        shown(Check::folded_line, two_squares().beam(4, 6).beam(6, 5),
              unsound(R"({"element":4,"other_element":3,"x":1.5,"y":1.0})")),
        shown(Check::separate_part,
              two_squares().nodes({{3, 0}, {4, 0}, {4, 1}, {3, 1}}).solid({7, 8, 9, 10}),
              remark(R"({"element":3,"x":3.5,"y":0.5})")),
        shown(Check::unjoined_line, two_squares().truss(4, 6),
              remark(R"({"element":3,"node":5,"x":1.0,"y":1.0})")),
        shown(Check::line_beside_side, two_squares().nodes({{0.25, 0}, {0.75, 0}}).beam(7, 8),
              remark(R"({"element":3,"other_element":1,"x":0.5,"y":0.0})")),
        shown(Check::loose_end, two_squares().nodes({{1, 2}}).truss(5, 7),
              remark(R"({"element":3,"node":7,"x":1.0,"y":2.0})")),
        shown(Check::crossing_lines, two_squares().truss(1, 5).truss(2, 4),
              remark(R"({"element":4,"other_element":3,"x":0.5,"y":0.5})")),
        shown(Check::uneven_joint, widening_joints(),
              remark(R"({"element":6,"x":1.03125,"y":2.5,"width":0.25})")),
        shown(Check::overlapped_joint, two_squares().nodes({{0.875, 0}, {0.875, 1}}).joint({2, 5, 8, 7}),
              remark(R"({"element":3,"other_element":1,"x":0.9375,"y":0.5,"area":0.125})")),
        shown(Check::stacked_double, two_squares().solid({1, 2, 5, 4}, 5).solid({1, 2, 5, 4}, 6),
              remark(R"({"element":4,"other_element":1,"x":0.5,"y":0.5})")),
        {Check::free_side_node, fixed_squares({1, 3}), remark(R"({"node":2,"x":1.0,"y":0.0})")},
        {Check::fixed_inside, fixed_squares({5}), remark(R"({"node":5,"x":1.0,"y":1.0})")},
        shown(Check::midside_beside_line, second_order(5).beam(1, 2),
              remark(R"({"element":1,"node":5,"other_element":2,"x":1.0,"y":0.0})")),
        shown(Check::unused_node, two_squares().nodes({{5, 4}}), remark(R"({"node":7,"x":5.0,"y":4.0})")),
        shown(Check::double_element, two_squares().solid({1, 2, 5, 4}, 5),
              remark(R"({"element":3,"other_element":1,"x":0.5,"y":0.5})")),
        shown(Check::free_line, two_squares().nodes({{3, 0}, {3, 1}}).solid({3, 7, 8, 6}).truss(4, 8),
              remark(R"({"element":4,"x":1.5,"y":1.0,"nodes":2})")),
    };
}

TEST(Findings, EachKindHasNumbersPlaceAndWeightInJson) {
    const std::vector<Shown> kinds = all_kinds();
    ASSERT_EQ(kinds.size(), CHECKS);
    const std::vector<Finding> rows = nothing_found();
    for (std::size_t k = 0; k < CHECKS; ++k) {
        ASSERT_EQ(kinds[k].check, rows[k].check) << rows[k].id;
        Json json = report_json(report_of(kinds[k].mesh, 0.0), 0);
        EXPECT_EQ(json["soundness"]["findings"][rows[k].id].compact(), kinds[k].expected) << rows[k].id;
        if (rows[k].unsound) {
            EXPECT_EQ(json["sound"].compact(), "false") << rows[k].id;
        }
    }
}

// Meshes that show a remark have nothing beside it that makes them unsound.
TEST(Findings, RemarksLeaveAMeshSound) {
    const std::vector<Finding> rows = nothing_found();
    for (const Shown& kind : all_kinds())
        if (const Finding& row = rows[static_cast<std::size_t>(kind.check)]; !row.unsound) {
            Json json = report_json(report_of(kind.mesh, 0.0), 0);
            EXPECT_EQ(json["sound"].compact(), "true") << row.id;
        }
}

}  // namespace
}  // namespace brelan::tool
