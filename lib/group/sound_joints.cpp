#include "group/sound_joints.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "group/engine_mesh.h"
#include "group/sound_ground.h"
#include "group/sound_parting.h"
#include "mesh/attributes.h"
#include "mesh/kinds.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

constexpr double LONGEST_MITRE = 4.0;  // of the joint's width: what a sharp bend gives

bool is_long_side_of_joint(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b) {
    const std::vector<ElementNumber> joints = users_of(mesh, engine, side_between(a, b)).joints;
    return std::any_of(joints.begin(), joints.end(),
                       [&](ElementNumber e) { return !has_short_side(mesh, e, a, b); });
}

struct Sides {
    bool left = false, right = false;
};

// Whether there is ground to the left and to the right of the way from A to B.
Sides ground_beside(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b) {
    Sides sides;
    for (const Wedge& wedge : wedges_at(mesh, engine, a)) {
        sides.left = sides.left || wedge.behind == b;
        sides.right = sides.right || wedge.before == b;
    }
    return sides;
}

std::string name_of(std::span<const JointRecord> records, NodeNumber a, NodeNumber b) {
    const auto has = [](const std::vector<NodeNumber>& nodes, NodeNumber n) {
        return std::find(nodes.begin(), nodes.end(), n) != nodes.end();
    };
    for (const JointRecord& record : records)
        if ((has(record.nodes, a) && has(record.nodes, b)) || (has(record.twins, a) && has(record.twins, b)))
            return "the joint of group " + std::to_string(record.group);
    return "a joint of the mesh";
}

struct Vector {
    double x = 0.0, y = 0.0;
};

// A line with its twins, for the places of these.
class TwinPlaces {
public:
    TwinPlaces(const Mesh& mesh, const Engine& engine, std::span<const NodeNumber> nodes,
               std::span<const NodeNumber> twins, bool closed, float joint_thickness, double tolerance)
        : mesh_(mesh),
          engine_(engine),
          nodes_(nodes),
          twins_(twins),
          closed_(closed),
          width_(std::abs(static_cast<double>(joint_thickness))),
          tolerance_(tolerance) {}

    Point place(std::size_t k) const {
        const std::optional<Vector> before = normal(k, -1), behind = normal(k, 1);
        const Point at = node_point(mesh_, nodes_[k]);
        if (width_ == 0.0 || (!before && !behind))
            return at;
        if (!before || !behind) {
            const Vector n = before ? *before : *behind;
            return moved(at, end_shift(k, n));
        }
        if (const std::optional<Vector> shift = border_shift(k, *before, *behind))
            return moved(at, *shift);
        const double cosine = before->x * behind->x + before->y * behind->y;
        const Vector sum{before->x + behind->x, before->y + behind->y};
        const double length = std::sqrt(sum.x * sum.x + sum.y * sum.y);
        // The shifted edges meet at width / cos(half the bend), which grows without end as the line turns
        // back.
        if (2.0 * width_ <= LONGEST_MITRE * width_ * length)
            return moved(at, {width_ * sum.x / (1.0 + cosine), width_ * sum.y / (1.0 + cosine)});
        if (length < 1.0E-6)
            return moved(at, {width_ * before->x, width_ * before->y});
        return moved(at, {LONGEST_MITRE * width_ * sum.x / length, LONGEST_MITRE * width_ * sum.y / length});
    }

private:
    static Point moved(const Point& at, const Vector& by) {
        return {static_cast<float>(static_cast<double>(at.x) + by.x),
                static_cast<float>(static_cast<double>(at.y) + by.y)};
    }

    // The left normal of the edge before (-1) or behind (1) a node, edges without length passed over; none
    // where the ground does not open along it.
    std::optional<Vector> normal(std::size_t k, int step) const {
        const std::size_t c = nodes_.size();
        for (std::size_t count = 0; count + 1 < c; ++count) {
            if (!closed_ && (step < 0 ? k == 0 : k + 1 == c))
                return std::nullopt;
            const std::size_t next = step < 0 ? (k + c - 1) % c : (k + 1) % c;
            const NodeNumber a = step < 0 ? nodes_[next] : nodes_[k], b = step < 0 ? nodes_[k] : nodes_[next];
            const Point from = node_point(mesh_, a), to = node_point(mesh_, b);
            const double dx = static_cast<double>(to.x) - static_cast<double>(from.x);
            const double dy = static_cast<double>(to.y) - static_cast<double>(from.y);
            const double length = std::sqrt(dx * dx + dy * dy);
            if (length >= tolerance_) {
                if (!is_long_side_of_joint(mesh_, engine_, a, b))
                    return std::nullopt;
                return Vector{-dy / length, dx / length};
            }
            k = next;
        }
        return std::nullopt;
    }

    // The directions of the sides at a twin that are the border of the ground it belongs to.
    std::vector<Vector> border_at(std::size_t k) const {
        const std::vector<Wedge> wedges = wedges_at(mesh_, engine_, twins_[k]);
        const auto is_shared = [&](NodeNumber other, bool behind) {
            return std::any_of(wedges.begin(), wedges.end(), [&](const Wedge& wedge) {
                return (behind ? wedge.before : wedge.behind) == other;
            });
        };
        std::vector<Vector> border;
        for (const Wedge& wedge : wedges)
            for (const bool behind : {true, false}) {
                const NodeNumber other = behind ? wedge.behind : wedge.before;
                if (is_joint(mesh_, wedge.element) || is_shared(other, behind))
                    continue;
                const Point at = node_point(mesh_, nodes_[k]), to = node_point(mesh_, other);
                const double dx = static_cast<double>(to.x) - static_cast<double>(at.x);
                const double dy = static_cast<double>(to.y) - static_cast<double>(at.y);
                const double length = std::sqrt(dx * dx + dy * dy);
                if (length > 0.0)
                    border.push_back({dx / length, dy / length});
            }
        return border;
    }

    // As far along a border as the width asks for; none where that is too far.
    std::optional<Vector> shift_along(const Vector& border, const Vector& n) const {
        const double rise = border.x * n.x + border.y * n.y;
        if (rise * LONGEST_MITRE < 1.0)
            return std::nullopt;
        return Vector{width_ / rise * border.x, width_ / rise * border.y};
    }

    // At an end the twin goes along the border of the ground it belongs to, where there is one.
    Vector end_shift(std::size_t k, const Vector& n) const {
        for (const Vector& border : border_at(k))
            if (const std::optional<Vector> shift = shift_along(border, n))
                return *shift;
        return {width_ * n.x, width_ * n.y};
    }

    // A bend at the border: one border is followed. Between two the ground of the twin hangs together in it
    // alone, and it stays where it is; the joint has no width there.
    std::optional<Vector> border_shift(std::size_t k, const Vector& before, const Vector& behind) const {
        const std::vector<Vector> border = border_at(k);
        if (border.empty())
            return std::nullopt;
        if (border.size() > 1)
            return Vector{};
        const std::optional<Vector> shift = shift_along(border.front(), before);
        return shift ? shift : shift_along(border.front(), behind);
    }

    const Mesh& mesh_;
    const Engine& engine_;
    std::span<const NodeNumber> nodes_, twins_;
    bool closed_;
    double width_, tolerance_;
};

}  // namespace

void hold_joints_of_file(Mesh& mesh, const Engine& engine) {
    if (!has_node_values(mesh.kind))
        return;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e)
        if (mesh.type[e] == ELEMENT_CONTINUUM && mesh.attribute[e] >= FIRST_JOINT_CODE)
            mesh.attribute[e] = -mesh.attribute[e] - FIRST_JOINT_CODE;
}

OpenedLine open_along(Mesh& mesh, Engine& engine, const SoundLine& line, float joint_thickness,
                      const JointMaterial& material, std::span<const JointRecord> records, double tolerance) {
    const std::vector<NodeNumber>& nodes = line.nodes;
    OpenedLine opened{nodes, {}};
    const std::size_t c = nodes.size();
    if (c < 2)
        return opened;
    const std::string group = "group " + std::to_string(engine.group) + ": ";
    std::vector<std::size_t> edges;  // that get a joint
    std::vector<bool> at_edge(c, false);
    std::set<NodeNumber> visited;
    const auto refuse_return = [&](NodeNumber node) {
        fail(
            group +
            "expected a joint along a line that does not come to a place again, but this one comes back to " +
            text_of(node_point(mesh, node)));
    };
    for (const NodeNumber node : nodes)
        if (!visited.insert(node).second)
            refuse_return(node);
    // A line of two nodes goes forth and back.
    if (line.closed && c == 2 && line.steps[0] != Step::gap && line.steps[1] != Step::gap)
        refuse_return(nodes[0]);
    for (std::size_t k = 0; k < line.steps.size(); ++k) {
        const Step step = line.steps[k];
        const NodeNumber a = nodes[k], b = line.behind(k);
        if (step == Step::place || step == Step::gap)
            continue;
        std::string way = "from ";
        way += text_of(node_point(mesh, a));
        way += " to ";
        way += text_of(node_point(mesh, b));
        if (step == Step::across) {
            way.insert(0, "expected a joint along sides of elements, but its line ");
            way += " crosses ground that is not cut";
            fail(group + way);
        }
        if (is_long_side_of_joint(mesh, engine, a, b))
            fail(group + way + " there is " + name_of(records, a, b) +
                 " already; expected one joint along a line");
        const Sides sides = ground_beside(mesh, engine, a, b);
        if ((sides.left || material.outer_line) && (sides.right || material.inner_line)) {
            edges.push_back(k);
            at_edge[k] = at_edge[(k + 1) % c] = true;
        }
    }
    const auto goes_on = [&](std::size_t k) { return k < line.steps.size() && line.steps[k] != Step::gap; };
    std::vector<Parting> partings(c);
    std::map<NodeNumber, std::size_t> place;  // of a node that gets a twin
    for (std::size_t k = 0; k < c; ++k) {
        const std::size_t last = (k + c - 1) % c;
        const NodeNumber before = (k > 0 || line.closed) && goes_on(last) ? nodes[last] : NodeNumber{};
        const NodeNumber behind = goes_on(k) ? line.behind(k) : NodeNumber{};
        partings[k] = parting_at(mesh, engine, nodes[k], before, behind);
        const bool both = !partings[k].left.empty() && !partings[k].right.empty();
        const bool opens = material.parts_ground ? (both ? !partings[k].is_one() : at_edge[k]) : at_edge[k];
        if (opens && place.emplace(nodes[k], k).second)
            opened.twins[k] = add_twin(mesh, engine, nodes[k], node_point(mesh, nodes[k]));
    }
    for (std::size_t k = 0; k < c; ++k)
        if (const auto first = place.find(nodes[k]); first != place.end())
            opened.twins[k] = opened.twins[first->second];
    for (const std::size_t k : edges)
        if (opened.twins[k] == nodes[k] && opened.twins[(k + 1) % c] == nodes[(k + 1) % c])
            fail(group + "expected a joint that can open, but from " + text_of(node_point(mesh, nodes[k])) +
                 " to " + text_of(node_point(mesh, nodes[(k + 1) % c])) +
                 " the ground holds it at both ends");
    // Lines along the joint go by their side, others with the ground that they end in.
    const std::vector<Point> points = node_points(mesh, nodes);
    for (const ElementNumber e : elements_with(engine, nodes)) {
        if (mesh.type[e] == ELEMENT_DELETED || !material.parts_ground)
            continue;
        const Corners before = corners_of(mesh, e);
        Corners after = before;
        bool moved = false;
        for (NodeNumber& n : after.n) {
            const auto found = n.names_one() ? place.find(n) : place.end();
            if (found == place.end())
                continue;
            const std::size_t k = found->second;
            const bool goes_left =
                mesh.type[e] == ELEMENT_CONTINUUM
                    ? partings[k].left.count(e) != 0
                    : is_left(points, line.closed, k, centroid(mesh, e)) == (engine.side_sign[e] >= 0);
            if (!goes_left)
                continue;
            n = opened.twins[k];
            moved = true;
        }
        if (!moved)
            continue;
        opened.moved.push_back({e, before});
        set_corners(mesh, engine, e, after);
    }
    for (const std::size_t k : edges) {
        const std::size_t next = (k + 1) % c;
        add_joint(mesh, engine, {{nodes[k], nodes[next], opened.twins[next], opened.twins[k]}},
                  material.material, material.attribute);
    }
    // Earlier joints that close on this one. Beside a joint of a width they stay closed: its twins move.
    for (const auto& [node, k] : place)
        for (const NodeNumber side : {node, opened.twins[k]})
            if (joint_thickness == 0.0F)
                open_toe(mesh, engine, side);
    const TwinPlaces places(mesh, engine, nodes, opened.twins, line.closed, joint_thickness, tolerance);
    for (const auto& [node, k] : place)
        move_node(mesh, engine, opened.twins[k], places.place(k));
    return opened;
}

void place_twins(Mesh& mesh, Engine& engine, const JointRecord& record, double tolerance) {
    const TwinPlaces places(mesh, engine, record.nodes, record.twins, record.closed == 1,
                            record.joint_thickness, tolerance);
    for (std::size_t k = 0; k < record.nodes.size(); ++k)
        if (record.twins[k] != record.nodes[k])
            move_node(mesh, engine, record.twins[k], places.place(k));
}

void require_sound_twins(const Mesh& mesh, const Engine& engine, const JointRecord& record) {
    for (const NodeNumber twin : record.twins)
        for (const Solid& solid : solids_with(mesh, engine, twin)) {
            if (!is_cuttable(mesh, engine, solid.element))
                continue;
            for (std::size_t i = 0; i < solid.count; ++i)
                if (orientation(node_point(mesh, solid.node[i]), node_point(mesh, solid.behind(i)),
                                node_point(mesh, solid.behind((i + 1) % solid.count))) <= 0)
                    fail("group " + std::to_string(record.group) + ": its joint of width " +
                         std::to_string(std::abs(record.joint_thickness)) + " leaves no room for element " +
                         to_string(solid.element) + " at " + text_of(node_point(mesh, twin)));
        }
}

}  // namespace brelan
