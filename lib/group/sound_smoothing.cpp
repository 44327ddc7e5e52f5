#include "group/sound_smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "group/engine_mesh.h"
#include "mesh/few.h"
#include "plane/foot.h"
#include "plane/openings.h"
#include "plane/orientation.h"
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

// The digits of a file move a coordinate by less than this share of it. Corners whose sine is more than that
// of OPENING_OF_NOTHING, and a little, are some.
constexpr double MOVED_BY_DIGITS = 5.5E-6, SINE_OF_SOMETHING = 2.0E-4;
constexpr double SMALLEST_SIZE = 1.0E-30, LARGEST_SIZE = 1.0E30;  // whose digits are all there

// Corners so far from closed and flat turn as their openings tell.
constexpr double CERTAIN = 1.0E-6;

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

bool is_doubtful(std::span<const Point> corners, const Openings& openings) {
    if (std::min(openings.smallest, OPENING_180 - openings.largest) < DOUBTFUL)
        return true;
    double size = 0.0;
    for (const Point& corner : corners)
        size =
            std::max(size, std::abs(static_cast<double>(corner.x)) + std::abs(static_cast<double>(corner.y)));
    return openings.shortest_square < SHORT * SHORT * size * size;
}

// True where the digits of the file can neither close a corner nor make it flat: by the most that they can
// take from the product of its two sides and add to their lengths.
bool outlives_digits(std::span<const Point> corners) {
    double size = 0.0;
    for (const Point& corner : corners)
        size = std::max(
            {size, std::abs(static_cast<double>(corner.x)), std::abs(static_cast<double>(corner.y))});
    if (size < SMALLEST_SIZE || size > LARGEST_SIZE)
        return false;
    const double moved = 2.0 * MOVED_BY_DIGITS * size;  // of a side's length along an axis
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point &a = corners[i], &b = corners[(i + 1) % n], &c = corners[(i + 2) % n];
        const double ux = static_cast<double>(b.x) - static_cast<double>(a.x);
        const double uy = static_cast<double>(b.y) - static_cast<double>(a.y);
        const double vx = static_cast<double>(c.x) - static_cast<double>(b.x);
        const double vy = static_cast<double>(c.y) - static_cast<double>(b.y);
        const double u = std::abs(ux) + std::abs(uy), v = std::abs(vx) + std::abs(vy);
        const double lost = moved * (u + v) + 2.0 * moved * moved;
        if (ux * vy - uy * vx - lost <= SINE_OF_SOMETHING * (u + 2.0 * moved) * (v + 2.0 * moved))
            return false;
    }
    return true;
}

bool turns_everywhere(std::span<const Point> corners) {
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i)
        if (orientation(corners[i], corners[(i + 1) % n], corners[(i + 2) % n]) <= 0)
            return false;
    return true;
}

// How far the corners are from closed or flat; -1 where one is pushed in, or has nothing left by the digits
// of the file.
double shape_as_written(std::span<const Point> corners) {
    const Openings openings = openings_of(corners);
    const double shape = std::min(openings.smallest, OPENING_180 - openings.largest);
    if (shape <= -CERTAIN || (shape < CERTAIN && !turns_everywhere(corners)))
        return -1.0;
    const bool may_be_flat = is_doubtful(corners, openings) && !outlives_digits(corners);
    return may_be_flat && is_flat(corners) ? -1.0 : shape;
}

class Smoother {
public:
    Smoother(Mesh& mesh, Engine& engine, const Drawn& drawn) : mesh_(mesh), engine_(engine), drawn_(drawn) {}

    // Where the node has moved, the nodes of the solids round it are worth another look.
    void improve(NodeNumber node, std::vector<NodeNumber>& next) {
        if (engine_.frozen[node] != 0 || drawn_.nodes.count(node) != 0)
            return;
        Solids solids = solids_with(mesh_, engine_, node);
        const Point at = node_point(mesh_, node);
        const auto [worst, before] = worst_of(solids);
        if (before >= GOOD_ENOUGH)
            return;
        const NodeFreedom freedom = freedom_of(mesh_, engine_, drawn_, node);
        if (freedom.freedom == Freedom::stays)
            return;
        const Places possible = places(freedom, solids, node, at);
        // Most places are no better for the worst, and need no look at the others.
        std::swap(solids[0], solids[worst]);
        Few<Outline, 8> outlines;
        for (const Solid& solid : solids)
            outlines.push_back(outline_of(mesh_, solid));
        Point best = at;
        double best_shape = std::max(before * GAIN, 0.0);
        for (const Point& place : possible) {
            const double shape = shape_at(solids, outlines, node, place, best_shape);
            if (shape > best_shape) {
                best = place;
                best_shape = shape;
            }
        }
        if (best == at)
            return;
        move_node(mesh_, engine_, node, best);
        for (const Solid& solid : solids) {
            known_of(solid.element) = {};
            next.insert(next.end(), solid.nodes().begin(), solid.nodes().end());
        }
    }

private:
    using Places = Few<Point, 1 + STEPS.size() * DIRECTIONS.size()>;

    // The place in the list and the shape of the worst.
    std::pair<std::size_t, double> worst_of(const Solids& solids) {
        std::pair<std::size_t, double> worst{0, OPENING_180};
        for (std::size_t i = 0; i < solids.size(); ++i)
            if (const double shape = shape_now(solids[i]); shape < worst.second)
                worst = {i, shape};
        return worst;
    }

    // The worst shape with the node at a place; at most `enough` where it is not more than that.
    static double shape_at(const Solids& solids, Few<Outline, 8>& outlines, NodeNumber node,
                           const Point& place, double enough) {
        double worst = OPENING_180;
        for (std::size_t s = 0; s < solids.size(); ++s) {
            Outline& outline = outlines[s];
            for (std::size_t i = 0; i < outline.count; ++i)
                if (solids[s].node[i] == node)
                    outline.corner[i] = place;
            if (opens_at_most(outline, enough))
                return enough;
            worst = std::min(worst, shape_as_written(outline));
            if (worst <= enough)
                return worst;
        }
        return worst;
    }

    // The shape of a solid as it lies. Each of its nodes asks for it, so that it is kept for a while.
    double shape_now(const Solid& solid) {
        Known& known = known_of(solid.element);
        if (known.element != solid.element)
            known = {solid.element, shape_as_written(outline_of(mesh_, solid))};
        return known.shape;
    }

    struct Known {
        ElementNumber element;
        double shape = 0.0;
    };
    Known& known_of(ElementNumber e) { return known_[e.place() % known_.size()]; }

    Places places(const NodeFreedom& freedom, std::span<const Solid> solids, NodeNumber node,
                  const Point& at) const {
        double shortest = 0.0, x = 0.0, y = 0.0;
        int count = 0;
        for (const Solid& solid : solids)
            for (std::size_t i = 0; i < solid.count; ++i) {
                if (solid.node[i] != node)
                    continue;
                for (const NodeNumber other : {solid.behind(i), solid.before(i)}) {
                    const Point to = node_point(mesh_, other);
                    const double length = distance_64(at, to);
                    shortest = count == 0 ? length : std::min(shortest, length);
                    x += static_cast<double>(to.x);
                    y += static_cast<double>(to.y);
                    ++count;
                }
            }
        Places found;
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
    std::array<Known, 256> known_;  // by the last digits of the element's number
};

}  // namespace

double shape_with(const Mesh& mesh, std::span<const Solid> solids, NodeNumber node, const Point& place) {
    double worst = OPENING_180;
    for (const Solid& solid : solids)
        worst = std::min(worst, shape_as_written(outline_of(mesh, solid, node, place)));
    return worst;
}

bool is_flat_as_written(const Mesh& mesh, const Solid& solid) {
    const Outline corners = outline_of(mesh, solid);
    return is_doubtful(corners, openings_of(corners)) && !outlives_digits(corners) && is_flat(corners);
}

void smooth(Mesh& mesh, Engine& engine, const Drawn& drawn, const std::set<NodeNumber>& nodes) {
    std::vector<NodeNumber> waiting;
    for (const NodeNumber node : nodes)
        for (const Solid& solid : solids_with(mesh, engine, node))
            waiting.insert(waiting.end(), solid.nodes().begin(), solid.nodes().end());
    Smoother smoother(mesh, engine, drawn);
    for (int sweep = 0; sweep < SWEEPS && !waiting.empty(); ++sweep) {
        std::sort(waiting.begin(), waiting.end());
        waiting.erase(std::unique(waiting.begin(), waiting.end()), waiting.end());
        std::vector<NodeNumber> next;
        for (const NodeNumber node : waiting)
            smoother.improve(node, next);
        waiting = std::move(next);
    }
}

}  // namespace brelan
