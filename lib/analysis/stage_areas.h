// How much of what stands in each step of an analysis, and what comes and goes there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "analysis/counts.h"
#include "analysis/stages.h"

namespace brelan {

// Elements of one class and material in one step, by what they measure: the area of solids, the length of
// joints, beams and trusses.
struct StageAmount {
    std::size_t elements = 0;        // that stand in the step
    double stands = 0.0;             // of these
    double comes = 0.0, goes = 0.0;  // at the step: what goes there no longer stands

    bool changes() const { return comes > 0.0 || goes > 0.0; }
};

struct StageRow {
    ElementClass of = ElementClass::solid;
    std::int32_t material = 0;
    std::vector<StageAmount> amounts;  // of each step

    bool measures_area() const { return of == ElementClass::solid; }
};

struct StageAreas {
    std::vector<std::int32_t>
        steps;                   // 0, the state before the first step, then each at which anything changes
    std::vector<StageRow> rows;  // by class, then material
};

StageAreas stage_areas(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, const Stages& stages);

// The mesh as a solver has it in a step: with the elements alone that stand there, under their numbers. Nodes
// go with the last of their elements; those that have none in the mesh stay.
MeshLists mesh_in_step(const MeshLists& mesh, const Stages& stages, std::int32_t step);

}  // namespace brelan
