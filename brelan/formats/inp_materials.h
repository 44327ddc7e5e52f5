// Sections and materials of the .inp dialect.
#pragma once

#include <string>
#include <vector>

#include "cli/formatted_text.h"
#include "formats/inp_elements.h"
#include "formats/inp_sets.h"

namespace brelan::tool {

// A section and a material for each section of the mesh. A value is that of the table for the material, else
// for the material that it was before its group gave it one of its own, else that of the mesh, else a
// placeholder. `remark` is told which materials have placeholders, and of rows that the mesh has no elements
// for.
void add_materials(FormattedText& text, const MeshLists& mesh, const InpElements& elements,
                   const PropertyTable& table, const std::function<void(const std::string&)>& remark);

// Soft beams without weight, numbered from `first` on, in the place of those that come or go. The solver
// makes a knot of each beam node, which would hang in the air while all of its beams are away.
void add_stand_ins(FormattedText& text, const InpElements& elements, const Stages& stages,
                   const PropertyTable& table, Number first, SetNames& names);

}  // namespace brelan::tool
