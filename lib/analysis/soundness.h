// Whether elements fit together.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

// One thing that was found: the element and node it is about, 0 where there is none; `other` is the second
// node or element of a pair. `amount` is an area, width or count where the check has one.
struct Place {
    Number element = 0, node = 0, other = 0;
    Position at;
    double amount = 0.0;
};

// Worst first.
enum class Check {
    // A mesh with one of these is unsound.
    number_used_twice,   // of two nodes or elements; the file's later record takes the earlier one's place
    missing_node,        // a corner that is no node of the mesh
    missing_midside,     // a midside number that is no node of the mesh
    degenerate_element,  // no area to speak of, a corner twice, a line element without length
    inverted_element,    // corners run clockwise
    concave_element,     // a quadrilateral with a corner pushed in
    hanging_node,        // a node of elements on the free side of another element
    coincident_nodes,    // two at one place that no joint connects
    duplicate_element,   // the same nodes and material twice
    crowded_side,        // a side of more than two elements
    overlapping_solid,   // two that lie over each other and are no doubles; amount: the area
    pinned_part,         // a piece of ground that hangs on the rest in single nodes
    collapsed_joint,     // both sides on the same nodes, or no length
    triangular_joint,    // one node on both sides where its line does not end
    crossed_joint,       // its sides do not face each other
    stacked_joint,       // two over one piece of a line
    unjoined_joint,      // a node of solids within a side of a joint that does not have it
    open_wedge,          // a gap between sides that meet with joints closed; amount: its area
    stray_midside,       // a midside node that is not near the middle of its side
    unshared_midside,    // one of several sides or a corner as well, or one that the neighbour lacks
    folded_line,         // a beam or truss that runs back over the one before it
    // These are worth knowing and may be wanted.
    separate_part,        // a piece of ground that nothing ties to the rest
    unjoined_line,        // a node of elements within a beam or truss that does not have it
    line_beside_side,     // a beam or truss along the side of an element without its nodes
    loose_end,            // of a truss, or of a beam within an element
    crossing_lines,       // beams or trusses that meet without a common node
    uneven_joint,         // another width than the rest of its line; amount: the width
    overlapped_joint,     // a joint of a width over solids; amount: the area
    stacked_double,       // the third and further element over one place
    free_side_node,       // on the outer side of a mesh of which other nodes are fixed
    fixed_inside,         // a node within the ground that is fixed alone
    midside_beside_line,  // a side with a midside node along a joint, beam or truss, which have none
    unused_node,          // a node of no element
    double_element,       // the same nodes, another material: stages
    free_line,            // a strut or anchor, tied at its own nodes; amount: the nodes that it passes over
};

inline constexpr std::size_t CHECKS = 35;

// What the second number of a place is of.
enum class PairOf : std::uint8_t { nodes, elements };

struct Finding {
    Check check;
    std::string_view id;        // "hanging_nodes"
    std::string_view singular;  // "hanging node"
    std::string_view plural;
    bool unsound;
    PairOf pair_of;
    std::string_view amount;  // what it is, "area"; empty where the check has none
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

// The outline alone.
FreeEdges outline_of(const MeshLists& mesh, const std::vector<CornerPlaces>& corners);

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
