// The elements of a mapped template: their orientation, and the one that the water level divides.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "dam/phreatic_line.h"
#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "unit/support.h"

namespace brelan::test {
namespace {

// Model 3: nodes 1 to 30 are the slope, element 2 is at its first part.
class SlopeElements : public ::testing::Test {
protected:
    SlopeElements() {
        RESETMESH();
        IEL.fill(ElementWords{});
        EDIT.MODEL = 3;
        EDIT.NSNEL = 1;
        EDIT.start_place = "deck.dat, line 7";
        SOURCE = EditSource{};
        SOURCE.elements[0] = {1, 9};
        SLOPESPLIT = SlopeSplit{};
    }
    ~SlopeElements() override { IPROGM = 1; }

    static void element(std::int32_t number, std::int32_t i1, std::int32_t i2, std::int32_t i3,
                        std::int32_t i4) {
        IEL[number] = {i1, i2, i3, i4, 0, 0, 0, 0, 5};
        EACT1[number] = EL_CONTINUUM;
        if (SOURCE.first_continuum == 0)
            SOURCE.first_continuum = number;
    }
    static std::string corners(std::int32_t number) {
        const ElementWords& w = IEL[number];
        std::string text;
        for (const std::int32_t corner : {w.I1, w.I2, w.I3, w.I4})
            text.append(text.empty() ? "" : " ").append(std::to_string(corner));
        return text;
    }
    static void square_of_nodes() {
        constexpr std::array<float, 4> x = {0.0F, 1.0F, 1.0F, 0.0F}, y = {0.0F, 0.0F, 1.0F, 1.0F};
        for (std::int32_t n = 101; n <= 104; ++n) {
            XC[n] = x[static_cast<std::size_t>(n - 101)];
            YC[n] = y[static_cast<std::size_t>(n - 101)];
        }
    }
    static void split_element_2() { SLOPESPLIT = {2, 200}; }
};

// --- orientation ---------------------------------------------------------------------------------

TEST_F(SlopeElements, StayWhenTheFirstRunsCounterClockwise) {
    square_of_nodes();
    element(4, 101, 102, 103, 104);
    element(5, 101, 103, 102, 0);
    ORIENTELEMENTS();
    EXPECT_EQ(corners(4), "101 102 103 104");
    EXPECT_EQ(corners(5), "101 103 102 0");
}

TEST_F(SlopeElements, AllTurnWhenTheFirstRunsClockwise) {
    square_of_nodes();
    element(4, 101, 104, 103, 102);
    element(5, 101, 102, 103, 0);
    IEL[6] = {101, 102, 102, 101, 0, 0, 0, 0, 1};
    EACT1[6] = EL_BEAM;
    ORIENTELEMENTS();
    EXPECT_EQ(corners(4), "101 102 103 104");
    EXPECT_EQ(corners(5), "101 103 102 0");
    EXPECT_EQ(corners(6), "101 102 102 101");
}

TEST_F(SlopeElements, TurnWhenTheFirstHasNoArea) {
    square_of_nodes();
    element(4, 101, 102, 102, 101);
    ORIENTELEMENTS();
    EXPECT_EQ(corners(4), "101 101 102 102");
}

// The halves of a concave quadrilateral have the areas -0.25 and 0.5.
TEST_F(SlopeElements, AreTurnedByBothHalvesOfTheFirst) {
    square_of_nodes();
    XC[102] = 0.25F;
    YC[102] = 0.75F;
    element(4, 101, 102, 103, 104);  // (101, 102, 103) runs clockwise, the whole does not
    ORIENTELEMENTS();
    EXPECT_EQ(corners(4), "101 102 103 104");
}

// An area that 32 bits would lose: 1E-3 at a distance of 1E4.
TEST_F(SlopeElements, AreTurnedByAnAreaOf64Bits) {
    XC[101] = 9000.0F, YC[101] = 9000.0F;
    XC[102] = 9000.0F, YC[102] = 9000.001F;
    XC[103] = 9000.001F, YC[103] = 9000.0F;
    element(4, 101, 102, 103, 0);
    ORIENTELEMENTS();
    EXPECT_EQ(corners(4), "101 103 102 0");
}

TEST_F(SlopeElements, StayInAMeshWithoutContinuumElements) {
    IEL[6] = {101, 102, 102, 101, 0, 0, 0, 0, 1};
    EACT1[6] = EL_TRUSS;
    ORIENTELEMENTS();
    EXPECT_EQ(corners(6), "101 102 102 101");
}

// --- the element at the water level --------------------------------------------------------------

TEST_F(SlopeElements, StayWithoutANodeOnTheLevel) {
    element(2, 50, 1, 2, 0);
    SPLITSLOPEELEMENT();
    EXPECT_EQ(corners(2), "50 1 2 0");
    EXPECT_EQ(EACT1[3], EL_UNUSED);
}

TEST_F(SlopeElements, QuadrilateralBecomesATriangleAndAQuadrilateral) {
    for (const std::array<std::int32_t, 4>& c :
         {std::array<std::int32_t, 4>{1, 2, 51, 50}, {50, 1, 2, 51}, {51, 50, 1, 2}, {2, 51, 50, 1}}) {
        SetUp();
        EACT1.fill(EL_UNUSED);
        element(2, c[0], c[1], c[2], c[3]);
        element(9, 51, 52, 53, 0);
        split_element_2();
        SPLITSLOPEELEMENT();
        EXPECT_EQ(corners(2), "1 200 50 0");
        EXPECT_EQ(corners(10), "200 2 51 50");
        EXPECT_EQ(EACT1[10], EL_CONTINUUM);
    }
}

TEST_F(SlopeElements, TriangleBecomesTwo) {
    for (const std::array<std::int32_t, 3>& c :
         {std::array<std::int32_t, 3>{2, 1, 50}, {50, 2, 1}, {1, 50, 2}}) {
        EACT1.fill(EL_UNUSED);
        element(2, c[0], c[1], c[2], 0);
        split_element_2();
        SPLITSLOPEELEMENT();
        EXPECT_EQ(corners(2), "2 200 50 0");
        EXPECT_EQ(corners(3), "200 1 50 0");
    }
}

TEST_F(SlopeElements, SecondPartHasTheAttributesOfTheFirst) {
    IPROGM = 2;
    element(2, 1, 2, 51, 50);
    KS[2] = 3, KF[2] = 4, INTR[2] = 5, INTS[2] = 6, TBJWL[2] = 7.0F;
    split_element_2();
    SPLITSLOPEELEMENT();
    EXPECT_EQ(KS[3], 3);
    EXPECT_EQ(KF[3], 4);
    EXPECT_EQ(INTR[3], 5);
    EXPECT_EQ(INTS[3], 6);
    EXPECT_EQ(TBJWL[3], 7.0F);
    EXPECT_EQ(IEL[3].MATNO, 5);
}

TEST_F(SlopeElements, NumberIsShiftedWithTheOthers) {
    SOURCE.elements[0] = {1, 40};
    EDIT.NSNEL = 301;
    element(302, 1, 2, 51, 50);
    element(340, 51, 52, 53, 0);
    IEL[350] = {101, 102, 102, 101, 0, 0, 0, 0, 1};
    EACT1[350] = EL_BEAM;
    split_element_2();
    SPLITSLOPEELEMENT();
    EXPECT_EQ(corners(302), "1 200 50 0");
    EXPECT_EQ(corners(351), "200 2 51 50");
}

TEST_F(SlopeElements, ElementThatIsNotThereIsRefused) {
    element(3, 1, 2, 51, 50);
    split_element_2();
    const std::string message = failure_of([] { SPLITSLOPEELEMENT(); });
    EXPECT_NE(message.find("L_2.0.Mes: expected a continuum element 2"), std::string::npos) << message;
}

TEST_F(SlopeElements, ElementAwayFromTheSlopeIsRefused) {
    element(2, 1, 52, 2, 51);
    split_element_2();
    const std::string message = failure_of([] { SPLITSLOPEELEMENT(); });
    EXPECT_NE(message.find("element 2 on the slope"), std::string::npos) << message;
}

TEST_F(SlopeElements, NumberBeyondTheTablesIsRefused) {
    element(2, 1, 2, 51, 50);
    element(MAXEL, 51, 52, 53, 0);
    split_element_2();
    const std::string message = failure_of([] { SPLITSLOPEELEMENT(); });
    EXPECT_NE(message.find("deck.dat, line 7: Card 3.2"), std::string::npos) << message;
}

}  // namespace
}  // namespace brelan::test
