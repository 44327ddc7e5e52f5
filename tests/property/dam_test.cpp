// Dams of random profiles: each runs to its end, those that keep the manual's advice come out sound, and of
// the others most. BRELAN_DAMS in the environment asks for more of them than the usual count; what is not
// sound is listed with what is wrong with it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "harness/dam.h"

namespace brelan::test {
namespace {

constexpr int USUAL_COUNT = 100;

class RandomDam {
public:
    explicit RandomDam(unsigned seed) : random_(seed) {
        dam.HDAM = places(between(5.0, 60.0));
        const double left = between(0.8, 3.5), right = chance(0.4) ? left : between(0.8, 3.5);
        dam.RUNL = places(dam.HDAM * left);
        dam.RUNR = places(dam.HDAM * right);
        dam.crest = places(between(0.15, 0.6) * dam.HDAM);
        dam.HWATER = places(between(-0.1, 1.15) * dam.HDAM);
        dam.ISHELL = chance(0.5) ? 1 : 0;
        dam.NCREST = static_cast<int>(between(0.0, 7.0));
        equal = chance(0.7);
        dam.WLEFT = equal ? dam.RUNL : places(dam.RUNL * between(0.9, 1.1));
        dam.WMID = equal ? dam.crest : places(dam.crest * between(0.8, 1.2));
        dam.WRIGHT = equal ? dam.RUNR : places(dam.RUNR * between(0.9, 1.1));
        const int layers = static_cast<int>(between(0.0, 4.0));
        for (int i = 0; i < layers; ++i)
            dam.layers.push_back(places(between(0.15, 0.6) * dam.HDAM));
        dam.XLEFT = places(between(0.5, 3.0) * dam.HDAM);
        dam.XRIGHT = places(between(0.5, 3.0) * dam.HDAM);
        const double middle = 0.5 * (dam.crest_left() + dam.crest_right());
        const double half = 0.5 * (dam.crest_right() - dam.crest_left());
        if (chance(0.6))
            add_core(middle, half);
        if (layers > 0 && chance(0.6))
            add_wall(middle + between(-0.6, 0.6) * half);
    }

    DamInput dam;
    bool equal = true;  // the block columns are the runs and the crest

private:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    bool chance(double share) { return between(0.0, 1.0) < share; }
    static double places(double value) { return std::round(value * 100.0) / 100.0; }

    void add_core(double middle, double half) {
        const double top = between(0.3, 0.9) * half, base = top * between(1.0, chance(0.3) ? 1.0 : 2.5);
        const double height = places(dam.HDAM * (chance(0.5) ? 1.0 : between(0.7, 0.99)));
        dam.core = {{places(middle - base), 0.0},
                    {places(middle + base), 0.0},
                    {places(middle + top), height},
                    {places(middle - top), height}};
    }
    void add_wall(double middle) {
        const double half = 0.5 * dam.HDAM / 20.0 * between(0.8, 4.0);
        const double foot = -places(dam.depth() * (chance(0.5) ? 1.0 : between(0.2, 0.9)));
        dam.wall = {{places(middle - half), 0.0},
                    {places(middle - half), foot},
                    {places(middle + half), foot},
                    {places(middle + half), 0.0}};
    }

    std::mt19937 random_;
};

// The manual's advice, chapter 10: what keeps a dam's mesh sound.
bool keeps_advice(const RandomDam& random, Kind kind) {
    const DamInput& dam = random.dam;
    const bool shells = dam.ISHELL != 0;
    if (!shells && !random.equal)
        return false;
    const double row = dam.HDAM / (!shells ? 20.0 : dam.HDAM / dam.RUNL >= 0.5833 ? 28.0 : 13.0);
    if (!dam.core.empty()) {
        const double top = dam.core[2].y;
        if (top < dam.HDAM && top > dam.HDAM - row)
            return false;
        const double wanted = dam.NCREST > 0 ? dam.WMID / dam.NCREST : row;
        const double element = dam.WMID / std::max(1.0, std::floor(dam.WMID / wanted));
        const double beside = std::min(dam.core[3].x - dam.crest_left(), dam.crest_right() - dam.core[2].x);
        if (!shells && top == dam.HDAM && beside < element)
            return false;
    }
    if (!dam.wall.empty()) {
        const double over_bottom = dam.wall[1].y + dam.depth();
        if (over_bottom > 0.01 && over_bottom < 3.0 * row)
            return false;
    }
    return !(kind == Kind::head && !shells && dam.HWATER > 0.0 && dam.HWATER < row);
}

struct Counts {
    int sound = 0, all = 0;
    double share() const { return static_cast<double>(sound) / std::max(all, 1); }
};

TEST(RandomDams, RunToTheirEndAndAreSound) {
    const char* const asked = std::getenv("BRELAN_DAMS");
    const int count = asked != nullptr ? std::atoi(asked) : USUAL_COUNT;
    const std::string SHELLS = "shells", EQUAL = "no shells", UNLIKE = "no shells, columns unlike the runs";
    const std::string ADVISED = "as advised";
    std::map<std::string, Counts> groups;
    for (int i = 0; i < count; ++i) {
        const RandomDam random(static_cast<unsigned>(i));
        const Kind kind = ALL_KINDS.at(static_cast<std::size_t>(i) % ALL_KINDS.size());
        const DamRun run(random.dam, kind);
        ASSERT_EQ(run.result().status, 0)
            << "dam " << i << ", " << name_of(kind) << ": " << run.result().err << random.dam.deck();
        const std::vector<std::string> problems = dam_problems(random.dam, run.mesh());
        const bool advised = keeps_advice(random, kind);
        const std::string group = random.dam.ISHELL != 0 ? SHELLS : random.equal ? EQUAL : UNLIKE;
        for (const std::string& name : {group, advised ? ADVISED : "against the advice"}) {
            groups[name].sound += problems.empty() ? 1 : 0;
            ++groups[name].all;
        }
        if (advised) {
            EXPECT_EQ(problems, std::vector<std::string>{}) << "dam " << i << ", " << name_of(kind) << "\n"
                                                            << random.dam.deck();
        }
        if (asked != nullptr && !problems.empty())
            std::printf("dam %d, %s, %s%s%s: %s (%zu in all)\n", i, name_of(kind).c_str(), group.c_str(),
                        random.dam.core.empty() ? "" : ", core", random.dam.wall.empty() ? "" : ", wall",
                        problems.front().c_str(), problems.size());
    }
    if (asked != nullptr)
        for (const auto& [group, counts] : groups)
            std::printf("%s: %d of %d sound\n", group.c_str(), counts.sound, counts.all);
    EXPECT_GE(groups[SHELLS].share(), 0.9);
    EXPECT_GE(groups[EQUAL].share(), 0.7);
    EXPECT_GE(groups[UNLIKE].share(), 0.35);
    EXPECT_GE(2 * groups[ADVISED].all, count);
}

}  // namespace
}  // namespace brelan::test
