// The group tables: the cards of IEDIT 4, the settings of the group engine and what its stages leave to each
// other. Who fills them: the cards, deck/group_walk.cpp; the rest, the stage named at each table.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "mesh/tables.h"
#include "plane/path.h"
#include "text/text_line.h"

namespace brelan {

inline constexpr std::int32_t MOST_GROUPS = 500;         // groups of a deck, and rows of the group listing
inline constexpr std::int32_t MOST_GROUP_POINTS = 1100;  // outline points, and segments, of a group
inline constexpr std::int32_t MOST_PATH_NODES = 4000;    // nodes kept of a group's line

// --- cards ---------------------------------------------------------------------------------------

// Kind of a group.
//   0 skipped; 1 deletes inside, -1 outside; 2 a line, -2 a joint along a line; 3 material inside, -3 with a
//   joint; 4 duplicate material inside, -4 with a joint.
struct GroupRow {
    std::int32_t group_type = 0;     // MTYPE
    std::int32_t point_count = 0;    // NPOINT: outline points in use
    std::int32_t segment_count = 0;  // NSEGMENT
    std::int32_t freezes_nodes = 0;  // MOVE: 1: the nodes of the finished line are frozen
    std::int32_t overlay = 0;        // OVERLAY
};

// Words of the material line. A word that a group's card does not have keeps the value of a group before it
// in the same place.
struct GroupMaterial {
    float material = 0.0F, attribute = 0.0F;  // MAT, KF: IH or DEN by kind
    float joint_material = 0.0F, joint_attribute = 0.0F, joint_thickness = 0.0F;  // MATj, KFj, THICj: joint
    float inner_line_type = 0.0F;                              // LTi: or LTP where there is no joint
    float inner_line_material = 0.0F;                          // LMi: or LMAT
    float outer_line_type = 0.0F, outer_line_material = 0.0F;  // LTo, LMo: second line of a joint
    float old_material = 0.0F;                                 // MATold
};

// What a group's cards give the outputs.
struct GroupPost {
    TextLine title;
    FilePlace place;                 // of Card 3.3.5.4.1, for messages
    std::int32_t wants_outputs = 0;  // IGPOST
    std::array<std::array<std::int32_t, 2>, 6> pair{};
    std::array<std::int32_t, 7> toggle{};
};

// Lists and limits of Cards 3.3.5.1 to 3.3.5.3.
inline constexpr std::int32_t MOST_GROUP_LIST_NUMBERS = 500;
struct GroupLimits {
    std::int32_t node_count = 0, element_count = 0;  // NODE, NOEL
    Table<std::int32_t, MOST_GROUP_LIST_NUMBERS, "the node list of Card 3.3.5.1"> nodes;
    Table<std::int32_t, MOST_GROUP_LIST_NUMBERS, "the element list of Card 3.3.5.2"> elements;
    FilePlace nodes_place, elements_place;                       // of the lists, for messages
    std::int32_t bounds_given = 0;                               // IBOUND
    float left = 0.0F, bottom = 0.0F, right = 0.0F, top = 0.0F;  // XMIN, YMIN, XMAX, YMAX
};

// The cards of the groups of a deck.
struct GroupCards {
    Table<GroupRow, MOST_GROUPS, "GROUPREC"> rows;
    Table<GroupMaterial, MOST_GROUPS, "GROUPMAT"> materials;
    RowTable<Point, MOST_GROUPS, "the outlines", MOST_GROUP_POINTS + 1, "the outline points of a group">
        outlines;
    RowTable<SegmentRow, MOST_GROUPS, "SEGREC", MOST_GROUP_POINTS, "the segments of a group"> segments;
    std::int32_t count = 0;
    std::int32_t are_titled = 0;  // IGTITL 1: each group has a title
    float reference_x = 0.0F, reference_y = 0.0F;
    float written_head = 0.0F;  // head that the nodes of a head mesh are written with
    Table<GroupPost, MOST_GROUPS, "the output lines of the groups"> outputs;
    GroupLimits limits;
};

// The outline points of a group that are in use, and its segments.
inline std::span<const Point> outline_of(const GroupCards& group_cards, std::int32_t g) {
    const std::int32_t count = group_cards.rows[g].point_count;
    return {group_cards.outlines[g].entries, static_cast<std::size_t>(count > 0 ? count : 0)};
}
inline std::span<const SegmentRow> segments_of(const GroupCards& group_cards, std::int32_t g) {
    return {group_cards.segments[g].entries, static_cast<std::size_t>(group_cards.rows[g].segment_count)};
}

// --- settings of the defaults file ---------------------------------------------------------------

struct Tolerances {
    std::int32_t mode = 0;  // how the two limits below are made
    float length = 0.0F, factor = 0.0F;
    float move = 0.0F;  // a side whose ends are nearer to the line lies on it
    float line = 0.0F;  // a node that is nearer to the line is on it
    float same = 0.0F;  // two points that are nearer are one
};

// --- the group listing ---------------------------------------------------------------------------

// Kinds of a row of the listing.
inline constexpr std::int32_t ROW_OUTLINE = 0, ROW_LINE = 1, ROW_JOINT = 2;

struct ListingRow {
    std::int32_t group = 0, sub_kind = 0;
    std::int32_t group_type = 0, closed = 0;
    std::vector<Point> points;
    // Of an outline: the nodes of its line, in order along it. They follow moves and the compaction; 0 for a
    // node that the mesh lost.
    std::vector<NodeNumber> nodes = {};
};
struct GroupListing {
    std::vector<ListingRow> rows;  // at most MOST_GROUPS

    // Lines of beams and of trusses so far, their running numbers; in the temperature kind they are pipes and
    // convection lines.
    std::int32_t pipes = 0, convection_lines = 0;
    std::int32_t flow_sections = 0;  // open lines of trusses of the head kind
};

// An element of the finished mesh that belongs to a row of the listing.
struct MemberRecord {
    std::int32_t group = 0;
    MaterialNumber material;
    ElementNumber element;
    std::int32_t type = 0, sub_kind = 0;
};

}  // namespace brelan
