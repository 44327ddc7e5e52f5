#include "group/engine_mesh.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "mesh/kinds.h"

namespace brelan {

void set_corners(Mesh& mesh, Engine& engine, ElementNumber e, const Corners& corners) {
    ElementWords& w = mesh.words[e];
    w.corner_1 = corners.n[0];
    w.corner_2 = corners.n[1];
    w.corner_3 = corners.n[2];
    w.corner_4 = corners.n[3];
    engine.element_index.note(mesh, e);
}

Point centroid(const Mesh& mesh, ElementNumber e, std::size_t corners) {
    Point sum;
    float count = 0.0F;
    const ElementWords& w = mesh.words[e];
    const std::array<NodeNumber, 4> nodes{w.corner_1, w.corner_2, w.corner_3, w.corner_4};
    for (const NodeNumber n : std::span(nodes).first(corners)) {
        if (n.is_none())
            continue;
        sum = {sum.x + mesh.x[n], sum.y + mesh.y[n]};
        count = count + 1.0F;
    }
    return {sum.x / count, sum.y / count};
}

std::vector<Point> node_points(const Mesh& mesh, std::span<const NodeNumber> nodes) {
    std::vector<Point> points;
    points.reserve(nodes.size());
    for (const NodeNumber n : nodes)
        points.push_back(node_point(mesh, n));
    return points;
}

NodeNumber add_node(Mesh& mesh, Engine& engine, const Point& point) {
    if (engine.highest_node >= LAST_NODE)
        fail("group engine: expected at most " + std::to_string(HIGHEST_NODE_NUMBER) +
             " node numbers, but the groups need a new one behind the last");
    ++engine.highest_node;
    engine.frozen[engine.highest_node] = 0;
    move_node(mesh, engine, engine.highest_node, point);
    return engine.highest_node;
}

ElementNumber add_element(Mesh& mesh, Engine& engine) {
    if (engine.highest_element >= LAST_ELEMENT)
        fail("group engine: expected at most " + std::to_string(HIGHEST_ELEMENT_NUMBER) +
             " element numbers, but the groups need a new one behind the last");
    ++engine.highest_element;
    if (engine.clears_midsides)
        mesh.words[engine.highest_element].clear_midsides();
    return engine.highest_element;
}

void move_node(Mesh& mesh, Engine& engine, NodeNumber n, const Point& point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y))
        fail("group " + std::to_string(engine.group) + ": expected coordinates that are numbers, but node " +
             to_string(n) + " would get one that is none");
    mesh.x[n] = point.x;
    mesh.y[n] = point.y;
    engine.element_index.note_node(mesh, n);
    note_node_place(mesh, engine, n);
}

void build_indexes(Mesh& mesh, Engine& engine) {
    engine.element_index.build(mesh, engine);
    forget_node_places(engine);
}

void note_element(Mesh& mesh, Engine& engine, ElementNumber e) {
    engine.element_index.note(mesh, e);
}

std::span<const ElementNumber> elements_met_by(Engine& engine, const Point& p1, const Point& p2) {
    engine.look();
    Extent slanting;
    slanting.include(p1, p2);
    return engine.element_index.met_in(engine, box_of(p1, p2).with_room(slanting));
}

std::span<const ElementNumber> elements_near(Engine& engine, const Point& p1, const Point& p2, float reach) {
    engine.look();
    return engine.element_index.in(engine, box_of(p1, p2).with_room({}, reach));
}

std::span<const ElementNumber> elements_over(Engine& engine, const Box& box) {
    engine.look();
    return engine.element_index.over(engine, box);
}

std::vector<ElementNumber> elements_with(const Engine& engine, std::span<const NodeNumber> nodes) {
    engine.look();
    return engine.element_index.with(engine, nodes);
}

ElementsAt elements_at(const Engine& engine, NodeNumber node) {
    engine.look();
    return engine.element_index.at(engine, node);
}

ElementsAt elements_beside(const Engine& engine, NodeNumber from, NodeNumber to) {
    engine.look();
    return engine.element_index.at_end_of(engine, from, to);
}

}  // namespace brelan
