// The collapse of short beams and trusses: which are looked at, what is short, what becomes of the nodes.

#include <string>

#include "mesh/compaction.h"
#include "mesh/moves.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class Collapse : public ::testing::Test {
protected:
    Collapse() {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        for (MaterialNumber& material : state.moves.beam_materials)
            material = {};
        for (MaterialNumber& material : state.moves.truss_materials)
            material = {};
        state.moves.collapse_mode = 1;
        state.moves.collapse_factor = 0.0F;
    }

    // A line element from (0, number) to (length, number), with its own nodes
    // 2 * number - 1 and 2 * number.
    static void line(std::int32_t number, std::int32_t type, std::int32_t material, float length) {
        state.mesh.type[ElementNumber(number)] = type;
        const std::int32_t i = 2 * number - 1, j = 2 * number;
        state.mesh.words[ElementNumber(number)] = words_of({i, j, j, i}, material);
        state.mesh.x[NodeNumber(j)] = length;
        state.mesh.y[NodeNumber(i)] = state.mesh.y[NodeNumber(j)] = static_cast<float>(number);
    }
    static void quadrilateral(std::int32_t number, std::int32_t i1, std::int32_t i2, std::int32_t i3,
                              std::int32_t i4) {
        state.mesh.type[ElementNumber(number)] = ELEMENT_CONTINUUM;
        state.mesh.words[ElementNumber(number)] = words_of({i1, i2, i3, i4});
    }
    // Numbers of the elements that are left.
    static std::string left() {
        std::string text;
        for (std::int32_t n = 1; n <= 50; ++n)
            if (state.mesh.type[ElementNumber(n)] != ELEMENT_DELETED)
                text += std::to_string(n) + " ";
        return text;
    }
};

TEST_F(Collapse, LooksAtTheElementsOfItsMode) {
    // Of each type and material one element of 1 and one of 9: whatever is looked at has the
    // mean 5 and the cut 1.
    const auto set_up = [] {
        state.mesh.type.fill(ELEMENT_DELETED);
        line(1, ELEMENT_BEAM, 3, 1.0F);
        line(2, ELEMENT_BEAM, 3, 9.0F);
        line(3, ELEMENT_BEAM, 4, 1.0F);
        line(4, ELEMENT_BEAM, 4, 9.0F);
        line(5, ELEMENT_TRUSS, 3, 1.0F);
        line(6, ELEMENT_TRUSS, 3, 9.0F);
        line(7, ELEMENT_TRUSS, 6, 1.0F);
        line(8, ELEMENT_TRUSS, 6, 9.0F);
        quadrilateral(9, 1, 2, 4, 3);
        state.moves.beam_materials[0] = MaterialNumber(7);
        state.moves.beam_materials[2] = MaterialNumber(4);   // beams of material 4
        state.moves.truss_materials[1] = MaterialNumber(3);  // trusses of material 3
        state.moves.collapse_factor = 0.2F;
    };
    const std::pair<std::int32_t, const char*> cases[] = {
        {1, "2 4 6 8 9 "},         {2, "2 4 5 6 7 8 9 "},     {3, "1 2 3 4 6 8 9 "},
        {4, "1 2 4 5 6 7 8 9 "},   {5, "1 2 3 4 6 7 8 9 "},   {6, "1 2 4 6 7 8 9 "},
        {0, "1 2 3 4 5 6 7 8 9 "}, {7, "1 2 3 4 5 6 7 8 9 "}, {-1, "1 2 3 4 5 6 7 8 9 "}};
    for (const auto& [mode, expected] : cases) {
        set_up();
        state.moves.collapse_mode = mode;
        collapse_short_elements(state.mesh, state.listing, state.moves);
        EXPECT_EQ(left(), expected) << "mode " << mode;
        EXPECT_EQ(state.moves.collapse_mode, mode >= 1 && mode <= 6 ? mode : 0);
    }
}

TEST_F(Collapse, TakesAnElementThatIsExactlyAsLongAsTheCut) {
    line(1, ELEMENT_BEAM, 1, 1.0F);
    line(2, ELEMENT_BEAM, 1, 3.0F);
    state.moves.collapse_factor = 0.5F;
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "2 ");
}

TEST_F(Collapse, CutIsTheMeanTimesTheFactorInThisOrder) {
    // (10 / 3) * 0.9 is 2.9999998 in 32 bits, (10 * 0.9) / 3 would be 3.
    line(1, ELEMENT_BEAM, 1, 2.0F);
    line(2, ELEMENT_BEAM, 1, 3.0F);
    line(3, ELEMENT_TRUSS, 1, 5.0F);
    state.moves.collapse_factor = 0.9F;
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "2 3 ");

    line(1, ELEMENT_BEAM, 1, 3.0F);
    line(2, ELEMENT_BEAM, 1, 3.0F);
    line(3, ELEMENT_TRUSS, 1, 4.0F);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "1 2 3 ");
    EXPECT_EQ(state.moves.collapse_mode, 0);
}

TEST_F(Collapse, AFactorThatIsTooSmallChangesNothingAndSwitchesOff) {
    line(1, ELEMENT_BEAM, 1, 1.0F);
    line(2, ELEMENT_BEAM, 1, 9.0F);
    state.moves.collapse_factor = 0.19F;
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "1 2 ");
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].corner_2.value, 2);
    EXPECT_EQ(state.moves.collapse_mode, 0);
}

TEST_F(Collapse, SwitchesOffWhereNoElementIsLookedAt) {
    quadrilateral(1, 1, 2, 3, 4);
    line(2, ELEMENT_TRUSS, 1, 0.0F);
    state.moves.collapse_mode = 2;
    state.moves.collapse_factor = 10.0F;
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "1 2 ");
    EXPECT_EQ(state.moves.collapse_mode, 0);
}

TEST_F(Collapse, MeasuresAlongBothAxes) {
    line(1, ELEMENT_BEAM, 1, 3.0F);
    state.mesh.y[NodeNumber(2)] = state.mesh.y[NodeNumber(1)] + 4.0F;  // 3, 4, 5
    line(2, ELEMENT_BEAM, 1, 15.0F);
    state.moves.collapse_factor = 0.5F;  // mean 10
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "2 ");
}

TEST_F(Collapse, ElementsOfNoLengthGoWithAnyFactor) {
    line(1, ELEMENT_BEAM, 1, 0.0F);
    line(2, ELEMENT_BEAM, 1, 9.0F);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "2 ");
    EXPECT_EQ(state.moves.collapse_mode, 1);
}

// Short beams 1 (nodes 1-2), 2 (3-4) and 3 (5-6), a long one 4 (7-8).
class CollapseOfThree : public Collapse {
protected:
    CollapseOfThree() {
        for (const std::int32_t n : {1, 2, 3})
            line(n, ELEMENT_BEAM, 1, 1.0F);
        line(4, ELEMENT_BEAM, 1, 97.0F);
        state.moves.collapse_factor = 0.1F;  // 2.5
    }
    static std::string corners(std::int32_t number) {
        const ElementWords& w = state.mesh.words[ElementNumber(number)];
        std::string text;
        for (const std::int32_t corner :
             {w.corner_1.value, w.corner_2.value, w.corner_3.value, w.corner_4.value})
            text += std::to_string(corner) + " ";
        return text;
    }
};

TEST_F(CollapseOfThree, PutsTheFirstNodeInPlaceOfTheSecondEverywhere) {
    quadrilateral(10, 2, 4, 6, 8);
    state.mesh.type[ElementNumber(11)] = ELEMENT_TRUSS;
    state.mesh.words[ElementNumber(11)] = words_of({8, 2, 2, 8});
    state.moves.collapse_mode = 2;
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "4 10 11 ");
    EXPECT_EQ(corners(10), "1 3 5 8 ");
    EXPECT_EQ(corners(11), "8 1 1 8 ");
}

TEST_F(CollapseOfThree, LeavesTheCoordinatesAlone) {
    collapse_short_elements(state.mesh, state.listing, state.moves);
    for (const std::int32_t n : {2, 4, 6})
        EXPECT_EQ(state.mesh.x[NodeNumber(n)], 1.0F);
    for (const std::int32_t n : {1, 3, 5})
        EXPECT_EQ(state.mesh.x[NodeNumber(n)], 0.0F);
}

TEST_F(CollapseOfThree, QuadrilateralsLoseCornersAndGo) {
    quadrilateral(10, 1, 2, 7, 8);  // 1 1 7 8
    quadrilateral(11, 1, 2, 4, 3);  // 1 1 3 3
    quadrilateral(12, 7, 8, 5, 6);  // 7 8 5 5
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "4 10 12 ");
    EXPECT_EQ(corners(10), "1 7 8 0 ");
    EXPECT_EQ(corners(12), "7 8 5 0 ");
}

TEST_F(CollapseOfThree, AQuadrilateralWithAllCornersInOneGoes) {
    // The three short beams go out from node 1.
    for (const std::int32_t n : {1, 2, 3}) {
        state.mesh.words[ElementNumber(n)].corner_1 = state.mesh.words[ElementNumber(n)].corner_4 =
            NodeNumber(1);
        state.mesh.y[NodeNumber(2 * n)] = state.mesh.y[NodeNumber(1)];
    }
    quadrilateral(10, 1, 2, 4, 6);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(left(), "4 ");
}

TEST_F(CollapseOfThree, ChainsActInTheOrderOfTheElements) {
    // Beams 1 (1-2) and 2 (2-4): the pair of 1 has been passed when that of 2 turns corner 4 into 2.
    state.mesh.words[ElementNumber(2)].corner_1 = state.mesh.words[ElementNumber(2)].corner_4 = NodeNumber(2);
    state.mesh.y[NodeNumber(4)] = state.mesh.y[NodeNumber(2)];
    state.mesh.x[NodeNumber(4)] = 2.0F;
    quadrilateral(10, 4, 7, 8, 9);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(10), "2 7 8 9 ");
    // Beam 2 itself has become 1-2: it is short, but its ends are still two.
    EXPECT_EQ(corners(2), "1 2 2 1 ");
    EXPECT_EQ(left(), "2 4 10 ");
}

TEST_F(CollapseOfThree, ChainsGoOnWhereTheLaterElementNamesTheEarlierNode) {
    // Beams 1 (2-4) and 2 (1-2): corner 4 becomes 2, then 1.
    state.mesh.words[ElementNumber(1)] = words_of({2, 4, 4, 2});
    state.mesh.words[ElementNumber(2)] = words_of({1, 2, 2, 1});
    state.mesh.x[NodeNumber(4)] = 2.0F;
    state.mesh.y[NodeNumber(4)] = state.mesh.y[NodeNumber(2)];
    quadrilateral(10, 4, 7, 8, 9);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(10), "1 7 8 9 ");
    EXPECT_EQ(left(), "4 10 ");
}

TEST_F(CollapseOfThree, MergedNodesAreDroppedByTheCompaction) {
    quadrilateral(10, 2, 4, 6, 8);
    collapse_short_elements(state.mesh, state.listing, state.moves);
    EXPECT_EQ(pack_elements(state.mesh).value, 2);
    // Nodes 7 and 8 of the long beam, 1, 3, 5 and 8 of the quadrilateral.
    const PackedNodes nodes = pack_nodes(state.mesh, ElementNumber(2));
    EXPECT_EQ(nodes.last.value, 5);
    for (const std::int32_t n : {2, 4, 6})
        EXPECT_EQ(nodes.position[NodeNumber(n)].value, 0);
}

}  // namespace
}  // namespace brelan::test
