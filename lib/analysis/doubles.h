// Solids that stand between the same nodes, as the stages of an excavation do.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

struct SolidSets {
    std::vector<std::int32_t> single;  // the first of each set, ascending places
    // Each further one with an earlier one: of its own material where there is one, else the one before it.
    std::vector<std::pair<std::int32_t, std::int32_t>> doubles;
    std::vector<std::pair<std::int32_t, std::int32_t>> further;  // each from the third on, and the first
};

// `closed` as nodes_with_joints_closed gives it: a solid on the twins of a joint's line is the double of one
// on the line itself.
SolidSets solid_sets(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                     const std::vector<std::int32_t>& closed);

}  // namespace brelan
