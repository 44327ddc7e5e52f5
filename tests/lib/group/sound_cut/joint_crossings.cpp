#include "lib/group/sound_cut/joint_crossings.h"

#include <cmath>
#include <utility>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

using Edge = std::pair<Spot, Spot>;

// The strips along two edges have left each other where their outer sides meet: by the width over the tangent
// of half the angle at the most. A sharp angle is cut off at four widths.
double room_between(const Edge& one, const Edge& two, double width) {
    const auto& [a, b] = one;
    const auto& [c, d] = two;
    const double dot = std::abs((b.x - a.x) * (d.x - c.x) + (b.y - a.y) * (d.y - c.y));
    const double area = std::abs((b.x - a.x) * (d.y - c.y) - (b.y - a.y) * (d.x - c.x));
    const double lengths = distance(a, b) * distance(c, d);
    return width * (4.0 * area > lengths + dot ? (lengths + dot) / area : 4.0);
}

}  // namespace

std::vector<JointCrossing> crossings_of_joint(const DrawnPath& path, double same) {
    std::vector<JointCrossing> crossings;
    if (path.joint_material == 0 || path.thickness == 0.0)
        return crossings;
    std::vector<Edge> edges;
    for (const DrawnPiece& piece : path.pieces)
        for (std::size_t k = 0; k + 1 < piece.points.size(); ++k)
            edges.emplace_back(piece.points[k], piece.points[k + 1]);
    for (std::size_t i = 0; i < edges.size(); ++i)
        for (std::size_t k = i + 2; k < edges.size(); ++k) {
            const auto& [a, b] = edges[i];
            const auto& [c, d] = edges[k];
            const double room = room_between(edges[i], edges[k], std::abs(path.thickness)) + same;
            for (const Spot& end : {c, d})
                if (distance_to(end, a, b) <= same)
                    crossings.push_back({end, room});
            for (const Spot& end : {a, b})
                if (distance_to(end, c, d) <= same)
                    crossings.push_back({end, room});
            const double at_c = cross(a, b, c), at_d = cross(a, b, d);
            if (at_c * at_d < 0.0 && cross(c, d, a) * cross(c, d, b) < 0.0) {
                const double t = at_c / (at_c - at_d);
                crossings.push_back({{c.x + t * (d.x - c.x), c.y + t * (d.y - c.y)}, room});
            }
        }
    return crossings;
}

}  // namespace brelan::test
