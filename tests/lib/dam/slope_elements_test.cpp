// The elements of a mapped template: their orientation, and the one that the water level divides.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "dam/phreatic_line.h"
#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// Model 3: nodes 1 to 30 are the slope, element 2 is at its first part.
class SlopeElements : public ::testing::Test {
protected:
    SlopeElements() {
        reset_mesh(state.mesh);
        state.mesh.words.fill(ElementWords{});
        state.deck.edit.slope_code = 3;
        state.deck.edit.first_element = ElementNumber(1);
        state.deck.edit.start_place = {"deck.dat", 7};
        state.source = EditSource{};
        state.source.elements[0] = {ElementNumber(1), ElementNumber(9)};
    }
    ~SlopeElements() override { state.set_edition(1); }

    static void element(std::int32_t number, std::int32_t i1, std::int32_t i2, std::int32_t i3,
                        std::int32_t i4) {
        state.mesh.words[ElementNumber(number)] = words_of({i1, i2, i3, i4}, 5);
        state.mesh.type_in_use[ElementNumber(number)] = ELEMENT_CONTINUUM;
        if (state.source.first_continuum.is_none())
            state.source.first_continuum = ElementNumber(number);
    }
    static std::string corners(std::int32_t number) {
        const ElementWords& w = state.mesh.words[ElementNumber(number)];
        std::string text;
        for (const std::int32_t corner :
             {w.corner_1.value, w.corner_2.value, w.corner_3.value, w.corner_4.value})
            text.append(text.empty() ? "" : " ").append(std::to_string(corner));
        return text;
    }
    static void square_of_nodes() {
        constexpr std::array<float, 4> x = {0.0F, 1.0F, 1.0F, 0.0F}, y = {0.0F, 0.0F, 1.0F, 1.0F};
        for (std::int32_t n = 101; n <= 104; ++n) {
            state.mesh.x[NodeNumber(n)] = x[static_cast<std::size_t>(n - 101)];
            state.mesh.y[NodeNumber(n)] = y[static_cast<std::size_t>(n - 101)];
        }
    }
    static void split_element_2() {
        split_slope_element(state.deck.edit, state.source, state.mesh, {ElementNumber(2), NodeNumber(200)});
    }
};

// --- orientation ---------------------------------------------------------------------------------

TEST_F(SlopeElements, StayWhenTheFirstRunsCounterClockwise) {
    square_of_nodes();
    element(4, 101, 102, 103, 104);
    element(5, 101, 103, 102, 0);
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(4), "101 102 103 104");
    EXPECT_EQ(corners(5), "101 103 102 0");
}

TEST_F(SlopeElements, AllTurnWhenTheFirstRunsClockwise) {
    square_of_nodes();
    element(4, 101, 104, 103, 102);
    element(5, 101, 102, 103, 0);
    state.mesh.words[ElementNumber(6)] = words_of({101, 102, 102, 101});
    state.mesh.type_in_use[ElementNumber(6)] = ELEMENT_BEAM;
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(4), "101 102 103 104");
    EXPECT_EQ(corners(5), "101 103 102 0");
    EXPECT_EQ(corners(6), "101 102 102 101");
}

TEST_F(SlopeElements, TurnWhenTheFirstHasNoArea) {
    square_of_nodes();
    element(4, 101, 102, 102, 101);
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(4), "101 101 102 102");
}

// The halves of a concave quadrilateral have the areas -0.25 and 0.5.
TEST_F(SlopeElements, AreTurnedByBothHalvesOfTheFirst) {
    square_of_nodes();
    state.mesh.x[NodeNumber(102)] = 0.25F;
    state.mesh.y[NodeNumber(102)] = 0.75F;
    element(4, 101, 102, 103, 104);  // (101, 102, 103) runs clockwise, the whole does not
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(4), "101 102 103 104");
}

// An area that 32 bits would lose: 1E-3 at a distance of 1E4.
TEST_F(SlopeElements, AreTurnedByAnAreaOf64Bits) {
    state.mesh.x[NodeNumber(101)] = 9000.0F, state.mesh.y[NodeNumber(101)] = 9000.0F;
    state.mesh.x[NodeNumber(102)] = 9000.0F, state.mesh.y[NodeNumber(102)] = 9000.001F;
    state.mesh.x[NodeNumber(103)] = 9000.001F, state.mesh.y[NodeNumber(103)] = 9000.0F;
    element(4, 101, 102, 103, 0);
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(4), "101 103 102 0");
}

TEST_F(SlopeElements, StayInAMeshWithoutContinuumElements) {
    state.mesh.words[ElementNumber(6)] = words_of({101, 102, 102, 101});
    state.mesh.type_in_use[ElementNumber(6)] = ELEMENT_TRUSS;
    orient_elements(state.source, state.mesh);
    EXPECT_EQ(corners(6), "101 102 102 101");
}

// --- the element at the water level --------------------------------------------------------------

TEST_F(SlopeElements, QuadrilateralBecomesATriangleAndAQuadrilateral) {
    for (const std::array<std::int32_t, 4>& c :
         {std::array<std::int32_t, 4>{1, 2, 51, 50}, {50, 1, 2, 51}, {51, 50, 1, 2}, {2, 51, 50, 1}}) {
        SetUp();
        state.mesh.type_in_use.fill(ELEMENT_UNUSED);
        element(2, c[0], c[1], c[2], c[3]);
        element(9, 51, 52, 53, 0);
        split_element_2();
        EXPECT_EQ(corners(2), "1 200 50 0");
        EXPECT_EQ(corners(10), "200 2 51 50");
        EXPECT_EQ(state.mesh.type_in_use[ElementNumber(10)], ELEMENT_CONTINUUM);
    }
}

TEST_F(SlopeElements, TriangleBecomesTwo) {
    for (const std::array<std::int32_t, 3>& c :
         {std::array<std::int32_t, 3>{2, 1, 50}, {50, 2, 1}, {1, 50, 2}}) {
        state.mesh.type_in_use.fill(ELEMENT_UNUSED);
        element(2, c[0], c[1], c[2], 0);
        split_element_2();
        EXPECT_EQ(corners(2), "2 200 50 0");
        EXPECT_EQ(corners(3), "200 1 50 0");
    }
}

TEST_F(SlopeElements, SecondPartHasTheAttributesOfTheFirst) {
    state.set_edition(2);
    element(2, 1, 2, 51, 50);
    state.mesh.skeleton[ElementNumber(2)] = 3, state.mesh.fluid[ElementNumber(2)] = 4,
    state.mesh.integration_r[ElementNumber(2)] = 5, state.mesh.integration_s[ElementNumber(2)] = 6,
    state.mesh.real_attribute[ElementNumber(2)] = 7.0F;
    split_element_2();
    EXPECT_EQ(state.mesh.skeleton[ElementNumber(3)], 3);
    EXPECT_EQ(state.mesh.fluid[ElementNumber(3)], 4);
    EXPECT_EQ(state.mesh.integration_r[ElementNumber(3)], 5);
    EXPECT_EQ(state.mesh.integration_s[ElementNumber(3)], 6);
    EXPECT_EQ(state.mesh.real_attribute[ElementNumber(3)], 7.0F);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].material.value, 5);
}

TEST_F(SlopeElements, NumberIsShiftedWithTheOthers) {
    state.source.elements[0] = {ElementNumber(1), ElementNumber(40)};
    state.deck.edit.first_element = ElementNumber(301);
    element(302, 1, 2, 51, 50);
    element(340, 51, 52, 53, 0);
    state.mesh.words[ElementNumber(350)] = words_of({101, 102, 102, 101});
    state.mesh.type_in_use[ElementNumber(350)] = ELEMENT_BEAM;
    split_element_2();
    EXPECT_EQ(corners(302), "1 200 50 0");
    EXPECT_EQ(corners(351), "200 2 51 50");
}

TEST_F(SlopeElements, ElementThatIsNotThereIsRefused) {
    element(3, 1, 2, 51, 50);
    const std::string message = failure_of([] { split_element_2(); });
    EXPECT_NE(message.find("L_2.0.Mes: expected a continuum element 2"), std::string::npos) << message;
}

TEST_F(SlopeElements, ElementAwayFromTheSlopeIsRefused) {
    element(2, 1, 52, 2, 51);
    const std::string message = failure_of([] { split_element_2(); });
    EXPECT_NE(message.find("element 2 on the slope"), std::string::npos) << message;
}

TEST_F(SlopeElements, NumberBeyondTheTablesIsRefused) {
    element(2, 1, 2, 51, 50);
    element(HIGHEST_ELEMENT_NUMBER, 51, 52, 53, 0);
    const std::string message = failure_of([] { split_element_2(); });
    EXPECT_NE(message.find("deck.dat, line 7: Card 3.2"), std::string::npos) << message;
}

}  // namespace
}  // namespace brelan::test
