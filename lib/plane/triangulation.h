// A small convex polygon in triangles: points on its sides and inside it are corners, and given edges are
// sides of triangles.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "plane/openings.h"
#include "plane/point.h"

namespace brelan {

class Triangulation {
public:
    // The corners of a polygon, counter-clockwise; some may lie on straight sides, and sides may be drawn in
    // a little. Without triangles where it is none.
    explicit Triangulation(std::span<const Point> ring);

    // Whether a triangle holds a point.
    bool holds(const Point& point) const { return triangle_at(point).corner[0] >= 0; }

    // Puts a point inside. Gives its place in points(), -1 where it is not inside.
    int add_inside(const Point& point);

    // Makes the segment between two points a chain of edges that stay. Points within the tolerance of it are
    // on the chain, and so are its crossings with other such chains.
    // False where an edge could not be made.
    bool fix(int from, int to, double tolerance);

    // Makes the smallest angles as large as flips can, the fixed edges apart.
    void improve();

    // A triangle, or two that make a quadrilateral (3 or 4 places in points(), counter-clockwise), in the
    // order in which they were made. Pairs are formed where the quadrilateral is well shaped, the best first.
    using Part = std::array<int, 4>;  // -1 behind a triangle
    std::vector<Part> parts() const;

    const std::vector<Point>& points() const { return points_; }

    // Points that crossings of chains have added lie behind those that were given.
    const std::set<std::pair<int, int>>& fixed_edges() const { return fixed_; }
    bool is_fixed(int a, int b) const { return fixed_.count(lower_first(a, b)) != 0; }

private:
    using Edge = std::pair<int, int>;

    // The triangle that holds a point, and on which side of its own, from each corner to the next, that is.
    struct Holding {
        std::array<int, 3> corner{-1, -1, -1};
        std::array<int, 3> turn{};
    };
    Holding triangle_at(const Point& point) const;

    static Edge lower_first(int a, int b) { return a < b ? Edge{a, b} : Edge{b, a}; }
    void add(int a, int b, int c);
    void remove(int a, int b, int c);
    std::size_t place_of(const Edge& edge) const;
    void set_apex(const Edge& edge, int c);
    void forget_apex(const Edge& edge);
    int apex(int a, int b) const;  // third corner of the triangle that has the edge a to b; -1 for none
    bool is_flippable(int a, int b) const;
    void flip(int a, int b);
    bool improves(int a, int b) const;
    void split_edge(int a, int b, int p);
    void settle(std::vector<Edge> edges);
    bool fix_between(int from, int to, double tolerance);
    std::vector<Edge> crossed_edges(int from, int to) const;
    const Point& at(int i) const { return points_[static_cast<std::size_t>(i)]; }

    std::vector<Point> points_;
    std::vector<std::pair<Edge, int>> apex_;  // of directed edges, in their order
    std::set<Edge> fixed_;                    // lower place first
};

}  // namespace brelan
