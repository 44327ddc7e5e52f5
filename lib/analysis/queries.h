// Which nodes and elements of a mesh lie where: lists of numbers, each in ascending order.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan {

// A line along which one coordinate is constant: x = 20 is upright.
enum class Axis : std::uint8_t { x, y };
struct AxisLine {
    Axis axis = Axis::x;
    double at = 0.0;
};

// Nodes within a distance of the line, of the upright rectangle (its edges included). Here and below a
// tolerance of 0 takes that of the digits that a mesh file has (usual_tolerance of analysis/geometry.h).
std::vector<Number> nodes_on(const MeshLists& mesh, const AxisLine& line, double tolerance = 0.0);
std::vector<Number> nodes_in(const MeshLists& mesh, const Bounds& rectangle, double tolerance = 0.0);

// Elements of a class and material; and solids and joints of a material, which share its number.
std::vector<Number> elements_of(const MeshLists& mesh, ElementClass of, std::int32_t material);
std::vector<Number> continuum_elements_of(const MeshLists& mesh, std::int32_t material);

// Nodes of the outline of the solids, joints closed, with the midside nodes of its sides. Where a joint ends
// there both of its nodes are.
std::vector<Number> border_nodes(const MeshLists& mesh);

// Nodes of two meshes at one place, as the lists of a combination of them pair them.
struct CoincidentPairs {
    std::vector<std::pair<Number, Number>> pairs;  // of the first and the second mesh, by the first
    // Nodes at places where either mesh has several, as the twins of a joint are: which goes with which the
    // places do not tell.
    std::vector<Number> unpaired_first, unpaired_second;
};

// On a line, or anywhere. The tolerance of 0 is the larger one of the two meshes.
CoincidentPairs coincident_pairs(const MeshLists& first, const MeshLists& second,
                                 const std::optional<AxisLine>& line = std::nullopt, double tolerance = 0.0);

// Runs of consecutive numbers of an ascending list, by first and last.
std::vector<std::pair<Number, Number>> ranges_of(const std::vector<Number>& numbers);

}  // namespace brelan
