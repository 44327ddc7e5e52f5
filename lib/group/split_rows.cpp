#include <algorithm>
#include <vector>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine_mesh.h"
#include "group/split_patterns.h"
#include "mesh/mesh_records.h"

namespace brelan {

namespace {

unsigned marks_of(const CutRow& row) {
    unsigned marks = 0;
    for (unsigned i = 0; i < static_cast<unsigned>(row.corners()); ++i) {
        marks |= row.corner_on_line[i] == 1 ? CORNER_1 << i : 0U;
        marks |= row.side_node[i].names_one() ? SIDE_1 << i : 0U;
    }
    return marks;
}

int count_bits(unsigned marks, unsigned first) {
    int count = 0;
    for (unsigned i = 0; i < 4; ++i)
        count += (marks & (first << i)) != 0 ? 1 : 0;
    return count;
}

template <std::size_t COUNT>
std::span<const SplitPart> first_of(const std::array<SplitPattern, COUNT>& table, unsigned marks) {
    const auto applies = [&](const SplitPattern& pattern) {
        return (marks & pattern.wanted) == pattern.wanted && (marks & pattern.unwanted) == 0;
    };
    return std::find_if(table.begin(), table.end(), applies)->parts();
}

// A row with two corners on the line, or one and a centre, needs no side node; its neighbours lose it too.
void reduce_sides(CutTable& cut) {
    for (CutRow& row : cut.rows) {
        const int on_line = count_bits(marks_of(row), CORNER_1);
        if (on_line < (row.centre_node.names_one() ? 1 : 2))
            continue;
        for (int i = 0; i < row.corners(); ++i) {
            const RowSide& side = side_of(row, i);
            if (row.side_node[side.mark].names_one())
                cut.for_rows_with_side(row.corner_node[side.a], row.corner_node[side.b],
                                       [](const CutRow&, NodeNumber& mark) { mark = {}; });
        }
    }
}

NodeNumber node_at(const CutRow& row, At at) {
    switch (at) {
        case At::none:
            return {};
        case At::n1:
        case At::n2:
        case At::n3:
        case At::n4:
            return row.corner_node[static_cast<int>(at) - static_cast<int>(At::n1)];
        case At::s1:
        case At::s2:
        case At::s3:
        case At::s4:
            return row.side_node[static_cast<int>(at) - static_cast<int>(At::s1)];
        default:
            return row.centre_node;
    }
}

// Appends the parts of a row and marks it as replaced.
void split_row(CutTable& cut, std::size_t r) {
    const std::span<const SplitPart> parts = parts_of(cut.rows[r]);
    if (parts.empty())
        return;
    const CutRow row = cut.rows[r];
    for (const SplitPart& part : parts) {
        CutRow added;
        for (std::size_t i = 0; i < 4; ++i)
            added.corner_node[i] = node_at(row, part[i]);
        added.material = row.material;
        added.element = row.element;
        cut.rows.push_back(added);
    }
    cut.rows[r].element = row.element.hidden();
}

// The first row of an element takes its slot, the others new numbers with its attributes.
void write_back(Mesh& mesh, Engine& engine, const CutRow& row) {
    ElementNumber e = row.element;
    if (mesh.words[e].corner_1.names_one()) {
        e = add_element(mesh, engine);
        copy_attributes(mesh, row.element, e);
        engine.workable[e] = e;
    }
    mesh.type[e] = ELEMENT_CONTINUUM;
    mesh.words[e].material = row.material;
    set_corners(mesh, engine, e,
                {{row.corner_node[0], row.corner_node[1], row.corner_node[2], row.corner_node[3]}});
}

}  // namespace

std::span<const SplitPart> parts_of(const CutRow& row) {
    const unsigned marks = marks_of(row);
    if (row.is_triangle())
        return row.centre_node.names_one() ? first_of(TRIANGLE_WITH_CENTRE, marks)
                                           : first_of(TRIANGLE, marks);
    if (row.centre_node.names_one())
        return first_of(QUADRILATERAL_WITH_CENTRE, marks);
    const int corner_marks = count_bits(marks, CORNER_1);
    const int side_marks = count_bits(marks, SIDE_1);
    if (side_marks == 0 && corner_marks == 1)
        return {};
    if (side_marks == 0 && corner_marks == 2)
        return first_of(QUADRILATERAL_TWO_CORNERS, marks);
    if (side_marks == 0 && corner_marks == 3)
        return first_of(QUADRILATERAL_THREE_CORNERS, marks);
    if (side_marks >= 2)
        return first_of(QUADRILATERAL_SIDES_CUT, marks);
    return first_of(QUADRILATERAL_CORNER_CUT, marks);
}

void split_rows(Mesh& mesh, Engine& engine, CutTable& cut) {
    reduce_sides(cut);
    const std::size_t rows = cut.rows.size();
    for (std::size_t r = 0; r < rows; ++r)
        if (cut.rows[r].element.names_one())
            split_row(cut, r);
    for (const CutRow& row : cut.rows)
        if (row.element.names_one())
            write_back(mesh, engine, row);
    cut.clear();
}

}  // namespace brelan
