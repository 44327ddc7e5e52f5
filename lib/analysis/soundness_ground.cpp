// The ground as a whole: whether it hangs together, and what its codes say of the border.
#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "analysis/joined_nodes.h"
#include "analysis/soundness_work.h"
#include "mesh/kinds.h"

namespace brelan {

namespace {

// Pieces of solids that hang together by their sides, by the first of their solids.
class Parts {
public:
    explicit Parts(SoundnessWork& work)
        : work_(work), by_sides_(work.mesh.elements.size()), at_node_(work.mesh.nodes.size(), NOBODY) {
        work.each_side([&](std::size_t i, std::size_t end) {
            for (std::size_t k = i + 1; k < end; ++k)
                by_sides_.join(work.sides[i].element, work.sides[k].element);
        });
        for (const std::int32_t e : work.single)
            for (int k = 0; k < work.corners[work.at(e)].count; ++k)
                at_node_[node_of(e, k)] = e;
        // What does not fit there has been told.
        for (const Place& place : work.places(Check::hanging_node))
            join_at(work.mesh.node_place(place.node), work.mesh.element_place(place.element));
        for (const Place& place : work.places(Check::coincident_nodes))
            join_at(work.mesh.node_place(place.node), solid_at(work.mesh.node_place(place.other)));
    }

    void find() {
        std::map<std::int32_t, std::size_t> sizes;
        for (const std::int32_t e : work_.single)
            ++sizes[by_sides_.find(e)];
        if (sizes.size() < 2)
            return;
        const auto largest = std::max_element(
            sizes.begin(), sizes.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
        find_ties();
        for (const auto& [part, size] : sizes)
            if (part != largest->first)
                tell(part);
    }

private:
    static constexpr std::int32_t NOBODY = -1;

    std::size_t node_of(std::int32_t e, int k) const {
        return work_.at(work_.closed[work_.at(work_.corners[work_.at(e)][k])]);
    }
    std::int32_t solid_at(std::int32_t node) const {
        return node == MeshLists::NONE ? NOBODY : at_node_[work_.at(work_.closed[work_.at(node)])];
    }
    void join_at(std::int32_t node, std::int32_t e) {
        const std::int32_t other = solid_at(node);
        if (other != NOBODY && e != NOBODY)
            by_sides_.join(other, e);
    }

    // A common node of two parts, and lines from one to the other.
    void find_ties() {
        for (const std::int32_t e : work_.single)
            for (int k = 0; k < work_.corners[work_.at(e)].count; ++k) {
                const std::int32_t one = by_sides_.find(e), two = by_sides_.find(at_node_[node_of(e, k)]);
                if (one == two)
                    continue;
                const auto node = static_cast<std::int32_t>(node_of(e, k));
                pin_.try_emplace(one, node);
                pin_.try_emplace(two, node);
            }
        UnionFind lines(work_.mesh.nodes.size());
        for (std::size_t i = 0; i < work_.corners.size(); ++i)
            if (const CornerPlaces& c = work_.corners[i]; work_.mesh.elements[i].is_line() && c.complete())
                lines.join(work_.closed[work_.at(c[0])], work_.closed[work_.at(c[1])]);
        std::map<std::int32_t, std::int32_t> first;  // part at each set of lines
        for (std::size_t n = 0; n < at_node_.size(); ++n) {
            if (at_node_[n] == NOBODY)
                continue;
            const std::int32_t part = by_sides_.find(at_node_[n]);
            const auto [found, fresh] = first.try_emplace(lines.find(static_cast<std::int32_t>(n)), part);
            if (!fresh && found->second != part) {
                tied_.insert_or_assign(part, true);
                tied_.insert_or_assign(found->second, true);
            }
        }
    }

    void tell(std::int32_t part) {
        const auto pin = pin_.find(part);
        if (pin != pin_.end())
            work_.add(Check::pinned_part,
                      {work_.number(part), work_.node_number(pin->second), 0, work_.mesh.point(pin->second)});
        else if (!tied_.contains(part))
            work_.add(Check::separate_part,
                      {work_.number(part), 0, 0, middle(work_.mesh, work_.corners[work_.at(part)])});
    }

    SoundnessWork& work_;
    UnionFind by_sides_;                        // of element places
    std::vector<std::int32_t> at_node_;         // by node with joints closed: a solid at it
    std::map<std::int32_t, std::int32_t> pin_;  // by part: a node that it shares with another
    std::map<std::int32_t, bool> tied_;         // by part: lines lead to another
};

bool is_fixed(const Node& node, std::size_t code) {
    return node.codes[code] != 0;
}

// The left, right and lower side of the mesh: where some nodes are held across it and others are not.
void find_free_side_nodes(SoundnessWork& work, const std::vector<std::uint8_t>& at_border) {
    const Bounds bounds = work.mesh.bounds();
    for (int side = 0; side < 3; ++side) {
        const std::size_t code = side < 2 ? 0 : 1;
        std::vector<std::int32_t> free;
        std::size_t fixed = 0;
        for (std::size_t n = 0; n < at_border.size(); ++n) {
            const auto node = static_cast<std::int32_t>(n);
            const Position p = work.mesh.point(node);
            const double off = side == 0   ? p.x - bounds.low.x
                               : side == 1 ? bounds.high.x - p.x
                                           : p.y - bounds.low.y;
            if (at_border[n] == 0 || off > work.tolerance())
                continue;
            if (is_fixed(work.mesh.nodes[n], code))
                ++fixed;
            else
                free.push_back(node);
        }
        if (fixed >= 2)  // one alone may hold the mesh in its place
            for (const std::int32_t node : free)
                work.add(Check::free_side_node, {0, work.node_number(node), 0, work.mesh.point(node)});
    }
}

void find_fixed_inside(SoundnessWork& work, const std::vector<std::uint8_t>& at_border) {
    std::vector<std::uint8_t> beside_fixed(work.mesh.nodes.size(), 0);
    const auto fixed = [&](std::int32_t n) {
        const Node& node = work.mesh.nodes[work.at(n)];
        return is_fixed(node, 0) || is_fixed(node, 1);
    };
    for (const ClosedSide& side : work.sides) {
        if (fixed(side.from))
            beside_fixed[work.at(side.to)] = 1;
        if (fixed(side.to))
            beside_fixed[work.at(side.from)] = 1;
    }
    for (std::size_t n = 0; n < at_border.size(); ++n) {
        const auto node = static_cast<std::int32_t>(n);
        if (work.of_solid[n] != 0 && at_border[n] == 0 && beside_fixed[n] == 0 && fixed(node))
            work.add(Check::fixed_inside, {0, work.node_number(node), 0, work.mesh.point(node)});
    }
}

}  // namespace

void find_loose_parts(SoundnessWork& work) {
    Parts(work).find();
}

void find_odd_codes(SoundnessWork& work) {
    // Codes of the other kinds hold values and the words of lines.
    if (has_node_values(work.mesh.kind))
        return;
    std::vector<std::uint8_t> closed(work.mesh.nodes.size(), 0), at_border(work.mesh.nodes.size(), 0);
    for (const ClosedSide& side : work.free)
        closed[work.at(side.low)] = closed[work.at(side.high)] = 1;
    for (std::size_t n = 0; n < at_border.size(); ++n)
        at_border[n] = work.of_solid[n] != 0 ? closed[work.at(work.closed[n])] : std::uint8_t{0};
    find_free_side_nodes(work, at_border);
    find_fixed_inside(work, at_border);
}

}  // namespace brelan
