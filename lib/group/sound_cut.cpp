#include "group/sound_cut.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "group/engine_mesh.h"
#include "group/new_nodes.h"
#include "group/sound_drawing.h"
#include "group/sound_inserts.h"
#include "group/sound_merges.h"
#include "group/sound_moves.h"
#include "group/sound_parts.h"
#include "group/sound_smoothing.h"
#include "group/sound_swaps.h"
#include "plane/foot.h"
#include "plane/orientation.h"

namespace brelan {

namespace {

constexpr double SHORTEST_HALVED = 4.0;  // tolerances
constexpr double LARGEST_SHARE = 0.1;    // of the shortest side that is touched: the most that TOLSAME may be

// Gives the solids that each segment meets.
std::vector<Solids> require_sound_ground(const Mesh& mesh, Engine& engine, const Drawing& drawing,
                                         std::span<const Point> loaded) {
    std::vector<Solids> met;
    met.reserve(drawing.segments.size());
    for (const DrawnSegment& segment : drawing.segments) {
        met.push_back(solids_met_by(mesh, engine, drawing, segment));
        for (const Solid& solid : met.back())
            for (std::size_t i = 0; i < solid.count; ++i) {
                const Point a = node_point(mesh, solid.node[i]), b = node_point(mesh, solid.behind(i));
                const auto where = [&] {
                    return "group " + std::to_string(engine.group) + ", segment " +
                           std::to_string(segment.segment + 1) + ": element " + to_string(solid.element) +
                           " at (" + std::to_string(a.x) + ", " + std::to_string(a.y) + ") ";
                };
                if (orientation(a, b, node_point(mesh, solid.behind((i + 1) % solid.count))) <= 0)
                    fail(where() + "is unsound before the cut: inverted, flat or with a corner pushed in");
                const std::size_t first = solid.node[i].place() - 1;
                const std::size_t second = solid.behind(i).place() - 1;
                if (std::max(first, second) >= loaded.size())
                    continue;
                const double length = distance_64(loaded[first], loaded[second]);
                if (drawing.tolerance > LARGEST_SHARE * length)
                    fail(where() + "has a side of " + std::to_string(length) +
                         "; expected a TOLSAME of at most a tenth of it, found " +
                         std::to_string(drawing.tolerance));
            }
    }
    return met;
}

// True where a segment goes on from a node along a side. Those of other lines that it crosses there do not
// count.
bool goes_on(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Drawing& drawing,
             const DrawnSegment& segment, NodeNumber node) {
    const auto is_of_segment = [&](NodeNumber other) {
        return drawn.sides.count(side_between(node, other)) != 0 && is_on(mesh, drawing, segment, other);
    };
    for (const Solid& solid : solids_with(mesh, engine, node))
        for (std::size_t i = 0; i < solid.count; ++i)
            if (solid.node[i] == node && (is_of_segment(solid.behind(i)) || is_of_segment(solid.before(i))))
                return true;
    return false;
}

bool is_in_cuttable_ground(const Mesh& mesh, const Engine& engine, NodeNumber node) {
    const Solids solids = solids_with(mesh, engine, node);
    return std::any_of(solids.begin(), solids.end(),
                       [&](const Solid& solid) { return is_cuttable(mesh, engine, solid.element); });
}

// Nodes at points that are drawn stay. So does a node where a segment enters the ground, leaves it or crosses
// a side, and none of its own sides goes on from there.
void keep_drawn_nodes(const Mesh& mesh, const Engine& engine, const Drawing& drawing,
                      const std::set<NodeNumber>& nodes, Drawn& drawn) {
    for (const NodeNumber node : nodes) {
        const Point at = node_point(mesh, node);
        const auto ends_segment = [&] {
            return std::any_of(drawing.segments.begin(), drawing.segments.end(),
                               [&](const DrawnSegment& segment) {
                                   return is_on(drawing, segment, at) &&
                                          !goes_on(mesh, engine, drawn, drawing, segment, node);
                               });
        };
        const bool stays = is_pinned(drawing, at) || ends_segment();
        if (stays && is_in_cuttable_ground(mesh, engine, node))
            drawn.nodes.insert(node);
    }
}

// Ends the run at the first solid, by its nodes, that would be flat.
void require_shapes(const Mesh& mesh, const Engine& engine, const Drawing& drawing,
                    const std::set<NodeNumber>& nodes) {
    std::set<ElementNumber> seen;
    for (const NodeNumber node : nodes)
        for (const Solid& solid : solids_with(mesh, engine, node))
            if (seen.insert(solid.element).second && is_flat_as_written(mesh, solid))
                fail(place_in_drawing(engine.group, drawing, node_point(mesh, node)) + "element " +
                     to_string(solid.element) + " at " + text_of(node_point(mesh, node)) +
                     " would be flat by the digits that a mesh file has; what is drawn there lies too close "
                     "together");
}

// The middle of a side, on the line that both of its ends lie on: an end may stand beside it, as other things
// hold it. A side of the border stays straight.
Point middle_on_line(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Side& side,
                     double tolerance) {
    const Point from = node_point(mesh, side.first), to = node_point(mesh, side.second);
    const Point middle = point_between(from, to, 0.5);
    // Of 24,000 random decks none holds a side of the border at both of its ends.
    if (users_of(mesh, engine, side).solids.size() < 2)
        return middle;  // GCOVR_EXCL_LINE
    for (const NodeNumber end : {side.first, side.second}) {
        const auto line = drawn.lines.find(end);
        if (line == drawn.lines.end())
            continue;
        const auto& [start, stop] = line->second;
        if (foot_on(start, stop, from).distance < tolerance && foot_on(start, stop, to).distance < tolerance)
            return point_between(start, stop, foot_on(start, stop, middle).share);
    }
    return middle;
}

}  // namespace

CutPlan cut_soundly(Mesh& mesh, double tolerance, Engine& engine, Drawn& drawn, std::span<const Point> loaded,
                    const Path& path, std::span<const SegmentRow> segments, double width) {
    const Drawing drawing = drawing_of(path, segments, tolerance);
    const std::vector<Solids> met = require_sound_ground(mesh, engine, drawing, loaded);
    const NodeNumber last_before = engine.highest_node;
    const std::set<NodeNumber> on_drawing = move_onto(mesh, engine, drawn, drawing, met);
    CutPlan plan = plan_cut(mesh, engine, drawn, drawing);
    std::set<NodeNumber> nodes = divide_elements(mesh, engine, drawn, drawing, plan, on_drawing);
    nodes.insert(on_drawing.begin(), on_drawing.end());
    keep_drawn_nodes(mesh, engine, drawing, nodes, drawn);
    merge_nodes(mesh, engine, drawn, drawing, plan, nodes, last_before);
    smooth(mesh, engine, drawn, nodes);
    const std::set<NodeNumber> changed = divide_anew(mesh, engine, drawn, nodes);
    smooth(mesh, engine, drawn, changed);
    nodes.insert(changed.begin(), changed.end());
    const std::set<NodeNumber> inserted = insert_nodes(mesh, engine, drawn, drawing, nodes, width);
    nodes.insert(inserted.begin(), inserted.end());
    require_shapes(mesh, engine, drawing, nodes);
    return plan;
}

CutPlan halve_sides(Mesh& mesh, double tolerance, Engine& engine, Drawn& drawn, std::span<const Side> sides) {
    Drawing drawing;
    drawing.tolerance = tolerance;
    CutPlan plan;
    for (const Side& side : sides) {
        const Point from = node_point(mesh, side.first), to = node_point(mesh, side.second);
        if (distance_64(from, to) < SHORTEST_HALVED * tolerance)
            continue;
        const NodeNumber middle =
            add_side_node(mesh, engine, middle_on_line(mesh, engine, drawn, side, tolerance), side.first,
                          side.second, Codes::of_all);
        plan.sides[side] = {{0.5, middle}};
        drawn.nodes.insert(middle);
    }
    smooth(mesh, engine, drawn, divide_elements(mesh, engine, drawn, drawing, plan, {}));
    return plan;
}

void follow_sides(std::vector<NodeNumber>& line, bool closed, const CutPlan& plan) {
    if (!plan.divides(line, closed))
        return;
    std::vector<NodeNumber> longer;
    for (std::size_t k = 0; k < line.size(); ++k) {
        longer.push_back(line[k]);
        if (k + 1 == line.size() && !closed)
            break;
        const std::vector<NodeNumber> nodes = plan.between(line[k], line[(k + 1) % line.size()]);
        longer.insert(longer.end(), nodes.begin(), nodes.end());
    }
    line = std::move(longer);
}

void follow_sides(std::vector<NodeNumber>& line, std::vector<NodeNumber>& twins, bool closed,
                  const CutPlan& plan) {
    if (!plan.divides(line, closed))
        return;
    std::vector<NodeNumber> longer, longer_twins;
    for (std::size_t k = 0; k < line.size(); ++k) {
        longer.push_back(line[k]);
        longer_twins.push_back(twins[k]);
        if (k + 1 == line.size() && !closed)
            break;
        const std::size_t next = (k + 1) % line.size();
        const std::vector<NodeNumber> nodes = plan.between(line[k], line[next]);
        const std::vector<NodeNumber> others = plan.between(twins[k], twins[next]);
        if (nodes.size() != others.size())
            continue;
        longer.insert(longer.end(), nodes.begin(), nodes.end());
        longer_twins.insert(longer_twins.end(), others.begin(), others.end());
    }
    line = std::move(longer);
    twins = std::move(longer_twins);
}

double smallest_distance(const Mesh& mesh, const Tolerances& tolerances, const Engine& engine) {
    constexpr double ROUNDING = 1.0 / (1 << 21);  // four units in the last of 24 binary places
    double size = std::max(std::abs(static_cast<double>(engine.limits.left)),
                           std::abs(static_cast<double>(engine.limits.right)));
    for (NodeNumber n(1); n <= engine.highest_node; ++n)
        size = std::max(size, std::abs(static_cast<double>(mesh.y[n])));
    return std::max(static_cast<double>(tolerances.same), size * ROUNDING);
}

}  // namespace brelan
