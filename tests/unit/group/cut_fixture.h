// The tables of the group engine with one to three elements in them, for tests of the stages of a cut.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine_mesh.h"
#include "group/indexes.h"
#include "group/row_index.h"
#include "unit/support.h"

namespace brelan::test {

using FourNodes = std::array<std::int32_t, 4>;

// Tables are empty before and after each test; node and element numbers are those of the tables.
class CutFixture : public ::testing::Test {
protected:
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    static void clear() {
        RESETMESH();
        IEL.fill({});
        ELIST.fill(0);
        KS.fill(0);
        KF.fill(0);
        INTR.fill(0);
        IDH.fill(0);
        THIC.fill(0.0F);
        DEN.fill(0.0F);
        H.fill(0.0F);
        CF.fill(0.0F);
        FROZEN.fill(0);
        clear_rows();
        NUMNP = NCONT = 0;
        TOLMOVE = TOLLINE = 0.01F;
        TOLSAME = 0.001F;
        use_indexes(true);
        build_indexes();
    }

    static void node(std::int32_t n, float x, float y, bool frozen = false) {
        XC[n] = x;
        YC[n] = y;
        FROZEN[n] = frozen ? 1 : 0;
        NUMNP = std::max(NUMNP, n);
    }
    static void element(std::int32_t e, const FourNodes& n, std::int32_t material = 1) {
        IEL[e].I1 = n[0];
        IEL[e].I2 = n[1];
        IEL[e].I3 = n[2];
        IEL[e].I4 = n[3];
        IEL[e].MATNO = material;
        ETYPE[e] = EL_CONTINUUM;
        ELIST[e] = e;
        NCONT = std::max(NCONT, e);
    }

    // Element 1 with nodes 1 to 4 from (0, 0) to the width and height; nodes in the list cannot move.
    static void rectangle(float width, float height, const std::vector<std::int32_t>& frozen = {}) {
        node(1, 0, 0);
        node(2, width, 0);
        node(3, width, height);
        node(4, 0, height);
        element(1, {1, 2, 3, 4});
        for (const std::int32_t n : frozen)
            FROZEN[n] = 1;
        build_indexes();
    }

    // Collects the rows of a pair and scans their sides.
    static void scan(const Point& P1, const Point& P2, std::int32_t IEND = 2, bool deferred = false) {
        COLLECT(P1, P2);
        SIDESCAN(P1, P2, {IEND, deferred});
    }
    // Collects the rows of a pair and places its second end.
    static void place(const Point& P, const Point& Q0) {
        COLLECT(Q0, P);
        PLACEEND(Q0, P, true, false);
    }

    static FourNodes corners(std::int32_t e) { return {IEL[e].I1, IEL[e].I2, IEL[e].I3, IEL[e].I4}; }
    static FourNodes corner_marks(std::size_t row) {
        const CutRow& r = CUTTAB.at(row);
        return {r.V[0], r.V[1], r.V[2], r.V[3]};
    }
    static FourNodes side_marks(std::size_t row) {
        const CutRow& r = CUTTAB.at(row);
        return {r.S[0], r.S[1], r.S[2], r.S[3]};
    }
    static void expect_node(std::int32_t n, float x, float y) {
        EXPECT_FLOAT_EQ(XC[n], x) << "node " << n;
        EXPECT_FLOAT_EQ(YC[n], y) << "node " << n;
    }
};

}  // namespace brelan::test
