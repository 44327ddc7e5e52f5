// Holds free-field reads against tests/data/free_field.txt: each row is a file, and the values that two
// reads, one after the other, take from it.
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/state.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/run_end.h"

namespace brelan {
namespace {

constexpr int CHANNEL = 90;
constexpr std::string_view EXPECTED = "two reads of a row";
const std::string FILE_NAME = "row.txt";

// What a variable holds before a read: no row reads it, so it shows where nothing was read.
constexpr std::uint32_t KEPT = 0xBF000063U;

struct Row {
    int line;  // in the table
    std::array<std::string, 2> reads;
    std::string text;
    std::array<std::string, 2> outcomes;
};

using Table = std::map<std::string, std::vector<Row>, std::less<>>;  // rows by the heading they stand under

std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        ++i;
        if (text[i] == 'x') {
            unsigned code = 0;
            std::from_chars(text.data() + i + 1, text.data() + i + 3, code, 16);
            plain += static_cast<char>(code);
            i += 2;
        } else {
            plain += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i] == 't' ? '\t' : text[i];
        }
    }
    return plain;
}

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : line) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

// The sign of a zero does not count.
std::string with_plain_zeros(std::string values) {
    constexpr std::string_view MINUS_ZERO = "80000000";
    for (std::size_t at = 0; (at = values.find(MINUS_ZERO, at)) != std::string::npos; ++at)
        values[at] = '0';
    return values;
}

Table read_table() {
    Table table;
    std::ifstream file(TEST_DATA_DIR "/data/free_field.txt", std::ios::binary);
    EXPECT_TRUE(file.is_open());
    std::string heading;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.starts_with("## "))
            heading = line.substr(3);
        if (line.starts_with('#'))
            continue;
        const std::vector<std::string> parts = split(line, '|');
        const bool marked = parts.size() == 8 && parts[4] == "differs";
        const std::vector<std::string> reads = split(parts[0], ' ');
        if ((parts.size() != 4 && !marked) || reads.size() != 2) {
            ADD_FAILURE() << "free_field.txt:" << number << ": not a row: " << line;
            continue;
        }
        table[heading].push_back({number,
                                  {reads[0], reads[1]},
                                  parts[1],
                                  {with_plain_zeros(parts[2]), with_plain_zeros(parts[3])}});
    }
    return table;
}

const Table& table() {
    static const Table rows = read_table();
    return rows;
}

// The variables of one read, those at the same place being one of each kind.
struct Variables {
    static constexpr std::size_t MOST = 40;
    std::array<std::int32_t, MOST> integers{};
    std::array<float, MOST> reals{};

    Variables() {
        integers.fill(std::bit_cast<std::int32_t>(KEPT));
        reals.fill(std::bit_cast<float>(KEPT));
    }

    std::string shown(std::string_view kinds) const {
        std::string values;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const bool integer = kinds[i] == 'I';
            const auto bits =
                integer ? std::bit_cast<std::uint32_t>(integers[i]) : std::bit_cast<std::uint32_t>(reals[i]);
            std::array<char, 16> text{};
            if (bits == KEPT)
                text[0] = '_';
            else if (integer)
                std::snprintf(text.data(), text.size(), "%d", static_cast<int>(integers[i]));
            else
                std::snprintf(text.data(), text.size(), "%08X", static_cast<unsigned>(bits));
            values += (i > 0 ? " " : "");
            values += text.data();
        }
        return with_plain_zeros(values);
    }
};

// read_free of one variable for each letter of `kinds`.
template <class... Bound>
void read_single_variables(Channel& channel, std::string_view kinds, Variables& variables, Bound&... bound) {
    constexpr std::size_t COUNT = sizeof...(Bound);
    if constexpr (COUNT > 0) {
        if (kinds.size() == COUNT) {
            read_free(channel, EXPECTED, bound...);
            return;
        }
    }
    if constexpr (COUNT < 5) {
        if (kinds[COUNT] == 'I')
            read_single_variables(channel, kinds, variables, bound..., variables.integers[COUNT]);
        else
            read_single_variables(channel, kinds, variables, bound..., variables.reals[COUNT]);
    } else {
        ADD_FAILURE() << "too many variables: " << kinds;
    }
}

// One read as the table names it, "IRR" or "r5"; gives the values it leaves, or "ends the run".
std::string outcome(Channel& channel, const std::string& read) {
    Variables variables;
    std::string kinds = read;
    try {
        if (read[0] == 'i' || read[0] == 'r') {
            const auto count = static_cast<std::size_t>(std::stoi(read.substr(1)));
            kinds.assign(count, read[0] == 'i' ? 'I' : 'R');
            if (read[0] == 'i')
                read_free_list(channel, EXPECTED, std::span(variables.integers).first(count));
            else
                read_free_list(channel, EXPECTED, std::span(variables.reals).first(count));
        } else {
            read_single_variables(channel, kinds, variables);
        }
    } catch (const RunEnd& end) {
        EXPECT_EQ(end.status, STATUS_FAILED);
        EXPECT_NE(end.text.find(FILE_NAME), std::string::npos) << "the message names no file: " << end.text;
        EXPECT_NE(end.text.find(EXPECTED), std::string::npos)
            << "the message does not say what: " << end.text;
        return "ends the run";
    }
    return variables.shown(kinds);
}

std::string expected_outcome(const std::string& in_table) {
    return in_table == "error" || in_table == "end" ? "ends the run" : in_table;
}

struct Group {
    const char* heading;
    std::size_t least_rows;
};

constexpr Group GROUPS[] = {
    {"plain values", 26},
    {"values across lines, blanks, tabs, commas and line ends", 36},
    {"the lines run out", 12},
    {"a last line without an end", 20},
    {"nulls", 21},
    {"nulls at the beginning of a line", 14},
    {"repeats", 15},
    {"repeated nulls", 15},
    {"repeats over variables of both kinds", 8},
    {"faulty repeats", 24},
    {"slashes", 25},
    {"forms of reals", 42},
    {"digits and rounding of reals", 24},
    {"ends of the range", 53},
    {"fields that touch", 25},
    {"touching fields that are no two values", 15},
    {"an integer read takes an integer only", 10},
    {"no number", 70},
    {"faulty exponents", 25},
    {"no digit in the mantissa", 12},
    {"NaN and Inf", 14},
    {"semicolons", 5},
    {"lines drawn at random", 3000},
    {"reals drawn at random", 1500},
    {"repeats over variables of both kinds, drawn at random", 200},
    {"lines of fields that may touch", 400},
    {"written by E16.9 and read back", 400},
    {"half way between two reals", 480},
};

class FreeFieldTable : public ::testing::TestWithParam<Group> {
protected:
    // What both reads of a row leave.
    std::array<std::string, 2> outcomes(const Row& row) const {
        directory_.write(FILE_NAME, unescaped(row.text));
        std::array<std::string, 2> found{"-", "-"};
        Channel& channel = test::state.channels.open(CHANNEL, FILE_NAME, OpenStatus::old);
        for (std::size_t i = 0; i < 2 && row.reads[i] != "-"; ++i) {
            found[i] = outcome(channel, row.reads[i]);
            if (found[i] == "ends the run")
                break;
        }
        test::state.channels.close(CHANNEL);
        return found;
    }

private:
    test::WorkDirectory directory_;
};

TEST_P(FreeFieldTable, ReadsWhatTheTableHolds) {
    constexpr int SHOWN = 40;
    const Group& group = GetParam();
    const auto rows = table().find(group.heading);
    ASSERT_NE(rows, table().end()) << group.heading;
    EXPECT_GE(rows->second.size(), group.least_rows);
    int wrong = 0;
    for (const Row& row : rows->second) {
        SCOPED_TRACE("free_field.txt:" + std::to_string(row.line) + ": [" + row.text + "]");
        const std::array<std::string, 2> found = outcomes(row);
        for (std::size_t i = 0; i < 2; ++i) {
            if (found[i] == expected_outcome(row.outcomes[i]))
                continue;
            if (++wrong <= SHOWN)
                ADD_FAILURE() << (i == 0 ? "first" : "second") << " read " << row.reads[i] << "\n  found    "
                              << found[i] << "\n  expected " << row.outcomes[i];
        }
    }
    EXPECT_EQ(wrong, 0) << "reads under '" << group.heading << "' that give something else";
}

INSTANTIATE_TEST_SUITE_P(Groups, FreeFieldTable, ::testing::ValuesIn(GROUPS), [](const auto& tested) {
    std::string name;
    for (const char* c = tested.param.heading; *c != '\0'; ++c) {
        if (*c == ' ')
            name += '_';
        else if (*c != ',' && *c != '.')
            name += *c;
    }
    return name;
});

TEST(FreeFieldTableFile, HasNoGroupThatIsNotTested) {
    for (const auto& [heading, rows] : table()) {
        bool tested = false;
        for (const Group& group : GROUPS)
            tested = tested || heading == group.heading;
        EXPECT_TRUE(tested) << heading;
    }
}

}  // namespace
}  // namespace brelan
