#include "plane/triangulation.h"

#include <algorithm>
#include <cmath>

#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

constexpr double GAIN = 1.0E-9;  // of an opening: a flip for less would do nothing but take turns

double smallest_opening(const Point& a, const Point& b, const Point& c) {
    const std::array<Point, 3> corners{a, b, c};
    return openings_of(corners).smallest;
}

}  // namespace

// Ears are cut off, the best shaped first (Meisters, Polygons have ears, 1975). No other corner may lie in an
// ear or on it, so that corners on a straight side do not stay behind.
Triangulation::Triangulation(std::span<const Point> ring) : points_(ring.begin(), ring.end()) {
    constexpr double NO_EAR = -1.0, TRIED = -2.0;  // less than rounding makes of an opening of 0
    struct Corner {
        int point;
        double shape;  // of the ear that it would be
        double tried;  // the same, until it is seen that another corner lies in it
    };
    std::vector<Corner> left;
    left.reserve(points_.size());
    for (int i = 0; i < static_cast<int>(points_.size()); ++i)
        left.push_back({i, NO_EAR, NO_EAR});
    const auto behind = [&](std::size_t i) { return i + 1 < left.size() ? i + 1 : 0; };
    const auto before = [&](std::size_t i) { return (i > 0 ? i : left.size()) - 1; };
    const auto look_at = [&](std::size_t i) {
        const Point &a = at(left[before(i)].point), &b = at(left[i].point), &c = at(left[behind(i)].point);
        left[i].shape = orientation(a, b, c) > 0 ? smallest_opening(a, b, c) : NO_EAR;
    };
    const auto is_free = [&](std::size_t i) {
        const int a = left[before(i)].point, b = left[i].point, c = left[behind(i)].point;
        return std::none_of(left.begin(), left.end(), [&](const Corner& corner) {
            const int other = corner.point;
            return other != a && other != b && other != c && orientation(at(a), at(b), at(other)) >= 0 &&
                   orientation(at(b), at(c), at(other)) >= 0 && orientation(at(c), at(a), at(other)) >= 0;
        });
    };
    for (std::size_t i = 0; i < left.size(); ++i)
        look_at(i);
    apex_.reserve(6 * points_.size());
    while (left.size() >= 3) {
        for (Corner& corner : left)
            corner.tried = corner.shape;
        const auto best = [&] {
            return static_cast<std::size_t>(
                std::max_element(left.begin(), left.end(),
                                 [](const Corner& one, const Corner& two) { return one.tried < two.tried; }) -
                left.begin());
        };
        std::size_t ear = best();
        while (left[ear].tried > NO_EAR && !is_free(ear)) {
            left[ear].tried = TRIED;
            ear = best();
        }
        if (left[ear].tried <= NO_EAR) {
            apex_.clear();
            return;
        }
        add(left[before(ear)].point, left[ear].point, left[behind(ear)].point);
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
        if (left.size() < 3)
            break;
        look_at(ear < left.size() ? ear : 0);
        look_at(ear > 0 ? ear - 1 : left.size() - 1);
    }
    improve();
}

Triangulation::Holding Triangulation::triangle_at(const Point& point) const {
    for (const auto& [edge, c] : apex_) {
        const auto [a, b] = edge;
        if (a > b || a > c)
            continue;  // each triangle once, from its lowest corner
        const int ab = orientation(at(a), at(b), point);
        const int bc = ab < 0 ? -1 : orientation(at(b), at(c), point);
        const int ca = bc < 0 ? -1 : orientation(at(c), at(a), point);
        if (ca >= 0)
            return {{a, b, c}, {ab, bc, ca}};
    }
    return {};
}

int Triangulation::add_inside(const Point& point) {
    const Holding holding = triangle_at(point);
    const auto& [a, b, c] = holding.corner;
    const auto& [ab, bc, ca] = holding.turn;
    const auto p = static_cast<int>(points_.size());
    points_.push_back(point);
    if (a < 0)
        return -1;
    // On an edge between two triangles, both are divided.
    if (ab == 0 || bc == 0 || ca == 0) {
        const Edge on = ab == 0 ? Edge{a, b} : bc == 0 ? Edge{b, c} : Edge{c, a};
        split_edge(on.first, on.second, p);
        return p;
    }
    remove(a, b, c);
    add(a, b, p);
    add(b, c, p);
    add(c, a, p);
    settle({{a, b}, {b, c}, {c, a}});
    return p;
}

bool Triangulation::fix(int from, int to, double tolerance) {
    // The points that lie on the chain, in their order along it.
    std::vector<std::pair<double, int>> on;
    for (int i = 0; i < static_cast<int>(points_.size()); ++i) {
        const Foot foot = foot_on(at(from), at(to), at(i));
        if (i != from && i != to && foot.distance < tolerance)
            on.emplace_back(foot.share, i);
    }
    std::sort(on.begin(), on.end());
    int last = from;
    for (const auto& [share, i] : on) {
        if (!fix_between(last, i, tolerance))
            return false;
        last = i;
    }
    return fix_between(last, to, tolerance);
}

void Triangulation::improve() {
    std::vector<Edge> edges;
    for (const auto& [edge, c] : apex_)
        if (edge.first < edge.second)
            edges.push_back(edge);
    settle(std::move(edges));
}

std::vector<Triangulation::Part> Triangulation::parts() const {
    struct Pair {
        double smallest;
        Edge edge;
    };
    std::vector<Pair> pairs;
    for (const auto& [edge, c] : apex_) {
        const auto [a, b] = edge;
        const int d = a < b && !is_fixed(a, b) ? apex(b, a) : -1;
        if (d < 0)
            continue;
        const std::array<Point, 4> corners{at(a), at(d), at(b), at(c)};
        const Openings quadrilateral = openings_of(corners);
        const double triangles =
            std::min(smallest_opening(at(a), at(b), at(c)), smallest_opening(at(b), at(a), at(d)));
        const bool is_well_shaped =
            quadrilateral.smallest >= OPENING_30 && quadrilateral.largest <= OPENING_150;
        if (is_well_shaped || (quadrilateral.smallest >= triangles && quadrilateral.largest <= OPENING_165))
            pairs.push_back({std::min(quadrilateral.smallest, OPENING_180 - quadrilateral.largest), edge});
    }
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const Pair& one, const Pair& two) { return one.smallest > two.smallest; });
    std::vector<std::array<int, 3>> used;
    used.reserve(apex_.size() / 3);
    const auto is_used = [&](const std::array<int, 3>& corners) {
        return std::binary_search(used.begin(), used.end(), corners);
    };
    const auto triangle = [](int a, int b, int c) {
        std::array<int, 3> corners{a, b, c};
        std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end()), corners.end());
        return corners;
    };
    std::vector<Part> found;
    for (const Pair& pair : pairs) {
        const auto [a, b] = pair.edge;
        const int c = apex(a, b), d = apex(b, a);
        const std::array<int, 3> one = triangle(a, b, c), two = triangle(b, a, d);
        if (is_used(one) || is_used(two))
            continue;
        for (const std::array<int, 3>& corners : {one, two})
            used.insert(std::lower_bound(used.begin(), used.end(), corners), corners);
        found.push_back({a, d, b, c});
    }
    for (const auto& [edge, c] : apex_) {
        const auto [a, b] = edge;
        if (a < b && a < c && !is_used({a, b, c}))
            found.push_back({a, b, c, -1});
    }
    for (Part& part : found) {
        const auto last = part[3] < 0 ? part.end() - 1 : part.end();
        std::rotate(part.begin(), std::min_element(part.begin(), last), last);
    }
    std::sort(found.begin(), found.end());
    return found;
}

void Triangulation::add(int a, int b, int c) {
    set_apex({a, b}, c);
    set_apex({b, c}, a);
    set_apex({c, a}, b);
}

void Triangulation::remove(int a, int b, int c) {
    forget_apex({a, b});
    forget_apex({b, c});
    forget_apex({c, a});
}

// Where an edge stands, or would.
std::size_t Triangulation::place_of(const Edge& edge) const {
    std::size_t low = 0, high = apex_.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const Edge& other = apex_[middle].first;
        if (other.first < edge.first || (other.first == edge.first && other.second < edge.second))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void Triangulation::set_apex(const Edge& edge, int c) {
    const std::size_t place = place_of(edge);
    if (place < apex_.size() && apex_[place].first == edge)
        apex_[place].second = c;
    else
        apex_.insert(apex_.begin() + static_cast<std::ptrdiff_t>(place), {edge, c});
}

void Triangulation::forget_apex(const Edge& edge) {
    const std::size_t place = place_of(edge);
    if (place < apex_.size() && apex_[place].first == edge)
        apex_.erase(apex_.begin() + static_cast<std::ptrdiff_t>(place));
}

int Triangulation::apex(int a, int b) const {
    const std::size_t place = place_of({a, b});
    return place < apex_.size() && apex_[place].first == Edge{a, b} ? apex_[place].second : -1;
}

bool Triangulation::is_flippable(int a, int b) const {
    const int c = apex(a, b), d = apex(b, a);
    return c >= 0 && d >= 0 && !is_fixed(a, b) && orientation(at(a), at(d), at(c)) > 0 &&
           orientation(at(d), at(b), at(c)) > 0;
}

void Triangulation::flip(int a, int b) {
    const int c = apex(a, b), d = apex(b, a);
    remove(a, b, c);
    remove(b, a, d);
    add(a, d, c);
    add(d, b, c);
}

bool Triangulation::improves(int a, int b) const {
    const Point &pa = at(a), &pb = at(b), &pc = at(apex(a, b)), &pd = at(apex(b, a));
    const double now = std::min(smallest_opening(pa, pb, pc), smallest_opening(pb, pa, pd));
    const double then = std::min(smallest_opening(pa, pd, pc), smallest_opening(pd, pb, pc));
    return then > now + GAIN;
}

void Triangulation::split_edge(int a, int b, int p) {
    const int c = apex(a, b), d = apex(b, a);
    if (is_fixed(a, b)) {
        fixed_.erase(lower_first(a, b));
        fixed_.insert(lower_first(a, p));
        fixed_.insert(lower_first(p, b));
    }
    std::vector<Edge> around;
    if (c >= 0) {
        remove(a, b, c);
        add(a, p, c);
        add(p, b, c);
        around.insert(around.end(), {{b, c}, {c, a}});
    }
    if (d >= 0) {
        remove(b, a, d);
        add(p, a, d);
        add(b, p, d);
        around.insert(around.end(), {{a, d}, {d, b}});
    }
    settle(std::move(around));
}

// Flips edges as long as that helps, and looks again at those around.
void Triangulation::settle(std::vector<Edge> edges) {
    while (!edges.empty()) {
        const auto [a, b] = edges.back();
        edges.pop_back();
        if (!is_flippable(a, b) || !improves(a, b))
            continue;
        const int c = apex(a, b), d = apex(b, a);
        flip(a, b);
        edges.insert(edges.end(), {{b, c}, {c, a}, {a, d}, {d, b}});
    }
}

std::vector<Triangulation::Edge> Triangulation::crossed_edges(int from, int to) const {
    std::vector<Edge> crossed;
    for (const auto& [edge, c] : apex_) {
        const auto [a, b] = edge;
        if (a > b || a == from || a == to || b == from || b == to)
            continue;
        if (orientation(at(from), at(to), at(a)) * orientation(at(from), at(to), at(b)) < 0 &&
            orientation(at(a), at(b), at(from)) * orientation(at(a), at(b), at(to)) < 0)
            crossed.push_back(edge);
    }
    return crossed;
}

bool Triangulation::fix_between(int from, int to, double tolerance) {
    if (from == to)
        return true;
    std::vector<Edge> crossed = crossed_edges(from, to);
    for (const auto& [a, b] : crossed) {
        if (!is_fixed(a, b))
            continue;
        const auto p = static_cast<int>(points_.size());
        points_.push_back(meeting_of(at(from), at(to), at(a), at(b)));
        split_edge(a, b, p);
        return fix(from, p, tolerance) && fix(p, to, tolerance);
    }
    // Edges in the way are flipped, those that cannot be after others (Sloan, A fast algorithm for generating
    // constrained Delaunay triangulations, 1993).
    std::size_t waiting = 0;
    while (!crossed.empty() && waiting <= crossed.size()) {
        const auto [a, b] = crossed.front();
        crossed.erase(crossed.begin());
        if (!is_flippable(a, b)) {
            crossed.emplace_back(a, b);
            ++waiting;
            continue;
        }
        waiting = 0;
        const int c = apex(a, b), d = apex(b, a);
        flip(a, b);
        const Edge diagonal = lower_first(c, d);
        const bool ends_there = diagonal.first == from || diagonal.first == to || diagonal.second == from ||
                                diagonal.second == to;
        if (!ends_there && orientation(at(from), at(to), at(c)) * orientation(at(from), at(to), at(d)) < 0)
            crossed.push_back(diagonal);
    }
    if (apex(from, to) < 0 && apex(to, from) < 0)
        return false;
    fixed_.insert(lower_first(from, to));
    return true;
}

}  // namespace brelan
