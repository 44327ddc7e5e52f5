// Damaged decks and meshes: a few bytes changed, lost or doubled, as a careless edit, a broken transfer or a
// bad disk leaves them. Nothing is known about the right answer of such a run but this: it ends by itself
// with one of the three statuses, says what it has to say in the way of that status, and leaves the user's
// files alone. The damage comes from fixed seeds, so a failure can be repeated by its number.

#include "support/campaign.h"
#include "support/mesh.h"
#include "support/project.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ostream>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace brelan::test {
namespace {

constexpr unsigned FIRST_SEED = 41000;
constexpr std::chrono::seconds TIME_LIMIT{20};

// The plain engine without a distribution: the sequence is the same with every library.
class Chance {
public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return engine_() % limit; }

    char byte() { return static_cast<char>(engine_() % 256); }

    template <class T, std::size_t N>
    const T& one_of(const std::array<T, N>& choices) {
        return choices[below(N)];
    }

private:
    std::mt19937 engine_;
};

// What damages a number, a line or a section more often than a random byte does.
const std::array<std::string, 24> PIECES = {
    "-",    "+",     ".",  ",",  "\n",  "\n\n",  " ",    "*",  "\n*",  "/",          "3*",  "0",
    "1e39", "99991", "-1", "1E", "NaN", "*****", "\r\n", "\t", "D+05", "2147483648", "0.5", "-10000"};

// One act of damage.
void damage(std::string& text, Chance& chance) {
    if (text.empty())
        return;
    const std::size_t place = chance.below(text.size());
    switch (chance.below(8)) {
        case 0:
            text[place] = chance.byte();
            break;
        case 1:
            text[place] = static_cast<char>('0' + chance.below(10));
            break;
        case 2:
            text.insert(place, chance.one_of(PIECES));
            break;
        case 3:
            text.erase(place, 1 + chance.below(6));
            break;
        case 4:
            text.resize(place);
            break;
        case 5: {  // a line goes
            const std::size_t start =
                text.rfind('\n', place) == std::string::npos ? 0 : text.rfind('\n', place) + 1;
            const std::size_t end = text.find('\n', place);
            text.erase(start, end == std::string::npos ? end : end + 1 - std::min(start, end));
            break;
        }
        case 6: {  // a piece stands twice
            const std::string piece = text.substr(place, 1 + chance.below(80));
            text.insert(place, piece);
            break;
        }
        default: {  // two bytes change places
            std::swap(text[place], text[chance.below(text.size())]);
            break;
        }
    }
}

std::string damaged(std::string text, Chance& chance) {
    for (std::size_t acts = 1 + chance.below(3); acts > 0; --acts)
        damage(text, chance);
    return text;
}

std::vector<std::string> cards_of(std::size_t choice, Kind kind) {
    const std::string codes = kind == Kind::coupled        ? "1 1 1 1 1"
                              : kind == Kind::displacement ? "1 1 1"
                                                           : "1 1";
    const auto edit = [](const std::vector<std::string>& more) {
        std::vector<std::string> cards{"1 0", "mesh.Mes", "out.Mes", "11 21 31 41"};
        cards.insert(cards.end(), more.begin(), more.end());
        return cards;
    };
    switch (choice) {
        case 0:
            return edit({"0", "1 0 2.5 -3", "-1 1"});
        case 1:
            return edit({"1", "0", "-1 -1 1.5 2", "0", codes});
        case 2:
            return edit({"1", "1", "4", "1 -3 5 7", "1", codes});
        case 3:
            return edit({"1", "2", "3", "4 6 7", "0", codes});
        case 4:
            return edit({"1", "3", "2", "1 2", "0", codes});
        case 5:
            return edit({"2 2", "0", "-1 -1 1.5 2", "0"});
        case 6:
            return edit({"3", "1", "2", "1 -3", "0", "5 6 7"});
        case 7:
            return edit({"6", "2", "1 2 3 1 0", "2 4 3 2 1 8 1 1", "1", "1 2 1 9", "1", "2 2 1 8"});
        case 8:
            return {"0 0", "mesh.Mes", "other.Mes", "out.Mes", "1", "2", "1 2", "3 4"};
        default:
            return {"2 0", "2 1", "0 0", "1 .5 0", "2.5 .5 0", "3 .75 0", "0"};
    }
}

// Damage may leave a corner that is no node, or one number on two elements, which no edit looks for.
bool comes_from_the_input(const std::string& problem) {
    return problem.find("that is no node") != std::string::npos ||
           problem.find("stands twice") != std::string::npos;
}

void expect_mesh_file(const Project& project, Kind kind) {
    // The result may stand under a damaged name; where it stands under its own, it is a mesh file.
    if (!project.exists("out.Mes"))
        return;
    for (const auto& problem : check_mesh(project.read("out.Mes"), kind).problems) {
        EXPECT_TRUE(comes_from_the_input(problem)) << problem;
    }
}

void expect_orderly_end(const RunResult& result, const Project& project) {
    EXPECT_FALSE(result.timed_out);
    EXPECT_EQ(result.signal, 0);
    switch (result.status) {
        case 0:
            EXPECT_EQ(result.out + result.err, "");
            EXPECT_EQ(project.read_data("BRELAN2D.DAT"), "           0\n");
            break;
        case 1:
            EXPECT_EQ(result.err, "");
            EXPECT_TRUE(result.out == "300\n" || result.out == "100\n") << result.out;
            if (result.out == "300\n") {
                EXPECT_EQ(project.read_data("BRELAN2D.DAT"), "           1\n");
            }
            break;
        default:
            expect_failed(result, {});
            break;
    }
}

enum class Target { deck, mesh, start_up };

const char* word_of(Target target) {
    switch (target) {
        case Target::deck:
            return "Deck";
        case Target::mesh:
            return "Mesh";
        case Target::start_up:
            return "StartUp";
    }
    return "";
}

void PrintTo(Target target, std::ostream* stream) {
    *stream << word_of(target);
}

class Damage : public ::testing::TestWithParam<std::tuple<Target, unsigned>> {};

TEST_P(Damage, EndsInOrderAndTouchesNoInput) {
    const auto [target, block] = GetParam();
    const unsigned runs = rounds(5U, 100U);
    for (unsigned run = 0; run < runs; ++run) {
        const unsigned seed = FIRST_SEED + 1000 * static_cast<unsigned>(target) + block * 100 + run;
        SCOPED_TRACE("seed " + std::to_string(seed));
        Chance chance(seed);
        const Kind kind = chance.one_of(ALL_KINDS);
        const Project project(kind);
        std::string mesh = sample_mesh(kind).text();
        std::string deck = commented_deck(cards_of(chance.below(10), kind));
        if (target == Target::deck)
            deck = damaged(deck, chance);
        if (target == Target::mesh)
            mesh = damaged(mesh, chance);
        project.write("mesh.Mes", mesh);
        Mesh other = sample_mesh(kind);
        for (auto& node : other.nodes)
            node.x += 2.0;
        project.write("other.Mes", other.text());
        project.deck(deck);
        if (target == Target::start_up) {
            project.write_data("DEBUG/Brelan_P1.dat", damaged("1 43.0\n", chance));
            project.write_data("PROGRAM.DAT", damaged(project.read_data("PROGRAM.DAT"), chance));
            project.write_work("TFNAME.TMP", damaged("..\\deck.dat\n", chance));
        }

        const Snapshot before = project.snapshot();
        RunOptions options;
        // A damaged name may lead anywhere; a user without rights does no harm there.
        options.unprivileged = true;
        options.time_limit = TIME_LIMIT;
        const RunResult result = project.run("", options);
        expect_orderly_end(result, project);
        // With a damaged edition number the layout of the result is anybody's guess.
        if (result.status == 0 && target != Target::start_up)
            expect_mesh_file(project, kind);
        for (const auto& change : project.changed_since(before))
            ADD_FAILURE() << change;
    }
}

std::string name_of_case(const ::testing::TestParamInfo<std::tuple<Target, unsigned>>& information) {
    return std::string(word_of(std::get<0>(information.param))) +
           std::to_string(std::get<1>(information.param));
}

INSTANTIATE_TEST_SUITE_P(Fixed, Damage,
                         ::testing::Combine(::testing::Values(Target::deck, Target::mesh),
                                            ::testing::Range(0U, 9U)),
                         name_of_case);
INSTANTIATE_TEST_SUITE_P(FixedStartUp, Damage,
                         ::testing::Combine(::testing::Values(Target::start_up), ::testing::Range(0U, 2U)),
                         name_of_case);

}  // namespace
}  // namespace brelan::test
