// Cuts over random meshes: with the index of places and without it they give the same tables; they keep the
// area, repeat no corner, and put a node on a side for both neighbours but where the rules leave it hanging.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine.h"
#include "group/engine_mesh.h"
#include "support/campaign.h"
#include "support/state.h"

namespace brelan::test {
namespace {

using Four = std::array<std::int32_t, 4>;
using Random = std::mt19937;

float between(Random& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}
int below(Random& random, int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
}

// --- meshes --------------------------------------------------------------------------------------

struct MeshNow {
    std::vector<Point> nodes;
    std::vector<Four> elements;
    std::vector<std::int32_t> types, lists;
    std::vector<std::int8_t> frozen;
    std::string failure;  // of a run that ended
};

constexpr int CELLS = 5;

std::int32_t grid_node(int column, int row) {
    return row * (CELLS + 1) + column + 1;
}

// A grid of unit squares with shifted nodes, graded and perhaps mirrored, each cell a quadrilateral or two
// triangles.
MeshNow random_mesh(Random& random, bool degenerate) {
    MeshNow mesh;
    const float grade = between(random, 0.6F, 1.6F);
    const float shift = below(random, 3) == 0 ? 0.0F : between(random, 0.0F, 0.3F);
    const bool mirrored = below(random, 4) == 0;
    for (int row = 0; row <= CELLS; ++row)
        for (int column = 0; column <= CELLS; ++column) {
            const float x = std::pow(static_cast<float>(column) / CELLS, grade) * CELLS;
            const bool inner = row > 0 && row < CELLS && column > 0 && column < CELLS;
            const float d = inner ? shift * 0.5F : 0.0F;
            const Point p{x + between(random, -d, d), static_cast<float>(row) + between(random, -d, d)};
            mesh.nodes.push_back(mirrored ? Point{-p.x, p.y} : p);
            mesh.frozen.push_back(!inner || below(random, 3) == 0 ? 1 : 0);
        }
    const auto add = [&](Four n) {
        if (mirrored && n[3] == 0)
            std::swap(n[1], n[2]);
        else if (mirrored)
            std::swap(n[1], n[3]);
        mesh.elements.push_back(n);
    };
    for (int row = 0; row < CELLS; ++row)
        for (int column = 0; column < CELLS; ++column) {
            const std::int32_t a = grid_node(column, row), b = grid_node(column + 1, row);
            const std::int32_t c = grid_node(column + 1, row + 1), d = grid_node(column, row + 1);
            if (below(random, 3) == 0) {
                add({a, b, c, 0});
                add({a, c, d, 0});
            } else {
                add({a, b, c, d});
            }
        }
    for (int i = 0; degenerate && i < 4; ++i) {
        const int row = below(random, CELLS - 1);
        const std::int32_t a = grid_node(0, row), b = grid_node(2, row), c = grid_node(CELLS, row);
        if (i == 0)
            mesh.elements.push_back({a, b, c, 0});  // along the border, or nearly flat
        else if (i == 1)
            mesh.elements.push_back({a, a, c, 0});  // no area
        else if (i == 2)
            mesh.elements.push_back({a, c, c, grid_node(CELLS, row + 1)});
        else
            mesh.elements.push_back({b, b, b, 0});
    }
    mesh.types.assign(mesh.elements.size(), ELEMENT_CONTINUUM);
    for (std::size_t e = 0; e < mesh.elements.size(); ++e) {
        mesh.lists.push_back(degenerate && below(random, 20) == 0 ? 0 : static_cast<std::int32_t>(e) + 1);
        if (degenerate && below(random, 20) == 0)
            mesh.types[e] = ELEMENT_DELETED;
    }
    return mesh;
}

void store(const MeshNow& mesh) {
    static std::int32_t nodes_used = HIGHEST_NODE_NUMBER, elements_used = HIGHEST_ELEMENT_NUMBER;
    nodes_used = std::max(nodes_used, state.engine.highest_node.value);
    elements_used = std::max(elements_used, state.engine.highest_element.value);
    for (std::int32_t n = 1; n <= nodes_used; ++n) {
        state.mesh.x[NodeNumber(n)] = state.mesh.y[NodeNumber(n)] = 0.0F;
        state.engine.frozen[NodeNumber(n)] = 0;
        state.mesh.codes[NodeNumber(n)] = {};
    }
    for (std::int32_t e = 1; e <= elements_used; ++e) {
        state.mesh.words[ElementNumber(e)] = {};
        state.mesh.type[ElementNumber(e)] = ELEMENT_DELETED;
        state.engine.workable[ElementNumber(e)] = ElementNumber(e);
    }
    state.engine.highest_node = NodeNumber(static_cast<std::int32_t>(mesh.nodes.size()));
    state.engine.highest_element = ElementNumber(static_cast<std::int32_t>(mesh.elements.size()));
    nodes_used = elements_used = 2000;
    for (NodeNumber n{1}; n <= state.engine.highest_node; ++n) {
        const auto i = n.place() - 1;
        state.mesh.x[n] = mesh.nodes[i].x;
        state.mesh.y[n] = mesh.nodes[i].y;
        state.engine.frozen[n] = mesh.frozen[i];
    }
    for (ElementNumber e{1}; e <= state.engine.highest_element; ++e) {
        const auto i = e.place() - 1;
        const Four& n = mesh.elements[i];
        state.mesh.words[e] = words_of(n);
        state.mesh.type[e] = mesh.types[i];
        state.engine.workable[e] = ElementNumber(mesh.lists[i]);
    }
    state.tolerances.move = state.tolerances.line = 0.02F;
    build_indexes(state.mesh, state.engine);
}

MeshNow present() {
    MeshNow mesh;
    for (NodeNumber n{1}; n <= state.engine.highest_node; ++n)
        mesh.nodes.push_back({state.mesh.x[n], state.mesh.y[n]});
    for (ElementNumber e{1}; e <= state.engine.highest_element; ++e) {
        mesh.elements.push_back(corner_words(state.mesh.words[e]));
        mesh.types.push_back(state.mesh.type[e]);
        mesh.lists.push_back(state.engine.workable[e].value);
    }
    return mesh;
}

// --- lines ---------------------------------------------------------------------------------------

struct Pair {
    Point p1, p2;
    PlacedEnds placed;
    CutMode mode;
};

// Any slope, along sides, through nodes, beyond the mesh.
Pair random_pair(Random& random, const MeshNow& mesh) {
    const auto any = [&] {
        const Point n =
            mesh.nodes[static_cast<std::size_t>(below(random, static_cast<int>(mesh.nodes.size())))];
        switch (below(random, 4)) {
            case 0:
                return n;
            case 1:
                return Point{n.x + between(random, -0.03F, 0.03F), n.y + between(random, -0.03F, 0.03F)};
            default:
                return Point{between(random, -6.0F, 6.0F), between(random, -1.0F, 6.0F)};
        }
    };
    Pair pair{any(), any(), {below(random, 2) == 0, below(random, 2) == 0}, {}};
    if (below(random, 6) == 0)
        pair.p2.x = pair.p1.x;
    else if (below(random, 6) == 0)
        pair.p2.y = pair.p1.y;
    static constexpr std::array<std::int32_t, 5> ends{1, -1, 2, -2, 4};
    pair.mode.end_rule = ends[static_cast<std::size_t>(below(random, 5))];
    return pair;
}

void cut_pair(CutTable& cut, const Pair& pair) {
    collect_rows(state.mesh, state.engine, cut, pair.p1, pair.p2);
    place_ends(state.mesh, state.engine, cut, pair.p1, pair.p2, pair.placed);
    scan_sides(state.mesh, state.tolerances, state.engine, cut, pair.p1, pair.p2, pair.mode);
    split_rows(state.mesh, state.engine, cut);
}

// All pairs collected before the first is cut, and the elements split at the end.
void cut_deferred(CutTable& cut, const std::vector<Pair>& pairs) {
    for (const Pair& pair : pairs)
        collect_rows(state.mesh, state.engine, cut, pair.p1, pair.p2);
    for (const Pair& pair : pairs) {
        place_ends(state.mesh, state.engine, cut, pair.p1, pair.p2, pair.placed);
        scan_sides(state.mesh, state.tolerances, state.engine, cut, pair.p1, pair.p2,
                   {pair.mode.end_rule, true});
    }
    split_rows(state.mesh, state.engine, cut);
}

MeshNow after(const MeshNow& mesh, const std::vector<Pair>& pairs, bool with_index, bool deferred = false) {
    state.engine.uses_indexes = with_index;
    store(mesh);
    CutTable cut(with_index);
    std::string failure;
    try {
        if (deferred)
            cut_deferred(cut, pairs);
        for (std::size_t i = 0; !deferred && i < pairs.size(); ++i)
            cut_pair(cut, pairs[i]);
    } catch (const RunEnd& end) {
        failure = end.text;
    }
    state.engine.uses_indexes = true;
    MeshNow result = present();
    result.failure = failure;
    return result;
}

// Bit for bit, or both not a number.
bool same(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

void expect_same(const MeshNow& one, const MeshNow& two) {
    EXPECT_EQ(one.failure, two.failure);
    EXPECT_EQ(one.elements, two.elements);
    EXPECT_EQ(one.types, two.types);
    EXPECT_EQ(one.lists, two.lists);
    ASSERT_EQ(one.nodes.size(), two.nodes.size());
    for (std::size_t i = 0; i < one.nodes.size(); ++i)
        EXPECT_TRUE(same(one.nodes[i].x, two.nodes[i].x) && same(one.nodes[i].y, two.nodes[i].y))
            << "node " << i + 1;
}

void hold_index_against_scan(unsigned seed, int meshes, bool degenerate) {
    Random random(seed);
    int pairs_run = 0;
    for (int m = 0; m < meshes; ++m) {
        const MeshNow mesh = random_mesh(random, degenerate);
        std::vector<Pair> pairs;
        for (int i = 0; i < 6; ++i)
            pairs.push_back(random_pair(random, mesh));
        pairs_run += 6;
        const bool deferred = m % 2 == 1;
        expect_same(after(mesh, pairs, true, deferred), after(mesh, pairs, false, deferred));
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "mesh " << m << " of seed " << seed;
            return;
        }
    }
    std::cout << pairs_run << " pairs\n";
}

TEST(GroupIndex, CutsOfSoundMeshesAreThoseOfAScan) {
    hold_index_against_scan(1, rounds(350, 700), false);
}

TEST(GroupIndex, CutsOfDegenerateMeshesAreThoseOfAScan) {
    hold_index_against_scan(2, rounds(350, 700), true);
}

// Narrow columns beside a wide one. A line through the wide one takes the nodes at its edge along, far from
// the narrow elements that have them too and that wait in the table for a line of their own.
TEST(GroupIndex, ElementsOfANodeThatMovesFarAreLookedAtAgain) {
    constexpr int NARROW = 20, ROWS = 10;
    Random random(4);
    for (int m = 0; m < rounds(200, 300); ++m) {
        MeshNow mesh;
        for (int row = 0; row <= ROWS; ++row)
            for (int column = 0; column <= NARROW + 1; ++column) {
                const float x = column <= NARROW ? 0.1F * static_cast<float>(column) : 12.0F;
                mesh.nodes.push_back({x, static_cast<float>(row) + between(random, -0.1F, 0.1F)});
                mesh.frozen.push_back(below(random, 4) == 0 ? 1 : 0);
            }
        for (int row = 0; row < ROWS; ++row)
            for (int column = 0; column <= NARROW; ++column) {
                const std::int32_t a = row * (NARROW + 2) + column + 1;
                mesh.elements.push_back({a, a + 1, a + NARROW + 3, a + NARROW + 2});
                mesh.types.push_back(ELEMENT_CONTINUUM);
                mesh.lists.push_back(static_cast<std::int32_t>(mesh.elements.size()));
            }
        std::vector<Pair> lines;
        const auto add_line = [&](float x) {
            Point from{x, -0.5F};
            while (from.y < 10.0F) {
                const Point to{x + between(random, -0.1F, 0.1F), from.y + between(random, 0.5F, 1.0F)};
                lines.push_back({from, to, {true, true}, {2, true}});
                from = to;
            }
        };
        add_line(6.0F);
        add_line(1.9F);
        expect_same(after(mesh, lines, true, true), after(mesh, lines, false, true));
        if (testing::Test::HasFailure())
            return;
    }
}

// --- what a cut keeps ----------------------------------------------------------------------------

double signed_area(const MeshNow& mesh) {
    double twice = 0.0;
    for (const Four& n : mesh.elements) {
        const std::size_t count = n[3] > 0 ? 4 : 3;
        for (std::size_t i = 0; i < count; ++i) {
            const Point& a = mesh.nodes[static_cast<std::size_t>(n[i] - 1)];
            const Point& b = mesh.nodes[static_cast<std::size_t>(n[(i + 1) % count] - 1)];
            twice += static_cast<double>(a.x) * static_cast<double>(b.y) -
                     static_cast<double>(b.x) * static_cast<double>(a.y);
        }
    }
    return twice / 2.0;
}

// Directed sides that no neighbour runs the other way.
std::map<std::pair<std::int32_t, std::int32_t>, int> open_sides(const MeshNow& mesh) {
    std::map<std::pair<std::int32_t, std::int32_t>, int> sides;
    for (const Four& n : mesh.elements) {
        const std::size_t count = n[3] > 0 ? 4 : 3;
        for (std::size_t i = 0; i < count; ++i) {
            const std::int32_t a = n[i], b = n[(i + 1) % count];
            if (const auto back = sides.find({b, a}); back != sides.end() && back->second > 0) {
                if (--back->second == 0)
                    sides.erase(back);
            } else {
                ++sides[{a, b}];
            }
        }
    }
    return sides;
}

// New nodes that stand on one side of a neighbour only.
int hanging_nodes(const MeshNow& mesh, std::int32_t first_new) {
    const auto sides = open_sides(mesh);
    int count = 0;
    for (const auto& [side, times] : sides) {
        const auto [a, b] = side;
        for (auto at = sides.lower_bound({b, first_new}); at != sides.end() && at->first.first == b; ++at)
            if (sides.contains({at->first.second, a}))
                ++count;
    }
    return count;
}

bool border_moved(const MeshNow& before, const MeshNow& now) {
    for (int row = 0; row <= CELLS; ++row)
        for (int column = 0; column <= CELLS; ++column) {
            const auto i = static_cast<std::size_t>(grid_node(column, row) - 1);
            const bool border = row == 0 || row == CELLS || column == 0 || column == CELLS;
            if (border && !(before.nodes[i] == now.nodes[i]))
                return true;
        }
    return false;
}

bool repeats_a_corner(const Four& n) {
    const std::size_t count = n[3] > 0 ? 4 : 3;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (n[i] == n[k])
                return true;
    return false;
}

TEST(GroupCutProperty, AreaIsKeptAndNoCornerRepeated) {
    Random random(3);
    int cuts = 0, moved_borders = 0, with_hanging = 0, hanging = 0, compared = 0;
    const int meshes = rounds(1250, 2500);
    for (int m = 0; m < meshes; ++m) {
        const MeshNow before = random_mesh(random, false);
        ASSERT_EQ(hanging_nodes(before, 1000), 0);
        const MeshNow now = after(before, {random_pair(random, before)}, true);
        ASSERT_EQ(now.failure, "") << m;
        ++cuts;
        for (const Four& n : now.elements)
            EXPECT_FALSE(repeats_a_corner(n)) << m;
        for (const Point& p : now.nodes)
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << m;
        const int left = hanging_nodes(now, static_cast<std::int32_t>(before.nodes.size()) + 1);
        hanging += left;
        with_hanging += left > 0 ? 1 : 0;
        if (border_moved(before, now)) {
            ++moved_borders;
        } else if (left == 0) {
            ++compared;
            EXPECT_NEAR(signed_area(now), signed_area(before), 2.0E-4) << m;
        }
    }
    EXPECT_GT(compared, 2 * meshes / 25);
    std::cout << cuts << " cuts: " << moved_borders << " move a border node, " << with_hanging << " leave "
              << hanging << " hanging nodes, " << compared << " keep the area\n";
}

}  // namespace
}  // namespace brelan::test
