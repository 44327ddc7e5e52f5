// Number lists, windows and sides: what an edit acts on.
#include "mesh/selection.h"

#include <array>
#include <cmath>

#include "support/state.h"

namespace brelan::test {
namespace {

// A selection table that is small enough to be shown whole.
using Listed = Table<std::int32_t, 12, "LISTED">;

struct Expansion {
    std::vector<std::int32_t> set;  // the entries that hold their own number
    std::int32_t settings = 0;
};

Expansion expansion_of(const std::vector<std::int32_t>& list) {
    Listed table;
    Expansion result;
    result.settings = expand_list(std::span<const std::int32_t>(list), table);
    for (std::int32_t n = 1; n <= Listed::SIZE; ++n) {
        if (table[n] == n)
            result.set.push_back(n);
        else
            EXPECT_EQ(table[n], 0) << "entry " << n;
    }
    return result;
}

void expect_expansion(const std::vector<std::int32_t>& list, const std::vector<std::int32_t>& set,
                      std::int32_t settings) {
    const Expansion found = expansion_of(list);
    EXPECT_EQ(found.set, set);
    EXPECT_EQ(found.settings, settings);
}

// --- number lists ------------------------------------------------------------------------------------------

TEST(NumberList, SelectsEachNumber) {
    expect_expansion({3, 7, 10}, {3, 7, 10}, 3);
    expect_expansion({10, 3}, {3, 10}, 2);
    expect_expansion({}, {}, 0);
}

TEST(NumberList, NegativeEntryMeansUpToAndIncluding) {
    expect_expansion({3, -7}, {3, 4, 5, 6, 7}, 5);
    expect_expansion({3, -7, 10}, {3, 4, 5, 6, 7, 10}, 6);
    expect_expansion({3, -4}, {3, 4}, 2);
}

TEST(NumberList, NegativeEntryIsTheStartOfTheNext) {
    expect_expansion({3, -5, -7}, {3, 4, 5, 6, 7}, 5);
}

TEST(NumberList, NegativeEntryBelowTheNumberBeforeSelectsNothing) {
    expect_expansion({7, -3}, {7}, 1);
    expect_expansion({7, -7}, {7}, 1);
    expect_expansion({7, -3, -5}, {4, 5, 7}, 3);  // goes on behind 3
}

TEST(NumberList, ZeroSelectsNothingAndIsTheNumberBefore) {
    expect_expansion({0}, {}, 0);
    expect_expansion({5, 0, 6}, {5, 6}, 2);
    expect_expansion({0, -3}, {1, 2, 3}, 3);
    expect_expansion({5, 0, -2}, {1, 2, 5}, 3);
}

TEST(NumberList, CountsRepeatedSettings) {
    expect_expansion({3, 3, 3}, {3}, 3);
    expect_expansion({3, -5, 4, -5}, {3, 4, 5}, 5);
}

TEST(NumberList, ReachesTheEndOfItsTable) {
    expect_expansion({12}, {12}, 1);
    expect_expansion({11, -12}, {11, 12}, 2);
}

TEST(NumberList, KeepsWhatAnEarlierListSelected) {
    Listed table;
    table[2] = 2;
    EXPECT_EQ(expand_list(std::vector<std::int32_t>{5}, table), 1);
    EXPECT_EQ(table[2], 2);
    EXPECT_EQ(table[5], 5);
}

TEST(NumberList, FirstEntryMustNotBeNegative) {
    const std::string message = failure_of([] { expansion_of({-3}); });
    EXPECT_EQ(message.find("number list: "), 0U) << message;
    EXPECT_NE(message.find("found -3"), std::string::npos) << message;
}

TEST(NumberList, NumberBeyondItsTableIsAMessage) {
    for (const std::int32_t number : {13, -13, 2147483647, -2147483647 - 1}) {
        const std::string message = failure_of([&] { expansion_of({3, number}); });
        EXPECT_EQ(message.find("number list: "), 0U) << message;
        EXPECT_NE(message.find("at most 12, found " + std::to_string(number)), std::string::npos) << message;
    }
}

// --- points and elements -----------------------------------------------------------------------------------

class SelectionCards : public ::testing::Test {
protected:
    void SetUp() override {
        reset_mesh(state.mesh);
        state.deck.edit = EditCards{};
    }
    void TearDown() override { SetUp(); }

    Selection selection;

    static void window(float xmin, float ymin, float xmax, float ymax) {
        state.deck.edit.selection_mode = 0;
        state.deck.edit.window_left = xmin;
        state.deck.edit.window_bottom = ymin;
        state.deck.edit.window_right = xmax;
        state.deck.edit.window_top = ymax;
    }
    void list(std::int32_t operation, std::int32_t selection_mode, const std::vector<std::int32_t>& numbers) {
        state.deck.edit.operation = operation;
        state.deck.edit.selection_mode = selection_mode;
        state.deck.edit.list_count = static_cast<std::int32_t>(numbers.size());
        for (std::int32_t i = 1; i <= state.deck.edit.list_count; ++i)
            state.deck.edit.list[i] = numbers[static_cast<std::size_t>(i - 1)];
        selection = prepare_selection(state.deck.edit);
    }
    static void node(std::int32_t number, float x, float y) {
        state.mesh.x[NodeNumber(number)] = x;
        state.mesh.y[NodeNumber(number)] = y;
    }
    static ElementRecord element(std::int32_t number, const std::array<std::int32_t, 4>& corners) {
        ElementRecord e;
        e.number = ElementNumber(number);
        e.words.corner_1 = NodeNumber(corners[0]);
        e.words.corner_2 = NodeNumber(corners[1]);
        e.words.corner_3 = NodeNumber(corners[2]);
        e.words.corner_4 = NodeNumber(corners[3]);
        return e;
    }
};

TEST_F(SelectionCards, PointOnTheEdgeOfAWindowIsOutside) {
    window(1.0F, 2.0F, 3.0F, 4.0F);
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, 3.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 1.0F, 3.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 3.0F, 3.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, 2.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, 4.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 1.0F, 2.0F));
}

TEST_F(SelectionCards, PointNextToTheEdgeOfAWindowIsInside) {
    window(1.0F, 2.0F, 3.0F, 4.0F);
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(1), std::nextafter(1.0F, 2.0F), 3.0F));
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(1), std::nextafter(3.0F, 2.0F), 3.0F));
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, std::nextafter(2.0F, 3.0F)));
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, std::nextafter(4.0F, 3.0F)));
}

TEST_F(SelectionCards, WindowWithoutWidthHoldsNothing) {
    window(1.0F, 2.0F, 1.0F, 4.0F);
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 1.0F, 3.0F));
    window(3.0F, 2.0F, 1.0F, 4.0F);
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 2.0F, 3.0F));
}

TEST_F(SelectionCards, SideZeroTakesWhatIsInsideAndSideOneTheRest) {
    state.deck.edit.side = 0;
    EXPECT_TRUE(takes_side(state.deck.edit, true));
    EXPECT_FALSE(takes_side(state.deck.edit, false));
    state.deck.edit.side = 1;
    EXPECT_FALSE(takes_side(state.deck.edit, true));
    EXPECT_TRUE(takes_side(state.deck.edit, false));
}

TEST_F(SelectionCards, AnyOtherSideTakesNothing) {
    for (const std::int32_t side : {2, -1, 99}) {
        state.deck.edit.side = side;
        EXPECT_FALSE(takes_side(state.deck.edit, true)) << side;
        EXPECT_FALSE(takes_side(state.deck.edit, false)) << side;
    }
}

TEST_F(SelectionCards, ListOfNodesGoesByNumber) {
    list(1, 1, {3, -5});
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(2), 0.0F, 0.0F));
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(3), 0.0F, 0.0F));
    EXPECT_TRUE(node_inside(state.deck.edit, selection, NodeNumber(5), 0.0F, 0.0F));
    EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(6), 0.0F, 0.0F));
}

TEST_F(SelectionCards, ListOfElementsGoesByNumber) {
    for (const std::int32_t operation : {2, 3}) {
        SetUp();
        list(operation, 1, {7, -8});
        EXPECT_FALSE(element_inside(state.deck.edit, state.mesh, selection, ELEMENT_CONTINUUM,
                                    element(6, {1, 2, 3, 4})));
        EXPECT_TRUE(element_inside(state.deck.edit, state.mesh, selection, ELEMENT_CONTINUUM,
                                   element(7, {1, 2, 3, 4})));
        EXPECT_TRUE(
            element_inside(state.deck.edit, state.mesh, selection, ELEMENT_BEAM, element(8, {1, 2, 2, 1})));
        EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(7), 0.0F, 0.0F))
            << "the list names no nodes";
    }
}

TEST_F(SelectionCards, OtherKindsOfSelectionHoldNothing) {
    node(1, 0.0F, 0.0F);
    for (const std::int32_t selection_mode : {3, 4, -1}) {
        SetUp();
        list(1, selection_mode, {1, 2});
        EXPECT_FALSE(node_inside(state.deck.edit, selection, NodeNumber(1), 0.0F, 0.0F)) << selection_mode;
    }
    for (const std::int32_t selection_mode : {2, 3, 4, -1}) {
        SetUp();
        list(2, selection_mode, {1, 2});
        EXPECT_FALSE(element_inside(state.deck.edit, state.mesh, selection, ELEMENT_CONTINUUM,
                                    element(1, {1, 2, 3, 4})))
            << selection_mode;
    }
}

TEST_F(SelectionCards, MaterialsAreTakenAsTheyAreListed) {
    list(1, 3, {6, -8});
    EXPECT_TRUE(material_listed(state.deck.edit, MaterialNumber(6)));
    EXPECT_TRUE(material_listed(state.deck.edit, MaterialNumber(-8)));
    EXPECT_FALSE(material_listed(state.deck.edit, MaterialNumber(7)));
    EXPECT_FALSE(material_listed(state.deck.edit, MaterialNumber(8)));
    EXPECT_FALSE(material_listed(state.deck.edit, MaterialNumber(0)));
}

// The corners of a square of side 4 with its centre in (2, 2), and of the triangle below its diagonal.
class Centroid : public SelectionCards {
protected:
    void SetUp() override {
        SelectionCards::SetUp();
        node(1, 0.0F, 0.0F);
        node(2, 4.0F, 0.0F);
        node(3, 4.0F, 4.0F);
        node(4, 0.0F, 4.0F);
    }
    // True when a small window round the point holds the element.
    bool lies_at(float x, float y, std::int8_t type, const std::array<std::int32_t, 4>& corners) {
        constexpr float near = 0.01F;
        window(x - near, y - near, x + near, y + near);
        return element_inside(state.deck.edit, state.mesh, selection, type, element(9, corners));
    }
};

TEST_F(Centroid, OfAQuadrilateralIsTheMeanOfFourCorners) {
    EXPECT_TRUE(lies_at(2.0F, 2.0F, ELEMENT_CONTINUUM, {1, 2, 3, 4}));
}

TEST_F(Centroid, OfATriangleIsTheMeanOfThreeCorners) {
    EXPECT_TRUE(lies_at(8.0F / 3.0F, 4.0F / 3.0F, ELEMENT_CONTINUUM, {1, 2, 3, 0}));
}

TEST_F(Centroid, WithANegativeFourthCornerDividesThreeCornersByFour) {
    EXPECT_TRUE(lies_at(2.0F, 1.0F, ELEMENT_CONTINUUM, {1, 2, 3, -4}));
    EXPECT_FALSE(lies_at(8.0F / 3.0F, 4.0F / 3.0F, ELEMENT_CONTINUUM, {1, 2, 3, -4}));
}

TEST_F(Centroid, LeavesOutOtherCornersWithoutANode) {
    EXPECT_TRUE(lies_at(1.0F, 2.0F, ELEMENT_CONTINUUM, {1, 0, 3, 4}));
    EXPECT_TRUE(lies_at(4.0F / 3.0F, 4.0F / 3.0F, ELEMENT_CONTINUUM, {1, -2, 3, 0}));
}

TEST_F(Centroid, OfABeamOrTrussIsItsMidpoint) {
    EXPECT_TRUE(lies_at(2.0F, 0.0F, ELEMENT_BEAM, {1, 2, 2, 1}));
    EXPECT_TRUE(lies_at(4.0F, 2.0F, ELEMENT_TRUSS, {2, 3, 3, 2}));
}

TEST_F(Centroid, OnTheEdgeOfAWindowIsOutside) {
    window(2.0F, 0.0F, 4.0F, 4.0F);
    EXPECT_FALSE(
        element_inside(state.deck.edit, state.mesh, selection, ELEMENT_CONTINUUM, element(9, {1, 2, 3, 4})));
    window(1.0F, 0.0F, 4.0F, 4.0F);
    EXPECT_TRUE(
        element_inside(state.deck.edit, state.mesh, selection, ELEMENT_CONTINUUM, element(9, {1, 2, 3, 4})));
}

}  // namespace
}  // namespace brelan::test
