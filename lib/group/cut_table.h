// The work table of a cut: the elements that a line touches, and what is marked on them.
#pragma once

#include <cstdint>
#include <vector>

namespace brelan {

// A row is a copy of an element. Sides of a quadrilateral are N1-N2, N2-N3, N3-N4, N4-N1; side i of a
// triangle lies opposite its corner i: N2-N3, N3-N1, N1-N2.
//
//      N2 ---S1--- N1            N1
//       |           |            /  \           V  corner on the line
//      S2     C    S4          S3    S2         S  new node on the side
//       |           |          /  C    \        C  new node inside
//      N3 ---S3--- N4        N2 ---S1--- N3
//
struct CutRow {
    std::int32_t corner_on_line[4] = {};
    std::int32_t side_node[4] = {};
    std::int32_t centre_node = 0;
    std::int32_t corner_node[4] = {};
    std::int32_t material = 0;  // MATNO of the element
    std::int32_t element = 0;   // element number; 0 or below: the row has been replaced by its parts

    bool is_triangle() const { return corner_node[3] <= 0; }
    int corners() const { return is_triangle() ? 3 : 4; }
};

// A side of a row by its corners' places, with the places of its side mark and of the corners next to it.
struct RowSide {
    int a, b;                // ends
    int beside_a, beside_b;  // the corner next to A, and next to B, on the far side
    int mark;                // its mark
};

inline constexpr RowSide QUADRILATERAL_SIDES[4] = {
    {0, 1, 3, 2, 0}, {1, 2, 0, 3, 1}, {2, 3, 1, 0, 2}, {3, 0, 2, 1, 3}};
inline constexpr RowSide TRIANGLE_SIDES[3] = {{0, 1, 2, 2, 2}, {1, 2, 0, 0, 0}, {2, 0, 1, 1, 1}};

inline const RowSide& side_of(const CutRow& row, int i) {
    return row.is_triangle() ? TRIANGLE_SIDES[i] : QUADRILATERAL_SIDES[i];
}

}  // namespace brelan
