#include "group/path.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

#include "group/conforming_cut.h"
#include "group/engine_mesh.h"
#include "group/node_index.h"
#include "plane/arc.h"
#include "plane/polygon_scan.h"

namespace brelan {

namespace {

constexpr float PARTS_PER_RADIAN = 63.661976F;  // of an arc: one for each 0.9 degree
constexpr std::int32_t FEWEST_PARTS = 20;       // of an arc that is divided by the program
constexpr float FULL_CIRCLE_LOW = 6.282557F, FULL_CIRCLE_HIGH = 6.283814F;

constexpr std::int32_t STRAIGHT = 1, ARC = 2;  // LTYPE

// A pair of points to be cut, and which of its ends are to be placed as nodes.
struct CutPair {
    Point p1, p2;
    bool skips_first = true, skips_second = true;
};

void cut_pairs(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const std::vector<CutPair>& pairs,
               std::int32_t end_rule, bool deferred) {
    constexpr std::int32_t untouched = 3;
    if (end_rule == untouched)
        return;
    const CutMode mode{end_rule, deferred};
    const auto cut = [&](const CutPair& pair) {
        place_ends(mesh, engine, pair.p1, pair.p2, pair.skips_first, pair.skips_second);
        if (end_rule != 0)
            scan_sides(mesh, tolerances, engine, pair.p1, pair.p2, mode);
    };
    if (!deferred) {
        for (const CutPair& pair : pairs) {
            collect_rows(mesh, engine, pair.p1, pair.p2);
            cut(pair);
            split_rows(mesh, engine);
        }
        return;
    }
    for (const CutPair& pair : pairs)
        collect_rows(mesh, engine, pair.p1, pair.p2);
    for (const CutPair& pair : pairs)
        cut(pair);
    split_rows(mesh, engine);
}

class PathBuilder {
public:
    PathBuilder(std::int32_t g, Outline& outline) : g_(g), out_(outline) {}

    Path build(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine) {
        const GroupRow& group = out_.group;
        if (group.segment_count < 1) {
            for (std::int32_t i = 1; i <= group.point_count; ++i)
                path_.point.push_back(at(i));
            path_.edges = path_.point.empty() ? 0 : path_.point.size() - 1;
            return std::move(path_);
        }
        last_ = at(1);
        path_.point.push_back(last_);
        for (std::int32_t k = 1; k <= group.segment_count; ++k)
            add_segment(mesh, group_cards, tolerances, engine, k);
        path_.edges = group.segment_count == group.point_count ? path_.point.size() : path_.point.size() - 1;
        return std::move(path_);
    }

private:
    Point& at(std::int32_t i) { return out_.point[static_cast<std::size_t>(i)]; }
    bool free_line() const { return out_.group.group_type == 2 && out_.group.overlay == 1; }

    void require_divisions(std::int32_t part_count, std::int32_t k) const {
        if (part_count > MOST_POLYGON_POINTS)
            fail("group " + std::to_string(g_) + ", segment " + std::to_string(k) + ": expected at most " +
                 std::to_string(MOST_POLYGON_POINTS) + " parts, found " + std::to_string(part_count));
    }

    void add_segment(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine,
                     std::int32_t k) {
        const SegmentRow& segment = group_cards.segments[g_][k];
        const Point centre{segment.centre_x, segment.centre_y};
        if (segment.segment_type == ARC && segment.begin_angle != segment.end_angle) {
            add_arc(mesh, tolerances, engine, k, segment, centre);
        } else if (segment.segment_type == ARC) {
            at(k) = ellipse_point(segment.begin_angle, centre, segment.half_axis_x, segment.half_axis_y);
            at(k + 1) = ellipse_point(segment.end_angle, centre, segment.half_axis_x, segment.half_axis_y);
            last_ = at(k);
            if (k == 1)
                path_.point.front() = at(k);
            add_straight(mesh, tolerances, engine, k, segment);
        } else if (segment.segment_type == STRAIGHT) {
            add_straight(mesh, tolerances, engine, k, segment);
        }
    }

    void add_straight(Mesh& mesh, const Tolerances& tolerances, Engine& engine, std::int32_t k,
                      const SegmentRow& segment) {
        const bool closes = k == out_.group.point_count;
        const std::int32_t part_count = segment.divisions == 0 ? 1 : std::abs(segment.divisions);
        require_divisions(part_count, k);
        const Point start = at(k);
        const Point end = closes ? at(1) : at(k + 1);
        const Point step{(end.x - start.x) / static_cast<float>(part_count),
                         (end.y - start.y) / static_cast<float>(part_count)};
        std::vector<Point> points{start};
        for (std::int32_t i = 1; i <= part_count; ++i)
            points.push_back({points.back().x + step.x, points.back().y + step.y});
        cut(mesh, tolerances, engine, points, segment, {});
        if (segment.divisions == 1 && segment.end_rule == 0)
            path_.single.push_back(path_.point.size() - 1);
        append(points, closes);
    }

    void add_arc(Mesh& mesh, const Tolerances& tolerances, Engine& engine, std::int32_t k,
                 const SegmentRow& segment, const Point& centre) {
        std::int32_t part_count = std::abs(segment.divisions);
        if (part_count == 0) {
            const float parts =
                std::abs(std::round((segment.end_angle - segment.begin_angle) * PARTS_PER_RADIAN));
            part_count = parts < static_cast<float>(FEWEST_PARTS + 1)      ? FEWEST_PARTS
                         : parts > static_cast<float>(MOST_POLYGON_POINTS) ? MOST_POLYGON_POINTS + 1
                                                                           : static_cast<std::int32_t>(parts);
        }
        require_divisions(part_count, k);
        std::vector<Point> points{
            ellipse_point(segment.begin_angle, centre, segment.half_axis_x, segment.half_axis_y)};
        if (segment.half_axis_x != segment.half_axis_y) {
            const ArcTable table(segment.begin_angle, segment.end_angle, segment.half_axis_x,
                                 segment.half_axis_y, part_count);
            for (std::int32_t i = 1; i <= part_count; ++i)
                points.push_back(table.point(i, centre));
        } else {
            const float step = (segment.end_angle - segment.begin_angle) / static_cast<float>(part_count);
            float angle = segment.begin_angle;
            for (std::int32_t i = 1; i <= part_count; ++i) {
                angle = angle + step;
                points.push_back(ellipse_point(angle, centre, segment.half_axis_x, segment.half_axis_y));
            }
        }
        // A full circle closes on its own start.
        const bool full = segment.begin_angle == 0.0F && segment.end_angle >= FULL_CIRCLE_LOW &&
                          segment.end_angle <= FULL_CIRCLE_HIGH;
        cut(mesh, tolerances, engine, points, segment, full ? std::optional<Point>(last_) : std::nullopt);
        append(points, free_line() && k == out_.group.point_count);
    }

    // Cuts the pairs of a segment; the last point may be replaced by another to close a circle.
    void cut(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const std::vector<Point>& points,
             const SegmentRow& segment, std::optional<Point> closing) {
        const std::size_t part_count = points.size() - 1;
        const std::int32_t end_rule = segment.end_rule;
        const bool places_start = end_rule == 0 || end_rule == -1 || end_rule == -2 || end_rule == 2;
        const bool places_end = end_rule == 0 || end_rule == 1 || end_rule == -2 || end_rule == 2;
        if (!free_line()) {
            std::vector<CutPair> pairs;
            for (std::size_t i = 1; i <= part_count; ++i)
                pairs.push_back({i == 1 ? last_ : points[i - 1],
                                 i == part_count && closing ? *closing : points[i], !(i == 1 && places_start),
                                 !(i == part_count && places_end)});
            cut_pairs(mesh, tolerances, engine, pairs, end_rule, segment.divisions <= 0);
        }
        last_ = points[part_count];
    }

    // The closing point of an outline is not repeated: the region test closes the outline itself.
    void append(const std::vector<Point>& points, bool without_last) {
        path_.point.insert(path_.point.end(), points.begin() + 1,
                           without_last ? points.end() - 1 : points.end());
    }

    std::int32_t g_;
    Outline& out_;
    Path path_;
    Point last_;
};

// --- nodes on the path ---------------------------------------------------------------------------

struct Candidate {
    std::int32_t node;
    float distance;
    Point snapped;
};

void require_room(const Engine& engine, const KeptLine& line) {
    if (line.nodes.size() > static_cast<std::size_t>(MOST_PATH_NODES))
        fail("group " + std::to_string(engine.group) + ": expected a line of at most " +
             std::to_string(MOST_PATH_NODES) + " nodes, found more");
}

// The nodes near an edge of continuum elements that the groups may work on, each at its first place: elements
// in ascending number, corners in order. Every element with a node near the edge is itself near it, so the
// places are those that a look at all elements would give.
std::vector<std::int32_t> nodes_near(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                     const Point& from, const Point& to, std::vector<bool>& seen) {
    std::vector<std::int32_t> nodes;
    for (const std::int32_t e : elements_near(engine, from, to, tolerances.line)) {
        if (!is_selected(mesh, engine, e) || is_joint(mesh, e))
            continue;
        for (const std::int32_t n : corners_of(mesh, e).n) {
            if (n <= 0 || seen[static_cast<std::size_t>(n)])
                continue;
            seen[static_cast<std::size_t>(n)] = true;
            nodes.push_back(n);
        }
    }
    for (const std::int32_t n : nodes)
        seen[static_cast<std::size_t>(n)] = false;
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

}  // namespace

Path build_path(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine,
                std::int32_t g, Outline& outline) {
    return PathBuilder(g, outline).build(mesh, group_cards, tolerances, engine);
}

KeptLine list_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path) {
    KeptLine line;
    std::vector<bool> listed(static_cast<std::size_t>(HIGHEST_NODE_NUMBER) + 1, false);
    std::vector<bool> seen(listed);  // scratch of nodes_near
    for (std::size_t edge = 0; edge < path.edges; ++edge) {
        const Point& from = path.point[edge];
        const Point& to = path.end_of(edge);
        std::vector<Candidate> candidates;
        for (const std::int32_t n : nodes_near(mesh, tolerances, engine, from, to, seen)) {
            if (listed[static_cast<std::size_t>(n)] ||
                is_far(tolerances, engine, from, to, node_point(mesh, n)))
                continue;
            const Snap snap = snap_to_segment(from, to, node_point(mesh, n), tolerances.line);
            if (snap.near)
                candidates.push_back({n, distance(from, snap.point), snap.point});
        }
        sort_candidates(candidates);
        if (std::find(path.single.begin(), path.single.end(), edge) != path.single.end())
            keep_ends(candidates, edge == 0);
        for (const Candidate& candidate : candidates) {
            if (!line.nodes.empty() && line.nodes.back() == candidate.node)
                continue;
            line.nodes.push_back(candidate.node);
            line.points.push_back(candidate.snapped);
            listed[static_cast<std::size_t>(candidate.node)] = true;
        }
        require_room(engine, line);
    }
    return line;
}

KeptLine list_free_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path) {
    KeptLine line;
    for (const Point& point : path.point) {
        std::int32_t node = lowest_node_within(mesh, engine, point, tolerances.same);
        if (node == 0) {
            node = add_node(mesh, engine, point);
            mesh.codes[node][4] = 1;
        }
        line.nodes.push_back(node);
        line.points.push_back(node_point(mesh, node));
        require_room(engine, line);
    }
    return line;
}

}  // namespace brelan
