// What a new deck finds in the tables after the deck before it.
#include "mesh/tables.h"
#include "unit/support.h"

namespace brelan::test {
namespace {

constexpr std::int32_t PLACES[] = {1, 2, 50000, 99989, 99990};

// Each table with a value that no deck begins with.
class DeckReset : public ::testing::Test {
protected:
    void SetUp() override {
        for (const std::int32_t n : PLACES) {
            NACT1[n] = NACT2[n] = 1;
            IDN[n] = IDN1[n] = {1, 2, 3, 4, 5};
            XC[n] = YC[n] = XC1[n] = YC1[n] = 6.5F;
            H[n] = CF[n] = H1[n] = CF1[n] = 7.5F;
            NMAP[n] = -8;
            NLIST[n] = NUSED[n] = ELIST[n] = n;
            EACT1[n] = EL_BEAM;
            EACT2[n] = EL_TRUSS;
            ETYPE[n] = EL_CONTINUUM;
            IEL[n] = {11, 12, 13, 14, 15, 16, 17, 18, 19};
            KS[n] = KF[n] = INTR[n] = INTS[n] = IDH[n] = 20;
            TBJWL[n] = THIC[n] = DEN[n] = 21.5F;
        }
        RESETMESH();
    }
};

TEST_F(DeckReset, LeavesNoNodeAndNoElementInUse) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(NACT1[n], 0) << n;
        EXPECT_EQ(NACT2[n], 0) << n;
        EXPECT_EQ(EACT1[n], -1) << n;
        EXPECT_EQ(EACT2[n], -1) << n;
        EXPECT_EQ(ETYPE[n], 0) << n;
    }
}

TEST_F(DeckReset, EmptiesCodesAndCoordinates) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(IDN[n], (NodeCodes{0, 0, 0, 0, 0})) << n;
        EXPECT_EQ(IDN1[n], (NodeCodes{0, 0, 0, 0, 0})) << n;
        EXPECT_EQ(XC[n], 0.0F) << n;
        EXPECT_EQ(YC[n], 0.0F) << n;
        EXPECT_EQ(XC1[n], 0.0F) << n;
        EXPECT_EQ(YC1[n], 0.0F) << n;
    }
}

TEST_F(DeckReset, EmptiesTheSelections) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(NLIST[n], 0) << n;
        EXPECT_EQ(ELIST[n], 0) << n;
        EXPECT_EQ(NUSED[n], 0) << n;
    }
}

TEST_F(DeckReset, MapsEachNodeToItself) {
    for (std::int32_t n = 1; n <= 99990; ++n)
        ASSERT_EQ(NMAP[n], n);
}

TEST_F(DeckReset, LeavesWordsAndAttributesOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(IEL[n].I1, 11) << n;
        EXPECT_EQ(IEL[n].M8, 18) << n;
        EXPECT_EQ(IEL[n].MATNO, 19) << n;
        EXPECT_EQ(KS[n], 20) << n;
        EXPECT_EQ(KF[n], 20) << n;
        EXPECT_EQ(INTR[n], 20) << n;
        EXPECT_EQ(INTS[n], 20) << n;
        EXPECT_EQ(IDH[n], 20) << n;
        EXPECT_EQ(TBJWL[n], 21.5F) << n;
        EXPECT_EQ(THIC[n], 21.5F) << n;
        EXPECT_EQ(DEN[n], 21.5F) << n;
    }
}

TEST_F(DeckReset, LeavesHeadAndTemperatureOfTheDeckBefore) {
    for (const std::int32_t n : PLACES) {
        EXPECT_EQ(H[n], 7.5F) << n;
        EXPECT_EQ(CF[n], 7.5F) << n;
    }
}

}  // namespace
}  // namespace brelan::test
