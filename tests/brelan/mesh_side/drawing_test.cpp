#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "drawing/colors.h"
#include "drawing/hatch.h"
#include "drawing/mesh_lines.h"
#include "drawing/page.h"
#include "drawing/tangle.h"
#include "support/mesh_sample.h"

namespace brelan::tool {
namespace {

using test::Sample;

double area_of(const Polylines& loops) {
    double twice = 0.0;
    std::size_t begin = 0;
    for (const std::size_t end : loops.ends) {
        for (std::size_t k = begin; k < end; ++k) {
            const Position& a = loops.points[k];
            const Position& b = loops.points[k + 1 == end ? begin : k + 1];
            twice += a.x * b.y - b.x * a.y;
        }
        begin = end;
    }
    return twice / 2.0;
}

double length_of(const Polylines& lines) {
    double length = 0.0;
    std::size_t begin = 0;
    for (const std::size_t end : lines.ends) {
        for (std::size_t k = begin; k + 1 < end; ++k)
            length += distance(lines.points[k], lines.points[k + 1]);
        begin = end;
    }
    return length;
}

// A grid of squares of which each is there with the probability, clockwise every third time.
MeshLists random_grid(unsigned seed, int side, std::vector<std::int32_t>& elements) {
    std::mt19937 random(seed);
    Sample sample;
    for (int y = 0; y <= side; ++y)
        for (int x = 0; x <= side; ++x)
            sample.nodes({{x * 1.0, y * 1.0}});
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            if (random() % 3 == 0)
                continue;
            const Number a = y * (side + 1) + x + 1;
            if (random() % 3 == 0)
                sample.solid({a, a + side + 1, a + side + 2, a + 1});
            else
                sample.solid({a, a + 1, a + side + 2, a + side + 1});
            elements.push_back(static_cast<std::int32_t>(elements.size()));
        }
    return sample.mesh();
}

// Squares of a grid side by side, and many that connect nodes at random.
MeshLists grid_with_random_elements(int side, int random_elements) {
    std::vector<std::int32_t> unused;
    MeshLists grid = random_grid(1, side, unused);
    std::mt19937 random(7);
    const auto nodes = static_cast<unsigned>(grid.nodes.size());
    for (int k = 0; k < random_elements; ++k) {
        Element e = grid.elements.front();
        e.number = ElementNumber(static_cast<Number>(grid.elements.size()) + 1);
        for (NodeNumber* word : {&e.words.corner_1, &e.words.corner_2, &e.words.corner_3, &e.words.corner_4})
            *word = NodeNumber(static_cast<Number>(random() % nodes) + 1);
        grid.elements.push_back(e);
    }
    grid.finish();
    return grid;
}

TEST(TangledElements, AreNoneWhereElementsLieSideBySide) {
    const MeshLists mesh = grid_with_random_elements(40, 0);
    for (const bool tangled : tangled_elements(mesh, corners_of(mesh)))
        EXPECT_FALSE(tangled);
}

TEST(TangledElements, AreTheWidestUntilTheRestCoversTheMeshAFewHundredTimes) {
    const MeshLists mesh = grid_with_random_elements(40, 5000);
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    const std::vector<bool> tangled = tangled_elements(mesh, corners);
    double covered = 0.0, widest_drawn = 0.0, narrowest_left_out = 1e9;
    for (std::size_t i = 0; i < tangled.size(); ++i) {
        Bounds box{mesh.point(corners[i][0]), mesh.point(corners[i][0])};
        for (int k = 1; k < 4; ++k) {
            const Position p = mesh.point(corners[i][k]);
            box = {{std::min(box.low.x, p.x), std::min(box.low.y, p.y)},
                   {std::max(box.high.x, p.x), std::max(box.high.y, p.y)}};
        }
        const double area = box.width() * box.height();
        if (tangled[i]) {
            narrowest_left_out = std::min(narrowest_left_out, area);
        } else {
            covered += area;
            widest_drawn = std::max(widest_drawn, area);
        }
    }
    EXPECT_LE(widest_drawn, narrowest_left_out);
    EXPECT_LE(covered, 300.0 * 40.0 * 40.0);
    EXPECT_GT(covered + narrowest_left_out, 300.0 * 40.0 * 40.0);
}

TEST(RegionOutline, EnclosesTheAreaOfItsElements) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        std::vector<std::int32_t> elements;
        const MeshLists mesh = random_grid(seed, 9, elements);
        EXPECT_DOUBLE_EQ(area_of(region_outline(mesh, corners_of(mesh), elements)),
                         static_cast<double>(elements.size()));
    }
}

TEST(ElementSides, DrawEverySideOnce) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        std::vector<std::int32_t> elements;
        const MeshLists mesh = random_grid(seed, 9, elements);
        std::set<std::pair<Number, Number>> sides;
        for (const Element& e : mesh.elements)
            for (int k = 0; k < 4; ++k)
                sides.insert(std::minmax({e.corner(k), e.corner((k + 1) % 4)}));
        EXPECT_DOUBLE_EQ(length_of(element_sides(mesh, corners_of(mesh), elements, 1e-9)),
                         static_cast<double>(sides.size()));
    }
}

TEST(ElementSides, RunStraightThroughAGrid) {
    Sample sample;
    for (int y = 0; y <= 2; ++y)
        for (int x = 0; x <= 3; ++x)
            sample.nodes({{x * 1.0, y * 1.0}});
    std::vector<std::int32_t> elements;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            elements.push_back(static_cast<std::int32_t>(elements.size()));
            sample.solid({4 * y + x + 1, 4 * y + x + 2, 4 * y + x + 6, 4 * y + x + 5});
        }
    const MeshLists mesh = sample.mesh();
    const Polylines lines = element_sides(mesh, corners_of(mesh), elements, 1e-9);
    EXPECT_DOUBLE_EQ(length_of(lines), 3.0 * 3 + 4.0 * 2);
    EXPECT_LE(lines.ends.size(), 2U * 7);  // three lines across and four up, each in two pieces at most
}

TEST(Hatch, CoversARegionInProportionToItsArea) {
    const double spacing = 0.01;
    Polylines loops;  // an L of area 3, and a triangle that touches nothing
    loops.points = {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}, {5, 5}, {6, 5}, {5, 6}};
    loops.ends = {6, 9};
    const Bounds all{{0, 0}, {6, 6}};
    EXPECT_NEAR(length_of(hatch(loops, spacing, all)) * spacing, 3.5, 0.02);
    EXPECT_TRUE(hatch(Polylines{}, spacing, all).empty());
}

TEST(Hatch, OfARegionFarLargerThanTheAreaIsThatOfTheArea) {
    Polylines loops;
    loops.points = {{-1e12, -1e12}, {1e12, -1e12}, {1e12, 1e12}, {-1e12, 1e12}};
    loops.ends = {4};
    const Polylines lines = hatch(loops, 8.0, {{0, 0}, {800, 600}});
    EXPECT_NEAR(static_cast<double>(lines.ends.size()), 1400.0 / std::sqrt(2.0) / 8.0, 1.0);
}

TEST(Page, TakesTheWindowAndTurnsYOver) {
    const Page page({{0, 0}, {10, 5}}, 50.0, 20.0, 800.0);
    EXPECT_DOUBLE_EQ(page.scale(), 80.0);
    EXPECT_DOUBLE_EQ(page.on_page(Position{0, 0}).x, 50.0);
    EXPECT_DOUBLE_EQ(page.on_page(Position{0, 0}).y, 420.0);
    EXPECT_DOUBLE_EQ(page.on_page(Position{10, 5}).x, 850.0);
    EXPECT_DOUBLE_EQ(page.on_page(Position{10, 5}).y, 20.0);
}

TEST(Page, KeepsWhatIsBeyondAllBoundsCountable) {
    const Page page({{0, 0}, {1, 1}}, 0.0, 0.0, 1000.0);
    for (const double far : {1e38, 1e300, std::numeric_limits<double>::infinity()}) {
        const Position p = page.on_page(Position{-far, far});
        EXPECT_EQ(p.x, -1e12);
        EXPECT_EQ(p.y, -1e12);
    }
}

TEST(Page, WindowWithoutHeightOrAnythingIsWidened) {
    for (const Bounds& window : {Bounds{{0, 1}, {10, 1}}, Bounds{{3, 3}, {3, 3}}, Bounds{{1, 0}, {1, 7}}}) {
        const Page page(window, 0.0, 0.0, 100.0);
        EXPECT_TRUE(std::isfinite(page.scale()));
        EXPECT_GT(page.scale(), 0.0);
        EXPECT_GT(page.area().height(), 0.0);
        EXPECT_LE(page.area().height(), 140.0 + 1e-9);
    }
}

TEST(MaterialColor, RepeatsAfter36MaterialsAlsoAmongTheLowest) {
    constexpr ElementClass solid = ElementClass::solid;
    EXPECT_EQ(material_color(solid, 1), material_color(solid, 37));
    constexpr std::int32_t LOWEST = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(material_color(solid, LOWEST), material_color(solid, LOWEST + 36));
}

TEST(MaterialColor, TellsMaterialsOfJointsBeamsAndTrussesApart) {
    const auto apart = [](Rgb a, Rgb b) { return std::hypot(a.r - b.r, a.g - b.g, a.b - b.b); };
    for (const ElementClass of : {ElementClass::joint, ElementClass::beam, ElementClass::truss})
        for (std::int32_t one = 1; one <= 24; ++one)
            for (std::int32_t other = one + 1; other <= 24; ++other)
                EXPECT_GT(apart(material_color(of, one), material_color(of, other)), other <= 6 ? 60 : 20)
                    << name_of(of) << " " << one << " and " << other;
    for (std::int32_t joint = 1; joint <= 6; ++joint)  // beams of a wall lie over its joint
        for (std::int32_t beam = 1; beam <= 6; ++beam)
            EXPECT_GT(
                apart(material_color(ElementClass::joint, joint), material_color(ElementClass::beam, beam)),
                60);
}

TEST(RoundSteps, AreRoundAndWithinTheRange) {
    EXPECT_EQ(round_steps(0.0, 70.0, 10), (std::vector<double>{0, 10, 20, 30, 40, 50, 60, 70}));
    EXPECT_EQ(round_steps(-0.3, 0.5, 4), (std::vector<double>{-0.2, 0.0, 0.2, 0.4}));
    EXPECT_TRUE(round_steps(1.0, 1.0, 4).empty());
    EXPECT_LE(round_steps(1e17, 1e17 + 32.0, 10).size(), 11U);  // beyond the digits of a number
}

TEST(PictureText, IsValidUtf8WithoutControlCharacters) {
    EXPECT_EQ(picture_text("W\xC3\xA4nde"), "W\xC3\xA4nde");
    EXPECT_EQ(picture_text("W\xE4nde"), "W?nde");
    EXPECT_EQ(picture_text("a\tb\x7f"), "a?b?");
    EXPECT_EQ(picture_text("\xC0\xAF\xED\xA0\x80"), "?????");
    EXPECT_EQ(picture_text("\xE2\x82"), "??");
}

}  // namespace
}  // namespace brelan::tool
