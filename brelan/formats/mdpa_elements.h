// The elements of a mesh as the geotechnical solver wants them: their types, and their nodes in its order.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "formats/cell_mesh.h"

namespace brelan::tool {

struct TypedElement {
    std::string_view type;  // empty: the kind has no such element, or this one has no form that fits
    std::vector<Number> nodes;
};

struct TypedElements {
    std::vector<TypedElement> elements;  // of all elements of the mesh, by place
    std::size_t turned = 0;              // clockwise solids, which now run anti-clockwise
    std::size_t flat = 0;                // solids without an area, which run nowhere
    std::size_t closed_joints = 0;       // joints whose sides share a node: they have no element
    std::size_t folded = 0;              // others that name a node twice: neither
    std::size_t partly_second = 0;       // solids with midside nodes on some sides: first order
    bool second_order = false;
};

// The type for elements of the class; empty where the kind has none.
std::string_view line_type(LayoutKind kind, ElementClass of);

// Solids run anti-clockwise, corners before midside nodes. Both sides of a joint run in one direction, the
// second on the left of the first, whatever the joint's width:
//
//     3 -----> 4
//     |  joint |
//     1 -----> 2
//
TypedElements typed_elements(const MeshLists& mesh, const CellMesh& cells,
                             const std::vector<std::int32_t>& cables);

}  // namespace brelan::tool
