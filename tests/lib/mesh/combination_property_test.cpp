// Combinations of random pairs of grids that share a side: areas add up, the meshes meet at whole sides, no
// node stands twice. Matching against the plain scan of all pairs.

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <utility>

#include "mesh/combine.h"
#include "plane/point.h"
#include "support/state.h"

#include "support/campaign.h"
#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Random = std::mt19937;

// Numbers in random order with gaps.
std::vector<int> random_numbers(Random& random, std::size_t count, int gap) {
    std::vector<int> numbers;
    int number = static_cast<int>(random() % 50);
    for (std::size_t k = 0; k < count; ++k)
        numbers.push_back(number += 1 + static_cast<int>(random() % static_cast<unsigned>(gap)));
    std::shuffle(numbers.begin(), numbers.end(), random);
    return numbers;
}

// A grid over given columns and rows; a few of its quadrilaterals are cut into triangles.
Mesh grid(Random& random, const std::vector<double>& x, const std::vector<double>& y) {
    Mesh mesh;
    const std::vector<int> node = random_numbers(random, x.size() * y.size(), 3);
    for (std::size_t i = 0; i < x.size(); ++i)
        for (std::size_t j = 0; j < y.size(); ++j)
            mesh.nodes.push_back({node[i * y.size() + j], {1, 0, 1}, x[i], y[j], 0, 0});
    std::vector<std::array<int, 4>> corners;
    for (std::size_t i = 0; i + 1 < x.size(); ++i) {
        for (std::size_t j = 0; j + 1 < y.size(); ++j) {
            const auto at = [&](std::size_t di, std::size_t dj) {
                return node[(i + di) * y.size() + j + dj];
            };
            if (random() % 4 == 0) {
                corners.push_back({at(0, 0), at(1, 0), at(1, 1), 0});
                corners.push_back({at(0, 0), at(1, 1), at(0, 1), 0});
            } else {
                corners.push_back({at(0, 0), at(1, 0), at(1, 1), at(0, 1)});
            }
        }
    }
    const std::vector<int> element = random_numbers(random, corners.size(), 2);
    for (std::size_t e = 0; e < corners.size(); ++e)
        mesh.continuum.push_back({element[e], corners[e], {}, 1, {}, {1.0, 2.0}});
    std::sort(mesh.nodes.begin(), mesh.nodes.end(),
              [](const auto& a, const auto& b) { return a.number < b.number; });
    std::sort(mesh.continuum.begin(), mesh.continuum.end(),
              [](const auto& a, const auto& b) { return a.number < b.number; });
    return mesh;
}

std::vector<double> places(Random& random, double start, std::size_t count) {
    std::vector<double> result{start};
    while (result.size() < count)
        result.push_back(result.back() + 0.25 * static_cast<double>(1 + random() % 8));
    return result;
}

// Sides of one element alone.
std::size_t border_sides(const Mesh& mesh) {
    std::map<std::pair<int, int>, int> sides;
    for (const MeshElement& element : mesh.continuum) {
        const std::size_t corners = element.corners[3] == 0 ? 3 : 4;
        for (std::size_t k = 0; k < corners; ++k) {
            const int a = element.corners[k], b = element.corners[(k + 1) % corners];
            EXPECT_LE((++sides[{a, b}]), 1) << "side " << a << "-" << b << " runs twice the same way";
        }
    }
    std::size_t count = 0;
    for (const auto& [side, times] : sides)
        count += sides.count({side.second, side.first}) == 0;
    return count;
}

TEST(CombinationProperty, GridsThatShareASideBecomeOneConformingMesh) {
    Random random(30);
    for (int round = 0; round < rounds(20, 300); ++round) {
        const std::vector<double> y = places(random, random() % 2 == 0 ? 0.0 : -3.5, 2 + random() % 6);
        const std::vector<double> x = places(random, 0.0, 2 + random() % 6);
        std::vector<double> x2 = places(random, x.back(), 2 + random() % 6);
        const bool turned = random() % 2 == 0;  // the shared side lies level
        Mesh second = grid(random, x, y), first = grid(random, x2, y);
        if (turned)
            for (Mesh* mesh : {&second, &first})
                for (MeshNode& node : mesh->nodes)
                    node.x = -std::exchange(node.y, node.x);
        if (random() % 2 == 0)
            std::swap(second, first);
        // On the shared side the nodes of the first region lie up to a quarter of the smallest spacing away,
        // which does not show: the second region's place counts.
        for (MeshNode& node : first.nodes)
            if ((turned ? node.y : node.x) == x.back())
                node.x += 0.0625 * static_cast<double>(random() % 2);

        const Project project;
        project.write("second.Mes", second.text());
        project.write("first.Mes", first.text());
        project.deck(text_of({"0", "second.Mes", "first.Mes", "out.Mes", "0"}));
        expect_finished(project.run());
        const MeshCheck check = expect_sound_mesh(project, "out.Mes", Kind::displacement);
        EXPECT_EQ(check.mesh.nodes.size(), second.nodes.size() + first.nodes.size() - y.size())
            << "round " << round;
        EXPECT_EQ(check.mesh.continuum.size(), second.continuum.size() + first.continuum.size());
        EXPECT_EQ(check.clockwise, 0);
        EXPECT_EQ(border_sides(check.mesh), 2 * (x.size() + x2.size() - 2 + y.size() - 1))
            << "round " << round;
        std::map<std::pair<double, double>, int> seen;
        for (const MeshNode& node : check.mesh.nodes)
            EXPECT_EQ((seen[{node.x, node.y}]++), 0) << "round " << round << ", node " << node.number;
        EXPECT_DOUBLE_EQ(check.area, (x2.back() - x.front()) * (y.back() - y.front())) << "round " << round;
    }
}

// --- matching in the tables ----------------------------------------------------------------------

TEST(CombinationProperty, MatchesAreThoseOfTheScanOfAllPairs) {
    Random random(31);
    for (int round = 0; round < rounds(8, 120); ++round) {
        reset_mesh(state.mesh);
        RegionTables first;
        state.combination.first = Region{};
        state.combination.second = Region{};
        // Coarse places, so that ties and exact half spacings are many; some rounds have coincident nodes.
        const int step = 1 + round % 3;
        const auto fill = [&](auto& active, auto& x, auto& y, Region& region, bool twice) {
            std::map<std::pair<int, int>, int> taken;
            for (NodeNumber n{1}; n <= NodeNumber(1500); ++n) {
                const int i = static_cast<int>(random() % 60) * step,
                          j = static_cast<int>(random() % 60) * step;
                if (random() % 3 == 0 || (!twice && taken[{i, j}]++ > 0))
                    continue;
                active[n] = 1;
                x[n] = static_cast<float>(i) * 0.5F;
                y[n] = static_cast<float>(j) * 0.5F;
                region.nodes.include(n);
            }
        };
        fill(first.node_in_use, first.x, first.y, state.combination.first, round % 8 == 7);
        fill(state.mesh.node_in_use, state.mesh.x, state.mesh.y, state.combination.second, round % 8 == 6);
        // The first region a little off.
        const float off = std::array{0.0F, 0.25F, 0.125F, 0.5F}[static_cast<std::size_t>(round) % 4];
        for (std::int32_t n = 1; n <= 1500; ++n)
            first.x[NodeNumber(n)] = first.x[NodeNumber(n)] + off;

        float DMIN = 1.0E35F;
        std::map<std::int32_t, std::int32_t> expected;
        for (std::int32_t a = 1; a <= 1500; ++a) {
            for (std::int32_t b = a + 1; b <= 1500; ++b) {
                if (first.node_in_use[NodeNumber(a)] == 1 && first.node_in_use[NodeNumber(b)] == 1)
                    DMIN = std::min(DMIN, distance_between(first.x[NodeNumber(a)], first.y[NodeNumber(a)],
                                                           first.x[NodeNumber(b)], first.y[NodeNumber(b)]));
                if (state.mesh.node_in_use[NodeNumber(a)] == 1 && state.mesh.node_in_use[NodeNumber(b)] == 1)
                    DMIN = std::min(
                        DMIN, distance_between(state.mesh.x[NodeNumber(a)], state.mesh.y[NodeNumber(a)],
                                               state.mesh.x[NodeNumber(b)], state.mesh.y[NodeNumber(b)]));
            }
        }
        for (std::int32_t a = 1; a <= 1500; ++a) {
            expected[a] = 0;
            for (std::int32_t b = 1; b <= 1500; ++b)
                if (first.node_in_use[NodeNumber(a)] == 1 && state.mesh.node_in_use[NodeNumber(b)] == 1 &&
                    distance_between(first.x[NodeNumber(a)], first.y[NodeNumber(a)],
                                     state.mesh.x[NodeNumber(b)], state.mesh.y[NodeNumber(b)]) <= 0.5F * DMIN)
                    expected[a] = b;
        }
        EXPECT_EQ(smallest_spacing(state.combination, state.mesh, first), DMIN) << "round " << round;
        const NodeNumbers matches = match_nearest_nodes(state.combination, state.mesh, first, DMIN);
        std::size_t wrong = 0;
        for (std::int32_t a = 1; a <= 1500; ++a)
            wrong += matches[NodeNumber(a)].value != expected[a];
        EXPECT_EQ(wrong, 0U) << "round " << round;
    }
}

}  // namespace
}  // namespace brelan::test
