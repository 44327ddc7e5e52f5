// Numbers of nodes, elements and materials: what must not compile is asked here by the compiler.
#include "mesh/numbers.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <unordered_set>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "support/numbers.h"

namespace brelan::test {
namespace {

template <class... Numbers>
constexpr bool ARE_ONE_WORD = ((sizeof(Numbers) == sizeof(std::int32_t) &&
                                std::is_trivially_copyable_v<Numbers> && STARTS_AS_ZEROS<Numbers>)&&...);
static_assert(ARE_ONE_WORD<NodeNumber, ElementNumber, MaterialNumber>);
static_assert(STARTS_AS_ZEROS<ElementWords> && sizeof(ElementWords) == 9 * sizeof(std::int32_t));

// None becomes another, nor an integer, nor an integer one of them unless it is said.
template <class From, class To>
constexpr bool BECOMES = std::is_convertible_v<From, To>;
template <class From, class To>
constexpr bool CAN_BE_MADE = std::is_constructible_v<To, From>;
static_assert(!CAN_BE_MADE<NodeNumber, ElementNumber> && !CAN_BE_MADE<ElementNumber, NodeNumber>);
static_assert(!CAN_BE_MADE<NodeNumber, MaterialNumber> && !CAN_BE_MADE<MaterialNumber, NodeNumber>);
static_assert(!CAN_BE_MADE<ElementNumber, MaterialNumber> && !CAN_BE_MADE<MaterialNumber, ElementNumber>);
static_assert(!CAN_BE_MADE<NodeNumber, std::int32_t> && !CAN_BE_MADE<MaterialNumber, bool>);
static_assert(CAN_BE_MADE<std::int32_t, NodeNumber> && !BECOMES<std::int32_t, NodeNumber>);

template <class Left, class Right>
constexpr bool COMPARE = requires(Left left, Right right) {
    left == right;
};
static_assert(COMPARE<NodeNumber, NodeNumber> && !COMPARE<NodeNumber, ElementNumber>);
static_assert(!COMPARE<NodeNumber, std::int32_t> && !COMPARE<ElementNumber, MaterialNumber>);

// A table takes the numbers that it is made for alone; what is no table of the mesh takes plain places.
template <class Tables, class Index>
constexpr bool IS_ASKED_FOR = requires(Tables& table, Index index) {
    table[index];
};
static_assert(IS_ASKED_FOR<decltype(brelan::Mesh::x), NodeNumber> &&
              !IS_ASKED_FOR<decltype(brelan::Mesh::x), ElementNumber>);
static_assert(!IS_ASKED_FOR<decltype(brelan::Mesh::x), std::int32_t>);
static_assert(IS_ASKED_FOR<decltype(brelan::Mesh::words), ElementNumber>);
static_assert(!IS_ASKED_FOR<decltype(brelan::Mesh::words), NodeNumber>);
static_assert(!IS_ASKED_FOR<decltype(brelan::Mesh::words), MaterialNumber>);
static_assert(IS_ASKED_FOR<NodeNumbers, NodeNumber> && !IS_ASKED_FOR<NodeNumbers, std::int32_t>);
static_assert(IS_ASKED_FOR<decltype(EditCards::list), std::int32_t>);
static_assert(!IS_ASKED_FOR<decltype(EditCards::list), NodeNumber>);

// Rows by one kind of number, entries by another.
using Pairs = RowTable<float, NodeNumber{2}, "NODES", ElementNumber{3}, "ELEMENTS">;
static_assert(IS_ASKED_FOR<Pairs, NodeNumber> && !IS_ASKED_FOR<Pairs, ElementNumber>);
static_assert(IS_ASKED_FOR<Pairs::Row<float>, ElementNumber> && !IS_ASKED_FOR<Pairs::Row<float>, NodeNumber>);

TEST(MeshNumbers, BeginWithNoneAndNameOneAboveZero) {
    EXPECT_EQ(NodeNumber().value, 0);
    EXPECT_TRUE(NodeNumber().is_none());
    EXPECT_TRUE(NodeNumber(-3).is_none());
    EXPECT_FALSE(NodeNumber(-3).names_one());
    EXPECT_TRUE(NodeNumber(1).names_one());
    EXPECT_FALSE(NodeNumber(1).is_none());
}

TEST(MeshNumbers, AreCountedOnAndCompared) {
    ElementNumber e(7);
    EXPECT_EQ(++e, ElementNumber(8));
    EXPECT_EQ(--e, ElementNumber(7));
    EXPECT_EQ(e + 5, ElementNumber(12));
    EXPECT_EQ(ElementNumber(12) - e, 5);
    EXPECT_EQ(e.place(), 7U);
    EXPECT_LT(ElementNumber(-1), ElementNumber(0));
    EXPECT_LE(LAST_ELEMENT, ElementNumber(99990));
}

TEST(MeshNumbers, AreHiddenByTheirSignAndComeBack) {
    EXPECT_EQ(NodeNumber(5).hidden(), NodeNumber(-5));
    EXPECT_EQ(NodeNumber(-5).in_sight(), NodeNumber(5));
    EXPECT_EQ(NodeNumber(5).in_sight(), NodeNumber(5));
}

TEST(MeshNumbers, AreShownAsTheyStandInRecords) {
    EXPECT_EQ(to_string(MaterialNumber(-12)), "-12");
    EXPECT_EQ(values_of(node_numbers({3, 0, 99990})), (std::vector<std::int32_t>{3, 0, 99990}));
}

TEST(MeshNumbers, StandInSetsWithoutOrder) {
    const std::unordered_set<ElementNumber> set{ElementNumber(3), ElementNumber(3), ElementNumber(4)};
    EXPECT_EQ(set.size(), 2U);
}

TEST(MeshNumbers, RowsAndEntriesOfATableAreApart) {
    Pairs pairs;
    pairs[NodeNumber(2)][ElementNumber(3)] = 1.5F;
    EXPECT_EQ(pairs[NodeNumber(2)][ElementNumber(3)], 1.5F);
    EXPECT_EQ(pairs[NodeNumber(1)][ElementNumber(3)], 0.0F);
}

}  // namespace
}  // namespace brelan::test
