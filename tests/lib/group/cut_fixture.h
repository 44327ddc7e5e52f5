// The tables of the group engine with one to three elements in them, for tests of the stages of a cut.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine.h"
#include "group/engine_mesh.h"
#include "support/state.h"

namespace brelan::test {

// Tables are empty before and after each test; node and element numbers are those of the tables.
class CutFixture : public ::testing::Test {
protected:
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    static inline CutTable cut{true};

    static void clear() {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        state.engine.workable.clear();
        state.mesh.skeleton.clear();
        state.mesh.fluid.clear();
        state.mesh.integration_r.clear();
        state.mesh.attribute.clear();
        state.mesh.thickness.clear();
        state.mesh.density.clear();
        state.mesh.head.clear();
        state.mesh.coefficient.clear();
        state.engine.frozen.clear();
        cut.clear();
        state.engine.highest_node = {};
        state.engine.highest_element = {};
        state.tolerances.move = state.tolerances.line = 0.01F;
        state.tolerances.same = 0.001F;
        state.engine.uses_indexes = true;
        build_indexes(state.mesh, state.engine);
    }

    static void node(std::int32_t n, float x, float y, bool frozen = false) {
        state.mesh.x[NodeNumber(n)] = x;
        state.mesh.y[NodeNumber(n)] = y;
        state.engine.frozen[NodeNumber(n)] = frozen ? 1 : 0;
        state.engine.highest_node = std::max(state.engine.highest_node, NodeNumber(n));
    }
    static void element(std::int32_t e, const FourNodes& n, std::int32_t material = 1) {
        state.mesh.words[ElementNumber(e)] = words_of(n, material);
        state.mesh.type[ElementNumber(e)] = ELEMENT_CONTINUUM;
        state.engine.workable[ElementNumber(e)] = ElementNumber(e);
        state.engine.highest_element = std::max(state.engine.highest_element, ElementNumber(e));
    }

    // Element 1 with nodes 1 to 4 from (0, 0) to the width and height; nodes in the list cannot move.
    static void rectangle(float width, float height, const std::vector<std::int32_t>& frozen = {}) {
        node(1, 0, 0);
        node(2, width, 0);
        node(3, width, height);
        node(4, 0, height);
        element(1, {1, 2, 3, 4});
        for (const std::int32_t n : frozen)
            state.engine.frozen[NodeNumber(n)] = 1;
        build_indexes(state.mesh, state.engine);
    }

    // Collects the rows of a pair and scans their sides.
    static void scan(const Point& P1, const Point& P2, std::int32_t IEND = 2, bool deferred = false) {
        collect_rows(state.mesh, state.engine, cut, P1, P2);
        scan_sides(state.mesh, state.tolerances, state.engine, cut, P1, P2, {IEND, deferred});
    }
    // Collects the rows of a pair and places its second end.
    static void place(const Point& P, const Point& Q0) {
        collect_rows(state.mesh, state.engine, cut, Q0, P);
        place_ends(state.mesh, state.engine, cut, Q0, P, {.second = true});
    }

    static FourNodes corners(std::int32_t e) { return corner_words(state.mesh.words[ElementNumber(e)]); }
    static FourNodes corner_marks(std::size_t row) {
        const CutRow& r = cut.rows.at(row);
        return {r.corner_on_line[0], r.corner_on_line[1], r.corner_on_line[2], r.corner_on_line[3]};
    }
    static FourNodes side_marks(std::size_t row) {
        const CutRow& r = cut.rows.at(row);
        return {r.side_node[0].value, r.side_node[1].value, r.side_node[2].value, r.side_node[3].value};
    }
    static void expect_node(std::int32_t n, float x, float y) {
        EXPECT_FLOAT_EQ(state.mesh.x[NodeNumber(n)], x) << "node " << n;
        EXPECT_FLOAT_EQ(state.mesh.y[NodeNumber(n)], y) << "node " << n;
    }
};

}  // namespace brelan::test
