// The sound cut keeps all laws, whatever is drawn, or ends with a message that names group and place.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

// Group, segment and a place: "group 2, segment 3 ... (4.2, 1.5) ...".
bool names_its_place(const std::string& message) {
    return message.find("group ") != std::string::npos && message.find('(') != std::string::npos;
}

class SoundCut : public ::testing::TestWithParam<DeckClass> {};

TEST_P(SoundCut, KeepsAllLaws) {
    const int decks = rounds(GetParam().is_engineer_s ? 8 : 20, 1200);
    int refused = 0;
    for (int i = 0; i < decks; ++i) {
        const CutDeck deck = deck_of_class(GetParam(), i);
        const CutRun run = run_cut(deck, CutMethod::sound);
        if (run.status != 0) {
            ++refused;
            EXPECT_TRUE(names_its_place(run.message)) << deck.name << ": " << run.message;
            EXPECT_FALSE(GetParam().is_engineer_s) << deck.name << ": " << run.message;
            continue;
        }
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << deck.name << "\n" << verdict.text();
        EXPECT_TRUE(!GetParam().is_well_apart || verdict.smallest_angle >= 10.0)
            << deck.name << ": " << verdict.smallest_angle << " degrees";
    }
    // Of a handful one more may be among the refused.
    EXPECT_LE(refused, decks / 5 + (decks < 8 ? 1 : 0)) << "most decks are cut";
}

INSTANTIATE_TEST_SUITE_P(Classes, SoundCut, ::testing::ValuesIn(deck_classes().begin(), deck_classes().end()),
                         [](const auto& of) {
                             std::string name(of.param.name);
                             std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
                             return name;
                         });

TEST(SoundCutOfNastyDecks, KeepsAllLawsOrNamesThePlace) {
    for (const CutDeck& deck : nasty_decks()) {
        const CutRun run = run_cut(deck, CutMethod::sound);
        if (run.status != 0) {
            EXPECT_TRUE(names_its_place(run.message)) << deck.name << ": " << run.message;
            continue;
        }
        const Verdict verdict = judge(deck, run);
        EXPECT_TRUE(verdict.violations.empty()) << deck.name << "\n" << verdict.text();
    }
}

// An element and its double are cut alike: a wall that ends inside of them has one node there.
TEST(SoundCutOfStages, AnElementAndItsDoubleShareTheNodesInside) {
    CutDeck deck = deck_over_squares("stage", Kind::displacement, 8, 6);
    DrawnGroup stage = region_of({{3.0F, 3.0F}, {4.0F, 3.0F}, {4.0F, 4.0F}, {3.0F, 4.0F}}, 2);
    stage.MTYPE = 4;
    DrawnGroup wall = beams_along({{3.5F, 6.0F}, {3.5F, 3.5F}}, 22);
    deck.groups = {stage, wall};
    const CutRun run = run_cut(deck, CutMethod::sound);
    ASSERT_EQ(run.status, 0) << run.message;
    EXPECT_EQ(judge(deck, run).text(), "");
    EXPECT_EQ(std::count_if(run.after.nodes.begin(), run.after.nodes.end(),
                            [](const CutNode& node) {
                                return std::abs(node.at.x - 3.5) < 1.0E-5 &&
                                       std::abs(node.at.y - 3.5) < 1.0E-5;
                            }),
              1);
}

}  // namespace
}  // namespace brelan::test
