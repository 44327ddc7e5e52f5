// The outline of a subsoil layer round a cut-off wall, held against the areas that it should enclose.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "dam/dam_outlines.h"

namespace brelan::test {
namespace {

// Inside by the parity of crossings, as the region stage of the group engine asks.
bool inside(const DamOutline& outline, float x, float y) {
    std::vector<Point> points;
    for (const Point& p : outline)
        points.push_back({p.x, p.y});
    bool in = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& a = points[i];
        const Point& b = points[(i + 1) % points.size()];
        if ((a.y > y) != (b.y > y) && x > a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)))
            in = !in;
    }
    return in;
}

std::string text_of(const DamOutline& outline) {
    std::string text;
    for (const Point& p : outline)
        text +=
            "(" + std::to_string(static_cast<int>(p.x)) + " " + std::to_string(static_cast<int>(p.y)) + ")";
    return text;
}

// A layer from -20 to -10 and from 0 to 100.
DamOutline outline_round(const DamOutline& wall) {
    return layer_outline(0.0F, 100.0F, -20.0F, -10.0F, wall);
}

TEST(LayerOutline, WithoutAWallIsARectangle) {
    const std::string rectangle = "(0 -20)(100 -20)(100 -10)(0 -10)";
    EXPECT_EQ(text_of(outline_round({})), rectangle);
    EXPECT_EQ(text_of(outline_round({{40, 0}, {40, -10}, {44, -10}, {44, 0}})), rectangle);
    EXPECT_EQ(text_of(outline_round({{40, -20}, {40, -25}, {44, -25}, {44, -20}})), rectangle);
}

TEST(LayerOutline, HasANotchWhereTheWallEndsInTheLayer) {
    const std::string notched = "(0 -20)(100 -20)(100 -10)(44 -10)(44 -15)(40 -15)(40 -10)(0 -10)";
    EXPECT_EQ(text_of(outline_round({{40, 0}, {40, -15}, {44, -15}, {44, 0}})), notched);
    // The points may go round the wall either way, from any of them on.
    EXPECT_EQ(text_of(outline_round({{44, -15}, {44, 0}, {40, 0}, {40, -15}})), notched);
    EXPECT_EQ(text_of(outline_round({{40, 0}, {44, 0}, {44, -15}, {40, -15}})), notched);
}

TEST(LayerOutline, GoesRoundAWallRightThroughByTheBottomLineAndBack) {
    const std::string parted = "(0 -20)(100 -20)(100 -10)(44 -10)(44 -20)(40 -20)(40 -10)(0 -10)";
    EXPECT_EQ(text_of(outline_round({{40, 0}, {40, -25}, {44, -25}, {44, 0}})), parted);
    EXPECT_EQ(text_of(outline_round({{40, -10}, {40, -20}, {44, -20}, {44, -10}})), parted);
}

TEST(LayerOutline, HasANotchFromBelowForAWallThatBeginsInTheLayer) {
    EXPECT_EQ(text_of(outline_round({{40, -15}, {40, -25}, {44, -25}, {44, -15}})),
              "(0 -20)(40 -20)(40 -15)(44 -15)(44 -20)(100 -20)(100 -10)(0 -10)");
}

TEST(LayerOutline, HangsAWallInsideOnALineToTheBottom) {
    EXPECT_EQ(text_of(outline_round({{40, -12}, {40, -18}, {44, -18}, {44, -12}})),
              "(0 -20)(40 -20)(40 -18)(40 -12)(44 -12)(44 -18)(40 -18)(40 -20)(100 -20)(100 -10)(0 -10)");
}

TEST(LayerOutline, OfAnyWallHoldsThePointsOutsideTheWall) {
    std::mt19937 random(4711);
    std::uniform_real_distribution<float> x(5.0F, 95.0F), depth(-30.0F, 0.0F), share(0.0F, 1.0F);
    for (int trial = 0; trial < 300; ++trial) {
        // A quadrilateral round a point, its corners in four quadrants.
        const float cx = x(random), cy = depth(random);
        const auto reach = [&](float most) { return 0.2F + most * share(random); };
        DamOutline wall{{cx - reach(4), cy - reach(8)},
                        {cx + reach(4), cy - reach(8)},
                        {cx + reach(4), cy + reach(8)},
                        {cx - reach(4), cy + reach(8)}};
        if (trial % 2 == 1)
            std::swap(wall[1], wall[3]);
        const DamOutline outline = outline_round(wall);
        for (int sample = 0; sample < 200; ++sample) {
            const float px = 100.0F * share(random), py = -20.0F + 10.0F * share(random);
            EXPECT_EQ(inside(outline, px, py), !inside(wall, px, py))
                << "trial " << trial << ", point " << px << ", " << py;
        }
    }
}

}  // namespace
}  // namespace brelan::test
