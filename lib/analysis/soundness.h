// Whether elements fit together.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

// One thing that was found: the element and node it is about, 0 where there is none; `other` is the second
// node or element of a pair.
struct Place {
    Number element = 0, node = 0, other = 0;
    Position at;
};

enum class Check {
    // A mesh with one of these is unsound.
    number_used_twice,   // of two nodes or elements; the file's later record takes the earlier one's place
    missing_node,        // a corner that is no node of the mesh
    degenerate_element,  // no area to speak of, a corner twice, a line element without length
    inverted_element,    // corners run clockwise
    concave_element,     // a quadrilateral with a corner pushed in
    hanging_node,        // a node of elements on the free side of another element
    coincident_nodes,    // two at one place that no joint connects
    duplicate_element,   // the same nodes and material twice
    crowded_side,        // a side of more than two elements
    // These are worth knowing and may be wanted.
    double_element,  // the same nodes, another material: stages
    unjoined_line,   // a node of elements within a beam or truss that does not have it
    unused_node,     // a node of no element
};

inline constexpr std::size_t CHECKS = 12;

struct Finding {
    Check check;
    std::string_view id;        // "hanging_nodes"
    std::string_view singular;  // "hanging node"
    std::string_view plural;
    bool unsound;
    std::vector<Place> places;
};

// One for each Check, in that order, without places.
std::vector<Finding> nothing_found();

// The outline of the mesh, joints closed.
struct FreeEdges {
    std::size_t count = 0;
    std::size_t loops = 0;  // pieces that hang together
    double length = 0.0;
    struct Edge {
        Number element = 0, from = 0, to = 0;
    };
    std::vector<Edge> edges;
};

struct Soundness {
    std::vector<Finding> findings;  // one for each Check, in that order, also without places
    FreeEdges free_edges;
    std::size_t parts = 0;   // pieces of the mesh that share no node, joints and lines included
    double tolerance = 0.0;  // distance within which nodes are at one place or on a side

    const Finding& of(Check check) const { return findings[static_cast<std::size_t>(check)]; }
    bool sound() const;
};

// A tolerance of 0 takes the resolution of the file's digits.
Soundness check_soundness(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                          double tolerance = 0.0);

}  // namespace brelan
