// Second step of the sound cut: the nodes that are added on sides and inside solids so that what is drawn
// runs from node to node. No element changes yet.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "group/sound_drawing.h"
#include "group/sound_ground.h"

namespace brelan {

// A node on a side, at a share of the way from its lower node to the other.
struct SidePoint {
    double share = 0.0;
    NodeNumber node;
};

struct CutPlan {
    std::map<Side, std::vector<SidePoint>> sides;        // in order along each
    std::map<CornerKey, std::vector<NodeNumber>> inner;  // nodes inside solids
    std::vector<Solids> met;                             // by each segment of the drawing

    // The nodes on the way from A to B, without these.
    std::vector<NodeNumber> between(NodeNumber a, NodeNumber b) const;

    // True where a line has got nodes between its own.
    bool divides(std::span<const NodeNumber> line, bool closed) const;

    // All nodes round a solid, from its first corner.
    std::vector<NodeNumber> ring_of(const Solid& solid) const;
};

CutPlan plan_cut(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing);

}  // namespace brelan
