#include "group/listing.h"

#include <string>

#include "group/engine_mesh.h"
#include "mesh/group_tables.h"
#include "text/free_field.h"

namespace brelan {

namespace {

void write_nodes(Channel& file, std::span<const std::int32_t> nodes) {
    FreeFieldLine line;
    for (const std::int32_t n : nodes)
        line.add(n);
    line.write(file);
}

std::vector<std::int32_t> read_nodes(Channel& file, std::size_t count) {
    std::vector<std::int32_t> nodes(count);
    read_free_list(file, "a node list", std::span<std::int32_t>(nodes));
    return nodes;
}

}  // namespace

void write_joint_record(Channel& file, const JointRecord& record) {
    write_free(file, record.group);
    write_free(file, record.closed, static_cast<std::int32_t>(record.nodes.size()), record.joint_thickness,
               record.group_type);
    write_free(file, record.inner_line_type, record.inner_line_material);
    write_nodes(file, record.nodes);
    if (record.group_type >= 0)
        return;
    write_free(file, record.outer_line_type, record.outer_line_material);
    write_nodes(file, record.twins);
}

JointRecord read_joint_record(Channel& file) {
    JointRecord record;
    std::int32_t count = 0;
    read_free(file, "a group number", record.group);
    read_free(file, "closed flag, node count, THICj and MTYPE", record.closed, count, record.joint_thickness,
              record.group_type);
    read_free(file, "LTi and LMi", record.inner_line_type, record.inner_line_material);
    record.nodes = read_nodes(file, static_cast<std::size_t>(count));
    if (record.group_type >= 0)
        return record;
    read_free(file, "LTo and LMo", record.outer_line_type, record.outer_line_material);
    record.twins = read_nodes(file, static_cast<std::size_t>(count));
    return record;
}

void write_listing_row(GroupListing& listing, Channel& file, std::int32_t group, std::int32_t sub_kind,
                       std::int32_t group_type, std::int32_t closed, std::span<const Point> points) {
    if (listing.count >= MOST_GROUPS)
        fail("group " + std::to_string(group) + ": expected at most " + std::to_string(MOST_GROUPS) +
             " outlines, lines and joints in all groups, found more");
    ++listing.count;
    write_free(file, group, sub_kind);
    write_free(file, group_type, closed);
    write_free(file, static_cast<std::int32_t>(points.size()));
    for (const Point& p : points)
        write_free(file, p.x, p.y);
}

void list_record(const Mesh& mesh, GroupListing& listing, Channel& file, const JointRecord& record) {
    const auto places = [&](std::span<const std::int32_t> nodes) {
        std::vector<Point> points;
        for (const std::int32_t n : nodes)
            points.push_back(node_point(mesh, n));
        return points;
    };
    if (record.inner_line_type != 0 && record.inner_line_material != 0)
        write_listing_row(listing, file, record.group, ROW_LINE, record.group_type, record.closed,
                          places(record.nodes));
    if (record.group_type >= 0)
        return;
    if (record.outer_line_type != 0 && record.outer_line_material != 0)
        write_listing_row(listing, file, record.group, ROW_LINE, record.group_type, record.closed,
                          places(record.twins));
    std::vector<Point> strip;
    for (std::size_t k = 0; k < record.nodes.size(); ++k) {
        strip.push_back(node_point(mesh, record.nodes[k]));
        strip.push_back(node_point(mesh, record.twins[k]));
    }
    write_listing_row(listing, file, record.group, ROW_JOINT, record.group_type, record.closed, strip);
}

void read_listing(GroupListing& listing, Channel& file) {
    for (std::int32_t i = 1; i <= listing.count; ++i) {
        ListingRow& row = listing.rows[i];
        std::int32_t count = 0;
        read_free(file, "group number and sub-kind", row.group, row.sub_kind);
        read_free(file, "MTYPE and closed flag", row.group_type, row.closed);
        read_free(file, "a point count", count);
        row.members = 0;
        row.points.resize(static_cast<std::size_t>(count));
        for (Point& p : row.points)
            read_free(file, "a point", p.x, p.y);
    }
}

}  // namespace brelan
