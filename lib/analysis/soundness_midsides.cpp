// Midside nodes of second-order elements: M5 stands on the side I1-I2, M6 on I2-I3 and so on round the
// element.
#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "analysis/soundness_work.h"

namespace brelan {

namespace {

// A side of a solid as it stands, joints open.
struct MidSide {
    std::int32_t low = 0, high = 0;  // places of its nodes
    std::int32_t element = 0;        // its place
    Number midside = 0;              // 0 where it has none
};

std::array<Number, 4> midsides_of(const Element& e) {
    const ElementWords& w = e.words;
    return {w.midside_5.value, w.midside_6.value, w.midside_7.value, w.midside_8.value};
}

class MidsideSearch {
public:
    explicit MidsideSearch(SoundnessWork& work) : work_(work) {}

    void find() {
        for (std::size_t i = 0; i < work_.corners.size(); ++i)
            if (work_.mesh.elements[i].of == ElementClass::solid && work_.corners[i].complete())
                take(static_cast<std::int32_t>(i));
        find_shared();
        find_unmatched();
        find_beside_lines();
    }

private:
    void take(std::int32_t place) {
        const CornerPlaces& c = work_.corners[work_.at(place)];
        const std::array<Number, 4> numbers = midsides_of(work_.element(place));
        for (int k = 0; k < 4; ++k) {
            const Number midside = std::max(0, numbers[static_cast<std::size_t>(k)]);
            if (k < c.count) {
                const std::int32_t from = c[k], to = c[(k + 1) % c.count];
                sides_.push_back({std::min(from, to), std::max(from, to), place, midside});
            }
            if (midside == 0)
                continue;
            const std::int32_t node = work_.mesh.node_place(midside);
            const Position at = middle(work_.mesh, c);
            if (node == MeshLists::NONE)
                work_.add(Check::missing_midside, {work_.number(place), midside, 0, at});
            else if (k >= c.count || is_off(place, k, work_.mesh.point(node)))
                work_.add(Check::stray_midside, {work_.number(place), midside, 0, work_.mesh.point(node)});
        }
    }

    // A curved side bends away from its chord; beyond a quarter of its length round the middle the element
    // turns over.
    bool is_off(std::int32_t place, int k, const Position& p) const {
        const CornerPlaces& c = work_.corners[work_.at(place)];
        const Position from = work_.mesh.point(c[k]), to = work_.mesh.point(c[(k + 1) % c.count]);
        constexpr double SHARE = 0.25;
        return distance(p, {(from.x + to.x) / 2.0, (from.y + to.y) / 2.0}) >
               SHARE * distance(from, to) + work_.tolerance();
    }

    void tell(std::int32_t element, Number midside) {
        const std::int32_t node = work_.mesh.node_place(midside);
        if (node != MeshLists::NONE)  // told already
            work_.add(Check::unshared_midside, {work_.number(element), midside, 0, work_.mesh.point(node)});
    }

    // One node on several sides, or at a corner.
    void find_shared() {
        std::vector<MidSide> by_node;
        for (const MidSide& side : sides_)
            if (side.midside > 0)
                by_node.push_back(side);
        std::sort(by_node.begin(), by_node.end(), [](const MidSide& a, const MidSide& b) {
            return std::tie(a.midside, a.low, a.high, a.element) <
                   std::tie(b.midside, b.low, b.high, b.element);
        });
        for (std::size_t i = 0; i < by_node.size();) {
            std::size_t end = i + 1;
            bool several = false;
            for (; end < by_node.size() && by_node[end].midside == by_node[i].midside; ++end)
                several =
                    several || by_node[end].low != by_node[i].low || by_node[end].high != by_node[i].high;
            const std::int32_t node = work_.mesh.node_place(by_node[i].midside);
            if (several || (node != MeshLists::NONE && work_.of_solid[work_.at(node)] != 0))
                tell(by_node[i].element, by_node[i].midside);
            i = end;
        }
    }

    // A side of which one element has another midside node than its neighbour, or one has none.
    void find_unmatched() {
        std::sort(sides_.begin(), sides_.end(), [](const MidSide& a, const MidSide& b) {
            return std::tie(a.low, a.high, a.element) < std::tie(b.low, b.high, b.element);
        });
        for (std::size_t i = 1; i < sides_.size(); ++i) {
            const MidSide &a = sides_[i - 1], &b = sides_[i];
            if (a.low == b.low && a.high == b.high && a.midside != b.midside)
                tell(a.midside > 0 ? a.element : b.element, a.midside > 0 ? a.midside : b.midside);
        }
        auto& places = work_.places(Check::unshared_midside);
        const auto key = [](const Place& p) { return std::pair{p.node, p.element}; };
        std::sort(places.begin(), places.end(),
                  [&](const Place& a, const Place& b) { return key(a) < key(b); });
        places.erase(std::unique(places.begin(), places.end(),
                                 [](const Place& a, const Place& b) { return a.node == b.node; }),
                     places.end());
    }

    void find_beside_lines() {
        for (std::size_t i = 0; i < work_.corners.size(); ++i) {
            const Element& e = work_.mesh.elements[i];
            const CornerPlaces& c = work_.corners[i];
            if (e.of == ElementClass::solid || !c.complete())
                continue;
            for (int k = 0; k < (e.is_line() ? 1 : c.count); ++k) {
                const std::pair wanted{std::min(c[k], c[(k + 1) % c.count]),
                                       std::max(c[k], c[(k + 1) % c.count])};
                const auto found = std::lower_bound(sides_.begin(), sides_.end(), wanted,
                                                    [](const MidSide& side, const auto& ends) {
                                                        return std::pair{side.low, side.high} < ends;
                                                    });
                if (found == sides_.end() || std::pair{found->low, found->high} != wanted ||
                    found->midside == 0)
                    continue;
                if (const std::int32_t node = work_.mesh.node_place(found->midside); node != MeshLists::NONE)
                    work_.add(Check::midside_beside_line, {work_.number(found->element), found->midside,
                                                           e.number.value, work_.mesh.point(node)});
            }
        }
    }

    SoundnessWork& work_;
    std::vector<MidSide> sides_;
};

}  // namespace

void find_midside_faults(SoundnessWork& work) {
    const auto has_midside = [](const Element& e) {
        const std::array<Number, 4> numbers = midsides_of(e);
        return e.of == ElementClass::solid &&
               std::any_of(numbers.begin(), numbers.end(), [](Number n) { return n > 0; });
    };
    if (std::any_of(work.mesh.elements.begin(), work.mesh.elements.end(), has_midside))
        MidsideSearch(work).find();
}

}  // namespace brelan
