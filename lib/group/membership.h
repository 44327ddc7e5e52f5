// Which elements of the finished mesh belong to which group: what the output decks come from.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/box.h"
#include "plane/polygon_scan.h"
#include "text/channels.h"

namespace brelan {

// The rows that take part in each of the three scans. Where a row has a box, with room for TOLLINE and
// rounding, an element outside belongs to no piece of the row.
struct ScannedRow {
    std::optional<Box> box;
    const ListingRow* row;
};
struct ScannedOutline : ScannedRow {
    PolygonScan polygon;
};
struct Membership {
    std::vector<ScannedOutline> outlines;
    std::vector<ScannedRow> lines, strips;
};

// Notes where each row of the listing lies, whose points must live as long.
Membership begin_membership(const Tolerances& tolerances, const Engine& engine, const GroupListing& listing);

// A record for each row of the listing that an element of the finished mesh belongs to: inside an outline, on
// a line, in a joint strip.
std::vector<MemberRecord> members_of(const Membership& membership, const Mesh& mesh,
                                     const Tolerances& tolerances, ElementNumber element, std::int8_t type);

// Writes a record to "GROUP.TMP".
void write_member(Channel& file, const MemberRecord& record);

}  // namespace brelan
