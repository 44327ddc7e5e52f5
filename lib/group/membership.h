// Which elements of the finished mesh belong to which group: the records behind the output decks.
#pragma once

#include <cstdint>
#include <vector>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/polygon_scan.h"
#include "text/channels.h"

namespace brelan {

// Where a row lies, with room for TOLLINE and rounding: an element outside belongs to no piece of the row.
struct RowBox {
    float x0 = 0.0F, y0 = 0.0F, x1 = 0.0F, y1 = 0.0F;
    bool always = true;

    bool may_hold(const Point& centre) const {
        return always || (centre.x >= x0 && centre.x <= x1 && centre.y >= y0 && centre.y <= y1);
    }
};

// The rows that take part in each of the three scans.
struct ScannedRow {
    RowBox box;
    std::int32_t row;
};
struct ScannedOutline : ScannedRow {
    PolygonScan polygon;
};
struct Membership {
    std::vector<ScannedOutline> outlines;
    std::vector<ScannedRow> lines, strips;
};

// Makes ready for the elements of a finished mesh: clears the counts, and notes where each row of the listing
// lies.
Membership begin_membership(const Tolerances& tolerances, const Engine& engine, GroupListing& listing);

// The rows of the listing that an element belongs to, by number: inside an outline, on a line, in a joint
// strip.
std::vector<std::int32_t> listing_rows_of(const Membership& membership, const Mesh& mesh,
                                          const Tolerances& tolerances, const GroupListing& listing,
                                          const ElementWords& words, std::int8_t type);

// Writes a record of an element, just written, for each row that it belongs to. Keeps the highest
// material.
void record_membership(const Membership& membership, const Mesh& mesh, const Tolerances& tolerances,
                       GroupListing& listing, Channel& file, std::int32_t element, const ElementWords& words,
                       std::int8_t type);

}  // namespace brelan
