#include "group/sound_swaps.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "group/engine_mesh.h"
#include "group/midsides.h"
#include "mesh/attributes.h"
#include "mesh/few.h"
#include "plane/triangulation.h"

namespace brelan {

namespace {

constexpr double SLENDER = OPENING_20;
constexpr double SWAP_GAIN = 1.1;  // what is divided anew must be better by this factor
constexpr double LEAST = 0.001;    // an opening that the digits of a mesh file cannot close
constexpr int SWAP_SWEEPS = 3;

// Two solids in the place of two.
struct Division {
    double shape = 0.0;
    ElementNumber neighbour;
    std::array<Corners, 2> parts{};
};

// The nodes round two solids with a side in common.
using RingOfTwo = Few<NodeNumber, 6>;

bool has_node_twice(const RingOfTwo& ring) {
    for (std::size_t i = 0; i < ring.size(); ++i)
        if (std::find(ring.begin(), ring.begin() + i, ring[i]) != ring.begin() + i)
            return true;
    return false;
}

bool are_alike(const Mesh& mesh, ElementNumber a, ElementNumber b) {
    bool alike = mesh.words[a].material == mesh.words[b].material;
    for_each_attribute(mesh.kind, [&](const auto& attribute) {
        alike = alike && (mesh.*attribute.column)[a] == (mesh.*attribute.column)[b];
    });
    return alike;
}

class Improver {
public:
    Improver(Mesh& mesh, Engine& engine, const Drawn& drawn) : mesh_(mesh), engine_(engine), drawn_(drawn) {}

    // True when the element is divided anew.
    bool improve(ElementNumber e) {
        if (!is_solid(mesh_, e) || engine_.workable[e].is_none())
            return false;
        const Solid solid = solid_of(mesh_, e);
        const double shape = shape_of(outline_of(mesh_, solid));
        if (shape >= SLENDER)
            return false;
        std::optional<Division> best;
        for (std::size_t i = 0; i < solid.count; ++i)
            if (std::optional<Division> found = divide_with_neighbour(solid, shape, i);
                found && (!best || found->shape > best->shape))
                best = found;
        if (!best)
            return false;
        write(e, best->parts[0]);
        write(best->neighbour, best->parts[1]);
        return true;
    }

private:
    std::optional<Division> divide_with_neighbour(const Solid& solid, double shape, std::size_t i) const {
        const ElementNumber across =
            neighbour_across(mesh_, engine_, drawn_, solid, side_between(solid.node[i], solid.behind(i)));
        if (across.is_none())
            return std::nullopt;
        const Solid other = solid_of(mesh_, across);
        RingOfTwo ring;
        for (std::size_t k = 1; k <= solid.count; ++k)
            ring.push_back(solid.node[(i + k) % solid.count]);
        const auto from = static_cast<std::size_t>(
            std::find(other.node.begin(), other.node.begin() + static_cast<std::ptrdiff_t>(other.count),
                      solid.node[i]) -
            other.node.begin());
        for (std::size_t k = 1; k + 1 < other.count; ++k)
            ring.push_back(other.node[(from + k) % other.count]);
        if (has_node_twice(ring))
            return std::nullopt;
        const std::optional<Division> division = best_division(ring, across);
        const double before = std::min(shape, shape_of(outline_of(mesh_, other)));
        return division && division->shape > std::max(SWAP_GAIN * before, LEAST) ? division : std::nullopt;
    }

    // Of a polygon in two: one of four corners by either diagonal.
    std::optional<Division> best_division(const RingOfTwo& ring, ElementNumber across) const {
        using Half = Triangulation::Part;
        if (ring.size() == 4) {
            Division one = division_of(ring, across, {Half{0, 1, 2, -1}, Half{0, 2, 3, -1}});
            Division two = division_of(ring, across, {Half{0, 1, 3, -1}, Half{1, 2, 3, -1}});
            return one.shape >= two.shape ? one : two;
        }
        const std::vector<Half> parts = Triangulation(node_points(mesh_, ring)).parts();
        if (parts.size() != 2)
            return std::nullopt;
        return division_of(ring, across, {parts[0], parts[1]});
    }

    Division division_of(const RingOfTwo& ring, ElementNumber across,
                         const std::array<Triangulation::Part, 2>& parts) const {
        Division division{OPENING_180, across};
        for (std::size_t p = 0; p < 2; ++p) {
            Outline outline{};
            for (const int k : parts[p])
                if (k >= 0) {
                    const NodeNumber node = ring[static_cast<std::size_t>(k)];
                    division.parts[p].n[outline.count] = node;
                    outline.corner[outline.count++] = node_point(mesh_, node);
                }
            division.shape = std::min(division.shape, shape_of(outline));
        }
        return division;
    }

    void write(ElementNumber e, const Corners& part) {
        ask_for_midsides(mesh_, e, e);
        set_corners(mesh_, engine_, e, part);
    }

    Mesh& mesh_;
    Engine& engine_;
    const Drawn& drawn_;
};

}  // namespace

double shape_of(std::span<const Point> corners) {
    const Openings openings = openings_of(corners);
    return std::min(openings.smallest, OPENING_180 - openings.largest);
}

ElementNumber neighbour_across(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Solid& solid,
                               const Side& side) {
    const SideUsers users = users_of(mesh, engine, side);
    if (users.solids.size() != 2 || !users.joints.empty() || !users.lines.empty() ||
        drawn.sides.count(side) != 0)
        return {};
    const ElementNumber other = users.solids[0] == solid.element ? users.solids[1] : users.solids[0];
    const bool fits = engine.workable[other].names_one() && are_alike(mesh, solid.element, other) &&
                      key_of(solid_of(mesh, other)) != key_of(solid);
    return fits ? other : ElementNumber{};
}

std::set<NodeNumber> divide_anew(Mesh& mesh, Engine& engine, const Drawn& drawn,
                                 const std::set<NodeNumber>& nodes) {
    std::set<ElementNumber> waiting;
    for (const NodeNumber node : nodes)
        for (const Solid& solid : solids_with(mesh, engine, node))
            waiting.insert(solid.element);
    Improver improver(mesh, engine, drawn);
    std::set<NodeNumber> changed;
    for (int sweep = 0; sweep < SWAP_SWEEPS; ++sweep) {
        std::set<ElementNumber> next;
        for (const ElementNumber e : waiting) {
            if (!improver.improve(e))
                continue;
            const Solid changed_one = solid_of(mesh, e);
            for (const NodeNumber node : changed_one.nodes()) {
                changed.insert(node);
                for (const Solid& solid : solids_with(mesh, engine, node))
                    next.insert(solid.element);
            }
        }
        waiting = std::move(next);
    }
    return changed;
}

}  // namespace brelan
