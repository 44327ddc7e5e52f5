#include "group/conforming_cut.h"

#include <algorithm>
#include <cmath>

#include "group/engine_mesh.h"
#include "group/new_nodes.h"

namespace brelan {

namespace {

Point corner(const Mesh& mesh, const CutRow& row, int place) {
    return node_point(mesh, row.corner_node[place]);
}

bool contains(const Mesh& mesh, const Point& p, const Corners& c) {
    const Point n1 = node_point(mesh, c.n[0]), n2 = node_point(mesh, c.n[1]), n3 = node_point(mesh, c.n[2]);
    if (in_triangle(p, n1, n2, n3))
        return true;
    return c.n[3].names_one() && in_triangle(p, n1, n3, node_point(mesh, c.n[3]));
}

// --- marks ---------------------------------------------------------------------------------------

// The corner of a row is on the line: the other rows learn it wherever they have its node. A row that names
// the node twice is marked at the given corner alone.
void add_to_line(CutTable& cut, CutRow& row, int place) {
    const NodeNumber node = row.corner_node[place];
    for (const std::uint32_t r : cut.rows_with(node)) {
        CutRow& other = cut.rows[r];
        if (&other == &row || other.element.is_none())
            continue;
        for (int i = 0; i < other.corners(); ++i)
            if (other.corner_node[i] == node)
                other.corner_on_line[i] = 1;
    }
    row.corner_on_line[place] = 1;
}

// The side gets a node at the point, or the one that another row has put on it.
void add_to_line(Mesh& mesh, Engine& engine, CutTable& cut, CutRow& row, const RowSide& side,
                 const Point& point) {
    const NodeNumber a = row.corner_node[side.a];
    const NodeNumber b = row.corner_node[side.b];
    NodeNumber found;
    cut.for_rows_with_side(a, b, [&](const CutRow&, NodeNumber mark) {
        if (found.is_none())
            found = mark;
    });
    if (found.names_one()) {
        row.side_node[side.mark] = found;
        return;
    }
    const NodeNumber node = add_side_node(mesh, engine, point, a, b, Codes::of_any);
    cut.for_rows_with_side(a, b, [&](const CutRow& other, NodeNumber& mark) {
        if (other.element.names_one())
            mark = node;
    });
}

void clear_side(CutTable& cut, NodeNumber a, NodeNumber b) {
    cut.for_rows_with_side(a, b, [](const CutRow&, NodeNumber& mark) { mark = {}; });
}

// --- ends ----------------------------------------------------------------------------------------

constexpr float CLOSE_TO_SIDE = 0.2F;    // of the pair: an end so near to a side goes onto the side
constexpr float HALFWAY_INSIDE = 0.5F;   // of the pair: an end so near to a side goes back half the way
constexpr float CLOSE_TO_CORNER = 0.1F;  // of a side: a point so near to a corner is the corner
constexpr float CLEAR_OF_CORNER = 0.3F;  // of a side: least distance of a node on it from a corner

void place_corner(Mesh& mesh, Engine& engine, CutTable& cut, CutRow& row, int place, const Point& point) {
    move_node(mesh, engine, row.corner_node[place], point);
    add_to_line(cut, row, place);
}

Point along(const Point& from, const Point& a, const Point& b) {
    return {from.x + CLEAR_OF_CORNER * (b.x - a.x), from.y + CLEAR_OF_CORNER * (b.y - a.y)};
}

// Puts P into the row by one of its sides; Q0 is the other point of the pair.
void place_end_by_side(Mesh& mesh, Engine& engine, CutTable& cut, CutRow& row, const RowSide& side,
                       const Point& p, const Point& q0) {
    const NodeNumber node_a = row.corner_node[side.a];
    const NodeNumber node_b = row.corner_node[side.b];
    const Point a = node_point(mesh, node_a);
    const Point b = node_point(mesh, node_b);
    if (distance(b, p) < distance(a, p)) {
        if (engine.frozen[node_b] == 0)
            return place_corner(mesh, engine, cut, row, side.b, p);
    } else if (engine.frozen[node_a] == 0) {
        return place_corner(mesh, engine, cut, row, side.a, p);
    }
    Point q;
    if (!line_crossing(q0, p, a, b, q))
        return;
    const float distance_p = distance(q, p);
    const float distance_q0 = distance(q, q0);
    const float length = distance(a, b);
    const float distance_a = distance(a, q);
    const bool both_frozen = engine.frozen[node_a] == 1 && engine.frozen[node_b] == 1;
    if (distance_p <= CLOSE_TO_SIDE * distance_q0) {
        const bool nearer_b = length * 0.5F < distance_a;
        const float from_corner = nearer_b ? std::abs(length - distance_a) : distance_a;
        const int place = nearer_b ? side.b : side.a;
        if (from_corner <= CLOSE_TO_CORNER * length) {
            if (both_frozen)
                move_node(mesh, engine, row.corner_node[place], q);
            add_to_line(cut, row, place);
            return;
        }
        // Near B the node goes outwards, beyond the end of the side: kept as decks have always had it.
        const bool clear =
            nearer_b ? CLEAR_OF_CORNER * length < length - distance_a : CLEAR_OF_CORNER * length < distance_a;
        add_to_line(mesh, engine, cut, row, side, clear ? q : along(nearer_b ? b : a, a, b));
        return;
    }
    const Point inside = distance_p <= HALFWAY_INSIDE * distance_q0
                             ? Point{q.x - 0.5F * (q.x - q0.x), q.y - 0.5F * (q.y - q0.y)}
                             : p;
    row.centre_node = add_inner_node(mesh, engine, inside, row.corner_node, Codes::of_any);
}

// Places an end in the first row that contains it. False when this row does not.
bool place_end_in(Mesh& mesh, Engine& engine, CutTable& cut, CutRow& row, const Point& p, const Point& q0) {
    const Point n1 = corner(mesh, row, 0), n2 = corner(mesh, row, 1), n3 = corner(mesh, row, 2);
    Point centre;
    if (row.is_triangle()) {
        if (!in_triangle(p, n1, n2, n3))
            return false;
        centre = {(n1.x + n2.x + n3.x) / 3.0F, (n1.y + n2.y + n3.y) / 3.0F};
    } else {
        const Point n4 = corner(mesh, row, 3);
        if (!in_triangle(p, n1, n2, n3) && !in_triangle(p, n1, n3, n4))
            return false;
        centre = {(n1.x + n2.x + n3.x + n4.x) / 4.0F, (n1.y + n2.y + n3.y + n4.y) / 4.0F};
    }
    for (int i = 0; i < row.corners(); ++i) {
        const RowSide& side = side_of(row, i);
        if (in_triangle(p, corner(mesh, row, side.a), corner(mesh, row, side.b), centre)) {
            place_end_by_side(mesh, engine, cut, row, side, p, q0);
            return true;
        }
    }
    return false;
}

void place_one_end(Mesh& mesh, Engine& engine, CutTable& cut, const Point& p, const Point& q0) {
    for (CutRow& row : cut.rows)
        if (place_end_in(mesh, engine, cut, row, p, q0))
            return;
}

// --- sides ---------------------------------------------------------------------------------------

constexpr float SHARE_OF_SIDE = 0.1F;  // of a side: a crossing so near to a frozen corner is the corner

// Brings one side to the segment. Gives the number of the node that it moves, or none.
NodeNumber cut_side(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, CutRow& row,
                    const RowSide& side, const Point& p1, const Point& p2, const CutMode& mode) {
    const NodeNumber node_a = row.corner_node[side.a];
    const NodeNumber node_b = row.corner_node[side.b];
    const Point a = node_point(mesh, node_a);
    const Point b = node_point(mesh, node_b);
    const auto drop_planned_node = [&] {
        if (row.side_node[side.mark].names_one() && !mode.deferred)
            clear_side(cut, node_a, node_b);
    };
    const Meeting crossing = segment_crossing(p1, p2, a, b);
    const auto is_on_line = [&](const Point& p) {
        return snap_to_segment(p1, p2, p, tolerances.line).distance < tolerances.move;
    };
    if (!crossing.meets || (is_on_line(a) && is_on_line(b))) {
        drop_planned_node();
        return {};
    }
    const Point meeting_point = crossing.point;
    const float length = distance(a, b);
    const float distance_a = distance(a, meeting_point);
    const bool nearer_b = length * 0.5F < distance_a;
    const int place = nearer_b ? side.b : side.a;
    const NodeNumber node = row.corner_node[place];
    const NodeNumber other = nearer_b ? node_a : node_b;
    const auto mark = [&] {
        if (mode.end_rule != ONLY_MOVE)
            add_to_line(cut, row, place);
    };
    if (engine.frozen[node] == 0 || (engine.frozen[node] == 1 && engine.frozen[other] == 1)) {
        move_node(mesh, engine, node, meeting_point);
        mark();
        drop_planned_node();
        return node;
    }
    // The corner may not move. The neighbouring side may be so short that the crossing has to be nearer to
    // count as it.
    const float neighbour =
        distance(corner(mesh, row, nearer_b ? side.beside_b : side.beside_a), nearer_b ? b : a);
    const float share = neighbour < length ? SHARE_OF_SIDE * neighbour / length : SHARE_OF_SIDE;
    const float from_corner = nearer_b ? std::abs(length - distance_a) : distance_a;
    if (share * length < from_corner) {
        if (mode.end_rule != ONLY_MOVE)
            add_to_line(mesh, engine, cut, row, side, meeting_point);
        else if (nearer_b && mesh.kind != LayoutKind::displacement)
            drop_planned_node();
        return {};
    }
    mark();
    drop_planned_node();
    return {};
}

// While the elements wait for their split, a side that the segment misses stays as it is. So only rows near
// the segment can change, and those that a node moved on the way has brought to it.
void scan_rows_near(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, const Point& p1,
                    const Point& p2, const CutMode& mode) {
    std::vector<std::uint32_t> rows = cut.rows_of(elements_met_by(engine, p1, p2));
    for (std::size_t k = 0; k < rows.size(); ++k) {
        CutRow& row = cut.rows[rows[k]];
        for (int i = 0; i < row.corners(); ++i) {
            const NodeNumber moved =
                cut_side(mesh, tolerances, engine, cut, row, side_of(row, i), p1, p2, mode);
            if (moved.is_none())
                continue;
            for (const std::uint32_t other : cut.rows_with(moved)) {
                const auto at = std::lower_bound(rows.begin(), rows.end(), other);
                if (other > rows[k] && (at == rows.end() || *at != other))
                    rows.insert(at, other);
            }
        }
    }
}

}  // namespace

void collect_rows(Mesh& mesh, Engine& engine, CutTable& cut, const Point& p1, const Point& p2) {
    const auto take = [&](ElementNumber e) {
        const ElementWords& w = mesh.words[e];
        CutRow row;
        row.corner_node[0] = w.corner_1;
        row.corner_node[1] = w.corner_2;
        row.corner_node[2] = w.corner_3;
        row.corner_node[3] = w.corner_4;
        row.material = w.material;
        row.element = e;
        cut.add(row);
        mesh.words[e].corner_1 = w.corner_1.hidden();
    };
    const auto open_to_cut = [&](ElementNumber e) {
        return is_selected(mesh, engine, e) && mesh.words[e].corner_1.names_one();
    };
    const auto crosses = [&](const Corners& c) {
        const int corners = c.n[3].names_one() ? 4 : 3;
        for (int i = 0; i < corners; ++i)
            if (segment_crossing(p1, p2, node_point(mesh, c.n[i]), node_point(mesh, c.n[(i + 1) % corners]))
                    .meets)
                return true;
        return false;
    };
    const std::span<const ElementNumber> elements = elements_met_by(engine, p1, p2);
    for (const ElementNumber e : elements)
        if (open_to_cut(e) && contains(mesh, p1, corners_of(mesh, e)))
            take(e);
    for (const ElementNumber e : elements)
        if (open_to_cut(e) && contains(mesh, p2, corners_of(mesh, e)))
            take(e);
    for (const ElementNumber e : elements)
        if (open_to_cut(e) && crosses(corners_of(mesh, e)))
            take(e);
}

void place_ends(Mesh& mesh, Engine& engine, CutTable& cut, const Point& p1, const Point& p2,
                const PlacedEnds& placed) {
    if (placed.first)
        place_one_end(mesh, engine, cut, p1, p2);
    if (placed.second)
        place_one_end(mesh, engine, cut, p2, p1);
}

void scan_sides(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutTable& cut, const Point& p1,
                const Point& p2, const CutMode& mode) {
    if (cut.uses_indexes() && mode.deferred)
        return scan_rows_near(mesh, tolerances, engine, cut, p1, p2, mode);
    for (CutRow& row : cut.rows)
        for (int i = 0; i < row.corners(); ++i)
            cut_side(mesh, tolerances, engine, cut, row, side_of(row, i), p1, p2, mode);
}

}  // namespace brelan
