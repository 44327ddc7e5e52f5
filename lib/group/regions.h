// What a group does inside its outline, and the repair of quadrilaterals after the last group.
#pragma once

#include <cstdint>
#include <span>

#include "group/engine.h"
#include "group/joints.h"
#include "mesh/tables.h"
#include "plane/geometry.h"

namespace brelan {

// A group's material as the driver has converted it.
struct RegionMaterial {
    std::int32_t group_type = 0, overlay = 0;
    MaterialNumber material, old_material;
    std::int32_t attribute = 0;  // KF or IH
    float density = 0.0F;        // displacement kind
};

// Deletes, assigns or duplicates the elements whose centroid is inside the path (outside for MTYPE -1).
// `moved` are the elements that the group's joint has moved to its twins.
void apply_region(Mesh& mesh, Engine& engine, const RegionMaterial& material, std::span<const Point> path,
                  std::span<const MovedElement> moved = {});

// Splits the quadrilaterals that node moves have made concave into two triangles, along the diagonal that
// lies inside.
void repair_quadrilaterals(Mesh& mesh, Engine& engine);

}  // namespace brelan
