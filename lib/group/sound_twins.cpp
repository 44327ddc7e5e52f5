#include "group/sound_twins.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "group/engine_mesh.h"
#include "group/sound_ground.h"
#include "group/sound_parting.h"
#include "mesh/attributes.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

constexpr double LONGEST_MITRE = 4.0;  // of the joint's width: what a sharp bend gives

struct Vector {
    double x = 0.0, y = 0.0;
};

// A piece of a joint beside one of its nodes: the node lies on the line, or by the width to its left.
struct JointEdge {
    Point from;
    Vector left;
    double off = 0.0;
};

// A line with its twins, for the places of these.
class TwinPlaces {
public:
    TwinPlaces(const Mesh& mesh, const Engine& engine, const JointRecord& record, double tolerance)
        : mesh_(mesh),
          engine_(engine),
          group_(record.group),
          nodes_(record.nodes),
          twins_(record.twins),
          closed_(record.closed == 1),
          width_(std::abs(static_cast<double>(record.joint_thickness))),
          tolerance_(tolerance) {
        const std::size_t c = nodes_.size();
        for (std::size_t k = 0; k < c; ++k) {
            if (twins_[k] == nodes_[k])
                continue;
            ++uses_[twins_[k]];
            for (const int step : {-1, 1}) {
                if (!closed_ && (step < 0 ? k == 0 : k + 1 == c))
                    continue;
                const std::optional<Vector> left =
                    normal_to(k, step < 0 ? (k + c - 1) % c : (k + 1) % c, step);
                if (!left)
                    continue;
                const Point at = node_point(mesh, nodes_[k]);
                edges_[nodes_[k]].push_back({at, *left, 0.0});
                edges_[twins_[k]].push_back({at, *left, width_});
            }
        }
    }

    // The place of the twin of the line's node k.
    Point place(std::size_t k) const {
        if (const auto edges = edges_.find(twins_[k]); edges != edges_.end() && is_between_lines(k))
            return place_between(k, edges->second);
        const std::optional<Vector> before = normal(k, -1), behind = normal(k, 1);
        const Point at = node_point(mesh_, nodes_[k]);
        if (width_ == 0.0 || (!before && !behind))
            return at;
        if (!before || !behind) {
            const Vector n = before ? *before : *behind;
            return end_place(k, n);
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
    // True for the node of ground between two parts of the line that cross or meet there.
    bool is_between_lines(std::size_t k) const {
        const auto& edges = edges_.at(twins_[k]);
        return width_ > 0.0 && (uses_.at(twins_[k]) > 1 ||
                                std::any_of(edges.begin(), edges.end(),
                                            [](const JointEdge& edge) { return edge.off == 0.0; }));
    }

    Point place_between(std::size_t k, const std::vector<JointEdge>& edges) const {
        const JointEdge& one = edges.front();
        if (edges.size() == 1)
            return end_place(k, one.left);  // GCOVR_EXCL_LINE: no random deck has the others without a length
        const JointEdge& two = edges.back();
        const double turn = one.left.x * two.left.y - one.left.y * two.left.x;
        // How far both lie to the left of the first one's start.
        const double to_two =
            two.left.x * (static_cast<double>(two.from.x) - static_cast<double>(one.from.x)) +
            two.left.y * (static_cast<double>(two.from.y) - static_cast<double>(one.from.y)) + two.off;
        // Edges in one line meet everywhere.
        if (std::abs(turn) < 1.0E-6 && one.off == two.off)
            return moved(one.from, {one.off * one.left.x, one.off * one.left.y});
        const Vector meeting{(one.off * two.left.y - to_two * one.left.y) / turn,
                             (to_two * one.left.x - one.off * two.left.x) / turn};
        if (std::abs(turn) < 1.0E-6 || meeting.x * meeting.x + meeting.y * meeting.y >
                                           4.0 * LONGEST_MITRE * LONGEST_MITRE * width_ * width_)
            fail("group " + std::to_string(group_) + ": its joint of width " + std::to_string(width_) +
                 " leaves no room between two parts of its line at " + text_of(one.from));
        return moved(one.from, meeting);
    }

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
            if (!is_place(k, next))
                return normal_to(k, next, step);
            k = next;
        }
        return std::nullopt;  // GCOVR_EXCL_LINE: some edge of a line with a joint has a length
    }

    bool is_place(std::size_t k, std::size_t next) const {
        const Point from = node_point(mesh_, nodes_[k]), to = node_point(mesh_, nodes_[next]);
        return distance_64(from, to) < tolerance_;
    }

    // The same of the edge between neighbours of the line.
    std::optional<Vector> normal_to(std::size_t k, std::size_t next, int step) const {
        const NodeNumber a = nodes_[step < 0 ? next : k], b = nodes_[step < 0 ? k : next];
        if (is_place(k, next) || !is_long_side_of_joint(mesh_, engine_, a, b))
            return std::nullopt;
        const Point from = node_point(mesh_, a), to = node_point(mesh_, b);
        const double dx = static_cast<double>(to.x) - static_cast<double>(from.x);
        const double dy = static_cast<double>(to.y) - static_cast<double>(from.y);
        const double length = std::sqrt(dx * dx + dy * dy);
        return Vector{-dy / length, dx / length};
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
                const Point at = node_point(mesh_, twins_[k]), to = node_point(mesh_, other);
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

    // At an end the twin goes along the border of the ground it belongs to, where there is one. The line's
    // own node may have gone along the line, which does not matter to the way from it.
    Point end_place(std::size_t k, const Vector& n) const {
        const Point at = node_point(mesh_, nodes_[k]), twin = node_point(mesh_, twins_[k]);
        const bool has_gone = uses_.count(nodes_[k]) != 0;
        const double off = has_gone ? n.x * (static_cast<double>(twin.x) - static_cast<double>(at.x)) +
                                          n.y * (static_cast<double>(twin.y) - static_cast<double>(at.y))
                                    : 0.0;
        for (const Vector& border : border_at(k))
            if (const std::optional<Vector> shift = shift_along(border, n)) {
                const double share = (width_ - off) / width_;
                return moved(has_gone ? twin : at, {share * shift->x, share * shift->y});
            }
        return moved(at, {width_ * n.x, width_ * n.y});
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
    std::int32_t group_;
    std::span<const NodeNumber> nodes_, twins_;
    bool closed_;
    double width_, tolerance_;
    std::map<NodeNumber, std::vector<JointEdge>> edges_;  // by node of the line and twin
    std::map<NodeNumber, int> uses_;                      // places of a twin
};

}  // namespace

std::string name_of_joint(std::span<const JointRecord> records, NodeNumber a, NodeNumber b) {
    const auto has = [](const std::vector<NodeNumber>& nodes, NodeNumber n) {
        return std::find(nodes.begin(), nodes.end(), n) != nodes.end();
    };
    for (const JointRecord& record : records)
        if (record.group_type < 0 && ((has(record.nodes, a) && has(record.nodes, b)) ||
                                      (has(record.twins, a) && has(record.twins, b))))
            return "the joint of group " + std::to_string(record.group);
    return "a joint of the mesh";
}

bool is_long_side_of_joint(const Mesh& mesh, const Engine& engine, NodeNumber a, NodeNumber b) {
    const std::vector<ElementNumber> joints = users_of(mesh, engine, side_between(a, b)).joints;
    return std::any_of(joints.begin(), joints.end(),
                       [&](ElementNumber e) { return !has_short_side(mesh, e, a, b); });
}

void place_twins(Mesh& mesh, Engine& engine, const JointRecord& record, double tolerance) {
    const TwinPlaces places(mesh, engine, record, tolerance);
    std::vector<std::pair<NodeNumber, Point>> moves;
    for (std::size_t k = 0; k < record.nodes.size(); ++k)
        if (record.twins[k] != record.nodes[k])
            moves.emplace_back(record.twins[k], places.place(k));
    for (const auto& [twin, place] : moves)
        move_node(mesh, engine, twin, place);
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
