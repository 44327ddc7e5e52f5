// The work table of a cut: the elements that a line touches, and what is marked on them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/by_number.h"
#include "mesh/numbers.h"

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
    NodeNumber side_node[4];
    NodeNumber centre_node;
    NodeNumber corner_node[4];
    MaterialNumber material;  // MATNO of the element
    ElementNumber element;    // hidden: the row has been replaced by its parts

    bool is_triangle() const { return corner_node[3].is_none(); }
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

// The rows of the cut in work, and where nodes and elements stand among them, so that a mark need not look at
// every row. Kept from cut to cut for the room that it takes.
class CutTable {
public:
    // Without indexes every search is a scan of all rows.
    explicit CutTable(bool uses_indexes) : uses_indexes_(uses_indexes) {}

    std::vector<CutRow> rows;

    // Adds the row of an element.
    void add(const CutRow& row);
    void clear();

    // The places in the table, ascending, of the rows that may have the node as a corner.
    std::span<const std::uint32_t> rows_with(NodeNumber node);

    // The places in the table, ascending, of the rows of the elements.
    std::vector<std::uint32_t> rows_of(std::span<const ElementNumber> elements) const;

    bool uses_indexes() const { return uses_indexes_; }

    // Calls the action, in ascending order, with each row that has the side between two nodes and with the
    // mark of that side.
    template <class Action>
    void for_rows_with_side(NodeNumber a, NodeNumber b, Action action) {
        for (const std::uint32_t r : rows_with(a)) {
            CutRow& row = rows[r];
            for (int i = 0; i < row.corners(); ++i) {
                const RowSide& side = side_of(row, i);
                if ((row.corner_node[side.a] == a && row.corner_node[side.b] == b) ||
                    (row.corner_node[side.a] == b && row.corner_node[side.b] == a))
                    action(row, row.side_node[side.mark]);
            }
        }
    }

private:
    bool uses_indexes_;
    ByNumber<std::vector<std::uint32_t>> by_node_;  // places of rows, ascending
    ByNumber<std::uint32_t> by_element_;            // place behind 1, 0 for an element without a row
    std::vector<std::uint32_t> every_row_;          // 0, 1, 2, ...
};

}  // namespace brelan
