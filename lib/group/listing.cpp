#include "group/listing.h"

#include <cmath>
#include <span>
#include <string>
#include <utility>

#include "group/engine_mesh.h"
#include "text/free_field.h"
#include "text/run_end.h"

namespace brelan {

namespace {

void write_nodes(Channel& file, std::span<const NodeNumber> nodes) {
    FreeFieldLine line;
    for (const NodeNumber n : nodes)
        line.add(n.value);
    line.write(file);
}

}  // namespace

void write_joint_record(Channel& file, const JointRecord& record) {
    write_free(file, record.group);
    write_free(file, record.closed, static_cast<std::int32_t>(record.nodes.size()), record.joint_thickness,
               record.group_type);
    write_free(file, record.inner_line_type, record.inner_line_material.value);
    write_nodes(file, record.nodes);
    if (record.group_type >= 0)
        return;
    write_free(file, record.outer_line_type, record.outer_line_material.value);
    write_nodes(file, record.twins);
}

void add_row(GroupListing& listing, Channel& file, ListingRow row) {
    if (listing.rows.size() >= static_cast<std::size_t>(MOST_GROUPS))
        fail("group " + std::to_string(row.group) + ": expected at most " + std::to_string(MOST_GROUPS) +
             " outlines, lines and joints in all groups, found more");
    write_free(file, row.group, row.sub_kind);
    write_free(file, row.group_type, row.closed);
    write_free(file, static_cast<std::int32_t>(row.points.size()));
    for (const Point& p : row.points)
        write_free(file, p.x, p.y);
    listing.rows.push_back(std::move(row));
}

void add_rows(const Mesh& mesh, GroupListing& listing, Channel& file, const JointRecord& record) {
    const auto add = [&](std::int32_t sub_kind, std::span<const NodeNumber> nodes) {
        add_row(listing, file,
                {record.group, sub_kind, record.group_type, record.closed, node_points(mesh, nodes)});
    };
    if (record.inner_line_type != 0 && record.inner_line_material != MaterialNumber{})
        add(ROW_LINE, record.nodes);
    if (record.group_type >= 0)
        return;
    if (record.outer_line_type != 0 && record.outer_line_material != MaterialNumber{})
        add(ROW_LINE, record.twins);
    std::vector<NodeNumber> strip;
    for (std::size_t k = 0; k < record.nodes.size(); ++k)
        strip.insert(strip.end(), {record.nodes[k], record.twins[k]});
    add(ROW_JOINT, strip);
}

void require_numbers(const GroupListing& listing) {
    constexpr std::size_t head = 3;  // lines before the points of a row
    std::size_t line = 0;
    for (const ListingRow& row : listing.rows) {
        line += head;
        for (const Point& p : row.points) {
            ++line;
            if (!std::isfinite(p.x) || !std::isfinite(p.y))
                fail("GROUP.TMP, line " + std::to_string(line) +
                     ": expected a number in a point, found \"****************\"");
        }
    }
}

}  // namespace brelan
