// Dams of random profiles: each runs to its end, and nearly all come out sound. BRELAN_DAMS in the
// environment asks for more of them than the usual count; what is not sound is listed with its cause.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>

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

TEST(RandomDams, RunToTheirEndAndAreSound) {
    const char* const asked = std::getenv("BRELAN_DAMS");
    const int count = asked != nullptr ? std::atoi(asked) : USUAL_COUNT;
    int sound = 0;
    std::map<std::string, std::pair<int, int>> groups;  // sound dams, and all
    for (int i = 0; i < count; ++i) {
        const RandomDam random(static_cast<unsigned>(i));
        const Kind kind = ALL_KINDS.at(static_cast<std::size_t>(i) % ALL_KINDS.size());
        const DamRun run(random.dam, kind);
        ASSERT_EQ(run.result().status, 0)
            << "dam " << i << ", " << name_of(kind) << ": " << run.result().err << random.dam.deck();
        const std::vector<std::string> problems = dam_problems(random.dam, run.mesh());
        const std::string group = std::string(random.dam.ISHELL != 0 ? "shells" : "no shells") +
                                  (random.equal ? "" : ", block columns unlike the runs");
        groups[group].first += problems.empty() ? 1 : 0;
        ++groups[group].second;
        sound += problems.empty() ? 1 : 0;
        if (!problems.empty())
            std::printf("dam %d, %s, %s%s%s: %s (%zu in all)\n", i, name_of(kind).c_str(), group.c_str(),
                        random.dam.core.empty() ? "" : ", core", random.dam.wall.empty() ? "" : ", wall",
                        problems.front().c_str(), problems.size());
    }
    if (asked != nullptr)
        for (const auto& [group, counts] : groups)
            std::printf("%s: %d of %d sound\n", group.c_str(), counts.first, counts.second);
    EXPECT_GE(sound * 100, count * 97);
}

}  // namespace
}  // namespace brelan::test
