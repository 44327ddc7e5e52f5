#include "run/read_group_cards.h"

#include <cmath>
#include <string>

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/real_to_integer.h"
#include "group/geometry.h"
#include "group/tables.h"
#include "channel/channel_numbers.h"
#include "run/run.h"

namespace brelan {

namespace {

constexpr float RADIANS = 0.017453292F;  // of one degree

Channel& deck(Run& run) {
    return run.channels.at(CH_DECK);
}

// Integers are read as reals, several to a card.
template <class... Integers>
void read_cut(Run& run, std::string_view card, Integers&... values) {
    FreeFieldReader reader(deck(run), card);
    const auto read = [&](std::int32_t& value) {
        float real = 0.0F;
        reader.read(real);
        value = TRUNCATE(real);
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
        list[i] = TRUNCATE(real);
    }
    reader.finish();
    place = deck(run).place_behind();
}

// The words of the material line that a group of its kind has.
void read_material(Run& run, std::int32_t MTYPE, GroupMaterial& m) {
    constexpr std::string_view card = "the material line of a group";
    switch (MTYPE) {
        case 1:
        case 2:
            read_free(deck(run), card, m.LTi, m.LMi);
            break;
        case 3:
            read_free(deck(run), card, m.MAT, m.KF, m.LTi, m.LMi);
            break;
        case 4:
            read_free(deck(run), card, m.MAT, m.KF, m.LTi, m.LMi, m.MATold);
            break;
        case -2:
            read_free(deck(run), card, m.MATj, m.KFj, m.THICj, m.LTi, m.LMi, m.LTo, m.LMo);
            break;
        case -3:
            read_free(deck(run), card, m.MAT, m.KF, m.MATj, m.KFj, m.THICj, m.LTi, m.LMi, m.LTo, m.LMo);
            break;
        case -4:
            read_free(deck(run), card, m.MAT, m.KF, m.MATj, m.KFj, m.THICj, m.LTi, m.LMi, m.LTo, m.LMo,
                      m.MATold);
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

float sine(float angle) {
    return static_cast<float>(std::sin(static_cast<double>(angle)));
}
float cosine(float angle) {
    return static_cast<float>(std::cos(static_cast<double>(angle)));
}

// An arc gives its ends to the outline, over what the points' cards gave.
void read_arc(Run& run, std::int32_t g, std::int32_t k, const Point& local, SegmentRow& arc) {
    const GroupRow& group = run.group_cards.rows[g];
    read_free(deck(run), "Card 3.3.5.4.3.1-1 (Xo, Yo, Rx, Ry, Qb, Qe)", arc.Xo, arc.Yo, arc.Rx, arc.Ry, arc.Qb,
              arc.Qe);
    arc.Xo = arc.Xo + local.x;
    arc.Yo = arc.Yo + local.y;
    arc.Qb = arc.Qb * RADIANS;
    arc.Qe = arc.Qe * RADIANS;
    const Point centre{arc.Xo, arc.Yo};
    // With both angles alike the end is taken as on a circle: so a deck asks for a straight segment.
    const Point end = arc.Qb == arc.Qe
                          ? Point{arc.Xo + arc.Ry * cosine(arc.Qe), arc.Yo + arc.Ry * sine(arc.Qe)}
                          : ELLIPT(arc.Qe, centre, arc.Rx, arc.Ry);
    run.group_cards.outlines[g][k] = ELLIPT(arc.Qb, centre, arc.Rx, arc.Ry);
    run.group_cards.outlines[g][k + 1] = end;
    if (k > 1 && k == group.NSEGMENT && std::abs(group.MTYPE) != 2)
        run.group_cards.outlines[g][1] = end;
}

void read_outline(Run& run, std::int32_t g) {
    GroupRow& group = run.group_cards.rows[g];
    float NPOINT = 0.0F, MOVE = 0.0F, IREF = 0.0F;
    Point local;
    read_free(deck(run), "Card 3.3.5.4.2 (NPOINT, MOVE, IREF, XLo, YLo)", NPOINT, MOVE, IREF, local.x, local.y);
    group.NPOINT = TRUNCATE(NPOINT);
    group.MOVE = TRUNCATE(MOVE);
    for (std::int32_t i = 1; i <= group.NPOINT; ++i) {
        float NP = 0.0F;
        Point p;
        read_free(deck(run), "Card 3.3.5.4.2-1 (NP, X, Y)", NP, p.x, p.y);
        const std::int32_t number = TRUNCATE(NP);
        if (number < 1 || number > MAXGROUPPOINTS)
            deck(run).fail_behind("Card 3.3.5.4.2-1: expected an NP from 1 to " +
                               std::to_string(MAXGROUPPOINTS) + ", found " + std::to_string(number));
        p = {p.x + local.x, p.y + local.y};
        if (TRUNCATE(IREF) == 1)
            p = {p.x + run.group_cards.reference_x, p.y + run.group_cards.reference_y};
        run.group_cards.outlines[g][number] = p;
    }
    read_cut(run, "Card 3.3.5.4.3 (NSEGMENT)", group.NSEGMENT);
    if (group.NSEGMENT < 0 || group.NSEGMENT > MAXGROUPPOINTS)
        deck(run).fail_behind("Card 3.3.5.4.3: expected an NSEGMENT from 0 to " +
                           std::to_string(MAXGROUPPOINTS) + ", found " + std::to_string(group.NSEGMENT));
    for (std::int32_t k = 1; k <= group.NSEGMENT; ++k) {
        SegmentRow& segment = run.group_cards.segments[g][k];
        segment = SegmentRow{};
        std::int32_t SEGNO = 0;
        read_cut(run, "Card 3.3.5.4.3.1 (SEGNO, LTYPE, NDIV, IEND)", SEGNO, segment.LTYPE, segment.NDIV,
                 segment.IEND);
        if (segment.LTYPE == 2)
            read_arc(run, g, k, local, segment);
    }
    if (group.NSEGMENT != 0)
        group.NPOINT = std::abs(group.MTYPE) == 2 ? group.NSEGMENT + 1 : group.NSEGMENT;
}

void read_group(Run& run, std::int32_t g) {
    GroupRow& group = run.group_cards.rows[g];
    GroupPost& post = run.group_cards.outputs[g];
    group = GroupRow{};
    post = GroupPost{};
    if (run.group_cards.are_titled == 1)
        post.title = deck(run).read_line("a group's title").first(80);
    read_cut(run, "Card 3.3.5.4.1 (MTYPE, IGPOST, OVERLAY)", group.MTYPE, post.IGPOST, group.OVERLAY);
    post.place = deck(run).place_behind();
    if (group.MTYPE == 0)
        return;
    read_material(run, group.MTYPE, run.group_cards.materials[g]);
    if (post.IGPOST == 1)
        read_post_lines(run, post);
    read_outline(run, g);
}

}  // namespace

void read_group_cards(Run& run) {
    GroupLimits& limits = run.group_cards.limits;
    read_cut(run, "Card 3.3.5.1 (NODE)", limits.NODE);
    read_list(run, "the node list of Card 3.3.5.1", limits.NODE, limits.nodes, limits.nodes_place);
    read_cut(run, "Card 3.3.5.2 (NOEL)", limits.NOEL);
    read_list(run, "the element list of Card 3.3.5.2", limits.NOEL, limits.elements, limits.elements_place);
    read_cut(run, "Card 3.3.5.3 (IBOUND)", limits.IBOUND);
    if (limits.IBOUND == 1)
        read_free(deck(run), "the limits behind Card 3.3.5.3 (XMIN, YMIN, XMAX, YMAX)", limits.XMIN, limits.YMIN,
                  limits.XMAX, limits.YMAX);
    read_cut(run, "Card 3.3.5.4-1 (NGROUP, IGTITL)", run.group_cards.count, run.group_cards.are_titled);
    read_free(deck(run), "Card 3.3.5.4-2 (Xref, Yref, Hi)", run.group_cards.reference_x, run.group_cards.reference_y, run.group_cards.written_head);
    for (std::int32_t g = 1; g <= run.group_cards.count; ++g)
        read_group(run, g);
}

}  // namespace brelan
