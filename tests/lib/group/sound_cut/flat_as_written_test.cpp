// Elements that are flat by the digits of a mesh file, held against digits that are printed and read back.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "group/sound_ground.h"
#include "group/sound_smoothing.h"
#include "lib/group/cut_fixture.h"
#include "plane/orientation.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

float as_printed(float value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.5e", static_cast<double>(value));
    return std::strtof(text.data(), nullptr);
}

long double degrees_between(const Point& a, const Point& b, const Point& c) {
    const auto wide = [](float v) { return static_cast<long double>(v); };
    const long double ux = wide(a.x) - wide(b.x), uy = wide(a.y) - wide(b.y);
    const long double vx = wide(c.x) - wide(b.x), vy = wide(c.y) - wide(b.y);
    return std::atan2(std::abs(ux * vy - uy * vx), ux * vx + uy * vy) * 57.295779513082320877L;
}

enum class Flatness { flat, sound, undecided };

// Flat is what turns nowhere or the wrong way, or by a hundredth of a degree, printed or not.
Flatness flatness_of(const std::vector<Point>& corners) {
    constexpr long double LEAST = 0.01L, DOUBT = 1.0e-6L;
    const std::size_t n = corners.size();
    std::vector<Point> printed;
    for (const Point& p : corners)
        printed.push_back({as_printed(p.x), as_printed(p.y)});
    bool is_undecided = false;
    for (std::size_t i = 0; i < n; ++i)
        for (const std::vector<Point>& points : {corners, printed}) {
            const Point &a = points[i], &b = points[(i + 1) % n], &c = points[(i + 2) % n];
            const long double angle = degrees_between(a, b, c), least = std::min(angle, 180.0L - angle);
            if (orientation(a, b, c) <= 0 || least < LEAST - DOUBT)
                return Flatness::flat;
            is_undecided = is_undecided || least < LEAST + DOUBT;
        }
    return is_undecided ? Flatness::undecided : Flatness::sound;
}

class FlatAsWritten : public CutFixture {
protected:
    std::mt19937 random_{3};

    float any(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random_); }
    float power_of_ten(float low, float high) { return std::pow(10.0F, any(low, high)); }

    // A triangle or a quadrilateral at any place, of any size and thinness, turned.
    std::vector<Point> any_corners() {
        const Point at{any(-1.0F, 1.0F) * power_of_ten(-1.0F, 3.0F),
                       any(-1.0F, 1.0F) * power_of_ten(-1.0F, 3.0F)};
        const float size = power_of_ten(-4.0F, 1.5F), thin = power_of_ten(-4.0F, 0.0F),
                    turn = any(0.0F, 6.28F);
        std::vector<Point> corners;
        const bool is_triangle = random_() % 2 == 0;
        for (const Point& p :
             is_triangle ? std::vector<Point>{{0, 0}, {1, 0}, {any(0.0F, 1.0F), 1}}
                         : std::vector<Point>{{0, 0}, {1, 0}, {any(0.6F, 1.2F), 1}, {0, any(0.5F, 1.2F)}}) {
            const float x = size * p.x, y = size * thin * p.y;
            corners.push_back({at.x + x * std::cos(turn) - y * std::sin(turn),
                               at.y + x * std::sin(turn) + y * std::cos(turn)});
        }
        return corners;
    }
};

TEST_F(FlatAsWritten, IsWhatPrintedCoordinatesClose) {
    int flat = 0, sound = 0;
    for (int i = 0; i < rounds(20000); ++i) {
        const std::vector<Point> corners = any_corners();
        const Flatness expected = flatness_of(corners);
        if (expected == Flatness::undecided)
            continue;
        Solid solid{ElementNumber(1), {}, corners.size()};
        for (std::size_t k = 0; k < corners.size(); ++k) {
            node(static_cast<std::int32_t>(k) + 1, corners[k].x, corners[k].y);
            solid.node[k] = NodeNumber(static_cast<std::int32_t>(k) + 1);
        }
        ASSERT_EQ(is_flat_as_written(state.mesh, solid), expected == Flatness::flat) << i;
        (expected == Flatness::flat ? flat : sound) += 1;
    }
    EXPECT_GT(100 * flat, rounds(20000));
    EXPECT_GT(100 * sound, rounds(20000));
}

}  // namespace
}  // namespace brelan::test
