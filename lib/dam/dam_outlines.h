// The groups of a dam's main deck: what is drawn over the block mesh.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dam/dam_tables.h"
#include "mesh/cut_method.h"
#include "mesh/edition.h"

namespace brelan {

// Materials of the zones that Cards 5.3 and 5.5 draw.
inline constexpr std::int32_t CORE_MATERIAL = 4, WALL_MATERIAL = 5;

// A group of the main deck. Side k runs from point k to the next; the last side of a closed outline back to
// the first point.
struct DamGroup {
    std::string title;
    std::int32_t group_type = 0;
    std::int32_t material = 0;                      // MTYPE 3
    std::int32_t line_type = 0, line_material = 0;  // MTYPE 2
    DamOutline points;
    std::vector<std::int32_t> end_rules;  // by side: how it is cut into the mesh, see dam/dam_cuts.h
    std::int32_t divisions = 0;           // of all sides
};

// The groups of the main deck in their order, from the dam and its sizes. By the sound cut they leave out
// what zones_over_shells draws.
std::vector<DamGroup> dam_groups(LayoutKind kind, const DamCards& dam, const DamSizes& sizes, CutMethod cut);

// Core and wall, for the sound cut of a dam whose shells have been joined to its body: so drawn they end
// neither at the middle block nor at the shells.
std::vector<DamGroup> zones_over_shells(const DamCards& dam, const DamSizes& sizes);

// The outline of a subsoil layer from its bottom to its top, without the part that a wall takes: round the
// wall from the top where it enters there, else from the bottom. The wall is given by its four points.
DamOutline layer_outline(float left, float right, float bottom, float top, const DamOutline& wall);

}  // namespace brelan
