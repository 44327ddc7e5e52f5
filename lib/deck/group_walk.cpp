#include "deck/group_walk.h"

#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>

#include "deck/group_card_table.h"
#include "deck/normalised_deck.h"
#include "plane/path.h"

namespace brelan {

namespace {

// MTYPE 5 of a deck: a group of MTYPE 3 that cuts nothing and colours nothing, the outline of a finished dam.
constexpr std::int32_t CLOSING_OUTLINE = 5;
constexpr float RADIANS = 0.017453292F;  // of one degree

bool is_open(std::int32_t group_type) {
    return group_type == 2 || group_type == -2;
}

// The material line of a group, and the words of the group that it gives, in its order; a word that it does
// not give keeps what it was.
struct MaterialLine {
    const Card* card = nullptr;
    std::span<float GroupMaterial::*const> words;
    std::int32_t old_material = 0;  // position of MATold, 0 for none
};

using Words = GroupMaterial;
constexpr std::array WORDS_LINE{&Words::inner_line_type, &Words::inner_line_material};
constexpr std::array WORDS_ZONE{&Words::material, &Words::attribute, &Words::inner_line_type,
                                &Words::inner_line_material, &Words::old_material};
constexpr std::array WORDS_JOINT{&Words::material,
                                 &Words::attribute,
                                 &Words::joint_material,
                                 &Words::joint_attribute,
                                 &Words::joint_thickness,
                                 &Words::inner_line_type,
                                 &Words::inner_line_material,
                                 &Words::outer_line_type,
                                 &Words::outer_line_material,
                                 &Words::old_material};

MaterialLine material_line(std::int32_t group_type) {
    const std::span zone(WORDS_ZONE);
    const std::span joint(WORDS_JOINT);
    switch (group_type) {
        case 1:
        case 2:
            return {&CARD_MATERIAL_1, WORDS_LINE};
        case 3:
            return {&CARD_MATERIAL_3, zone.first(4)};
        case 4:
            return {&CARD_MATERIAL_4, zone, 5};
        case -2:
            return {&CARD_MATERIAL_JOINT_2, joint.subspan(2, 7)};
        case -3:
            return {&CARD_MATERIAL_JOINT_3, joint.first(9)};
        case -4:
            return {&CARD_MATERIAL_JOINT_4, joint, 10};
        default:
            return {};
    }
}

// What is known of a group behind its Card 3.3.5.4.1.
struct GroupBegun {
    std::int32_t number = 0, group_type = 0;
    bool wants_outputs = false;
    bool closes = false;  // a closing outline of the deck
};

// The cards of the groups out of a source and into tables.
class GroupWalk {
public:
    GroupWalk(CardSource& cards, GroupCards& groups)
        : cards_(cards),
          groups_(&groups),
          titled_(groups.are_titled == 1),
          reference_{groups.reference_x, groups.reference_y} {}

    void read(std::int32_t number) {
        const GroupBegun group = begin(number);
        if (group.group_type != 0)
            read_rest(group);
    }

    // From the material line on.
    void read_rest(const GroupBegun& group) {
        read_material(group);
        if (group.wants_outputs)
            read_outputs(group);
        read_points(group);
        read_segments(group);
    }

    // The first group whose material line the normalised deck does not have, and its line there; the tables
    // get nothing from there on.
    struct Gap {
        GroupBegun group;
        int line = 0;
    };
    const std::optional<Gap>& gap() const { return gap_; }

private:
    GroupBegun begin(std::int32_t number) {
        GroupRow& row = groups_->rows[number] = GroupRow{};
        GroupPost& post = groups_->outputs[number] = GroupPost{};
        if (titled_)
            post.title = TextLine(cards_.title());
        cards_.read(CARD_GROUP);
        const bool closes = cards_.is_deck() && cards_.integer(1) == CLOSING_OUTLINE;
        if (closes)
            cards_.set(1, 3.0F);
        cards_.pass(CARD_GROUP);
        row.group_type = cards_.integer(1);
        post.wants_outputs = cards_.integer(2);
        row.overlay = cards_.integer(3);
        post.place = cards_.place();
        return {number, row.group_type, post.wants_outputs == 1, closes};
    }

    void read_material(const GroupBegun& group) {
        GroupMaterial& material = groups_->materials[group.number];
        if (group.closes) {
            material.material = material.inner_line_type = 0.0F;
            material.attribute = material.inner_line_material = 1.0F;
            cards_.show({0, 1, 0, 1});
            return;
        }
        const MaterialLine line = material_line(group.group_type);
        if (line.card == nullptr)
            return;
        cards_.read(*line.card);
        // 0 stands for the material after MAT.
        if (cards_.is_deck() && line.old_material > 0 && cards_.given(line.old_material) == 0.0F)
            cards_.complete(line.old_material, cards_.given(1) + 1.0F);
        if (cards_.is_deck() && line.card->not_shown_in == cards_.kind) {
            leave_gap(group);
            return;
        }
        cards_.pass(*line.card);
        std::int32_t position = 0;
        for (float GroupMaterial::*const word : line.words)
            material.*word = cards_.shown(++position);
    }

    void leave_gap(const GroupBegun& group) {
        if (gap_)
            return;
        gap_ = {group, cards_.lines_shown()};
        cards_.stop_holding();
        aside_ = std::make_unique<GroupCards>();
        groups_ = aside_.get();
    }

    // Six pairs and seven switches. A closing outline moves its first pair to the second place.
    void read_outputs(const GroupBegun& group) {
        GroupPost& post = groups_->outputs[group.number];
        std::array<float, 2> first{};
        for (std::size_t i = 0; i < post.pair.size(); ++i) {
            cards_.read(CARD_POST_PAIR);
            const std::array<float, 2> given{cards_.given(1), cards_.given(2)};
            if (group.closes && i < 2) {
                cards_.set(1, i == 0 ? 0.0F : first[0]);
                cards_.set(2, i == 0 ? 0.0F : first[1]);
                first = given;
            }
            cards_.pass(CARD_POST_PAIR);
            post.pair[i] = {cards_.integer(1), cards_.integer(2)};
        }
        for (std::int32_t& toggle : post.toggle) {
            cards_.take(CARD_POST_SWITCH, toggle);
        }
    }

    void read_points(const GroupBegun& group) {
        GroupRow& row = groups_->rows[group.number];
        cards_.read(CARD_POINTS);
        if (group.closes)
            cards_.set(2, 0.0F);
        cards_.pass(CARD_POINTS);
        row.point_count = cards_.is_deck() ? cards_.count(CARD_POINTS) : cards_.integer(1);
        row.freezes_nodes = cards_.integer(2);
        const bool from_reference = cards_.integer(3) == 1;
        local_ = {cards_.shown(4), cards_.shown(5)};
        for (std::int32_t i = 1; i <= row.point_count; ++i) {
            cards_.take(CARD_POINT);
            const std::int32_t number = cards_.integer(1);
            Point p{cards_.shown(2) + local_.x, cards_.shown(3) + local_.y};
            if (from_reference)
                p = {p.x + reference_.x, p.y + reference_.y};
            if (number < 1 || number > MOST_GROUP_POINTS)
                cards_.hold("Card 3.3.5.4.2-1: expected an NP from 1 to " +
                            std::to_string(MOST_GROUP_POINTS) + ", found " + std::to_string(number));
            else
                groups_->outlines[group.number][number] = p;
        }
    }

    void read_segments(const GroupBegun& group) {
        GroupRow& row = groups_->rows[group.number];
        cards_.take(CARD_SEGMENTS);
        row.segment_count = cards_.is_deck() ? cards_.count(CARD_SEGMENTS) : cards_.integer(1);
        if (row.segment_count < 0 || row.segment_count > MOST_GROUP_POINTS)
            cards_.refuse(
                "Card 3.3.5.4.3: expected an NSEGMENT " +
                (cards_.is_deck() ? "of 0 or more" : "from 0 to " + std::to_string(MOST_GROUP_POINTS)) +
                ", found " + std::to_string(row.segment_count));
        for (std::int32_t k = 1; k <= row.segment_count; ++k) {
            cards_.read(CARD_SEGMENT);
            // Segments count as they come, whatever number the card gives them.
            cards_.set(1, static_cast<float>(k));
            if (group.closes) {
                cards_.set(3, 0.0F);  // NDIV
                cards_.set(4, 3.0F);  // IEND
            }
            cards_.pass(CARD_SEGMENT);
            SegmentRow& segment = groups_->segments[group.number][k] = SegmentRow{};
            segment.segment_type = cards_.integer(2);
            segment.divisions = cards_.integer(3);
            segment.end_rule = cards_.integer(4);
            if (segment.segment_type == ARC_SEGMENT)
                read_arc(group, k, k > 1 && k == row.segment_count && !is_open(group.group_type), segment);
        }
        if (row.segment_count > 0)
            row.point_count = row.segment_count + (is_open(group.group_type) ? 1 : 0);
    }

    // An arc gives its ends to the outline, over what the points' cards gave.
    void read_arc(const GroupBegun& group, std::int32_t k, bool closes_outline, SegmentRow& arc) {
        cards_.take(CARD_ARC);
        if (cards_.is_deck()) {
            const ArcFault fault = fault_of_arc(cards_.given_values().first<6>(), closes_outline);
            if (!fault.message.empty())
                cards_.refuse(fault.message, fault.field);
        }
        arc.centre_x = cards_.shown(1) + local_.x;
        arc.centre_y = cards_.shown(2) + local_.y;
        arc.half_axis_x = cards_.shown(3);
        arc.half_axis_y = cards_.shown(4);
        arc.begin_angle = cards_.shown(5) * RADIANS;
        arc.end_angle = cards_.shown(6) * RADIANS;
        const Segment ends = ends_of_arc(arc);
        const auto outline = groups_->outlines[group.number];
        outline[k] = ends.from;
        outline[k + 1] = ends.to;
        if (closes_outline)
            outline[1] = ends.to;
    }

    CardSource& cards_;
    GroupCards* groups_;
    bool titled_;
    Point reference_, local_;
    std::optional<Gap> gap_;
    std::unique_ptr<GroupCards> aside_;
};

// The groups from a gap on take their values from the lines that are there.
void read_across(const GroupWalk::Gap& gap, DeckCards& cards, GroupCards& groups) {
    Channel& shown = cards.normalised();
    shown.rewind();
    shown.skip_lines(gap.line, "a line of the normalised deck");
    CardValues room;
    ShownCards lines(shown, cards.kind, room);
    try {
        GroupWalk walk(lines, groups);
        walk.read_rest(gap.group);
        for (std::int32_t g = gap.group.number + 1; g <= groups.count; ++g)
            walk.read(g);
    } catch (const RunEnd& end) {
        cards.begin(DeckPart::groups);
        cards.hold(end);
    }
}

// Reads a count and the list that follows it into a table. Returns the count.
template <class List>
std::int32_t read_numbers(DeckCards& cards, const Card& card, std::string_view heading,
                          std::string_view called, List& list, FilePlace& place) {
    cards.take(card);
    const std::int32_t count = cards.count(card);
    std::int32_t i = 0;
    for (const std::int32_t number : cards.list(card, count, heading, called))
        list[++i] = number;
    if (count > 0)
        place = cards.place();
    return count;
}

void read_limits(DeckCards& cards, GroupLimits& limits) {
    limits.node_count = read_numbers(cards, CARD_NODES, "nodes that must not move",
                                     "the node list of Card 3.3.5.1", limits.nodes, limits.nodes_place);
    limits.element_count =
        read_numbers(cards, CARD_ELEMENTS, "elements that must not change",
                     "the element list of Card 3.3.5.2", limits.elements, limits.elements_place);
    cards.take(CARD_BOUND, limits.bounds_given);
    if (limits.bounds_given != 1)
        return;
    cards.take(CARD_BOUNDS, limits.left, limits.bottom, limits.right, limits.top);
}

}  // namespace

ArcFault fault_of_arc(std::span<const float, 6> values, bool closes_outline) {
    constexpr float smallest_square = std::numeric_limits<float>::min();
    const auto [Rx, Ry, Qb, Qe] = std::array{values[2], values[3], values[4], values[5]};
    const auto message = [](const char* field, const char* expected, float found) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%g", static_cast<double>(found));
        return std::string("Card 3.3.5.4.3.1-1 (") + field + "): expected " + expected + ", found " +
               text.data() + ": the arc has no length";
    };
    // The engine works with the squares.
    if (Rx * Rx < smallest_square)
        return {message("Rx", "a half axis other than 0", Rx), 2};
    if (Ry * Ry < smallest_square)
        return {message("Ry", "a half axis other than 0", Ry), 3};
    if (written_alike(Qb, Qe) && !(closes_outline && !written_alike(Rx, Ry)))
        return {message("Qe", "an angle other than Qb", Qe), 5};
    return {};
}

void read_groups(DeckCards& cards, Deck& deck, DeckNotes& notes) {
    GroupCards& groups = deck.groups;
    read_limits(cards, groups.limits);
    cards.take(CARD_GROUPS);
    groups.count = cards.count(CARD_GROUPS);
    groups.are_titled = cards.integer(2);
    cards.take(CARD_REFERENCE, groups.reference_x, groups.reference_y, groups.written_head);
    GroupWalk walk(cards, groups);
    for (std::int32_t g = 1; g <= groups.count; ++g) {
        notes.group(g);
        walk.read(g);
    }
    notes.group(0);
    if (walk.gap())
        read_across(*walk.gap(), cards, groups);
}

}  // namespace brelan
