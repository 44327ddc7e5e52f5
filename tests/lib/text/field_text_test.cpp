// Holds the fields that the channel layer writes against the chosen values of tests/data/field_text.txt.
// Random ones are held against an exact calculation (tests/lib/text/number_text_test.cpp).
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "text/number_text.h"

namespace brelan {
namespace {

struct Row {
    int line;  // in the table
    std::string value;
    std::string text;
};

using Table = std::map<std::string, std::vector<Row>, std::less<>>;  // rows by layout

// A row is "layout value|text" or "layout value|text|differs|text of another run-time".
Table read_table() {
    Table table;
    std::ifstream file(TEST_DATA_DIR "/data/field_text.txt");
    EXPECT_TRUE(file.is_open());
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.starts_with('#'))
            continue;
        const std::size_t blank = line.find(' ');
        const std::size_t bar = line.find('|');
        if (blank == std::string::npos || bar == std::string::npos || blank > bar) {
            ADD_FAILURE() << "field_text.txt:" << number << ": not a row: " << line;
            continue;
        }
        const std::string_view rest = std::string_view(line).substr(bar + 1);
        table[line.substr(0, blank)].push_back(
            {number, line.substr(blank + 1, bar - blank - 1), std::string(rest.substr(0, rest.find('|')))});
    }
    return table;
}

const Table& table() {
    static const Table rows = read_table();
    return rows;
}

template <class Number>
Number number_of(std::string_view text, int base) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    EXPECT_TRUE(error == std::errc{} && end == text.data() + text.size()) << "not a number: " << text;
    return value;
}

enum class Edit { integer, exponent, scientific, fixed };

struct Layout {
    const char* name;
    Edit edit;
    int width;
    int digits;
    std::size_t least_rows;
};

std::string written(const Layout& layout, std::string_view value) {
    constexpr char GUARD = '#';
    const auto width = static_cast<std::size_t>(layout.width);
    std::string field(width + 2, GUARD);
    char* const at = field.data() + 1;
    if (layout.edit == Edit::integer) {
        put_integer(at, layout.width, number_of<std::int32_t>(value, 10));
    } else {
        const auto real = std::bit_cast<float>(number_of<std::uint32_t>(value, 16));
        if (layout.edit == Edit::exponent)
            put_exponent(at, layout.width, layout.digits, real);
        else if (layout.edit == Edit::scientific)
            put_scientific(at, layout.width, layout.digits, real);
        else
            put_fixed(at, layout.width, layout.digits, real);
    }
    EXPECT_TRUE(field.front() == GUARD && field.back() == GUARD) << "written beside the field: " << field;
    return field.substr(1, width);
}

constexpr Layout LAYOUTS[] = {
    {"I1", Edit::integer, 1, 0, 90},       {"I2", Edit::integer, 2, 0, 90},
    {"I3", Edit::integer, 3, 0, 90},       {"I5", Edit::integer, 5, 0, 90},
    {"I6", Edit::integer, 6, 0, 90},       {"I10", Edit::integer, 10, 0, 90},
    {"I11", Edit::integer, 11, 0, 90},     {"E11.4", Edit::exponent, 11, 4, 315},
    {"E12.5", Edit::exponent, 12, 5, 321}, {"E13.6", Edit::exponent, 13, 6, 324},
    {"E16.9", Edit::exponent, 16, 9, 327}, {"ES12.5", Edit::scientific, 12, 5, 324},
    {"F6.2", Edit::fixed, 6, 2, 465},      {"F10.3", Edit::fixed, 10, 3, 465},
};

class FieldText : public ::testing::TestWithParam<Layout> {};

TEST_P(FieldText, IsWhatTheTableHolds) {
    constexpr int SHOWN = 30;
    const Layout& layout = GetParam();
    const auto rows = table().find(layout.name);
    ASSERT_NE(rows, table().end());
    EXPECT_GE(rows->second.size(), layout.least_rows);
    int wrong = 0;
    for (const Row& row : rows->second) {
        ASSERT_EQ(row.text.size(), static_cast<std::size_t>(layout.width)) << "field_text.txt:" << row.line;
        const std::string text = written(layout, row.value);
        if (text != row.text && ++wrong <= SHOWN)
            ADD_FAILURE() << "field_text.txt:" << row.line << ": " << layout.name << " of " << row.value
                          << "\n  written  [" << text << "]\n  expected [" << row.text << "]";
    }
    EXPECT_EQ(wrong, 0) << "rows of " << layout.name << " that are written in another way";
}

INSTANTIATE_TEST_SUITE_P(Layouts, FieldText, ::testing::ValuesIn(LAYOUTS), [](const auto& tested) {
    std::string name = tested.param.name;
    for (char& c : name)
        if (c == '.')
            c = '_';
    return name;
});

TEST(FieldTextTable, HasNoLayoutThatIsNotTested) {
    for (const auto& [name, rows] : table()) {
        bool tested = false;
        for (const Layout& layout : LAYOUTS)
            tested = tested || name == layout.name;
        EXPECT_TRUE(tested) << name;
    }
}

}  // namespace
}  // namespace brelan
