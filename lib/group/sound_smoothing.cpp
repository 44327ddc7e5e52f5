#include "group/sound_smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "group/engine_mesh.h"
#include "plane/foot.h"
#include "plane/orientation.h"
#include "plane/triangulation.h"
#include "text/as_written.h"

namespace brelan {

namespace {

constexpr int SWEEPS = 4;
constexpr double GOOD_ENOUGH = OPENING_45;
constexpr double GAIN = 1.02;  // a move must make the worst shape better by this factor
constexpr std::array<double, 3> STEPS{0.3, 0.12, 0.04};  // of the shortest way to a neighbour
constexpr std::array<std::array<double, 2>, 8> DIRECTIONS{
    {{1.0, 0.0}, {0.7, 0.7}, {0.0, 1.0}, {-0.7, 0.7}, {-1.0, 0.0}, {-0.7, -0.7}, {0.0, -1.0}, {0.7, -0.7}}};

// A corner with a hundredth of a degree, or as much less than 180, is none.
constexpr double OPENING_OF_NOTHING = 1.523087E-8;

// An opening so small, and a side so short for its coordinates, is looked at with the digits of the file.
constexpr double DOUBTFUL = 0.001, SHORT = 1.0E-3;

Point written(const Point& p) {
    return {as_written<"(E13.6)">(p.x), as_written<"(E13.6)">(p.y)};
}

bool has_no_corner(std::span<const Point> corners) {
    const Openings openings = openings_of(corners);
    return openings.smallest < OPENING_OF_NOTHING || openings.largest > OPENING_180 - OPENING_OF_NOTHING;
}

bool is_flat(std::span<const Point> corners) {
    const std::size_t n = corners.size();
    std::array<Point, 4> as_read;
    std::transform(corners.begin(), corners.end(), as_read.begin(), written);
    for (std::size_t i = 0; i < n; ++i)
        if (orientation(as_read[i], as_read[(i + 1) % n], as_read[(i + 2) % n]) <= 0)
            return true;
    return has_no_corner(corners) || has_no_corner({as_read.data(), n});
}

bool is_doubtful(std::span<const Point> corners, double shape) {
    if (shape < DOUBTFUL)
        return true;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point &a = corners[i], &b = corners[(i + 1) % corners.size()];
        const double size = std::abs(static_cast<double>(a.x)) + std::abs(static_cast<double>(a.y));
        if (foot_on(a, a, b).distance < SHORT * size)
            return true;
    }
    return false;
}

class Smoother {
public:
    Smoother(Mesh& mesh, Engine& engine, const Drawn& drawn) : mesh_(mesh), engine_(engine), drawn_(drawn) {}

    // True when the node has moved.
    bool improve(NodeNumber node) {
        if (engine_.frozen[node] != 0 || drawn_.nodes.count(node) != 0)
            return false;
        const std::vector<Solid> solids = solids_with(mesh_, engine_, node);
        const Point at = node_point(mesh_, node);
        const double before = shape_with(mesh_, solids, node, at, -1.0);
        if (before >= GOOD_ENOUGH)
            return false;
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, node);
        if (freedom.freedom == Freedom::stays)
            return false;
        Point best = at;
        double best_shape = std::max(before * GAIN, 0.0);
        for (const Point& place : places(freedom, solids, node, at)) {
            const double shape = shape_with(mesh_, solids, node, place, best_shape);
            if (shape > best_shape) {
                best = place;
                best_shape = shape;
            }
        }
        if (best == at)
            return false;
        move_node(mesh_, engine_, node, best);
        return true;
    }

private:
    std::vector<Point> places(const NodeFreedom& freedom, const std::vector<Solid>& solids, NodeNumber node,
                              const Point& at) const {
        double shortest = 0.0, x = 0.0, y = 0.0;
        int count = 0;
        for (const Solid& solid : solids)
            for (std::size_t i = 0; i < solid.count; ++i) {
                if (solid.node[i] != node)
                    continue;
                for (const NodeNumber other : {solid.behind(i), solid.before(i)}) {
                    const Point to = node_point(mesh_, other);
                    const double length = foot_on(at, at, to).distance;
                    shortest = count == 0 ? length : std::min(shortest, length);
                    x += static_cast<double>(to.x);
                    y += static_cast<double>(to.y);
                    ++count;
                }
            }
        std::vector<Point> found;
        found.reserve(1 + STEPS.size() * DIRECTIONS.size());
        if (freedom.freedom == Freedom::slides) {
            const double share = foot_on(freedom.from, freedom.to, at).share;
            for (const double step : STEPS) {
                found.push_back(point_between(freedom.from, freedom.to, share - step * share));
                found.push_back(point_between(freedom.from, freedom.to, share + step * (1.0 - share)));
            }
            return found;
        }
        found.push_back({static_cast<float>(x / count), static_cast<float>(y / count)});
        for (const double step : STEPS)
            for (const std::array<double, 2>& direction : DIRECTIONS)
                found.push_back(
                    {static_cast<float>(static_cast<double>(at.x) + step * shortest * direction[0]),
                     static_cast<float>(static_cast<double>(at.y) + step * shortest * direction[1])});
        return found;
    }

    Mesh& mesh_;
    Engine& engine_;
    const Drawn& drawn_;
};

}  // namespace

double shape_with(const Mesh& mesh, const std::vector<Solid>& solids, NodeNumber node, const Point& place,
                  double enough) {
    double worst = OPENING_180;
    for (const Solid& solid : solids) {
        if (worst <= enough)
            return worst;
        std::array<Point, 4> corners;
        for (std::size_t i = 0; i < solid.count; ++i)
            corners[i] = solid.node[i] == node ? place : node_point(mesh, solid.node[i]);
        for (std::size_t i = 0; i < solid.count; ++i)
            if (orientation(corners[i], corners[(i + 1) % solid.count], corners[(i + 2) % solid.count]) <= 0)
                return -1.0;
        const Openings openings = openings_of({corners.data(), solid.count});
        const double shape = std::min(openings.smallest, OPENING_180 - openings.largest);
        const std::span<const Point> outline(corners.data(), solid.count);
        worst = std::min(worst, is_doubtful(outline, shape) && is_flat(outline) ? -1.0 : shape);
    }
    return worst;
}

bool is_flat_as_written(const Mesh& mesh, const Solid& solid) {
    const std::vector<Point> corners = node_points(mesh, solid.nodes());
    const Openings openings = openings_of(corners);
    return is_doubtful(corners, std::min(openings.smallest, OPENING_180 - openings.largest)) &&
           is_flat(corners);
}

void smooth(Mesh& mesh, Engine& engine, const Drawn& drawn, const std::set<NodeNumber>& nodes) {
    std::set<NodeNumber> waiting;
    for (const NodeNumber node : nodes)
        for (const Solid& solid : solids_with(mesh, engine, node))
            waiting.insert(solid.nodes().begin(), solid.nodes().end());
    Smoother smoother(mesh, engine, drawn);
    for (int sweep = 0; sweep < SWEEPS && !waiting.empty(); ++sweep) {
        std::set<NodeNumber> next;
        for (const NodeNumber node : waiting)
            if (smoother.improve(node))
                for (const Solid& solid : solids_with(mesh, engine, node))
                    next.insert(solid.nodes().begin(), solid.nodes().end());
        waiting = std::move(next);
    }
}

}  // namespace brelan
