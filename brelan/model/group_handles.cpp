// What can be dragged of the groups: their points, origins and arcs.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "model/group_path.h"
#include "model/handle_reading.h"
#include "plane/arc.h"

namespace brelan::tool {

namespace {

bool same_place(const DeckPoint& a, const DeckPoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y) < SAME_PLACE;
}

// Two angles in degrees that point the same way.
bool same_direction(double a, double b) {
    constexpr double nothing = 1e-3;
    return std::abs(std::remainder(a - b, FULL_TURN)) < nothing;
}

struct Arc {
    std::size_t segment = 0;  // from 0
    std::size_t card = 0;     // place of Card 3.3.5.4.3.1-1
    DeckPoint centre;
    double rx = 0.0, ry = 0.0;      // without their sign
    double begin = 0.0, end = 0.0;  // degrees

    bool is_circle() const { return rx == ry; }
    double middle() const { return (begin + end) / 2.0; }

    DeckPoint at(double degrees) const {
        const Point point = ellipse_point(static_cast<float>(degrees / DEGREES),
                                          {static_cast<float>(centre.x), static_cast<float>(centre.y)},
                                          static_cast<float>(rx), static_cast<float>(ry));
        return {static_cast<double>(point.x), static_cast<double>(point.y)};
    }
};

// Numbers that are to stay alike, as places in a list: joined two by two, taken apart in sets.
class AlikeSets {
public:
    explicit AlikeSets(std::size_t count) : set_(count) { std::iota(set_.begin(), set_.end(), 0U); }

    void join(std::size_t a, std::size_t b) {
        const std::size_t kept = std::min(set_[a], set_[b]), gone = std::max(set_[a], set_[b]);
        std::replace(set_.begin(), set_.end(), gone, kept);
    }

    // A set is named by its first member.
    bool is_first(std::size_t member) const { return set_[member] == member; }
    bool are_joined(std::size_t a, std::size_t b) const { return set_[a] == set_[b]; }

private:
    std::vector<std::size_t> set_;
};

// The handles of one group.
class GroupHandles {
public:
    GroupHandles(const NotedDeck& deck, const DeckGroup& group, std::vector<DeckHandle>& handles)
        : deck_(deck),
          group_(group),
          handles_(handles),
          name_(group.title.empty() ? fmt::format("group {}", group.number) : group.title) {
        for (std::size_t i = group.card; i < deck.cards.size() && deck.cards[i].group == group.number; ++i)
            take(i);
    }

    void add() const {
        if (points_card_ == NONE)
            return;
        add_points();
        add_origin();
        add_centres();
        add_radii();
        add_angles();
    }

private:
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    void take(std::size_t i) {
        const DeckCard& card = deck_.cards[i];
        if (card.number == "3.3.5.4.2") {
            points_card_ = i;
            origin_ = {number_on(card, "XLo"), number_on(card, "YLo")};
            const DeckCard* reference = deck_.card("3.3.5.4-2");
            if (card.integer("IREF") == 1 && reference != nullptr)
                reference_ = {number_on(*reference, "Xref"), number_on(*reference, "Yref")};
        } else if (card.number == "3.3.5.4.2-1") {
            const std::int32_t number = card.integer("NP");
            if (number < 1 || static_cast<std::size_t>(number) > group_.points.size())
                return;
            point_cards_.resize(group_.points.size(), NONE);
            point_cards_[static_cast<std::size_t>(number) - 1] = i;
        } else if (card.number == "3.3.5.4.3.1") {
            ++segments_;
        } else if (card.number == "3.3.5.4.3.1-1") {
            arcs_.push_back({segments_ - 1,
                             i,
                             {number_on(card, "Xo") + origin_.x, number_on(card, "Yo") + origin_.y},
                             std::abs(number_on(card, "Rx")),
                             std::abs(number_on(card, "Ry")),
                             number_on(card, "Qb"),
                             number_on(card, "Qe")});
        }
    }

    Lever lever(std::size_t card, std::string_view field, double origin) const {
        return {card, place_of_field(deck_.cards[card], field), origin, 1.0, false};
    }

    DeckHandle handle(HandleKind kind, std::string id, std::string_view what) const {
        DeckHandle made;
        made.kind = kind;
        made.id = fmt::format("g{}.{}", group_.number, id);
        made.group = group_.number;
        made.title = fmt::format("{} of {}", what, name_);
        return made;
    }

    // --- points ----------------------------------------------------------------------------------

    bool is_line() const { return std::abs(group_.group_type) == 2; }

    // A point that an arc gives, over what the point's card says.
    bool is_of_arc(std::size_t point) const {
        const std::size_t count = group_.points.size();
        return std::any_of(arcs_.begin(), arcs_.end(), [&](const Arc& arc) {
            const bool closes = !is_line() && arc.segment > 0 && arc.segment + 1 == segments_;
            return point == arc.segment || point == arc.segment + 1 || (closes && point % count == 0);
        });
    }

    void add_levers(DeckHandle& point, std::size_t card) const {
        point.x.push_back(lever(card, "X", origin_.x + reference_.x));
        point.y.push_back(lever(card, "Y", origin_.y + reference_.y));
    }

    void add_points() const {
        for (std::size_t i = 0; i < point_cards_.size(); ++i) {
            if (point_cards_[i] == NONE || is_of_arc(i))
                continue;
            // A line that ends where it begins stays closed.
            const std::size_t last = point_cards_.size() - 1;
            const bool closed = is_line() && last > 1 && (i == 0 || i == last) &&
                                same_place(group_.points.front(), group_.points.back());
            const std::size_t other = i == 0 ? last : 0;
            const bool both = closed && point_cards_[other] != NONE && !is_of_arc(other);
            if (both && i == last)
                continue;
            DeckHandle point =
                handle(HandleKind::point, fmt::format("p{}", i + 1), fmt::format("point {}", i + 1));
            point.place = group_.points[i];
            add_levers(point, point_cards_[i]);
            if (both)
                add_levers(point, point_cards_[last]);
            handles_.push_back(std::move(point));
        }
    }

    // The origin of a group that has one of its own moves all of it.
    void add_origin() const {
        if (origin_.x == 0.0 && origin_.y == 0.0)
            return;
        DeckHandle origin = handle(HandleKind::centre, "origin", "origin");
        origin.place = {origin_.x + reference_.x, origin_.y + reference_.y};
        origin.x.push_back(lever(points_card_, "XLo", reference_.x));
        origin.y.push_back(lever(points_card_, "YLo", reference_.y));
        handles_.push_back(std::move(origin));
    }

    // --- arcs ------------------------------------------------------------------------------------

    bool same_centre(std::size_t a, std::size_t b) const {
        return same_place(arcs_[a].centre, arcs_[b].centre);
    }

    // Arcs around one centre keep it together.
    void add_centres() const {
        AlikeSets sets(arcs_.size());
        for (std::size_t a = 0; a < arcs_.size(); ++a)
            for (std::size_t b = 0; b < a; ++b)
                if (same_centre(a, b))
                    sets.join(a, b);
        for (std::size_t a = 0; a < arcs_.size(); ++a) {
            if (!sets.is_first(a))
                continue;
            DeckHandle centre =
                handle(HandleKind::centre, fmt::format("a{}.centre", a + 1), "centre of an arc");
            centre.place = arcs_[a].centre;
            for (std::size_t b = a; b < arcs_.size(); ++b)
                if (sets.are_joined(a, b)) {
                    centre.x.push_back(lever(arcs_[b].card, "Xo", origin_.x));
                    centre.y.push_back(lever(arcs_[b].card, "Yo", origin_.y));
                }
            handles_.push_back(std::move(centre));
        }
    }

    // Half axes that are alike stay so: both of a circle, and those of arcs around one centre.
    void add_radii() const {
        const std::size_t count = arcs_.size();
        const auto half_axis = [&](std::size_t member) {
            return member < count ? arcs_[member].rx : arcs_[member - count].ry;
        };
        AlikeSets sets(2 * count);  // the half axes in x, then those in y
        for (std::size_t a = 0; a < count; ++a) {
            if (arcs_[a].is_circle())
                sets.join(a, a + count);
            for (std::size_t b = 0; b < a; ++b)
                for (const std::size_t axis : {std::size_t{0}, count})
                    if (same_centre(a, b) && half_axis(a + axis) == half_axis(b + axis))
                        sets.join(a + axis, b + axis);
        }
        for (std::size_t member = 0; member < 2 * count; ++member)
            if (sets.is_first(member))
                add_radius(sets, member);
    }

    void add_radius(const AlikeSets& sets, std::size_t first) const {
        const std::size_t count = arcs_.size();
        const Arc& arc = arcs_[first % count];
        std::vector<Lever> levers;
        bool has_x = false, has_y = false;
        const Arc* circle = nullptr;
        for (std::size_t member = first; member < 2 * count; ++member) {
            if (!sets.are_joined(first, member))
                continue;
            const Arc& of = arcs_[member % count];
            const bool is_x = member < count;
            (is_x ? has_x : has_y) = true;
            const char* const field = is_x ? "Rx" : "Ry";
            const double sign = std::copysign(1.0, number_on(deck_.cards[of.card], field));
            levers.push_back({of.card, place_of_field(deck_.cards[of.card], field), 0.0, sign, true});
            if (circle == nullptr && of.is_circle())
                circle = &of;
        }
        DeckHandle radius =
            handle(HandleKind::radius, fmt::format("a{}.{}", first % count + 1, first < count ? "rx" : "ry"),
                   circle != nullptr ? "radius of an arc" : "half axis of an arc");
        const double middle = arc.middle() / DEGREES;
        if (circle != nullptr) {
            radius.place = circle->at(circle->middle());
            radius.centre = arc.centre;
            radius.polar = std::move(levers);
        } else {
            // On the side of the centre on which the arc lies.
            const double side = (has_x ? std::cos(middle) : std::sin(middle)) < 0.0 ? -1.0 : 1.0;
            for (Lever& lever : levers) {
                lever.origin = has_x ? arc.centre.x : arc.centre.y;
                lever.factor *= side;
            }
            radius.place = has_x ? DeckPoint{arc.centre.x + side * arc.rx, arc.centre.y}
                                 : DeckPoint{arc.centre.x, arc.centre.y + side * arc.ry};
            (has_x ? radius.x : radius.y) = std::move(levers);
        }
        handles_.push_back(std::move(radius));
    }

    // Where an arc goes on in the next one, or a full circle in itself, both angles stay together.
    void add_angles() const {
        const std::size_t count = arcs_.size();
        AlikeSets sets(2 * count);  // the begins, then the ends
        const auto angle = [&](std::size_t member) {
            return member < count ? arcs_[member].begin : arcs_[member - count].end;
        };
        for (std::size_t a = 0; a < count; ++a)
            for (std::size_t b = 0; b < count; ++b) {
                const bool follows = arcs_[b].segment == (arcs_[a].segment + 1) % segments_ &&
                                     (!is_line() || arcs_[a].segment + 1 < segments_);
                if ((a == b ? segments_ == 1 : follows) && same_centre(a, b) &&
                    same_direction(arcs_[a].end, arcs_[b].begin) &&
                    same_place(arcs_[a].at(arcs_[a].end), arcs_[b].at(arcs_[b].begin)))
                    sets.join(a + count, b);
            }
        for (std::size_t member = 0; member < 2 * count; ++member) {
            if (!sets.is_first(member))
                continue;
            const Arc& arc = arcs_[member % count];
            const char* const end = member < count ? "begin" : "end";
            DeckHandle made = handle(HandleKind::angle, fmt::format("a{}.{}", member % count + 1, end),
                                     fmt::format("{} of an arc", end));
            made.place = arc.at(angle(member));
            made.centre = arc.centre;
            for (std::size_t other = member; other < 2 * count; ++other)
                if (sets.are_joined(member, other))
                    made.polar.push_back(lever(arcs_[other % count].card, other < count ? "Qb" : "Qe", 0.0));
            handles_.push_back(std::move(made));
        }
    }

    const NotedDeck& deck_;
    const DeckGroup& group_;
    std::vector<DeckHandle>& handles_;
    const std::string name_;
    std::size_t points_card_ = NONE;
    DeckPoint origin_, reference_;
    std::vector<std::size_t> point_cards_;  // of the points in their order
    std::size_t segments_ = 0;
    std::vector<Arc> arcs_;
};

}  // namespace

void add_group_handles(const NotedDeck& deck, std::vector<DeckHandle>& handles) {
    for (const DeckGroup& group : deck.groups)
        if (group.group_type != 0)
            GroupHandles(deck, group, handles).add();
}

}  // namespace brelan::tool
