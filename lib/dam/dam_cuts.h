// Which sides of a dam's outlines are cut into the mesh. A cut moves nodes onto the side: one that lies on a
// line of the mesh needs none, and nodes of the crest, of the slopes, of the ground's bottom and those that
// shells share must stay.
#pragma once

#include <cstdint>

#include "dam/dam_tables.h"

namespace brelan {

// IEND of a side: cut with both ends placed, without its start, without its end, and not cut.
inline constexpr std::int32_t CUT = 2, CUT_BUT_START = 1, CUT_BUT_END = -1, NOT_CUT = 3;

// True for coordinates that are those of one line of the mesh.
bool same_line(const DamCards& dam, float a, float b);

// True for a side that lies on a line of the block mesh: an edge of a block row, or one of a block column
// that the crest's ends leave where it is.
bool on_mesh_line(const DamCards& dam, const DamSizes& sizes, const Point& a, const Point& b);

// True for an outline inside the middle block, an element's width clear of its vertical sides. With shells
// only such a one may be cut: the nodes of those sides are the shells' too.
bool clear_of_shells(const DamSizes& sizes, const DamOutline& points);

// True for an outline that stays below the dam's base by an element's height.
bool below_base(const DamSizes& sizes, const DamOutline& points);

// An end of the crest and the toe of its slope. An end beside the edge of its block column is no node of the
// mesh from the start.
struct CrestEnd {
    float x = 0.0F, toe = 0.0F;
    bool beside_edge = false;
};
CrestEnd left_crest_end(const DamCards& dam, const DamSizes& sizes);
CrestEnd right_crest_end(const DamCards& dam, const DamSizes& sizes);

// The height to which a slope is clear, by an element's width, of the vertical under its end of the crest.
float clear_of_slope(const DamCards& dam, const DamSizes& sizes, const CrestEnd& end);

// True for an outline that a cut would bring into disorder with the crest. Its nodes do not give way to a
// corner in the upper half of the top row of elements, an end of the crest must not become a corner beside
// it, and where an end is beside the edge of its block column the nodes near it are the slope's.
bool crowds_crest(const DamCards& dam, const DamSizes& sizes, const DamOutline& points);

// The height to which such an outline may be cut.
float clear_of_crest(const DamCards& dam, const DamSizes& sizes);

// True for an outline that ends in the lower half of the lowest row of elements, but not on the bottom of the
// ground, whose nodes do not give way; and the height down to which it may be cut.
bool crowds_bottom(const DamCards& dam, const DamSizes& sizes, const DamOutline& points);
float clear_of_bottom(const DamCards& dam, const DamSizes& sizes);

}  // namespace brelan
