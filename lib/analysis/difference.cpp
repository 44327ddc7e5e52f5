#include "analysis/difference.h"

#include <algorithm>

#include "analysis/geometry.h"

namespace brelan {

namespace {

template <class Record, class Numbered>
std::vector<std::int32_t> order_by_number(const std::vector<Record>& records, Numbered Record::*number) {
    std::vector<std::int32_t> order(records.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = static_cast<std::int32_t>(i);
    std::stable_sort(order.begin(), order.end(), [&](std::int32_t x, std::int32_t y) {
        return records[static_cast<std::size_t>(x)].*number < records[static_cast<std::size_t>(y)].*number;
    });
    return order;
}

// Goes through two lists in ascending number side by side; returns what both have.
template <class Record, class Numbered>
std::vector<PlacePair> common(const std::vector<Record>& a, const std::vector<Record>& b,
                              Numbered Record::*number, std::vector<std::int32_t>& only_a,
                              std::vector<std::int32_t>& only_b) {
    const std::vector<std::int32_t> order_a = order_by_number(a, number),
                                    order_b = order_by_number(b, number);
    std::vector<PlacePair> both;
    std::size_t i = 0, j = 0;
    const auto number_of = [number](const std::vector<Record>& records, std::int32_t place) {
        return records[static_cast<std::size_t>(place)].*number;
    };
    while (i < order_a.size() && j < order_b.size()) {
        const Numbered na = number_of(a, order_a[i]), nb = number_of(b, order_b[j]);
        if (na == nb)
            both.emplace_back(order_a[i++], order_b[j++]);
        else if (na < nb)
            only_a.push_back(order_a[i++]);
        else
            only_b.push_back(order_b[j++]);
    }
    only_a.insert(only_a.end(), order_a.begin() + static_cast<std::ptrdiff_t>(i), order_a.end());
    only_b.insert(only_b.end(), order_b.begin() + static_cast<std::ptrdiff_t>(j), order_b.end());
    return both;
}

}  // namespace

bool same_nodes(const ElementWords& a, const ElementWords& b) {
    return a.corner_1 == b.corner_1 && a.corner_2 == b.corner_2 && a.corner_3 == b.corner_3 &&
           a.corner_4 == b.corner_4 && a.midside_5 == b.midside_5 && a.midside_6 == b.midside_6 &&
           a.midside_7 == b.midside_7 && a.midside_8 == b.midside_8;
}

bool same_values(const Node& a, const Node& b) {
    return a.codes == b.codes && same_real(a.head, b.head) && same_real(a.coefficient, b.coefficient);
}

bool same_attributes(const MeshLists& mesh_a, const MeshLists& mesh_b, const Element& a, const Element& b) {
    if (a.of != b.of || a.words.material != b.words.material)
        return false;
    return a.is_line() || mesh_a.kind != mesh_b.kind || same_attributes(mesh_a.kind, a, b);
}

Difference difference_by_number(const MeshLists& a, const MeshLists& b, double tolerance) {
    Difference d;
    d.other_kind = a.kind != b.kind;
    d.tolerance = tolerance;
    for (const PlacePair& pair : common(a.nodes, b.nodes, &Node::number, d.nodes_only_a, d.nodes_only_b)) {
        if (!(distance(a.point(pair.first), b.point(pair.second)) <= tolerance))
            d.nodes_moved.push_back(pair);
        if (!d.other_kind && !same_values(a.nodes[static_cast<std::size_t>(pair.first)],
                                          b.nodes[static_cast<std::size_t>(pair.second)]))
            d.nodes_changed.push_back(pair);
    }
    ElementNumber ElementRecord::*const number = &ElementRecord::number;
    const auto both = common(a.elements, b.elements, static_cast<ElementNumber Element::*>(number),
                             d.elements_only_a, d.elements_only_b);
    for (const PlacePair& pair : both) {
        const Element& x = a.elements[static_cast<std::size_t>(pair.first)];
        const Element& y = b.elements[static_cast<std::size_t>(pair.second)];
        if (!same_nodes(x.words, y.words) || !same_attributes(a, b, x, y))
            d.elements_changed.push_back(pair);
    }
    return d;
}

}  // namespace brelan
