// Sides of zones beside the crest, which are left uncut where nodes of the crest would not give way to them.
#include "dam/dam_outlines.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dam/dam_cuts.h"
#include "dam/dam_sizes.h"

namespace brelan::test {
namespace {

DamCards small_dam() {
    DamCards dam;
    dam.height = 10.0F;
    dam.water_height = 6.0F;
    dam.left_run = dam.right_run = 20.0F;
    dam.crest = 8.0F;
    dam.left_width = dam.right_width = 20.0F;
    dam.middle_width = 8.0F;
    return dam;
}

DamGroup group_called(const DamCards& dam, const std::string& title) {
    const std::vector<DamGroup> groups =
        dam_groups(LayoutKind::displacement, dam, size_dam(dam), CutMethod::by_rules);
    const auto found = std::find_if(groups.begin(), groups.end(),
                                    [&](const DamGroup& group) { return group.title == title; });
    return found == groups.end() ? DamGroup{} : *found;
}

// Where a side ends on the height itself, no second point is put there.
TEST(DamCore, SidesAboveTheHeightOfItsOwnPointAreLeftUncut) {
    DamCards dam = small_dam();
    dam.core = true;
    const float clear = clear_of_crest(dam, size_dam(dam));
    const float above = clear + 0.9F * (dam.height - clear);
    dam.core_points = {{22.0F, 0.0F}, {26.0F, 0.0F}, {26.0F, clear}, {22.0F, above}};
    const DamGroup core = group_called(dam, " Dam Core");
    ASSERT_EQ(core.points.size(), 5U);  // one more where the left side passes the height
    EXPECT_EQ(core.points[2], (Point{26.0F, clear}));
    EXPECT_EQ(core.points[3], (Point{22.0F, above}));
    EXPECT_EQ(core.points[4], (Point{22.0F, clear}));
    EXPECT_EQ(core.end_rules[2], NOT_CUT);
    EXPECT_EQ(core.end_rules[3], NOT_CUT);
    EXPECT_NE(core.end_rules[1], NOT_CUT);
    EXPECT_NE(core.end_rules[4], NOT_CUT);
}

// The slope is as narrow as an element: nothing of the vertical under the crest's end is clear of it.
TEST(DamShell, VerticalOfASlopeOfOneElementsWidthIsLeftUncut) {
    DamCards dam = small_dam();
    dam.left_run = 0.5F;
    dam.crest = 27.5F;
    const DamGroup shell = group_called(dam, " Upstream Shell");
    ASSERT_EQ(shell.points.size(), 3U);
    EXPECT_EQ(shell.end_rules[1], NOT_CUT);
    EXPECT_EQ(group_called(dam, " Downstream Shell").points.size(), 3U);
}

TEST(DamMeshLines, AreTheLimitsOfTheFieldAndTheEdgesOfTheColumns) {
    DamCards dam = small_dam();
    dam.layer_count = 1;
    dam.layers = {6.0F};
    dam.left_margin = dam.right_margin = 10.0F;
    const DamSizes sizes = size_dam(dam);
    for (const float x : {-10.0F, 58.0F, 20.0F, 28.0F})
        EXPECT_TRUE(on_mesh_line(dam, sizes, {x, -1.0F}, {x, -2.0F})) << x;
    for (const float x : {-9.0F, 57.0F, 0.0F, 48.0F})
        EXPECT_FALSE(on_mesh_line(dam, sizes, {x, -1.0F}, {x, -2.0F})) << x;
    EXPECT_TRUE(on_mesh_line(dam, sizes, {1.0F, -6.0F}, {2.0F, -6.0F}));
    EXPECT_FALSE(on_mesh_line(dam, sizes, {1.0F, -5.0F}, {2.0F, -5.0F}));
}

// The crest from 20 to 28 has a node at each corner of these, but the last is nearest to the crest's end.
TEST(DamCore, CrowdsTheCrestWhereItTakesItsEnd) {
    const DamCards dam = small_dam();
    const DamSizes sizes = size_dam(dam);
    EXPECT_FALSE(crowds_crest(dam, sizes, {{22.0F, 0.0F}, {26.0F, 0.0F}, {26.0F, 10.0F}, {22.0F, 10.0F}}));
    EXPECT_TRUE(crowds_crest(dam, sizes, {{22.0F, 0.0F}, {26.0F, 0.0F}, {26.0F, 10.0F}, {20.2F, 10.0F}}));
}

}  // namespace
}  // namespace brelan::test
