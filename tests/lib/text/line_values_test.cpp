#include "text/line_values.h"

#include <gtest/gtest.h>

#include <string>

namespace brelan::test {
namespace {

// A text that begins in a column.
std::string at_column(std::size_t column, std::string_view text) {
    return std::string(column - 1, ' ').append(text);
}

std::int32_t count_of(std::string_view line) {
    return count_values(TextLine(line)).count;
}

TEST(LineValues, BlanksAndCommasSeparateInAnyNumber) {
    EXPECT_EQ(count_of("1 2 3"), 3);
    EXPECT_EQ(count_of("1,2,3"), 3);
    EXPECT_EQ(count_of("  1 , 2 ,, 3 , "), 3);
    EXPECT_EQ(count_of("7"), 1);
    EXPECT_EQ(count_of(""), 0);
    EXPECT_EQ(count_of(" ,, , "), 0);
}

TEST(LineValues, LastColumnIsTheEndOfTheLastValue) {
    EXPECT_EQ(count_values(TextLine("7")).last_column, 1);
    EXPECT_EQ(count_values(TextLine("  1 , 22 , ")).last_column, 8);
    EXPECT_EQ(count_values(TextLine("")).last_column, 0);
    EXPECT_EQ(count_values(TextLine(at_column(120, "123456"))).last_column, 125);
}

TEST(LineValues, TabDoesNotSeparateInTheCount) {
    EXPECT_EQ(count_of("1\t2"), 1);
    EXPECT_EQ(count_of("1\t 2"), 2);
    EXPECT_EQ(count_of("\t"), 1);
}

TEST(LineValues, ValueInColumn126AloneDoesNotCount) {
    EXPECT_EQ(count_of("1" + at_column(125, "5")), 1);
    EXPECT_EQ(count_of(at_column(126, "5")), 0);
}

TEST(LineValues, LineWithoutASeparatorHasNoValue) {
    EXPECT_EQ(count_of(std::string(126, '1')), 0);
    EXPECT_EQ(count_of(std::string(125, '1')), 1);
}

}  // namespace
}  // namespace brelan::test
