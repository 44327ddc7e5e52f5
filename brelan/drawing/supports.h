// Node codes as symbols.
#pragma once

#include <string>
#include <vector>

#include "drawing/page.h"
#include "drawing/scene.h"

namespace brelan::tool {

// What a code other than 0 does to a node.
enum class Support {
    fixed_x,  // a triangle beside the node
    fixed_y,  // a triangle under it
    fluid,    // a ring: IFX or IFY
    value,    // a disc: ID, a given temperature or head or the mark of a line
    flow,     // a square: IDF
};

struct SupportSample {
    Support symbol;
    std::string name;  // "IDX: x fixed"
};

// Those that nodes on the page have.
std::vector<SupportSample> support_samples(const MeshLists& mesh, const Page& page);

// For each node the length of the shortest side from it to another node with a symbol, in the mesh's unit;
// infinity where there is none. Sides of joints do not count.
std::vector<double> support_room(const MeshLists& mesh, const std::vector<CornerPlaces>& corners);

// Symbols of all nodes in the window, smaller where they crowd.
void add_supports(Scene& scene, const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                  const Page& page);

// One symbol at a place of the page, for the legend.
void add_support_symbol(Scene& scene, Support symbol, const Position& at);

}  // namespace brelan::tool
