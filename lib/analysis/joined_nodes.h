// Nodes that joints make one: the mesh as it would be with its joints closed.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

// Sets that grow together.
class UnionFind {
public:
    explicit UnionFind(std::size_t size);
    std::int32_t find(std::int32_t member);
    void join(std::int32_t a, std::int32_t b);

private:
    std::vector<std::int32_t> parent_;
};

// The two pairs of corners that face each other across a joint, as corner indices.
struct JointPairs {
    int pair[2][2];
};
JointPairs joint_pairs(const MeshLists& mesh, const CornerPlaces& corners);

// For each node place the lowest place of the nodes that joints connect it to.
std::vector<std::int32_t> nodes_with_joints_closed(const MeshLists& mesh,
                                                   const std::vector<CornerPlaces>& corners);

}  // namespace brelan
