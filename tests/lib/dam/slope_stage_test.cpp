// The water level on the nodes of a slope: codes, spacing, and the node that is put between two others.

#include <gtest/gtest.h>

#include <vector>

#include "dam/phreatic_line.h"
#include "dam/slope_models.h"
#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// A template's slope, evenly divided, in the mesh tables, and one node more that is not on it.
class SlopeStage : public ::testing::Test {
protected:
    explicit SlopeStage(std::int32_t MODEL = 3) { lay(MODEL); }
    ~SlopeStage() override { state.set_edition(1); }

    static void lay(std::int32_t MODEL) {
        reset_mesh(state.mesh);
        state.deck.edit.slope_code = MODEL;
        state.deck.edit.initial_head = 7.5F;
        state.source = EditSource{};
        split.reset();
        const SlopeModel& m = slope_model(MODEL);
        for (std::int32_t i = 0; i <= m.divisions; ++i) {
            const NodeNumber node = m.node(i + 1);
            const auto share = static_cast<float>(i) / static_cast<float>(m.divisions);
            state.mesh.x[node] = share * m.width;
            state.mesh.y[node] = share * m.height;
            state.mesh.codes[node] = {8, 9, 1, 1, 1};
        }
        state.source.counts.nodes = 500;
        state.source.nodes = {NodeNumber(1), NodeNumber(500)};
        for (std::int32_t n = 1; n <= 500; ++n)
            state.mesh.node_in_use[NodeNumber(n)] = 1;
        state.mesh.codes[NodeNumber(INSIDE)] = {8, 9, 1, 1, 1};
        state.mesh.x[NodeNumber(INSIDE)] = m.width;
        state.mesh.y[NodeNumber(INSIDE)] = 0.0F;
    }

    static void level(float water_share) {
        state.deck.edit.water_share = water_share;
        split = apply_water_level(state.trace, state.deck.edit, state.source, state.mesh);
    }

    // Slope point i, from 0 at the toe.
    static NodeNumber node(std::int32_t i) { return slope_model(state.deck.edit.slope_code).node(i + 1); }
    static std::int32_t divisions() { return slope_model(state.deck.edit.slope_code).divisions; }

    static void set_height(std::int32_t i, float y) { state.mesh.y[node(i)] = y; }

    static void expect_codes(std::int32_t i, std::int32_t code1, std::int32_t code2) {
        EXPECT_EQ(state.mesh.codes[node(i)][0], code1) << "slope point " << i;
        EXPECT_EQ(state.mesh.codes[node(i)][1], code2) << "slope point " << i;
    }
    static void expect_at(std::int32_t i, double share) {
        const SlopeModel& m = slope_model(state.deck.edit.slope_code);
        EXPECT_NEAR(static_cast<double>(state.mesh.x[node(i)]), share * static_cast<double>(m.width), 1.0E-4)
            << i;
        EXPECT_NEAR(static_cast<double>(state.mesh.y[node(i)]), share * static_cast<double>(m.height), 1.0E-4)
            << i;
    }
    // Evenly divided, as laid.
    static void expect_untouched() {
        for (std::int32_t i = 0; i <= divisions(); ++i)
            expect_at(i, static_cast<double>(i) / divisions());
        EXPECT_FALSE(split);
        EXPECT_EQ(state.source.counts.nodes, 500);
    }

    static inline std::optional<SlopeSplit> split;
    static constexpr std::int32_t INSIDE = 400;  // on no model's slope
};

TEST_F(SlopeStage, WithoutALevelGivesTheSlopeTheCodes3And0) {
    for (const float water_share : {0.0F, 1.0F, -0.25F, 1.5F}) {
        lay(3);
        level(water_share);
        expect_untouched();
        for (std::int32_t i = 0; i <= 29; ++i)
            expect_codes(i, 3, 0);
        EXPECT_EQ(state.mesh.codes[NodeNumber(INSIDE)], (NodeCodes{8, 9, 1, 1, 1}));
    }
}

TEST_F(SlopeStage, CodesTheSlopeByTheLevel) {
    lay(3);
    level(0.5F);  // 14.5 divisions
    for (std::int32_t i = 0; i <= 29; ++i)
        expect_codes(i, i <= 14 ? 1 : 0, i <= 14 ? 1 : 0);
    EXPECT_EQ(state.mesh.codes[node(3)], (NodeCodes{1, 1, 1, 1, 1}));
    EXPECT_EQ(state.mesh.codes[NodeNumber(INSIDE)], (NodeCodes{8, 9, 1, 1, 1}));
}

TEST_F(SlopeStage, NodeAtTheHeightOfTheLevelIsUnderWater) {
    lay(3);
    set_height(14, 6.5F);
    level(0.5F);
    expect_codes(14, 1, 1);
}

// --- a level near a node -------------------------------------------------------------------------

TEST_F(SlopeStage, LevelCloseAboveANodeTakesItUp) {
    lay(4);
    level(10.125F / 35.0F);
    EXPECT_FALSE(split);
    const double water_share = 10.125 / 35.0;
    expect_at(0, 0.0);
    expect_at(4, 0.4 * water_share);
    expect_at(10, water_share);
    expect_at(11, water_share + (1.0 - water_share) / 25.0);
    expect_at(35, 1.0);
    expect_codes(10, 1, 1);
    expect_codes(11, 0, 0);
}

// The codes go by the heights before the slope is spaced anew.
TEST_F(SlopeStage, LevelCloseBelowANodeTakesItDownAndLeavesItDry) {
    lay(4);
    level(10.875F / 35.0F);
    EXPECT_FALSE(split);
    const double water_share = 10.875 / 35.0;
    expect_at(10, 10.0 / 11.0 * water_share);
    expect_at(11, water_share);
    expect_at(12, water_share + (1.0 - water_share) / 24.0);
    expect_codes(10, 1, 1);
    expect_codes(11, 0, 0);
}

TEST_F(SlopeStage, LevelJustOverTheToeLeavesTheToeAndSpacesAllAboveIt) {
    lay(5);
    level(0.125F / 41.0F);
    const double water_share = 0.125 / 41.0;
    expect_at(0, 0.0);
    for (const std::int32_t i : {1, 20, 40, 41})
        expect_at(i, water_share + i * (1.0 - water_share) / 41.0);
    expect_codes(0, 1, 1);
    expect_codes(1, 0, 0);
}

TEST_F(SlopeStage, LevelJustUnderTheCrestLeavesTheCrest) {
    lay(3);
    level(28.875F / 29.0F);
    const double water_share = 28.875 / 29.0;
    expect_at(14, 0.5 * water_share);
    expect_at(28, water_share);
    expect_at(29, 1.0);
    expect_codes(28, 1, 1);
    expect_codes(29, 0, 0);
}

// --- a level between two nodes -------------------------------------------------------------------

TEST_F(SlopeStage, LevelWellBetweenTwoNodesGetsANodeOfItsOwn) {
    for (const int edition : {2, 5, 9, 1}) {
        state.set_edition(edition);
        lay(3);
        state.mesh.head[NodeNumber(501)] = state.mesh.coefficient[NodeNumber(501)] = -1.0F;
        level(10.5F / 29.0F);
        for (std::int32_t i = 0; i <= 29; ++i)
            expect_at(i, i / 29.0);
        ASSERT_TRUE(split);
        EXPECT_EQ(split->node.value, 501);
        EXPECT_EQ(split->element.value, 12);
        EXPECT_EQ(state.source.counts.nodes, 501);
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(501)], 1);
        EXPECT_EQ(state.mesh.codes[NodeNumber(501)], (NodeCodes{1, 1, 1, 1, 1}));
        EXPECT_NEAR(static_cast<double>(state.mesh.x[NodeNumber(501)]), 26.0 * 10.5 / 29.0, 1.0E-5);
        EXPECT_NEAR(static_cast<double>(state.mesh.y[NodeNumber(501)]), 13.0 * 10.5 / 29.0, 1.0E-5);
        const bool scalar = edition == 5 || edition == 9;
        EXPECT_EQ(state.mesh.head[NodeNumber(501)], scalar ? 7.5F : -1.0F);
        EXPECT_EQ(state.mesh.coefficient[NodeNumber(501)], scalar ? 1.0F : -1.0F);
    }
}

// Heights that make the fraction of the division exact: the level is 6.5, in division 14.
TEST_F(SlopeStage, LevelAtAQuarterOrThreeQuartersIsBetweenTwoNodes) {
    struct Row {
        float lower, upper;
        bool split;
    };
    constexpr Row rows[] = {
        {6.25F, 7.25F, true},     // exactly 0.25
        {5.75F, 6.75F, true},     // exactly 0.75
        {6.375F, 7.375F, false},  // 0.125
        {5.625F, 6.625F, false},  // 0.875
    };
    for (const Row& row : rows) {
        lay(3);
        set_height(14, row.lower);
        set_height(15, row.upper);
        level(0.5F);
        EXPECT_EQ(split.has_value(), row.split) << row.lower;
    }
}

// The element at the slope, by the division that the level lies in.
TEST_F(SlopeStage, NotesTheElementAtTheSlope) {
    struct Row {
        std::int32_t slope_code, division, element;
    };
    constexpr Row rows[] = {{1, 0, 1},    {1, 19, 20},  {1, 20, 194}, {1, 39, 175}, {2, 0, 1}, {2, 19, 20},
                            {2, 20, 170}, {2, 39, 151}, {3, 0, 2},    {3, 28, 30},  {4, 0, 2}, {4, 34, 36},
                            {5, 0, 2},    {5, 40, 42},  {7, 5, 6},    {0, 25, 189}};
    for (const Row& row : rows) {
        lay(row.slope_code);
        level((static_cast<float>(row.division) + 0.5F) / static_cast<float>(divisions()));
        ASSERT_TRUE(split);
        EXPECT_EQ(split->element.value, row.element)
            << "MODEL " << row.slope_code << ", division " << row.division;
    }
}

// --- nodes of the models -------------------------------------------------------------------------

TEST_F(SlopeStage, RunsThroughTheNodesOfEachModel) {
    struct Row {
        std::int32_t slope_code;
        std::vector<std::int32_t> nodes;  // of slope points 1, 21, 22 and the crest
    };
    const Row rows[] = {{1, {1, 21, 220, 201}}, {2, {1, 21, 195, 176}}, {3, {1, 21, 22, 30}},
                        {4, {1, 21, 22, 36}},   {5, {1, 21, 22, 42}},   {9, {1, 21, 220, 201}}};
    for (const Row& row : rows) {
        lay(row.slope_code);
        for (std::int32_t n = 1; n <= 500; ++n)
            state.mesh.codes[NodeNumber(n)] = {8, 9, 1, 1, 1};
        level(0.0F);
        EXPECT_EQ(node(0).value, row.nodes[0]);
        EXPECT_EQ(node(20).value, row.nodes[1]);
        EXPECT_EQ(node(21).value, row.nodes[2]);
        EXPECT_EQ(node(divisions()).value, row.nodes[3]);
        std::int32_t coded = 0;
        for (std::int32_t n = 1; n <= 500; ++n)
            coded += state.mesh.codes[NodeNumber(n)][0] == 3 ? 1 : 0;
        EXPECT_EQ(coded, divisions() + 1) << "MODEL " << row.slope_code;
    }
}

TEST_F(SlopeStage, RefusesATemplateThatHasNoPlaceForTheNode) {
    lay(3);
    state.mesh.node_in_use[NodeNumber(501)] = 1;
    const std::string message = failure_of([] { level(10.5F / 29.0F); });
    EXPECT_NE(message.find("L_2.0.Mes"), std::string::npos) << message;
    EXPECT_NE(message.find("501"), std::string::npos) << message;
}

// --- the map -------------------------------------------------------------------------------------

TEST_F(SlopeStage, NodesAreCarriedOntoTheTriangleOfTheCard) {
    lay(5);
    state.deck.edit.crest_x = 60.0F, state.deck.edit.crest_y = 20.0F, state.deck.edit.toe_x = 120.0F,
    state.deck.edit.toe_y = 5.0F, state.deck.edit.foot_x = 60.0F, state.deck.edit.foot_y = 5.0F;
    state.mesh.x[NodeNumber(2)] = 39.0F, state.mesh.y[NodeNumber(2)] = 13.0F;  // crest
    state.mesh.x[NodeNumber(3)] = 0.0F, state.mesh.y[NodeNumber(3)] = 0.0F;    // toe
    state.mesh.x[NodeNumber(4)] = 39.0F, state.mesh.y[NodeNumber(4)] = 0.0F;   // foot
    state.mesh.x[NodeNumber(5)] = 19.5F, state.mesh.y[NodeNumber(5)] = 3.25F;  // shares 0.25, 0.5 and 0.25
    state.mesh.x[NodeNumber(6)] = -39.0F, state.mesh.y[NodeNumber(6)] = 0.0F;  // outside: shares 0, 2 and -1
    state.mesh.x[NodeNumber(501)] = 39.0F, state.mesh.y[NodeNumber(501)] = 0.0F;  // no node of the mesh
    map_template_nodes(state.trace, state.deck.edit, state.source, state.mesh);
    const double expected[][3] = {{2, 60, 20},   {3, 120, 5}, {4, 60, 5},
                                  {5, 90, 8.75}, {6, 180, 5}, {501, 39, 0}};
    for (const auto& row : expected) {
        const auto n = static_cast<std::int32_t>(row[0]);
        EXPECT_NEAR(static_cast<double>(state.mesh.x[NodeNumber(n)]), row[1], 1.0E-4) << n;
        EXPECT_NEAR(static_cast<double>(state.mesh.y[NodeNumber(n)]), row[2], 1.0E-4) << n;
    }
}

TEST_F(SlopeStage, RefusesCornersThatLeadBeyondTheNumbers) {
    lay(3);
    state.deck.edit.crest_x = 3.0E38F, state.deck.edit.crest_y = 3.0E38F, state.deck.edit.toe_x = -3.0E38F,
    state.deck.edit.toe_y = 0.0F, state.deck.edit.foot_x = 3.0E38F, state.deck.edit.foot_y = 0.0F;
    state.deck.edit.triangle_place = {"deck.dat", 9};
    state.mesh.x[NodeNumber(7)] = 260.0F;
    const std::string message =
        failure_of([] { map_template_nodes(state.trace, state.deck.edit, state.source, state.mesh); });
    EXPECT_NE(message.find("deck.dat, line 9: Card 3.3.6.3"), std::string::npos) << message;
}

TEST_F(SlopeStage, RefusesATemplateWithAllItsNodesAtOnePoint) {
    lay(3);
    require_template(state.deck.edit, state.source, state.mesh);
    state.mesh.x.fill(0.0F);
    state.mesh.y.fill(0.0F);
    const std::string message =
        failure_of([] { require_template(state.deck.edit, state.source, state.mesh); });
    EXPECT_NE(message.find("L_2.0.Mes"), std::string::npos) << message;
    state.source.counts.nodes = 1;
    require_template(state.deck.edit, state.source, state.mesh);
}

}  // namespace
}  // namespace brelan::test
