// Which sides of a dam's outlines are cut into the mesh. A cut moves nodes onto the side; the questions here
// are about nodes that must not be moved so.
#pragma once

#include <cstdint>

#include "dam/dam_tables.h"

namespace brelan {

// IEND of a side: cut with both ends placed, without the start, without the end, not cut.
inline constexpr std::int32_t CUT = 2, CUT_BUT_START = 1, CUT_BUT_END = -1, NOT_CUT = 3;

// True for coordinates that are those of one line of the mesh.
bool same_line(float a, float b);

// True for a side that lies on a line of the block mesh: an edge of a block row, or one of a block column
// that the crest's ends leave where it is.
bool on_mesh_line(const DamPoint& a, const DamPoint& b);

// Width of the elements of a block that is divided evenly.
float element_width(float width, float wanted);

// Height of the lowest elements of the last layer, which is graded and the coarsest at its bottom.
float lowest_height(float thickness, float wanted);

// True for an outline inside the middle block, an element's width clear of its vertical sides. With shells
// only such a one may be cut: the nodes of those sides are the shells' too.
bool clear_of_shells(const DamOutline& points);

// True for an outline that stays below the dam's base by an element's height.
bool below_base(const DamOutline& points);

// True for an outline with a point on the crest next to which one of the crest's ends is the nearest node:
// the cut would move it there, and it is a node of the slope.
bool takes_crest_end(const DamOutline& points);

// True for an outline with a point in the upper half of the top row of elements, but not on the crest. Nodes
// of the crest do not give way, and the cut would leave a hanging node.
bool crowds_crest(const DamOutline& points);

// The same for the lower half of the lowest row and the bottom of the ground.
bool crowds_bottom(const DamOutline& points);

// True where the vertical under an end of the crest would take a node of the slope beside it.
bool takes_slope_node(float crest_end, float toe);

}  // namespace brelan
