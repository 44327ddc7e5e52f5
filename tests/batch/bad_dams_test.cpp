// Dams whose cards hold values that make no sense: each run ends by itself, finished, stopped or with one
// message.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/campaign.h"
#include "support/dam.h"

namespace brelan::test {
namespace {

const char* const VALUES[] = {"0",      "-1",    "1",      "1E-30",  "-1E-30", "1E30", "-1E30", "1E-3",
                              "12345",  "99999", "-99999", "100000", "2",      "3",    "0.4",   "19.999",
                              "3.4E38", "98",    "99",     "1000",   "40",     "text", ",,",    ""};

// A value or two of the cards replaced.
std::string mutated(std::string deck, std::mt19937& random) {
    std::vector<std::string> lines = lines_of(deck);
    const auto below = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    const std::size_t changes = 1 + below(2);
    for (std::size_t change = 0; change < changes; ++change) {
        std::string& line = lines[3 + 2 * below((lines.size() - 2) / 2)];
        std::istringstream words(line);
        std::vector<std::string> values{std::istream_iterator<std::string>(words), {}};
        if (values.empty())
            continue;
        values[below(values.size())] = VALUES[below(std::size(VALUES))];
        line.clear();
        for (const std::string& value : values)
            line += " " + value;
    }
    return text_of(lines);
}

TEST(HostileDam, EndsByItself) {
    std::mt19937 random(20261);
    DamInput dam;
    dam.HDAM = 6.0;
    dam.RUNL = dam.RUNR = dam.WLEFT = dam.WRIGHT = 12.0;
    dam.crest = dam.WMID = 6.0;
    dam.layers = {2.0, 3.0};
    dam.XLEFT = dam.XRIGHT = 8.0;
    dam.core = {{14.0, 0.0}, {16.0, 0.0}, {15.5, 5.0}, {14.5, 5.0}};
    dam.wall = {{14.0, 0.0}, {14.0, -3.0}, {16.0, -3.0}, {16.0, 0.0}};
    const int decks = rounds(60, 300);
    int finished = 0, refused = 0;
    for (int i = 0; i < decks; ++i) {
        dam.ISHELL = i % 2;
        const Kind kind = ALL_KINDS.at(static_cast<std::size_t>(i / 2) % ALL_KINDS.size());
        const Project project(kind);
        install_dam_files(project, kind);
        const std::string deck = mutated(dam.deck(), random);
        project.deck(deck);
        const RunResult result = project.run();
        EXPECT_FALSE(result.timed_out) << deck;
        EXPECT_EQ(result.signal, 0) << deck;
        EXPECT_TRUE(result.status >= 0 && result.status <= 2) << result.status << "\n" << deck;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), result.status == 2 ? 1 : 0)
            << result.err << deck;
        finished += result.status == 0 ? 1 : 0;
        refused += result.status != 0 ? 1 : 0;
    }
    // Both happen, or the mutations test nothing.
    EXPECT_GT(finished, decks / 10);
    EXPECT_GT(refused, decks / 3);
}

}  // namespace
}  // namespace brelan::test
