#include "model/group_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "deck/group_cards.h"
#include "mesh/group_tables.h"
#include "plane/arc.h"
#include "plane/polygon_scan.h"
#include "text/real_to_integer.h"

namespace brelan::tool {

namespace {

constexpr std::int32_t CLOSING_OUTLINE = 5;    // MTYPE
constexpr std::int32_t STRAIGHT = 1, ARC = 2;  // LTYPE
constexpr float RADIANS = 0.017453292F;        // of one degree
constexpr float PARTS_PER_RADIAN = 63.661976F;
constexpr std::int32_t FEWEST_PARTS = 20;

DeckPoint in_64_bits(const Point& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

double distance(const DeckPoint& a, const DeckPoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

struct Arc {
    Point centre;
    float half_axis_x = 0.0F, half_axis_y = 0.0F, begin_angle = 0.0F, end_angle = 0.0F;
};

// The points of an arc from its start to its end.
std::vector<DeckPoint> arc_points(const Arc& arc, std::int32_t divisions) {
    std::int32_t parts = std::abs(divisions);
    if (parts == 0)
        parts =
            std::max(FEWEST_PARTS,
                     to_integer(std::abs(std::round((arc.end_angle - arc.begin_angle) * PARTS_PER_RADIAN))));
    parts = std::clamp(parts, 1, MOST_POLYGON_POINTS);
    std::vector<DeckPoint> points{
        in_64_bits(ellipse_point(arc.begin_angle, arc.centre, arc.half_axis_x, arc.half_axis_y))};
    const ArcTable table(arc.begin_angle, arc.end_angle, arc.half_axis_x, arc.half_axis_y, parts);
    for (std::int32_t i = 1; i <= parts; ++i) {
        const float even = arc.begin_angle + (arc.end_angle - arc.begin_angle) * static_cast<float>(i) /
                                                 static_cast<float>(parts);
        points.push_back(in_64_bits(arc.half_axis_x == arc.half_axis_y
                                        ? ellipse_point(even, arc.centre, arc.half_axis_x, arc.half_axis_y)
                                        : table.point(i, arc.centre)));
    }
    return points;
}

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
            build_path();
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
                point(point_number) = in_64_bits(p);
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
            arcs_.emplace_back();
            if (segment.segment_type == ARC)
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
        Arc& arc = arcs_.back();
        arc.centre = {cards_.value(1) + local_.x, cards_.value(2) + local_.y};
        arc.half_axis_x = cards_.value(3);
        arc.half_axis_y = cards_.value(4);
        arc.begin_angle = cards_.value(5) * RADIANS;
        arc.end_angle = cards_.value(6) * RADIANS;
        point(k) = in_64_bits(ellipse_point(arc.begin_angle, arc.centre, arc.half_axis_x, arc.half_axis_y));
        point(k + 1) = in_64_bits(ellipse_point(arc.end_angle, arc.centre, arc.half_axis_x, arc.half_axis_y));
        if (k > 1 && k == segment_count && !open)
            point(1) = point(k + 1);
    }

    // Point i of the outline, from 1.
    DeckPoint& point(std::int32_t i) {
        if (points_.size() <= static_cast<std::size_t>(i))
            points_.resize(static_cast<std::size_t>(i) + 1);
        return points_[static_cast<std::size_t>(i)];
    }

    void build_path() {
        for (std::int32_t i = 1; i <= point_count_; ++i)
            group_.points.push_back(point(i));
        group_.closed = std::abs(group_.group_type) != 2;
        if (!group_.closed && point_count_ > 1 && distance(point(1), point(point_count_)) < SAME_PLACE)
            group_.closed = true;
        if (group_.segments.empty()) {
            group_.path = group_.points;
            return;
        }
        for (std::size_t i = 0; i < group_.segments.size(); ++i)
            add_segment(static_cast<std::int32_t>(i) + 1);
        if (group_.closed && group_.path.size() > 1 &&
            distance(group_.path.front(), group_.path.back()) < SAME_PLACE)
            group_.path.pop_back();
    }

    void add_segment(std::int32_t k) {
        const auto place = static_cast<std::size_t>(k) - 1;
        DeckSegment& segment = group_.segments[place];
        const Arc& arc = arcs_[place];
        const DeckPoint start = point(k);
        const DeckPoint end = k == point_count_ ? point(1) : point(k + 1);
        if (segment.segment_type == ARC && arc.begin_angle != arc.end_angle) {
            segment.path = arc_points(arc, segment.divisions);
        } else if (segment.segment_type == STRAIGHT || segment.segment_type == ARC) {
            const std::int32_t parts = std::clamp(std::abs(segment.divisions), 1, MOST_POLYGON_POINTS);
            for (std::int32_t i = 0; i <= parts; ++i) {
                const double share = static_cast<double>(i) / parts;
                segment.path.push_back(
                    {start.x + share * (end.x - start.x), start.y + share * (end.y - start.y)});
            }
        } else {
            return;
        }
        const bool joined =
            !group_.path.empty() && distance(group_.path.back(), segment.path.front()) < SAME_PLACE;
        group_.path.insert(group_.path.end(), segment.path.begin() + (joined ? 1 : 0), segment.path.end());
    }

    Deck& deck_;
    CardReader& cards_;
    DeckGroup group_;
    Point reference_, local_;
    std::int32_t point_count_ = 0;
    std::vector<DeckPoint> points_;
    std::vector<Arc> arcs_;  // by segment
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
