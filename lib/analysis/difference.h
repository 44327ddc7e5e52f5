// What differs between two meshes, by number or by place.
#pragma once

#include <utility>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan {

// Places in the lists of the two meshes.
using PlacePair = std::pair<std::int32_t, std::int32_t>;

struct Difference {
    std::vector<std::int32_t> nodes_only_a, nodes_only_b;  // places in the lists
    std::vector<PlacePair> nodes_moved;                    // farther than the tolerance
    std::vector<PlacePair> nodes_changed;                  // other codes or values
    std::vector<std::int32_t> elements_only_a, elements_only_b;
    std::vector<PlacePair> elements_changed;  // other nodes, material, class or attributes
    std::vector<PlacePair> other_midsides;    // by place: those of them with other midside nodes
    bool other_kind = false;
    double tolerance = 0.0;

    bool none() const {
        return !other_kind && nodes_only_a.empty() && nodes_only_b.empty() && nodes_moved.empty() &&
               nodes_changed.empty() && elements_only_a.empty() && elements_only_b.empty() &&
               elements_changed.empty();
    }
};

// Nodes and elements of the same number are compared.
Difference difference_by_number(const MeshLists& a, const MeshLists& b, double tolerance);

// Nodes at the same place, within the tolerance, are compared, and elements between such nodes, wherever they
// begin to count their corners, with their midside nodes. Of several nodes at one place those are taken
// together that carry the same codes and belong to the same elements. A tolerance of 0 takes one that suits
// the meshes.
Difference difference_by_place(const MeshLists& a, const MeshLists& b, double tolerance);

// Numbers of corners and midside nodes.
bool same_nodes(const ElementWords& a, const ElementWords& b);

// Codes and values of two nodes; class, material and attributes of two elements. Attributes of different
// kinds are not compared.
bool same_values(const Node& a, const Node& b);
bool same_attributes(const MeshLists& mesh_a, const MeshLists& mesh_b, const Element& a, const Element& b);

}  // namespace brelan
