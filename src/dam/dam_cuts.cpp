#include "dam/dam_cuts.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "channel/real_to_integer.h"

namespace brelan {

namespace {

// Coordinates this near, as a share of the dam's height, are those of one line.
constexpr float SAME_LINE = 1.0E-4F;

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
    if (same_line(x, DAMSIZES.left) || same_line(x, DAMSIZES.right))
        return true;
    return (same_line(x, DAM.WLEFT) && !left_crest_end().beside_edge) ||
           (same_line(x, DAM.WLEFT + DAM.WMID) && !right_crest_end().beside_edge);
}

// The lowest elements of the last layer are at most so many times as high as the others.
constexpr float LOWEST_ROW = 2.4F;

// More columns of elements than a mesh can have.
constexpr float MANY_COLUMNS = 100000.0F;

// Size of the elements of an even block.
float element_size(float length, float wanted) {
    return length / std::clamp(std::floor(length / wanted), 1.0F, MANY_COLUMNS);
}

// Width of the widest elements beside the crest's ends.
float element_beside_crest() {
    const DamSizes& s = DAMSIZES;
    return std::max(element_size(DAM.WMID, s.DM), s.DL);
}

// Where the nodes of the crest stand before its ends are placed.
std::vector<float> crest_nodes() {
    const DamSizes& s = DAMSIZES;
    std::vector<float> nodes{0.0F};
    float start = 0.0F;
    const auto add_block = [&](float length, float wanted) {
        const float width = element_size(length, wanted);
        const std::int32_t count = TRUNCATE(std::round(length / width));
        for (std::int32_t i = 1; i <= count; ++i)
            nodes.push_back(start + static_cast<float>(i) * width);
        start = start + length;
    };
    add_block(DAM.WLEFT, s.DL);
    add_block(DAM.WMID, s.DM);
    add_block(DAM.WRIGHT, s.DR);
    return nodes;
}

std::vector<float>::iterator nearest(std::vector<float>& nodes, float x) {
    return std::min_element(nodes.begin(), nodes.end(),
                            [x](float a, float b) { return std::abs(a - x) < std::abs(b - x); });
}

float top_row_line() {
    return DAM.HDAM - element_size(DAM.HDAM, DAMSIZES.DV);
}

bool ends_in_top_row(const DamOutline& points) {
    const float halfway = 0.5F * (top_row_line() + DAM.HDAM);
    return std::any_of(points.begin(), points.end(),
                       [=](const DamPoint& p) { return p.y > halfway && !same_line(p.y, DAM.HDAM); });
}

// True when an end of the crest is the node nearest to a corner on the crest: the cut would move it there.
bool takes_crest_end(const DamOutline& points) {
    const float left = left_crest_end().x, right = right_crest_end().x;
    std::vector<float> nodes = crest_nodes();
    *nearest(nodes, left) = left;
    *nearest(nodes, right) = right;
    for (const DamPoint& p : points) {
        if (!same_line(p.y, DAM.HDAM))
            continue;
        const auto node = nearest(nodes, p.x);
        if ((*node == left || *node == right) && !same_line(*node, p.x))
            return true;
        *node = p.x;
    }
    return false;
}

bool crowds_slope(const DamOutline& points, const CrestEnd& end) {
    return end.beside_edge && std::any_of(points.begin(), points.end(), [&](const DamPoint& p) {
               return p.y >= clear_of_slope(end) && std::abs(p.x - end.x) < element_beside_crest();
           });
}

}  // namespace

bool same_line(float a, float b) {
    return std::abs(a - b) <= SAME_LINE * DAM.HDAM;
}

bool on_mesh_line(const DamPoint& a, const DamPoint& b) {
    return (same_line(a.y, b.y) && horizontal_line(a.y)) || (same_line(a.x, b.x) && vertical_line(a.x));
}

bool clear_of_shells(const DamOutline& points) {
    const float left = DAMSIZES.crest_left + DAMSIZES.DM, right = DAMSIZES.crest_right - DAMSIZES.DM;
    return std::all_of(points.begin(), points.end(),
                       [=](const DamPoint& p) { return p.x >= left && p.x <= right; });
}

bool below_base(const DamOutline& points) {
    return std::all_of(points.begin(), points.end(), [](const DamPoint& p) { return p.y <= -DAMSIZES.DV; });
}

CrestEnd left_crest_end() {
    return {DAMSIZES.crest_left, 0.0F, !same_line(DAMSIZES.crest_left, DAM.WLEFT)};
}

CrestEnd right_crest_end() {
    const float x = DAMSIZES.crest_right;
    return {x, DAMSIZES.toe, !same_line(x, DAM.WLEFT + DAM.WMID)};
}

float clear_of_slope(const CrestEnd& end) {
    return DAM.HDAM * (1.0F - std::min(element_beside_crest() / std::abs(end.toe - end.x), 1.0F));
}

bool crowds_crest(const DamOutline& points) {
    return ends_in_top_row(points) || (!DAM.shells && takes_crest_end(points)) ||
           crowds_slope(points, left_crest_end()) || crowds_slope(points, right_crest_end());
}

float clear_of_crest() {
    float y = top_row_line();
    for (const CrestEnd& end : {left_crest_end(), right_crest_end()})
        if (end.beside_edge)
            y = std::min(y, clear_of_slope(end));
    return y;
}

float clear_of_bottom() {
    return DAMSIZES.bottom + std::min(LOWEST_ROW * DAMSIZES.DV, DAM.layers.back());
}

bool crowds_bottom(const DamOutline& points) {
    const float halfway = 0.5F * (clear_of_bottom() + DAMSIZES.bottom);
    return std::any_of(points.begin(), points.end(),
                       [=](const DamPoint& p) { return p.y < halfway && !same_line(p.y, DAMSIZES.bottom); });
}

}  // namespace brelan
