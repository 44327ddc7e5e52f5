// Dams by the sound cut: random ones are sound, and every zone has the area that is drawn, whether or not the
// mesh comes from templates.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "analysis/mesh_file.h"
#include "analysis/soundness.h"
#include "support/campaign.h"
#include "support/random_dam.h"

namespace brelan::test {
namespace {

using Polygon = std::vector<DamPlace>;

double area_of(const Polygon& p) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const DamPlace &a = p[i], &b = p[(i + 1) % p.size()];
        sum += 0.5 * (a.x * b.y - b.x * a.y);
    }
    return sum;
}

Polygon anticlockwise(Polygon p) {
    if (area_of(p) < 0.0)
        std::reverse(p.begin(), p.end());
    return p;
}

// What two convex polygons have in common: one clipped at each side of the other.
Polygon common(Polygon p, const Polygon& clip) {
    for (std::size_t i = 0; i < clip.size(); ++i) {
        const DamPlace &a = clip[i], &b = clip[(i + 1) % clip.size()];
        const auto left = [&](const DamPlace& q) {
            return (b.x - a.x) * (q.y - a.y) - (b.y - a.y) * (q.x - a.x);
        };
        Polygon kept;
        for (std::size_t k = 0; k < p.size(); ++k) {
            const DamPlace &q = p[k], &r = p[(k + 1) % p.size()];
            const double at_q = left(q), at_r = left(r);
            if (at_q >= 0.0)
                kept.push_back(q);
            if ((at_q < 0.0) != (at_r < 0.0)) {
                const double share = at_q / (at_q - at_r);
                kept.push_back({q.x + share * (r.x - q.x), q.y + share * (r.y - q.y)});
            }
        }
        p = kept;
    }
    return p;
}

// Areas by material: each zone takes its place from those below it. A wall takes from the core, and both from
// the rest; core and wall only meet where a wall reaches into the dam.
std::map<int, double> drawn_areas(const DamInput& dam) {
    const double left = dam.crest_left(), right = dam.crest_right();
    const Polygon core = anticlockwise(dam.core), wall = anticlockwise(dam.wall);
    const Polygon both = core.empty() || wall.empty() ? Polygon{} : common(core, wall);
    std::map<int, double> areas;
    const auto rest = [&](const Polygon& zone) {
        double area = area_of(zone);
        for (const Polygon* taken : {&core, &wall})
            if (!taken->empty())
                area -= area_of(common(zone, *taken));
        return both.empty() ? area : area + area_of(common(zone, both));
    };
    areas[1] = rest({{0.0, 0.0}, {dam.toe(), 0.0}, {right, dam.HDAM}, {left, dam.HDAM}});
    if (dam.ISHELL == 0) {
        areas[2] = rest({{0.0, 0.0}, {left, 0.0}, {left, dam.HDAM}});
        areas[3] = rest({{right, 0.0}, {dam.toe(), 0.0}, {right, dam.HDAM}});
        areas[1] -= areas[2] + areas[3];
    }
    if (!core.empty())
        areas[4] = area_of(core) - area_of(both);
    if (!wall.empty())
        areas[5] = area_of(wall);
    double top = 0.0;
    int material = 6;
    for (const double thickness : dam.layers) {
        const double low = -dam.XLEFT, high = dam.toe() + dam.XRIGHT, bottom = top - thickness;
        areas[material++] = rest({{low, bottom}, {high, bottom}, {high, top}, {low, top}});
        top = bottom;
    }
    return areas;
}

// What the analysis calls unsound, and what the profile says.
std::vector<std::string> problems_of(const DamInput& dam, const DamRun& run, Kind kind) {
    std::vector<std::string> problems = dam_problems(dam, run.mesh());
    const std::optional<MeshLists> mesh =
        mesh_of_text(run.mesh_text(), dam.mesh_name(), static_cast<LayoutKind>(kind));
    for (const Finding& finding : check_soundness(*mesh, corners_of(*mesh)).findings)
        if (finding.unsound && !finding.places.empty())
            problems.push_back(std::string(finding.id) + " of element " +
                               std::to_string(finding.places.front().element) + " at (" +
                               std::to_string(finding.places.front().at.x) + ", " +
                               std::to_string(finding.places.front().at.y) + ")");
    return problems;
}

// To 1 in 10,000 of each zone, and to the digits of the mesh file: a side as high as the dam, or as long as
// the ground, may lie half a unit of the sixth digit beside itself.
void expect_drawn_areas(const DamInput& dam, const DamMesh& mesh, const std::string& name) {
    const std::map<int, double> expected = drawn_areas(dam), found = mesh.zone_areas();
    const double length = dam.layers.empty() ? dam.toe() : dam.toe() + dam.XLEFT + dam.XRIGHT;
    const double half_unit = 0.5 * std::pow(10.0, std::ceil(std::log10(length)) - 6.0);
    const double digits = 2.0 * half_unit * (dam.HDAM + dam.depth());
    double sum = 0.0;
    for (const auto& [material, area] : expected) {
        sum += area;
        const double it = found.contains(material) ? found.at(material) : 0.0;
        EXPECT_NEAR(it, area, 1.0E-4 * area + digits) << name << "\nmaterial " << material;
    }
    EXPECT_NEAR(sum, dam.area(), 1.0E-9 * dam.area()) << name;
}

void expect_sound(const DamInput& dam, Kind kind, const std::string& named) {
    const std::string name = named + ", " + name_of(kind) + "\n" + dam.deck();
    const DamRun run(dam, kind, {"--sound"});
    EXPECT_EQ(run.result().status, 0) << name << run.result().out << run.result().err;
    if (run.result().status != 0)
        return;
    EXPECT_EQ(problems_of(dam, run, kind), std::vector<std::string>{}) << name;
    expect_drawn_areas(dam, run.mesh(), name);
}

// A crest of 8 over a core of 16 at the base and 4 at a height of 18, and a wall 4 wide and 10 deep an
// element's part beside the middle block's side.
TEST(DamBySoundCut, HasTheCoreAndTheWallThatReachBesideTheMiddleBlock) {
    DamInput dam;
    dam.ISHELL = 1;
    dam.HWATER = 15.0;
    dam.crest = dam.WMID = 8.0;
    dam.layers = {6.0, 8.0};
    dam.XLEFT = dam.XRIGHT = 30.0;
    dam.core = {{36.0, 0.0}, {42.0, 18.0}, {46.0, 18.0}, {52.0, 0.0}};
    dam.wall = {{41.0, 0.0}, {41.0, -10.0}, {45.0, -10.0}, {45.0, 0.0}};
    const std::map<int, double> expected{{1, 780.0}, {4, 180.0}, {5, 40.0}, {6, 864.0}, {7, 1168.0}};
    for (const Kind kind : ALL_KINDS) {
        const DamRun run(dam, kind, {"--sound"});
        expect_finished(run.result());
        EXPECT_EQ(problems_of(dam, run, kind), std::vector<std::string>{}) << name_of(kind);
        const std::map<int, double> found = run.mesh().zone_areas();
        ASSERT_EQ(found.size(), expected.size()) << name_of(kind);
        for (const auto& [material, area] : expected)
            EXPECT_NEAR(found.at(material), area, 0.002) << name_of(kind) << ", material " << material;
        EXPECT_FALSE(run.project().exists("Dam_Joined.Mes"));
        EXPECT_FALSE(run.project().exists("EarthDam.Mes"));
    }
}

// Cores that lean, walls wider than the crest and up into the dam: what templates alone cut off.
class LeaningDam {
public:
    LeaningDam(unsigned seed, int ISHELL) : dam(RandomDam(seed).dam), random_(seed) {
        dam.ISHELL = ISHELL;
        const double low = between(0.1, 0.5), high = between(low + 0.1, 0.8), top = between(0.3, 0.95);
        const double foot = between(0.05, 0.4), wide = between(0.05, 0.3);
        dam.core = {slope(low, 0.0), slope(high, 0.0), slope(high, top * dam.HDAM),
                    slope(low, top * dam.HDAM)};
        dam.wall.clear();
        if (!dam.layers.empty()) {
            const double left = dam.toe() * foot, right = dam.toe() * (foot + wide);
            const double over = places(dam.HDAM * 0.9 * foot * (between(0.0, 1.0) < 0.5 ? 0.0 : 1.0));
            const double under = -places(dam.depth() * between(0.2, 1.0));
            dam.wall = {
                {places(left), over}, {places(left), under}, {places(right), under}, {places(right), over}};
        }
    }

    DamInput dam;

private:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    static double places(double value) { return std::round(value * 100.0) / 100.0; }
    // A point at a share of the dam's width at a height.
    DamPlace slope(double share, double y) const {
        const double left = dam.crest_left() * y / dam.HDAM;
        const double right = dam.toe() - (dam.toe() - dam.crest_right()) * y / dam.HDAM;
        return {places(left + share * (right - left)), places(y)};
    }

    std::mt19937 random_;
};

TEST(RandomDamsBySoundCut, AreSoundAndHaveTheAreasThatAreDrawn) {
    const int count = rounds(24, 3000);
    for (int i = 0; i < count; ++i) {
        const RandomDam random(static_cast<unsigned>(i));
        expect_sound(random.dam, ALL_KINDS.at(static_cast<std::size_t>(i) % ALL_KINDS.size()),
                     "dam " + std::to_string(i));
    }
}

TEST(RandomDamsBySoundCut, HaveTheirCoresAndWallsWhereverTheyAreDrawn) {
    const int count = rounds(24, 1000);
    for (int i = 0; i < count; ++i) {
        const LeaningDam random(static_cast<unsigned>(i), i % 4 == 0 ? 0 : 1);
        expect_sound(random.dam, ALL_KINDS.at(static_cast<std::size_t>(i) % ALL_KINDS.size()),
                     "leaning dam " + std::to_string(i));
    }
}

}  // namespace
}  // namespace brelan::test
