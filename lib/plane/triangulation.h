// A small convex polygon in triangles: points on its sides and inside it are corners, and given edges are
// sides of triangles.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "plane/point.h"

namespace brelan {

// Smallest and largest angle of a polygon of three or four corners, counter-clockwise, as openings: 1 -
// cosine up to 180 degrees, where it is 2, and 3 + cosine for a corner that is pushed in. An opening grows
// with its angle, and unlike the angle it has the same digits on every machine.
struct Openings {
    double smallest = 0.0, largest = 0.0;
    double shortest_square = 0.0;  // of the length of a side
};
Openings openings_of(std::span<const Point> corners);

// True for a polygon with a corner so near to closed or to 180 degrees that its opening, or what that lacks
// of 2, is at most `limit`, from 0 on. A few that are hardly less are not told. It takes no root and no
// quotient.
bool opens_at_most(std::span<const Point> corners, double limit);

inline constexpr double OPENING_10 = 0.01519224698779198;  // of 10 degrees, and so on
inline constexpr double OPENING_15 = 0.03407417371093169;
inline constexpr double OPENING_20 = 0.06030737921409162;
inline constexpr double OPENING_25 = 0.09369221296335006;
inline constexpr double OPENING_30 = 0.1339745962155614;
inline constexpr double OPENING_45 = 0.2928932188134524;
inline constexpr double OPENING_150 = 1.8660254037844386;
inline constexpr double OPENING_165 = 1.9659258262890682;
inline constexpr double OPENING_180 = 2.0;

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
