// The group listing: "JOINT.TMP", the lines and joints while the groups are worked on, and "GROUP.TMP", the
// outlines, lines and joints for the passes behind the engine.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/geometry.h"
#include "text/channels.h"

namespace brelan {

// A record of "JOINT.TMP".
struct JointRecord {
    std::int32_t group = 0;
    std::int32_t closed = 0;
    float joint_thickness = 0.0F;  // 0 for a positive MTYPE
    std::int32_t group_type = 0;
    std::int32_t inner_line_type = 0, inner_line_material = 0;  // or LTP, LMAT
    std::int32_t outer_line_type = 0, outer_line_material = 0;  // joints only
    std::vector<std::int32_t> nodes, twins;
};
void write_joint_record(Channel& file, const JointRecord& record);
JointRecord read_joint_record(Channel& file);

// Writes one row and counts it in the listing. Ends the run when the listing is full.
void write_listing_row(GroupListing& listing, Channel& file, std::int32_t group, std::int32_t sub_kind,
                       std::int32_t group_type, std::int32_t closed, std::span<const Point> points);

// Turns a joint record into its rows: the line and the twin line where they have elements, then the joint
// strip.
void list_record(const Mesh& mesh, GroupListing& listing, Channel& file, const JointRecord& record);

// Pass 14.3: reads the rows of the listing back.
void read_listing(GroupListing& listing, Channel& file);

}  // namespace brelan
