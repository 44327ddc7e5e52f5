#include "drawing/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "analysis/joined_nodes.h"
#include "analysis/point_index.h"

namespace brelan::tool {

namespace {

constexpr std::int32_t PLACES = 4, BELOW_LEFT = 1;
constexpr std::array<Position, PLACES> DIRECTIONS{{{1, 1}, {-1, -1}, {-1, 1}, {1, -1}}};

// From each node towards its solids, of length 1; 0, 0 where there is none.
std::vector<Position> directions_to_solids(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    std::vector<Position> sums(mesh.nodes.size());
    const auto add = [](Position& sum, double x, double y) {
        if (const double length = std::hypot(x, y); length > 0.0)
            sum = {sum.x + x / length, sum.y + y / length};
    };
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (mesh.elements[i].of != ElementClass::solid || !corners[i].complete())
            continue;
        const Position m = middle(mesh, corners[i]);
        for (int k = 0; k < corners[i].count; ++k) {
            const Position p = mesh.point(corners[i][k]);
            add(sums[static_cast<std::size_t>(corners[i][k])], m.x - p.x, m.y - p.y);
        }
    }
    for (Position& sum : sums) {
        Position unit;
        add(unit, sum.x, sum.y);
        sum = unit;
    }
    return sums;
}

// The free corner nearest to a direction; of those that are about as near, the first.
std::int32_t nearest_free(const std::array<bool, PLACES>& taken, const Position& direction) {
    constexpr double BETTER = 0.35;
    std::int32_t best = PLACES;
    double best_share = 0.0;
    for (std::int32_t k = 0; k < PLACES; ++k) {
        const Position& d = DIRECTIONS[static_cast<std::size_t>(k)];
        const double share = d.x * direction.x + d.y * direction.y;
        if (!taken[static_cast<std::size_t>(k)] && (best == PLACES || share > best_share + BETTER)) {
            best = k;
            best_share = share;
        }
    }
    return best;
}

}  // namespace

std::vector<std::int32_t> node_number_places(const MeshLists& mesh,
                                             const std::vector<CornerPlaces>& corners) {
    std::vector<Position> points;
    for (std::size_t n = 0; n < mesh.nodes.size(); ++n)
        points.push_back(mesh.point(static_cast<std::int32_t>(n)));
    const std::vector<std::int32_t> same_place = cluster_points(points, resolution(mesh.bounds()));
    const std::vector<std::int32_t> joined = nodes_with_joints_closed(mesh, corners);
    UnionFind sets(points.size());
    for (std::size_t n = 0; n < points.size(); ++n) {
        sets.join(static_cast<std::int32_t>(n), same_place[n]);
        sets.join(static_cast<std::int32_t>(n), joined[n]);
    }
    std::map<std::int32_t, std::vector<std::size_t>> members;
    for (std::size_t n = 0; n < points.size(); ++n)
        members[sets.find(static_cast<std::int32_t>(n))].push_back(n);
    const std::vector<Position> directions = directions_to_solids(mesh, corners);
    std::vector<std::int32_t> places(points.size(), 0);
    for (auto& [first, nodes] : members) {
        if (nodes.size() == 1)
            continue;
        // Nodes without solids, as those of beams between two joints, take what is left.
        std::stable_partition(nodes.begin(), nodes.end(), [&](std::size_t n) {
            return directions[n].x != 0.0 || directions[n].y != 0.0;
        });
        std::array<bool, PLACES> taken{};
        std::int32_t further = PLACES;
        for (const std::size_t n : nodes) {
            places[n] = nearest_free(taken, directions[n]);
            if (places[n] < PLACES)
                taken[static_cast<std::size_t>(places[n])] = true;
            else
                places[n] = further++;
        }
    }
    return places;
}

std::vector<std::int32_t> element_number_lines(const MeshLists& mesh,
                                               const std::vector<CornerPlaces>& corners) {
    std::vector<Position> middles;
    std::vector<std::size_t> elements;
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (corners[i].complete()) {
            middles.push_back(middle(mesh, corners[i]));
            elements.push_back(i);
        }
    const std::vector<std::int32_t> same_place = cluster_points(middles, 2.0 * resolution(mesh.bounds()));
    std::vector<std::int32_t> lines(corners.size(), 0), used(middles.size(), 0);
    for (std::size_t k = 0; k < middles.size(); ++k)
        lines[elements[k]] = used[static_cast<std::size_t>(same_place[k])]++;
    return lines;
}

Position beside(const Position& p, std::int32_t place, double width, double size) {
    constexpr double GAP = 2.0;
    const std::int32_t corner = place < PLACES ? place : BELOW_LEFT;
    const Position& direction = DIRECTIONS[static_cast<std::size_t>(corner)];
    const double line = place < PLACES ? 0.0 : static_cast<double>(place - PLACES + 1);
    constexpr double HEIGHT_OF_DIGITS = 0.74;
    return {direction.x > 0.0 ? p.x + GAP : p.x - GAP - width,
            direction.y > 0.0 ? p.y - GAP : p.y + GAP + size * (HEIGHT_OF_DIGITS + line)};
}

}  // namespace brelan::tool
