// Which points of cells become nodes.
#pragma once

#include <cstddef>
#include <vector>

#include "formats/cell_mesh.h"

namespace brelan::tool {

// A point that only cells of elements hold, and that no element can name, goes: the centre of a
// quadrilateral, midside nodes in a kind without them, the middle of a beam or truss. Points of no cell stay.
struct KeptPoints {
    std::vector<bool> kept;                 // by place of the point
    std::size_t centres = 0, midsides = 0;  // that go

    std::size_t count() const { return kept.size() - centres - midsides; }
};

// `elements` are the places of the cells that become elements of a mesh of the kind.
KeptPoints kept_points(const CellMesh& cells, const std::vector<std::size_t>& elements, LayoutKind kind);

}  // namespace brelan::tool
