#include "mesh/by_number.h"

#include <gtest/gtest.h>

#include <utility>

namespace brelan {
namespace {

TEST(ByNumber, entries_that_nobody_set_are_as_they_were_first) {
    ByNumber<int> list(-1);
    list[7] = 3;
    EXPECT_EQ(list[7], 3);
    EXPECT_EQ(list[0], -1);
    EXPECT_EQ(std::as_const(list)[99990], -1);
}

TEST(ByNumber, is_no_longer_than_it_has_to_be) {
    ByNumber<int> list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(std::as_const(list)[99990], 0);
    EXPECT_TRUE(list.empty());  // to look does not make it longer
    list[4] = 1;
    EXPECT_EQ(list.size(), 5U);
    list[5] = 2;
    EXPECT_EQ(list.size(), 10U);  // twice as long: to grow costs no more than to fill it
    EXPECT_EQ(list[4], 1);
    list.clear();
    EXPECT_EQ(std::as_const(list)[4], 0);
}

TEST(ByNumber, what_it_holds_keeps_its_place_in_memory_while_it_grows) {
    ByNumber<std::vector<int>> list;
    list[1] = {1, 2, 3};
    const int* const first = list[1].data();
    list[1000].push_back(4);
    EXPECT_EQ(list[1].data(), first);
}

}  // namespace
}  // namespace brelan
