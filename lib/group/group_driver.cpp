#include "group/group_driver.h"

#include <cstdlib>
#include <span>

#include "group/engine_mesh.h"
#include "group/joints.h"
#include "group/line_elements.h"
#include "group/line_nodes.h"
#include "group/listing.h"
#include "group/path_cut.h"
#include "group/regions.h"
#include "mesh/kinds.h"
#include "plane/path.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/real_to_integer.h"

namespace brelan {

namespace {

OutlineUse use_of(const GroupRow& group) {
    if (std::abs(group.group_type) != 2)
        return OutlineUse::region;
    return group.group_type == 2 && group.overlay == 1 ? OutlineUse::free_line : OutlineUse::line;
}

// The joint attribute as the engine holds it: the temperature and head kinds keep it below -100.
std::int32_t held_joint_attribute(LayoutKind kind, float joint_attribute) {
    const std::int32_t value = to_integer(joint_attribute);
    return has_node_values(kind) ? -std::abs(value) - 100 : value;
}

// Lines of a group, and its joint: works on the mesh and writes the record of "JOINT.TMP". True when there is
// one.
bool add_lines(Channels& channels, Mesh& mesh, const GroupCards& group_cards, Engine& engine,
               GroupListing& listing, std::int32_t g, bool closed, std::span<const std::int32_t> nodes) {
    const GroupMaterial& material = group_cards.materials[g];
    const GroupRow& group = group_cards.rows[g];
    JointRecord record;
    record.group = g;
    record.closed = closed ? 1 : 0;
    record.group_type = group.group_type;
    record.inner_line_type = to_integer(material.inner_line_type);
    record.inner_line_material = to_integer(material.inner_line_material);
    record.nodes.assign(nodes.begin(), nodes.end());
    if (group.group_type >= 1 && group.group_type <= 4) {
        const bool listed = record.inner_line_type != 0 && record.inner_line_material != 0;
        if (listed)
            write_joint_record(channels.at(CHANNEL_JOINT), record);
        add_line_elements(mesh, engine, listing, group.freezes_nodes, closed, record.inner_line_type,
                          record.inner_line_material, nodes);
        return listed;
    }
    if (group.group_type < -4 || group.group_type > -2)
        return false;
    record.joint_thickness = material.joint_thickness;
    record.outer_line_type = to_integer(material.outer_line_type);
    record.outer_line_material = to_integer(material.outer_line_material);
    record.twins = add_twin_line(mesh, engine, nodes, closed, record.joint_thickness);
    write_joint_record(channels.at(CHANNEL_JOINT), record);
    add_joints(mesh, engine, nodes, record.twins, closed, to_integer(material.joint_material),
               held_joint_attribute(mesh.kind, material.joint_attribute));
    if (std::abs(group.group_type) == 4 || record.joint_thickness <= 0.0F)
        move_across(mesh, engine, nodes, record.twins, closed);
    add_line_elements(mesh, engine, listing, group.freezes_nodes, closed, record.inner_line_type,
                      record.inner_line_material, nodes);
    add_line_elements(mesh, engine, listing, group.freezes_nodes, closed, record.outer_line_type,
                      record.outer_line_material, record.twins);
    return true;
}

void run_region(Mesh& mesh, const GroupCards& group_cards, Engine& engine, std::int32_t g,
                const GroupRow& group, std::span<const Point> path) {
    const GroupMaterial& material = group_cards.materials[g];
    RegionMaterial region;
    region.group_type = group.group_type;
    region.overlay = group.overlay;
    region.material = to_integer(material.material);
    region.old_material = to_integer(material.old_material);
    region.attribute = to_integer(material.attribute);
    region.density = material.attribute;
    apply_region(mesh, engine, region, path);
}

// Works on one group. True when it has written a record to "JOINT.TMP".
bool run_group(Channels& channels, Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances,
               Engine& engine, GroupListing& listing, std::int32_t g) {
    engine.group = g;
    engine.saved_corners.clear();
    const GroupRow& group = group_cards.rows[g];
    if (group.group_type == 0)
        return false;
    const OutlineUse use = use_of(group);
    const std::span<const SegmentRow> segments = segments_of(group_cards, g);
    const Path path = path_along(outline_of(group_cards, g), segments, use, tolerances.same);
    KeptLine line;
    if (use != OutlineUse::free_line) {
        cut_along(mesh, tolerances, engine, path, segments);
        require_parts(engine, path);
        line = list_path_nodes(mesh, tolerances, engine, path);
    } else if (group.segment_count >= 1) {
        require_parts(engine, path);
        line = list_free_nodes(mesh, tolerances, engine, path);
    }
    const bool recorded = add_lines(channels, mesh, group_cards, engine, listing, g, path.closed, line.nodes);
    write_listing_row(listing, channels.at(CHANNEL_GROUP), g, ROW_OUTLINE, group.group_type,
                      path.closed ? 1 : 0, path.points);
    line.group_type = group.group_type;
    line.closed = path.closed ? 1 : 0;
    listing.lines[listing.count] = line;
    run_region(mesh, group_cards, engine, g, group, path.points);
    return recorded;
}

// The lines and joints at the end of the run: later groups may have moved them.
void finish_joints(Channels& channels, Mesh& mesh, Engine& engine, GroupListing& listing,
                   std::int32_t records) {
    Channel& joints = channels.at(CHANNEL_JOINT);
    joints.rewind();
    for (std::int32_t i = 1; i <= records; ++i) {
        const JointRecord record = read_joint_record(joints);
        engine.group = record.group;
        if (record.group_type < 0)
            fix_twins(mesh, engine, record.nodes, record.twins, record.closed == 1, record.joint_thickness);
    }
    joints.rewind();
    for (std::int32_t i = 1; i <= records; ++i)
        list_record(mesh, listing, channels.at(CHANNEL_GROUP), read_joint_record(joints));
}

}  // namespace

void work_on_groups(Channels& channels, Mesh& mesh, const GroupCards& group_cards,
                    const Tolerances& tolerances, Engine& engine, GroupListing& listing) {
    channels.open(CHANNEL_JOINT, "JOINT.TMP", OpenStatus::work);
    channels.open(CHANNEL_GROUP, "GROUP.TMP", OpenStatus::work);
    listing.count = 0;
    for (std::int32_t i = 1; i <= MOST_GROUPS; ++i)
        listing.lines[i] = KeptLine{};
    listing.pipes = listing.convection_lines = listing.flow_sections = 0;
    build_indexes(mesh, engine);
    std::int32_t records = 0;
    for (std::int32_t g = 1; g <= group_cards.count; ++g)
        if (run_group(channels, mesh, group_cards, tolerances, engine, listing, g))
            ++records;
    if (records > 0)
        finish_joints(channels, mesh, engine, listing, records);
    channels.close(CHANNEL_JOINT, CloseAction::remove);
    channels.close(CHANNEL_GROUP);
    repair_quadrilaterals(mesh, engine);
}

}  // namespace brelan
