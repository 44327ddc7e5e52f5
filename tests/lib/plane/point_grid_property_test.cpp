// The searches among points against the plain scan of all pairs: the same answer to the last bit.

#include "plane/point_grid.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <optional>
#include <random>

#include "run/flush_to_zero.h"
#include "support/campaign.h"
#include "support/state.h"

namespace brelan::test {
namespace {

using Points = std::vector<NumberedPoint>;
using Random = std::mt19937;

// The distance in 32 bits: differences, squares, sum, root.
float distance(const NumberedPoint& a, const NumberedPoint& b) {
    const float dx = b.x - a.x;
    const float dy = b.y - a.y;
    return std::sqrt(dx * dx + dy * dy);
}

std::int32_t plain_highest(const Points& points, std::size_t count, const NumberedPoint& at, float reach) {
    std::int32_t highest = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (distance(points[i], at) <= reach)
            highest = std::max(highest, points[i].number);
    return highest;
}

float plain_smallest(const Points& points, float start) {
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t k = i + 1; k < points.size(); ++k)
            start = std::min(start, distance(points[i], points[k]));
    return start;
}

// --- families of points --------------------------------------------------------------------------

float between(Random& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}

Points points_of(std::size_t count, const std::function<NumberedPoint()>& next) {
    Points points;
    for (std::size_t i = 0; i < count; ++i)
        points.push_back(next());
    return points;
}

Points scattered(Random& random, std::size_t count, float size) {
    return points_of(count, [&] {
        return NumberedPoint{0, between(random, -size, size), between(random, -size, size)};
    });
}

// Heaps of a given width around a few centres.
Points clustered(Random& random, std::size_t count, float size, float width) {
    const Points centres = scattered(random, 20, size);
    return points_of(count, [&] {
        const NumberedPoint& c = centres[random() % centres.size()];
        return NumberedPoint{0, c.x + between(random, -width, width), c.y + between(random, -width, width)};
    });
}

// A regular mesh, in random order of its numbers.
Points gridded(Random& random, std::int32_t side, float spacing, float origin) {
    Points points;
    for (std::int32_t i = 0; i < side; ++i)
        for (std::int32_t j = 0; j < side; ++j)
            points.push_back(
                {0, origin + static_cast<float>(i) * spacing, origin + static_cast<float>(j) * spacing});
    std::shuffle(points.begin(), points.end(), random);
    return points;
}

// On one line; with a slope of 0 on a level.
Points collinear(Random& random, std::size_t count, float length, float slope) {
    return points_of(count, [&] {
        const float x = between(random, 0.0F, length);
        return NumberedPoint{0, x, x * slope};
    });
}

Points upright(Points points) {
    for (NumberedPoint& point : points)
        std::swap(point.x, point.y);
    return points;
}

// Neighbours along a row at the reach, or one or two of the smallest steps beside it.
Points near_the_reach(Random& random, std::size_t count, float reach, float origin) {
    float x = origin;
    return points_of(count, [&] {
        x = x + reach;
        for (auto step = random() % 3; step > 0; --step)
            x = std::nextafter(x, random() % 2 == 0 ? 1.0E30F : -1.0E30F);
        return NumberedPoint{0, x, std::nextafter(origin, static_cast<float>(random() % 3))};
    });
}

// The same few places again and again.
Points coincident(Random& random, std::size_t count, float size) {
    const Points places = scattered(random, 50, size);
    return points_of(count, [&] { return places[random() % places.size()]; });
}

Points joined(Points a, const Points& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Ascending numbers with gaps.
Points numbered(Random& random, Points points) {
    std::int32_t number = 0;
    for (NumberedPoint& point : points)
        point.number = number += 1 + static_cast<std::int32_t>(random() % 3);
    return points;
}

struct Family {
    const char* name;
    std::function<Points(Random&)> make;
    std::vector<float> reaches;
};

std::vector<Family> families() {
    using R = Random;
    return {
        {"scattered", [](R& r) { return scattered(r, 3000, 100.0F); }, {0.0F, 1.0E-4F, 0.5F, 3.0F, 300.0F}},
        {"clustered at the tolerance",
         [](R& r) { return clustered(r, 2500, 50.0F, 2.0E-4F); },
         {1.0E-4F, 5.0E-5F}},
        {"one heap", [](R& r) { return clustered(r, 2000, 0.0F, 1.0E-4F); }, {1.0E-4F, 1.0E-6F, 1.0E-3F}},
        {"a mesh of 1",
         [](R& r) { return gridded(r, 55, 1.0F, 0.0F); },
         {0.5F, 1.0F, 1.4142135F, 1.4142134F, 2.0F}},
        {"a mesh of 0.1",
         [](R& r) { return gridded(r, 50, 0.1F, -2.0F); },
         {0.05F, 0.1F, 0.099999994F, 0.14142136F}},
        {"a mesh of 0.0001", [](R& r) { return gridded(r, 45, 1.0E-4F, 1.0F); }, {1.0E-4F, 5.0E-5F}},
        {"a mesh far away", [](R& r) { return gridded(r, 40, 0.25F, 1.0E6F); }, {0.25F, 0.125F, 1.0E-4F}},
        {"a level line", [](R& r) { return collinear(r, 2500, 10.0F, 0.0F); }, {1.0E-3F, 0.1F}},
        {"an upright line", [](R& r) { return upright(collinear(r, 2500, 10.0F, 0.0F)); }, {1.0E-3F, 0.1F}},
        {"a slope", [](R& r) { return collinear(r, 2500, 10.0F, 0.3F); }, {1.0E-3F, 0.1F}},
        {"coincident", [](R& r) { return coincident(r, 3000, 10.0F); }, {0.0F, 1.0E-4F, 1.0F}},
        {"coincident and scattered",
         [](R& r) { return joined(coincident(r, 100, 10.0F), scattered(r, 2000, 10.0F)); },
         {0.0F, 0.2F}},
        {"a row at the tolerance", [](R& r) { return near_the_reach(r, 2000, 1.0E-4F, 0.0F); }, {1.0E-4F}},
        {"a row at the tolerance near 1",
         [](R& r) { return near_the_reach(r, 2000, 1.0E-4F, 1.0F); },
         {1.0E-4F}},
        {"a row at 0.3", [](R& r) { return near_the_reach(r, 2000, 0.3F, -100.0F); }, {0.3F, 0.15F}},
        {"tiny", [](R& r) { return scattered(r, 1500, 1.0E-20F); }, {0.0F, 1.0E-20F, 1.0E-25F}},
        {"where squares vanish",
         [](R& r) { return scattered(r, 2000, 3.0E-18F); },
         {0.0F, 1.0E-19F, 1.0E-18F}},
        {"a mesh where squares vanish",
         [](R& r) { return gridded(r, 45, 1.0E-19F, 0.0F); },
         {0.0F, 5.0E-20F, 2.0E-19F}},
        {"a mesh of 2E-19",
         [](R& r) { return gridded(r, 45, 2.0E-19F, 0.0F); },
         {0.0F, 1.0E-19F, 2.0E-19F, 3.0E-19F}},
        {"huge", [](R& r) { return scattered(r, 2000, 1.0E18F); }, {0.0F, 1.0E-4F, 1.0E16F, 5.0E17F}},
        {"a huge mesh", [](R& r) { return gridded(r, 45, 1.0E17F, -1.0E18F); }, {0.0F, 5.0E16F, 1.0E17F}},
        {"where squares overflow",
         [](R& r) { return scattered(r, 1500, 1.0E30F); },
         {0.0F, 1.0E19F, 0.5E35F}},
        {"of all sizes",
         [](R& r) {
             return points_of(2000, [&] {
                 const float size = std::ldexp(1.0F, static_cast<int>(r() % 120) - 80);
                 return NumberedPoint{0, between(r, -size, size), between(r, -size, size)};
             });
         },
         {0.0F, 1.0E-19F, 1.0E-10F, 1.0F, 1.0E6F}},
    };
}

// With denormal results as the processor gives them, and as 0 as in a run.
class PointGridProperty : public ::testing::TestWithParam<bool> {
protected:
    PointGridProperty() {
        if (GetParam())
            mode_.emplace();
    }

private:
    std::optional<FlushToZero> mode_;
};

TEST_P(PointGridProperty, HighestWithinReachIsThatOfTheScanOfAllEarlierPoints) {
    for (const std::uint32_t seed : {1U, 2U}) {
        for (const Family& family : families()) {
            Random random(seed);
            const Points points = numbered(random, family.make(random));
            for (const float reach : family.reaches) {
                PointGrid grid(reach, seed == 1 ? points.size() : 1);
                std::size_t wrong = 0;
                for (std::size_t i = 0; i < points.size(); ++i) {
                    wrong += grid.highest_within_reach(points[i].x, points[i].y) !=
                             plain_highest(points, i, points[i], reach);
                    grid.add(points[i]);
                }
                EXPECT_EQ(wrong, 0U) << family.name << ", reach " << reach << ", seed " << seed;
            }
        }
    }
}

TEST_P(PointGridProperty, HighestWithinReachOfPlacesBetweenThePoints) {
    for (const Family& family : families()) {
        Random random(3);
        const Points points = numbered(random, family.make(random));
        for (const float reach : family.reaches) {
            PointGrid grid(reach, points.size());
            for (const NumberedPoint& point : points)
                grid.add(point);
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < 1000; ++i) {
                // Half the reach, or the whole of it, away from one of the points.
                const NumberedPoint& near = points[random() % points.size()];
                const float step = random() % 2 == 0 ? reach : reach * 0.5F;
                const NumberedPoint at = random() % 2 == 0 ? NumberedPoint{0, near.x + step, near.y}
                                                           : NumberedPoint{0, near.x, near.y - step};
                wrong +=
                    grid.highest_within_reach(at.x, at.y) != plain_highest(points, points.size(), at, reach);
            }
            EXPECT_EQ(wrong, 0U) << family.name << ", reach " << reach;
        }
    }
}

TEST_P(PointGridProperty, SmallestDistanceIsThatOfAllPairs) {
    for (std::uint32_t seed = 4; seed < 4 + rounds(1U, 3U); ++seed) {
        for (const Family& family : families()) {
            Random random(seed);
            Points points = numbered(random, family.make(random));
            for (const float start : {1.0E35F, 1.0F, 0.0F}) {
                const float found = smallest_distance(points, start);
                const float expected = plain_smallest(points, start);
                EXPECT_EQ(std::bit_cast<std::uint32_t>(found), std::bit_cast<std::uint32_t>(expected))
                    << family.name << ", start " << start << ", seed " << seed << ": " << found << ", "
                    << expected;
            }
        }
    }
}

TEST_P(PointGridProperty, SmallestDistanceOfEveryFewPoints) {
    Random random(7);
    for (int round = 0; round < 3000; ++round) {
        const std::size_t count = random() % 9;
        // On few places, so that ties and coincident points are many.
        const Points points = points_of(count, [&] {
            return NumberedPoint{0, static_cast<float>(random() % 8) * 0.7F,
                                 static_cast<float>(random() % 8) * 0.7F};
        });
        EXPECT_EQ(smallest_distance(points, 1.0E35F), plain_smallest(points, 1.0E35F)) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Denormals, PointGridProperty, ::testing::Values(false, true),
                         [](const auto& test) { return test.param ? "Flushed" : "Kept"; });

}  // namespace
}  // namespace brelan::test
