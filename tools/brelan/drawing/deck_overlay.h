// The outlines and lines of a deck over a picture.
#pragma once

#include <vector>

#include "drawing/page.h"
#include "drawing/scene.h"
#include "model/deck.h"

namespace brelan::tool {

// Shapes with their titles. Titles are kept off each other.
void add_shapes(Scene& scene, const std::vector<DeckShape>& shapes, const Page& page);

Stroke shape_stroke(ShapeRole role);

}  // namespace brelan::tool
