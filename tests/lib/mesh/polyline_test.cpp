// Which nodes lie on a polyline, and in which order.
#include "mesh/polyline_selection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "mesh/tables.h"
#include "support/numbers.h"

namespace brelan::test {
namespace {

using Numbers = std::vector<std::int32_t>;

float above(float value) {
    return std::nextafter(value, INFINITY);
}
float below(float value) {
    return std::nextafter(value, -INFINITY);
}

class Polyline : public ::testing::Test {
protected:
    void SetUp() override { clear(); }

    static inline NodePlaces places;

    static void clear() { places = {}; }
    static void node(std::int32_t number, float x, float y) {
        places.x[NodeNumber(number)] = x;
        places.y[NodeNumber(number)] = y;
        places.given[NodeNumber(number)] = 1;
    }
    static Numbers selected(const Numbers& points) {
        return values_of(select_polyline(places, node_numbers(points)));
    }

    // Nodes 1 and 2 of a line from (0, 0) to (10, 0).
    static void long_line() {
        node(1, 0.0F, 0.0F);
        node(2, 10.0F, 0.0F);
    }
    // True when a node at the point lies on the line of nodes 1 and 2.
    static bool on_long_line(float x, float y) {
        clear();
        long_line();
        node(7, x, y);
        const Numbers found = selected({1, 2});
        return std::find(found.begin(), found.end(), 7) != found.end();
    }
};

TEST_F(Polyline, TakesTheNodesBetweenItsPoints) {
    long_line();
    node(5, 4.0F, 0.0F);
    node(6, 4.0F, 1.0F);
    EXPECT_EQ(selected({1, 2}), (Numbers{1, 5, 2}));
}

TEST_F(Polyline, PassesOverNodesThatAreNotInUse) {
    long_line();
    node(5, 4.0F, 0.0F);
    places.given[NodeNumber(5)] = 0;
    EXPECT_EQ(selected({1, 2}), (Numbers{1, 2}));
}

// --- limits ------------------------------------------------------------------------------------------------

TEST_F(Polyline, DistanceFromTheLineMayReachItsLimit) {
    EXPECT_TRUE(on_long_line(5.0F, 0.001F));
    EXPECT_TRUE(on_long_line(5.0F, -0.001F));
    EXPECT_FALSE(on_long_line(5.0F, above(0.001F)));
    EXPECT_FALSE(on_long_line(5.0F, below(-0.001F)));
}

TEST_F(Polyline, NodeBeyondTheStartMayReachTheLimit) {
    EXPECT_TRUE(on_long_line(-0.001F, 0.0F));
    EXPECT_FALSE(on_long_line(below(-0.001F), 0.0F));
}

TEST_F(Polyline, NodeBeyondTheEndMayReachTheLimit) {
    const float limit = 10.0F + 0.001F;
    EXPECT_TRUE(on_long_line(10.0005F, 0.0F));
    EXPECT_TRUE(on_long_line(limit, 0.0F));
    EXPECT_FALSE(on_long_line(above(limit), 0.0F));
}

TEST_F(Polyline, NodeBesideTheLineAndBeyondItsEndIsStillSelected) {
    EXPECT_TRUE(on_long_line(10.0005F, 0.0009F));
    EXPECT_TRUE(on_long_line(-0.0009F, -0.001F));
}

TEST_F(Polyline, LimitsAreMeasuredAlongASlantedLineToo) {
    // A line of length 5 in the direction (0.6, 0.8); (-0.8, 0.6) points away from it.
    const auto on_slanted = [](float along, float aside) {
        clear();
        node(1, 0.0F, 0.0F);
        node(2, 3.0F, 4.0F);
        node(7, 0.6F * along - 0.8F * aside, 0.8F * along + 0.6F * aside);
        return selected({1, 2}).size() == 3;
    };
    EXPECT_TRUE(on_slanted(2.5F, 0.0F));
    EXPECT_TRUE(on_slanted(2.5F, 0.0009F));
    EXPECT_FALSE(on_slanted(2.5F, 0.0011F));
    EXPECT_TRUE(on_slanted(5.0009F, 0.0F));
    EXPECT_FALSE(on_slanted(5.0011F, 0.0F));
    EXPECT_TRUE(on_slanted(-0.0009F, 0.0F));
    EXPECT_FALSE(on_slanted(-0.0011F, 0.0F));
}

// --- short segments ----------------------------------------------------------------------------------------

TEST_F(Polyline, SegmentThatIsTooShortIsSkipped) {
    node(1, 0.0F, 0.0F);
    node(2, 0.0009F, 0.0F);  // squared length 8.1E-7
    EXPECT_EQ(selected({1, 2}), Numbers{});
}

TEST_F(Polyline, SegmentOfTheShortestLengthCounts) {
    node(1, 0.0F, 0.0F);
    node(2, 0.001F, 0.0F);  // its square is just above 1.0E-6 in 32 bits
    EXPECT_EQ(selected({1, 2}), (Numbers{1, 2}));
}

TEST_F(Polyline, SkippedSegmentDoesNotEndTheLine) {
    node(1, 0.0F, 0.0F);
    node(2, 0.0F, 0.0F);
    node(3, 1.0F, 0.0F);
    EXPECT_EQ(selected({1, 2, 3}), (Numbers{1, 2, 3}));
}

TEST_F(Polyline, WithoutASegmentSelectsNothing) {
    long_line();
    EXPECT_EQ(selected({1}), Numbers{});
    EXPECT_EQ(selected({}), Numbers{});
    EXPECT_EQ(selected({1, 1}), Numbers{});
}

// --- order -------------------------------------------------------------------------------------------------

TEST_F(Polyline, NodesAreOrderedAlongTheLine) {
    long_line();
    node(3, 7.0F, 0.0F);
    node(4, 2.0F, 0.0F);
    node(5, 9.0F, 0.0F);
    EXPECT_EQ(selected({1, 2}), (Numbers{1, 4, 3, 5, 2}));
    EXPECT_EQ(selected({2, 1}), (Numbers{2, 5, 3, 4, 1}));
}

TEST_F(Polyline, NodesAtTheSamePlaceComeInAscendingNumber) {
    long_line();
    node(9, 5.0F, -0.0005F);
    node(8, 5.0F, 0.0005F);
    node(7, 5.0F, 0.0F);
    EXPECT_EQ(selected({1, 2}), (Numbers{1, 7, 8, 9, 2}));
}

TEST_F(Polyline, FirstSegmentClaimsTheNodeOfACorner) {
    long_line();
    node(3, 10.0F, 10.0F);
    node(4, 10.0F, 5.0F);
    node(5, 5.0F, 0.0F);
    EXPECT_EQ(selected({1, 2, 3}), (Numbers{1, 5, 2, 4, 3}));
}

TEST_F(Polyline, WayBackClaimsNothingAgain) {
    long_line();
    node(5, 5.0F, 0.0F);
    EXPECT_EQ(selected({1, 2, 1}), (Numbers{1, 5, 2}));
}

TEST_F(Polyline, ClosedLineTakesItsFirstPointOnce) {
    node(1, 0.0F, 0.0F);
    node(2, 4.0F, 0.0F);
    node(3, 4.0F, 4.0F);
    node(4, 0.0F, 4.0F);
    node(5, 0.0F, 2.0F);
    node(6, 2.0F, 2.0F);
    EXPECT_EQ(selected({1, 2, 3, 4, 1}), (Numbers{1, 2, 3, 4, 5}));
}

TEST_F(Polyline, SegmentsComeInTheOrderOfTheLine) {
    // Number 1 lies on the second segment only.
    node(9, 0.0F, 0.0F);
    node(8, 10.0F, 0.0F);
    node(7, 10.0F, 10.0F);
    node(1, 10.0F, 5.0F);
    EXPECT_EQ(selected({9, 8, 7}), (Numbers{9, 8, 1, 7}));
}

TEST_F(Polyline, NodeAtTheStartIsPlacedByItsSquaredDistance) {
    // Within 0.001 of the start the place is the squared distance, which is never negative: node 3, a little
    // in front of the start, comes behind it. Node 4 lies just outside that reach and comes first.
    long_line();
    node(3, -0.0009F, 0.0F);
    node(4, -0.001F, 0.0F);
    EXPECT_EQ(selected({1, 2}), (Numbers{4, 1, 3, 2}));
}

TEST_F(Polyline, NumbersUpToTheHighestAreTaken) {
    node(99990, 0.0F, 0.0F);
    node(99989, 1.0F, 0.0F);
    node(99988, 0.5F, 0.0F);
    EXPECT_EQ(selected({99990, 99989}), (Numbers{99990, 99988, 99989}));
}

}  // namespace
}  // namespace brelan::test
