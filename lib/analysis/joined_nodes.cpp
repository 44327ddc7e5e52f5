#include "analysis/joined_nodes.h"

#include <numeric>

namespace brelan {

UnionFind::UnionFind(std::size_t size) : parent_(size) {
    std::iota(parent_.begin(), parent_.end(), 0);
}

std::int32_t UnionFind::find(std::int32_t member) {
    std::int32_t* parent = parent_.data();
    while (parent[member] != member) {
        parent[member] = parent[parent[member]];
        member = parent[member];
    }
    return member;
}

void UnionFind::join(std::int32_t a, std::int32_t b) {
    a = find(a);
    b = find(b);
    parent_[static_cast<std::size_t>(a < b ? b : a)] = a < b ? a : b;
}

JointPairs joint_pairs(const MeshLists& mesh, const CornerPlaces& c) {
    const auto side = [&](int a, int b) { return distance(mesh.point(c[a]), mesh.point(c[b])); };
    if (c.count == 3) {  // two corners fell together: the nearest two face each other
        const double s01 = side(0, 1), s12 = side(1, 2), s20 = side(2, 0);
        if (s01 <= s12 && s01 <= s20)
            return {{{0, 1}, {0, 1}}};
        return s12 <= s20 ? JointPairs{{{1, 2}, {1, 2}}} : JointPairs{{{2, 0}, {2, 0}}};
    }
    // I1-I4 and I2-I3 as the program makes them; the other way where a mirrored mesh turned the corners,
    // which shows in the thin direction.
    constexpr double THINNER = 0.01;
    const double across = side(0, 3) + side(1, 2), along = side(0, 1) + side(2, 3);
    return along < THINNER * across ? JointPairs{{{0, 1}, {2, 3}}} : JointPairs{{{0, 3}, {1, 2}}};
}

std::vector<std::int32_t> nodes_with_joints_closed(const MeshLists& mesh,
                                                   const std::vector<CornerPlaces>& corners) {
    UnionFind sets(mesh.nodes.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (mesh.elements[i].of != ElementClass::joint || !corners[i].complete())
            continue;
        const JointPairs pairs = joint_pairs(mesh, corners[i]);
        for (const auto& pair : pairs.pair)
            sets.join(corners[i][pair[0]], corners[i][pair[1]]);
    }
    std::vector<std::int32_t> closed(mesh.nodes.size());
    for (std::size_t n = 0; n < closed.size(); ++n)
        closed[n] = sets.find(static_cast<std::int32_t>(n));
    return closed;
}

}  // namespace brelan
