#include "mesh/moves.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "mesh/group_tables.h"
#include "plane/point.h"

namespace brelan {

namespace {

// Node a becomes node b.
struct Replacement {
    NodeNumber a, b;
};

// Orders to replace nodes, to be carried out on a node in the order of the list: what one gives, a later one
// may replace again. Sorted by node, so that the cost does not grow with the list.
class ReplacementList {
public:
    explicit ReplacementList(std::vector<Replacement> orders) : orders_(std::move(orders)) {
        for (std::size_t i = 0; i < orders_.size(); ++i)
            by_node_.push_back({orders_[i].a, i});
        std::sort(by_node_.begin(), by_node_.end());
    }

    // Counts the replacements made.
    int apply(NodeNumber& node) const {
        int made = 0;
        std::size_t next = 0;
        for (;;) {
            const auto order = std::lower_bound(by_node_.begin(), by_node_.end(), std::pair{node, next});
            if (order == by_node_.end() || order->first != node)
                return made;
            node = orders_[order->second].b;
            next = order->second + 1;
            ++made;
        }
    }

private:
    std::vector<Replacement> orders_;
    std::vector<std::pair<NodeNumber, std::size_t>> by_node_;
};

void replace_in_elements(Mesh& mesh, GroupListing& listing, const ReplacementList& orders) {
    const ElementNumber last = last_element(mesh);
    for (ElementNumber n{1}; n <= last; ++n) {
        if (mesh.type[n] == ELEMENT_DELETED)
            continue;
        ElementWords& w = mesh.words[n];
        int made = orders.apply(w.corner_1) + orders.apply(w.corner_2);
        if (mesh.type[n] == ELEMENT_CONTINUUM) {
            made += orders.apply(w.corner_3) + orders.apply(w.corner_4);
        } else {
            w.corner_4 = w.corner_1;
            w.corner_3 = w.corner_2;
        }
        if (made > 0)
            reduce_element(mesh, n);
    }
    // The lines of the groups name their nodes for the outputs.
    for (ListingRow& row : listing.rows)
        for (NodeNumber& node : row.nodes)
            orders.apply(node);
}

bool is_listed(MaterialNumber material, std::span<const MaterialNumber> materials) {
    return std::find(materials.begin(), materials.end(), material) != materials.end();
}

bool is_considered(const Mesh& mesh, const MoveLists& moves, ElementNumber n) {
    const bool beam = mesh.type[n] == ELEMENT_BEAM;
    const bool truss = mesh.type[n] == ELEMENT_TRUSS;
    const bool listed_beam = beam && is_listed(mesh.words[n].material, moves.beam_materials);
    const bool listed_truss = truss && is_listed(mesh.words[n].material, moves.truss_materials);
    switch (moves.collapse_mode) {
        case 1:
            return beam || truss;
        case 2:
            return beam;
        case 3:
            return truss;
        case 4:
            return listed_beam;
        case 5:
            return listed_truss;
        case 6:
            return listed_beam || listed_truss;
        default:
            return false;
    }
}

float length_of(const Mesh& mesh, ElementNumber n) {
    const ElementWords& w = mesh.words[n];
    return distance_between(mesh.x[w.corner_1], mesh.y[w.corner_1], mesh.x[w.corner_2], mesh.y[w.corner_2]);
}

// The node at a position among the used ones.
NodeNumber node_at(std::span<const NodeNumber> nodes, std::int32_t ordinal) {
    const auto count = static_cast<std::int32_t>(nodes.size());
    if (ordinal < 1 || ordinal > count)
        fail("second move list: expected the position of a node from 1 to " + std::to_string(count) +
             ", found " + std::to_string(ordinal));
    return nodes[static_cast<std::size_t>(ordinal - 1)];
}

void apply_moves(Mesh& mesh, GroupListing& listing, const std::vector<NodeMove>& moves) {
    std::vector<Replacement> merges;
    for (const NodeMove& move : moves) {
        const NodeNumber a = move.moved;
        const NodeNumber b = move.target;
        mesh.x[a] = mesh.x[a] + (mesh.x[b] - mesh.x[a]) * move.fraction;
        mesh.y[a] = mesh.y[a] + (mesh.y[b] - mesh.y[a]) * move.fraction;
        if (move.fraction == 1.0F)
            merges.push_back({a, b});
    }
    replace_in_elements(mesh, listing, ReplacementList(std::move(merges)));
}

}  // namespace

ElementNumber last_element(const Mesh& mesh) {
    ElementNumber n = LAST_ELEMENT;
    while (n.names_one() && mesh.type[n] == ELEMENT_DELETED)
        --n;
    return n;
}

void reduce_element(Mesh& mesh, ElementNumber element) {
    ElementWords& w = mesh.words[element];
    std::int32_t& type = mesh.type[element];
    if (type != ELEMENT_CONTINUUM) {
        if (w.corner_1 == w.corner_2)
            type = ELEMENT_DELETED;
        return;
    }
    if (w.corner_4.is_none()) {
        if (w.corner_1 == w.corner_2 || w.corner_2 == w.corner_3 || w.corner_1 == w.corner_3)
            type = ELEMENT_DELETED;
        return;
    }
    // The three corners that are left; two of them in one leave nothing.
    const auto becomes = [&](NodeNumber first, NodeNumber second, NodeNumber third, bool nothing_left) {
        if (nothing_left) {
            type = ELEMENT_DELETED;
            return;
        }
        w.corner_1 = first;
        w.corner_2 = second;
        w.corner_3 = third;
        w.corner_4 = {};
    };
    if (w.corner_1 == w.corner_2)
        becomes(w.corner_1, w.corner_3, w.corner_4, w.corner_3 == w.corner_4);
    else if (w.corner_1 == w.corner_3)
        type = ELEMENT_DELETED;
    else if (w.corner_1 == w.corner_4)
        becomes(w.corner_1, w.corner_2, w.corner_3, w.corner_2 == w.corner_3);
    else if (w.corner_2 == w.corner_3)
        becomes(w.corner_1, w.corner_2, w.corner_4, w.corner_1 == w.corner_4);
    else if (w.corner_2 == w.corner_4)
        type = ELEMENT_DELETED;
    else if (w.corner_3 == w.corner_4)
        becomes(w.corner_1, w.corner_2, w.corner_3, w.corner_1 == w.corner_2);
}

void collapse_short_elements(Mesh& mesh, GroupListing& listing, MoveLists& moves) {
    constexpr float longer_than_any = 1.0E31F;
    const ElementNumber last = last_element(mesh);
    float sum = 0.0F;
    float shortest = longer_than_any;
    std::int32_t count = 0;
    for (ElementNumber n{1}; n <= last; ++n) {
        if (!is_considered(mesh, moves, n))
            continue;
        const float length = length_of(mesh, n);
        sum = sum + length;
        ++count;
        shortest = std::min(shortest, length);
    }
    const float limit = count > 0 ? (sum / static_cast<float>(count)) * moves.collapse_factor : 0.0F;
    if (count == 0 || shortest > limit) {
        moves.collapse_mode = 0;
        return;
    }
    std::vector<Replacement> orders;
    for (ElementNumber n{1}; n <= last; ++n)
        if (is_considered(mesh, moves, n) && length_of(mesh, n) <= limit)
            orders.push_back({mesh.words[n].corner_2, mesh.words[n].corner_1});
    replace_in_elements(mesh, listing, ReplacementList(std::move(orders)));
}

void move_nodes(Mesh& mesh, GroupListing& listing, const MoveLists& moves) {
    std::vector<NodeMove> orders;
    if (moves.first_count > 0) {
        for (std::int32_t k = 1; k <= moves.first_count; ++k)
            orders.push_back(moves.first[k]);
    } else if (moves.second_count > 0) {
        const std::vector<NodeNumber> nodes = nodes_of_elements(mesh, last_element(mesh));
        for (std::int32_t k = 1; k <= moves.second_count; ++k)
            orders.push_back({node_at(nodes, moves.second[k].moved), node_at(nodes, moves.second[k].target),
                              moves.second[k].fraction});
    } else {
        return;
    }
    apply_moves(mesh, listing, orders);
}

}  // namespace brelan
