// The raw nodes and elements of a base mesh: the nodes of neighbouring blocks stand side by side, codes and
// bounds are still to come.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "blocks/block_grid.h"
#include "mesh/mesh_records.h"

namespace brelan {

// The nine values of a block in one coordinate.
struct BlockValues {
    float top_left = 0.0F, top_middle = 0.0F, top_right = 0.0F;
    float middle_left = 0.0F, centre = 0.0F, middle_right = 0.0F;
    float bottom_left = 0.0F, bottom_middle = 0.0F, bottom_right = 0.0F;
};

// Biquadratic Lagrange interpolation of nine values at s (across, -1 left to +1 right) and r (upwards, -1
// bottom to +1 top). Source: O. C. Zienkiewicz, The Finite Element Method, Lagrange family.
float lagrange_value(float s, float r, const BlockValues& v);

// Fills one block's nodes in one coordinate. A negative material means a nine-point block, a positive one an
// eight-point block, whose centre is free.
void map_block(const BlockValues& v, std::int32_t column_divisions, std::int32_t row_divisions,
               std::int32_t first_column, std::int32_t first_row, std::int32_t material, Grid<float>& target,
               NodePlacing placing = NodePlacing::summed);

// Sides of the field that a node lies on, by its row and column.
struct FieldSides {
    bool left = false, right = false, bottom = false, top = false;
};

struct RawNode {
    float x = 0.0F, y = 0.0F;
    FieldSides sides = {};
};

struct RawMesh {
    std::string title;
    FieldBounds field;
    NodeNumber first_node{1};
    ElementNumber first_element{1};
    std::vector<RawNode> nodes;           // numbered from first_node
    std::vector<ElementRecord> elements;  // numbered from first_element
    NodePlacing placing = NodePlacing::summed;
};

// The generator's work space in words of 32 bits. A mesh that needs more is refused.
inline constexpr std::int64_t WORK_SPACE = 60000000;

// Words of work space that the mesh of a grid takes.
std::int64_t work_space_of(const BlockGrid& grid);

// Makes the nodes and elements of a grid.
RawMesh make_raw_mesh(const BlockGrid& grid);

}  // namespace brelan
