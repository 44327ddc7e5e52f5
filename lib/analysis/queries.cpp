#include "analysis/queries.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "analysis/geometry.h"
#include "analysis/point_index.h"
#include "analysis/soundness.h"

namespace brelan {

namespace {

double tolerance_of(const MeshLists& mesh, double wanted) {
    return wanted > 0.0 ? wanted : usual_tolerance(mesh.bounds());
}

bool lies_on(const Position& p, const AxisLine& line, double tolerance) {
    return std::abs((line.axis == Axis::x ? p.x : p.y) - line.at) <= tolerance;
}

// Numbers of the records that are wanted. A number that stands twice is given once.
template <class Record, class Wanted>
std::vector<Number> numbers_of(const std::vector<Record>& records, const Wanted& wanted) {
    std::vector<Number> numbers;
    for (const Record& record : records)
        if (wanted(record))
            numbers.push_back(record.number.value);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

// The midside node of the side of an element from one corner to another; 0 none.
Number midside_of(const Element& e, Number from, Number to) {
    const std::array<NodeNumber, 4> midsides{e.words.midside_5, e.words.midside_6, e.words.midside_7,
                                             e.words.midside_8};
    const int count = e.corner_count();
    for (int k = 0; k < count; ++k)
        if (e.corner(k) == from && e.corner((k + 1) % count) == to)
            return midsides[static_cast<std::size_t>(k)].value;
    return 0;
}

// Nodes of both meshes that may be paired, those of the first in front.
struct Candidates {
    std::vector<Number> numbers;
    std::vector<Position> points;
    std::size_t of_first = 0;

    void add(const MeshLists& mesh, const std::optional<AxisLine>& line, double tolerance) {
        for (const Node& node : mesh.nodes)
            if (const Position p{node.x, node.y}; !line || lies_on(p, *line, tolerance)) {
                numbers.push_back(node.number.value);
                points.push_back(p);
            }
    }
};

}  // namespace

std::vector<Number> nodes_on(const MeshLists& mesh, const AxisLine& line, double tolerance) {
    const double near = tolerance_of(mesh, tolerance);
    return numbers_of(mesh.nodes, [&](const Node& node) { return lies_on({node.x, node.y}, line, near); });
}

std::vector<Number> nodes_in(const MeshLists& mesh, const Bounds& rectangle, double tolerance) {
    const double near = tolerance_of(mesh, tolerance);
    return numbers_of(mesh.nodes, [&](const Node& node) {
        return node.x >= rectangle.low.x - near && node.x <= rectangle.high.x + near &&
               node.y >= rectangle.low.y - near && node.y <= rectangle.high.y + near;
    });
}

std::vector<Number> elements_of(const MeshLists& mesh, ElementClass of, std::int32_t material) {
    return numbers_of(mesh.elements,
                      [&](const Element& e) { return e.of == of && e.words.material.value == material; });
}

std::vector<Number> continuum_elements_of(const MeshLists& mesh, std::int32_t material) {
    return numbers_of(mesh.elements,
                      [&](const Element& e) { return !e.is_line() && e.words.material.value == material; });
}

std::vector<Number> border_nodes(const MeshLists& mesh) {
    std::vector<Number> nodes;
    for (const FreeEdges::Edge& edge : outline_of(mesh, corners_of(mesh)).edges) {
        const std::int32_t place = mesh.element_place(edge.element);
        const Number midside =
            place == MeshLists::NONE
                ? 0
                : midside_of(mesh.elements[static_cast<std::size_t>(place)], edge.from, edge.to);
        for (const Number node : {edge.from, edge.to, midside})
            if (mesh.node_place(node) != MeshLists::NONE)
                nodes.push_back(node);
    }
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

CoincidentPairs coincident_pairs(const MeshLists& first, const MeshLists& second,
                                 const std::optional<AxisLine>& line, double tolerance) {
    const double near = std::max(tolerance_of(first, tolerance), tolerance_of(second, tolerance));
    Candidates nodes;
    nodes.add(first, line, near);
    nodes.of_first = nodes.numbers.size();
    nodes.add(second, line, near);
    const std::vector<std::int32_t> cluster = cluster_points(nodes.points, near);

    // By place: the nodes there of either mesh.
    struct Together {
        std::vector<Number> first, second;
    };
    std::map<std::int32_t, Together> places;
    for (std::size_t k = 0; k < cluster.size(); ++k) {
        Together& there = places[cluster[k]];
        (k < nodes.of_first ? there.first : there.second).push_back(nodes.numbers[k]);
    }
    CoincidentPairs found;
    for (const auto& [place, there] : places) {
        if (there.first.size() == 1 && there.second.size() == 1) {
            found.pairs.emplace_back(there.first.front(), there.second.front());
        } else if (!there.first.empty() && !there.second.empty()) {
            found.unpaired_first.insert(found.unpaired_first.end(), there.first.begin(), there.first.end());
            found.unpaired_second.insert(found.unpaired_second.end(), there.second.begin(),
                                         there.second.end());
        }
    }
    std::sort(found.pairs.begin(), found.pairs.end());
    std::sort(found.unpaired_first.begin(), found.unpaired_first.end());
    std::sort(found.unpaired_second.begin(), found.unpaired_second.end());
    return found;
}

std::vector<std::pair<Number, Number>> ranges_of(const std::vector<Number>& numbers) {
    std::vector<std::pair<Number, Number>> ranges;
    for (const Number number : numbers)
        if (!ranges.empty() && ranges.back().second + 1 == number)
            ranges.back().second = number;
        else
            ranges.emplace_back(number, number);
    return ranges;
}

}  // namespace brelan
