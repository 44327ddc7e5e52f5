// Dams of every make, run to their end: the areas, the zones, the sides and the codes of the mesh.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "support/campaign.h"
#include "support/dam.h"

namespace brelan::test {
namespace {

// Horizontal run of a slope of height 1, by slope code.
constexpr std::array<double, 5> SLOPES = {1.0, 1.5, 2.0, 2.5, 3.0};

struct Make {
    bool core = false;
    int layers = 0;  // 0, 1 or 3
    bool wall = false, shells = false;
    int NCREST = 0;
    int slope_code = 1;

    std::string name() const {
        return std::string(core ? "core" : "no core") + ", " + std::to_string(layers) + " layers, " +
               (wall ? "wall" : "no wall") + ", " + (shells ? "shells" : "no shells") + ", NCREST " +
               std::to_string(NCREST) + ", slope code " + std::to_string(slope_code);
    }

    // Height 20, crest 16; the core from the base to 18, 8 wide and 4 wide; the wall two elements wide.
    DamInput dam() const {
        DamInput dam;
        const double run = dam.HDAM * SLOPES.at(static_cast<std::size_t>(slope_code - 1));
        dam.RUNL = dam.RUNR = dam.WLEFT = dam.WRIGHT = run;
        dam.ISHELL = shells ? 1 : 0;
        dam.NCREST = NCREST;
        if (layers == 1)
            dam.layers = {7.0};
        if (layers == 3)
            dam.layers = {5.0, 4.0, 6.0};
        if (core)
            dam.core = {{run + 4.0, 0.0}, {run + 12.0, 0.0}, {run + 10.0, 18.0}, {run + 6.0, 18.0}};
        const double left = run + (NCREST > 0 ? 4.0 : 6.0), right = run + (NCREST > 0 ? 12.0 : 10.0);
        const double foot = layers == 3 ? -11.0 : -3.0;
        if (wall)
            dam.wall = {{left, 0.0}, {left, foot}, {right, foot}, {right, 0.0}};
        return dam;
    }

    // Areas of the zones by material.
    std::map<int, double> zones() const {
        const DamInput d = dam();
        std::map<int, double> zones;
        double body = 0.5 * (d.toe() + 16.0) * 20.0;
        if (core) {
            zones[4] = 0.5 * (8.0 + 4.0) * 18.0;
            body -= zones[4];
        }
        if (!shells) {
            zones[2] = zones[3] = 0.5 * 20.0 * d.RUNL;
            body -= zones[2] + zones[3];
        }
        zones[1] = body;
        double top = 0.0;
        const double wide = d.wall.empty() ? 0.0 : d.wall[2].x - d.wall[0].x;
        const double deep = d.wall.empty() ? 0.0 : -d.wall[1].y;
        if (wide > 0.0 && !d.layers.empty())
            zones[5] = wide * deep;
        for (std::size_t i = 0; i < d.layers.size(); ++i) {
            const double in_layer = std::max(0.0, std::min(deep, top + d.layers[i]) - top);
            zones[6 + static_cast<int>(i)] = d.layers[i] * (d.toe() + 50.0) - wide * in_layer;
            top += d.layers[i];
        }
        return zones;
    }

    // Under a slope flatter than 1:2 the cut lifts the ground's first node in front of either toe onto the
    // slope, as it is nearer to it than the node above: a sliver changes sides.
    bool lifts_ground() const { return !shells && layers > 0 && slope_code > 3; }
};

std::vector<Make> all_makes() {
    std::vector<Make> makes;
    for (const bool core : {false, true})
        for (const int layers : {0, 1, 3})
            for (const bool wall : {false, true})
                for (const bool shells : {false, true})
                    for (const int NCREST : {0, 4})
                        makes.push_back({core, layers, wall, shells, NCREST, 0});
    return makes;
}

void expect_zones(const Make& make, const DamMesh& mesh, const std::string& name) {
    const std::map<int, double> expected = make.zones();
    const std::map<int, double> found = mesh.zone_areas();
    // Half an element at either toe.
    const double sliver = make.lifts_ground() ? 1.0 : 0.0;
    ASSERT_EQ(found.size(), expected.size()) << name;
    for (const auto& [material, area] : expected) {
        const double rounding = 1.0E-5 * area;
        ASSERT_TRUE(found.contains(material)) << name << ", material " << material;
        EXPECT_NEAR(found.at(material), area, rounding + (material == 4 || material == 5 ? 0.0 : sliver))
            << name << ", material " << material;
    }
}

// Codes of the nodes on both slopes: 1 and 1 under water, 0 and 0 above it. A node that was moved onto the
// level may have either.
void expect_slope_codes(const DamInput& dam, const DamMesh& mesh, const std::string& name) {
    int wet = 0, dry = 0;
    for (const auto& [number, node] : mesh.nodes) {
        const double left = dam.HDAM * node.at.x / dam.WLEFT;
        const double right = dam.HDAM * (dam.toe() - node.at.x) / dam.WRIGHT;
        const bool on_slope = std::abs(node.at.y - std::min(left, right)) < 1.0E-3;
        const bool level = std::abs(node.at.y - dam.HWATER) < 1.0E-3;
        if (!on_slope || level || node.at.y < -1.0E-3 || node.at.y > dam.HDAM - 1.0E-3)
            continue;
        const int code = node.at.y < dam.HWATER ? 1 : 0;
        ++(code == 1 ? wet : dry);
        EXPECT_EQ(node.codes.at(0), code) << name << ", node " << number;
        EXPECT_EQ(node.codes.at(1), code) << name << ", node " << number;
    }
    EXPECT_GT(wet, 20) << name;
    EXPECT_GT(dry, 10) << name;
}

class DamMakes : public ::testing::TestWithParam<std::tuple<Kind, int>> {};

TEST_P(DamMakes, RunToTheirEndAndAreSound) {
    const auto [kind, slope_code] = GetParam();
    const std::vector<Make> makes = all_makes();
    const std::size_t step = is_long_run() ? 1 : 7 * SAMPLE_SHARE;  // the makes differ from slope to slope
    for (std::size_t i = static_cast<std::size_t>(slope_code) % step; i < makes.size(); i += step) {
        Make make = makes[i];
        make.slope_code = slope_code;
        const DamInput dam = make.dam();
        const DamRun run(dam, kind);
        const std::string name = name_of(kind) + ": " + make.name();
        ASSERT_EQ(run.result().status, 0) << name << "\n" << run.result().err;
        EXPECT_EQ(run.result().err, "") << name;
        const DamMesh mesh = run.mesh();
        EXPECT_EQ(dam_problems(dam, mesh), std::vector<std::string>{}) << name;
        EXPECT_NEAR(mesh.total_area(), dam.area(), 1.0E-5 * dam.area()) << name;
        expect_zones(make, mesh, name);
        if (make.shells)
            expect_slope_codes(dam, mesh, name);
    }
}

INSTANTIATE_TEST_SUITE_P(OfAllKinds, DamMakes,
                         ::testing::Combine(::testing::ValuesIn(ALL_KINDS), ::testing::Values(1, 2, 3, 4, 5)),
                         [](const auto& row) {
                             return name_of(std::get<0>(row.param)) + "_slope_" +
                                    std::to_string(std::get<1>(row.param));
                         });

// Height 20, slopes of 1:2, a crest of 8, layers of 6 and 8, a wall 11 deep that goes right through the
// first.
TEST(Dam, OfTwoLayersHasTheAreasOfItsZones) {
    DamInput dam;
    dam.crest = dam.WMID = 8.0;
    dam.layers = {6.0, 8.0};
    dam.XLEFT = dam.XRIGHT = 30.0;
    dam.core = {{42.0, 0.0}, {46.0, 0.0}, {45.0, 18.0}, {43.0, 18.0}};
    dam.wall = {{43.0, 0.0}, {43.0, -11.0}, {45.0, -11.0}, {45.0, 0.0}};
    for (const int ISHELL : {0, 1, -3}) {
        dam.ISHELL = ISHELL;
        const DamRun run(dam, Kind::displacement);
        expect_finished(run.result());
        const DamMesh mesh = run.mesh();
        EXPECT_EQ(dam_problems(dam, mesh), std::vector<std::string>{});
        EXPECT_NEAR(mesh.total_area(), 3032.0, 0.01);
        std::map<int, double> expected{{4, 54.0}, {5, 22.0}, {6, 876.0}, {7, 1174.0}};
        expected[1] = ISHELL == 0 ? 106.0 : 906.0;
        if (ISHELL == 0)
            expected[2] = expected[3] = 400.0;
        const std::map<int, double> zones = mesh.zone_areas();
        ASSERT_EQ(zones.size(), expected.size());
        for (const auto& [material, area] : expected)
            EXPECT_NEAR(zones.at(material), area, 0.01) << "material " << material;
    }
}

}  // namespace
}  // namespace brelan::test
