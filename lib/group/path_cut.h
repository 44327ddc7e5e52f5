// A path and the mesh: the mesh is cut so that the path runs along element sides.
#pragma once

#include <span>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/path.h"

namespace brelan {

// How the ends of a segment reach the mesh (ONLY_MOVE apart, conforming_cut.h).
inline constexpr std::int32_t BOTH_ENDS_ALONE = 0, START = -1, END = 1, BOTH_ENDS = 2, UNTOUCHED = 3;  // IEND

// The ends of a segment that become nodes of the mesh.
PlacedEnds placed_by(std::int32_t end_rule);

// Cuts the pieces of a path in their order, each as its segment says.
void cut_along(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, const Path& path,
               std::span<const SegmentRow> segments);

// Ends the run where the path has a segment of more parts than there may be.
void require_parts(const Engine& engine, const Path& path);

}  // namespace brelan
