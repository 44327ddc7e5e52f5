#include "dam/phreatic_line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "channel/real_to_integer.h"
#include "channel/run_end.h"
#include "dam/slope_models.h"
#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"
#include "channel/trace.h"

namespace brelan {

namespace {

constexpr std::int32_t ABOVE_1 = 2;  // debug level of the values that are listed

constexpr float NO_COEFFICIENT = 1.0E-20F;                   // below it a coefficient of T_RS counts as 0
constexpr float INSIDE_LOW = -0.001F, INSIDE_HIGH = 1.001F;  // of R, S and R + S, shares of a side
constexpr float NEAR_LOWER = 0.25F, NEAR_UPPER = 0.75F;      // share of a division: between them it is split

const SlopeModel& model(const EditCards& edit) {
    return slope_model(edit.MODEL);
}

void code_slope_node(Mesh& mesh, std::int32_t node, std::int32_t word1, std::int32_t word2) {
    mesh.codes[node][0] = word1;
    mesh.codes[node][1] = word2;
}

// Heights of the slope points; the toe has index 0, and what lies beyond the crest is 0.
class SlopeHeights {
public:
    SlopeHeights(const EditCards& edit, const Mesh& mesh) {
        for (std::int32_t i = 1; i <= model(edit).N_DIV; ++i)
            height_[static_cast<std::size_t>(i)] = mesh.y[model(edit).node(i + 1)];
    }
    float operator()(std::int32_t index) const {
        const auto place = static_cast<std::size_t>(index);
        return place < height_.size() ? height_[place] : 0.0F;
    }

private:
    std::array<float, 50> height_{};
};

void list_level(Trace& trace, EditCards& edit, float rNHw, std::int32_t N_w, float X_w, float Y_w, const SlopeHeights& Y_SL, float rDI) {
    trace.values(ABOVE_1, " MSRT  = ", edit.MODEL);
    trace.values(ABOVE_1, " N_DIV = ", model(edit).N_DIV);
    trace.values(ABOVE_1, " rHw   = ", edit.rHw);
    trace.values(ABOVE_1, " rNHw  = ", rNHw);
    trace.values(ABOVE_1, " N_w   = ", N_w);
    trace.values(ABOVE_1, " X_w   = ", X_w);
    trace.values(ABOVE_1, " Y_w   = ", Y_w);
    trace.values(ABOVE_1, " Y_SL(N_w+0) = ", Y_SL(N_w));
    trace.values(ABOVE_1, " Y_SL(N_w+1) = ", Y_SL(N_w + 1));
    trace.values(ABOVE_1, " Y_SL(N_w+2) = ", Y_SL(N_w + 2));
    trace.values(ABOVE_1, " Y_SL(N_w+3) = ", Y_SL(N_w + 3));
    trace.values(ABOVE_1, " rDI         = ", rDI);
}

// The slope in equal steps below the level and in equal steps above it. With no step below, the toe stays and
// no node lies on the level.
void space_anew(const EditCards& edit, Mesh& mesh, std::int32_t N_w, float X_w, float Y_w) {
    const SlopeModel& m = model(edit);
    for (std::int32_t i = 1; i <= m.N_DIV; ++i) {
        const std::int32_t node = m.node(i + 1);
        if (i <= N_w) {
            const auto step = static_cast<float>(i);
            const auto steps = static_cast<float>(N_w);
            mesh.x[node] = step * (X_w / steps);
            mesh.y[node] = step * (Y_w / steps);
        } else {
            const auto step = static_cast<float>(i - N_w);
            const auto steps = static_cast<float>(m.N_DIV - N_w);
            mesh.x[node] = X_w + step * ((m.X - X_w) / steps);
            mesh.y[node] = Y_w + step * ((m.Y - Y_w) / steps);
        }
    }
}

// A node on the level, where the element at a part of the slope will be divided.
void add_level_node(EditCards& edit, EditSource& source, Mesh& mesh, SlopeSplit& slope_split, std::int32_t part, float X_w, float Y_w) {
    const std::int32_t node = source.counts.NUMNP + 1;
    if (node > MAXNP || mesh.node_in_use[node] != 0)
        FAIL(std::string(model(edit).file) +
             ": expected nodes that are numbered from 1 without a gap, so that node " + std::to_string(node) +
             " can stand on the water level");
    source.counts.NUMNP = node;
    source.nodes.include(node);
    mesh.node_in_use[node] = 1;
    mesh.codes[node] = {1, 1, 1, 1, 1};
    mesh.x[node] = X_w;
    mesh.y[node] = Y_w;
    if (has_node_values(mesh.kind)) {
        mesh.head[node] = edit.Hi;
        mesh.coefficient[node] = 1.0F;
    }
    slope_split = {model(edit).element(part), node};
}

// --- elements ------------------------------------------------------------------------------------

double triangle_area(const Mesh& mesh, std::int32_t a, std::int32_t b, std::int32_t c) {
    const double X1 = mesh.x[a], Y1 = mesh.y[a], X2 = mesh.x[b], Y2 = mesh.y[b], X3 = mesh.x[c], Y3 = mesh.y[c];
    return 0.5 * ((Y3 - Y1) * X2 + (Y2 - Y3) * X1 + (Y1 - Y2) * X3);
}

double signed_area(const Mesh& mesh, const ElementWords& w) {
    const double half = triangle_area(mesh, w.I1, w.I2, w.I3);
    return w.I4 > 0 ? half + triangle_area(mesh, w.I1, w.I3, w.I4) : half;
}

bool on_slope(const EditCards& edit, std::int32_t node) {
    for (std::int32_t point = 1; point <= model(edit).N_DIV + 1; ++point)
        if (model(edit).node(point) == node)
            return true;
    return false;
}

std::int32_t next_free_element(const EditCards& edit, const Mesh& mesh) {
    std::int32_t highest = 0;
    for (std::int32_t n = 1; n <= MAXEL; ++n)
        if (mesh.type_in_use[n] >= EL_CONTINUUM)
            highest = n;
    if (highest == MAXEL)
        FAIL(edit.start_place +
             ": Card 3.2: expected start numbers that leave an element number of at most " +
             std::to_string(MAXEL) + " for the element that the water level divides");
    return highest + 1;
}

}  // namespace

TriangleCoordinates T_RS(Trace& trace, float x, float y, const Triangle& t) {
    const float a1 = t.X1 - t.X3, b1 = t.X2 - t.X3, c1 = t.X3 - x;
    const float a2 = t.Y1 - t.Y3, b2 = t.Y2 - t.Y3, c2 = t.Y3 - y;
    TriangleCoordinates c;
    if (std::abs(a1) < NO_COEFFICIENT) {
        c.ICASE = 1;
        c.S = -c1 / b1;
        c.R = (b2 * c.S + c2) / (-a2);
    } else if (std::abs(b1) < NO_COEFFICIENT) {
        c.ICASE = 2;
        c.R = -c1 / a1;
        c.S = (a2 * c.R + c2) / (-b2);
    } else if (std::abs(a2) < NO_COEFFICIENT) {
        c.ICASE = 3;
        c.S = -c2 / b2;
        c.R = (b1 * c.S + c1) / (-a1);
    } else if (std::abs(b2) < NO_COEFFICIENT) {
        c.ICASE = 4;
        c.R = -c2 / a2;
        c.S = (a1 * c.R + c1) / (-b1);
    } else {
        c.S = (a2 * (c1 / a1) - c2) / (b2 - a2 * (b1 / a1));
        c.R = -(b1 / a1) * c.S - c1 / a1;
    }
    c.T = 1.0F - c.S - c.R;
    const auto inside = [](float share) { return share >= INSIDE_LOW && share <= INSIDE_HIGH; };
    c.in = inside(c.R) && inside(c.S) && inside(c.R + c.S);
    if (!c.in) {
        trace.values(ABOVE_1, " ICASE = ", c.ICASE);
        trace.values(ABOVE_1, " T_RS: NG  R = ", c.R, " S = ", c.S);
        trace.values(ABOVE_1, " X1 = ", t.X1, " Y1 = ", t.Y1);
        trace.values(ABOVE_1, " X2 = ", t.X2, " Y2 = ", t.Y2);
        trace.values(ABOVE_1, " X3 = ", t.X3, " Y3 = ", t.Y3);
        trace.values(ABOVE_1, " XC = ", x, " YC = ", y);
        trace.values(ABOVE_1, " a1 = ", a1, " b1 = ", b1, " c1 = ", c1);
        trace.values(ABOVE_1, " a2 = ", a2, " b2 = ", b2, " c2 = ", c2);
        // What the words say is not so: the point is mapped all the same.
        trace.values(ABOVE_1, " TERMINATED DUE TO ERROR ");
    }
    return c;
}

void REQUIRETEMPLATE(const EditCards& edit, const EditSource& source, const Mesh& mesh) {
    const std::int32_t first = source.nodes.lowest;
    for (std::int32_t n = first; n <= source.nodes.highest; ++n)
        if (mesh.node_in_use[n] != 0 && (mesh.x[n] != mesh.x[first] || mesh.y[n] != mesh.y[first]))
            return;
    if (source.counts.NUMNP > 1)
        FAIL(std::string(model(edit).file) +
             ": expected a template for this edition, found one whose nodes all lie at one point; slope "
             "templates for the temperature and head editions have seven values on a node line, those for "
             "the others eight");
}

void SLOPESTAGE(Trace& trace, EditCards& edit, EditSource& source, Mesh& mesh, SlopeSplit& slope_split) {
    slope_split = SlopeSplit{};
    const SlopeModel& m = model(edit);
    const float rHw = edit.rHw;
    if (rHw <= 0.0F || rHw >= 1.0F) {
        for (std::int32_t point = 1; point <= m.N_DIV + 1; ++point)
            code_slope_node(mesh, m.node(point), 3, 0);
        return;
    }
    const float rNHw = rHw * static_cast<float>(m.N_DIV);
    std::int32_t N_w = TRUNCATE(rNHw);
    const float X_w = rHw * m.X;
    const float Y_w = rHw * m.Y;
    const SlopeHeights Y_SL(edit, mesh);
    const float rDI = (Y_w - Y_SL(N_w)) / (Y_SL(N_w + 1) - Y_SL(N_w));
    list_level(trace, edit, rNHw, N_w, X_w, Y_w, Y_SL, rDI);
    for (std::int32_t point = 1; point <= m.N_DIV + 1; ++point) {
        const std::int32_t node = m.node(point);
        const std::int32_t under_water = Y_w < mesh.y[node] ? 0 : 1;
        code_slope_node(mesh, node, under_water, under_water);
    }
    if (rDI >= NEAR_LOWER && rDI <= NEAR_UPPER) {
        add_level_node(edit, source, mesh, slope_split, N_w, X_w, Y_w);
        return;
    }
    // The crest stays where the dam's body meets it.
    if (rDI > NEAR_UPPER && N_w + 1 < m.N_DIV)
        ++N_w;
    space_anew(edit, mesh, N_w, X_w, Y_w);
}

void MAPNODES(Trace& trace, EditCards& edit, const EditSource& source, Mesh& mesh) {
    const SlopeModel& m = model(edit);
    const Triangle from{m.X, m.Y, 0.0F, 0.0F, m.X, 0.0F};
    for (std::int32_t n = 1; n <= source.counts.NUMNP; ++n) {
        const TriangleCoordinates c = T_RS(trace, mesh.x[n], mesh.y[n], from);
        mesh.x[n] = c.R * edit.X1 + c.S * edit.X2 + c.T * edit.X3;
        mesh.y[n] = c.R * edit.Y1 + c.S * edit.Y2 + c.T * edit.Y3;
        if (!std::isfinite(mesh.x[n]) || !std::isfinite(mesh.y[n]))
            FAIL(edit.triangle_place + ": Card 3.3.6.3: expected corners that give node " +
                 std::to_string(n) + " coordinates that are numbers");
    }
}

void ORIENTELEMENTS(const EditSource& source, Mesh& mesh) {
    if (source.first_continuum == 0 || signed_area(mesh, mesh.words[source.first_continuum]) > 0.0)
        return;
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        if (mesh.type_in_use[n] != EL_CONTINUUM)
            continue;
        ElementWords& w = mesh.words[n];
        std::swap(w.I2, w.I4 > 0 ? w.I4 : w.I3);
    }
}

void SPLITSLOPEELEMENT(const EditCards& edit, const EditSource& source, Mesh& mesh, const SlopeSplit& slope_split) {
    if (slope_split.node == 0)
        return;
    const std::int32_t position = slope_split.element;
    const std::int32_t n = position + edit.NSNEL - source.elements[0].lowest;
    if (n < 1 || n > MAXEL || mesh.type_in_use[n] != EL_CONTINUUM)
        FAIL(std::string(model(edit).file) + ": expected a continuum element " + std::to_string(position) +
             " at the slope, which the water level divides");
    const ElementWords old = mesh.words[n];
    const std::array<std::int32_t, 4> corner{old.I1, old.I2, old.I3, old.I4};
    const std::size_t corners = old.I4 > 0 ? 4 : 3;
    const auto cyclic = [&](std::size_t k) { return corner[k % corners]; };
    std::size_t first = 0;
    while (first < corners && !(on_slope(edit, cyclic(first)) && on_slope(edit, cyclic(first + 1))))
        ++first;
    if (first == corners)
        FAIL(std::string(model(edit).file) + ": expected two neighbouring corners of element " +
             std::to_string(position) + " on the slope, between which the water level lies");
    const std::int32_t A = cyclic(first), B = cyclic(first + 1), C = cyclic(first + 2);
    const std::int32_t W = slope_split.node;
    const std::int32_t second = next_free_element(edit, mesh);
    ElementWords lower = old, upper = old;
    if (corners == 4) {
        const std::int32_t D = cyclic(first + 3);
        lower.I1 = A, lower.I2 = W, lower.I3 = D, lower.I4 = 0;
        upper.I1 = W, upper.I2 = B, upper.I3 = C, upper.I4 = D;
    } else {
        lower.I1 = A, lower.I2 = W, lower.I3 = C;
        upper.I1 = W, upper.I2 = B, upper.I3 = C;
    }
    mesh.words[n] = lower;
    mesh.words[second] = upper;
    copy_attributes(mesh, n, second);
    mesh.type_in_use[second] = EL_CONTINUUM;
}

}  // namespace brelan
