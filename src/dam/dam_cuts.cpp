#include "dam/dam_cuts.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "channel/real_to_integer.h"

namespace brelan {

namespace {

// Coordinates this near, as a share of the dam's height, are those of one line.
constexpr float SAME_LINE = 1.0E-4F;

// More columns of elements than a mesh can have.
constexpr float MANY_COLUMNS = 100000.0F;

bool horizontal_line(float y) {
    if (same_line(y, DAM.HDAM) || same_line(y, 0.0F))
        return true;
    float level = 0.0F;
    for (const float thickness : DAM.layers)
        if (level = level - thickness; same_line(y, level))
            return true;
    return false;
}

// An edge of a block column beside an end of the crest is bent by what is drawn there.
bool vertical_line(float x) {
    const DamSizes& s = DAMSIZES;
    if (same_line(x, s.left) || same_line(x, s.right))
        return true;
    const float edge_left = DAM.WLEFT, edge_right = DAM.WLEFT + DAM.WMID;
    return (same_line(x, edge_left) && same_line(s.crest_left, edge_left)) ||
           (same_line(x, edge_right) && same_line(s.crest_right, edge_right));
}

// Where the columns of nodes of the dam's three blocks stand.
std::vector<float> node_columns() {
    std::vector<float> columns{0.0F};
    float start = 0.0F;
    const auto add_block = [&](float length, float wanted) {
        const float width = element_width(length, wanted);
        const std::int32_t count = TRUNCATE(std::min(std::round(length / width), MANY_COLUMNS));
        for (std::int32_t i = 1; i <= count; ++i)
            columns.push_back(start + static_cast<float>(i) * width);
        start = start + length;
    };
    add_block(DAM.WLEFT, DAMSIZES.DL);
    add_block(DAM.WMID, DAMSIZES.DM);
    add_block(DAM.WRIGHT, DAMSIZES.DR);
    return columns;
}

// The column that is the nearest to a place.
std::vector<float>::iterator nearest(std::vector<float>& columns, float x) {
    return std::min_element(columns.begin(), columns.end(),
                            [x](float a, float b) { return std::abs(a - x) < std::abs(b - x); });
}

}  // namespace

bool same_line(float a, float b) {
    return std::abs(a - b) <= SAME_LINE * DAM.HDAM;
}

bool on_mesh_line(const DamPoint& a, const DamPoint& b) {
    return (same_line(a.y, b.y) && horizontal_line(a.y)) || (same_line(a.x, b.x) && vertical_line(a.x));
}

float element_width(float width, float wanted) {
    return width / std::max(1.0F, std::floor(width / wanted));
}

float lowest_height(float thickness, float wanted) {
    if (wanted >= thickness)
        return thickness;
    const float A = LAST_LAYER;
    const float b = (4.0F * A - 1.0F) * thickness / (2.0F * wanted);
    const float count = std::floor(b + std::sqrt(b * b - thickness * (4.0F * A - 2.0F) / wanted));
    // Depth of the node above the bottom, s being its local coordinate from -1 to 1.
    const float s = 1.0F - 2.0F / count;
    return thickness - (A * thickness * (1.0F - s * s) + 0.5F * thickness * s * (s + 1.0F));
}

bool clear_of_shells(const DamOutline& points) {
    const float left = DAMSIZES.crest_left + DAMSIZES.DM, right = DAMSIZES.crest_right - DAMSIZES.DM;
    return std::all_of(points.begin(), points.end(),
                       [=](const DamPoint& p) { return p.x >= left && p.x <= right; });
}

bool below_base(const DamOutline& points) {
    return std::all_of(points.begin(), points.end(), [](const DamPoint& p) { return p.y <= -DAMSIZES.DV; });
}

bool takes_crest_end(const DamOutline& points) {
    const DamSizes& s = DAMSIZES;
    std::vector<float> columns = node_columns();
    for (const float end : {s.crest_left, s.crest_right})
        *nearest(columns, end) = end;
    for (const DamPoint& p : points) {
        if (!same_line(p.y, DAM.HDAM))
            continue;
        const auto node = nearest(columns, p.x);
        const bool end = *node == s.crest_left || *node == s.crest_right;
        if (end && !same_line(*node, p.x))
            return true;
        *node = p.x;
    }
    return false;
}

bool crowds_crest(const DamOutline& points) {
    const float height = element_width(DAM.HDAM, DAMSIZES.DV);
    return std::any_of(points.begin(), points.end(), [&](const DamPoint& p) {
        return !same_line(p.y, DAM.HDAM) && p.y > DAM.HDAM - 0.5F * height;
    });
}

bool crowds_bottom(const DamOutline& points) {
    const float height = lowest_height(DAM.layers.back(), DAMSIZES.DV);
    const float bottom = DAMSIZES.bottom;
    return std::any_of(points.begin(), points.end(), [&](const DamPoint& p) {
        return !same_line(p.y, bottom) && p.y < bottom + 0.5F * height;
    });
}

bool takes_slope_node(float crest_end, float toe) {
    constexpr int ROWS = 4;  // further down the slope is too far away
    const std::vector<float> columns = node_columns();
    const float rows = std::round(DAM.HDAM / element_width(DAM.HDAM, DAMSIZES.DV));
    for (int row = 1; row <= ROWS; ++row) {
        const float slope = crest_end + (toe - crest_end) * (static_cast<float>(row) / rows);
        std::vector<float> moved = columns;
        *nearest(moved, slope) = slope;
        const bool taken = *nearest(moved, crest_end) == slope;
        if (taken && !same_line(slope, crest_end))
            return true;
    }
    return false;
}

}  // namespace brelan
