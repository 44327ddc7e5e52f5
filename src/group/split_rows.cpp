#include <algorithm>
#include <vector>

#include "group/conforming_cut.h"
#include "group/cut_table.h"
#include "group/engine_mesh.h"
#include "group/cut_sides.h"
#include "group/split_patterns.h"
#include "mesh/mesh_records.h"

namespace brelan {

namespace {

unsigned marks_of(const CutRow& row) {
    unsigned marks = 0;
    for (unsigned i = 0; i < static_cast<unsigned>(row.corners()); ++i) {
        marks |= row.V[i] == 1 ? MV1 << i : 0U;
        marks |= row.S[i] != 0 ? MS1 << i : 0U;
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
std::span<const Part> first_of(const std::array<SplitPattern, COUNT>& table, unsigned marks) {
    const auto applies = [&](const SplitPattern& pattern) {
        return (marks & pattern.wanted) == pattern.wanted && (marks & pattern.unwanted) == 0;
    };
    return std::find_if(table.begin(), table.end(), applies)->parts();
}

// A row with two corners on the line, or one and a centre, needs no side node; its neighbours lose it too.
void reduce_sides(Engine& engine) {
    for (CutRow& row : engine.rows) {
        if (row.E <= 0)
            continue;
        const int on_line = count_bits(marks_of(row), MV1);
        if (on_line < (row.C != 0 ? 1 : 2))
            continue;
        for (int i = 0; i < row.corners(); ++i) {
            const RowSide& side = side_of(row, i);
            if (row.S[side.S] != 0)
                for_rows_with_side(engine, row.N[side.A], row.N[side.B],
                                   [](const CutRow&, std::int32_t& mark) { mark = 0; });
        }
    }
}

std::int32_t node_at(const CutRow& row, At at) {
    switch (at) {
        case At::none:
            return 0;
        case At::N1:
        case At::N2:
        case At::N3:
        case At::N4:
            return row.N[static_cast<int>(at) - static_cast<int>(At::N1)];
        case At::S1:
        case At::S2:
        case At::S3:
        case At::S4:
            return row.S[static_cast<int>(at) - static_cast<int>(At::S1)];
        default:
            return row.C;
    }
}

// Appends the parts of a row and marks it as replaced.
void split_row(Engine& engine, std::size_t r) {
    const std::span<const Part> parts = parts_of(engine.rows[r]);
    if (parts.empty())
        return;
    const CutRow row = engine.rows[r];
    for (const Part& part : parts) {
        CutRow added;
        for (std::size_t i = 0; i < 4; ++i)
            added.N[i] = node_at(row, part[i]);
        added.M = row.M;
        added.E = row.E;
        engine.rows.push_back(added);
    }
    engine.rows[r].E = -row.E;
}

// The first row of an element takes its slot, the others new numbers with its attributes.
void write_back(Mesh& mesh, Engine& engine, const CutRow& row) {
    std::int32_t e = row.E;
    if (mesh.words[e].I1 > 0) {
        e = add_element(engine);
        copy_attributes(mesh, row.E, e);
        engine.workable[e] = e;
    }
    mesh.type[e] = EL_CONTINUUM;
    mesh.words[e].MATNO = row.M;
    set_corners(mesh, engine, e, {{row.N[0], row.N[1], row.N[2], row.N[3]}});
}

}  // namespace

std::span<const Part> parts_of(const CutRow& row) {
    const unsigned marks = marks_of(row);
    if (row.is_triangle())
        return row.C != 0 ? first_of(TRIANGLE_WITH_CENTRE, marks) : first_of(TRIANGLE, marks);
    if (row.C != 0)
        return first_of(QUADRILATERAL_WITH_CENTRE, marks);
    const int NV = count_bits(marks, MV1);
    const int NS = count_bits(marks, MS1);
    if (NS == 0 && NV == 1)
        return {};
    if (NS == 0 && NV == 2)
        return first_of(QUADRILATERAL_TWO_CORNERS, marks);
    if (NS == 0 && NV == 3)
        return first_of(QUADRILATERAL_THREE_CORNERS, marks);
    if (NS >= 2)
        return first_of(QUADRILATERAL_SIDES_CUT, marks);
    return first_of(QUADRILATERAL_CORNER_CUT, marks);
}

void SPLITROWS(Mesh& mesh, Engine& engine) {
    reduce_sides(engine);
    const std::size_t rows = engine.rows.size();
    for (std::size_t r = 0; r < rows; ++r)
        if (engine.rows[r].E > 0)
            split_row(engine, r);
    for (const CutRow& row : engine.rows)
        if (row.E > 0)
            write_back(mesh, engine, row);
    clear_rows(engine);
}

}  // namespace brelan
