// Node moves: coordinates go pair by pair, merges rename corners, elements that lose their extent go.

#include <string>

#include "mesh/moves.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class Moves : public ::testing::Test {
protected:
    Moves() {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        state.moves.first_count = state.moves.second_count = 0;
    }

    static void continuum(std::int32_t number, std::int32_t i1, std::int32_t i2, std::int32_t i3,
                          std::int32_t i4) {
        state.mesh.type[ElementNumber(number)] = ELEMENT_CONTINUUM;
        state.mesh.words[ElementNumber(number)] = words_of({i1, i2, i3, i4});
    }
    static void line(std::int32_t number, std::int32_t type, std::int32_t i, std::int32_t j) {
        state.mesh.type[ElementNumber(number)] = type;
        state.mesh.words[ElementNumber(number)] = words_of({i, j, j, i});
    }
    static void node(std::int32_t number, float x, float y) {
        state.mesh.x[NodeNumber(number)] = x;
        state.mesh.y[NodeNumber(number)] = y;
    }
    static void move(std::int32_t a, std::int32_t b, float f) {
        state.moves.first[++state.moves.first_count] = {NodeNumber(a), NodeNumber(b), f};
    }
    static void move_by_place(std::int32_t a, std::int32_t b, float f) {
        state.moves.second[++state.moves.second_count] = {a, b, f};
    }

    // Type and corners of an element, as in "1: 5 6 7 0".
    static std::string corners(std::int32_t number) {
        const ElementWords& w = state.mesh.words[ElementNumber(number)];
        std::string text = std::to_string(state.mesh.type[ElementNumber(number)]) + ":";
        for (const std::int32_t corner :
             {w.corner_1.value, w.corner_2.value, w.corner_3.value, w.corner_4.value})
            text.append(" ").append(std::to_string(corner));
        return text;
    }
};

// --- the test of elements whose corners were replaced --------------------------------------------

using Degeneration = Moves;

TEST_F(Degeneration, OfAQuadrilateralIsDecidedByTheFirstEqualPair) {
    struct Row {
        std::int32_t i1, i2, i3, i4;
        const char* becomes;  // "gone" or the three corners left
    };
    constexpr Row rows[] = {
        {5, 5, 7, 8, "5 7 8"},  // I1 = I2
        {5, 5, 7, 7, "gone"},   //   with I3 = I4
        {5, 6, 5, 8, "gone"},   // I1 = I3
        {5, 6, 7, 5, "5 6 7"},  // I1 = I4
        {5, 6, 6, 5, "gone"},   //   with I2 = I3
        {5, 6, 6, 8, "5 6 8"},  // I2 = I3
        {5, 6, 7, 6, "gone"},   // I2 = I4
        {5, 6, 7, 7, "5 6 7"},  // I3 = I4
        {5, 5, 5, 5, "gone"},   // all in one
        {5, 6, 5, 6, "gone"},   // I1 = I3 before I2 = I4
        // The first pair decides alone: a third equal corner stays in the triangle.
        {5, 5, 5, 8, "5 5 8"},
        {5, 5, 7, 5, "5 7 5"},
        {5, 6, 6, 6, "5 6 6"},
    };
    for (const Row& row : rows) {
        continuum(3, row.i1, row.i2, row.i3, row.i4);
        reduce_element(state.mesh, ElementNumber(3));
        const std::string becomes = row.becomes;
        if (becomes == "gone")
            EXPECT_EQ(state.mesh.type[ElementNumber(3)], 0) << row.i1 << row.i2 << row.i3 << row.i4;
        else
            EXPECT_EQ(corners(3), "1: " + becomes + " 0") << row.i1 << row.i2 << row.i3 << row.i4;
    }
}

TEST_F(Degeneration, LeavesAQuadrilateralOfFourNodesAlone) {
    continuum(3, 5, 6, 7, 8);
    reduce_element(state.mesh, ElementNumber(3));
    EXPECT_EQ(corners(3), "1: 5 6 7 8");
}

TEST_F(Degeneration, OfATriangleIsAnyTwoEqualCorners) {
    const std::int32_t gone[][4] = {{5, 5, 7, 0}, {5, 6, 6, 0}, {5, 6, 5, 0}, {5, 5, 5, 0}, {5, 6, 6, -8}};
    for (const auto& w : gone) {
        continuum(3, w[0], w[1], w[2], w[3]);
        reduce_element(state.mesh, ElementNumber(3));
        EXPECT_EQ(state.mesh.type[ElementNumber(3)], 0) << w[0] << w[1] << w[2] << w[3];
    }
    continuum(3, 5, 6, 7, 0);
    reduce_element(state.mesh, ElementNumber(3));
    EXPECT_EQ(corners(3), "1: 5 6 7 0");
    continuum(3, 5, 6, 7, -8);
    reduce_element(state.mesh, ElementNumber(3));
    EXPECT_EQ(corners(3), "1: 5 6 7 -8");
}

TEST_F(Degeneration, OfABeamOrTrussIsBothEndsInOne) {
    for (const std::int32_t type : {ELEMENT_BEAM, ELEMENT_TRUSS}) {
        line(3, type, 5, 5);
        reduce_element(state.mesh, ElementNumber(3));
        EXPECT_EQ(state.mesh.type[ElementNumber(3)], 0);
        line(3, type, 5, 6);
        reduce_element(state.mesh, ElementNumber(3));
        EXPECT_EQ(corners(3), std::to_string(type) + ": 5 6 6 5");
    }
}

// --- moves ---------------------------------------------------------------------------------------

//   4-----3-----6
//   |  1  |  2  |     beam 3 from 1 to 2, truss 4 from 3 to 2
//   1-----2-----5
class MovesOfAStrip : public Moves {
protected:
    MovesOfAStrip() {
        node(1, 0, 0);
        node(2, 4, 0);
        node(3, 4, 3);
        node(4, 0, 3);
        node(5, 8, 0);
        node(6, 8, 3);
        continuum(1, 1, 2, 3, 4);
        continuum(2, 2, 5, 6, 3);
        line(3, ELEMENT_BEAM, 1, 2);
        line(4, ELEMENT_TRUSS, 3, 2);
    }
};

TEST_F(MovesOfAStrip, HalfTheWayShiftsANodeAndRenamesNothing) {
    move(2, 6, 0.5F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(2)], 6.0F);
    EXPECT_EQ(state.mesh.y[NodeNumber(2)], 1.5F);
    EXPECT_EQ(corners(1), "1: 1 2 3 4");
    EXPECT_EQ(corners(2), "1: 2 5 6 3");
    EXPECT_EQ(corners(3), "2: 1 2 2 1");
    EXPECT_EQ(corners(4), "3: 3 2 2 3");
}

TEST_F(MovesOfAStrip, TheWholeWayMergesWithTheTarget) {
    move(2, 3, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(2)], 4.0F);
    EXPECT_EQ(state.mesh.y[NodeNumber(2)], 3.0F);
    EXPECT_EQ(corners(1), "1: 1 3 4 0");  // 1 3 3 4: a triangle
    EXPECT_EQ(corners(2), "1: 3 5 6 0");  // 3 5 6 3
    EXPECT_EQ(corners(3), "2: 1 3 3 1");
    EXPECT_EQ(state.mesh.type[ElementNumber(4)], 0) << "both ends in one node";
}

TEST_F(MovesOfAStrip, AnEverSoSmallRestToTheTargetIsNoMerge) {
    move(2, 3, 0.99999994F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(1), "1: 1 2 3 4");
    EXPECT_EQ(state.mesh.type[ElementNumber(4)], ELEMENT_TRUSS);
}

TEST_F(MovesOfAStrip, BeyondTheTargetIsAMoveToo) {
    move(2, 5, -0.5F);
    move(3, 6, 2.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(2)], 2.0F);
    EXPECT_EQ(state.mesh.x[NodeNumber(3)], 12.0F);
    EXPECT_EQ(corners(2), "1: 2 5 6 3");
}

TEST_F(MovesOfAStrip, LaterPairsSeeWhereEarlierOnesHaveGone) {
    move(2, 6, 0.5F);   // node 2 to (6, 1.5)
    move(1, 2, 0.5F);   // half way to where it is now
    move(2, 1, 0.25F);  // and back a quarter of what is left
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(1)], 3.0F);
    EXPECT_EQ(state.mesh.y[NodeNumber(1)], 0.75F);
    EXPECT_EQ(state.mesh.x[NodeNumber(2)], 5.25F);
    EXPECT_EQ(state.mesh.y[NodeNumber(2)], 1.3125F);
}

TEST_F(MovesOfAStrip, ChainsOfMergesActInTheOrderOfTheList) {
    move(1, 2, 1.0F);
    move(2, 3, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    // Corner 1 becomes 2 and then 3: 3 3 3 4, of which the first pair leaves a triangle.
    EXPECT_EQ(corners(1), "1: 3 3 4 0");
    EXPECT_EQ(state.mesh.type[ElementNumber(3)], 0);
    EXPECT_EQ(state.mesh.type[ElementNumber(4)], 0);
}

TEST_F(MovesOfAStrip, AnEarlierMergeDoesNotSeeALaterOne) {
    move(2, 3, 1.0F);
    move(1, 2, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    // Corner 1 becomes 2, whose own merge has already been passed: 2 3 3 4.
    EXPECT_EQ(corners(1), "1: 2 3 4 0");
    EXPECT_EQ(corners(3), "2: 2 3 3 2");
}

TEST_F(MovesOfAStrip, MidsideNodesAndDeletedElementsKeepTheirWords) {
    state.mesh.words[ElementNumber(1)].midside_5 = NodeNumber(2);
    continuum(7, 2, 2, 2, 2);
    state.mesh.type[ElementNumber(7)] = ELEMENT_DELETED;
    move(2, 6, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(1), "1: 1 6 3 4");
    EXPECT_EQ(state.mesh.words[ElementNumber(1)].midside_5.value, 2);
    EXPECT_EQ(corners(7), "0: 2 2 2 2");
}

TEST_F(MovesOfAStrip, OnlyElementsWithAReplacementAreTested) {
    continuum(5, 5, 5, 6, 6);  // without extent, but not by a move
    line(6, ELEMENT_BEAM, 6, 6);
    move(1, 4, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(5), "1: 5 5 6 6");
    EXPECT_EQ(corners(6), "2: 6 6 6 6");
    EXPECT_EQ(corners(1), "1: 4 2 3 0");
}

TEST_F(MovesOfAStrip, LineElementsKeepTheirFourWordsInStep) {
    // A word that named the merged node further would keep it in the mesh.
    move(2, 6, 1.0F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(corners(3), "2: 1 6 6 1");
    EXPECT_EQ(corners(4), "3: 3 6 6 3");
}

// --- the second list -----------------------------------------------------------------------------

// Nodes 10, 20, 30 and 40 are in use; node 25 belongs to a deleted element alone.
class MovesByPlace : public Moves {
protected:
    MovesByPlace() {
        for (const std::int32_t n : {10, 20, 25, 30, 40})
            node(n, static_cast<float>(n), 0.0F);
        continuum(2, 40, 10, 20, 0);
        line(5, ELEMENT_TRUSS, 20, 30);
        line(6, ELEMENT_BEAM, 25, 40);
        state.mesh.type[ElementNumber(6)] = ELEMENT_DELETED;
    }
};

TEST_F(MovesByPlace, CountsTheNodesInUseInAscendingNumber) {
    move_by_place(3, 4, 0.5F);  // 30 towards 40
    move_by_place(1, 2, 1.0F);  // 10 onto 20
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(30)], 35.0F);
    EXPECT_EQ(state.mesh.x[NodeNumber(10)], 20.0F);
    EXPECT_EQ(state.mesh.x[NodeNumber(25)], 25.0F);
    EXPECT_EQ(state.mesh.type[ElementNumber(2)], 0) << "40 20 20 0";
    EXPECT_EQ(corners(5), "3: 20 30 30 20");
}

TEST_F(MovesByPlace, APlaceBeyondTheLastNodeEndsTheRun) {
    for (const std::int32_t place : {0, 5, -1, 100000}) {
        state.moves.second_count = 0;
        move_by_place(place, 1, 0.5F);
        const std::string message = failure_of([] { move_nodes(state.mesh, state.listing, state.moves); });
        EXPECT_NE(message.find("from 1 to 4"), std::string::npos) << message;
        EXPECT_NE(message.find(std::string("found ").append(std::to_string(place))), std::string::npos)
            << message;
        state.moves.second_count = 0;
        move_by_place(1, place, 0.5F);
        EXPECT_NE(failure_of([] { move_nodes(state.mesh, state.listing, state.moves); }).find("from 1 to 4"),
                  std::string::npos);
    }
    EXPECT_EQ(state.mesh.x[NodeNumber(10)], 10.0F) << "no node has moved";
}

TEST_F(MovesByPlace, TheFirstListGoesBeforeTheSecond) {
    move(10, 20, 0.5F);
    move_by_place(2, 3, 0.5F);
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(10)], 15.0F);
    EXPECT_EQ(state.mesh.x[NodeNumber(20)], 20.0F) << "the second list rests";
}

TEST_F(MovesByPlace, WithoutPairsNothingMoves) {
    move_nodes(state.mesh, state.listing, state.moves);
    EXPECT_EQ(state.mesh.x[NodeNumber(10)], 10.0F);
}

TEST_F(MovesByPlace, LastElementIsTheHighestThatIsNotDeleted) {
    EXPECT_EQ(last_element(state.mesh).value, 5);
    state.mesh.type[ElementNumber(HIGHEST_ELEMENT_NUMBER)] = ELEMENT_BEAM;
    EXPECT_EQ(last_element(state.mesh).value, HIGHEST_ELEMENT_NUMBER);
    state.mesh.type.fill(ELEMENT_DELETED);
    EXPECT_EQ(last_element(state.mesh).value, 0);
}

}  // namespace
}  // namespace brelan::test
