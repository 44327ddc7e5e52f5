#include "group/sound_inserts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "group/engine_mesh.h"
#include "group/midsides.h"
#include "group/new_nodes.h"
#include "group/sound_parts.h"
#include "group/sound_smoothing.h"
#include "group/sound_swaps.h"
#include "plane/foot.h"
#include "plane/triangulation.h"

namespace brelan {

namespace {

constexpr double INSERT_BELOW = OPENING_25;
constexpr double LEFT_ALONG_ARCS = OPENING_10;           // its pieces are much shorter than the elements
constexpr std::array<double, 3> GAINS{1.15, 1.25, 1.4};  // that as many new nodes must bring
constexpr int INSERT_SWEEPS = 6;
constexpr std::size_t MOST_SLENDER = 48;  // more: what is drawn is finer than the mesh
constexpr std::size_t MOST_TRIES = 120;
constexpr std::size_t LARGEST_CAVITY = 9;
// From the middle of a short side, of its length, and along it and away from it.
constexpr std::array<double, 5> DISTANCES{0.7, 1.4, 2.8, 5.6, 11.0};
constexpr std::array<std::array<double, 2>, 5> INSERT_DIRECTIONS{
    {{0.87, 0.5}, {0.5, 0.87}, {0.0, 1.0}, {-0.5, 0.87}, {-0.87, 0.5}}};

// Solids that hang together over free sides, and the nodes round them.
struct Cavity {
    std::vector<Solid> solids;
    std::vector<NodeNumber> ring;
    double shape = 0.0;   // the worst
    Triangulation empty;  // of the ring alone
};

// What becomes of a cavity: its ring and the points put inside, in parts.
struct Filling {
    Cavity cavity;
    std::vector<Point> inside;
    std::vector<Triangulation::Part> parts;
    double shape = 0.0, score = 0.0;  // the worst, and what it is worth with its new nodes
};

class Inserter {
public:
    Inserter(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing, double width)
        : mesh_(mesh),
          engine_(engine),
          drawn_(drawn),
          drawing_(drawing),
          clear_(std::max(4.0 * drawing.tolerance, 3.0 * width)) {}

    // The nodes of what an element and its neighbours became; none where they stay.
    std::set<NodeNumber> improve(ElementNumber e) {
        if (!is_solid(mesh_, e) || engine_.workable[e].is_none())
            return {};
        const Solid solid = solid_of(mesh_, e);
        const double shape = shape_of(outline_of(mesh_, solid));
        const bool is_along_arc = shape < INSERT_BELOW && lies_along_arc(solid);
        if (shape >= INSERT_BELOW || (shape < LEFT_ALONG_ARCS && is_along_arc) || ++tries_ > MOST_TRIES)
            return {};
        const std::vector<Cavity> cavities = cavities_of(solid);
        if (cavities.empty())
            return {};  // GCOVR_EXCL_LINE: two elements that share two sides, which sound ground has not
        const std::vector<std::vector<Point>> points = points_beside(solid);
        std::optional<Filling> best;
        const auto try_out = [&](const Cavity& cavity, std::vector<Point> inside) {
            if (!best || best->shape < INSERT_BELOW)
                try_filling(cavity, std::move(inside), best);
        };
        for (const Cavity& cavity : cavities)
            try_out(cavity, {});
        for (const Cavity& cavity : cavities)
            for (const std::vector<Point>& way : points)
                for (const Point& point : way)
                    try_out(cavity, {point});
        if (!best && !is_along_arc)
            for (const std::vector<Point>& way : points)
                for (const std::vector<Point>& other : points)
                    for (std::size_t near = 0; near < way.size(); ++near)
                        for (std::size_t far = near + 1; far < other.size(); ++far)
                            try_out(cavities.back(), {way[near], other[far]});
        return best ? write(*best) : std::set<NodeNumber>{};
    }

private:
    // The shortest side of a solid runs between two points of a drawing.
    bool lies_along_arc(const Solid& solid) const {
        const std::size_t i = shortest_side(solid);
        const NodeNumber a = solid.node[i], b = solid.behind(i);
        return drawn_.sides.count(side_between(a, b)) != 0 && is_pinned(drawing_, node_point(mesh_, a)) &&
               is_pinned(drawing_, node_point(mesh_, b));
    }

    double length_of(NodeNumber a, NodeNumber b) const {
        const Point at = node_point(mesh_, a);
        return distance_64(at, node_point(mesh_, b));
    }

    std::size_t shortest_side(const Solid& solid) const {
        std::size_t shortest = 0;
        for (std::size_t i = 1; i < solid.count; ++i)
            if (length_of(solid.node[i], solid.behind(i)) <
                length_of(solid.node[shortest], solid.behind(shortest)))
                shortest = i;
        return shortest;
    }

    // Places for nodes over the shortest side of a solid, on the hand of the solid: in each direction from
    // the middle of the side, from near to far.
    std::vector<std::vector<Point>> points_beside(const Solid& solid) const {
        const std::size_t i = shortest_side(solid);
        const Point a = node_point(mesh_, solid.node[i]), b = node_point(mesh_, solid.behind(i));
        const double dx = static_cast<double>(b.x) - static_cast<double>(a.x);
        const double dy = static_cast<double>(b.y) - static_cast<double>(a.y);
        const double x = 0.5 * (static_cast<double>(a.x) + static_cast<double>(b.x));
        const double y = 0.5 * (static_cast<double>(a.y) + static_cast<double>(b.y));
        std::vector<std::vector<Point>> points;
        for (const auto& [along, away] : INSERT_DIRECTIONS) {
            points.emplace_back();
            for (const double distance : DISTANCES)
                points.back().push_back({static_cast<float>(x + distance * (along * dx - away * dy)),
                                         static_cast<float>(y + distance * (along * dy + away * dx))});
        }
        const Point middle = centroid(mesh_, solid.element, solid.count);
        points.emplace_back();
        for (const double share : {0.3, 0.6, 1.0})
            points.back().push_back({static_cast<float>(x + share * (static_cast<double>(middle.x) - x)),
                                     static_cast<float>(y + share * (static_cast<double>(middle.y) - y))});
        return points;
    }

    // The solid with its neighbours, and with theirs.
    std::vector<Cavity> cavities_of(const Solid& solid) const {
        std::vector<Cavity> cavities;
        std::vector<Solid> solids{solid};
        for (int ring = 0; ring < 2; ++ring) {
            const std::size_t known = solids.size();
            for (std::size_t s = 0; s < known; ++s)
                for (std::size_t i = 0; i < solids[s].count && solids.size() < LARGEST_CAVITY; ++i) {
                    const ElementNumber across =
                        neighbour_across(mesh_, engine_, drawn_, solids[s],
                                         side_between(solids[s].node[i], solids[s].behind(i)));
                    if (across.is_none() || std::any_of(solids.begin(), solids.end(), [&](const Solid& one) {
                            return one.element == across;
                        }))
                        continue;
                    solids.push_back(solid_of(mesh_, across));
                    if (s == 0 && ring == 0)
                        add_cavity({solid, solids.back()}, cavities);
                }
            if (solids.size() > known || ring == 0)
                add_cavity(solids, cavities);
        }
        return cavities;
    }

    // Solids whose outline runs through each of its nodes once, and that leave none inside.
    void add_cavity(std::vector<Solid> solids, std::vector<Cavity>& cavities) const {
        using Directed = std::pair<NodeNumber, NodeNumber>;
        Few<NodeNumber, 4 * LARGEST_CAVITY> all;
        Few<Directed, 4 * LARGEST_CAVITY> sides, outer;
        double shape = OPENING_180;
        for (const Solid& solid : solids) {
            shape = std::min(shape, shape_of(outline_of(mesh_, solid)));
            for (std::size_t i = 0; i < solid.count; ++i) {
                all.push_back(solid.node[i]);
                sides.push_back({solid.node[i], solid.behind(i)});
            }
        }
        // What is left of the sides when those between two solids are gone, by their first nodes.
        for (const Directed& side : sides)
            if (std::find(sides.begin(), sides.end(), Directed{side.second, side.first}) == sides.end())
                outer.push_back(side);
        std::sort(outer.begin(), outer.end());
        std::sort(all.begin(), all.end());
        const auto nodes = std::unique(all.begin(), all.end()) - all.begin();
        if (nodes != static_cast<std::ptrdiff_t>(outer.size()) ||
            std::adjacent_find(outer.begin(), outer.end(), [](const Directed& one, const Directed& two) {
                return one.first == two.first;
            }) != outer.end())
            return;
        std::vector<NodeNumber> ring;
        ring.reserve(outer.size());
        NodeNumber node = outer[0].first;
        do {
            ring.push_back(node);
            const auto* const next = std::lower_bound(outer.begin(), outer.end(), Directed{node, {}});
            if (next == outer.end() || next->first != node)
                return;  // GCOVR_EXCL_LINE: a side that three elements have
            node = next->second;
        } while (node != ring.front() && ring.size() < outer.size());
        if (node != ring.front() || ring.size() != outer.size())
            return;
        cavities.push_back({std::move(solids), ring, shape, Triangulation(node_points(mesh_, ring))});
    }

    void try_filling(const Cavity& cavity, std::vector<Point> inside, std::optional<Filling>& best) const {
        if (!inside.empty() && (!cavity.empty.holds(inside.front()) ||
                                is_near(cavity.empty.points(), cavity.ring.size(), inside.front())))
            return;
        Triangulation triangulation = cavity.empty;
        for (std::size_t i = 0; i < inside.size(); ++i)
            if ((i > 0 && is_near(triangulation.points(), cavity.ring.size(), inside[i])) ||
                triangulation.add_inside(inside[i]) < 0)
                return;
        const std::vector<Triangulation::Part> parts = triangulation.parts();
        double shape = OPENING_180, area = 0.0;
        for (const Triangulation::Part& part : parts) {
            std::array<Point, 4> corners;
            std::size_t count = 0;
            for (const int k : part)
                if (k >= 0)
                    corners[count++] = triangulation.points()[static_cast<std::size_t>(k)];
            shape = std::min(shape, shape_of({corners.data(), count}));
            area += area_of({corners.data(), count});
        }
        const double score = shape / GAINS[inside.size()];
        const bool is_better =
            score > std::max(cavity.shape, OPENING_OF_DIGITS) && (!best || score > best->score);
        const double whole = area_of(std::span(triangulation.points()).first(cavity.ring.size()));
        if (!parts.empty() && is_better && std::abs(area - whole) <= 1.0E-9 * whole)
            best = Filling{cavity, std::move(inside), parts, shape, score};
    }

    // True for a point on the outline of a cavity, or as good as on it.
    bool is_near(const std::vector<Point>& points, std::size_t outline, const Point& point) const {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point& next = i < outline ? points[(i + 1) % outline] : points[i];
            if (foot_on(points[i], next, point).distance < clear_)
                return true;
        }
        return false;
    }

    static double area_of(std::span<const Point> corners) {
        double area = 0.0;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Point &a = corners[i], &b = corners[(i + 1) % corners.size()];
            area += 0.5 * (static_cast<double>(a.x) * static_cast<double>(b.y) -
                           static_cast<double>(b.x) * static_cast<double>(a.y));
        }
        return area;
    }

    std::set<NodeNumber> write(const Filling& filling) {
        std::vector<NodeNumber> nodes = filling.cavity.ring;
        const Solid& first = filling.cavity.solids.front();
        for (const Point& point : filling.inside)
            nodes.push_back(add_inner_node(mesh_, engine_, point, first.node, Codes::of_all));
        for (std::size_t p = 0; p < std::max(filling.parts.size(), filling.cavity.solids.size()); ++p) {
            const ElementNumber e = p < filling.cavity.solids.size()
                                        ? filling.cavity.solids[p].element
                                        : add_element_like(mesh_, engine_, first.element);
            if (p >= filling.parts.size()) {
                mesh_.type[e] = ELEMENT_DELETED;
                continue;
            }
            ask_for_midsides(mesh_, first.element, e);
            Corners corners{};
            for (std::size_t i = 0; i < 4; ++i)
                if (const int k = filling.parts[p][i]; k >= 0)
                    corners.n[i] = nodes[static_cast<std::size_t>(k)];
            set_corners(mesh_, engine_, e, corners);
        }
        return {nodes.begin(), nodes.end()};
    }

    static constexpr double OPENING_OF_DIGITS = 0.001;  // that the digits of a mesh file cannot close

    Mesh& mesh_;
    Engine& engine_;
    const Drawn& drawn_;
    const Drawing& drawing_;
    double clear_;  // least distance of a new node from an outline
    std::size_t tries_ = 0;
};

std::size_t count_slender(const Mesh& mesh, const std::set<ElementNumber>& elements) {
    return static_cast<std::size_t>(std::count_if(elements.begin(), elements.end(), [&](ElementNumber e) {
        return shape_of(outline_of(mesh, solid_of(mesh, e))) < INSERT_BELOW;
    }));
}

}  // namespace

std::set<NodeNumber> insert_nodes(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing,
                                  const std::set<NodeNumber>& nodes, double width) {
    Inserter inserter(mesh, engine, drawn, drawing, width);
    std::set<NodeNumber> changed, waiting = nodes;
    for (int sweep = 0; sweep < INSERT_SWEEPS && !waiting.empty(); ++sweep) {
        std::set<ElementNumber> elements;
        for (const NodeNumber node : waiting)
            for (const Solid& solid : solids_with(mesh, engine, node))
                elements.insert(solid.element);
        waiting.clear();
        if (sweep == 0 && count_slender(mesh, elements) > MOST_SLENDER)
            return changed;
        for (const ElementNumber e : elements) {
            const std::set<NodeNumber> around = inserter.improve(e);
            waiting.insert(around.begin(), around.end());
        }
        smooth(mesh, engine, drawn, waiting);
        changed.insert(waiting.begin(), waiting.end());
    }
    return changed;
}

}  // namespace brelan
