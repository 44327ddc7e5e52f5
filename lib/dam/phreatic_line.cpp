#include "dam/phreatic_line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "dam/slope_models.h"
#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"
#include "plane/geometry.h"
#include "text/real_to_integer.h"
#include "text/run_end.h"
#include "text/trace.h"

namespace brelan {

namespace {

constexpr std::int32_t ABOVE_1 = 2;  // debug level of the values that are listed

constexpr float NO_COEFFICIENT = 1.0E-20F;  // below it a coefficient of triangle_coordinates counts as 0
constexpr float INSIDE_LOW = -0.001F, INSIDE_HIGH = 1.001F;  // of R, S and R + S, shares of a side
constexpr float NEAR_LOWER = 0.25F, NEAR_UPPER = 0.75F;      // share of a division: between them it is split

const SlopeModel& model(const EditCards& edit) {
    return slope_model(edit.slope_code);
}

void code_slope_node(Mesh& mesh, NodeNumber node, std::int32_t word1, std::int32_t word2) {
    mesh.codes[node][0] = word1;
    mesh.codes[node][1] = word2;
}

// Heights of the slope points; the toe has index 0, and what lies beyond the crest is 0.
class SlopeHeights {
public:
    SlopeHeights(const EditCards& edit, const Mesh& mesh) {
        for (std::int32_t i = 1; i <= model(edit).divisions; ++i)
            height_[static_cast<std::size_t>(i)] = mesh.y[model(edit).node(i + 1)];
    }
    float operator()(std::int32_t index) const {
        const auto place = static_cast<std::size_t>(index);
        return place < height_.size() ? height_[place] : 0.0F;
    }

private:
    std::array<float, 50> height_{};
};

void list_level(Trace& trace, const EditCards& edit, float level_divisions, std::int32_t divisions_below,
                float level_x, float level_y, const SlopeHeights& slope_heights, float division_share) {
    trace.values(ABOVE_1, " MSRT  = ", edit.slope_code);
    trace.values(ABOVE_1, " N_DIV = ", model(edit).divisions);
    trace.values(ABOVE_1, " rHw   = ", edit.water_share);
    trace.values(ABOVE_1, " rNHw  = ", level_divisions);
    trace.values(ABOVE_1, " N_w   = ", divisions_below);
    trace.values(ABOVE_1, " X_w   = ", level_x);
    trace.values(ABOVE_1, " Y_w   = ", level_y);
    trace.values(ABOVE_1, " Y_SL(N_w+0) = ", slope_heights(divisions_below));
    trace.values(ABOVE_1, " Y_SL(N_w+1) = ", slope_heights(divisions_below + 1));
    trace.values(ABOVE_1, " Y_SL(N_w+2) = ", slope_heights(divisions_below + 2));
    trace.values(ABOVE_1, " Y_SL(N_w+3) = ", slope_heights(divisions_below + 3));
    trace.values(ABOVE_1, " rDI         = ", division_share);
}

// The slope in equal steps below the level and in equal steps above it. With no step below, the toe stays and
// no node lies on the level.
void space_anew(const EditCards& edit, Mesh& mesh, std::int32_t divisions_below, float level_x,
                float level_y) {
    const SlopeModel& m = model(edit);
    for (std::int32_t i = 1; i <= m.divisions; ++i) {
        const NodeNumber node = m.node(i + 1);
        if (i <= divisions_below) {
            const auto step = static_cast<float>(i);
            const auto steps = static_cast<float>(divisions_below);
            mesh.x[node] = step * (level_x / steps);
            mesh.y[node] = step * (level_y / steps);
        } else {
            const auto step = static_cast<float>(i - divisions_below);
            const auto steps = static_cast<float>(m.divisions - divisions_below);
            mesh.x[node] = level_x + step * ((m.width - level_x) / steps);
            mesh.y[node] = level_y + step * ((m.height - level_y) / steps);
        }
    }
}

// A node on the level, where the element at a part of the slope will be divided.
SlopeSplit add_level_node(const EditCards& edit, EditSource& source, Mesh& mesh, std::int32_t part,
                          float level_x, float level_y) {
    const NodeNumber node(source.counts.nodes + 1);
    if (node > LAST_NODE || mesh.node_in_use[node] != 0)
        fail(std::string(model(edit).file) +
             ": expected nodes that are numbered from 1 without a gap, so that node " + to_string(node) +
             " can stand on the water level");
    source.counts.nodes = node.value;
    source.nodes.include(node);
    mesh.node_in_use[node] = 1;
    mesh.codes[node] = {1, 1, 1, 1, 1};
    mesh.x[node] = level_x;
    mesh.y[node] = level_y;
    if (has_node_values(mesh.kind)) {
        mesh.head[node] = edit.initial_head;
        mesh.coefficient[node] = 1.0F;
    }
    return {model(edit).element(part), node};
}

// --- elements ------------------------------------------------------------------------------------

double signed_area(const Mesh& mesh, const ElementWords& w) {
    const auto at = [&](NodeNumber n) { return Point{mesh.x[n], mesh.y[n]}; };
    const double half = area_64(at(w.corner_1), at(w.corner_2), at(w.corner_3));
    return w.corner_4.names_one() ? half + area_64(at(w.corner_1), at(w.corner_3), at(w.corner_4)) : half;
}

bool on_slope(const EditCards& edit, NodeNumber node) {
    for (std::int32_t point = 1; point <= model(edit).divisions + 1; ++point)
        if (model(edit).node(point) == node)
            return true;
    return false;
}

ElementNumber next_free_element(const EditCards& edit, const Mesh& mesh) {
    ElementNumber highest;
    for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n)
        if (mesh.type_in_use[n] >= ELEMENT_CONTINUUM)
            highest = n;
    if (highest == LAST_ELEMENT)
        fail_at(edit.start_place,
                "Card 3.2: expected start numbers that leave an element number of at most " +
                    std::to_string(HIGHEST_ELEMENT_NUMBER) + " for the element that the water level divides");
    return highest + 1;
}

}  // namespace

TriangleCoordinates triangle_coordinates(Trace& trace, float x, float y, const Triangle& t) {
    const float a1 = t.x1 - t.x3, b1 = t.x2 - t.x3, c1 = t.x3 - x;
    const float a2 = t.y1 - t.y3, b2 = t.y2 - t.y3, c2 = t.y3 - y;
    TriangleCoordinates c;
    if (std::abs(a1) < NO_COEFFICIENT) {
        c.zero_coefficient = 1;
        c.s = -c1 / b1;
        c.r = (b2 * c.s + c2) / (-a2);
    } else if (std::abs(b1) < NO_COEFFICIENT) {
        c.zero_coefficient = 2;
        c.r = -c1 / a1;
        c.s = (a2 * c.r + c2) / (-b2);
    } else if (std::abs(a2) < NO_COEFFICIENT) {
        c.zero_coefficient = 3;
        c.s = -c2 / b2;
        c.r = (b1 * c.s + c1) / (-a1);
    } else if (std::abs(b2) < NO_COEFFICIENT) {
        c.zero_coefficient = 4;
        c.r = -c2 / a2;
        c.s = (a1 * c.r + c1) / (-b1);
    } else {
        c.s = (a2 * (c1 / a1) - c2) / (b2 - a2 * (b1 / a1));
        c.r = -(b1 / a1) * c.s - c1 / a1;
    }
    c.t = 1.0F - c.s - c.r;
    const auto inside = [](float share) { return share >= INSIDE_LOW && share <= INSIDE_HIGH; };
    c.in = inside(c.r) && inside(c.s) && inside(c.r + c.s);
    if (!c.in) {
        trace.values(ABOVE_1, " ICASE = ", c.zero_coefficient);
        trace.values(ABOVE_1, " T_RS: NG  R = ", c.r, " S = ", c.s);
        trace.values(ABOVE_1, " X1 = ", t.x1, " Y1 = ", t.y1);
        trace.values(ABOVE_1, " X2 = ", t.x2, " Y2 = ", t.y2);
        trace.values(ABOVE_1, " X3 = ", t.x3, " Y3 = ", t.y3);
        trace.values(ABOVE_1, " XC = ", x, " YC = ", y);
        trace.values(ABOVE_1, " a1 = ", a1, " b1 = ", b1, " c1 = ", c1);
        trace.values(ABOVE_1, " a2 = ", a2, " b2 = ", b2, " c2 = ", c2);
        // What the words say is not so: the point is mapped all the same.
        trace.values(ABOVE_1, " TERMINATED DUE TO ERROR ");
    }
    return c;
}

void require_template(const EditCards& edit, const EditSource& source, const Mesh& mesh) {
    const NodeNumber first = source.nodes.lowest;
    for (NodeNumber n = first; n <= source.nodes.highest; ++n)
        if (mesh.node_in_use[n] != 0 && (mesh.x[n] != mesh.x[first] || mesh.y[n] != mesh.y[first]))
            return;
    if (source.counts.nodes > 1)
        fail(std::string(model(edit).file) +
             ": expected a template for this edition, found one whose nodes all lie at one point; slope "
             "templates for the temperature and head editions have seven values on a node line, those for "
             "the others eight");
}

std::optional<SlopeSplit> apply_water_level(Trace& trace, const EditCards& edit, EditSource& source,
                                            Mesh& mesh) {
    const SlopeModel& m = model(edit);
    const float water_share = edit.water_share;
    if (water_share <= 0.0F || water_share >= 1.0F) {
        for (std::int32_t point = 1; point <= m.divisions + 1; ++point)
            code_slope_node(mesh, m.node(point), 3, 0);
        return std::nullopt;
    }
    const float level_divisions = water_share * static_cast<float>(m.divisions);
    std::int32_t divisions_below = to_integer(level_divisions);
    const float level_x = water_share * m.width;
    const float level_y = water_share * m.height;
    const SlopeHeights slope_heights(edit, mesh);
    const float division_share = (level_y - slope_heights(divisions_below)) /
                                 (slope_heights(divisions_below + 1) - slope_heights(divisions_below));
    list_level(trace, edit, level_divisions, divisions_below, level_x, level_y, slope_heights,
               division_share);
    for (std::int32_t point = 1; point <= m.divisions + 1; ++point) {
        const NodeNumber node = m.node(point);
        const std::int32_t under_water = level_y < mesh.y[node] ? 0 : 1;
        code_slope_node(mesh, node, under_water, under_water);
    }
    if (division_share >= NEAR_LOWER && division_share <= NEAR_UPPER)
        return add_level_node(edit, source, mesh, divisions_below, level_x, level_y);
    // The crest stays where the dam's body meets it.
    if (division_share > NEAR_UPPER && divisions_below + 1 < m.divisions)
        ++divisions_below;
    space_anew(edit, mesh, divisions_below, level_x, level_y);
    return std::nullopt;
}

void map_template_nodes(Trace& trace, const EditCards& edit, const EditSource& source, Mesh& mesh) {
    const SlopeModel& m = model(edit);
    const Triangle from{m.width, m.height, 0.0F, 0.0F, m.width, 0.0F};
    for (NodeNumber n{1}; n.value <= source.counts.nodes; ++n) {
        const TriangleCoordinates c = triangle_coordinates(trace, mesh.x[n], mesh.y[n], from);
        mesh.x[n] = c.r * edit.crest_x + c.s * edit.toe_x + c.t * edit.foot_x;
        mesh.y[n] = c.r * edit.crest_y + c.s * edit.toe_y + c.t * edit.foot_y;
        if (!std::isfinite(mesh.x[n]) || !std::isfinite(mesh.y[n]))
            fail_at(edit.triangle_place, "Card 3.3.6.3: expected corners that give node " + to_string(n) +
                                             " coordinates that are numbers");
    }
}

void orient_elements(const EditSource& source, Mesh& mesh) {
    if (source.first_continuum.is_none() || signed_area(mesh, mesh.words[source.first_continuum]) > 0.0)
        return;
    for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n) {
        if (mesh.type_in_use[n] != ELEMENT_CONTINUUM)
            continue;
        ElementWords& w = mesh.words[n];
        std::swap(w.corner_2, w.corner_4.names_one() ? w.corner_4 : w.corner_3);
    }
}

void split_slope_element(const EditCards& edit, const EditSource& source, Mesh& mesh,
                         const SlopeSplit& split) {
    const ElementNumber position = split.element;
    const ElementNumber n = edit.first_element + (position - source.elements[0].lowest);
    if (n.is_none() || n > LAST_ELEMENT || mesh.type_in_use[n] != ELEMENT_CONTINUUM)
        fail(std::string(model(edit).file) + ": expected a continuum element " + to_string(position) +
             " at the slope, which the water level divides");
    const ElementWords old = mesh.words[n];
    const std::array<NodeNumber, 4> corner{old.corner_1, old.corner_2, old.corner_3, old.corner_4};
    const std::size_t corners = old.corner_4.names_one() ? 4 : 3;
    const auto cyclic = [&](std::size_t k) { return corner[k % corners]; };
    std::size_t first = 0;
    while (first < corners && !(on_slope(edit, cyclic(first)) && on_slope(edit, cyclic(first + 1))))
        ++first;
    if (first == corners)
        fail(std::string(model(edit).file) + ": expected two neighbouring corners of element " +
             to_string(position) + " on the slope, between which the water level lies");
    const NodeNumber a = cyclic(first), b = cyclic(first + 1), c = cyclic(first + 2);
    const NodeNumber level_node = split.node;
    const ElementNumber second = next_free_element(edit, mesh);
    ElementWords lower = old, upper = old;
    if (corners == 4) {
        const NodeNumber d = cyclic(first + 3);
        lower.corner_1 = a, lower.corner_2 = level_node, lower.corner_3 = d, lower.corner_4 = {};
        upper.corner_1 = level_node, upper.corner_2 = b, upper.corner_3 = c, upper.corner_4 = d;
    } else {
        lower.corner_1 = a, lower.corner_2 = level_node, lower.corner_3 = c;
        upper.corner_1 = level_node, upper.corner_2 = b, upper.corner_3 = c;
    }
    mesh.words[n] = lower;
    mesh.words[second] = upper;
    copy_attributes(mesh, n, second);
    mesh.type_in_use[second] = ELEMENT_CONTINUUM;
}

}  // namespace brelan
