// From the block file to the raw node and element lists, and on to the base mesh file.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// A grid of values addressed by row and column from 1, rows from the top; the row runs fastest.
template <class T>
class Grid {
public:
    Grid() = default;
    Grid(std::int32_t rows, std::int32_t columns, T value)
        : rows_(rows), cell_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), value) {}
    T& operator()(std::int32_t row, std::int32_t column) { return cell_[place(row, column)]; }
    const T& operator()(std::int32_t row, std::int32_t column) const { return cell_[place(row, column)]; }

private:
    std::size_t place(std::int32_t row, std::int32_t column) const {
        return static_cast<std::size_t>(column - 1) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row - 1);
    }
    std::int32_t rows_ = 0;
    std::vector<T> cell_;
};

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
               std::int32_t first_column, std::int32_t first_row, std::int32_t material, Grid<float>& target);

// Reads "Bmesh.Tmp" and writes "Coord.dat", "Index.dat" and "..\Bmesh.dat". Stops with "100" when the mesh is
// larger than the generator's work space; the two lines about it stand in "Coord.dat". Returns when all are
// written; ends the run when the block file cannot be read or the mesh has too many nodes or elements to be
// read back.
void make_block_mesh(Channels& channels, LayoutKind kind, const BlockCards& block_cards,
                     const FieldBounds& field);

}  // namespace brelan
