#include "analysis/counts.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace brelan {

namespace {

// Joints are long and thin: half of the two longer ones of their four sides.
double joint_length(const MeshLists& mesh, const CornerPlaces& c) {
    std::array<double, 4> side{};
    for (int k = 0; k < c.count; ++k)
        side[static_cast<std::size_t>(k)] = distance(mesh.point(c[k]), mesh.point(c[(k + 1) % c.count]));
    std::sort(side.begin(), side.end());
    return (side[2] + side[3]) / 2.0;
}

void widen(NumberSpan& span, Number number) {
    span.low = span.low == 0 ? number : std::min(span.low, number);
    span.high = std::max(span.high, number);
}

std::vector<CodeRow> code_table(const MeshLists& mesh) {
    std::map<NodeCodes, std::size_t> table;
    for (const Node& node : mesh.nodes)
        ++table[node.codes];
    std::vector<CodeRow> rows;
    rows.reserve(table.size());
    for (const auto& [codes, count] : table)
        rows.push_back({codes, count});
    std::stable_sort(rows.begin(), rows.end(),
                     [](const CodeRow& a, const CodeRow& b) { return a.count > b.count; });
    return rows;
}

}  // namespace

void add_element(MaterialRow& row, const MeshLists& mesh, const Element& element,
                 const CornerPlaces& corners) {
    ++row.count;
    if (!corners.complete())
        return;
    if (element.is_line()) {
        row.length += distance(mesh.point(corners[0]), mesh.point(corners[1]));
        return;
    }
    row.area += std::abs(signed_area(mesh, corners));
    if (element.of == ElementClass::joint)
        row.length += joint_length(mesh, corners);
}

Counts count_mesh(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    Counts counts;
    counts.bounds = mesh.bounds();
    for (const Node& node : mesh.nodes)
        widen(counts.nodes, node.number.value);
    std::map<std::pair<ElementClass, std::int32_t>, MaterialRow> table;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Element& e = mesh.elements[i];
        const CornerPlaces& c = corners[i];
        widen(counts.elements, e.number.value);
        MaterialRow& row = table[{e.of, e.words.material.value}];
        row.of = e.of;
        row.material = e.words.material.value;
        add_element(row, mesh, e, c);
        if (e.of != ElementClass::solid)
            continue;
        ++(c.count == 3 ? counts.triangles : counts.quadrilaterals);
        if (c.complete())
            counts.area += std::abs(signed_area(mesh, c));
    }
    for (const auto& [key, row] : table)
        counts.materials.push_back(row);
    counts.codes = code_table(mesh);
    return counts;
}

}  // namespace brelan
