// Tables of fixed size: every access is checked, at both ends and beyond.
#include "mesh/table.h"

#include <limits>

#include "mesh/tables.h"
#include "plane/point.h"
#include "support/state.h"

namespace brelan::test {
namespace {

constexpr std::int32_t LOWEST = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t HIGHEST = std::numeric_limits<std::int32_t>::max();

using Small = Table<std::int32_t, 3, "SMALL">;

TEST(CheckedTable, HoldsTheNumbersFromOneToItsSize) {
    Small table;
    for (const std::int32_t number : {1, 2, 3})
        table[number] = 10 * number;
    const Small& read_only = table;
    EXPECT_EQ(read_only[1], 10);
    EXPECT_EQ(read_only[2], 20);
    EXPECT_EQ(read_only[3], 30);
    EXPECT_EQ(Small::SIZE, 3);
}

TEST(CheckedTable, BeginsEmpty) {
    const Small table;
    EXPECT_EQ(table[1], 0);
    EXPECT_EQ(table[3], 0);
}

TEST(CheckedTable, IsFilledFromEndToEnd) {
    Small table;
    table.fill(-1);
    EXPECT_EQ(table[1], -1);
    EXPECT_EQ(table[2], -1);
    EXPECT_EQ(table[3], -1);
}

TEST(CheckedTable, AccessOutsideNamesTheTableAndTheNumber) {
    Small table;
    const Small& read_only = table;
    EXPECT_EQ(failure_of([&] { table[0] = 1; }), "table SMALL: number 0 is outside 1 to 3");
    EXPECT_EQ(failure_of([&] { table[4] = 1; }), "table SMALL: number 4 is outside 1 to 3");
    EXPECT_EQ(failure_of([&] { static_cast<void>(read_only[0]); }),
              "table SMALL: number 0 is outside 1 to 3");
    EXPECT_EQ(failure_of([&] { static_cast<void>(read_only[4]); }),
              "table SMALL: number 4 is outside 1 to 3");
}

TEST(CheckedTable, NumbersFarOutsideDoNotWrapRound) {
    Small table;
    EXPECT_EQ(failure_of([&] { table[-1] = 1; }), "table SMALL: number -1 is outside 1 to 3");
    EXPECT_EQ(failure_of([&] { table[LOWEST] = 1; }), "table SMALL: number -2147483648 is outside 1 to 3");
    EXPECT_EQ(failure_of([&] { table[HIGHEST] = 1; }), "table SMALL: number 2147483647 is outside 1 to 3");
}

TEST(CheckedTable, NodeAndElementTablesEndAtTheirLimits) {
    static_assert(HIGHEST_NODE_NUMBER == 99990 && HIGHEST_ELEMENT_NUMBER == 99990);
    state.mesh.x[NodeNumber(1)] = 0.0F;
    state.mesh.x[NodeNumber(99990)] = 0.0F;
    state.mesh.words[ElementNumber(99990)] = ElementWords{};
    EXPECT_EQ(failure_of([] { state.mesh.x[NodeNumber(99991)] = 1.0F; }),
              "table XC: number 99991 is outside 1 to 99990");
    EXPECT_EQ(failure_of([] { state.mesh.words[ElementNumber(0)].corner_1 = NodeNumber(1); }),
              "table IEL: number 0 is outside 1 to 99990");
    EXPECT_EQ(failure_of([] { state.mesh.type_in_use[ElementNumber(-5)] = 1; }),
              "table EACT1: number -5 is outside 1 to 99990");
}

TEST(CheckedTable, LimitsAreThoseOfThePackage) {
    EXPECT_EQ(NO_LOWEST_NUMBER, 100000);
    EXPECT_EQ(MOST_REBUILD_ROWS, 100);
    EXPECT_EQ(MOST_COPIED_LINES, 320000);
}

TEST(PlaneDistance, IsThatOfThePlane) {
    EXPECT_EQ(distance_between(1.0F, 2.0F, 4.0F, 6.0F), 5.0F);
    EXPECT_EQ(distance_between(4.0F, 6.0F, 1.0F, 2.0F), 5.0F);
    EXPECT_EQ(distance_between(-1.5F, 2.0F, -1.5F, 2.0F), 0.0F);
    EXPECT_EQ(distance_between(0.0F, 0.0F, -0.25F, 0.0F), 0.25F);
}

}  // namespace
}  // namespace brelan::test
