// The path that a group of a deck draws.
#pragma once

#include <span>

#include "model/deck.h"
#include "plane/path.h"

namespace brelan::tool {

// Outline points nearer than this are one, as long as a project's defaults file does not say otherwise.
inline constexpr double SAME_PLACE = 0.001;

// Sets the outline, the path and the paths of the segments of a group, as the engine has them. There is a row
// for each segment.
void draw_path(DeckGroup& group, std::span<const Point> outline, std::span<const SegmentRow> rows);

}  // namespace brelan::tool
