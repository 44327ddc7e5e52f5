// Corners, areas and lengths of elements. All in 64 bits, from the 32-bit values of the file.
#pragma once

#include <array>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan {

// Places of an element's corner nodes in mesh.nodes, in order round the element; MeshLists::NONE where the
// mesh has no such node and behind the last corner.
struct CornerPlaces {
    std::array<std::int32_t, 4> place{MeshLists::NONE, MeshLists::NONE, MeshLists::NONE, MeshLists::NONE};
    int count = 0;

    std::int32_t operator[](int k) const { return place[static_cast<std::size_t>(k)]; }
    bool complete() const;  // all corners are nodes of the mesh
};

// Of all elements, by place.
std::vector<CornerPlaces> corners_of(const MeshLists& mesh);

// Positive when the corners run anti-clockwise. Only for complete corners.
double signed_area(const MeshLists& mesh, const CornerPlaces& corners);

double distance(const Position& a, const Position& b);

// Twice the area of the triangle a, b, c; positive when it runs anti-clockwise.
double cross(const Position& a, const Position& b, const Position& c);

// The upright rectangle round the corners. Only for complete corners.
Bounds box_of(const MeshLists& mesh, const CornerPlaces& corners);

// True when the element shows in an upright rectangle: a solid that only touches it from outside does not, a
// line along its edge does. Only for complete corners.
bool shows_in(const MeshLists& mesh, const CornerPlaces& corners, const Bounds& window);

// Mean of the corners.
Position middle(const MeshLists& mesh, const CornerPlaces& corners);

// The distance by which the written digits of the mesh's coordinates can be off: one unit in the sixth digit
// of the largest.
double resolution(const Bounds& bounds);

// Nodes so near are at one place or on a side where the user names no distance: both ends of a side and the
// node between them are rounded.
double usual_tolerance(const Bounds& bounds);

}  // namespace brelan
