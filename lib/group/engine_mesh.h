// The mesh as the group engine sees it: what is a joint, new nodes and elements, and where things lie.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "group/engine.h"
#include "mesh/attributes.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/geometry.h"

namespace brelan {

inline Point node_point(const Mesh& mesh, NodeNumber n) {
    return {mesh.x[n], mesh.y[n]};
}

// A selected element: a continuum element that Card 3.3.5.2 does not name and that is no joint or duplicate
// of this run.
inline bool is_selected(const Mesh& mesh, const Engine& engine, ElementNumber e) {
    return mesh.type[e] == ELEMENT_CONTINUUM && engine.workable[e].names_one();
}

// The corner words of an element in their order.
struct Corners {
    NodeNumber n[4];
};
inline Corners corners_of(const Mesh& mesh, ElementNumber e) {
    const ElementWords& w = mesh.words[e];
    // The cut hides the elements that it works on behind a negative first corner.
    return {{w.corner_1.in_sight(), w.corner_2, w.corner_3, w.corner_4}};
}
void set_corners(Mesh& mesh, Engine& engine, ElementNumber e, const Corners& corners);

// Mean of those of the first corners that have positive numbers: their sum in corner order, then divided.
Point centroid(const Mesh& mesh, ElementNumber e, std::size_t corners = 4);

std::vector<Point> node_points(const Mesh& mesh, std::span<const NodeNumber> nodes);

// A new node behind the highest, free to move; its code words stay as found. Ends the run when there is no
// number left.
NodeNumber add_node(Mesh& mesh, Engine& engine, const Point& point);

// A new element number behind the highest; midside nodes that an earlier mesh has left in its words stay as
// found or are cleared, as the engine says. Ends the run when there is no number left.
ElementNumber add_element(Mesh& mesh, Engine& engine);

// Moves a node. Ends the run when a coordinate is not a number.
void move_node(Mesh& mesh, Engine& engine, NodeNumber n, const Point& point);

// --- where elements lie --------------------------------------------------------------------------

// The index of element places follows the mesh as it changes. It never leaves out an element that lies at a
// place, so what is found with it is what a scan of all elements in ascending number would find.

// Builds the index over elements 1 to NCONT, and forgets what was known of another mesh.
void build_indexes(Mesh& mesh, Engine& engine);

// Notes that an element has new corners.
void note_element(Mesh& mesh, Engine& engine, ElementNumber e);

// All elements that may contain an end of the segment or have a side crossed by it, in ascending number. The
// list holds until the next call for elements.
std::span<const ElementNumber> elements_met_by(Engine& engine, const Point& p1, const Point& p2);

// The same of the elements that may have a node, or their middle, within a reach of the box of two points.
std::span<const ElementNumber> elements_near(Engine& engine, const Point& p1, const Point& p2,
                                             float reach = 0.0F);

// Those whose boxes meet a box.
std::span<const ElementNumber> elements_over(Engine& engine, const Box& box);

// All elements that may have one of the nodes as a corner, in ascending number.
std::vector<ElementNumber> elements_with(const Engine& engine, std::span<const NodeNumber> nodes);
ElementsAt elements_at(const Engine& engine, NodeNumber node);

// All elements that may have a side, in ascending number.
ElementsAt elements_beside(const Engine& engine, NodeNumber from, NodeNumber to);

}  // namespace brelan
