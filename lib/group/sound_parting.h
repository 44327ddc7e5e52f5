// Where the ground hangs together round a node, and where a line through it parts it.
#pragma once

#include <algorithm>
#include <set>
#include <vector>

#include "group/engine.h"
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

// The elements at a node to the left of a line and to its right; the same ones in both where they hang
// together behind the line. `before` and `behind` are the node's neighbours on the line, none where it ends.
struct Parting {
    std::set<ElementNumber> left, right;

    bool is_one() const {
        return std::any_of(left.begin(), left.end(), [&](ElementNumber e) { return right.count(e) != 0; });
    }
};

Parting parting_at(const Mesh& mesh, const Engine& engine, NodeNumber node, NodeNumber before,
                   NodeNumber behind);

// Opens the joints that close at a node where the ground to their two sides does not hang together any more.
void open_toe(Mesh& mesh, Engine& engine, NodeNumber node);

}  // namespace brelan
