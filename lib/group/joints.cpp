#include "group/joints.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <unordered_map>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"
#include "plane/polygon_scan.h"

namespace brelan {

namespace {

constexpr float ON_LIMIT = 0.0001F;   // a line node so near to a limit of the mesh lies on it
constexpr float NO_SHIFT = 1.0E-10F;  // shift along a limit that cannot be scaled

void set_joint_attributes(Mesh& mesh, ElementNumber e, std::int32_t joint_attribute) {
    ElementAttributes a = load_attributes(mesh, e);
    a.skeleton = 1;
    a.fluid = joint_attribute;
    a.integration_r = 0;
    a.attribute = -std::abs(joint_attribute) - 100;
    a.thickness = 1.0F;
    a.density = -1.0F;
    store_attributes(mesh, e, a);
}

// Why no twin can be put beside place k of a line, where that can be told: an edge without length has no left
// side, and shifted edges meet nowhere where the line turns back.
std::string missing_place(const Mesh& mesh, std::span<const NodeNumber> nodes, bool closed, std::size_t k) {
    const std::size_t c = nodes.size();
    const NodeNumber before = k > 0 || closed ? nodes[(k + c - 1) % c] : NodeNumber{};
    const NodeNumber behind = k + 1 < c || closed ? nodes[(k + 1) % c] : NodeNumber{};
    const Point at = node_point(mesh, nodes[k]);
    for (const NodeNumber other : {before, behind})
        if (other.names_one() && distance(node_point(mesh, other), at) == 0.0F)
            return ": nodes " + to_string(nodes[k]) + " and " + to_string(other) +
                   " of the line lie at one point, as when two joints of no width lie on one line";
    if (before.is_none() || behind.is_none())
        return "";
    const Point from = node_point(mesh, before), to = node_point(mesh, behind);
    const bool turns = (at.x - from.x) * (to.x - at.x) + (at.y - from.y) * (to.y - at.y) < 0.0F;
    return turns ? ": the line turns back on itself there" : "";
}

void require_place(const Mesh& mesh, const Engine& engine, std::span<const NodeNumber> nodes, bool closed,
                   std::size_t k, const Point& twin) {
    if (std::isfinite(twin.x) && std::isfinite(twin.y))
        return;
    fail("group " + std::to_string(engine.group) +
         ": expected coordinates that are numbers, but the twin of node " + to_string(nodes[k]) +
         " of its line would get one that is none" + missing_place(mesh, nodes, closed, k));
}

}  // namespace

bool is_left(std::span<const Point> line, bool closed, std::size_t k, const Point& centre) {
    const std::size_t last = line.size() - 1;
    if (closed)
        return scan_polygon(centre, line);
    if (k == 0)
        return area_32(line[0], line[1], centre) >= 0.0F;
    if (k == last)
        return area_32(line[last - 1], line[last], centre) >= 0.0F;
    const double turn = area_64(line[k - 1], line[k], line[k + 1]);
    const double before = area_64(line[k - 1], line[k], centre);
    const double behind = area_64(line[k], line[k + 1], centre);
    if (turn >= 0.0)
        return before < 0.0 ? false : behind >= 0.0;
    return before >= 0.0 ? true : behind >= 0.0;
}

std::vector<Point> offset_line(const Mesh& mesh, std::span<const NodeNumber> nodes, bool closed,
                               float joint_thickness) {
    const float thickness = std::abs(joint_thickness);
    std::vector<Point> line = node_points(mesh, nodes);
    const std::size_t c = line.size();
    if (c < 2)
        return line;
    std::vector<Segment> edge;  // shifted; the closing one last
    for (std::size_t k = 0; k + 1 < c; ++k)
        edge.push_back(offset_segment(thickness, line[k], line[k + 1]));
    const auto corner = [](const Segment& one, const Segment& two) {
        return mitre_corner(one.from, one.to, two.from, two.to);
    };
    std::vector<Point> twins(c);
    for (std::size_t k = 1; k + 1 < c; ++k)
        twins[k] = corner(edge[k - 1], edge[k]);
    if (closed) {
        const Segment closing = offset_segment(thickness, line[c - 1], line[0]);
        twins[0] = corner(closing, edge[0]);
        twins[c - 1] = corner(edge[c - 2], closing);
    } else {
        twins[0] = edge[0].from;
        twins[c - 1] = edge[c - 2].to;
    }
    return twins;
}

NodeNumber add_twin(Mesh& mesh, Engine& engine, NodeNumber node, const Point& place) {
    const NodeNumber twin = add_node(mesh, engine, place);
    const auto words = static_cast<std::size_t>(kind_row(mesh.kind).node_codes);
    for (std::size_t i = 0; i < words; ++i)
        mesh.codes[twin][i] = mesh.codes[node][i];
    if (has_node_values(mesh.kind)) {
        mesh.head[twin] = mesh.head[node];
        mesh.coefficient[twin] = mesh.coefficient[node];
    }
    engine.frozen[node] = engine.frozen[twin] = 1;
    return twin;
}

std::vector<NodeNumber> add_twin_line(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                                      bool closed, float joint_thickness) {
    const std::vector<Point> places = offset_line(mesh, nodes, closed, joint_thickness);
    std::vector<NodeNumber> twins;
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        require_place(mesh, engine, nodes, closed, k, places[k]);
        twins.push_back(add_twin(mesh, engine, nodes[k], places[k]));
    }
    return twins;
}

void add_joint(Mesh& mesh, Engine& engine, const Corners& corners, MaterialNumber joint_material,
               std::int32_t joint_attribute) {
    const ElementNumber e = add_element(mesh, engine);
    mesh.type[e] = ELEMENT_CONTINUUM;
    engine.workable[e] = {};
    mesh.words[e].material = joint_material;
    set_joint_attributes(mesh, e, joint_attribute);
    set_corners(mesh, engine, e, corners);
}

void add_joints(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                std::span<const NodeNumber> twins, bool closed, MaterialNumber joint_material,
                std::int32_t joint_attribute) {
    const std::size_t c = nodes.size();
    if (c < 2)
        return;
    for (std::size_t k = 0; k < (closed ? c : c - 1); ++k) {
        const std::size_t next = (k + 1) % c;
        add_joint(mesh, engine, {{nodes[k], nodes[next], twins[next], twins[k]}}, joint_material,
                  joint_attribute);
    }
}

std::vector<MovedElement> move_across(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
                                      std::span<const NodeNumber> twins, bool closed) {
    std::vector<MovedElement> moved_elements;
    if (nodes.size() < 2)
        return moved_elements;
    const std::vector<Point> line = node_points(mesh, nodes);
    std::unordered_map<NodeNumber, std::size_t> place;  // of a node in the list, which names none twice
    for (std::size_t k = 0; k < nodes.size(); ++k)
        place.emplace(nodes[k], k);
    for (const ElementNumber e : elements_with(engine, nodes)) {
        if (mesh.type[e] == ELEMENT_DELETED || (mesh.type[e] == ELEMENT_CONTINUUM && is_joint(mesh, e)))
            continue;
        const Corners before = corners_of(mesh, e);
        Corners after = before;
        bool moved = false;
        Point centre;
        bool has_centroid = false;
        for (int j = 0; j < 4; ++j) {
            const auto found = before.n[j].names_one() ? place.find(before.n[j]) : place.end();
            if (found == place.end())
                continue;
            if (!has_centroid)
                centre = centroid(mesh, e);
            has_centroid = true;
            const bool left = is_left(line, closed, found->second, centre);
            if (left != (engine.side_sign[e] >= 0))
                continue;
            after.n[j] = twins[found->second];
            moved = true;
        }
        if (!moved)
            continue;
        moved_elements.push_back({e, before});
        set_corners(mesh, engine, e, after);
    }
    return moved_elements;
}

void fix_twins(Mesh& mesh, Engine& engine, std::span<const NodeNumber> nodes,
               std::span<const NodeNumber> twins, bool closed, float joint_thickness) {
    const float thickness = std::abs(joint_thickness);
    const std::vector<Point> places = offset_line(mesh, nodes, closed, joint_thickness);
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        const Point line = node_point(mesh, nodes[k]);
        Point twin = places[k];
        if (line.x < engine.limits.left + ON_LIMIT || line.x > engine.limits.right - ON_LIMIT) {
            const float shift = twin.y - line.y;
            if (std::abs(shift) >= NO_SHIFT)
                twin = {line.x, line.y + thickness * thickness / shift};
        }
        if (line.y < engine.limits.bottom + ON_LIMIT) {
            const float shift = twin.x - line.x;
            if (std::abs(shift) >= NO_SHIFT)
                twin = {line.x + thickness * thickness / shift, line.y};
        }
        require_place(mesh, engine, nodes, closed, k, twin);
        move_node(mesh, engine, twins[k], twin);
    }
}

}  // namespace brelan
