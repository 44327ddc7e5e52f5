#include "group/path.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

#include "group/conforming_cut.h"
#include "group/engine_mesh.h"
#include "group/node_index.h"

namespace brelan {

namespace {

constexpr float PARTS_PER_RADIAN = 63.661976F;  // of an arc: one for each 0.9 degree
constexpr std::int32_t FEWEST_PARTS = 20;       // of an arc that is divided by the program
constexpr float FULL_CIRCLE_LOW = 6.282557F, FULL_CIRCLE_HIGH = 6.283814F;

constexpr std::int32_t STRAIGHT = 1, ARC = 2;  // LTYPE

// A pair of points to be cut, and which of its ends are to be placed as nodes.
struct CutPair {
    Point P1, P2;
    bool skip1 = true, skip2 = true;
};

void cut_pairs(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const std::vector<CutPair>& pairs, std::int32_t IEND, bool deferred) {
    constexpr std::int32_t untouched = 3;
    if (IEND == untouched)
        return;
    const CutMode mode{IEND, deferred};
    const auto cut = [&](const CutPair& pair) {
        PLACEEND(mesh, engine, pair.P1, pair.P2, pair.skip1, pair.skip2);
        if (IEND != 0)
            SIDESCAN(mesh, tolerances, engine, pair.P1, pair.P2, mode);
    };
    if (!deferred) {
        for (const CutPair& pair : pairs) {
            COLLECT(mesh, engine, pair.P1, pair.P2);
            cut(pair);
            SPLITROWS(mesh, engine);
        }
        return;
    }
    for (const CutPair& pair : pairs)
        COLLECT(mesh, engine, pair.P1, pair.P2);
    for (const CutPair& pair : pairs)
        cut(pair);
    SPLITROWS(mesh, engine);
}

class PathBuilder {
public:
    PathBuilder(std::int32_t g, Outline& outline) : g_(g), out_(outline) {}

    Path build(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine) {
        const GroupRow& group = out_.group;
        if (group.NSEGMENT < 1) {
            for (std::int32_t i = 1; i <= group.NPOINT; ++i)
                path_.point.push_back(at(i));
            path_.edges = path_.point.empty() ? 0 : path_.point.size() - 1;
            return std::move(path_);
        }
        LAST_ = at(1);
        path_.point.push_back(LAST_);
        for (std::int32_t k = 1; k <= group.NSEGMENT; ++k)
            add_segment(mesh, group_cards, tolerances, engine, k);
        path_.edges = group.NSEGMENT == group.NPOINT ? path_.point.size() : path_.point.size() - 1;
        return std::move(path_);
    }

private:
    Point& at(std::int32_t i) { return out_.point[static_cast<std::size_t>(i)]; }
    bool free_line() const { return out_.group.MTYPE == 2 && out_.group.OVERLAY == 1; }

    void require_divisions(std::int32_t N, std::int32_t k) const {
        if (N > MAXPOLYGON)
            FAIL("group " + std::to_string(g_) + ", segment " + std::to_string(k) + ": expected at most " +
                 std::to_string(MAXPOLYGON) + " parts, found " + std::to_string(N));
    }

    void add_segment(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine, std::int32_t k) {
        const SegmentRow& segment = group_cards.segments[g_][k];
        const Point centre{segment.Xo, segment.Yo};
        if (segment.LTYPE == ARC && segment.Qb != segment.Qe) {
            add_arc(mesh, tolerances, engine, k, segment, centre);
        } else if (segment.LTYPE == ARC) {
            at(k) = ELLIPT(segment.Qb, centre, segment.Rx, segment.Ry);
            at(k + 1) = ELLIPT(segment.Qe, centre, segment.Rx, segment.Ry);
            LAST_ = at(k);
            if (k == 1)
                path_.point.front() = at(k);
            add_straight(mesh, tolerances, engine, k, segment);
        } else if (segment.LTYPE == STRAIGHT) {
            add_straight(mesh, tolerances, engine, k, segment);
        }
    }

    void add_straight(Mesh& mesh, const Tolerances& tolerances, Engine& engine, std::int32_t k, const SegmentRow& segment) {
        const bool closes = k == out_.group.NPOINT;
        const std::int32_t N = segment.NDIV == 0 ? 1 : std::abs(segment.NDIV);
        require_divisions(N, k);
        const Point start = at(k);
        const Point end = closes ? at(1) : at(k + 1);
        const Point step{(end.x - start.x) / static_cast<float>(N),
                         (end.y - start.y) / static_cast<float>(N)};
        std::vector<Point> SUB{start};
        for (std::int32_t i = 1; i <= N; ++i)
            SUB.push_back({SUB.back().x + step.x, SUB.back().y + step.y});
        cut(mesh, tolerances, engine, SUB, segment, {});
        if (segment.NDIV == 1 && segment.IEND == 0)
            path_.single.push_back(path_.point.size() - 1);
        append(SUB, closes);
    }

    void add_arc(Mesh& mesh, const Tolerances& tolerances, Engine& engine, std::int32_t k, const SegmentRow& segment, const Point& centre) {
        std::int32_t N = std::abs(segment.NDIV);
        if (N == 0) {
            const float parts = std::abs(std::round((segment.Qe - segment.Qb) * PARTS_PER_RADIAN));
            N = parts < static_cast<float>(FEWEST_PARTS + 1) ? FEWEST_PARTS
                : parts > static_cast<float>(MAXPOLYGON)     ? MAXPOLYGON + 1
                                                             : static_cast<std::int32_t>(parts);
        }
        require_divisions(N, k);
        std::vector<Point> SUB{ELLIPT(segment.Qb, centre, segment.Rx, segment.Ry)};
        if (segment.Rx != segment.Ry) {
            const ArcTable table(segment.Qb, segment.Qe, segment.Rx, segment.Ry, N);
            for (std::int32_t i = 1; i <= N; ++i)
                SUB.push_back(table.point(i, centre));
        } else {
            const float step = (segment.Qe - segment.Qb) / static_cast<float>(N);
            float angle = segment.Qb;
            for (std::int32_t i = 1; i <= N; ++i) {
                angle = angle + step;
                SUB.push_back(ELLIPT(angle, centre, segment.Rx, segment.Ry));
            }
        }
        // A full circle closes on its own start.
        const bool full =
            segment.Qb == 0.0F && segment.Qe >= FULL_CIRCLE_LOW && segment.Qe <= FULL_CIRCLE_HIGH;
        cut(mesh, tolerances, engine, SUB, segment, full ? std::optional<Point>(LAST_) : std::nullopt);
        append(SUB, free_line() && k == out_.group.NPOINT);
    }

    // Cuts the pairs of a segment; the last point may be replaced by another to close a circle.
    void cut(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const std::vector<Point>& SUB, const SegmentRow& segment, std::optional<Point> closing) {
        const std::size_t N = SUB.size() - 1;
        const std::int32_t IEND = segment.IEND;
        const bool places_start = IEND == 0 || IEND == -1 || IEND == -2 || IEND == 2;
        const bool places_end = IEND == 0 || IEND == 1 || IEND == -2 || IEND == 2;
        if (!free_line()) {
            std::vector<CutPair> pairs;
            for (std::size_t i = 1; i <= N; ++i)
                pairs.push_back({i == 1 ? LAST_ : SUB[i - 1], i == N && closing ? *closing : SUB[i],
                                 !(i == 1 && places_start), !(i == N && places_end)});
            cut_pairs(mesh, tolerances, engine, pairs, IEND, segment.NDIV <= 0);
        }
        LAST_ = SUB[N];
    }

    // The closing point of an outline is not repeated: the region test closes the outline itself.
    void append(const std::vector<Point>& SUB, bool without_last) {
        path_.point.insert(path_.point.end(), SUB.begin() + 1, without_last ? SUB.end() - 1 : SUB.end());
    }

    std::int32_t g_;
    Outline& out_;
    Path path_;
    Point LAST_;
};

// --- nodes on the path ---------------------------------------------------------------------------

struct Candidate {
    std::int32_t node;
    float D;
    Point snapped;
};

void require_room(const Engine& engine, const KeptLine& line) {
    if (line.nodes.size() > static_cast<std::size_t>(MAXPATHNODES))
        FAIL("group " + std::to_string(engine.group) + ": expected a line of at most " +
             std::to_string(MAXPATHNODES) + " nodes, found more");
}

// The nodes near an edge of continuum elements that the groups may work on, each at its first place: elements
// in ascending number, corners in order. Every element with a node near the edge is itself near it, so the
// places are those that a look at all elements would give.
std::vector<std::int32_t> nodes_near(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Point& from, const Point& to, std::vector<bool>& seen) {
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

// True for a node beyond the reach of NEARLINE at both ends and everywhere between.
bool is_far(const Tolerances& tolerances, const Engine& engine, const Point& from, const Point& to, const Point& node) {
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
                     [](const Candidate& a, const Candidate& b) { return a.D < b.D; });
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

Path BUILDPATH(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine, std::int32_t g, Outline& outline) {
    return PathBuilder(g, outline).build(mesh, group_cards, tolerances, engine);
}

KeptLine LISTNODES(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path) {
    KeptLine line;
    std::vector<bool> listed(static_cast<std::size_t>(MAXNP) + 1, false);
    std::vector<bool> seen(listed);  // scratch of nodes_near
    for (std::size_t edge = 0; edge < path.edges; ++edge) {
        const Point& from = path.point[edge];
        const Point& to = path.end_of(edge);
        std::vector<Candidate> candidates;
        for (const std::int32_t n : nodes_near(mesh, tolerances, engine, from, to, seen)) {
            if (listed[static_cast<std::size_t>(n)] || is_far(tolerances, engine, from, to, node_point(mesh, n)))
                continue;
            const Snap snap = NEARLINE(from, to, node_point(mesh, n), tolerances.line);
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

KeptLine LISTFREENODES(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path) {
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
