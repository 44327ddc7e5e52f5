// The sides of solids: which are shared, and what lies on those that are not.
#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/joined_nodes.h"
#include "analysis/point_index.h"
#include "analysis/soundness_work.h"

namespace brelan {

namespace {

void measure_outline(SoundnessWork& work, UnionFind& loops) {
    FreeEdges& free = work.result.free_edges;
    free.count = work.free.size();
    std::vector<std::int32_t> roots;
    for (const ClosedSide& side : work.free) {
        free.edges.push_back(
            {work.number(side.element), work.node_number(side.from), work.node_number(side.to)});
        free.length += distance(work.mesh.point(side.from), work.mesh.point(side.to));
        roots.push_back(loops.find(side.low));
    }
    std::sort(roots.begin(), roots.end());
    free.loops = static_cast<std::size_t>(std::unique(roots.begin(), roots.end()) - roots.begin());
}

// Nodes of one element are two places, however small the element is.
double same_place(const SoundnessWork& work) {
    double shortest = std::numeric_limits<double>::infinity();
    for (const std::int32_t e : work.single) {
        const CornerPlaces& c = work.corners[work.at(e)];
        for (int k = 0; k < c.count; ++k) {
            const double side = distance(work.mesh.point(c[k]), work.mesh.point(c[(k + 1) % c.count]));
            if (side > 0.0)
                shortest = std::min(shortest, side);
        }
    }
    constexpr double SHARE = 0.25;
    return std::min(work.tolerance(), SHARE * shortest);
}

}  // namespace

double distance_within(const Position& from, const Position& to, const Position& p, double tolerance) {
    const double length = distance(from, to);
    const double along =
        ((p.x - from.x) * (to.x - from.x) + (p.y - from.y) * (to.y - from.y)) / std::max(length, 1e-300);
    if (along <= tolerance || along >= length - tolerance)
        return std::numeric_limits<double>::infinity();
    return std::abs(cross(from, to, p)) / length;
}

void find_sides(SoundnessWork& work) {
    std::vector<ClosedSide>& sides = work.sides;
    sides.reserve(work.single.size() * 4);
    for (const std::int32_t e : work.single) {
        const CornerPlaces& c = work.corners[work.at(e)];
        for (int k = 0; k < c.count; ++k) {
            const std::int32_t from = c[k], to = c[(k + 1) % c.count];
            const std::int32_t a = work.closed[work.at(from)], b = work.closed[work.at(to)];
            if (a != b)
                sides.push_back({std::min(a, b), std::max(a, b), e, from, to});
        }
    }
    std::sort(sides.begin(), sides.end(), [](const ClosedSide& a, const ClosedSide& b) {
        return a.low != b.low ? a.low < b.low : a.high != b.high ? a.high < b.high : a.element < b.element;
    });
    UnionFind loops(work.mesh.nodes.size());
    work.each_side([&](std::size_t i, std::size_t end) {
        if (end - i == 1) {
            work.free.push_back(sides[i]);
            loops.join(sides[i].low, sides[i].high);
        } else if (end - i > 2) {
            work.add(Check::crowded_side, {work.number(sides[i + 2].element), work.node_number(sides[i].low),
                                           work.node_number(sides[i].high), work.mesh.point(sides[i].low)});
        }
    });
    std::sort(work.free.begin(), work.free.end(), [](const ClosedSide& a, const ClosedSide& b) {
        return a.element != b.element ? a.element < b.element : a.from < b.from;
    });
    measure_outline(work, loops);
}

// The sides next to a hanging node are free as well, so it is among the nodes of free sides.
void find_hanging_nodes(SoundnessWork& work) {
    std::vector<std::int32_t> nodes;
    for (const ClosedSide& side : work.free) {
        nodes.push_back(side.from);
        nodes.push_back(side.to);
    }
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    std::vector<Position> points;
    points.reserve(nodes.size());
    for (const std::int32_t n : nodes)
        points.push_back(work.mesh.point(n));
    const PositionGrid grid(points);
    for (const ClosedSide& side : work.free) {
        const Position from = work.mesh.point(side.from), to = work.mesh.point(side.to);
        if (distance(from, to) <= work.tolerance())
            continue;  // nothing is within it
        grid.along(from, to, work.tolerance(), [&](std::int32_t k) {
            const std::int32_t n = nodes[work.at(k)];
            const std::int32_t closed = work.closed[work.at(n)];
            if (closed == side.low || closed == side.high)
                return;
            if (distance_within(from, to, points[work.at(k)], work.tolerance()) <= work.tolerance())
                work.add(Check::hanging_node,
                         {work.number(side.element), work.node_number(n), 0, points[work.at(k)]});
        });
    }
    auto& places = work.places(Check::hanging_node);
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        return a.node != b.node ? a.node < b.node : a.element < b.element;
    });
}

void find_coincident_nodes(SoundnessWork& work) {
    const auto [nodes, points] = work.nodes_of_solids();
    const std::vector<std::int32_t> cluster = cluster_points(points, same_place(work));
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        const std::int32_t first = nodes[work.at(cluster[k])];
        if (work.closed[work.at(nodes[k])] != work.closed[work.at(first)])
            work.add(Check::coincident_nodes,
                     {0, work.node_number(first), work.node_number(nodes[k]), points[k]});
    }
}

}  // namespace brelan
