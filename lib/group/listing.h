// The group listing: the outlines, lines and joints of the groups for the passes behind the engine. What is
// listed is written too, so that it can be read where a run has ended: "JOINT.TMP", the lines and joints
// while the groups are worked on, and "GROUP.TMP", the rows.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// A line with elements, or a joint.
struct JointRecord {
    std::int32_t group = 0;
    std::int32_t closed = 0;
    float joint_thickness = 0.0F;  // 0 for a positive MTYPE
    std::int32_t group_type = 0;
    std::int32_t inner_line_type = 0, outer_line_type = 0;    // the first or LTP; the second of joints only
    MaterialNumber inner_line_material, outer_line_material;  // or LMAT
    std::vector<NodeNumber> nodes, twins;
};

// Writes a record to "JOINT.TMP".
void write_joint_record(Channel& file, const JointRecord& record);

// Adds a row to the listing and writes it to "GROUP.TMP". Ends the run when the listing is full.
void add_row(GroupListing& listing, Channel& file, ListingRow row);

// Adds the rows of a record: the line and the twin line where they have elements, then the joint strip.
void add_rows(const Mesh& mesh, GroupListing& listing, Channel& file, const JointRecord& record);

// Ends the run at a point that is no number, with its line in "GROUP.TMP".
void require_numbers(const GroupListing& listing);

}  // namespace brelan
