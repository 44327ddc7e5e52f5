// The cut: the mesh is altered so that the segment between two points runs along element sides.
#pragma once

#include <cstdint>

#include "group/cut_table.h"
#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/geometry.h"

namespace brelan {

inline constexpr std::int32_t ONLY_MOVE = -2;  // IEND: nodes move, none is added

// What the cut of a segment goes by.
struct CutMode {
    std::int32_t end_rule = 0;
    bool deferred = false;  // all pairs of a segment are cut before the elements are split
};

// Adds a row for each selected element that contains P1, then P2, then that the segment crosses, and hides
// those elements from further calls.
void collect_rows(Mesh& mesh, Engine& engine, CutTable& cut, const Point& p1, const Point& p2);

// Makes ends of the pair nodes of the mesh: the nearest free corner of the row that contains it, a new node
// on a side, or one inside.
struct PlacedEnds {
    bool first = false, second = false;
};
void place_ends(Mesh& mesh, Engine& engine, CutTable& cut, const Point& p1, const Point& p2,
                const PlacedEnds& placed);

// Brings each side of each row to the segment: a free corner near the crossing moves onto it, else the side
// gets a node there.
void scan_sides(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, const Point& p1,
                const Point& p2, const CutMode& mode);

// Splits the marked rows by their patterns, writes all rows back to the elements and empties the table. The
// first part keeps the element's number, the others follow the highest.
void split_rows(Mesh& mesh, Engine& engine, CutTable& cut);

}  // namespace brelan
