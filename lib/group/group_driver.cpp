#include "group/group_driver.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "group/engine_mesh.h"
#include "group/joints.h"
#include "group/line_elements.h"
#include "group/line_nodes.h"
#include "group/listing.h"
#include "group/midsides.h"
#include "group/path_cut.h"
#include "group/regions.h"
#include "group/sound_cut.h"
#include "group/sound_joints.h"
#include "group/sound_twins.h"
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

// What a group has put along its line.
struct GroupLines {
    std::optional<JointRecord> record;  // of a line with elements, or a joint
    std::vector<MovedElement> moved;    // to the twins of the joint
};

RegionMaterial region_of(const GroupCards& group_cards, std::int32_t g) {
    const GroupMaterial& material = group_cards.materials[g];
    RegionMaterial region;
    region.group_type = group_cards.rows[g].group_type;
    region.overlay = group_cards.rows[g].overlay;
    region.material = MaterialNumber(to_integer(material.material));
    region.old_material = MaterialNumber(to_integer(material.old_material));
    region.attribute = to_integer(material.attribute);
    region.density = material.attribute;
    return region;
}

// The groups of a deck at work, one after the other.
class GroupWork {
public:
    GroupWork(Channels& channels, Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances,
              CutMethod method, Engine& engine)
        : channels_(channels),
          mesh_(mesh),
          group_cards_(group_cards),
          tolerances_(tolerances),
          method_(method),
          engine_(engine),
          table_(engine.uses_indexes) {
        if (method_ == CutMethod::by_rules)
            return;
        hold_joints_of_file(mesh, engine);
        // A node is on a line or it is not: none that is merely near counts.
        tolerances_.line = static_cast<float>(smallest_distance(mesh, tolerances, engine));
        for (NodeNumber n(1); n <= engine.highest_node; ++n)
            loaded_.push_back(node_point(mesh, n));
        midsides_.emplace(mesh, engine);
        drawn_.found = sides_between_materials(mesh, engine);
        drawn_.sides = drawn_.found;
    }

    GroupListing run() {
        for (std::int32_t g = 1; g <= group_cards_.count; ++g)
            run_group(g);
        finish_joints();
        if (midsides_)
            midsides_->restore(mesh_, engine_);
        return std::move(listing_);
    }

private:
    void run_group(std::int32_t g) {
        if (engine_.watch != nullptr)
            engine_.watch->at_group(g, group_cards_.count, group_cards_.outputs[g].title.trimmed());
        engine_.group = g;
        const GroupRow& group = group_cards_.rows[g];
        if (group.group_type == 0)
            return;
        const OutlineUse use = use_of(group);
        const std::span<const SegmentRow> segments = segments_of(group_cards_, g);
        const Path path = path_along(outline_of(group_cards_, g), segments, use, tolerances_.same);
        require_parts_first(path);
        if (use != OutlineUse::free_line)
            cut(g, path, segments);
        require_parts(engine_, path);
        SoundLine line = line_of(path, use, segments.empty());
        if (halve_held_sides(g, line))
            line = line_of(path, use, segments.empty());
        GroupLines lines = add_lines(g, line);
        add_row(listing_, channels_.at(CHANNEL_GROUP),
                {g, ROW_OUTLINE, group.group_type, path.closed ? 1 : 0, path.points, std::move(line.nodes)});
        apply_region(mesh_, engine_, region_of(group_cards_, g), path.points, lines.moved);
        if (lines.record)
            records_.push_back(std::move(*lines.record));
    }

    // The nodes of a group's line. How it goes on between them is known of lines of the sound cut alone.
    SoundLine line_of(const Path& path, OutlineUse use, bool has_no_segments) {
        SoundLine line;
        line.closed = path.closed;
        if (use == OutlineUse::free_line && !has_no_segments) {
            line.nodes = list_free_nodes(mesh_, tolerances_, engine_, path);
            if (method_ == CutMethod::sound)
                leave_out_repeats(line);
        }
        if (use != OutlineUse::free_line && method_ == CutMethod::by_rules)
            line.nodes = list_path_nodes(mesh_, tolerances_, engine_, path);
        else if (use != OutlineUse::free_line)
            line = sound_line(mesh_, engine_, list_all_path_nodes(mesh_, tolerances_, engine_, path), path,
                              static_cast<double>(tolerances_.line));
        return line;
    }

    // Points that are one node draw nothing between them.
    static void leave_out_repeats(SoundLine& line) {
        line.nodes.erase(std::unique(line.nodes.begin(), line.nodes.end()), line.nodes.end());
        while (line.closed && line.nodes.size() > 1 && line.nodes.front() == line.nodes.back())
            line.nodes.pop_back();
        line.closed = line.closed && line.nodes.size() > 2;
    }

    JointMaterial joint_material_of(std::int32_t g) const {
        const GroupMaterial& material = group_cards_.materials[g];
        JointMaterial joint;
        joint.material = MaterialNumber(to_integer(material.joint_material));
        joint.attribute = held_joint_attribute(mesh_.kind, material.joint_attribute);
        joint.thickness = material.joint_thickness;
        joint.parts_ground = parts_ground(group_cards_.rows[g].group_type, joint.thickness);
        joint.inner_line = to_integer(material.inner_line_type) != 0;
        joint.outer_line = to_integer(material.outer_line_type) != 0;
        return joint;
    }

    // A joint between two toes opens in the middle alone. True when nodes were added there.
    bool halve_held_sides(std::int32_t g, const SoundLine& line) {
        if (method_ == CutMethod::by_rules || !is_joint_group(group_cards_.rows[g]))
            return false;
        const std::vector<Side> held = held_sides(mesh_, engine_, line, joint_material_of(g), records_);
        if (held.empty())
            return false;
        follow(halve_sides(mesh_, static_cast<double>(tolerances_.line), engine_, drawn_, held));
        return true;
    }

    // Works on the mesh and writes the record to "JOINT.TMP".
    GroupLines add_lines(std::int32_t g, const SoundLine& line) {
        const GroupMaterial& material = group_cards_.materials[g];
        const GroupRow& group = group_cards_.rows[g];
        JointRecord record;
        record.group = g;
        record.closed = line.closed ? 1 : 0;
        record.group_type = group.group_type;
        record.inner_line_type = to_integer(material.inner_line_type);
        record.inner_line_material = MaterialNumber(to_integer(material.inner_line_material));
        record.nodes = line.nodes;
        // A free line is strung as it is drawn.
        const bool in_pieces = method_ == CutMethod::sound && use_of(group) != OutlineUse::free_line;
        const auto add_line = [&](std::int32_t line_type, MaterialNumber line_material,
                                  const SoundLine& along) {
            if (!in_pieces) {
                add_line_elements(mesh_, engine_, listing_, group.freezes_nodes, along.closed, line_type,
                                  line_material, along.nodes);
                return;
            }
            if (group.freezes_nodes == 1)
                for (const NodeNumber node : along.nodes)
                    engine_.frozen[node] = 1;
            for (const LinePiece& piece : pieces_of(along)) {
                std::vector<NodeNumber> strung;
                for (const std::size_t k : piece.places)
                    strung.push_back(along.nodes[k]);
                add_line_elements(mesh_, engine_, listing_, group.freezes_nodes, piece.closed, line_type,
                                  line_material, strung);
            }
        };
        GroupLines lines;
        if (group.group_type >= 1 && group.group_type <= 4) {
            const bool listed = record.inner_line_type != 0 && record.inner_line_material != MaterialNumber{};
            if (listed)
                write_joint_record(channels_.at(CHANNEL_JOINT), record);
            add_line(record.inner_line_type, record.inner_line_material, line);
            if (listed)
                lines.record = std::move(record);
            return lines;
        }
        if (!is_joint_group(group))
            return lines;
        record.joint_thickness = material.joint_thickness;
        record.outer_line_type = to_integer(material.outer_line_type);
        record.outer_line_material = MaterialNumber(to_integer(material.outer_line_material));
        const JointMaterial joint = joint_material_of(g);
        SoundLine along = line;
        lines.moved = add_joint_line(record, along, joint);
        add_line(record.inner_line_type, record.inner_line_material, along);
        add_line(record.outer_line_type, record.outer_line_material, twin_line(record, along));
        lines.record = std::move(record);
        return lines;
    }

    // The line along the twins of a joint. Where the ground has no joint one line of elements is enough.
    static SoundLine twin_line(const JointRecord& record, const SoundLine& line) {
        SoundLine twins = line;
        twins.nodes = record.twins;
        for (std::size_t k = 0; k < twins.steps.size() && record.inner_line_type != 0; ++k)
            if (twins.nodes[k] == line.nodes[k] && twins.behind(k) == line.behind(k))
                twins.steps[k] = Step::gap;
        return twins;
    }

    // Adds twins and joints along the line of a record, which then follows the ground to its right. A joint
    // without a width of its own, or in a material region, parts the ground: gives the elements that were
    // moved.
    std::vector<MovedElement> add_joint_line(JointRecord& record, SoundLine& line,
                                             const JointMaterial& material) {
        const bool closed = record.closed == 1;
        if (method_ == CutMethod::sound) {
            OpenedLine opened = open_along(mesh_, engine_, line, material, records_);
            follow_parting(drawn_, opened.parted);
            for (JointRecord& earlier : records_)
                follow_parting(earlier.nodes, earlier.twins, earlier.closed == 1, opened.parted);
            line = std::move(opened.line);
            record.nodes = line.nodes;
            record.twins = std::move(opened.twins);
            place_twins(mesh_, engine_, record, static_cast<double>(tolerances_.line));
            write_joint_record(channels_.at(CHANNEL_JOINT), record);
            return std::move(opened.moved);
        }
        record.twins = add_twin_line(mesh_, engine_, record.nodes, closed, record.joint_thickness);
        write_joint_record(channels_.at(CHANNEL_JOINT), record);
        add_joints(mesh_, engine_, record.nodes, record.twins, closed, material.material, material.attribute);
        return parts_ground(record.group_type, record.joint_thickness)
                   ? move_across(mesh_, engine_, record.nodes, record.twins, closed)
                   : std::vector<MovedElement>{};
    }

    static bool is_joint_group(const GroupRow& group) {
        return group.group_type >= -4 && group.group_type <= -2;
    }

    static bool parts_ground(std::int32_t group_type, float thickness) {
        return std::abs(group_type) == 4 || thickness <= 0.0F;
    }

    // The sound cut alters nothing before it knows the whole path.
    void require_parts_first(const Path& path) const {
        if (method_ == CutMethod::sound)
            require_parts(engine_, path);
    }

    void cut(std::int32_t g, const Path& path, std::span<const SegmentRow> segments) {
        if (method_ == CutMethod::by_rules)
            return cut_along(mesh_, tolerances_, engine_, table_, path, segments);
        const bool has_joint = is_joint_group(group_cards_.rows[g]);
        const double width =
            has_joint ? std::abs(static_cast<double>(group_cards_.materials[g].joint_thickness)) : 0.0;
        follow(cut_soundly(mesh_, static_cast<double>(tolerances_.line), engine_, drawn_, loaded_, path,
                           segments, width));
    }

    // The lines of earlier groups run through the nodes that were added on their sides.
    void follow(const CutPlan& plan) {
        for (JointRecord& record : records_) {
            if (record.twins.empty())
                follow_sides(record.nodes, record.closed == 1, plan);
            else
                follow_sides(record.nodes, record.twins, record.closed == 1, plan);
        }
        for (ListingRow& row : listing_.rows)
            follow_sides(row.nodes, row.closed == 1, plan);
    }

    // The lines and joints at the end of the run: later groups may have moved them.
    void finish_joints() {
        for (const JointRecord& record : records_) {
            engine_.group = record.group;
            if (record.group_type < 0 && method_ == CutMethod::sound)
                place_twins(mesh_, engine_, record, static_cast<double>(tolerances_.line));
            else if (record.group_type < 0)
                fix_twins(mesh_, engine_, record.nodes, record.twins, record.closed == 1,
                          record.joint_thickness);
        }
        for (const JointRecord& record : records_)
            if (record.group_type < 0 && method_ == CutMethod::sound)
                require_sound_twins(mesh_, engine_, record);
        for (const JointRecord& record : records_)
            add_rows(mesh_, listing_, channels_.at(CHANNEL_GROUP), record);
    }

    Channels& channels_;
    Mesh& mesh_;
    const GroupCards& group_cards_;
    Tolerances tolerances_;
    CutMethod method_;
    Engine& engine_;
    CutTable table_;
    Drawn drawn_;
    std::vector<Point> loaded_;  // places of the nodes before the first group
    std::optional<Midsides> midsides_;
    GroupListing listing_;
    std::vector<JointRecord> records_;
};

}  // namespace

GroupListing work_on_groups(Channels& channels, Mesh& mesh, const GroupCards& group_cards,
                            const Tolerances& tolerances, CutMethod method, Engine& engine) {
    channels.open(CHANNEL_JOINT, "JOINT.TMP", OpenStatus::work);
    channels.open(CHANNEL_GROUP, "GROUP.TMP", OpenStatus::work);
    build_indexes(mesh, engine);
    GroupListing listing = GroupWork(channels, mesh, group_cards, tolerances, method, engine).run();
    channels.close(CHANNEL_JOINT, CloseAction::remove);
    channels.close(CHANNEL_GROUP);
    repair_quadrilaterals(mesh, engine);
    return listing;
}

}  // namespace brelan
