#include "mesh/few.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <span>
#include <vector>

namespace brelan {
namespace {

using FewNumbers = Few<int, 3>;

FewNumbers numbers_to(int last) {
    FewNumbers numbers;
    for (int i = 1; i <= last; ++i)
        numbers.push_back(i);
    return numbers;
}

std::vector<int> all_of(const FewNumbers& numbers) {
    return {numbers.begin(), numbers.end()};
}

TEST(Few, holds_more_than_it_has_room_for_in_order) {
    EXPECT_TRUE(FewNumbers().empty());
    EXPECT_EQ(all_of(numbers_to(3)), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(all_of(numbers_to(5)), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(numbers_to(5).size(), 5U);
}

TEST(Few, is_a_range_that_is_sorted_and_seen_as_a_span) {
    for (const int last : {2, 4}) {
        FewNumbers numbers = numbers_to(last);
        std::reverse(numbers.begin(), numbers.end());
        EXPECT_EQ(numbers[0], last);
        std::sort(numbers.begin(), numbers.end());
        const std::span<const int> seen = numbers;
        EXPECT_EQ(std::accumulate(seen.begin(), seen.end(), 0), last == 2 ? 3 : 10);
        EXPECT_EQ(seen.front(), 1);
    }
}

TEST(Few, equals_what_has_the_same_entries) {
    EXPECT_TRUE(numbers_to(2) == numbers_to(2));
    EXPECT_TRUE(numbers_to(4) == numbers_to(4));
    EXPECT_FALSE(numbers_to(2) == numbers_to(4));
    FewNumbers other = numbers_to(2);
    other[1] = 5;
    EXPECT_FALSE(other == numbers_to(2));
}

}  // namespace
}  // namespace brelan
