#include "analysis/soundness.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/doubles.h"
#include "analysis/joined_nodes.h"
#include "analysis/point_index.h"

namespace brelan {

namespace {

// A side of an element with joints closed: the two node places, lower first.
struct Side {
    std::int32_t low = 0, high = 0;
    std::int32_t element = 0, from = 0, to = 0;  // place of the element; its own corners
};

class Checker {
public:
    Checker(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, double tolerance)
        : mesh_(mesh), corners_(corners) {
        result_.findings = nothing_found();
        // Both ends of a side and the node between them are rounded.
        constexpr double ROUNDED_POINTS = 1.5;
        result_.tolerance = tolerance > 0.0 ? tolerance : ROUNDED_POINTS * resolution(mesh.bounds());
    }

    Soundness check() {
        check_numbers();
        check_shapes();
        closed_ = nodes_with_joints_closed(mesh_, corners_);
        mark_nodes();
        find_doubles();
        find_sides();
        find_hanging_nodes();
        find_coincident_nodes();
        find_unjoined_lines();
        count_parts();
        return std::move(result_);
    }

private:
    static std::size_t at(std::int32_t place) { return static_cast<std::size_t>(place); }
    const Element& element(std::int32_t place) const { return mesh_.elements[at(place)]; }
    Number node_number(std::int32_t place) const { return mesh_.nodes[at(place)].number.value; }

    void add(Check check, const Place& place) {
        result_.findings[static_cast<std::size_t>(check)].places.push_back(place);
    }

    void check_numbers() {
        for (std::size_t n = 1; n < mesh_.nodes.size(); ++n)
            if (mesh_.nodes[n].number.value == mesh_.nodes[n - 1].number.value)
                add(Check::number_used_twice,
                    {0, mesh_.nodes[n].number.value, 0, mesh_.point(static_cast<std::int32_t>(n))});
        std::vector<Number> numbers;
        for (const Element& e : mesh_.elements)
            numbers.push_back(e.number.value);
        std::sort(numbers.begin(), numbers.end());
        for (std::size_t i = 1; i < numbers.size(); ++i)
            if (numbers[i] == numbers[i - 1])
                add(Check::number_used_twice, {numbers[i], 0, 0, {}});
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const Element& e = mesh_.elements[i];
            for (int k = 0; k < corners_[i].count; ++k)
                if (corners_[i][k] == MeshLists::NONE)
                    add(Check::missing_node, {e.number.value, e.corner(k), 0, {}});
        }
    }

    void check_shapes() {
        const double digits = resolution(mesh_.bounds());
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const Element& e = mesh_.elements[i];
            const CornerPlaces& c = corners_[i];
            if (!c.complete() || e.of == ElementClass::joint)
                continue;
            const Place here{e.number.value, 0, 0, middle(mesh_, c)};
            double longest = 0.0;
            bool twice = false;
            for (int k = 0; k < c.count; ++k) {
                longest = std::max(longest, distance(mesh_.point(c[k]), mesh_.point(c[(k + 1) % c.count])));
                for (int l = 0; l < k; ++l)
                    twice = twice || c[k] == c[l];
            }
            const double area = signed_area(mesh_, c);
            if (twice || (e.is_line() ? longest <= digits : std::abs(area) <= 0.5 * digits * longest))
                add(Check::degenerate_element, here);
            else if (e.is_line())
                continue;
            else if (area < 0.0)
                add(Check::inverted_element, here);
            else if (c.count == 4)
                check_concave(c, digits * longest, here);
        }
    }

    void check_concave(const CornerPlaces& c, double slack, Place here) {
        for (int k = 0; k < 4; ++k)
            if (cross(mesh_.point(c[k]), mesh_.point(c[(k + 1) % 4]), mesh_.point(c[(k + 2) % 4])) < -slack) {
                here.node = node_number(c[(k + 1) % 4]);
                here.at = mesh_.point(c[(k + 1) % 4]);
                add(Check::concave_element, here);
                return;
            }
    }

    // Nodes of solids, and of any element.
    void mark_nodes() {
        of_solid_.assign(mesh_.nodes.size(), 0);
        std::vector<std::uint8_t> used(mesh_.nodes.size(), 0);
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const ElementWords& w = mesh_.elements[i].words;
            for (int k = 0; k < corners_[i].count; ++k)
                if (corners_[i][k] != MeshLists::NONE) {
                    used[at(corners_[i][k])] = 1;
                    if (mesh_.elements[i].of == ElementClass::solid)
                        of_solid_[at(corners_[i][k])] = 1;
                }
            for (const NodeNumber midside : {w.midside_5, w.midside_6, w.midside_7, w.midside_8})
                if (mesh_.node_place(midside.value) != MeshLists::NONE)
                    used[at(mesh_.node_place(midside.value))] = 1;
        }
        for (std::size_t n = 0; n < used.size(); ++n)
            if (used[n] == 0)
                add(Check::unused_node,
                    {0, mesh_.nodes[n].number.value, 0, mesh_.point(static_cast<std::int32_t>(n))});
    }

    // One solid of each set of doubles goes on to the search for sides.
    void find_doubles() {
        SolidSets sets = solid_sets(mesh_, corners_, closed_);
        single_ = std::move(sets.single);
        for (const auto& [later, earlier] : sets.doubles)
            add_double(later, earlier);
    }

    void add_double(std::int32_t later, std::int32_t earlier) {
        const bool same = element(later).words.material == element(earlier).words.material;
        add(same ? Check::duplicate_element : Check::double_element,
            {element(later).number.value, 0, element(earlier).number.value,
             middle(mesh_, corners_[at(later)])});
    }

    void find_sides() {
        std::vector<Side> sides;
        sides.reserve(single_.size() * 4);
        for (const std::int32_t e : single_) {
            const CornerPlaces& c = corners_[at(e)];
            for (int k = 0; k < c.count; ++k) {
                const std::int32_t from = c[k], to = c[(k + 1) % c.count];
                const std::int32_t a = closed_[at(from)], b = closed_[at(to)];
                if (a != b)
                    sides.push_back({std::min(a, b), std::max(a, b), e, from, to});
            }
        }
        std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
            return a.low != b.low     ? a.low < b.low
                   : a.high != b.high ? a.high < b.high
                                      : a.element < b.element;
        });
        UnionFind loops(mesh_.nodes.size());
        for (std::size_t i = 0; i < sides.size();) {
            std::size_t end = i + 1;
            while (end < sides.size() && sides[end].low == sides[i].low && sides[end].high == sides[i].high)
                ++end;
            if (end - i == 1) {
                free_.push_back(sides[i]);
                loops.join(sides[i].low, sides[i].high);
            } else if (end - i > 2) {
                add(Check::crowded_side,
                    {element(sides[i + 2].element).number.value, node_number(sides[i].low),
                     node_number(sides[i].high), mesh_.point(sides[i].low)});
            }
            i = end;
        }
        std::sort(free_.begin(), free_.end(), [](const Side& a, const Side& b) {
            return a.element != b.element ? a.element < b.element : a.from < b.from;
        });
        FreeEdges& free = result_.free_edges;
        free.count = free_.size();
        std::vector<std::int32_t> roots;
        for (const Side& side : free_) {
            free.edges.push_back(
                {element(side.element).number.value, node_number(side.from), node_number(side.to)});
            free.length += distance(mesh_.point(side.from), mesh_.point(side.to));
            roots.push_back(loops.find(side.low));
        }
        std::sort(roots.begin(), roots.end());
        free.loops = static_cast<std::size_t>(std::unique(roots.begin(), roots.end()) - roots.begin());
    }

    // How far p lies from the inside of the segment; infinite for a point at or beyond an end.
    double distance_within(const Position& from, const Position& to, const Position& p) const {
        const double length = distance(from, to);
        const double along =
            ((p.x - from.x) * (to.x - from.x) + (p.y - from.y) * (to.y - from.y)) / std::max(length, 1e-300);
        if (along <= result_.tolerance || along >= length - result_.tolerance)
            return std::numeric_limits<double>::infinity();
        return std::abs(cross(from, to, p)) / length;
    }

    // The sides next to a hanging node are free as well, so it is among the nodes of free sides.
    void find_hanging_nodes() {
        std::vector<std::int32_t> nodes;
        for (const Side& side : free_) {
            nodes.push_back(side.from);
            nodes.push_back(side.to);
        }
        std::sort(nodes.begin(), nodes.end());
        nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
        std::vector<Position> points;
        points.reserve(nodes.size());
        for (const std::int32_t n : nodes)
            points.push_back(mesh_.point(n));
        const PositionGrid grid(points);
        for (const Side& side : free_) {
            if (distance(mesh_.point(side.from), mesh_.point(side.to)) <= result_.tolerance)
                continue;  // nothing is within it
            grid.along(mesh_.point(side.from), mesh_.point(side.to), result_.tolerance, [&](std::int32_t k) {
                const std::int32_t n = nodes[at(k)];
                const std::int32_t closed = closed_[at(n)];
                if (closed == side.low || closed == side.high)
                    return;
                if (distance_within(mesh_.point(side.from), mesh_.point(side.to), points[at(k)]) <=
                    result_.tolerance)
                    add(Check::hanging_node,
                        {element(side.element).number.value, node_number(n), 0, points[at(k)]});
            });
        }
        auto& places = result_.findings[static_cast<std::size_t>(Check::hanging_node)].places;
        std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
            return a.node != b.node ? a.node < b.node : a.element < b.element;
        });
    }

    void find_coincident_nodes() {
        std::vector<std::int32_t> nodes;
        std::vector<Position> points;
        for (std::size_t n = 0; n < of_solid_.size(); ++n)
            if (of_solid_[n] != 0) {
                nodes.push_back(static_cast<std::int32_t>(n));
                points.push_back(mesh_.point(static_cast<std::int32_t>(n)));
            }
        const std::vector<std::int32_t> cluster = cluster_points(points, same_place());
        for (std::size_t k = 0; k < nodes.size(); ++k) {
            const std::int32_t first = nodes[at(cluster[k])];
            if (closed_[at(nodes[k])] != closed_[at(first)])
                add(Check::coincident_nodes, {0, node_number(first), node_number(nodes[k]), points[k]});
        }
    }

    // Nodes of one element are two places, however small the element is.
    double same_place() const {
        double shortest = std::numeric_limits<double>::infinity();
        for (const std::int32_t e : single_) {
            const CornerPlaces& c = corners_[at(e)];
            for (int k = 0; k < c.count; ++k) {
                const double side = distance(mesh_.point(c[k]), mesh_.point(c[(k + 1) % c.count]));
                if (side > 0.0)
                    shortest = std::min(shortest, side);
            }
        }
        constexpr double SHARE = 0.25;
        return std::min(result_.tolerance, SHARE * shortest);
    }

    void find_unjoined_lines() {
        std::vector<std::int32_t> nodes;
        std::vector<Position> points;
        for (std::size_t i = 0; i < corners_.size(); ++i)
            if (mesh_.elements[i].is_line())
                break;
            else if (i + 1 == corners_.size())
                return;
        for (std::size_t n = 0; n < of_solid_.size(); ++n)
            if (of_solid_[n] != 0) {
                nodes.push_back(static_cast<std::int32_t>(n));
                points.push_back(mesh_.point(static_cast<std::int32_t>(n)));
            }
        const PositionGrid grid(points);
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const CornerPlaces& c = corners_[i];
            if (!mesh_.elements[i].is_line() || !c.complete())
                continue;
            const Position from = mesh_.point(c[0]), to = mesh_.point(c[1]);
            if (distance(from, to) <= result_.tolerance)
                continue;
            grid.along(from, to, result_.tolerance, [&](std::int32_t k) {
                if (distance_within(from, to, points[at(k)]) <= result_.tolerance)
                    add(Check::unjoined_line,
                        {mesh_.elements[i].number.value, node_number(nodes[at(k)]), 0, points[at(k)]});
            });
        }
    }

    void count_parts() {
        UnionFind sets(mesh_.nodes.size());
        std::vector<std::int32_t> roots;
        for (const CornerPlaces& c : corners_)
            for (int k = 1; k < c.count; ++k)
                if (c[0] != MeshLists::NONE && c[k] != MeshLists::NONE)
                    sets.join(c[0], c[k]);
        for (const CornerPlaces& c : corners_)
            if (c[0] != MeshLists::NONE)
                roots.push_back(sets.find(c[0]));
        std::sort(roots.begin(), roots.end());
        result_.parts = static_cast<std::size_t>(std::unique(roots.begin(), roots.end()) - roots.begin());
    }

    const MeshLists& mesh_;
    const std::vector<CornerPlaces>& corners_;
    Soundness result_;
    std::vector<std::int32_t> closed_;    // by node place: with joints closed
    std::vector<std::uint8_t> of_solid_;  // by node place
    std::vector<std::int32_t> single_;    // places of solids, one for each set of nodes
    std::vector<Side> free_;
};

}  // namespace

Soundness check_soundness(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, double tolerance) {
    return Checker(mesh, corners, tolerance).check();
}

}  // namespace brelan
