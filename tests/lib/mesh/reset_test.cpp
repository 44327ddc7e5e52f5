// What a new deck finds in the tables after the deck before it.
#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr std::int32_t PLACES[] = {1, 2, 50000, 99989, 99990};

// Each table with a value that no deck begins with.
class DeckReset : public ::testing::Test {
protected:
    void SetUp() override {
        for (const std::int32_t n : PLACES) {
            state.mesh.node_in_use[n] = 1;
            state.mesh.codes[n] = {1, 2, 3, 4, 5};
            state.mesh.x[n] = state.mesh.y[n] = 6.5F;
            state.mesh.head[n] = state.mesh.coefficient[n] = 7.5F;
            state.mesh.type_in_use[n] = ELEMENT_BEAM;
            state.mesh.type[n] = ELEMENT_CONTINUUM;
            state.mesh.words[n] = {11, 12, 13, 14, 15, 16, 17, 18, 19};
            state.mesh.skeleton[n] = state.mesh.fluid[n] = state.mesh.integration_r[n] =
                state.mesh.integration_s[n] = state.mesh.attribute[n] = 20;
            state.mesh.real_attribute[n] = state.mesh.thickness[n] = state.mesh.density[n] = 21.5F;
        }
        reset_mesh(state.mesh);
    }
};

TEST_F(DeckReset, LeavesNoNodeAndNoElementInUse) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.node_in_use[n], 0) << n;
        EXPECT_EQ(state.mesh.type_in_use[n], -1) << n;
        EXPECT_EQ(state.mesh.type[n], 0) << n;
    }
}

TEST_F(DeckReset, EmptiesCodesAndCoordinates) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.codes[n], (NodeCodes{0, 0, 0, 0, 0})) << n;
        EXPECT_EQ(state.mesh.x[n], 0.0F) << n;
        EXPECT_EQ(state.mesh.y[n], 0.0F) << n;
    }
}

TEST_F(DeckReset, LeavesWordsAndAttributesOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.words[n].corner_1, 11) << n;
        EXPECT_EQ(state.mesh.words[n].midside_8, 18) << n;
        EXPECT_EQ(state.mesh.words[n].material, 19) << n;
        EXPECT_EQ(state.mesh.skeleton[n], 20) << n;
        EXPECT_EQ(state.mesh.fluid[n], 20) << n;
        EXPECT_EQ(state.mesh.integration_r[n], 20) << n;
        EXPECT_EQ(state.mesh.integration_s[n], 20) << n;
        EXPECT_EQ(state.mesh.attribute[n], 20) << n;
        EXPECT_EQ(state.mesh.real_attribute[n], 21.5F) << n;
        EXPECT_EQ(state.mesh.thickness[n], 21.5F) << n;
        EXPECT_EQ(state.mesh.density[n], 21.5F) << n;
    }
}

TEST_F(DeckReset, LeavesHeadAndTemperatureOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.head[n], 7.5F) << n;
        EXPECT_EQ(state.mesh.coefficient[n], 7.5F) << n;
    }
}

}  // namespace
}  // namespace brelan::test
