// Which sides of a dam's outlines are cut into the mesh. A cut moves nodes onto the side: one that lies on a
// line of the mesh needs none, and with shells the nodes that they share must stay.
#pragma once

#include <cstdint>

#include "dam/dam_tables.h"

namespace brelan {

// IEND of a side: cut with both ends placed, and not cut.
inline constexpr std::int32_t CUT = 2, NOT_CUT = 3;

// True for coordinates that are those of one line of the mesh.
bool same_line(float a, float b);

// True for a side that lies on a line of the block mesh: an edge of a block row, or one of a block column
// that the crest's ends leave where it is.
bool on_mesh_line(const DamPoint& a, const DamPoint& b);

// True for an outline inside the middle block, an element's width clear of its vertical sides. With shells
// only such a one may be cut: the nodes of those sides are the shells' too.
bool clear_of_shells(const DamOutline& points);

// True for an outline that stays below the dam's base by an element's height.
bool below_base(const DamOutline& points);

}  // namespace brelan
