#include "group/sound_lines.h"

#include <algorithm>
#include <map>
#include <set>

#include "group/engine_mesh.h"
#include "group/sound_ground.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

// Nodes of a line at one place, with the edges of the path that come there.
struct LinePlace {
    std::vector<NodeNumber> nodes;
    std::size_t first_edge, last_edge;
};

std::vector<LinePlace> places_of(const Mesh& mesh, const std::vector<LineNode>& listed, double tolerance) {
    std::vector<LinePlace> places;
    for (const LineNode& on : listed) {
        const Point at = node_point(mesh, on.node);
        if (places.empty() || distance_64(at, node_point(mesh, places.back().nodes.front())) >= tolerance)
            places.push_back({{}, on.edge, on.edge});
        places.back().nodes.push_back(on.node);
        places.back().last_edge = on.edge;
    }
    for (LinePlace& place : places) {
        std::sort(place.nodes.begin(), place.nodes.end());
        place.nodes.erase(std::unique(place.nodes.begin(), place.nodes.end()), place.nodes.end());
    }
    return places;
}

// The node of a place that is joined to another, or none.
NodeNumber joined_to(const Mesh& mesh, const Engine& engine, NodeNumber node, const LinePlace& place) {
    const auto found = std::find_if(place.nodes.begin(), place.nodes.end(),
                                    [&](NodeNumber other) { return are_joined(mesh, engine, node, other); });
    return found == place.nodes.end() ? NodeNumber{} : *found;
}

// Goes on from the last node of a chain to the next place, through other nodes of its own place where need
// be. False where it cannot.
bool go_on(const Mesh& mesh, const Engine& engine, const LinePlace& here, const LinePlace& next,
           std::vector<NodeNumber>& chain) {
    std::map<NodeNumber, NodeNumber> reached_from{{chain.back(), {}}};
    std::vector<NodeNumber> waiting{chain.back()};
    for (std::size_t w = 0; w < waiting.size(); ++w) {
        const NodeNumber there = joined_to(mesh, engine, waiting[w], next);
        if (there.names_one()) {
            std::vector<NodeNumber> through;
            for (NodeNumber n = waiting[w]; n != chain.back(); n = reached_from[n])
                through.push_back(n);
            chain.insert(chain.end(), through.rbegin(), through.rend());
            chain.push_back(there);
            return true;
        }
        for (const NodeNumber other : here.nodes)
            if (reached_from.count(other) == 0 && are_joined(mesh, engine, waiting[w], other)) {
                reached_from[other] = waiting[w];
                waiting.push_back(other);
            }
    }
    return false;
}

// Whether the path from one place to another is the way between them.
bool is_straight(const Mesh& mesh, const Path& path, const LinePlace& from, const LinePlace& to,
                 double tolerance) {
    const Point a = node_point(mesh, from.nodes.front()), b = node_point(mesh, to.nodes.front());
    for (std::size_t edge = from.last_edge; edge % path.edges != to.first_edge; ++edge) {
        if (edge - from.last_edge > path.edges ||
            foot_on(a, b, path.end_of(edge % path.edges)).distance >= tolerance)
            return false;
    }
    return true;
}

// The next place of a line where none of the next one is joined to its node: a side along the path may pass
// nodes that stand beside it.
std::size_t place_past(const Mesh& mesh, const Engine& engine, const Path& path,
                       const std::vector<LinePlace>& places, std::size_t here, NodeNumber node,
                       double tolerance) {
    constexpr std::size_t MOST_PASSED = 4;
    const std::size_t end = std::min(places.size(), here + 2 + MOST_PASSED);
    for (std::size_t i = here + 2; i < end; ++i)
        if (joined_to(mesh, engine, node, places[i]).names_one() &&
            is_straight(mesh, path, places[here], places[i], tolerance))
            return i;
    return here + 1;
}

bool has_left(const Mesh& mesh, const std::vector<ElementNumber>& solids, NodeNumber a, NodeNumber b) {
    return std::any_of(solids.begin(), solids.end(), [&](ElementNumber e) {
        const Solid solid = solid_of(mesh, e);
        for (std::size_t i = 0; i < solid.count; ++i)
            if (solid.node[i] == a && solid.behind(i) == b)
                return true;
        return false;
    });
}

// `straight` tells whether the path goes straight from A to B.
Step step_of(const Mesh& mesh, Engine& engine, NodeNumber a, NodeNumber b, bool straight, double tolerance) {
    const Point from = node_point(mesh, a), to = node_point(mesh, b);
    const SideUsers users = users_of(mesh, engine, side_between(a, b));
    const bool joined = a != b && !(users.solids.empty() && users.joints.empty());
    // A side of solids is one, be it as short as it may: where a line crosses a fan of sides, for example.
    const bool near = distance_64(from, to) < tolerance;
    if (near && users.solids.empty())
        return joined || a == b ? Step::place : Step::gap;
    if (!straight && !near)
        return Step::gap;
    if (joined) {
        std::vector<ElementNumber> all = users.solids;
        all.insert(all.end(), users.joints.begin(), users.joints.end());
        return has_left(mesh, all, a, b) && has_left(mesh, all, b, a) ? Step::side : Step::border;
    }
    const Point middle{(from.x + to.x) * 0.5F, (from.y + to.y) * 0.5F};
    for (const ElementNumber e : elements_near(engine, middle, middle)) {
        if (!is_solid(mesh, e))
            continue;
        const Solid solid = solid_of(mesh, e);
        bool inside = true;
        for (std::size_t i = 0; i < solid.count; ++i)
            inside = inside && orientation(node_point(mesh, solid.node[i]), node_point(mesh, solid.behind(i)),
                                           middle) >= 0;
        if (inside)
            return Step::across;
    }
    return Step::gap;
}

}  // namespace

SoundLine sound_line(const Mesh& mesh, Engine& engine, const std::vector<LineNode>& listed, const Path& path,
                     double tolerance) {
    SoundLine line;
    line.closed = path.closed;
    const std::vector<LinePlace> places = places_of(mesh, listed, tolerance);
    if (places.empty())
        return line;
    const auto begin = std::find_if(
        places.front().nodes.begin(), places.front().nodes.end(),
        [&](NodeNumber n) { return places.size() > 1 && joined_to(mesh, engine, n, places[1]).names_one(); });
    line.nodes.push_back(begin == places.front().nodes.end() ? places.front().nodes.front() : *begin);
    for (std::size_t last = 0; last + 1 < places.size();) {
        const std::size_t first = line.nodes.size() - 1;
        std::size_t next = last + 1;
        if (!go_on(mesh, engine, places[last], places[next], line.nodes)) {
            next = place_past(mesh, engine, path, places, last, line.nodes.back(), tolerance);
            const NodeNumber there = joined_to(mesh, engine, line.nodes.back(), places[next]);
            line.nodes.push_back(there.names_one() ? there : places[next].nodes.front());
        }
        const bool straight = is_straight(mesh, path, places[last], places[next], tolerance);
        for (std::size_t k = first; k + 1 < line.nodes.size(); ++k)
            line.steps.push_back(
                step_of(mesh, engine, line.nodes[k], line.nodes[k + 1], straight, tolerance));
        last = next;
    }
    if (!line.closed)
        return line;
    if (line.nodes.size() > 1 && line.nodes.front() == line.nodes.back())
        line.nodes.pop_back();
    else if (line.nodes.size() > 1)
        line.steps.push_back(step_of(mesh, engine, line.nodes.back(), line.nodes.front(),
                                     is_straight(mesh, path, places.back(), places.front(), tolerance),
                                     tolerance));
    return line;
}

std::vector<LinePiece> pieces_of(const SoundLine& line) {
    const std::size_t c = line.nodes.size();
    std::vector<LinePiece> pieces;
    if (c == 0)
        return pieces;
    std::set<Side> gone;
    pieces.push_back({{0}, false});
    for (std::size_t k = 0; k < line.steps.size(); ++k) {
        const std::size_t next = (k + 1) % c;
        if (line.steps[k] == Step::place)
            continue;  // the line goes on from the other node
        const bool goes_on =
            line.steps[k] != Step::gap && gone.insert(side_between(line.nodes[k], line.nodes[next])).second;
        LinePiece& piece = pieces.back();
        if (piece.places.size() == 1)
            piece.places.front() = k;
        if (goes_on && piece.places.back() == k)
            piece.places.push_back(next);
        else if (goes_on)
            pieces.push_back({{k, next}, false});
        else
            pieces.push_back({{next}, false});
    }
    if (line.closed && pieces.size() == 1 && pieces.front().places.size() == c + 1) {
        pieces.front().places.pop_back();
        pieces.front().closed = true;
    }
    pieces.erase(std::remove_if(pieces.begin(), pieces.end(),
                                [](const LinePiece& piece) { return piece.places.size() < 2; }),
                 pieces.end());
    return pieces;
}

bool are_joined(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b) {
    const SideUsers users = users_of(mesh, engine, side_between(a, b));
    return !users.solids.empty() || !users.joints.empty();
}

}  // namespace brelan
