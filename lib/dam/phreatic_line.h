// The water level on the slope of a template, and the map of the template's triangle onto a dam's.
#pragma once

#include <cstdint>
#include <optional>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "text/trace.h"

namespace brelan {

// Coordinates of a point in a triangle: the shares of its first, second and third corner.
struct TriangleCoordinates {
    float r = 0.0F, s = 0.0F, t = 0.0F;
    int zero_coefficient = 0;  // the coefficient that is 0, in the order a1, b1, a2, b2; 0 where none is
    bool in = false;           // R, S and R + S lie within -0.001 to 1.001
};

// A triangle by its corners.
struct Triangle {
    float x1 = 0.0F, y1 = 0.0F, x2 = 0.0F, y2 = 0.0F, x3 = 0.0F, y3 = 0.0F;
};

// Solves for the coordinates of (x, y). A triangle without area is not caught: the result then is no
// number. With a debug level above 1 a point outside is listed.
TriangleCoordinates triangle_coordinates(Trace& trace, float x, float y, const Triangle& triangle);

// Ends the run when all nodes of the template lie at one point: so read the node lines of the set that is
// made for the other kinds.
void require_template(const EditCards& edit, const EditSource& source, const Mesh& mesh);

// Where the water level divides an element of the slope.
struct SlopeSplit {
    ElementNumber element;  // number in the template
    NodeNumber node;        // on the water level
};

// The slope stage of IEDIT 5, on the nodes of the template in the mesh tables: codes of the slope nodes by
// the water level of the edit, and where the level lies near a node, the slope spaced anew so that a
// node lies on it. Where it lies well between two nodes, a node is added on it instead and returned. A
// level that is not between 0 and 1 gives all slope nodes the codes 3 and 0.
std::optional<SlopeSplit> apply_water_level(Trace& trace, const EditCards& edit, EditSource& source,
                                            Mesh& mesh);

// Carries nodes 1 to the highest from the template's triangle onto that of the edit.
void map_template_nodes(Trace& trace, const EditCards& edit, const EditSource& source, Mesh& mesh);

// Makes all elements run the way that gives the first one of the mesh a positive area, its two halves taken
// together: I2 and the last corner change places.
void orient_elements(const EditSource& source, Mesh& mesh);

// Divides an element at the node on the water level: a quadrilateral becomes a
// triangle and a quadrilateral, a triangle two. The second part takes the next free number.
void split_slope_element(const EditCards& edit, const EditSource& source, Mesh& mesh,
                         const SlopeSplit& split);

}  // namespace brelan
