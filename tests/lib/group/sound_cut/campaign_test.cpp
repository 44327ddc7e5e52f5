// The cut over classes of random decks, held to all laws.
//
// BRELAN_CUT_DECKS=200 prints the table of all classes, by the rules and by the sound cut;
// BRELAN_CUT_CLASS=slopes those whose name has the text; BRELAN_CUT_SHOW=5 tells what is wrong with the first
// five of each; BRELAN_CUT_KEEP=DIR keeps these decks there; BRELAN_CUT_FIRST=1200 begins with that deck of a
// class; BRELAN_CUT_BY=sound leaves the rules out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <utility>

#include "lib/group/sound_cut/deck_classes.h"
#include "lib/group/sound_cut/judge.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

struct Row {
    int decks = 0, refused = 0, unsound = 0, off_line = 0, pinned = 0, off_region = 0, midside = 0;
    double elements = 0.0, triangles = 0.0, seconds = 0.0;
    std::vector<double> angles;
    std::map<int, std::pair<double, double>> kept;  // by deck that keeps all laws: smallest angle, elements
    std::string smallest_at;                        // deck and element
};

std::string cut_name(CutMethod method) {
    return method == CutMethod::sound ? "sound" : "rules";
}

void tell(const CutDeck& deck, CutMethod method, int number, const std::string& text) {
    std::cout << deck.name << ", " << cut_name(method) << ", " << name_of(deck.kind) << ":\n" << text;
    if (const std::string place = variable("BRELAN_CUT_KEEP"); !place.empty())
        std::cout << "  kept: " << keep_deck(deck, method, place, number) << "\n";
}

Row run_class(const DeckClass& of, int decks, CutMethod method, int shown) {
    Row row;
    const int first = std::atoi(variable("BRELAN_CUT_FIRST").c_str());
    for (int i = first; i < first + decks; ++i) {
        const CutDeck deck = deck_of_class(of, i);
        const CutRun run = run_cut(deck, method);
        ++row.decks;
        row.seconds += run.seconds;
        if (run.status != 0) {
            ++row.refused;
            if (shown-- > 0)
                tell(deck, method, i, "  refused: " + run.message + "\n");
            continue;
        }
        const Verdict verdict = judge(deck, run);
        row.unsound += verdict.is_unsound() ? 1 : 0;
        row.off_line += verdict.breaks(Law::line) ? 1 : 0;
        row.pinned += verdict.breaks(Law::pinned) ? 1 : 0;
        row.off_region += verdict.breaks(Law::region) ? 1 : 0;
        row.midside += verdict.breaks(Law::midside) ? 1 : 0;
        row.elements += static_cast<double>(verdict.solids);
        row.triangles += static_cast<double>(verdict.triangles);
        if (row.angles.empty() ||
            verdict.smallest_angle < *std::min_element(row.angles.begin(), row.angles.end()))
            row.smallest_at = deck.name + ", " + verdict.smallest_at;
        row.angles.push_back(verdict.smallest_angle);
        if (verdict.violations.empty())
            row.kept[i] = {verdict.smallest_angle, static_cast<double>(verdict.solids)};
        if (!verdict.violations.empty() && shown-- > 0)
            tell(deck, method, i, verdict.text());
    }
    std::sort(row.angles.begin(), row.angles.end());
    return row;
}

void print(std::string_view name, CutMethod method, const Row& row) {
    std::array<char, 240> line{};
    std::snprintf(line.data(), line.size(),
                  "%-30.*s %-6s %6d %7d %7d %6d %6d %6d %7d %8.2f %6.2f %6.1f %9.0f %7.2f\n",
                  static_cast<int>(name.size()), name.data(), cut_name(method).c_str(), row.decks,
                  row.refused, row.unsound, row.off_line, row.pinned, row.off_region, row.midside,
                  row.angles.empty() ? 0.0 : row.angles[row.angles.size() / 2],
                  row.angles.empty() ? 0.0 : row.angles.front(),
                  row.elements > 0.0 ? 100.0 * row.triangles / row.elements : 0.0, row.elements, row.seconds);
    std::cout << line.data();
    if (!variable("BRELAN_CUT_SHOW").empty())
        std::cout << "  the least angle: " << row.smallest_at << "\n";
    std::cout << std::flush;
}

// The decks that keep all laws by either cut: the others have no mesh by the rules to be held against.
void print_both(const Row& rules, const Row& sound) {
    std::vector<double> by_rules, by_sound;
    double elements = 0.0, elements_sound = 0.0;
    for (const auto& [deck, row] : rules.kept)
        if (const auto other = sound.kept.find(deck); other != sound.kept.end()) {
            by_rules.push_back(row.first);
            by_sound.push_back(other->second.first);
            elements += row.second;
            elements_sound += other->second.second;
        }
    if (by_rules.empty())
        return;
    for (std::vector<double>* angles : {&by_rules, &by_sound})
        std::sort(angles->begin(), angles->end());
    std::cout << "  right by both: " << by_rules.size() << ", angle/2 by the rules "
              << by_rules[by_rules.size() / 2] << ", sound " << by_sound[by_sound.size() / 2]
              << ", elements sound by rules " << elements_sound / elements << "\n"
              << std::flush;
}

TEST(SoundCutTable, ByClass) {
    const int decks = std::atoi(variable("BRELAN_CUT_DECKS").c_str());
    if (decks <= 0)
        GTEST_SKIP() << "a table, no law";
    std::cout << "class                          cut     decks refused unsound   line pinned region midside "
                 "angle/2  least  tri-% elements seconds\n";
    for (const DeckClass& of : deck_classes()) {
        if (of.name.find(variable("BRELAN_CUT_CLASS")) == std::string_view::npos)
            continue;
        std::map<CutMethod, Row> rows;
        for (const CutMethod method : {CutMethod::by_rules, CutMethod::sound})
            if (cut_name(method).find(variable("BRELAN_CUT_BY")) != std::string::npos) {
                rows[method] = run_class(of, decks, method, std::atoi(variable("BRELAN_CUT_SHOW").c_str()));
                print(of.name, method, rows[method]);
            }
        print_both(rows[CutMethod::by_rules], rows[CutMethod::sound]);
    }
}

// Each nasty deck by both cuts, in words.
TEST(SoundCutTable, OfNastyDecks) {
    if (variable("BRELAN_CUT_DECKS").empty())
        GTEST_SKIP() << "a table, no law";
    int number = 0;
    for (const CutDeck& deck : nasty_decks()) {
        ++number;
        if (deck.name.find(variable("BRELAN_CUT_CLASS")) == std::string::npos)
            continue;
        for (const CutMethod method : {CutMethod::by_rules, CutMethod::sound}) {
            const CutRun run = run_cut(deck, method);
            const std::string text =
                run.status != 0 ? "  refused: " + run.message + "\n" : judge(deck, run).text();
            tell(deck, method, number, text.empty() ? "  keeps all laws\n" : text);
        }
    }
}

}  // namespace
}  // namespace brelan::test
