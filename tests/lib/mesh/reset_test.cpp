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
            state.mesh.node_in_use[NodeNumber(n)] = 1;
            state.mesh.codes[NodeNumber(n)] = {1, 2, 3, 4, 5};
            state.mesh.x[NodeNumber(n)] = state.mesh.y[NodeNumber(n)] = 6.5F;
            state.mesh.head[NodeNumber(n)] = state.mesh.coefficient[NodeNumber(n)] = 7.5F;
            state.mesh.type_in_use[ElementNumber(n)] = ELEMENT_BEAM;
            state.mesh.type[ElementNumber(n)] = ELEMENT_CONTINUUM;
            state.mesh.words[ElementNumber(n)] = words_of({11, 12, 13, 14}, 19, {15, 16, 17, 18});
            state.mesh.skeleton[ElementNumber(n)] = state.mesh.fluid[ElementNumber(n)] =
                state.mesh.integration_r[ElementNumber(n)] = state.mesh.integration_s[ElementNumber(n)] =
                    state.mesh.attribute[ElementNumber(n)] = 20;
            state.mesh.real_attribute[ElementNumber(n)] = state.mesh.thickness[ElementNumber(n)] =
                state.mesh.density[ElementNumber(n)] = 21.5F;
        }
        reset_mesh(state.mesh);
    }
};

TEST_F(DeckReset, LeavesNoNodeAndNoElementInUse) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(n)], 0) << n;
        EXPECT_EQ(state.mesh.type_in_use[ElementNumber(n)], -1) << n;
        EXPECT_EQ(state.mesh.type[ElementNumber(n)], 0) << n;
    }
}

TEST_F(DeckReset, EmptiesCodesAndCoordinates) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.codes[NodeNumber(n)], (NodeCodes{0, 0, 0, 0, 0})) << n;
        EXPECT_EQ(state.mesh.x[NodeNumber(n)], 0.0F) << n;
        EXPECT_EQ(state.mesh.y[NodeNumber(n)], 0.0F) << n;
    }
}

TEST_F(DeckReset, LeavesWordsAndAttributesOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.words[ElementNumber(n)].corner_1.value, 11) << n;
        EXPECT_EQ(state.mesh.words[ElementNumber(n)].midside_8.value, 18) << n;
        EXPECT_EQ(state.mesh.words[ElementNumber(n)].material.value, 19) << n;
        EXPECT_EQ(state.mesh.skeleton[ElementNumber(n)], 20) << n;
        EXPECT_EQ(state.mesh.fluid[ElementNumber(n)], 20) << n;
        EXPECT_EQ(state.mesh.integration_r[ElementNumber(n)], 20) << n;
        EXPECT_EQ(state.mesh.integration_s[ElementNumber(n)], 20) << n;
        EXPECT_EQ(state.mesh.attribute[ElementNumber(n)], 20) << n;
        EXPECT_EQ(state.mesh.real_attribute[ElementNumber(n)], 21.5F) << n;
        EXPECT_EQ(state.mesh.thickness[ElementNumber(n)], 21.5F) << n;
        EXPECT_EQ(state.mesh.density[ElementNumber(n)], 21.5F) << n;
    }
}

TEST_F(DeckReset, LeavesHeadAndTemperatureOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(state.mesh.head[NodeNumber(n)], 7.5F) << n;
        EXPECT_EQ(state.mesh.coefficient[NodeNumber(n)], 7.5F) << n;
    }
}

}  // namespace
}  // namespace brelan::test
