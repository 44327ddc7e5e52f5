#include "model/group_reader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>

#include "deck/group_cards.h"
#include "mesh/group_tables.h"
#include "model/group_path.h"
#include "plane/path.h"

namespace brelan::tool {

namespace {

constexpr std::int32_t CLOSING_OUTLINE = 5;  // MTYPE
constexpr float RADIANS = 0.017453292F;      // of one degree

class GroupReader {
public:
    GroupReader(Deck& deck, CardReader& cards, int number, const Point& reference)
        : deck_(deck), cards_(cards), reference_(reference) {
        group_.number = number;
        cards.set_group(number);
    }

    void read(bool titled) {
        if (titled)
            group_.title = cards_.title();
        cards_.values(FORM_GROUP);
        group_.card = deck_.cards.size() - 1;
        group_.group_type = cards_.integer(1);
        group_.overlay = cards_.integer(3);
        const bool has_post_lines = cards_.integer(2) == 1;
        if (group_.group_type != 0) {
            read_material();
            if (has_post_lines)
                read_post_lines();
            read_points();
            read_segments();
            point(std::max(point_count_, 0));
            draw_path(group_,
                      std::span(points_).subspan(1, static_cast<std::size_t>(std::max(point_count_, 0))),
                      rows_);
        }
        deck_.groups.push_back(std::move(group_));
    }

private:
    // MATold is MAT + 1 where it is 0 or not given.
    void read_stage(const CardForm& form) {
        DeckCard& card = cards_.values(form);
        if (card.fields.back().value == 0.0F)
            card.fields.back().value = card.fields.front().value + 1.0F;
    }

    void read_material() {
        switch (group_.group_type) {
            case 1:
            case 2:
                cards_.values(FORM_MATERIAL_1);
                break;
            case 3:
                cards_.values(FORM_MATERIAL_3);
                break;
            case 4:
                read_stage(FORM_MATERIAL_4);
                break;
            case -2:
                cards_.values(FORM_MATERIAL_JOINT_2);
                break;
            case -3:
                cards_.values(FORM_MATERIAL_JOINT_3);
                break;
            case -4:
                read_stage(FORM_MATERIAL_JOINT_4);
                break;
            default:
                break;  // no material line
        }
    }

    void read_post_lines() {
        constexpr int pairs = 6, switches = 7;
        for (int i = 1; i <= pairs; ++i)
            cards_.values(FORM_POST_PAIR);
        for (int i = 1; i <= switches; ++i)
            cards_.values(FORM_POST_SWITCH);
    }

    void read_points() {
        cards_.values(FORM_POINTS);
        point_count_ = cards_.count(FORM_POINTS, MOST_GROUP_POINTS);
        const bool from_reference = cards_.integer(3) == 1;
        local_ = {cards_.value(4), cards_.value(5)};
        for (std::int32_t i = 1; i <= point_count_; ++i) {
            cards_.values(FORM_POINT);
            const std::int32_t point_number = cards_.integer(1);
            Point p{cards_.value(2) + local_.x, cards_.value(3) + local_.y};
            if (from_reference)
                p = {p.x + reference_.x, p.y + reference_.y};
            if (point_number >= 1 && point_number <= MOST_GROUP_POINTS)
                point(point_number) = p;
        }
    }

    void read_segments() {
        cards_.values(FORM_SEGMENTS);
        const std::int32_t segment_count = cards_.count(FORM_SEGMENTS, MOST_GROUP_POINTS);
        if (segment_count < 0)
            cards_.fault("Card 3.3.5.4.3: expected an NSEGMENT of 0 or more, found " +
                         std::to_string(segment_count));
        const bool open = std::abs(group_.group_type) == 2;
        for (std::int32_t k = 1; k <= segment_count; ++k) {
            cards_.values(FORM_SEGMENT);
            DeckSegment segment;
            segment.card = deck_.cards.size() - 1;
            segment.segment_type = cards_.integer(2);
            segment.divisions = group_.group_type == CLOSING_OUTLINE ? 0 : cards_.integer(3);
            segment.end_rule = group_.group_type == CLOSING_OUTLINE ? 3 : cards_.integer(4);
            group_.segments.push_back(segment);
            rows_.push_back({segment.segment_type, segment.divisions, segment.end_rule});
            if (segment.segment_type == ARC_SEGMENT)
                read_arc(k, segment_count, open);
        }
        if (segment_count > 0)
            point_count_ = open ? segment_count + 1 : segment_count;
    }

    // An arc gives its ends to the outline, over what the points' cards gave.
    void read_arc(std::int32_t k, std::int32_t segment_count, bool open) {
        cards_.values(FORM_ARC);
        const std::array values{cards_.value(1), cards_.value(2), cards_.value(3),
                                cards_.value(4), cards_.value(5), cards_.value(6)};
        if (const ArcFault fault = fault_of_arc(values, k > 1 && k == segment_count && !open);
            !fault.message.empty())
            cards_.fault(fault.message, fault.field);
        SegmentRow& arc = rows_.back();
        arc.centre_x = cards_.value(1) + local_.x;
        arc.centre_y = cards_.value(2) + local_.y;
        arc.half_axis_x = cards_.value(3);
        arc.half_axis_y = cards_.value(4);
        arc.begin_angle = cards_.value(5) * RADIANS;
        arc.end_angle = cards_.value(6) * RADIANS;
        const Segment ends = ends_of_arc(arc);
        point(k) = ends.from;
        point(k + 1) = ends.to;
        if (k > 1 && k == segment_count && !open)
            point(1) = ends.to;
    }

    // Point i of the outline, from 1.
    Point& point(std::int32_t i) {
        if (points_.size() <= static_cast<std::size_t>(i))
            points_.resize(static_cast<std::size_t>(i) + 1);
        return points_[static_cast<std::size_t>(i)];
    }

    Deck& deck_;
    CardReader& cards_;
    DeckGroup group_;
    Point reference_, local_;
    std::int32_t point_count_ = 0;
    std::vector<Point> points_;  // from place 1
    std::vector<SegmentRow> rows_;
};

void read_numbers(CardReader& cards, const CardForm& form, std::string_view heading) {
    cards.values(form);
    cards.list(form, cards.count(form, MOST_CARD_VALUES), heading);
}

}  // namespace

void read_groups(Deck& deck, CardReader& cards) {
    read_numbers(cards, FORM_FIXED_NODES, "nodes that must not move");
    read_numbers(cards, FORM_FIXED_ELEMENTS, "elements that must not change");
    cards.values(FORM_BOUND);
    if (cards.integer(1) == 1)
        cards.values(FORM_BOUNDS);
    cards.values(FORM_GROUPS);
    const std::int32_t groups = cards.count(FORM_GROUPS, MOST_GROUPS);
    const bool titled = cards.integer(2) == 1;
    cards.values(FORM_REFERENCE);
    const Point reference{cards.value(1), cards.value(2)};
    for (std::int32_t g = 1; g <= groups; ++g)
        GroupReader(deck, cards, g, reference).read(titled);
}

}  // namespace brelan::tool
