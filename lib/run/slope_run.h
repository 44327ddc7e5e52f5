// IEDIT 5: a slope template is mapped onto the triangle of a dam's slope.
#pragma once

#include <optional>

#include "dam/phreatic_line.h"
#include "text/text_line.h"

namespace brelan {

struct Run;

// The template's file, by the MODEL that the checker found.
TextLine slope_template(Run& run);

// Between Passes 8 and 9: water level and map of the nodes. Gives the element that the level divides.
std::optional<SlopeSplit> map_slope_nodes(Run& run);

// Behind Pass 13: the elements are turned the right way, and one is divided at the water level.
void finish_slope_elements(Run& run, const std::optional<SlopeSplit>& split);

}  // namespace brelan
