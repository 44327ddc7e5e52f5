#include "group/conforming_cut.h"

#include <algorithm>
#include <cmath>

#include "group/cut_table.h"
#include "group/engine_mesh.h"
#include "group/cut_sides.h"
#include "mesh/kinds.h"

namespace brelan {

namespace {

Point corner(const Mesh& mesh, const CutRow& row, int place) {
    return node_point(mesh, row.N[place]);
}

bool contains(const Mesh& mesh, const Point& P, const Corners& c) {
    const Point n1 = node_point(mesh, c.n[0]), n2 = node_point(mesh, c.n[1]), n3 = node_point(mesh, c.n[2]);
    if (INTRI(P, n1, n2, n3))
        return true;
    return c.n[3] > 0 && INTRI(P, n1, n3, node_point(mesh, c.n[3]));
}

// --- marks ---------------------------------------------------------------------------------------

// The code words of a new node follow other nodes one after the other: in the coupled and displacement kinds
// a word stays 1 only if no other has 0, in the temperature and head kinds a word that is not 0 is taken.
void follow_node(Mesh& mesh, std::int32_t node, std::int32_t other) {
    NodeCodes& words = mesh.codes[node];
    const NodeCodes& from = mesh.codes[other];
    const auto count = static_cast<std::size_t>(kind_row(mesh.kind).node_codes);
    for (std::size_t i = 0; i < count; ++i) {
        if (has_node_values(mesh.kind)) {
            if (from[i] != 0)
                words[i] = from[i];
        } else if (from[i] == 0) {
            words[i] = 0;
        }
    }
    if (!has_node_values(mesh.kind))
        return;
    if (mesh.head[other] != 0.0F)
        mesh.head[node] = mesh.head[other];
    if (mesh.coefficient[other] != 0.0F)
        mesh.coefficient[node] = mesh.coefficient[other];
}

void begin_codes(Mesh& mesh, std::int32_t node, std::int32_t value, std::size_t words) {
    for (std::size_t i = 0; i < words; ++i)
        mesh.codes[node][i] = value;
    if (has_node_values(mesh.kind))
        mesh.head[node] = mesh.coefficient[node] = 0.0F;
}

std::int32_t add_side_node(Mesh& mesh, Engine& engine, const Point& point, std::int32_t a, std::int32_t b) {
    const std::int32_t node = add_node(mesh, engine, point);
    begin_codes(mesh, node, has_node_values(mesh.kind) ? 0 : 1, static_cast<std::size_t>(kind_row(mesh.kind).node_codes));
    follow_node(mesh, node, std::min(a, b));
    follow_node(mesh, node, std::max(a, b));
    return node;
}

std::int32_t add_centre_node(Mesh& mesh, Engine& engine, const Point& point, const CutRow& row) {
    const std::int32_t node = add_node(mesh, engine, point);
    switch (mesh.kind) {
        case LayoutKind::coupled:
            begin_codes(mesh, node, 1, 5);
            break;
        case LayoutKind::temperature:
            begin_codes(mesh, node, 0, 2);
            break;
        case LayoutKind::head:
        case LayoutKind::displacement:
            begin_codes(mesh, node, 1, 3);
            break;
    }
    for (const std::int32_t n : row.N)
        if (n > 0)
            follow_node(mesh, node, n);
    return node;
}

// The corner of a row is on the line: the other rows learn it wherever they have its node. A row that names
// the node twice is marked at the given corner alone.
void ADDSIDE(Engine& engine, CutRow& row, int place) {
    const std::int32_t node = row.N[place];
    for (const std::uint32_t r : rows_with(engine, node)) {
        CutRow& other = engine.rows[r];
        if (&other == &row || other.E <= 0)
            continue;
        for (int i = 0; i < other.corners(); ++i)
            if (other.N[i] == node)
                other.V[i] = 1;
    }
    row.V[place] = 1;
}

// The side gets a node at the point, or the one that another row has put on it.
void ADDSIDE(Mesh& mesh, Engine& engine, CutRow& row, const RowSide& side, const Point& point) {
    const std::int32_t a = row.N[side.A];
    const std::int32_t b = row.N[side.B];
    std::int32_t found = 0;
    for_rows_with_side(engine, a, b, [&](const CutRow&, std::int32_t mark) {
        if (found == 0)
            found = mark;
    });
    if (found != 0) {
        row.S[side.S] = found;
        return;
    }
    const std::int32_t node = add_side_node(mesh, engine, point, a, b);
    for_rows_with_side(engine, a, b, [&](const CutRow& other, std::int32_t& mark) {
        if (other.E > 0)
            mark = node;
    });
}

void clear_side(Engine& engine, std::int32_t a, std::int32_t b) {
    for_rows_with_side(engine, a, b, [](const CutRow&, std::int32_t& mark) { mark = 0; });
}

// --- ends ----------------------------------------------------------------------------------------

constexpr float CLOSE_TO_SIDE = 0.2F;    // of the pair: an end so near to a side goes onto the side
constexpr float HALFWAY_INSIDE = 0.5F;   // of the pair: an end so near to a side goes back half the way
constexpr float CLOSE_TO_CORNER = 0.1F;  // of a side: a point so near to a corner is the corner
constexpr float CLEAR_OF_CORNER = 0.3F;  // of a side: least distance of a node on it from a corner

void place_corner(Mesh& mesh, Engine& engine, CutRow& row, int place, const Point& point) {
    move_node(mesh, engine, row.N[place], point);
    ADDSIDE(engine, row, place);
}

Point along(const Point& from, const Point& a, const Point& b) {
    return {from.x + CLEAR_OF_CORNER * (b.x - a.x), from.y + CLEAR_OF_CORNER * (b.y - a.y)};
}

// Puts P into the row by one of its sides; Q0 is the other point of the pair.
void ENDNODE(Mesh& mesh, Engine& engine, CutRow& row, const RowSide& side, const Point& P, const Point& Q0) {
    const std::int32_t nodeA = row.N[side.A];
    const std::int32_t nodeB = row.N[side.B];
    const Point A = node_point(mesh, nodeA);
    const Point B = node_point(mesh, nodeB);
    if (distance(B, P) < distance(A, P)) {
        if (engine.frozen[nodeB] == 0)
            return place_corner(mesh, engine, row, side.B, P);
    } else if (engine.frozen[nodeA] == 0) {
        return place_corner(mesh, engine, row, side.A, P);
    }
    Point Q;
    if (!line_crossing(Q0, P, A, B, Q))
        return;
    const float DP = distance(Q, P);
    const float D0 = distance(Q, Q0);
    const float L = distance(A, B);
    const float DA = distance(A, Q);
    const bool both_frozen = engine.frozen[nodeA] == 1 && engine.frozen[nodeB] == 1;
    if (DP <= CLOSE_TO_SIDE * D0) {
        const bool nearer_B = L * 0.5F < DA;
        const float from_corner = nearer_B ? std::abs(L - DA) : DA;
        const int place = nearer_B ? side.B : side.A;
        if (from_corner <= CLOSE_TO_CORNER * L) {
            if (both_frozen)
                move_node(mesh, engine, row.N[place], Q);
            ADDSIDE(engine, row, place);
            return;
        }
        // Near B the node goes outwards, beyond the end of the side: kept as decks have always had it.
        const bool clear = nearer_B ? CLEAR_OF_CORNER * L < L - DA : CLEAR_OF_CORNER * L < DA;
        ADDSIDE(mesh, engine, row, side, clear ? Q : along(nearer_B ? B : A, A, B));
        return;
    }
    const Point inside =
        DP <= HALFWAY_INSIDE * D0 ? Point{Q.x - 0.5F * (Q.x - Q0.x), Q.y - 0.5F * (Q.y - Q0.y)} : P;
    row.C = add_centre_node(mesh, engine, inside, row);
}

// Places an end in the first row that contains it. False when this row does not.
bool place_end_in(Mesh& mesh, Engine& engine, CutRow& row, const Point& P, const Point& Q0) {
    const Point n1 = corner(mesh, row, 0), n2 = corner(mesh, row, 1), n3 = corner(mesh, row, 2);
    Point G;
    if (row.is_triangle()) {
        if (!INTRI(P, n1, n2, n3))
            return false;
        G = {(n1.x + n2.x + n3.x) / 3.0F, (n1.y + n2.y + n3.y) / 3.0F};
    } else {
        const Point n4 = corner(mesh, row, 3);
        if (!INTRI(P, n1, n2, n3) && !INTRI(P, n1, n3, n4))
            return false;
        G = {(n1.x + n2.x + n3.x + n4.x) / 4.0F, (n1.y + n2.y + n3.y + n4.y) / 4.0F};
    }
    for (int i = 0; i < row.corners(); ++i) {
        const RowSide& side = side_of(row, i);
        if (INTRI(P, corner(mesh, row, side.A), corner(mesh, row, side.B), G)) {
            ENDNODE(mesh, engine, row, side, P, Q0);
            return true;
        }
    }
    return false;
}

void place_one_end(Mesh& mesh, Engine& engine, const Point& P, const Point& Q0) {
    for (CutRow& row : engine.rows)
        if (place_end_in(mesh, engine, row, P, Q0))
            return;
}

// --- sides ---------------------------------------------------------------------------------------

constexpr float SHARE_OF_SIDE = 0.1F;   // of a side: a crossing so near to a frozen corner is the corner
constexpr std::int32_t ONLY_MOVE = -2;  // IEND: nodes move, none is added

// Brings one side to the segment. Gives the number of the node that it moves, 0 for none.
std::int32_t SIDECUT(Mesh& mesh, const Tolerances& tolerances, Engine& engine, CutRow& row, const RowSide& side, const Point& P1, const Point& P2,
                     const CutMode& mode) {
    const std::int32_t nodeA = row.N[side.A];
    const std::int32_t nodeB = row.N[side.B];
    const Point A = node_point(mesh, nodeA);
    const Point B = node_point(mesh, nodeB);
    const auto drop_planned_node = [&] {
        if (row.S[side.S] != 0 && !mode.DEFERCUT)
            clear_side(engine, nodeA, nodeB);
    };
    const Meeting crossing = SEGCROSS(P1, P2, A, B);
    const auto is_on_line = [&](const Point& p) { return NEARLINE(P1, P2, p, tolerances.line).distance < tolerances.move; };
    if (!crossing.meets || (is_on_line(A) && is_on_line(B))) {
        drop_planned_node();
        return 0;
    }
    const Point X = crossing.point;
    const float L = distance(A, B);
    const float D = distance(A, X);
    const bool nearer_B = L * 0.5F < D;
    const int place = nearer_B ? side.B : side.A;
    const std::int32_t node = row.N[place];
    const std::int32_t other = nearer_B ? nodeA : nodeB;
    const auto mark = [&] {
        if (mode.IEND != ONLY_MOVE)
            ADDSIDE(engine, row, place);
    };
    if (engine.frozen[node] == 0 || (engine.frozen[node] == 1 && engine.frozen[other] == 1)) {
        move_node(mesh, engine, node, X);
        mark();
        drop_planned_node();
        return node;
    }
    // The corner may not move. The neighbouring side may be so short that the crossing has to be nearer to
    // count as it.
    const float neighbour = distance(corner(mesh, row, nearer_B ? side.nB : side.nA), nearer_B ? B : A);
    const float F = neighbour < L ? SHARE_OF_SIDE * neighbour / L : SHARE_OF_SIDE;
    const float from_corner = nearer_B ? std::abs(L - D) : D;
    if (F * L < from_corner) {
        if (mode.IEND != ONLY_MOVE)
            ADDSIDE(mesh, engine, row, side, X);
        else if (nearer_B && mesh.kind != LayoutKind::displacement)
            drop_planned_node();
        return 0;
    }
    mark();
    drop_planned_node();
    return 0;
}

// While the elements wait for their split, a side that the segment misses stays as it is. So only rows near
// the segment can change, and those that a node moved on the way has brought to it.
void scan_rows_near(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Point& P1, const Point& P2, const CutMode& mode) {
    std::vector<std::uint32_t> rows = rows_of(engine, elements_met_by(engine, P1, P2));
    for (std::size_t k = 0; k < rows.size(); ++k) {
        CutRow& row = engine.rows[rows[k]];
        for (int i = 0; i < row.corners(); ++i) {
            const std::int32_t moved = SIDECUT(mesh, tolerances, engine, row, side_of(row, i), P1, P2, mode);
            if (moved == 0)
                continue;
            for (const std::uint32_t other : rows_with(engine, moved)) {
                const auto at = std::lower_bound(rows.begin(), rows.end(), other);
                if (other > rows[k] && (at == rows.end() || *at != other))
                    rows.insert(at, other);
            }
        }
    }
}

}  // namespace

void COLLECT(Mesh& mesh, Engine& engine, const Point& P1, const Point& P2) {
    const auto take = [&](std::int32_t e) {
        const ElementWords& w = mesh.words[e];
        CutRow row;
        row.N[0] = w.I1;
        row.N[1] = w.I2;
        row.N[2] = w.I3;
        row.N[3] = w.I4;
        row.M = w.MATNO;
        row.E = e;
        engine.rows.push_back(row);
        note_row(engine);
        mesh.words[e].I1 = -w.I1;
    };
    const auto open_to_cut = [&](std::int32_t e) { return is_selected(mesh, engine, e) && mesh.words[e].I1 > 0; };
    const auto crosses = [&](const Corners& c) {
        const int corners = c.n[3] > 0 ? 4 : 3;
        for (int i = 0; i < corners; ++i)
            if (SEGCROSS(P1, P2, node_point(mesh, c.n[i]), node_point(mesh, c.n[(i + 1) % corners])).meets)
                return true;
        return false;
    };
    const std::span<const std::int32_t> elements = elements_met_by(engine, P1, P2);
    for (const std::int32_t e : elements)
        if (open_to_cut(e) && contains(mesh, P1, corners_of(mesh, e)))
            take(e);
    for (const std::int32_t e : elements)
        if (open_to_cut(e) && contains(mesh, P2, corners_of(mesh, e)))
            take(e);
    for (const std::int32_t e : elements)
        if (open_to_cut(e) && crosses(corners_of(mesh, e)))
            take(e);
}

void PLACEEND(Mesh& mesh, Engine& engine, const Point& P1, const Point& P2, bool skip1, bool skip2) {
    if (!skip1)
        place_one_end(mesh, engine, P1, P2);
    if (!skip2)
        place_one_end(mesh, engine, P2, P1);
}

void SIDESCAN(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Point& P1, const Point& P2, const CutMode& mode) {
    if (engine.uses_indexes && mode.DEFERCUT)
        return scan_rows_near(mesh, tolerances, engine, P1, P2, mode);
    for (CutRow& row : engine.rows)
        for (int i = 0; i < row.corners(); ++i)
            SIDECUT(mesh, tolerances, engine, row, side_of(row, i), P1, P2, mode);
}

}  // namespace brelan
