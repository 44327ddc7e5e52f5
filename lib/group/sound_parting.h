// Where the ground hangs together round a node, where lines through it part it, and what becomes of the sides
// of a node that is parted.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "group/engine.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// A continuum element at a node, with its corners next to it.
struct Wedge {
    ElementNumber element;
    NodeNumber before, behind;
};

std::vector<Wedge> wedges_at(const Mesh& mesh, const Engine& engine, NodeNumber node);

// True for a side of a joint that lies across its line.
bool has_short_side(const Mesh& mesh, ElementNumber e, NodeNumber a, NodeNumber b);

// A joint that closes at a node: the corners that lie there, on its line and to the left of that, and the
// other end of its line.
struct Toe {
    ElementNumber element;
    NodeNumber from;
    std::size_t corner, left_corner;
};
std::vector<Toe> toes_at(const Mesh& mesh, const Engine& engine, NodeNumber node);

// The wedges of a node in the sectors that lines through it make of them: those that hang together round it
// without crossing a line.
struct Sectors {
    std::vector<Wedge> wedges;
    std::vector<std::size_t> of;  // the sector of each wedge: the place of one of its wedges

    // The sector to the left of the way from the node to another, and to its right; none where no ground is.
    std::optional<std::size_t> left_of(NodeNumber other) const;
    std::optional<std::size_t> right_of(NodeNumber other) const;
};

// `lines` are the other ends of the sides that part the ground. So do the short sides of joints.
Sectors sectors_at(const Mesh& mesh, const Engine& engine, NodeNumber node,
                   const std::set<NodeNumber>& lines);

// What became of the sides of parted nodes: by a node as it was and the other end of the side, the node that
// the side has now.
using PartedSides = std::map<std::pair<NodeNumber, NodeNumber>, NodeNumber>;

// Gives a side's ends the nodes that it has now.
void follow_side(const PartedSides& parted, NodeNumber& from, NodeNumber& to);

// Gives drawn sides the nodes that they have now.
void follow_parting(Drawn& drawn, const PartedSides& parted);

// The same for a line and its twins, as many of these or none. Where a side and the next one have other nodes
// now, the line has both.
void follow_parting(std::vector<NodeNumber>& nodes, std::vector<NodeNumber>& twins, bool closed,
                    const PartedSides& parted);

}  // namespace brelan
