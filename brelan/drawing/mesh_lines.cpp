#include "drawing/mesh_lines.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brelan::tool {

namespace {

struct DirectedSide {
    std::int32_t from = 0, to = 0;

    std::int32_t low() const { return std::min(from, to); }
    std::int32_t high() const { return std::max(from, to); }
};

// Sides of the elements, all of them turned anti-clockwise, in the order of their ends.
std::vector<DirectedSide> sorted_sides(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                                       const std::vector<std::int32_t>& elements) {
    std::vector<DirectedSide> sides;
    sides.reserve(elements.size() * 4);
    for (const std::int32_t e : elements) {
        const CornerPlaces& c = corners[static_cast<std::size_t>(e)];
        if (!c.complete())
            continue;
        const bool clockwise = signed_area(mesh, c) < 0.0;
        for (int k = 0; k < c.count; ++k) {
            const std::int32_t a = c[k], b = c[(k + 1) % c.count];
            if (a != b)
                sides.push_back(clockwise ? DirectedSide{b, a} : DirectedSide{a, b});
        }
    }
    std::sort(sides.begin(), sides.end(), [](const DirectedSide& x, const DirectedSide& y) {
        return x.low() != y.low() ? x.low() < y.low() : x.high() < y.high();
    });
    return sides;
}

// Sides by the node that they begin at, to walk along them.
class SideGraph {
public:
    // With `both_ways` a side begins at either end.
    SideGraph(std::size_t nodes, const std::vector<DirectedSide>& sides, bool both_ways)
        : sides_(sides), used_(sides.size(), false), start_(nodes + 1, 0) {
        for (const DirectedSide& side : sides) {
            ++start_[static_cast<std::size_t>(side.from) + 1];
            if (both_ways)
                ++start_[static_cast<std::size_t>(side.to) + 1];
        }
        for (std::size_t n = 1; n < start_.size(); ++n)
            start_[n] += start_[n - 1];
        at_.resize(start_.back());
        std::vector<std::size_t> next(start_.begin(), start_.end() - 1);
        for (std::size_t s = 0; s < sides.size(); ++s) {
            at_[next[static_cast<std::size_t>(sides[s].from)]++] = s;
            if (both_ways)
                at_[next[static_cast<std::size_t>(sides[s].to)]++] = s;
        }
    }

    bool used(std::size_t side) const { return used_[side]; }
    void use(std::size_t side) { used_[side] = true; }

    // Calls use(side, other end) for every side at a node that is not used yet.
    template <class Visit>
    void unused_at(std::int32_t node, Visit&& visit) const {
        for (std::size_t k = start_[static_cast<std::size_t>(node)];
             k < start_[static_cast<std::size_t>(node) + 1]; ++k)
            if (!used_[at_[k]]) {
                const DirectedSide& side = sides_[at_[k]];
                visit(at_[k], side.from == node ? side.to : side.from);
            }
    }

private:
    const std::vector<DirectedSide>& sides_;
    std::vector<bool> used_;
    std::vector<std::size_t> start_, at_;
};

}  // namespace

void add_ring(Polylines& lines, const Position& p, double radius, int corners) {
    for (int k = 0; k < corners; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / corners;
        lines.points.push_back({p.x + radius * std::cos(angle), p.y + radius * std::sin(angle)});
    }
    lines.end_line();
}

Polylines region_outline(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                         const std::vector<std::int32_t>& elements) {
    const std::vector<DirectedSide> sides = sorted_sides(mesh, corners, elements);
    // What neighbours have in opposite directions cancels; the rest is a sum of loops.
    std::vector<DirectedSide> rim;
    for (std::size_t i = 0; i < sides.size();) {
        std::size_t end = i;
        int net = 0;
        for (;
             end < sides.size() && sides[end].low() == sides[i].low() && sides[end].high() == sides[i].high();
             ++end)
            net += sides[end].from < sides[end].to ? 1 : -1;
        for (int k = 0; k < std::abs(net); ++k)
            rim.push_back(net > 0 ? DirectedSide{sides[i].low(), sides[i].high()}
                                  : DirectedSide{sides[i].high(), sides[i].low()});
        i = end;
    }
    SideGraph graph(mesh.nodes.size(), rim, false);
    Polylines lines;
    for (std::size_t s = 0; s < rim.size(); ++s) {
        if (graph.used(s))
            continue;
        std::int32_t node = rim[s].from;
        for (bool on = true; on;) {
            on = false;
            std::size_t side = 0;
            std::int32_t next = node;
            graph.unused_at(node, [&](std::size_t candidate, std::int32_t other) {
                if (!on) {
                    side = candidate;
                    next = other;
                    on = true;
                }
            });
            if (on) {
                graph.use(side);
                lines.points.push_back(mesh.point(node));
                node = next;
            }
        }
        lines.end_line();
    }
    return lines;
}

Polylines element_sides(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                        const std::vector<std::int32_t>& elements, double slack) {
    std::vector<DirectedSide> sides = sorted_sides(mesh, corners, elements);
    sides.erase(std::unique(sides.begin(), sides.end(),
                            [](const DirectedSide& x, const DirectedSide& y) {
                                return x.low() == y.low() && x.high() == y.high();
                            }),
                sides.end());
    SideGraph graph(mesh.nodes.size(), sides, true);
    Polylines lines;
    constexpr double STRAIGHT_ON = 0.8;  // cosine of the largest turn within a line
    for (std::size_t s = 0; s < sides.size(); ++s) {
        if (graph.used(s))
            continue;
        graph.use(s);
        Position last = mesh.point(sides[s].from);
        std::int32_t node = sides[s].to;
        lines.points.push_back(last);
        for (bool on = true; on;) {
            const Position here = mesh.point(node);
            double best = STRAIGHT_ON;
            std::size_t side = 0;
            std::int32_t next = node;
            graph.unused_at(node, [&](std::size_t candidate, std::int32_t other) {
                const Position p = mesh.point(other);
                const double turn =
                    ((here.x - last.x) * (p.x - here.x) + (here.y - last.y) * (p.y - here.y)) /
                    std::max(distance(last, here) * distance(here, p), 1e-300);
                if (turn > best) {
                    best = turn;
                    side = candidate;
                    next = other;
                }
            });
            on = next != node;
            if (!on) {
                lines.points.push_back(here);
                break;
            }
            graph.use(side);
            const Position from = lines.points.back(), to = mesh.point(next);
            if (std::abs(cross(from, here, to)) > slack * distance(from, to))
                lines.points.push_back(here);
            last = here;
            node = next;
        }
        lines.end_line();
    }
    return lines;
}

}  // namespace brelan::tool
