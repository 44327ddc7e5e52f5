// Where nodes lie, for the search that free lines make: which node already stands at a point.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/group_tables.h"
#include "mesh/tables.h"

namespace brelan {

struct Engine;

// Cells hold the numbers of the nodes that lie in them, ascending. A node that moves is entered again where
// it lies now; where it lay before it stays, and the look at its distance passes it over. Built at the first
// search: most runs have no free line.
class NodeIndex {
public:
    void forget() { cells_.clear(); }
    void note(const Mesh& mesh, NodeNumber n);
    NodeNumber lowest_within(Mesh& mesh, Engine& engine, const Point& point, float reach);

private:
    void build(Mesh& mesh, Engine& engine);
    std::int32_t cell(float v, float low, float high) const;
    std::int32_t column(float x) const { return cell(x, x0_, x1_); }
    std::int32_t row(float y) const { return cell(y, y0_, y1_); }
    std::size_t place(std::int32_t c, std::int32_t r) const {
        return static_cast<std::size_t>(c) * static_cast<std::size_t>(count_) + static_cast<std::size_t>(r);
    }

    float x0_ = 0.0F, x1_ = 0.0F, y0_ = 0.0F, y1_ = 0.0F;
    std::int32_t count_ = 1;
    std::vector<std::vector<NodeNumber>> cells_;
};

// The lowest node number from 1 to the highest in use whose distance from the point is strictly below the
// reach; 0 for none. Numbers that no node uses count where they lie, at (0, 0).
NodeNumber lowest_node_within(Mesh& mesh, Engine& engine, const Point& point, float reach);

// Notes that a node is new or lies elsewhere.
void note_node_place(Mesh& mesh, Engine& engine, NodeNumber n);

// Forgets all places: the nodes of another mesh are in the tables.
void forget_node_places(Engine& engine);

}  // namespace brelan
