// The compaction step by step: what moves, what stays where it was, and where the numbers end.

#include <string>

#include "mesh/compaction.h"
#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class Compaction : public ::testing::TestWithParam<std::int32_t> {
protected:
    Compaction() : edition_(GetParam()) {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        state.mesh.node_mark.clear();
        state.mesh.head.clear();
        state.mesh.coefficient.clear();
        state.deck.edit.start_place = {"deck.dat", 4};
    }

    // Each value of node n tells n.
    static void node(std::int32_t n) {
        const float value = static_cast<float>(n);
        state.mesh.codes[NodeNumber(n)] = {10 * n + 1, 10 * n + 2, 10 * n + 3, 10 * n + 4, 10 * n + 5};
        state.mesh.node_mark[NodeNumber(n)] = static_cast<std::int8_t>(n % 100);
        state.mesh.x[NodeNumber(n)] = value + 0.25F;
        state.mesh.y[NodeNumber(n)] = value + 0.5F;
        state.mesh.head[NodeNumber(n)] = value * 100.0F;
        state.mesh.coefficient[NodeNumber(n)] = value * 1000.0F;
    }
    // Each attribute and midside word of element n tells n.
    static void element(std::int32_t n, std::int32_t type, std::int32_t i1, std::int32_t i2, std::int32_t i3,
                        std::int32_t i4) {
        state.mesh.type[ElementNumber(n)] = type;
        state.mesh.words[ElementNumber(n)] =
            words_of({i1, i2, i3, i4}, 70 + n, {10 * n + 5, 10 * n + 6, 10 * n + 7, 10 * n + 8});
        state.mesh.skeleton[ElementNumber(n)] = 1000 + n;
        state.mesh.fluid[ElementNumber(n)] = 2000 + n;
        state.mesh.integration_r[ElementNumber(n)] = 3000 + n;
        state.mesh.integration_s[ElementNumber(n)] = 4000 + n;
        state.mesh.real_attribute[ElementNumber(n)] = static_cast<float>(5000 + n);
        state.mesh.attribute[ElementNumber(n)] = 6000 + n;
        state.mesh.thickness[ElementNumber(n)] = static_cast<float>(7000 + n);
        state.mesh.density[ElementNumber(n)] = static_cast<float>(8000 + n);
    }

    // Number of the element from which the attributes at n come.
    static std::int32_t attributes_from(std::int32_t n) {
        switch (state.settings.kind()) {
            case LayoutKind::coupled:
                EXPECT_EQ(state.mesh.fluid[ElementNumber(n)], state.mesh.skeleton[ElementNumber(n)] + 1000);
                EXPECT_EQ(state.mesh.integration_r[ElementNumber(n)],
                          state.mesh.skeleton[ElementNumber(n)] + 2000);
                EXPECT_EQ(state.mesh.integration_s[ElementNumber(n)],
                          state.mesh.skeleton[ElementNumber(n)] + 3000);
                EXPECT_EQ(state.mesh.real_attribute[ElementNumber(n)],
                          static_cast<float>(state.mesh.skeleton[ElementNumber(n)] + 4000));
                return state.mesh.skeleton[ElementNumber(n)] - 1000;
            case LayoutKind::displacement:
                EXPECT_EQ(state.mesh.density[ElementNumber(n)],
                          state.mesh.thickness[ElementNumber(n)] + 1000.0F);
                return static_cast<std::int32_t>(state.mesh.thickness[ElementNumber(n)]) - 7000;
            default:
                return state.mesh.attribute[ElementNumber(n)] - 6000;
        }
    }

private:
    Edition edition_;
};

// Elements 3, 5 and 9 of nodes 2, 4, 7 and 8; elements 1 and 2 and nodes 1 and 3 are gone.
class CompactionOfGaps : public Compaction {
protected:
    CompactionOfGaps() {
        for (const std::int32_t n : {1, 2, 3, 4, 7, 8})
            node(n);
        element(1, ELEMENT_DELETED, 1, 3, 4, 8);
        element(2, ELEMENT_DELETED, 1, 3, 4, 8);
        element(3, ELEMENT_CONTINUUM, 2, 4, 8, 7);
        element(5, ELEMENT_TRUSS, 7, 8, 8, 7);
        element(9, ELEMENT_CONTINUUM, 4, 7, 2, 0);
    }
};

TEST_P(CompactionOfGaps, ElementsMoveDownInTheOrderOfTheirNumbersAcrossTheTypes) {
    EXPECT_EQ(pack_elements(state.mesh).value, 3);
    const std::int32_t types[] = {ELEMENT_CONTINUUM, ELEMENT_TRUSS, ELEMENT_CONTINUUM};
    const std::int32_t from[] = {3, 5, 9};
    const std::int32_t corners[][4] = {{2, 4, 8, 7}, {7, 8, 8, 7}, {4, 7, 2, 0}};
    for (std::int32_t p = 1; p <= 3; ++p) {
        const auto k = static_cast<std::size_t>(p - 1);
        EXPECT_EQ(state.mesh.type[ElementNumber(p)], types[k]);
        EXPECT_EQ(state.mesh.words[ElementNumber(p)].material.value, 70 + from[k]);
        EXPECT_EQ(attributes_from(p), from[k]);
        const ElementWords& w = state.mesh.words[ElementNumber(p)];
        EXPECT_EQ(w.corner_1.value, corners[k][0]);
        EXPECT_EQ(w.corner_2.value, corners[k][1]);
        EXPECT_EQ(w.corner_3.value, corners[k][2]);
        EXPECT_EQ(w.corner_4.value, corners[k][3]);
    }
}

TEST_P(CompactionOfGaps, MidsideWordsStayAtTheirPositions) {
    pack_elements(state.mesh);
    for (std::int32_t p = 1; p <= 3; ++p) {
        const ElementWords& w = state.mesh.words[ElementNumber(p)];
        EXPECT_EQ(w.midside_5.value, 10 * p + 5);
        EXPECT_EQ(w.midside_8.value, 10 * p + 8);
    }
    // From there all nine words go to the final number.
    renumber_words(state.mesh, ElementNumber(3), pack_nodes(state.mesh, ElementNumber(3)), NodeNumber(1));
    place_elements(state.deck.edit, state.mesh, ElementNumber(3), ElementNumber(500));
    for (std::int32_t p = 1; p <= 3; ++p) {
        const ElementWords& w = state.mesh.words[ElementNumber(499 + p)];
        EXPECT_EQ(w.midside_5.value, 10 * p + 5);
        EXPECT_EQ(w.midside_6.value, 10 * p + 6);
        EXPECT_EQ(w.midside_7.value, 10 * p + 7);
        EXPECT_EQ(w.midside_8.value, 10 * p + 8);
    }
}

TEST_P(CompactionOfGaps, NodesWithoutAnElementAreGone) {
    const PackedNodes nodes = pack_nodes(state.mesh, pack_elements(state.mesh));
    const std::int32_t expected[] = {0, 1, 0, 2, 0, 0, 3, 4, 0};
    for (std::int32_t n = 1; n <= 9; ++n)
        EXPECT_EQ(nodes.position[NodeNumber(n)].value, expected[n - 1]) << "node " << n;
}

TEST_P(CompactionOfGaps, NodesMoveDownWithTheirMarkAndAllFiveCodes) {
    pack_elements(state.mesh);
    const PackedNodes nodes = pack_nodes(state.mesh, ElementNumber(3));
    EXPECT_EQ(nodes.last.value, 4);
    const std::int32_t from[] = {2, 4, 7, 8};
    for (std::int32_t p = 1; p <= 4; ++p) {
        const std::int32_t n = from[p - 1];
        EXPECT_EQ(nodes.position[NodeNumber(n)].value, p);
        EXPECT_EQ(state.mesh.codes[NodeNumber(p)],
                  (NodeCodes{10 * n + 1, 10 * n + 2, 10 * n + 3, 10 * n + 4, 10 * n + 5}));
        EXPECT_EQ(state.mesh.node_mark[NodeNumber(p)], n);
        EXPECT_EQ(state.mesh.x[NodeNumber(p)], static_cast<float>(n) + 0.25F);
        EXPECT_EQ(state.mesh.y[NodeNumber(p)], static_cast<float>(n) + 0.5F);
        // Only temperatures go with their nodes.
        const std::int32_t value_of = state.settings.kind() == LayoutKind::temperature ? n : p == 4 ? 4 : p;
        EXPECT_EQ(state.mesh.head[NodeNumber(p)], static_cast<float>(value_of) * 100.0F) << "position " << p;
        EXPECT_EQ(state.mesh.coefficient[NodeNumber(p)], static_cast<float>(value_of) * 1000.0F)
            << "position " << p;
    }
}

TEST_P(CompactionOfGaps, CornersTakeTheFinalNumbers) {
    const PackedNodes nodes = pack_nodes(state.mesh, pack_elements(state.mesh));
    state.mesh.words[ElementNumber(3)].corner_4 = NodeNumber(-5);
    renumber_words(state.mesh, ElementNumber(3), nodes, NodeNumber(1000));
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_1.value, 1000);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_2.value, 1001);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_3.value, 1003);
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_4.value, 1002);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].corner_1.value, 1002);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].corner_4.value, 1002);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].corner_3.value, 1000);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].corner_4.value, -5) << "no node";
}

TEST_P(CompactionOfGaps, NodesAndElementsEndAtTheirStartNumbers) {
    const ElementNumber elements = pack_elements(state.mesh);
    const PackedNodes nodes = pack_nodes(state.mesh, elements);
    renumber_words(state.mesh, elements, nodes, NodeNumber(1000));
    place_nodes(state.deck.edit, state.mesh, nodes.last, NodeNumber(1000));
    place_elements(state.deck.edit, state.mesh, elements, ElementNumber(200));
    for (std::int32_t n = 1; n <= 2000; ++n)
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(n)], n >= 1000 && n <= 1003 ? 1 : 0) << "node " << n;
    EXPECT_EQ(state.mesh.x[NodeNumber(1000)], 2.25F);
    EXPECT_EQ(state.mesh.x[NodeNumber(1003)], 8.25F);
    EXPECT_EQ(state.mesh.codes[NodeNumber(1002)][2], 73);
    const bool three_codes = state.settings.kind() == LayoutKind::displacement;
    EXPECT_EQ(state.mesh.codes[NodeNumber(1002)][3], three_codes ? 0 : 74);
    EXPECT_EQ(state.mesh.node_mark[NodeNumber(1001)], 4);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(199)], ELEMENT_UNUSED);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(200)], ELEMENT_CONTINUUM);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(201)], ELEMENT_TRUSS);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(202)], ELEMENT_CONTINUUM);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(203)], ELEMENT_UNUSED);
    EXPECT_EQ(state.mesh.words[ElementNumber(202)].corner_2.value, 1002);
    EXPECT_EQ(state.mesh.words[ElementNumber(202)].material.value, 79);
    EXPECT_EQ(attributes_from(202), 9);
}

TEST_P(CompactionOfGaps, NodesAreNotOverwrittenByAShiftOfOne) {
    // Numbers 1 to 4 go to 2 to 5: each lands where another one stood.
    const NodeNumber nodes = pack_nodes(state.mesh, pack_elements(state.mesh)).last;
    place_nodes(state.deck.edit, state.mesh, nodes, NodeNumber(2));
    place_elements(state.deck.edit, state.mesh, ElementNumber(3), ElementNumber(2));
    EXPECT_EQ(state.mesh.x[NodeNumber(2)], 2.25F);
    EXPECT_EQ(state.mesh.x[NodeNumber(3)], 4.25F);
    EXPECT_EQ(state.mesh.x[NodeNumber(4)], 7.25F);
    EXPECT_EQ(state.mesh.x[NodeNumber(5)], 8.25F);
    EXPECT_EQ(state.mesh.words[ElementNumber(2)].material.value, 73);
    EXPECT_EQ(state.mesh.words[ElementNumber(3)].material.value, 75);
    EXPECT_EQ(state.mesh.words[ElementNumber(4)].material.value, 79);
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompactionOfGaps,
                         ::testing::Values(COUPLED, TEMPERATURE, HEAD, DISPLACEMENT));

// --- heads ---------------------------------------------------------------------------------------

using CompactionOfValues = Compaction;

TEST_P(CompactionOfValues, HeadsStayBehindAGapInTheNodes) {
    for (const std::int32_t n : {1, 2, 3})
        node(n);
    element(1, ELEMENT_BEAM, 2, 3, 3, 2);
    EXPECT_EQ(pack_nodes(state.mesh, pack_elements(state.mesh)).last.value, 2);
    place_nodes(state.deck.edit, state.mesh, NodeNumber(2), NodeNumber(1000));
    EXPECT_EQ(state.mesh.x[NodeNumber(1000)], 2.25F);
    EXPECT_EQ(state.mesh.x[NodeNumber(1001)], 3.25F);
    const bool heads = state.settings.kind() == LayoutKind::head;
    EXPECT_EQ(state.mesh.head[NodeNumber(1000)], heads ? 100.0F : 200.0F);
    EXPECT_EQ(state.mesh.head[NodeNumber(1001)], heads ? 200.0F : 300.0F);
    EXPECT_EQ(state.mesh.coefficient[NodeNumber(1000)], heads ? 1000.0F : 2000.0F);
    EXPECT_EQ(state.mesh.coefficient[NodeNumber(1001)], heads ? 2000.0F : 3000.0F);
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompactionOfValues, ::testing::Values(TEMPERATURE, HEAD));

// --- the ends of the tables ----------------------------------------------------------------------

using CompactionLimits = Compaction;

TEST_P(CompactionLimits, TheLastNumberOfTheTablesCanBeTaken) {
    for (const std::int32_t n : {1, 2})
        node(n);
    element(1, ELEMENT_BEAM, 1, 2, 2, 1);
    element(2, ELEMENT_BEAM, 1, 2, 2, 1);
    pack_nodes(state.mesh, pack_elements(state.mesh));
    place_nodes(state.deck.edit, state.mesh, NodeNumber(2), NodeNumber(99989));
    place_elements(state.deck.edit, state.mesh, ElementNumber(2), ElementNumber(99989));
    EXPECT_EQ(state.mesh.x[NodeNumber(99990)], 2.25F);
    EXPECT_EQ(state.mesh.type_in_use[ElementNumber(99990)], ELEMENT_BEAM);
}

TEST_P(CompactionLimits, NumbersBeyondTheTablesEndTheRun) {
    for (const std::int32_t start : {99990, 99999, 0, -5}) {
        for (const bool nodes : {true, false}) {
            const std::string message = failure_of([&] {
                nodes ? place_nodes(state.deck.edit, state.mesh, NodeNumber(2), NodeNumber(start))
                      : place_elements(state.deck.edit, state.mesh, ElementNumber(2), ElementNumber(start));
            });
            for (const std::string& part :
                 {std::string("deck.dat, line 4"), std::string(nodes ? "node" : "element"),
                  std::string("1 to 99990"), std::string("found ").append(std::to_string(start))})
                EXPECT_NE(message.find(part), std::string::npos) << message;
        }
    }
    for (std::int32_t n : {1, 99989, 99990}) {
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(n)], 0);
        EXPECT_EQ(state.mesh.type_in_use[ElementNumber(n)], ELEMENT_UNUSED);
    }
}

TEST_P(CompactionLimits, NothingLeftNeedsNoRoom) {
    EXPECT_EQ(pack_elements(state.mesh).value, 0);
    const PackedNodes nodes = pack_nodes(state.mesh, ElementNumber(0));
    EXPECT_EQ(nodes.last.value, 0);
    renumber_words(state.mesh, ElementNumber(0), nodes, NodeNumber(0));
    place_nodes(state.deck.edit, state.mesh, NodeNumber(0), NodeNumber(0));
    place_elements(state.deck.edit, state.mesh, ElementNumber(0), ElementNumber(1000000));
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(1)], 0);
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, CompactionLimits, ::testing::Values(DISPLACEMENT));

}  // namespace
}  // namespace brelan::test
