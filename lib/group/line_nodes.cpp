#include "group/line_nodes.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "group/engine_mesh.h"
#include "group/node_index.h"
#include "plane/foot.h"

namespace brelan {

namespace {

struct Candidate {
    NodeNumber node;
    float distance;
};

void require_room(const Engine& engine, std::size_t nodes) {
    if (nodes > static_cast<std::size_t>(MOST_PATH_NODES))
        fail("group " + std::to_string(engine.group) + ": expected a line of at most " +
             std::to_string(MOST_PATH_NODES) + " nodes, found more");
}

// The nodes near an edge of continuum elements that the groups may work on, each at its first place: elements
// in ascending number, corners in order. Every element with a node near the edge is itself near it, so the
// places are those that a look at all elements would give.
std::vector<NodeNumber> nodes_near(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                   const Point& from, const Point& to, std::vector<bool>& seen) {
    std::vector<NodeNumber> nodes;
    for (const ElementNumber e :
         elements_over(engine, box_of(from, to).with_room({}, std::abs(tolerances.line)))) {
        if (!is_selected(mesh, engine, e) || is_joint(mesh, e))
            continue;
        for (const NodeNumber n : corners_of(mesh, e).n) {
            if (n.is_none() || seen[n.place()])
                continue;
            seen[n.place()] = true;
            nodes.push_back(n);
        }
    }
    for (const NodeNumber n : nodes)
        seen[n.place()] = false;
    return nodes;
}

// True for a node beyond the reach of snap_to_segment at both ends and everywhere between.
bool is_far(const Tolerances& tolerances, const Engine& engine, const Point& from, const Point& to,
            const Point& node) {
    if (!engine.uses_indexes)
        return false;
    const float size = std::max({std::abs(from.x), std::abs(from.y), std::abs(to.x), std::abs(to.y)});
    const float reach = std::abs(tolerances.line) * 1.001F + size * 1.0E-6F + 1.0E-18F;
    return node.x < std::min(from.x, to.x) - reach || node.x > std::max(from.x, to.x) + reach ||
           node.y < std::min(from.y, to.y) - reach || node.y > std::max(from.y, to.y) + reach;
}

// Rising D; of equal values the later candidate comes first.
void sort_candidates(std::vector<Candidate>& candidates) {
    std::reverse(candidates.begin(), candidates.end());
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.distance < b.distance; });
}

// An undivided segment whose ends alone were placed gives its ends: the first edge both, a later one its
// last.
void keep_ends(std::vector<Candidate>& candidates, bool first_edge) {
    if (first_edge && candidates.size() > 2)
        candidates = {candidates.front(), candidates.back()};
    else if (!first_edge && candidates.size() > 1)
        candidates = {candidates.back()};
}

enum class Revisits { dropped, kept };

// The way to a node from the start of an edge that it is near to. Where every visit counts so does every
// digit: an edge nearly along an axis is no reason to miss a node.
std::optional<float> place_along(const Point& from, const Point& to, const Point& node, float limit,
                                 Revisits revisits) {
    if (revisits == Revisits::kept) {
        const Foot foot = foot_on(from, to, node);
        if (foot.distance >= static_cast<double>(limit))
            return std::nullopt;
        return static_cast<float>(foot.share * foot_on(from, from, to).distance);
    }
    const Snap snap = snap_to_segment(from, to, node, limit);
    return snap.near ? std::optional<float>(distance(from, snap.point)) : std::nullopt;
}

std::vector<LineNode> nodes_along(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path,
                                  Revisits revisits) {
    std::vector<LineNode> line;
    std::vector<bool> listed(LAST_NODE.place() + 1, false);
    std::vector<bool> seen(listed);  // scratch of nodes_near
    for (std::size_t edge = 0; edge < path.edges; ++edge) {
        const Point& from = path.points[edge];
        const Point& to = path.end_of(edge);
        std::vector<Candidate> candidates;
        for (const NodeNumber n : nodes_near(mesh, tolerances, engine, from, to, seen)) {
            if ((listed[n.place()] && revisits == Revisits::dropped) ||
                is_far(tolerances, engine, from, to, node_point(mesh, n)))
                continue;
            if (const std::optional<float> along =
                    place_along(from, to, node_point(mesh, n), tolerances.line, revisits))
                candidates.push_back({n, *along});
        }
        sort_candidates(candidates);
        if (std::find(path.single.begin(), path.single.end(), edge) != path.single.end())
            keep_ends(candidates, edge == 0);
        for (const Candidate& candidate : candidates) {
            if (!line.empty() && line.back().node == candidate.node)
                continue;
            line.push_back({candidate.node, edge});
            listed[candidate.node.place()] = true;
        }
        require_room(engine, line.size());
    }
    return line;
}

}  // namespace

std::vector<NodeNumber> list_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                        const Path& path) {
    std::vector<NodeNumber> line;
    for (const LineNode& on : nodes_along(mesh, tolerances, engine, path, Revisits::dropped))
        line.push_back(on.node);
    return line;
}

std::vector<LineNode> list_all_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                          const Path& path) {
    return nodes_along(mesh, tolerances, engine, path, Revisits::kept);
}

std::vector<NodeNumber> list_free_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                        const Path& path) {
    std::vector<NodeNumber> line;
    for (const Point& point : path.points) {
        NodeNumber node = lowest_node_within(mesh, engine, point, tolerances.same);
        if (node.is_none()) {
            node = add_node(mesh, engine, point);
            mesh.codes[node][4] = 1;
        }
        line.push_back(node);
        require_room(engine, line.size());
    }
    return line;
}

}  // namespace brelan
