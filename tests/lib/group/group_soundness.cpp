#include "lib/group/group_soundness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "group/engine_mesh.h"
#include "group/group_driver.h"
#include "group/loader.h"
#include "mesh/kinds.h"
#include "plane/path.h"
#include "support/state.h"

namespace brelan::test {

namespace {

constexpr float DEGREE = 0.017453292F;

using Side = std::pair<std::int32_t, std::int32_t>;

void store_mesh(const DrawnMesh& mesh) {
    reset_mesh(state.mesh);
    state.engine.highest_node = {};
    state.engine.highest_element = {};
    for (const Point& p : mesh.nodes) {
        ++state.engine.highest_node;
        state.mesh.x[state.engine.highest_node] = p.x;
        state.mesh.y[state.engine.highest_node] = p.y;
        state.mesh.codes[state.engine.highest_node][0] =
            mesh.coded[state.engine.highest_node.place() - 1] ? 1 : 0;
    }
    state.mesh.words.fill({});
    for (const auto& n : mesh.elements) {
        ++state.engine.highest_element;
        state.mesh.words[state.engine.highest_element] = words_of(n);
        state.mesh.type[state.engine.highest_element] = ELEMENT_CONTINUUM;
    }
    state.mesh.skeleton.fill(0);
    state.mesh.attribute.fill(0);
    state.mesh.density.fill(0.0F);
}

void store_group(std::int32_t g, const DrawnGroup& drawn) {
    const auto segments = static_cast<std::int32_t>(drawn.segments.size());
    state.deck.groups.rows[g] = {drawn.MTYPE, drawn.is_open() ? segments + 1 : segments, segments, drawn.MOVE,
                                 drawn.OVERLAY};
    const auto real = [](int value) { return static_cast<float>(value); };
    state.deck.groups.materials[g] = {real(drawn.MAT), real(drawn.KF),    real(drawn.MATj), real(drawn.KFj),
                                      drawn.THICj,     real(drawn.LTi),   real(drawn.LMi),  real(drawn.LTo),
                                      real(drawn.LMo), real(drawn.MATold)};
    std::int32_t k = 0;
    for (const Point& p : drawn.points)
        state.deck.groups.outlines[g][++k] = p;
    k = 0;
    for (const DrawnSegment& s : drawn.segments) {
        state.deck.groups.segments[g][++k] = {s.LTYPE, s.NDIV, s.IEND,        s.Xo,         s.Yo,
                                              s.Rx,    s.Ry,   s.Qb * DEGREE, s.Qe * DEGREE};
        if (s.LTYPE != 2)
            continue;
        const Segment ends = ends_of_arc(state.deck.groups.segments[g][k]);
        state.deck.groups.outlines[g][k] = ends.from;
        state.deck.groups.outlines[g][k + 1] = ends.to;
        if (k > 1 && k == segments && !drawn.is_open())
            state.deck.groups.outlines[g][1] = state.deck.groups.outlines[g][k + 1];
    }
}

// --- what is looked at ---------------------------------------------------------------------------

// The mesh with every joint closed: a twin counts as the node that it was made for.
struct ClosedMesh {
    std::vector<std::vector<std::int32_t>> elements;  // three or four corners
    std::vector<std::int32_t> joints;
    std::map<std::int32_t, std::int32_t> line_node;  // by twin

    std::int32_t root(std::int32_t n) const {
        for (auto at = line_node.find(n); at != line_node.end() && at->second != n; at = line_node.find(n))
            n = at->second;
        return n;
    }
};

void expect_sound_corners(const Corners& c, ElementNumber e) {
    const int count = c.n[3].names_one() ? 4 : 3;
    for (int i = 0; i < count; ++i) {
        EXPECT_TRUE(c.n[i].names_one() && c.n[i] <= state.engine.highest_node) << "element " << e;
        for (int k = 0; k < i; ++k)
            EXPECT_NE(c.n[i], c.n[k]) << "element " << e;
    }
}

// A joint line of one node has a twin at its place and no element that tells which.
void close_single_joints(ClosedMesh& mesh, const std::vector<DrawnGroup>& groups) {
    for (std::size_t g = 0; g < groups.size(); ++g) {
        const ListingRow& line = state.listing.rows[g];
        if (groups[g].MTYPE > -2 || line.nodes.size() != 1)
            continue;
        for (NodeNumber n = line.nodes[0] + 1; n <= state.engine.highest_node; ++n)
            if (node_point(state.mesh, n) == node_point(state.mesh, line.nodes[0]))
                mesh.line_node.emplace(n.value, line.nodes[0].value);
    }
}

ClosedMesh close_mesh(const std::vector<DrawnGroup>& groups) {
    ClosedMesh mesh;
    for (ElementNumber e{1}; e <= state.engine.highest_element; ++e) {
        const Corners c = corners_of(state.mesh, e);
        if (state.mesh.type[e] != ELEMENT_CONTINUUM &&
            !(state.mesh.type[e] == ELEMENT_DELETED && c.n[0].names_one()))
            continue;
        expect_sound_corners(c, e);
        if (is_joint(state.mesh, e)) {
            mesh.joints.push_back(e.value);
            mesh.line_node[c.n[3].value] = c.n[0].value;
            mesh.line_node[c.n[2].value] = c.n[1].value;
        }
    }
    close_single_joints(mesh, groups);
    for (ElementNumber e{1}; e <= state.engine.highest_element; ++e) {
        const Corners c = corners_of(state.mesh, e);
        const bool stands = state.mesh.type[e] == ELEMENT_CONTINUUM ||
                            (state.mesh.type[e] == ELEMENT_DELETED && c.n[0].names_one());
        if (!stands || is_joint(state.mesh, e) || state.mesh.words[e].material.value == DUPLICATE)
            continue;
        mesh.elements.emplace_back();
        for (const NodeNumber n : c.n)
            if (n.names_one())
                mesh.elements.back().push_back(mesh.root(n.value));
    }
    return mesh;
}

double cross(const Point& a, const Point& b) {
    return static_cast<double>(a.x) * static_cast<double>(b.y) -
           static_cast<double>(b.x) * static_cast<double>(a.y);
}

double area_of(const std::vector<std::int32_t>& n) {
    double twice = 0.0;
    for (std::size_t i = 0; i < n.size(); ++i)
        twice += cross(node_point(state.mesh, NodeNumber(n[i])),
                       node_point(state.mesh, NodeNumber(n[(i + 1) % n.size()])));
    return twice / 2.0;
}

// Only a corner that moves, or that a cut puts in, can turn an element over or press it flat.
bool stands_as_drawn(const DrawnMesh& mesh, const std::vector<std::int32_t>& corners) {
    return std::all_of(corners.begin(), corners.end(), [&](std::int32_t n) {
        return n <= static_cast<std::int32_t>(mesh.nodes.size()) &&
               node_point(state.mesh, NodeNumber(n)) == mesh.place(n);
    });
}

// Sides as they run round an element, without those that a neighbour runs the other way.
using OpenSides = std::map<Side, int>;

OpenSides open_sides(const ClosedMesh& mesh) {
    OpenSides sides;
    for (const auto& n : mesh.elements)
        for (std::size_t i = 0; i < n.size(); ++i) {
            const std::int32_t a = n[i], b = n[(i + 1) % n.size()];
            if (const auto back = sides.find({b, a}); back != sides.end()) {
                if (--back->second == 0)
                    sides.erase(back);
            } else {
                ++sides[{a, b}];
            }
        }
    return sides;
}

// The border nodes as drawn, counter-clockwise.
std::vector<std::int32_t> border_of(const DrawnMesh& mesh) {
    std::vector<std::int32_t> border;
    for (int i = 0; i < mesh.columns; ++i)
        border.push_back(mesh.node_at(i, 0));
    for (int i = 0; i < mesh.rows; ++i)
        border.push_back(mesh.node_at(mesh.columns, i));
    for (int i = mesh.columns; i > 0; --i)
        border.push_back(mesh.node_at(i, mesh.rows));
    for (int i = mesh.rows; i > 0; --i)
        border.push_back(mesh.node_at(0, i));
    if (mesh.place(1).x > 0.0F)  // mirrored
        std::reverse(border.begin(), border.end());
    return border;
}

// The shortest way along open sides from one border node to the next over new nodes; empty where there is
// none.
std::vector<std::int32_t> way(const OpenSides& sides, std::int32_t from, std::int32_t to,
                              std::int32_t drawn) {
    std::map<std::int32_t, std::int32_t> before{{from, 0}};
    std::vector<std::int32_t> reached{from};
    for (std::size_t i = 0; i < reached.size(); ++i) {
        const std::int32_t a = reached[i];
        for (auto at = sides.lower_bound({a, 0}); at != sides.end() && at->first.first == a; ++at) {
            const std::int32_t b = at->first.second;
            if ((b != to && b <= drawn) || !before.emplace(b, a).second)
                continue;
            reached.push_back(b);
        }
    }
    std::vector<std::int32_t> nodes;
    for (std::int32_t n = before.contains(to) ? to : 0; n != 0; n = before[n])
        nodes.insert(nodes.begin(), n);
    return nodes;
}

// Takes the sides of the border out of the open sides. True when it runs where it ran: its nodes on the
// outline of the rectangle, the corners in their places.
bool take_border(const DrawnMesh& mesh, OpenSides& sides) {
    const std::vector<std::int32_t> border = border_of(mesh);
    const auto drawn = static_cast<std::int32_t>(mesh.nodes.size());
    bool stands = true;
    for (const std::int32_t n : {mesh.node_at(0, 0), mesh.node_at(mesh.columns, 0),
                                 mesh.node_at(0, mesh.rows), mesh.node_at(mesh.columns, mesh.rows)})
        stands = stands && node_point(state.mesh, NodeNumber(n)) == mesh.place(n);
    for (std::size_t i = 0; i < border.size(); ++i) {
        const std::vector<std::int32_t> nodes = way(sides, border[i], border[(i + 1) % border.size()], drawn);
        EXPECT_GE(nodes.size(), 2U) << "the border is broken behind node " << border[i];
        for (std::size_t k = 0; k + 1 < nodes.size(); ++k) {
            stands = stands && mesh.is_on_outline(node_point(state.mesh, NodeNumber(nodes[k])));
            if (const auto side = sides.find({nodes[k], nodes[k + 1]}); --side->second == 0)
                sides.erase(side);
        }
    }
    return stands;
}

// Whether a path has met a node that must not move: one with codes, or on the line of an earlier group that
// froze it. There a new node is put on the side, and where several parts of a path meet in one element it may
// be left over.
bool meets_frozen_nodes(const DrawnMesh& mesh, const std::vector<DrawnGroup>& groups) {
    return std::any_of(mesh.coded.begin(), mesh.coded.end(), [](bool coded) { return coded; }) ||
           std::any_of(groups.begin(), groups.end() - 1,
                       [](const DrawnGroup& group) { return group.MOVE == 1 || group.MTYPE <= -2; });
}

// New nodes that stand on the side of one neighbour alone. Open sides inside the border without such a node
// would be a hole.
std::size_t hanging_nodes(const OpenSides& inner, std::int32_t drawn) {
    std::set<std::int32_t> hanging;
    for (const auto& [side, times] : inner)
        if (side.first > drawn)
            hanging.insert(side.first);
    EXPECT_EQ(inner.empty(), hanging.empty());
    for (const auto& [side, times] : inner)
        EXPECT_TRUE(side.first > drawn || side.second > drawn ||
                    !way(inner, side.second, side.first, drawn).empty())
            << "hole at side " << side.first << "-" << side.second;
    return hanging.size();
}

// Pieces of a kept line, and how many of them run along no side.
void count_pieces(const ListingRow& line, const ClosedMesh& mesh, const std::set<Side>& sides, Tally& tally) {
    const std::size_t c = line.nodes.size();
    for (std::size_t k = 0; k < (line.closed == 1 ? c : c - (c > 0 ? 1 : 0)); ++k) {
        const std::int32_t a = mesh.root(line.nodes[k].value), b = mesh.root(line.nodes[(k + 1) % c].value);
        ++tally.line_pieces;
        tally.off_line += sides.contains({a, b}) || sides.contains({b, a}) ? 0 : 1;
    }
}

// Pieces of the lines of joints, and of those with line elements.
void expect_elements_on_lines(const ClosedMesh& mesh, const std::vector<DrawnGroup>& groups) {
    std::size_t joints = 0, lines = 0;
    for (std::size_t g = 0; g < groups.size(); ++g) {
        const ListingRow& line = state.listing.rows[g];
        const std::size_t c = line.nodes.size();
        const std::size_t pieces = line.closed == 1 ? c : c - (c > 0 ? 1 : 0);
        if (groups[g].MTYPE <= -2 && c > 1)
            joints += pieces;
        if (groups[g].LTi != 0 && groups[g].MTYPE != -1)
            lines += pieces;
    }
    EXPECT_EQ(mesh.joints.size(), joints);
    std::size_t found = 0;
    for (ElementNumber e{1}; e <= state.engine.highest_element; ++e)
        found += state.mesh.type[e] == ELEMENT_BEAM || state.mesh.type[e] == ELEMENT_TRUSS ? 1 : 0;
    EXPECT_EQ(found, lines);
}

}  // namespace

std::string run_engine(const DrawnMesh& mesh, const std::vector<DrawnGroup>& groups, float length) {
    store_mesh(mesh);
    state.deck.groups.limits.node_count = state.deck.groups.limits.element_count =
        state.deck.groups.limits.bounds_given = 0;
    state.tolerances.mode = 0;
    state.tolerances.length = length;
    state.tolerances.same = 0.001F;
    state.deck.groups.count = 0;
    for (const DrawnGroup& group : groups)
        store_group(++state.deck.groups.count, group);
    load_engine(state.mesh, state.deck.groups, state.engine, state.engine.highest_node,
                state.engine.highest_element);
    set_tolerances(state.mesh, state.tolerances, state.engine);
    try {
        state.listing = work_on_groups(state.channels, state.mesh, state.deck.groups, state.tolerances,
                                       CutMethod::by_rules, state.engine);
    } catch (const RunEnd& end) {
        state.channels.close_all();
        return end.text;
    }
    return {};
}

void check_mesh_of_engine(const DrawnMesh& before, const std::vector<DrawnGroup>& groups, Tally& tally) {
    for (NodeNumber n{1}; n <= state.engine.highest_node; ++n)
        EXPECT_TRUE(std::isfinite(state.mesh.x[n]) && std::isfinite(state.mesh.y[n])) << "node " << n;
    const ClosedMesh mesh = close_mesh(groups);
    expect_elements_on_lines(mesh, groups);
    double area = 0.0;
    std::set<Side> all_sides;
    for (const auto& n : mesh.elements) {
        const double own = area_of(n);
        area += own;
        EXPECT_TRUE(own > 1.0E-6 || !stands_as_drawn(before, n)) << "element at node " << n[0];
        for (std::size_t i = 0; i < n.size(); ++i)
            all_sides.insert({n[i], n[(i + 1) % n.size()]});
    }
    for (std::size_t g = 0; g < groups.size(); ++g)
        count_pieces(state.listing.rows[g], mesh, all_sides, tally);
    OpenSides inner = open_sides(mesh);
    const bool stands = take_border(before, inner);
    const std::size_t hanging = hanging_nodes(inner, static_cast<std::int32_t>(before.nodes.size()));
    EXPECT_TRUE(hanging == 0 || meets_frozen_nodes(before, groups)) << hanging << " nodes hang";
    // A hanging node off its side, or a node that leaves the border, takes area along.
    if (hanging > 0 || !stands)
        return;
    ++tally.compared;
    const double whole = static_cast<double>(before.width) * static_cast<double>(before.height);
    EXPECT_NEAR(area, whole, 1.0E-4 * whole);
}

}  // namespace brelan::test
