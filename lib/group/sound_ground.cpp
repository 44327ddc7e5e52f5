#include "group/sound_ground.h"

#include <algorithm>
#include <cmath>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"
#include "plane/foot.h"
#include "plane/openings.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

constexpr double STRAIGHT = 1.0E-6;  // of an opening: two sides in one line
constexpr double BEND = 1.0E-3;      // of the shorter side at a node: its way off the line of both
constexpr double BORDER_STRAIGHT = 1.0E-6, DRAWN_STRAIGHT = 1.0E-7;  // of the size of the coordinates

constexpr std::size_t USUAL_SPOKES = 8;

// What lies beside a side that starts at a node.
struct Spoke {
    NodeNumber end;
    Few<MaterialNumber, 2> left, right;
    bool is_kept = false;  // of a line, a joint, a drawing or ground that stays as it is
    bool is_drawn = false;

    bool is_side_of_ground() const { return !left.empty() || !right.empty(); }
};

Spoke& spoke_to(std::vector<Spoke>& spokes, NodeNumber end) {
    const auto found =
        std::find_if(spokes.begin(), spokes.end(), [&](const Spoke& spoke) { return spoke.end == end; });
    if (found != spokes.end())
        return *found;
    spokes.push_back({end, {}, {}, false, false});
    return spokes.back();
}

bool has_node(const Corners& corners, NodeNumber node) {
    return std::find(corners.n, corners.n + 4, node) != corners.n + 4;
}

bool has_node(const Solid& solid, NodeNumber node) {
    return solid.node[0] == node || solid.node[1] == node || solid.node[2] == node || solid.node[3] == node;
}

std::vector<Spoke> spokes_of(const Mesh& mesh, const Engine& engine, const Drawn& drawn, NodeNumber node) {
    std::vector<Spoke> spokes;
    spokes.reserve(USUAL_SPOKES);
    for (const ElementNumber e : elements_at(engine, node)) {
        if (mesh.type[e] == ELEMENT_DELETED || !has_node(corners_of(mesh, e), node))
            continue;
        if (!is_solid(mesh, e)) {
            for (const NodeNumber other : corners_of(mesh, e).n)
                if (other.names_one() && other != node)
                    spoke_to(spokes, other).is_kept = true;
            continue;
        }
        const Solid solid = solid_of(mesh, e);
        const bool stays = !is_cuttable(mesh, engine, e);
        for (std::size_t i = 0; i < solid.count; ++i) {
            if (solid.node[i] != node)
                continue;
            Spoke& out = spoke_to(spokes, solid.behind(i));
            out.left.push_back(mesh.words[e].material);
            out.is_kept = out.is_kept || stays;
            Spoke& in = spoke_to(spokes, solid.before(i));
            in.right.push_back(mesh.words[e].material);
            in.is_kept = in.is_kept || stays;
        }
    }
    for (Spoke& spoke : spokes) {
        std::sort(spoke.left.begin(), spoke.left.end());
        std::sort(spoke.right.begin(), spoke.right.end());
        const Side side = side_between(node, spoke.end);
        const bool stays = drawn.sides.count(side) != 0;
        spoke.is_drawn = stays && drawn.found.count(side) == 0;
        spoke.is_kept = spoke.is_kept || stays || !(spoke.left == spoke.right);
    }
    return spokes;
}

// What the shortest side of an outline is worth beside its angles: half the square of twice its share of the
// longest, the opening of a triangle of that slenderness.
double side_shape(std::span<const Point> corners) {
    double shortest = 0.0, longest = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point &a = corners[i], &b = corners[(i + 1) % corners.size()];
        const double length = distance_64(a, b);
        shortest = i == 0 ? length : std::min(shortest, length);
        longest = std::max(longest, length);
    }
    return longest > 0.0 ? 2.0 * (shortest / longest) * (shortest / longest) : 0.0;
}

double split_shape(std::span<const Point> c) {
    const auto half = [&](std::size_t i, std::size_t j, std::size_t k) {
        const std::array<Point, 3> triangle{c[i], c[j], c[k]};
        return orientation(c[i], c[j], c[k]) > 0 ? openings_of(triangle).smallest : -1.0;
    };
    return std::max(std::min(half(0, 1, 2), half(0, 2, 3)), std::min(half(0, 1, 3), half(1, 2, 3)));
}

}  // namespace

void Drawn::divide(const Side& side, std::span<const NodeNumber> nodes_between) {
    for (Sides* all : {&sides, &found}) {
        if (all->erase(side) == 0)
            continue;
        NodeNumber last = side.first;
        for (const NodeNumber node : nodes_between) {
            all->insert(side_between(last, node));
            last = node;
        }
        all->insert(side_between(last, side.second));
    }
}

void hold_joints_of_file(Mesh& mesh, const Engine& engine) {
    if (!has_node_values(mesh.kind))
        return;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e)
        if (mesh.type[e] == ELEMENT_CONTINUUM && mesh.attribute[e] >= FIRST_JOINT_CODE)
            mesh.attribute[e] = -mesh.attribute[e] - FIRST_JOINT_CODE;
}

Outline outline_of(const Mesh& mesh, const Solid& solid) {
    Outline outline{{}, solid.count};
    for (std::size_t i = 0; i < solid.count; ++i)
        outline.corner[i] = node_point(mesh, solid.node[i]);
    return outline;
}

Outline outline_of(const Mesh& mesh, const Solid& solid, NodeNumber node, const Point& place) {
    Outline outline = outline_of(mesh, solid);
    for (std::size_t i = 0; i < solid.count; ++i)
        if (solid.node[i] == node)
            outline.corner[i] = place;
    return outline;
}

CornerKey key_of(const Solid& solid) {
    CornerKey key = solid.node;
    std::sort(key.begin(), key.end());
    return key;
}

Sides sides_between_materials(const Mesh& mesh, const Engine& engine) {
    std::vector<std::pair<Side, MaterialNumber>> seen;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e) {
        if (!is_solid(mesh, e))
            continue;
        const Solid solid = solid_of(mesh, e);
        for (std::size_t i = 0; i < solid.count; ++i)
            seen.emplace_back(side_between(solid.node[i], solid.behind(i)), mesh.words[e].material);
    }
    std::sort(seen.begin(), seen.end());
    Sides sides;
    for (std::size_t i = 1; i < seen.size(); ++i)
        if (seen[i].first == seen[i - 1].first && seen[i].second != seen[i - 1].second)
            sides.insert(seen[i].first);
    return sides;
}

bool is_cuttable(const Mesh& mesh, const Engine& engine, ElementNumber e) {
    if (!is_solid(mesh, e))
        return false;
    if (engine.workable[e].names_one())
        return true;
    const Solid solid = solid_of(mesh, e);
    for (const ElementNumber other : elements_at(engine, solid.node[0]))
        if (other != e && is_solid(mesh, other) && engine.workable[other].names_one() &&
            key_of(solid_of(mesh, other)) == key_of(solid))
            return true;
    return false;
}

SideUsers users_of(const Mesh& mesh, const Engine& engine, const Side& side) {
    SideUsers users;
    for (const ElementNumber e : elements_beside(engine, side.first, side.second)) {
        if (mesh.type[e] == ELEMENT_DELETED)
            continue;
        if (mesh.type[e] != ELEMENT_CONTINUUM) {
            const ElementWords& words = mesh.words[e];
            if (side_between(words.corner_1, words.corner_2) == side)
                users.lines.push_back(e);
            continue;
        }
        const Solid solid = solid_of(mesh, e);
        for (std::size_t i = 0; i < solid.count; ++i)
            if (side_between(solid.node[i], solid.behind(i)) == side) {
                (is_joint(mesh, e) ? users.joints : users.solids).push_back(e);
                break;
            }
    }
    return users;
}

Solids solids_with(const Mesh& mesh, const Engine& engine, NodeNumber node) {
    Solids solids;
    for (const ElementNumber e : elements_at(engine, node)) {
        if (!is_solid(mesh, e))
            continue;
        if (const Solid solid = solid_of(mesh, e); has_node(solid, node))
            solids.push_back(solid);
    }
    return solids;
}

NodeFreedom freedom_of(const Mesh& mesh, const Engine& engine, const Drawn& drawn, NodeNumber node) {
    if (engine.frozen[node] != 0 || drawn.nodes.count(node) != 0)
        return {};
    std::vector<NodeNumber> kept;
    bool is_drawn = false, is_placed = false;
    for (const Spoke& spoke : spokes_of(mesh, engine, drawn, node)) {
        if (spoke.is_kept)
            kept.push_back(spoke.end);
        // A line element that runs across elements was tied to the ground at its ends alone: here is one, be
        // the next of the line in one line with it.
        is_placed = is_placed || (spoke.is_kept && !spoke.is_side_of_ground());
        is_drawn = is_drawn || spoke.is_drawn;
    }
    if (kept.empty())
        return {Freedom::moves, {}, {}};
    if (kept.size() != 2 || is_placed)
        return {};
    const Point at = node_point(mesh, node);
    Point from = node_point(mesh, kept[0]), to = node_point(mesh, kept[1]);
    // A border is as straight as the digits of its file, a drawn line as those of its nodes.
    const double size = 1.0 + std::abs(static_cast<double>(at.x)) + std::abs(static_cast<double>(at.y));
    const Foot foot = foot_on(from, to, at);
    const double shorter = std::min(distance_64(from, at), distance_64(to, at));
    const bool straight = foot.share > 0.0 && foot.share < 1.0 && foot.distance <= BEND * shorter &&
                          foot.distance <= (is_drawn ? DRAWN_STRAIGHT : BORDER_STRAIGHT) * size;
    if (!straight)
        return {};
    if (const auto line = drawn.lines.find(node); line != drawn.lines.end()) {
        const auto& [start, end] = line->second;
        const Point first = point_between(start, end, foot_on(start, end, from).share);
        const Point second = point_between(start, end, foot_on(start, end, to).share);
        const Foot on = foot_on(first, second, at);
        if (on.share <= 0.0 || on.share >= 1.0 || on.distance > DRAWN_STRAIGHT * size)
            return {};
        // Where it leaves the two sides it is another line that has none here: it ends short of the next
        // node, or its ground is gone.
        if (foot_on(from, to, first).distance <= BEND * shorter &&
            foot_on(from, to, second).distance <= BEND * shorter) {
            from = first;
            to = second;
        }
    }
    return {Freedom::slides, from, to};
}

double worst_shape(const Mesh& mesh, std::span<const Solid> solids, NodeNumber node, const Point& place) {
    double worst = 4.0;
    for (const Solid& solid : solids) {
        const Outline outline = outline_of(mesh, solid, node, place);
        worst = std::min(worst, side_shape(outline));
        if (worst <= 0.0)
            return worst;
        if (solid.count == 3) {
            const auto& [a, b, c, none] = outline.corner;
            worst = std::min(worst, orientation(a, b, c) > 0 ? openings_of(outline).smallest : -1.0);
            continue;
        }
        const Openings whole = openings_of(outline);
        // A corner that is pushed in is no shape, be its triangles as good as they may.
        if (whole.largest > OPENING_180 + STRAIGHT)
            return -1.0;
        const double as_quadrilateral = whole.largest <= OPENING_165 ? whole.smallest : -1.0;
        worst = std::min(worst, std::max(as_quadrilateral, split_shape(outline)));
    }
    return worst;
}

bool is_better_split(std::span<const Point> corners) {
    return corners.size() == 4 && openings_of(corners).largest > OPENING_165;
}

std::string text_of(const Point& point) {
    std::string text = "(";
    text += std::to_string(point.x);
    text += ", ";
    text += std::to_string(point.y);
    text += ")";
    return text;
}

}  // namespace brelan
