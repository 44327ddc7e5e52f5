// The sound cut: the mesh is altered so that what is drawn runs along element sides, and every element that
// comes out is one that a solver takes. Nodes move onto the drawing where the elements round them stay well
// shaped; where that cannot be, sides get nodes where the drawing crosses them, the same for both neighbours.
// Then each touched element is a small polygon with the drawing's chain in it, and is divided by a
// constrained triangulation whose triangles are paired to quadrilaterals. What earlier groups drew stays
// where it is.
#pragma once

#include <span>

#include "group/engine.h"
#include "group/sound_ground.h"
#include "group/sound_plan.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/path.h"

namespace brelan {

// Cuts along the pieces of a path. Gives the nodes that were added on sides: lines of earlier groups run
// through them. Ends the run where an element that is touched was unsound before, or cannot be divided
// soundly. `width` is what a joint takes of the ground along the path.
CutPlan cut_soundly(Mesh& mesh, double tolerance, Engine& engine, Drawn& drawn, std::span<const Point> loaded,
                    const Path& path, std::span<const SegmentRow> segments, double width);

// Divides sides in their middles. Those that are too short for that stay.
CutPlan halve_sides(Mesh& mesh, double tolerance, Engine& engine, Drawn& drawn, std::span<const Side> sides);

// Puts the nodes that were added between two neighbours of a line into it.
void follow_sides(std::vector<NodeNumber>& line, bool closed, const CutPlan& plan);

// The same for a line and its twins, between which joints stand: both get as many nodes, or none.
void follow_sides(std::vector<NodeNumber>& line, std::vector<NodeNumber>& twins, bool closed,
                  const CutPlan& plan);

// The distance within which things are one: TOLSAME, or what 32 bits can tell apart where that is more.
double smallest_distance(const Mesh& mesh, const Tolerances& tolerances, const Engine& engine);

}  // namespace brelan
