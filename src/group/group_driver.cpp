#include "group/group_driver.h"

#include <cstdlib>
#include <span>

#include "channel/channels.h"
#include "channel/real_to_integer.h"
#include "group/engine_mesh.h"
#include "group/joints.h"
#include "group/line_elements.h"
#include "group/listing.h"
#include "group/path.h"
#include "group/regions.h"
#include "mesh/kinds.h"
#include "channel/channel_numbers.h"

namespace brelan {

namespace {

// The outline of a group, and whether it is closed: an open line whose ends lie within TOLSAME counts as
// closed.
Outline load_outline(const GroupCards& group_cards, const Tolerances& tolerances, std::int32_t g) {
    Outline outline;
    outline.group = group_cards.rows[g];
    GroupRow& group = outline.group;
    const auto points = static_cast<std::size_t>(group.NPOINT > 0 ? group.NPOINT : 0);
    outline.point.resize(points + 2);
    for (std::int32_t i = 1; i <= group.NPOINT; ++i)
        outline.point[static_cast<std::size_t>(i)] = group_cards.outlines[g][i];
    if (std::abs(group.MTYPE) == 2 && group.NPOINT > 1 &&
        distance(outline.point[1], outline.point[points]) < tolerances.same)
        --group.NPOINT;
    outline.closed = group.NSEGMENT == group.NPOINT;
    return outline;
}

// The joint attribute as the engine holds it: the temperature and head kinds keep it below -100.
std::int32_t joint_attribute(LayoutKind kind, float KFj) {
    const std::int32_t value = TRUNCATE(KFj);
    return has_node_values(kind) ? -std::abs(value) - 100 : value;
}

// Lines of a group, and its joint: works on the mesh and writes the record of "JOINT.TMP". True when there is
// one.
bool add_lines(Channels& channels, Mesh& mesh, const GroupCards& group_cards, Engine& engine, GroupListing& listing, std::int32_t g, const Outline& outline, std::span<const std::int32_t> nodes) {
    const GroupMaterial& material = group_cards.materials[g];
    const GroupRow& group = outline.group;
    JointRecord record;
    record.group = g;
    record.closed = outline.closed ? 1 : 0;
    record.MTYPE = group.MTYPE;
    record.LTi = TRUNCATE(material.LTi);
    record.LMi = TRUNCATE(material.LMi);
    record.nodes.assign(nodes.begin(), nodes.end());
    if (group.MTYPE >= 1 && group.MTYPE <= 4) {
        const bool listed = record.LTi != 0 && record.LMi != 0;
        if (listed)
            write_joint_record(channels.at(CH_JOINT), record);
        LINEELEM(mesh, engine, listing, group.MOVE, outline.closed, record.LTi, record.LMi, nodes);
        return listed;
    }
    if (group.MTYPE < -4 || group.MTYPE > -2)
        return false;
    record.THICj = material.THICj;
    record.LTo = TRUNCATE(material.LTo);
    record.LMo = TRUNCATE(material.LMo);
    record.twins = TWINLINE(mesh, engine, nodes, outline.closed, record.THICj);
    write_joint_record(channels.at(CH_JOINT), record);
    ADDJOINTS(mesh, engine, nodes, record.twins, outline.closed, TRUNCATE(material.MATj), joint_attribute(mesh.kind, material.KFj));
    if (std::abs(group.MTYPE) == 4 || record.THICj <= 0.0F)
        MOVEACROSS(mesh, engine, nodes, record.twins, outline.closed);
    LINEELEM(mesh, engine, listing, group.MOVE, outline.closed, record.LTi, record.LMi, nodes);
    LINEELEM(mesh, engine, listing, group.MOVE, outline.closed, record.LTo, record.LMo, record.twins);
    return true;
}

void run_region(Mesh& mesh, const GroupCards& group_cards, Engine& engine, std::int32_t g, const GroupRow& group, std::span<const Point> path) {
    const GroupMaterial& material = group_cards.materials[g];
    RegionMaterial region;
    region.MTYPE = group.MTYPE;
    region.OVERLAY = group.OVERLAY;
    region.MAT = TRUNCATE(material.MAT);
    region.MATold = TRUNCATE(material.MATold);
    region.KF = TRUNCATE(material.KF);
    region.DEN = material.KF;
    REGIONS(mesh, engine, region, path);
}

// Works on one group. True when it has written a record to "JOINT.TMP".
bool run_group(Channels& channels, Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine, GroupListing& listing, std::int32_t g) {
    engine.group = g;
    engine.saved_corners.clear();
    if (group_cards.rows[g].MTYPE == 0)
        return false;
    Outline outline = load_outline(group_cards, tolerances, g);
    const GroupRow& group = outline.group;
    const Path path = BUILDPATH(mesh, group_cards, tolerances, engine, g, outline);
    const bool free_line = group.MTYPE == 2 && group.OVERLAY == 1;
    KeptLine line;
    if (!free_line)
        line = LISTNODES(mesh, tolerances, engine, path);
    else if (group.NSEGMENT >= 1)
        line = LISTFREENODES(mesh, tolerances, engine, path);
    const bool recorded = add_lines(channels, mesh, group_cards, engine, listing, g, outline, line.nodes);
    write_listing_row(listing, channels.at(CH_GROUP), g, ROW_OUTLINE, group.MTYPE, outline.closed ? 1 : 0, path.point);
    line.MTYPE = group.MTYPE;
    line.closed = outline.closed ? 1 : 0;
    listing.lines[listing.count] = line;
    run_region(mesh, group_cards, engine, g, group, path.point);
    return recorded;
}

// The lines and joints at the end of the run: later groups may have moved them.
void finish_joints(Channels& channels, Mesh& mesh, Engine& engine, GroupListing& listing, std::int32_t records) {
    Channel& joints = channels.at(CH_JOINT);
    joints.rewind();
    for (std::int32_t i = 1; i <= records; ++i) {
        const JointRecord record = read_joint_record(joints);
        engine.group = record.group;
        if (record.MTYPE < 0)
            TWINFIX(mesh, engine, record.nodes, record.twins, record.closed == 1, record.THICj);
    }
    joints.rewind();
    for (std::int32_t i = 1; i <= records; ++i)
        list_record(mesh, listing, channels.at(CH_GROUP), read_joint_record(joints));
}

}  // namespace

void GROUPDRV(Channels& channels, Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine, GroupListing& listing) {
    channels.open(CH_JOINT, "JOINT.TMP", OpenStatus::work);
    channels.open(CH_GROUP, "GROUP.TMP", OpenStatus::work);
    listing.count = 0;
    for (std::int32_t i = 1; i <= MAXGROUPS; ++i)
        listing.lines[i] = KeptLine{};
    listing.pipes = listing.convection_lines = listing.flow_sections = 0;
    build_indexes(mesh, engine);
    std::int32_t records = 0;
    for (std::int32_t g = 1; g <= group_cards.count; ++g)
        if (run_group(channels, mesh, group_cards, tolerances, engine, listing, g))
            ++records;
    if (records > 0)
        finish_joints(channels, mesh, engine, listing, records);
    channels.close(CH_JOINT, CloseAction::remove);
    channels.close(CH_GROUP);
    REPAIRQUADS(mesh, engine);
}

}  // namespace brelan
