// No false alarms: sites as engineers draw them, of which every mesh is sound. Each class may show only what
// its drawing asks for.
#include <gtest/gtest.h>

#include <set>

#include "lib/analysis/site_deck.h"
#include "lib/analysis/soundness_sample.h"
#include "support/campaign.h"
#include "support/group_drawing.h"

namespace brelan::test {
namespace {

constexpr int SAMPLE = 12, ALL = 200;

const Ground GROUND{0.0, 0.0, 40.0, 24.0, 1.0};

double between(Drawing& drawing, double low, double high) {
    return static_cast<double>(drawing.between(static_cast<float>(low), static_cast<float>(high)));
}

using Draw = std::vector<SiteGroup> (*)(Drawing&);

struct SiteKind {
    LayoutKind kind;
    int edition;
};
constexpr std::array<SiteKind, 4> KINDS_OF_SITE{{{LayoutKind::coupled, 2},
                                                 {LayoutKind::temperature, 5},
                                                 {LayoutKind::head, 9},
                                                 {LayoutKind::displacement, 1}}};

void hold_class(std::uint32_t seed, Draw draw, const std::set<Check>& wanted) {
    Drawing drawing(seed);
    for (int r = 0; r < rounds(SAMPLE, ALL); ++r) {
        const SiteKind& site = KINDS_OF_SITE[static_cast<std::size_t>(r % 4)];
        const std::string deck = base_deck(GROUND, draw(drawing));
        const Soundness s = soundness_of(mesh_of(mesh_text_of(deck, {}, site.edition), site.kind));
        for (const Finding& finding : s.findings)
            EXPECT_TRUE(finding.places.empty() || wanted.contains(finding.check))
                << finding.places.size() << " " << finding.id << " at (" << finding.places[0].at.x << ", "
                << finding.places[0].at.y << "), element " << finding.places[0].element << "\n"
                << deck;
        if (testing::Test::HasFailure())
            return;
    }
}

// Two arcs, with a lining of beams.
std::vector<SiteGroup> tunnel(Drawing& drawing) {
    const double radius = between(drawing, 2.0, 5.0), invert = radius * between(drawing, 0.5, 1.0);
    const std::string centre = number(between(drawing, 10, 30)) + " " + number(between(drawing, 8, 15)) + " ";
    return {{3,
             "6 1 2 2",
             {{0, 0}, {0, 0}},
             0,
             1,
             {"2 0 2\n" + centre + number(radius) + " " + number(radius) + " 0.0 180.0",
              "2 0 2\n" + centre + number(radius) + " " + number(invert) + " 180.0 360.0"}}};
}

// A boundary from side to side with some bends, nowhere steep.
std::vector<SiteGroup> stratum(Drawing& drawing) {
    SiteGroup group{3, "3 1 0 0", {{0, 0}, {40, 0}}};
    group.points.emplace_back(40.0, between(drawing, 10, 12));
    for (double x = 40.0 - between(drawing, 6, 12); x > 4.0; x -= between(drawing, 6, 12))
        group.points.emplace_back(x, between(drawing, 10, 12));
    group.points.emplace_back(0.0, between(drawing, 10, 12));
    return {group};
}

SiteGroup wall(Drawing& drawing, double x) {
    const double foot = between(drawing, 6, 14);
    return {-2, "7 1 0.0 2 1 0 0", {{x, foot}, {x, 20.0}, {x, 24.0}}};
}

std::vector<SiteGroup> walls(Drawing& drawing) {
    return {wall(drawing, between(drawing, 6, 15)), wall(drawing, between(drawing, 22, 34))};
}

// Two walls with a strut at a point of their outlines, and anchors from there into the ground.
std::vector<SiteGroup> struts_and_anchors(Drawing& drawing) {
    std::vector<SiteGroup> groups = walls(drawing);
    const double left = groups[0].points[0].first, right = groups[1].points[0].first;
    groups.push_back({2, "3 1", {{left, 20.0}, {right, 20.0}}, 1, 0, {"1 1 0"}});
    const double reach = 36.0;
    groups.push_back({2, "3 2", {{right, 20.0}, {reach, 15.0}}, 1, 0, {"1 1 0"}});
    return groups;
}

// A pit between walls that is dug in two stages with the layers of the base mesh.
std::vector<SiteGroup> stages(Drawing& drawing) {
    std::vector<SiteGroup> groups = walls(drawing);
    const double left = groups[0].points[0].first, right = groups[1].points[0].first;
    groups.push_back({4, "5 1 0 0 2", {{left, 22}, {right, 22}, {right, 24}, {left, 24}}});
    groups.push_back({4, "5 1 0 0 3", {{left, 20}, {right, 20}, {right, 22}, {left, 22}}});
    return groups;
}

TEST(SoundnessOfSites, BaseMeshesOfAllKindsAreSoundWithoutARemark) {
    Drawing drawing(11);
    for (int r = 0; r < rounds(SAMPLE, ALL); ++r) {
        const SiteKind& site = KINDS_OF_SITE[static_cast<std::size_t>(r % 4)];
        const Ground ground{between(drawing, -20, 20), between(drawing, -20, 20), between(drawing, 4, 45),
                            between(drawing, 4, 45), between(drawing, 0.5, 2)};
        expect_only(soundness_of(mesh_of(mesh_text_of(base_deck(ground, {}), {}, site.edition), site.kind)),
                    {});
    }
}

TEST(SoundnessOfSites, Tunnels) {
    hold_class(21, tunnel, {});
}

TEST(SoundnessOfSites, Strata) {
    hold_class(22, stratum, {});
}

TEST(SoundnessOfSites, WallsWithJoints) {
    hold_class(23, walls, {});
}

// The end of an anchor is tied to no node of the ground: a truss is held by nothing there.
TEST(SoundnessOfSites, StrutsAndAnchors) {
    hold_class(24, struts_and_anchors, {Check::free_line, Check::loose_end});
}

TEST(SoundnessOfSites, StagesBetweenWalls) {
    hold_class(25, stages, {Check::double_element});
}

}  // namespace
}  // namespace brelan::test
