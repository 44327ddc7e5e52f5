// The outlines and lines of a deck over a picture.
#pragma once

#include <string>
#include <vector>

#include "drawing/page.h"
#include "drawing/scene.h"
#include "model/deck.h"

namespace brelan::tool {

// The number that stands for the title of each shape: that of its group, else one in the order of the shapes;
// 0 for blocks and windows, which have none. A title is too long to stand on a mesh: the numbers do, and a
// list beside the drawing tells the titles.
std::vector<int> shape_numbers(const std::vector<DeckShape>& shapes);

// The number of a shape as it stands on the page, in a ring.
struct ShapeMark {
    int number = 0;
    std::string title;
    Position at;         // middle of the ring
    Position on;         // the point of the shape that it belongs to, elsewhere only where there is no room
    bool drawn = false;  // false: no room at all
};

inline constexpr double MARK_RADIUS = 8.5;

// Of the shapes with a title that show on the page. A mark stands on its shape, off the other marks and as
// far as can be off the other shapes; else beside it.
std::vector<ShapeMark> place_marks(const std::vector<DeckShape>& shapes, const Page& page);

// The shapes with their marks.
void add_shapes(Scene& scene, const std::vector<DeckShape>& shapes, const std::vector<ShapeMark>& marks,
                const Page& page);

// The list of the titles below y, from x on and as wide. The y under it.
double add_titles(Scene& scene, const std::vector<ShapeMark>& marks, double x, double y, double width);

Stroke shape_stroke(ShapeRole role);

}  // namespace brelan::tool
