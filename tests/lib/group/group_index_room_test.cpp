// How far beyond its ends a slanting side is crossed: the rounding of the crossing's coordinate can take a
// whole length, most of all where an end is a power of two. The index of places finds what a look at all
// elements finds.

#include <algorithm>
#include <cmath>
#include <random>
#include <span>
#include <vector>

#include "lib/group/cut_fixture.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

using Random = std::mt19937;

float between(Random& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}
int below(Random& random, int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
}

struct Side {
    Point a, b;
};

Point turned(const Point& p) {
    return {p.y, p.x};
}

// A power of two of either sign, or one of its neighbours.
float power_of_two(Random& random) {
    float value = std::ldexp(below(random, 2) == 0 ? 1.0F : -1.0F, below(random, 6) - 2);
    for (int i = below(random, 3); i > 0; --i)
        value = std::nextafter(value, below(random, 2) == 0 ? 0.0F : 2.0F * value);
    return value;
}

// From a power of two to one of its neighbours, one to eight units high.
Side upright(Random& random) {
    const float x = power_of_two(random), y = between(random, -4.0F, 4.0F);
    const float beside = std::nextafter(x, below(random, 2) == 0 ? 0.0F : 2.0F * x);
    const float height = between(random, 1.0F, 8.0F);
    const float top = below(random, 4) == 0 ? power_of_two(random) : y + height;
    return below(random, 2) == 0 ? Side{{x, y}, {beside, top}} : Side{{beside, y}, {x, top}};
}

// A short segment across the line of an upright side, up to a little more than its height beyond it.
Side across(Random& random, const Side& side) {
    const float height = side.b.y - side.a.y;
    const float y = side.a.y + height * between(random, -1.2F, 2.2F);
    return {{side.a.x - between(random, 0.01F, 0.2F), y}, {side.a.x + between(random, 0.01F, 0.2F), y}};
}

bool beyond_half_its_height(const Side& side, float y) {
    const float middle = 0.5F * (side.a.y + side.b.y);
    return std::abs(y - middle) > std::abs(side.b.y - side.a.y) * 1.02F;
}

class GroupIndexRoom : public CutFixture {
protected:
    static constexpr std::int32_t UPRIGHT = 300, SMALL = 600;

    // Narrow triangles on upright sides, small ones with sides along the axes by powers of two; both also
    // with the axes changed.
    static std::vector<Side> mesh_of(Random& random) {
        std::vector<Side> sides;
        const auto add = [](std::int32_t e, std::vector<Point> corners) {
            if (e % 2 == 0)
                for (Point& p : corners)
                    p = turned(p);
            const std::int32_t n = 3 * e;
            node(n - 2, corners[0].x, corners[0].y);
            node(n - 1, corners[1].x, corners[1].y);
            node(n, corners[2].x, corners[2].y);
            element(e, {n - 2, n - 1, n, 0});
        };
        for (std::int32_t e = 1; e <= UPRIGHT; ++e) {
            const Side side = upright(random);
            sides.push_back(side);
            add(e, {side.a, side.b, {side.a.x - 0.05F, side.a.y}});
        }
        for (std::int32_t e = UPRIGHT + 1; e <= UPRIGHT + SMALL; ++e) {
            const float x = power_of_two(random) - between(random, 0.0F, 0.1F);
            const float y = between(random, -12.0F, 12.0F);
            add(e, {{x, y}, {x + 0.1F, y}, {x, y + 0.1F}});
        }
        build_indexes(state.mesh, state.engine);
        return sides;
    }

    static std::vector<std::int32_t> collected(const Side& segment, bool with_index) {
        state.engine.uses_indexes = with_index;
        collect_rows(state.mesh, state.engine, cut, segment.a, segment.b);
        std::vector<std::int32_t> elements;
        for (const CutRow& row : cut.rows) {
            elements.push_back(row.element.value);
            NodeNumber& first = state.mesh.words[row.element].corner_1;
            first = first.in_sight();
        }
        cut.clear();
        return elements;
    }
};

TEST_F(GroupIndexRoom, SideIsCrossedAlmostAWholeLengthBeyondItsEnd) {
    const Meeting crossing =
        segment_crossing({1.5F, 9.286F}, {2.5F, 9.286F}, {2.0F, 5.0F}, {std::nextafter(2.0F, 0.0F), 0.0F});
    EXPECT_TRUE(crossing.meets);
    EXPECT_EQ(crossing.point.x, 2.0F);
    EXPECT_EQ(crossing.point.y, 9.286F);
}

TEST_F(GroupIndexRoom, FlatElementIsMetOnItsWholeLineAndNearWhereItLiesAlone) {
    rectangle(30.0F, 30.0F);
    node(5, 10.0F, 10.0F);
    node(6, 12.0F, 10.0F);
    element(2, {5, 6, 6, 5});  // a joint of no width
    build_indexes(state.mesh, state.engine);
    const auto has_joint = [](std::span<const ElementNumber> elements) {
        return std::find(elements.begin(), elements.end(), ElementNumber(2)) != elements.end();
    };
    EXPECT_TRUE(has_joint(elements_near(state.engine, {11.0F, 9.0F}, {11.0F, 11.0F})));
    EXPECT_TRUE(has_joint(elements_met_by(state.engine, {25.0F, 9.0F}, {25.0F, 11.0F})));
    move_node(state.mesh, state.engine, NodeNumber(5), {20.0F, 20.0F});
    move_node(state.mesh, state.engine, NodeNumber(6), {22.0F, 20.0F});
    EXPECT_TRUE(has_joint(elements_near(state.engine, {21.0F, 19.0F}, {21.0F, 21.0F})));
}

TEST_F(GroupIndexRoom, SidesBetweenPowersOfTwoAreFoundAsByAScan) {
    Random random(7);
    int far = 0;
    const int meshes = rounds(20);
    for (int mesh = 0; mesh < meshes; ++mesh) {
        clear();
        const std::vector<Side> sides = mesh_of(random);
        for (int i = 0; i < 300; ++i) {
            const auto s = static_cast<std::size_t>(below(random, static_cast<int>(sides.size())));
            const bool slanting = below(random, 3) == 0;
            Side segment = slanting ? upright(random) : across(random, sides[s]);
            if (!slanting && beyond_half_its_height(sides[s], segment.a.y) &&
                segment_crossing(segment.a, segment.b, sides[s].a, sides[s].b).meets)
                ++far;
            if (slanting ? below(random, 2) == 0 : (s + 1) % 2 == 0)
                segment = {turned(segment.a), turned(segment.b)};
            ASSERT_EQ(collected(segment, true), collected(segment, false))
                << "mesh " << mesh << ", segment " << i << " from " << segment.a.x << ", " << segment.a.y
                << " to " << segment.b.x << ", " << segment.b.y;
        }
    }
    EXPECT_GT(far, 5 * meshes);
}

}  // namespace
}  // namespace brelan::test
