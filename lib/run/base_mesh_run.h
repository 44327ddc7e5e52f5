// Mode 2: a base mesh from blocks.
#pragma once

#include "blocks/base_mesh.h"
#include "blocks/block_plan.h"

namespace brelan {

struct Run;

// Generates the base mesh of the deck: Passes 4A and 4B.
BaseMesh run_base_mesh(Run& run);

// Generates the mesh of a plan: "Bmesh.Tmp", "Coord.dat", "Index.dat" and "..\Bmesh.dat". Stops with "100"
// when the mesh is larger than the generator's work space; "Coord.dat" then tells by how much.
BaseMesh generate_base_mesh(Run& run, const BlockPlan& plan);

}  // namespace brelan
