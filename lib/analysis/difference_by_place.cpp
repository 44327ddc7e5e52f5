#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>

#include "analysis/difference.h"
#include "analysis/geometry.h"
#include "analysis/point_index.h"

namespace brelan {

namespace {

using Cycle = std::array<std::int32_t, 4>;

std::uint64_t mixed(std::uint64_t h, std::uint64_t value) {
    h ^= value + 0x9E3779B97F4A7C15U + (h << 6U) + (h >> 2U);
    h *= 0xFF51AFD7ED558CCDU;
    return h ^ (h >> 33U);
}

// A mesh with the common places of its nodes.
struct Side {
    const MeshLists& mesh;
    std::vector<CornerPlaces> corners;
    std::vector<std::int32_t> place;       // of each node
    std::vector<std::uint64_t> signature;  // of each node: codes, values and the elements round it
    std::vector<std::int32_t> mapped;      // common number of each node once nodes are matched

    explicit Side(const MeshLists& of) : mesh(of), corners(corners_of(of)) {}
};

// The corners from the one with the lowest number on, so that the start does not matter; `start` is where
// that is. Line elements have no direction.
Cycle canonical(const CornerPlaces& c, const std::vector<std::int32_t>& number, int& start) {
    std::array<std::int32_t, 4> value{};
    for (int k = 0; k < c.count; ++k)
        value[static_cast<std::size_t>(k)] =
            c[k] == MeshLists::NONE ? -1 : number[static_cast<std::size_t>(c[k])];
    Cycle best{};
    for (int first = 0; first < c.count; ++first) {
        Cycle turned{-2, -2, -2, -2};
        for (int k = 0; k < c.count; ++k)
            turned[static_cast<std::size_t>(k)] = value[static_cast<std::size_t>((first + k) % c.count)];
        if (first == 0 || turned < best) {
            best = turned;
            start = first;
        }
    }
    return best;
}

// Common numbers of an element's midside nodes, from the side behind the corner that canonical() begins with:
// 0 for none, -1 for one that the mesh does not have.
Cycle midsides(const Side& side, const Element& e, const CornerPlaces& corners) {
    int start = 0;
    canonical(corners, side.mapped, start);
    const std::array<Number, 4> numbers{e.words.midside_5.value, e.words.midside_6.value,
                                        e.words.midside_7.value, e.words.midside_8.value};
    Cycle cycle{};
    for (int k = 0; k < corners.count; ++k) {
        const Number number = numbers[static_cast<std::size_t>((start + k) % corners.count)];
        const std::int32_t place = side.mesh.node_place(number);
        cycle[static_cast<std::size_t>(k)] = number == 0 ? 0
                                             : place == MeshLists::NONE
                                                 ? -1
                                                 : side.mapped[static_cast<std::size_t>(place)];
    }
    return cycle;
}

// Suits both meshes: far above the digits' resolution, far below their sides.
double suitable_tolerance(const Side& a, const Side& b) {
    constexpr double SHARE_OF_SIDE = 0.1, DIGITS = 2.0;
    double shortest = std::numeric_limits<double>::infinity();
    for (const Side* side : {&a, &b})
        for (std::size_t i = 0; i < side->corners.size(); ++i) {
            const CornerPlaces& c = side->corners[i];
            if (side->mesh.elements[i].of != ElementClass::solid || !c.complete())
                continue;
            for (int k = 0; k < c.count; ++k) {
                const double length =
                    distance(side->mesh.point(c[k]), side->mesh.point(c[(k + 1) % c.count]));
                if (length > 0.0)
                    shortest = std::min(shortest, length);
            }
        }
    const double digits = DIGITS * std::max(resolution(a.mesh.bounds()), resolution(b.mesh.bounds()));
    return std::min(digits, SHARE_OF_SIDE * shortest);
}

void find_places(Side& a, Side& b, double tolerance) {
    std::vector<Position> points;
    for (const Side* side : {&a, &b})
        for (std::size_t n = 0; n < side->mesh.nodes.size(); ++n)
            points.push_back(side->mesh.point(static_cast<std::int32_t>(n)));
    const std::vector<std::int32_t> cluster = cluster_points(points, tolerance);
    const auto middle = cluster.begin() + static_cast<std::ptrdiff_t>(a.mesh.nodes.size());
    a.place.assign(cluster.begin(), middle);
    b.place.assign(middle, cluster.end());
}

// Twins at one place differ by the elements that they belong to.
void sign_nodes(Side& side, bool with_values) {
    side.signature.assign(side.mesh.nodes.size(), 0);
    for (std::size_t i = 0; i < side.corners.size(); ++i) {
        const Element& e = side.mesh.elements[i];
        const CornerPlaces& c = side.corners[i];
        int start = 0;
        const Cycle cycle = canonical(c, side.place, start);
        std::uint64_t h =
            mixed(static_cast<std::uint64_t>(e.of), static_cast<std::uint64_t>(e.words.material.value));
        for (const std::int32_t p : cycle)
            h = mixed(h, static_cast<std::uint64_t>(p));
        for (int k = 0; k < c.count; ++k)
            if (c[k] != MeshLists::NONE) {
                const int turn = e.is_line() ? 0 : (k - start + c.count) % c.count;
                side.signature[static_cast<std::size_t>(c[k])] += mixed(h, static_cast<std::uint64_t>(turn));
            }
    }
    if (!with_values)
        return;
    for (std::size_t n = 0; n < side.signature.size(); ++n) {
        const Node& node = side.mesh.nodes[n];
        for (const std::int32_t code : node.codes)
            side.signature[n] = mixed(side.signature[n], static_cast<std::uint64_t>(code));
        side.signature[n] = mixed(side.signature[n], std::bit_cast<std::uint32_t>(node.head));
        side.signature[n] = mixed(side.signature[n], std::bit_cast<std::uint32_t>(node.coefficient));
    }
}

std::vector<std::int32_t> ordered(std::size_t count, const auto& less) {
    std::vector<std::int32_t> order(count);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), less);
    return order;
}

class Matcher {
public:
    Matcher(Side& a, Side& b, Difference& d) : a_(a), b_(b), d_(d) {}

    void match_nodes() {
        const auto order_of = [](const Side& side) {
            return ordered(side.mesh.nodes.size(), [&](std::int32_t x, std::int32_t y) {
                const auto i = static_cast<std::size_t>(x), j = static_cast<std::size_t>(y);
                return std::tie(side.place[i], side.signature[i]) <
                       std::tie(side.place[j], side.signature[j]);
            });
        };
        a_.mapped.assign(a_.mesh.nodes.size(), 0);
        b_.mapped.assign(b_.mesh.nodes.size(), 0);
        const std::vector<std::int32_t> order_a = order_of(a_), order_b = order_of(b_);
        const auto place = [](const Side& side, const std::vector<std::int32_t>& order, std::size_t i) {
            return side.place[static_cast<std::size_t>(order[i])];
        };
        std::size_t i = 0, j = 0;
        while (i < order_a.size() || j < order_b.size()) {
            const std::int64_t pa = i < order_a.size() ? place(a_, order_a, i) : INT64_MAX;
            const std::int64_t pb = j < order_b.size() ? place(b_, order_b, j) : INT64_MAX;
            const std::int64_t here = std::min(pa, pb);
            std::vector<std::int32_t> at_a, at_b;
            for (; i < order_a.size() && place(a_, order_a, i) == here; ++i)
                at_a.push_back(order_a[i]);
            for (; j < order_b.size() && place(b_, order_b, j) == here; ++j)
                at_b.push_back(order_b[j]);
            match_at_place(at_a, at_b);
        }
        std::sort(d_.nodes_only_a.begin(), d_.nodes_only_a.end());
        std::sort(d_.nodes_only_b.begin(), d_.nodes_only_b.end());
        std::sort(d_.nodes_changed.begin(), d_.nodes_changed.end());
    }

    void match_elements() {
        struct Entry {
            Cycle cycle;
            std::int32_t element;
        };
        const auto entries_of = [](const Side& side) {
            std::vector<Entry> entries;
            for (std::size_t i = 0; i < side.corners.size(); ++i) {
                int start = 0;
                entries.push_back(
                    {canonical(side.corners[i], side.mapped, start), static_cast<std::int32_t>(i)});
            }
            std::stable_sort(entries.begin(), entries.end(),
                             [](const Entry& x, const Entry& y) { return x.cycle < y.cycle; });
            return entries;
        };  // GCOVR_EXCL_LINE: an exception alone ends here
        const std::vector<Entry> entries_a = entries_of(a_), entries_b = entries_of(b_);
        std::size_t i = 0, j = 0;
        while (i < entries_a.size() || j < entries_b.size()) {
            const bool from_a =
                j == entries_b.size() || (i < entries_a.size() && entries_a[i].cycle <= entries_b[j].cycle);
            const Cycle here = from_a ? entries_a[i].cycle : entries_b[j].cycle;
            std::vector<std::int32_t> at_a, at_b;
            for (; i < entries_a.size() && entries_a[i].cycle == here; ++i)
                at_a.push_back(entries_a[i].element);
            for (; j < entries_b.size() && entries_b[j].cycle == here; ++j)
                at_b.push_back(entries_b[j].element);
            match_between_nodes(at_a, at_b);
        }
        std::sort(d_.elements_only_a.begin(), d_.elements_only_a.end());
        std::sort(d_.elements_only_b.begin(), d_.elements_only_b.end());
        std::sort(d_.elements_changed.begin(), d_.elements_changed.end());
        std::sort(d_.other_midsides.begin(), d_.other_midsides.end());
    }

private:
    void pair(std::int32_t a, std::int32_t b) {
        a_.mapped[static_cast<std::size_t>(a)] = b_.mapped[static_cast<std::size_t>(b)] = ++last_number_;
        if (!d_.other_kind && !same_values(a_.mesh.nodes[static_cast<std::size_t>(a)],
                                           b_.mesh.nodes[static_cast<std::size_t>(b)]))
            d_.nodes_changed.emplace_back(a, b);
    }

    // Both lists are in the order of their signatures: equal ones first, then in order what is left.
    void match_at_place(const std::vector<std::int32_t>& at_a, const std::vector<std::int32_t>& at_b) {
        std::vector<std::int32_t> left_a, left_b;
        std::size_t i = 0, j = 0;
        while (i < at_a.size() && j < at_b.size()) {
            const std::uint64_t sa = a_.signature[static_cast<std::size_t>(at_a[i])];
            const std::uint64_t sb = b_.signature[static_cast<std::size_t>(at_b[j])];
            if (sa == sb)
                pair(at_a[i++], at_b[j++]);
            else if (sa < sb)
                left_a.push_back(at_a[i++]);
            else
                left_b.push_back(at_b[j++]);
        }
        left_a.insert(left_a.end(), at_a.begin() + static_cast<std::ptrdiff_t>(i), at_a.end());
        left_b.insert(left_b.end(), at_b.begin() + static_cast<std::ptrdiff_t>(j), at_b.end());
        const std::size_t common = std::min(left_a.size(), left_b.size());
        std::sort(left_a.begin(), left_a.end());
        std::sort(left_b.begin(), left_b.end());
        for (std::size_t k = 0; k < common; ++k)
            pair(left_a[k], left_b[k]);
        for (std::size_t k = common; k < left_a.size(); ++k) {
            d_.nodes_only_a.push_back(left_a[k]);
            a_.mapped[static_cast<std::size_t>(left_a[k])] = ++last_number_;
        }
        for (std::size_t k = common; k < left_b.size(); ++k) {
            d_.nodes_only_b.push_back(left_b[k]);
            b_.mapped[static_cast<std::size_t>(left_b[k])] = ++last_number_;
        }
    }

    bool same_midsides(std::int32_t x, std::int32_t y) const {
        const auto of = [](const Side& side, std::int32_t element) {
            const auto place = static_cast<std::size_t>(element);
            return midsides(side, side.mesh.elements[place], side.corners[place]);
        };
        return of(a_, x) == of(b_, y);
    }

    // Elements between the same nodes: equal ones first.
    void match_between_nodes(const std::vector<std::int32_t>& at_a, std::vector<std::int32_t> at_b) {
        std::vector<std::int32_t> left;
        for (const std::int32_t x : at_a) {
            const auto equal = std::find_if(at_b.begin(), at_b.end(), [&](std::int32_t y) {
                return same_attributes(a_.mesh, b_.mesh, a_.mesh.elements[static_cast<std::size_t>(x)],
                                       b_.mesh.elements[static_cast<std::size_t>(y)]) &&
                       same_midsides(x, y);
            });
            if (equal == at_b.end())
                left.push_back(x);
            else
                at_b.erase(equal);
        }
        const std::size_t common = std::min(left.size(), at_b.size());
        for (std::size_t k = 0; k < common; ++k) {
            d_.elements_changed.emplace_back(left[k], at_b[k]);
            if (!same_midsides(left[k], at_b[k]))
                d_.other_midsides.emplace_back(left[k], at_b[k]);
        }
        d_.elements_only_a.insert(d_.elements_only_a.end(),
                                  left.begin() + static_cast<std::ptrdiff_t>(common), left.end());
        d_.elements_only_b.insert(d_.elements_only_b.end(),
                                  at_b.begin() + static_cast<std::ptrdiff_t>(common), at_b.end());
    }

    Side& a_;
    Side& b_;
    Difference& d_;
    std::int32_t last_number_ = 0;
};

}  // namespace

Difference difference_by_place(const MeshLists& mesh_a, const MeshLists& mesh_b, double tolerance) {
    Side a(mesh_a), b(mesh_b);
    Difference d;
    d.other_kind = mesh_a.kind != mesh_b.kind;
    d.tolerance = tolerance > 0.0 ? tolerance : suitable_tolerance(a, b);
    find_places(a, b, d.tolerance);
    sign_nodes(a, !d.other_kind);
    sign_nodes(b, !d.other_kind);
    Matcher matcher(a, b, d);
    matcher.match_nodes();
    matcher.match_elements();
    return d;
}

}  // namespace brelan
