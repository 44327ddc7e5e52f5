// Dams of random profiles: each runs to its end, and all are sound but some of those that the command warns
// of. A long run lists what is not sound, with what is wrong with it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "support/campaign.h"
#include "support/random_dam.h"

namespace brelan::test {
namespace {

// Width of the elements of the middle block column, and height of the rows of elements.
struct ElementSize {
    double width = 0.0, height = 0.0;

    explicit ElementSize(const DamInput& dam) {
        const double ratio = dam.HDAM / dam.RUNL;
        height = dam.HDAM / (dam.ISHELL == 0 ? 20.0 : ratio >= 0.5833 ? 28.0 : 13.0);
        const double wanted = dam.NCREST > 0 ? dam.WMID / dam.NCREST : height;
        width = dam.WMID / std::max(1.0, std::floor(dam.WMID / wanted));
    }
};

double wall_width(const DamInput& dam) {
    return dam.wall.empty() ? 0.0 : dam.wall[2].x - dam.wall[0].x;
}

// What `brelan check` warns of, and the manual's chapter 10 advises against.
bool is_warned_of(const DamInput& dam, Kind kind) {
    const ElementSize element(dam);
    const double wall = wall_width(dam) / element.width;
    if (!dam.core.empty() && wall >= 0.5 && wall < 0.75)
        return true;
    return kind == Kind::head && dam.ISHELL == 0 && !dam.layers.empty() && dam.HWATER > 0.0 &&
           dam.HWATER < 0.5 * element.height;
}

// The zones that are cut have the areas of their outlines: a core but for what is left uncut below the crest,
// and a wall but in the lowest row of elements. Narrower zones may fall between the nodes.
void expect_areas_of_cut_zones(const DamInput& dam, const DamMesh& mesh, const std::string& name) {
    const ElementSize element(dam);
    std::map<int, double> zones = mesh.zone_areas();
    if (!dam.core.empty() && dam.core[2].x - dam.core[3].x >= 2.0 * element.width) {
        const double wide = dam.core[1].x - dam.core[0].x + dam.core[2].x - dam.core[3].x;
        EXPECT_NEAR(zones[4], 0.5 * wide * dam.core[2].y, 2.5 * element.width * element.height) << name;
    }
    if (wall_width(dam) < element.width)
        return;
    const double over_bottom = dam.depth() + dam.wall[1].y, wide = wall_width(dam), deep = -dam.wall[1].y;
    const double lowest_row = 2.4 * element.height;
    const double uncut = over_bottom > 0.01 && over_bottom < 0.5 * lowest_row ? wide * lowest_row : 0.0;
    EXPECT_NEAR(zones[5], wide * deep, 1.0E-4 * wide * deep + uncut) << name;
}

struct Counts {
    int sound = 0, all = 0;
};

TEST(RandomDams, AreSoundButForThoseThatAreWarnedOf) {
    const int count = rounds(48, 1000);
    const std::string ALL = "all", WARNED = "warned of";
    std::map<std::string, Counts> groups;
    for (int i = 0; i < count; ++i) {
        const RandomDam random(static_cast<unsigned>(i));
        const Kind kind = ALL_KINDS.at(static_cast<std::size_t>(i) % ALL_KINDS.size());
        const DamRun run(random.dam, kind);
        const std::string name = "dam " + std::to_string(i) + ", " + name_of(kind);
        ASSERT_EQ(run.result().status, 0) << name << ": " << run.result().err << random.dam.deck();
        const DamMesh mesh = run.mesh();
        const std::vector<std::string> problems = dam_problems(random.dam, mesh);
        const bool warned = is_warned_of(random.dam, kind);
        const std::string make = random.dam.ISHELL != 0 ? "shells"
                                 : random.equal         ? "no shells"
                                                        : "no shells, columns unlike the runs";
        for (const std::string& group : {ALL, make, warned ? WARNED : "not warned of"}) {
            groups[group].sound += problems.empty() ? 1 : 0;
            ++groups[group].all;
        }
        if (!warned) {
            EXPECT_EQ(problems, std::vector<std::string>{}) << name << "\n" << random.dam.deck();
        }
        if (problems.empty() && random.dam.ISHELL == 0)
            expect_areas_of_cut_zones(random.dam, mesh, name + "\n" + random.dam.deck());
        if (is_long_run() && !problems.empty())
            std::printf("%s, %s%s%s: %s (%zu in all)\n", name.c_str(), make.c_str(),
                        random.dam.core.empty() ? "" : ", core", random.dam.wall.empty() ? "" : ", wall",
                        problems.front().c_str(), problems.size());
    }
    if (is_long_run())
        for (const auto& [group, counts] : groups)
            std::printf("%s: %d of %d sound\n", group.c_str(), counts.sound, counts.all);
    EXPECT_GE(1000 * groups[ALL].sound, 994 * groups[ALL].all);
    // The warning is worth something only as long as few get it.
    EXPECT_LE(20 * groups[WARNED].all, groups[ALL].all);
}

}  // namespace
}  // namespace brelan::test
