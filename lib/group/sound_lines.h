// Lines of the sound cut: the nodes of a group's line as one chain of sides, and how it goes on from node to
// node.
#pragma once

#include <vector>

#include "group/engine.h"
#include "group/line_nodes.h"
#include "mesh/tables.h"
#include "plane/path.h"

namespace brelan {

// How a line goes on from a node to the next.
enum class Step {
    side,    // along a side, with ground to both sides
    border,  // along a side, with ground to one side
    place,   // to another node at the same place, as a joint has them
    across,  // across ground that was not cut
    gap,     // the path leaves the ground and comes back
};

struct SoundLine {
    std::vector<NodeNumber> nodes;
    std::vector<Step> steps;  // from each node; of an open line from each but the last
    bool closed = false;

    NodeNumber behind(std::size_t k) const { return nodes[(k + 1) % nodes.size()]; }
};

// The line along a path: of nodes at one place those that a chain of sides needs.
SoundLine sound_line(const Mesh& mesh, Engine& engine, const std::vector<LineNode>& listed, const Path& path,
                     double tolerance);

// A line in pieces that hang together: it breaks at gaps, and goes no way twice.
struct LinePiece {
    std::vector<std::size_t> places;  // in the list of the line's nodes
    bool closed = false;
};
std::vector<LinePiece> pieces_of(const SoundLine& line);

// True where two nodes are the ends of a side.
bool are_joined(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b);

}  // namespace brelan
