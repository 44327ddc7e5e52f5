// The steps of an analysis as ParaView shows them: a mesh for each, and a PVD file that makes them a series
// in time.
#pragma once

#include <filesystem>
#include <functional>

#include "analysis/stages.h"
#include "formats/cell_mesh.h"

namespace brelan::tool {

// Adds the arrays "comes" and "goes", the steps at which each element does; 0 where it does not.
void add_stage_arrays(const MeshLists& mesh, const Stages& stages, CellMesh& cells);

// Writes "Pit-0.vtu" and so on for step 0 and those at which anything comes or goes, and "Pit.pvd" that names
// them, for a path "Pit.vtu". The mesh of a step holds what stands there, so nothing lies over its double.
// Each file is there whole or not at all, the series last.
void write_vtu_series(const MeshLists& mesh, const Stages& stages, const std::filesystem::path& path,
                      const std::function<CellMesh(const MeshLists&)>& cells_of_part);

}  // namespace brelan::tool
