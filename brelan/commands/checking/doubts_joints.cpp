// Joints that meet a joint of no width: two nodes lie at one place there, the line's and its twin, and a line
// through both of them has no direction to put its own twins on.
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "commands/checking/doubts.h"
#include "commands/checking/group_text.h"

namespace brelan::tool {

namespace {

// A straight part of a path.
struct Edge {
    DeckPoint from, to;
    bool cuts = false;  // the mesh gets a node wherever one is wanted
};

bool is_joint(const DeckGroup& group) {
    return group.group_type <= -2 && group.group_type >= -4;
}

std::vector<Edge> edges_of(const DeckGroup& group) {
    std::vector<Edge> edges;
    for (const DeckSegment& segment : group.segments) {
        const bool cuts = segment.end_rule != 0 && segment.end_rule != 3;
        // One element from end to end takes one node of the two at each.
        if (segment.divisions == 1 && segment.end_rule == 0)
            continue;
        for (std::size_t i = 0; i + 1 < segment.path.size(); ++i)
            edges.push_back({segment.path[i], segment.path[i + 1], cuts});
    }
    return edges;
}

double side_of(const Edge& edge, const DeckPoint& p) {
    return (edge.to.x - edge.from.x) * (p.y - edge.from.y) - (edge.to.y - edge.from.y) * (p.x - edge.from.x);
}

// Where two edges meet: an end of one on the other, or their crossing.
std::optional<DeckPoint> meeting(const Edge& a, const Edge& b, double nothing) {
    for (const DeckPoint& p : {b.from, b.to})
        if (distance_to_segment(p, a.from, a.to) <= nothing)
            return p;
    for (const DeckPoint& p : {a.from, a.to})
        if (distance_to_segment(p, b.from, b.to) <= nothing)
            return p;
    const double b_from = side_of(a, b.from), b_to = side_of(a, b.to);
    if (b_from * b_to >= 0.0 || side_of(b, a.from) * side_of(b, a.to) >= 0.0)
        return std::nullopt;
    const double share = b_from / (b_from - b_to);
    return DeckPoint{b.from.x + share * (b.to.x - b.from.x), b.from.y + share * (b.to.y - b.from.y)};
}

// True when the edge runs along a side of the mesh at a point of it.
bool along_side(const Edge& edge, const DeckPoint& at, const MeshPlaces& places) {
    const double length = std::hypot(edge.to.x - edge.from.x, edge.to.y - edge.from.y);
    const double share = 20.0 * places.nothing() / std::max(length, places.nothing());
    const DeckPoint step{share * (edge.to.x - edge.from.x), share * (edge.to.y - edge.from.y)};
    return places.on_side(at) &&
           (places.on_side({at.x + step.x, at.y + step.y}) || places.on_side({at.x - step.x, at.y - step.y}));
}

// The place where an edge comes upon two nodes of an earlier joint's edge: where nodes are, or where one of
// the two cuts the mesh so that there will be some.
std::optional<DeckPoint> double_place(const Edge& earlier, const Edge& edge, const MeshPlaces& places) {
    const double nothing = places.nothing();
    const std::optional<DeckPoint> met = meeting(earlier, edge, nothing);
    if (!met)
        return std::nullopt;
    if (places.inside(*met) && ((earlier.cuts && (edge.cuts || places.on_side(*met))) ||
                                (edge.cuts && along_side(earlier, *met, places))))
        return met;
    for (std::size_t n = 0; n < places.mesh().nodes.size(); ++n) {
        const Position p = places.mesh().point(static_cast<std::int32_t>(n));
        const DeckPoint node{p.x, p.y};
        if (distance_to_segment(node, earlier.from, earlier.to) <= nothing &&
            distance_to_segment(node, edge.from, edge.to) <= nothing)
            return node;
    }
    return std::nullopt;
}

// A joint of no width that is there when a group begins.
struct Joint {
    std::string words;
    std::vector<Edge> edges;
};

// The mesh's own.
Joint joint_of(const MeshLists& mesh) {
    Joint joint{"the mesh has a joint of no width there", {}};
    for (const Element& e : mesh.elements) {
        std::array<Position, 4> corner{};
        std::size_t found = 0;
        for (const NodeNumber n : {e.words.corner_1, e.words.corner_2, e.words.corner_3, e.words.corner_4})
            if (const std::int32_t place = mesh.node_place(n.value); place != MeshLists::NONE)
                corner[found++] = mesh.point(place);
        const auto alike = [](const Position& a, const Position& b) { return a.x == b.x && a.y == b.y; };
        if (e.of == ElementClass::joint && found == 4 && alike(corner[0], corner[3]) &&
            alike(corner[1], corner[2]))
            joint.edges.push_back({{corner[0].x, corner[0].y}, {corner[1].x, corner[1].y}, false});
    }
    return joint;
}

// Where the first two nodes at one place are met, in words; empty for nowhere.
std::string fault_of(const std::vector<Edge>& edges, const std::vector<Joint>& earlier,
                     const MeshPlaces& places) {
    for (const Edge& edge : edges)
        for (const Joint& joint : earlier)
            for (const Edge& of_joint : joint.edges)
                if (const std::optional<DeckPoint> at = double_place(of_joint, edge, places))
                    return fmt::format("at {}, where two nodes lie at one place: {}", place_text(*at),
                                       joint.words);
    return "";
}

}  // namespace

void doubt_joints(Doubts& doubts, const DeckMeshes& meshes) {
    if (meshes.places == nullptr)
        return;
    const MeshPlaces& places = *meshes.places;
    const NotedDeck& deck = doubts.deck();
    std::vector<Joint> earlier{joint_of(places.mesh())};
    for (const DeckGroup& group : deck.groups) {
        // What is deleted may leave one node of the two.
        if (std::abs(group.group_type) == 1)
            return;
        if (!is_joint(group))
            continue;
        const std::vector<Edge> edges = edges_of(group);
        if (const std::string found = fault_of(edges, earlier, places); !found.empty())
            doubts.end_of_run("joint-on-joint", card_of(deck, group, "3.3.5.4.2"),
                              fmt::format("{}: no joint can be made {}", group_name(group), found));
        const DeckCard* material = card_of(deck, group, "3.3.5.4.1-1");
        if (material != nullptr && material->real("THICj") == 0.0F)
            earlier.push_back(
                {fmt::format("those of the joint of {}, which has no width", group_name(group)), edges});
    }
}

}  // namespace brelan::tool
