// Outlines and lines of groups: their counts, their shape, and how they lie on the mesh.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>

#include "commands/checking/doubts.h"
#include "commands/checking/group_text.h"
#include "mesh/group_tables.h"
#include "model/group_path.h"
#include "plane/polygon_scan.h"

namespace brelan::tool {

namespace {

double distance(const DeckPoint& a, const DeckPoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

bool is_line(const DeckGroup& group) {
    return std::abs(group.group_type) == 2;
}
bool is_free_line(const DeckGroup& group) {
    return group.group_type == 2 && group.overlay == 1;
}

// --- counts --------------------------------------------------------------------------------------

void doubt_points(Doubts& doubts, const DeckGroup& group, const DeckCard& points) {
    const std::int32_t point_count = points.integer("NPOINT");
    std::set<std::int32_t> numbers;
    for (const DeckCard& card : doubts.deck().cards) {
        if (card.group != group.number || card.number != "3.3.5.4.2-1")
            continue;
        const std::int32_t point_number = card.integer("NP");
        if (point_number < 1 || point_number > MOST_GROUP_POINTS)
            doubts.end_of_run(
                "bad-number", &card,
                fmt::format("NP {}: points have numbers from 1 to {}", point_number, MOST_GROUP_POINTS));
        else if (point_number > point_count)
            doubts.doubt(
                "counts-disagree", &card,
                fmt::format("NP {}: {} points are announced on Card 3.3.5.4.2", point_number, point_count));
        else if (!numbers.insert(point_number).second)
            doubts.doubt("counts-disagree", &card,
                         fmt::format("NP {}: the point is given twice", point_number));
    }
}

void doubt_segments(Doubts& doubts, const DeckGroup& group, const DeckCard& points,
                    const DeckCard& segments) {
    const std::int32_t point_count = points.integer("NPOINT");
    const std::int32_t segment_count = segments.integer("NSEGMENT");
    const std::int32_t wanted = is_line(group) ? point_count - 1 : point_count;
    if (point_count < (is_line(group) ? 2 : 1) && segment_count < 2)
        doubts.doubt("bad-count", &points,
                     fmt::format("NPOINT {}: too few points for what is drawn", point_count));
    else if (segment_count == 0)
        doubts.doubt("uncut", &segments, "NSEGMENT 0: the points are the path, and the mesh is not cut");
    else if (segment_count < wanted)
        doubts.doubt(
            "counts-disagree", &segments,
            is_line(group)
                ? fmt::format("NSEGMENT {} of {} points: the points from {} on are not used", segment_count,
                              point_count, segment_count + 2)
                : fmt::format("NSEGMENT {} of {} points: a closed outline has as many segments as points; "
                              "point {} is not used",
                              segment_count, point_count, segment_count + 1));
    int number = 0;
    bool arcs = false;
    for (const DeckCard& card : doubts.deck().cards) {
        if (card.group != group.number || card.number != "3.3.5.4.3.1")
            continue;
        arcs = arcs || card.integer("LTYPE") == 2;
        if (card.integer("SEGNO") != ++number)
            doubts.doubt("counts-disagree", &card,
                         fmt::format("SEGNO {}: segments count as they come, this is number {}",
                                     card.integer("SEGNO"), number));
    }
    // Arcs give their own points.
    if (segment_count > wanted && !arcs)
        doubts.doubt("counts-disagree", &segments,
                     fmt::format("NSEGMENT {} of {} points: the last segments have no points of their own",
                                 segment_count, point_count));
}

void doubt_material_line(Doubts& doubts, const DeckGroup& group) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* card = card_of(deck, group, "3.3.5.4.1-1");
    if (deck.kind == LayoutKind::head && group.group_type == -4)
        doubts.doubt(
            "head-stage-joint", &deck.cards[group.card],
            "MTYPE -4: in the head kind its material line is lost, and the cards behind are read wrongly");
    if (card == nullptr)
        return;
    const bool head_code = deck.kind == LayoutKind::temperature || deck.kind == LayoutKind::head;
    for (const auto& [line, material] : {std::pair("LTP", "LMAT"), {"LTi", "LMi"}, {"LTo", "LMo"}})
        if (const DeckField* field = card->field(line);
            field != nullptr && std::abs(field->integer()) >= 2 && card->integer(material) == 0 && !head_code)
            doubts.doubt(
                "no-material", card,
                fmt::format("{} {}: the line's elements get the material 0", line, field->integer()));
}

// --- shape ---------------------------------------------------------------------------------------

double side_of(const DeckPoint& a, const DeckPoint& b, const DeckPoint& p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

// True when two segments cross at a point within both.
bool cross_each_other(const DeckPoint& a, const DeckPoint& b, const DeckPoint& c, const DeckPoint& d) {
    if (std::max(a.x, b.x) < std::min(c.x, d.x) || std::max(c.x, d.x) < std::min(a.x, b.x) ||
        std::max(a.y, b.y) < std::min(c.y, d.y) || std::max(c.y, d.y) < std::min(a.y, b.y))
        return false;
    const double c_side = side_of(a, b, c), d_side = side_of(a, b, d);
    const double a_side = side_of(c, d, a), b_side = side_of(c, d, b);
    const double nothing = 1e-9 * distance(a, b) * distance(c, d);
    return ((c_side > nothing && d_side < -nothing) || (c_side < -nothing && d_side > nothing)) &&
           ((a_side > nothing && b_side < -nothing) || (a_side < -nothing && b_side > nothing));
}

void doubt_crossing(Doubts& doubts, const DeckGroup& group, const DeckCard* card) {
    std::vector<DeckPoint> path = group.path;
    // Arcs that close an outline come back to its first point with a rounding.
    if (group.closed && path.size() > 1 && distance(path.front(), path.back()) < SAME_PLACE)
        path.pop_back();
    const std::size_t edges = group.closed ? path.size() : path.size() - 1;
    const auto end = [&](std::size_t edge) { return path[(edge + 1) % path.size()]; };
    for (std::size_t i = 0; i < edges; ++i)
        for (std::size_t k = i + 2; k < edges; ++k)
            if (cross_each_other(path[i], end(i), path[k], end(k))) {
                doubts.doubt("crosses-itself", card,
                             fmt::format("{}: the path crosses itself, from {} to {} and from {} to {}",
                                         group_name(group), place_text(path[i]), place_text(end(i)),
                                         place_text(path[k]), place_text(end(k))));
                return;
            }
}

double path_area(const std::vector<DeckPoint>& path) {
    double area = 0.0;
    for (std::size_t i = 0; i < path.size(); ++i)
        area += (path[i].x * path[(i + 1) % path.size()].y - path[(i + 1) % path.size()].x * path[i].y) / 2.0;
    return area;
}

// Tables of the program that a path has to fit into.
void doubt_size(Doubts& doubts, const DeckGroup& group) {
    const NotedDeck& deck = doubts.deck();
    for (const DeckSegment& segment : group.segments)
        if (std::abs(segment.divisions) > MOST_SEGMENT_PARTS) {
            doubts.end_of_run("too-large", &deck.cards[segment.card],
                              fmt::format("NDIV {}: a segment has at most {} parts", segment.divisions,
                                          MOST_SEGMENT_PARTS));
            return;
        }
    if (group.path.size() > static_cast<std::size_t>(MOST_POLYGON_POINTS))
        doubts.end_of_run("too-large", card_of(deck, group, "3.3.5.4.2"),
                          fmt::format("{}: a path has at most {} points, this one {}", group_name(group),
                                      MOST_POLYGON_POINTS, group.path.size()));
}

void doubt_shape(Doubts& doubts, const DeckGroup& group) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* card = card_of(deck, group, "3.3.5.4.2");
    if (group.path.size() < 2)
        return;
    doubt_crossing(doubts, group, card);
    for (const DeckSegment& segment : group.segments)
        if (segment.path.size() > 1 && distance(segment.path.front(), segment.path.back()) < SAME_PLACE &&
            segment.segment_type == 1)
            doubts.doubt("no-length", &deck.cards[segment.card],
                         fmt::format("{}: the segment begins and ends at {}", group_name(group),
                                     place_text(segment.path.front())));
    if (!group.closed || is_line(group))
        return;
    const double area = path_area(group.path);
    if (std::abs(area) < SAME_PLACE * SAME_PLACE)
        doubts.doubt("no-area", card, fmt::format("{}: the outline has no area", group_name(group)));
    else if (area < 0.0 && (group.group_type == -3 || group.group_type == -4))
        doubts.doubt("clockwise", card,
                     fmt::format("{}: the outline runs clockwise, so that the joint opens to its outside",
                                 group_name(group)));
}

}  // namespace

void doubt_outlines(Doubts& doubts) {
    const NotedDeck& deck = doubts.deck();
    for (const DeckGroup& group : deck.groups) {
        const DeckCard* points = card_of(deck, group, "3.3.5.4.2");
        const DeckCard* segments = card_of(deck, group, "3.3.5.4.3");
        if (points == nullptr || segments == nullptr)
            continue;
        doubt_points(doubts, group, *points);
        doubt_segments(doubts, group, *points, *segments);
        doubt_material_line(doubts, group);
        doubt_size(doubts, group);
        doubt_shape(doubts, group);
    }
}

// --- on the mesh ---------------------------------------------------------------------------------

namespace {

// What lies on the mesh when a group begins: its own sides and nodes, and the paths that earlier groups have
// cut.
class Ground {
public:
    explicit Ground(const MeshPlaces& places) : places_(places) {}

    const MeshPlaces& places() const { return places_; }

    bool on_side(const DeckPoint& point) const {
        if (places_.on_side(point))
            return true;
        return std::any_of(cut_.begin(), cut_.end(), [&](const auto& side) {
            return distance_to_segment(point, side.first, side.second) <= places_.nothing();
        });
    }

    bool at_node(const DeckPoint& point) const {
        if (places_.at_node(point, SAME_PLACE))
            return true;
        return std::any_of(nodes_.begin(), nodes_.end(),
                           [&](const DeckPoint& node) { return distance(node, point) <= SAME_PLACE; });
    }

    void add(const DeckGroup& group) {
        const bool cuts = !is_free_line(group);
        for (const DeckSegment& segment : group.segments) {
            if (segment.path.empty())
                continue;
            const bool start =
                segment.end_rule == 0 || segment.end_rule == -1 || std::abs(segment.end_rule) == 2;
            const bool end =
                segment.end_rule == 0 || segment.end_rule == 1 || std::abs(segment.end_rule) == 2;
            if (!cuts || start)
                nodes_.push_back(segment.path.front());
            if (!cuts || end)
                nodes_.push_back(segment.path.back());
            for (std::size_t i = 0;
                 cuts && segment.end_rule != 0 && segment.end_rule != 3 && i + 1 < segment.path.size(); ++i)
                cut_.emplace_back(segment.path[i], segment.path[i + 1]);
        }
    }

private:
    const MeshPlaces& places_;
    std::vector<std::pair<DeckPoint, DeckPoint>> cut_;
    std::vector<DeckPoint> nodes_;
};

void doubt_outside(Doubts& doubts, const DeckGroup& group, const Ground& ground) {
    std::vector<DeckPoint> outside;
    for (const DeckPoint& point : group.points)
        if (!ground.places().inside(point) && !ground.at_node(point))
            outside.push_back(point);
    if (outside.empty())
        return;
    doubts.doubt("outside-mesh", card_of(doubts.deck(), group, "3.3.5.4.2"),
                 fmt::format("{}: {} of {} points {} outside the mesh, the first at {}", group_name(group),
                             outside.size(), group.points.size(), outside.size() == 1 ? "lies" : "lie",
                             place_text(outside.front())));
}

// True when the segment runs along sides that are there, so that nothing need be cut.
bool along_sides(const DeckSegment& segment, const Ground& ground) {
    constexpr int samples = 32;
    for (std::size_t i = 0; i + 1 < segment.path.size(); ++i) {
        const DeckPoint &a = segment.path[i], &b = segment.path[i + 1];
        for (int k = 0; k <= samples; ++k) {
            const double share = static_cast<double>(k) / samples;
            if (!ground.on_side({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)}))
                return false;
        }
    }
    return true;
}

void doubt_uncut(Doubts& doubts, const DeckGroup& group, const DeckSegment& segment, const Ground& ground) {
    const DeckCard& card = doubts.deck().cards[segment.card];
    const bool selects_only = std::all_of(group.segments.begin(), group.segments.end(),
                                          [](const DeckSegment& s) { return s.end_rule == 3; });
    // Outlines of 3 throughout are the way to select whole elements.
    if (is_free_line(group) || group.group_type == 5 || (selects_only && !is_line(group)))
        return;
    const bool uncut = segment.end_rule == 0 || segment.end_rule == 3;
    const bool long_line = segment.end_rule == 0 && segment.divisions == 1 && group.group_type == 2;
    if (!uncut || long_line || along_sides(segment, ground))
        return;
    doubts.doubt("uncut", &card,
                 fmt::format("NDIV {}, IEND {}: the mesh is not cut between {} and {}, where it has no sides",
                             segment.divisions, segment.end_rule, place_text(segment.path.front()),
                             place_text(segment.path.back())));
}

void doubt_slivers(Doubts& doubts, const DeckGroup& group, const DeckSegment& segment, const Ground& ground) {
    if (segment.divisions < 2 || is_free_line(group) || segment.end_rule == 3)
        return;
    for (std::size_t i = 0; i + 1 < segment.path.size(); ++i) {
        const DeckPoint &a = segment.path[i], &b = segment.path[i + 1];
        const DeckPoint middle{(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
        const std::optional<double> side = ground.places().shortest_side_at(middle);
        if (!side || distance(a, b) >= *side * (1.0 - 1e-6))
            continue;
        doubts.doubt(
            "divided-otherwise", &doubts.deck().cards[segment.card],
            fmt::format("NDIV {}: its parts are {:.3g} long and elements of the mesh {:.3g}; they are cut "
                        "several times over (NDIV {} cuts them once)",
                        segment.divisions, distance(a, b), *side, -segment.divisions));
        return;
    }
}

// Line elements whose nodes are not those of the mesh beside them.
void doubt_division(Doubts& doubts, const DeckGroup& group, const DeckSegment& segment,
                    const Ground& ground) {
    const DeckCard& card = doubts.deck().cards[segment.card];
    if (is_free_line(group)) {
        std::size_t hanging = 0;
        for (const DeckPoint& point : segment.path)
            hanging += ground.places().inside(point) && !ground.at_node(point) ? 1 : 0;
        if (hanging > 0)
            doubts.doubt(
                "divided-otherwise", &card,
                fmt::format("{} of {} points of the free line have no node of the mesh: its elements hang in "
                            "the air there",
                            hanging, segment.path.size()));
        return;
    }
    if (group.group_type != 2 || segment.divisions != 1 || segment.end_rule != 0 || segment.path.size() < 2)
        return;
    if (const std::size_t nodes = ground.places().nodes_between(segment.path.front(), segment.path.back());
        nodes > 0)
        doubts.doubt("divided-otherwise", &card,
                     fmt::format("NDIV 1, IEND 0: one element from {} to {}, past {} nodes of the mesh",
                                 place_text(segment.path.front()), place_text(segment.path.back()), nodes));
}

}  // namespace

void doubt_cuts(Doubts& doubts, const DeckMeshes& meshes) {
    if (meshes.places == nullptr)
        return;
    Ground ground(*meshes.places);
    for (const DeckGroup& group : doubts.deck().groups) {
        if (group.group_type == 0)
            continue;
        if (!is_free_line(group))
            doubt_outside(doubts, group, ground);
        for (const DeckSegment& segment : group.segments) {
            if (segment.path.size() < 2)
                continue;
            doubt_uncut(doubts, group, segment, ground);
            doubt_slivers(doubts, group, segment, ground);
            doubt_division(doubts, group, segment, ground);
        }
        ground.add(group);
    }
}

}  // namespace brelan::tool
