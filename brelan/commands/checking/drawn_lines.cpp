#include "commands/checking/drawn_lines.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <utility>

#include "analysis/geometry.h"
#include "cli/words.h"
#include "commands/checking/group_text.h"
#include "commands/checking/mesh_places.h"

namespace brelan::tool {

namespace {

using Key = std::pair<ElementClass, std::int32_t>;  // with the material

// A line that the deck wants elements along.
struct DrawnLine {
    const DeckGroup* group = nullptr;
    double offset = 0.0;  // of the elements beside the path, at most
    bool free = false;    // it runs outside the ground too
};

std::int32_t first_of(const DeckCard& card, std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names)
        if (card.field(name) != nullptr)
            return card.integer(name);
    return 0;
}

// A line is to run all along each segment: along sides that are cut, or straight from end to end. One that
// takes the nodes that happen to lie on it is as long as it comes.
bool is_drawn_whole(const DeckGroup& group) {
    constexpr std::int32_t arc = 2;
    return !group.segments.empty() &&
           std::all_of(group.segments.begin(), group.segments.end(), [](const DeckSegment& segment) {
               const bool takes_ends_alone = segment.end_rule == 0 && segment.segment_type == arc;
               return !segment.path.empty() && segment.end_rule != 3 && !takes_ends_alone;
           });
}

class DrawnLines {
public:
    explicit DrawnLines(const NotedDeck& deck) {
        std::size_t last_deletion = 0;
        for (const DeckGroup& group : deck.groups)
            if (std::abs(group.group_type) == 1)
                last_deletion = static_cast<std::size_t>(group.number);
        const DeckCard* listed = deck.card("3.3.5.2");
        const bool some_stay =
            listed == nullptr || listed->type == CardType::list || listed->integer("NOEL") > 0;
        for (const DeckGroup& group : deck.groups)
            if (const DeckCard* card = card_of(deck, group, "3.3.5.4.1-1"))
                take(group, *card, some_stay || static_cast<std::size_t>(group.number) < last_deletion);
    }

    bool is_unknown(const Key& key) const { return unknown_.count(key) != 0; }

    // Of the keys that are known whole.
    std::map<Key, std::vector<DrawnLine>> lines() const {
        std::map<Key, std::vector<DrawnLine>> known = lines_;
        for (const Key& key : unknown_)
            known.erase(key);
        return known;
    }

private:
    void take(const DeckGroup& group, const DeckCard& card, bool doubtful) {
        const bool free = group.group_type == 2 && group.overlay == 1;
        const double width = std::abs(static_cast<double>(card.real("THICj")));
        const auto add = [&](ElementClass of, std::int32_t material, double offset) {
            if (doubtful || (!free && !is_drawn_whole(group)) || group.path.size() < 2)
                unknown_.insert({of, material});
            else
                lines_[{of, material}].push_back({&group, offset, free});
        };
        const auto add_elements = [&](std::int32_t type, std::int32_t material, double offset) {
            constexpr std::int32_t beams = 2, most = 5;
            if (std::abs(type) >= beams && std::abs(type) <= most && material != 0)
                add(std::abs(type) == beams ? ElementClass::beam : ElementClass::truss, material, offset);
        };
        add_elements(card.integer("LTP"), first_of(card, {"LMAT", "LFUN"}), 0.0);
        add_elements(card.integer("LTi"), first_of(card, {"LMi", "LFi"}), 0.0);
        add_elements(card.integer("LTo"), first_of(card, {"LMo", "LFo"}), width);
        if (card.field("MATj") != nullptr)
            add(ElementClass::joint, card.integer("MATj"), width);
    }

    std::map<Key, std::vector<DrawnLine>> lines_;
    std::set<Key> unknown_;
};

double length_of(const DeckPoint& a, const DeckPoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

// A path with the length from its start to each point.
struct Course {
    std::vector<DeckPoint> points;  // a closed one repeats its first
    std::vector<double> until;

    explicit Course(const DeckGroup& group) : points(group.path) {
        if (group.closed && length_of(points.front(), points.back()) > 0.0)
            points.push_back(points.front());
        until.push_back(0.0);
        for (std::size_t i = 1; i < points.size(); ++i)
            until.push_back(until.back() + length_of(points[i - 1], points[i]));
    }

    // The edges before one that run along it, forth or back.
    std::vector<std::size_t> earlier_along(std::size_t i, double nothing) const {
        std::vector<std::size_t> along;
        for (std::size_t k = 1; k < i; ++k) {
            const double x = points[i].x - points[i - 1].x, y = points[i].y - points[i - 1].y;
            const auto off = [&](const DeckPoint& p) {
                return std::abs(x * (p.y - points[i - 1].y) - y * (p.x - points[i - 1].x));
            };
            if (std::max(off(points[k - 1]), off(points[k])) <= nothing * std::hypot(x, y))
                along.push_back(k);
        }
        return along;
    }

    // The length of the part that has ground on one of its sides, a way that it goes again once.
    double in_ground(const MeshPlaces& places, double step) const {
        double length = 0.0;
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double edge = until[i] - until[i - 1];
            const int parts = std::clamp(static_cast<int>(std::ceil(edge / step)), 1, 10000);
            const double x = (points[i].x - points[i - 1].x) / parts,
                         y = (points[i].y - points[i - 1].y) / parts;
            const std::vector<std::size_t> along = earlier_along(i, 20.0 * places.nothing());
            const double aside = edge > 0.0 ? 20.0 * places.nothing() * parts / edge : 0.0;
            for (int k = 0; k < parts; ++k) {
                const DeckPoint p{points[i - 1].x + (k + 0.5) * x, points[i - 1].y + (k + 0.5) * y};
                if (std::any_of(along.begin(), along.end(), [&](std::size_t e) {
                        return distance_to_segment(p, points[e - 1], points[e]) <= 20.0 * places.nothing();
                    }))
                    continue;
                if (places.inside({p.x - aside * y, p.y + aside * x}) ||
                    places.inside({p.x + aside * y, p.y - aside * x}))
                    length += edge / parts;
            }
        }
        return length;
    }

    bool is_near(const DeckPoint& p, double room) const {
        for (std::size_t i = 1; i < points.size(); ++i)
            if (distance_to_segment(p, points[i - 1], points[i]) <= room)
                return true;
        return false;
    }
};

// The elements of a key: how long they are together, and their mean length.
struct Made {
    double length = 0.0, mean = 0.0;
    const Element* off = nullptr;  // one that leaves all lines
};

Made elements_of(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, const Key& key,
                 const std::vector<Course>& courses, double offset) {
    Made made;
    std::vector<std::size_t> members;
    for (std::size_t i = 0; i < mesh.elements.size(); ++i)
        if (mesh.elements[i].of == key.first && mesh.elements[i].words.material.value == key.second &&
            corners[i].complete())
            members.push_back(i);
    for (const std::size_t i : members)
        made.length += distance(mesh.point(corners[i][0]), mesh.point(corners[i][1]));
    made.mean = members.empty() ? 0.0 : made.length / static_cast<double>(members.size());
    // Nodes are put onto the path within the tolerances of a cut.
    constexpr double SHARE = 0.05;
    const double room = SHARE * made.mean + offset;
    for (const std::size_t i : members)
        for (int k = 0; k < 2 && made.off == nullptr; ++k) {
            const Position p = mesh.point(corners[i][k]);
            if (std::none_of(courses.begin(), courses.end(), [&](const Course& course) {
                    return course.is_near({p.x, p.y}, room);
                }))
                made.off = &mesh.elements[i];
        }
    return made;
}

// Nodes on an arc cut its corners off, the more the fewer they are.
double lost_in_bends(const Course& course, double mean) {
    double lost = 0.0;
    for (std::size_t i = 2; i < course.points.size(); ++i) {
        const DeckPoint &a = course.points[i - 2], &b = course.points[i - 1], &c = course.points[i];
        const double turn = std::atan2((b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x),
                                       (b.x - a.x) * (c.x - b.x) + (b.y - a.y) * (c.y - b.y));
        lost += std::abs(turn);
    }
    // A piece of length m over a turn t is shorter by m t^2 / 24, and t is below 2 or so.
    constexpr double SHARE = 0.1;
    return SHARE * mean * lost;
}

// The lengths of the lines of a mesh that no deck but this one's groups can have changed.
std::map<Key, double> standing_lines(const NotedDeck& deck, const std::optional<MeshLists>& before) {
    std::map<Key, double> lengths;
    const bool is_edited = deck.card("3.6.1-1") != nullptr || deck.card("3.6.2-1") != nullptr ||
                           deck.card("3.6.3-1") != nullptr || !deck.second_mesh.empty();
    if (!before || is_edited || deck.groups.empty())
        return lengths;
    const bool deletes = std::any_of(deck.groups.begin(), deck.groups.end(),
                                     [](const DeckGroup& group) { return std::abs(group.group_type) == 1; });
    for (const Element& e : before->elements) {
        const std::int32_t from = before->node_place(e.words.corner_1.value),
                           to = before->node_place(e.words.corner_2.value);
        if (e.of == ElementClass::solid || (deletes && e.of == ElementClass::joint) ||
            from == MeshLists::NONE || to == MeshLists::NONE)
            continue;
        lengths[{e.of, e.words.material.value}] += distance(before->point(from), before->point(to));
    }
    return lengths;
}

std::string what_should_be(const std::vector<DrawnLine>& lines, double drawn, double standing) {
    if (lines.empty())
        return fmt::format("the mesh before the run has {:.5g} of it", standing);
    std::string text = fmt::format("the deck draws {} of {:.5g} within the ground",
                                   counted(lines.size(), "line", "lines"), drawn);
    if (standing > 0.0)
        text += fmt::format(" beside {:.5g} in the mesh before the run", standing);
    return text;
}

}  // namespace

std::vector<std::string> changed_lines(const NotedDeck& deck, const std::optional<MeshLists>& before,
                                       const MeshLists& made) {
    std::vector<std::string> remarks;
    const DrawnLines all(deck);
    std::map<Key, std::vector<DrawnLine>> wanted_lines = all.lines();
    const std::map<Key, double> standing = standing_lines(deck, before);
    if (before)
        for (const Element& e : before->elements)
            if (const Key key{e.of, e.words.material.value}; standing.count(key) == 0)
                wanted_lines.erase(key);
    for (const auto& [key, length] : standing)
        if (!all.is_unknown(key))
            wanted_lines.try_emplace(key);
    if (wanted_lines.empty())
        return remarks;
    const std::vector<CornerPlaces> corners = corners_of(made);
    const MeshPlaces places(made);
    for (const auto& [key, lines] : wanted_lines) {
        std::vector<Course> courses;
        double offset = 0.0;
        for (const DrawnLine& line : lines) {
            courses.emplace_back(*line.group);
            offset = std::max(offset, line.offset);
        }
        const Made found = elements_of(made, corners, key, courses, offset);
        double drawn = 0.0, room = 0.1 * found.mean;
        for (std::size_t k = 0; k < lines.size(); ++k) {
            drawn += lines[k].free ? courses[k].until.back()
                                   : courses[k].in_ground(
                                         places, std::max(0.05 * found.mean, 1e-3 * courses[k].until.back()));
            room += lost_in_bends(courses[k], found.mean) + 4.0 * offset;
        }
        const auto stood = standing.find(key);
        const double before_it = stood == standing.end() ? 0.0 : stood->second;
        constexpr double SHARE = 0.01;
        room += SHARE * (drawn + before_it);
        if (std::abs(found.length - drawn - before_it) <= room)
            continue;
        std::string where;
        if (found.off != nullptr && before_it == 0.0) {
            const Position at =
                middle(made, corners[static_cast<std::size_t>(made.element_place(found.off->number.value))]);
            where = fmt::format("; element {} at {} leaves the line", found.off->number.value,
                                place_text({at.x, at.y}));
        }
        remarks.push_back(fmt::format("{}: {}, and the mesh has {:.5g}{}", group_name(key.first, key.second),
                                      what_should_be(lines, drawn, before_it), found.length, where));
    }
    return remarks;
}

}  // namespace brelan::tool
