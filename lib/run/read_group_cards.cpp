#include "run/read_group_cards.h"

#include <cstdlib>
#include <string>

#include "mesh/group_tables.h"
#include "plane/path.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/real_to_integer.h"

namespace brelan {

namespace {

constexpr float RADIANS = 0.017453292F;  // of one degree

Channel& deck(Run& run) {
    return run.channels.at(CHANNEL_DECK);
}

// Integers are read as reals, several to a card.
template <class... Integers>
void read_cut(Run& run, std::string_view card, Integers&... values) {
    FreeFieldReader reader(deck(run), card);
    const auto read = [&](std::int32_t& value) {
        float real = 0.0F;
        reader.read(real);
        value = to_integer(real);
    };
    (read(values), ...);
    reader.finish();
}

template <class List>
void read_list(Run& run, std::string_view card, std::int32_t count, List& list, std::string& place) {
    if (count <= 0)
        return;
    FreeFieldReader reader(deck(run), card);
    for (std::int32_t i = 1; i <= count; ++i) {
        float real = 0.0F;
        reader.read(real);
        list[i] = to_integer(real);
    }
    reader.finish();
    place = deck(run).place_behind();
}

// The words of the material line that a group of its kind has.
void read_material(Run& run, std::int32_t group_type, GroupMaterial& m) {
    constexpr std::string_view card = "the material line of a group";
    switch (group_type) {
        case 1:
        case 2:
            read_free(deck(run), card, m.inner_line_type, m.inner_line_material);
            break;
        case 3:
            read_free(deck(run), card, m.material, m.attribute, m.inner_line_type, m.inner_line_material);
            break;
        case 4:
            read_free(deck(run), card, m.material, m.attribute, m.inner_line_type, m.inner_line_material,
                      m.old_material);
            break;
        case -2:
            read_free(deck(run), card, m.joint_material, m.joint_attribute, m.joint_thickness,
                      m.inner_line_type, m.inner_line_material, m.outer_line_type, m.outer_line_material);
            break;
        case -3:
            read_free(deck(run), card, m.material, m.attribute, m.joint_material, m.joint_attribute,
                      m.joint_thickness, m.inner_line_type, m.inner_line_material, m.outer_line_type,
                      m.outer_line_material);
            break;
        case -4:
            read_free(deck(run), card, m.material, m.attribute, m.joint_material, m.joint_attribute,
                      m.joint_thickness, m.inner_line_type, m.inner_line_material, m.outer_line_type,
                      m.outer_line_material, m.old_material);
            break;
        default:
            break;
    }
}

void read_post_lines(Run& run, GroupPost& post) {
    for (auto& pair : post.pair)
        read_cut(run, "a pair for the outputs", pair[0], pair[1]);
    for (std::int32_t& toggle : post.toggle)
        read_cut(run, "a switch for the outputs", toggle);
}

// An arc gives its ends to the outline, over what the points' cards gave.
void read_arc(Run& run, std::int32_t g, std::int32_t k, const Point& local, SegmentRow& arc) {
    const GroupRow& group = run.group_cards.rows[g];
    read_free(deck(run), "Card 3.3.5.4.3.1-1 (Xo, Yo, Rx, Ry, Qb, Qe)", arc.centre_x, arc.centre_y,
              arc.half_axis_x, arc.half_axis_y, arc.begin_angle, arc.end_angle);
    arc.centre_x = arc.centre_x + local.x;
    arc.centre_y = arc.centre_y + local.y;
    arc.begin_angle = arc.begin_angle * RADIANS;
    arc.end_angle = arc.end_angle * RADIANS;
    const Segment ends = ends_of_arc(arc);
    run.group_cards.outlines[g][k] = ends.from;
    run.group_cards.outlines[g][k + 1] = ends.to;
    if (k > 1 && k == group.segment_count && std::abs(group.group_type) != 2)
        run.group_cards.outlines[g][1] = ends.to;
}

void read_outline(Run& run, std::int32_t g) {
    GroupRow& group = run.group_cards.rows[g];
    float point_count = 0.0F, freezes_nodes = 0.0F, reference_switch = 0.0F;
    Point local;
    read_free(deck(run), "Card 3.3.5.4.2 (NPOINT, MOVE, IREF, XLo, YLo)", point_count, freezes_nodes,
              reference_switch, local.x, local.y);
    group.point_count = to_integer(point_count);
    group.freezes_nodes = to_integer(freezes_nodes);
    for (std::int32_t i = 1; i <= group.point_count; ++i) {
        float point_number = 0.0F;
        Point p;
        read_free(deck(run), "Card 3.3.5.4.2-1 (NP, X, Y)", point_number, p.x, p.y);
        const std::int32_t number = to_integer(point_number);
        if (number < 1 || number > MOST_GROUP_POINTS)
            deck(run).fail_behind("Card 3.3.5.4.2-1: expected an NP from 1 to " +
                                  std::to_string(MOST_GROUP_POINTS) + ", found " + std::to_string(number));
        p = {p.x + local.x, p.y + local.y};
        if (to_integer(reference_switch) == 1)
            p = {p.x + run.group_cards.reference_x, p.y + run.group_cards.reference_y};
        run.group_cards.outlines[g][number] = p;
    }
    read_cut(run, "Card 3.3.5.4.3 (NSEGMENT)", group.segment_count);
    if (group.segment_count < 0 || group.segment_count > MOST_GROUP_POINTS)
        deck(run).fail_behind("Card 3.3.5.4.3: expected an NSEGMENT from 0 to " +
                              std::to_string(MOST_GROUP_POINTS) + ", found " +
                              std::to_string(group.segment_count));
    for (std::int32_t k = 1; k <= group.segment_count; ++k) {
        SegmentRow& segment = run.group_cards.segments[g][k];
        segment = SegmentRow{};
        std::int32_t segment_number = 0;
        read_cut(run, "Card 3.3.5.4.3.1 (SEGNO, LTYPE, NDIV, IEND)", segment_number, segment.segment_type,
                 segment.divisions, segment.end_rule);
        if (segment.segment_type == 2)
            read_arc(run, g, k, local, segment);
    }
    if (group.segment_count != 0)
        group.point_count = std::abs(group.group_type) == 2 ? group.segment_count + 1 : group.segment_count;
}

void read_group(Run& run, std::int32_t g) {
    GroupRow& group = run.group_cards.rows[g];
    GroupPost& post = run.group_cards.outputs[g];
    group = GroupRow{};
    post = GroupPost{};
    if (run.group_cards.are_titled == 1)
        post.title = deck(run).read_line("a group's title").first(80);
    read_cut(run, "Card 3.3.5.4.1 (MTYPE, IGPOST, OVERLAY)", group.group_type, post.wants_outputs,
             group.overlay);
    post.place = deck(run).place_behind();
    if (group.group_type == 0)
        return;
    read_material(run, group.group_type, run.group_cards.materials[g]);
    if (post.wants_outputs == 1)
        read_post_lines(run, post);
    read_outline(run, g);
}

}  // namespace

void read_group_cards(Run& run) {
    GroupLimits& limits = run.group_cards.limits;
    read_cut(run, "Card 3.3.5.1 (NODE)", limits.node_count);
    read_list(run, "the node list of Card 3.3.5.1", limits.node_count, limits.nodes, limits.nodes_place);
    read_cut(run, "Card 3.3.5.2 (NOEL)", limits.element_count);
    read_list(run, "the element list of Card 3.3.5.2", limits.element_count, limits.elements,
              limits.elements_place);
    read_cut(run, "Card 3.3.5.3 (IBOUND)", limits.bounds_given);
    if (limits.bounds_given == 1)
        read_free(deck(run), "the limits behind Card 3.3.5.3 (XMIN, YMIN, XMAX, YMAX)", limits.left,
                  limits.bottom, limits.right, limits.top);
    read_cut(run, "Card 3.3.5.4-1 (NGROUP, IGTITL)", run.group_cards.count, run.group_cards.are_titled);
    read_free(deck(run), "Card 3.3.5.4-2 (Xref, Yref, Hi)", run.group_cards.reference_x,
              run.group_cards.reference_y, run.group_cards.written_head);
    for (std::int32_t g = 1; g <= run.group_cards.count; ++g)
        read_group(run, g);
}

}  // namespace brelan
