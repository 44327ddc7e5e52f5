#include "dam/dam_cuts.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "text/real_to_integer.h"

namespace brelan {

namespace {

// Coordinates this near, as a share of the dam's height, are those of one line.
constexpr float SAME_LINE = 1.0E-4F;

bool horizontal_line(const DamCards& dam, float y) {
    if (same_line(dam, y, dam.height) || same_line(dam, y, 0.0F))
        return true;
    float level = 0.0F;
    for (const float thickness : dam.layers)
        if (level = level - thickness; same_line(dam, y, level))
            return true;
    return false;
}

// An edge of a block column beside an end of the crest is bent by what is drawn there.
bool vertical_line(const DamCards& dam, const DamSizes& sizes, float x) {
    if (same_line(dam, x, sizes.left) || same_line(dam, x, sizes.right))
        return true;
    return (same_line(dam, x, dam.left_width) && !left_crest_end(dam, sizes).beside_edge) ||
           (same_line(dam, x, dam.left_width + dam.middle_width) && !right_crest_end(dam, sizes).beside_edge);
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
float element_beside_crest(const DamCards& dam, const DamSizes& sizes) {
    const DamSizes& s = sizes;
    return std::max(element_size(dam.middle_width, s.middle_size), s.left_size);
}

// Where the nodes of the crest stand before its ends are placed.
std::vector<float> crest_nodes(const DamCards& dam, const DamSizes& sizes) {
    const DamSizes& s = sizes;
    std::vector<float> nodes{0.0F};
    float start = 0.0F;
    const auto add_block = [&](float length, float wanted) {
        const float width = element_size(length, wanted);
        const std::int32_t count = to_integer(std::round(length / width));
        for (std::int32_t i = 1; i <= count; ++i)
            nodes.push_back(start + static_cast<float>(i) * width);
        start = start + length;
    };
    add_block(dam.left_width, s.left_size);
    add_block(dam.middle_width, s.middle_size);
    add_block(dam.right_width, s.right_size);
    return nodes;
}

std::vector<float>::iterator nearest(std::vector<float>& nodes, float x) {
    return std::min_element(nodes.begin(), nodes.end(),
                            [x](float a, float b) { return std::abs(a - x) < std::abs(b - x); });
}

float top_row_line(const DamCards& dam, const DamSizes& sizes) {
    return dam.height - element_size(dam.height, sizes.vertical_size);
}

bool ends_in_top_row(const DamCards& dam, const DamSizes& sizes, const DamOutline& points) {
    const float halfway = 0.5F * (top_row_line(dam, sizes) + dam.height);
    return std::any_of(points.begin(), points.end(),
                       [&](const Point& p) { return p.y > halfway && !same_line(dam, p.y, dam.height); });
}

// True when an end of the crest is the node nearest to a corner on the crest: the cut would move it there.
bool takes_crest_end(const DamCards& dam, const DamSizes& sizes, const DamOutline& points) {
    const float left = left_crest_end(dam, sizes).x, right = right_crest_end(dam, sizes).x;
    std::vector<float> nodes = crest_nodes(dam, sizes);
    *nearest(nodes, left) = left;
    *nearest(nodes, right) = right;
    for (const Point& p : points) {
        if (!same_line(dam, p.y, dam.height))
            continue;
        const auto node = nearest(nodes, p.x);
        if ((*node == left || *node == right) && !same_line(dam, *node, p.x))
            return true;
        *node = p.x;
    }
    return false;
}

bool crowds_slope(const DamCards& dam, const DamSizes& sizes, const DamOutline& points, const CrestEnd& end) {
    return end.beside_edge && std::any_of(points.begin(), points.end(), [&](const Point& p) {
               return p.y >= clear_of_slope(dam, sizes, end) &&
                      std::abs(p.x - end.x) < element_beside_crest(dam, sizes);
           });
}

}  // namespace

bool same_line(const DamCards& dam, float a, float b) {
    return std::abs(a - b) <= SAME_LINE * dam.height;
}

bool on_mesh_line(const DamCards& dam, const DamSizes& sizes, const Point& a, const Point& b) {
    return (same_line(dam, a.y, b.y) && horizontal_line(dam, a.y)) ||
           (same_line(dam, a.x, b.x) && vertical_line(dam, sizes, a.x));
}

bool clear_of_shells(const DamSizes& sizes, const DamOutline& points) {
    const float left = sizes.crest_left + sizes.middle_size, right = sizes.crest_right - sizes.middle_size;
    return std::all_of(points.begin(), points.end(),
                       [=](const Point& p) { return p.x >= left && p.x <= right; });
}

bool below_base(const DamSizes& sizes, const DamOutline& points) {
    return std::all_of(points.begin(), points.end(),
                       [&](const Point& p) { return p.y <= -sizes.vertical_size; });
}

CrestEnd left_crest_end(const DamCards& dam, const DamSizes& sizes) {
    return {sizes.crest_left, 0.0F, !same_line(dam, sizes.crest_left, dam.left_width)};
}

CrestEnd right_crest_end(const DamCards& dam, const DamSizes& sizes) {
    const float x = sizes.crest_right;
    return {x, sizes.toe, !same_line(dam, x, dam.left_width + dam.middle_width)};
}

float clear_of_slope(const DamCards& dam, const DamSizes& sizes, const CrestEnd& end) {
    return dam.height * (1.0F - std::min(element_beside_crest(dam, sizes) / std::abs(end.toe - end.x), 1.0F));
}

bool crowds_crest(const DamCards& dam, const DamSizes& sizes, const DamOutline& points) {
    return ends_in_top_row(dam, sizes, points) || (!dam.shells && takes_crest_end(dam, sizes, points)) ||
           crowds_slope(dam, sizes, points, left_crest_end(dam, sizes)) ||
           crowds_slope(dam, sizes, points, right_crest_end(dam, sizes));
}

float clear_of_crest(const DamCards& dam, const DamSizes& sizes) {
    float y = top_row_line(dam, sizes);
    for (const CrestEnd& end : {left_crest_end(dam, sizes), right_crest_end(dam, sizes)})
        if (end.beside_edge)
            y = std::min(y, clear_of_slope(dam, sizes, end));
    return y;
}

float clear_of_bottom(const DamCards& dam, const DamSizes& sizes) {
    return sizes.bottom + std::min(LOWEST_ROW * sizes.vertical_size, dam.layers.back());
}

bool crowds_bottom(const DamCards& dam, const DamSizes& sizes, const DamOutline& points) {
    const float halfway = 0.5F * (clear_of_bottom(dam, sizes) + sizes.bottom);
    return std::any_of(points.begin(), points.end(),
                       [&](const Point& p) { return p.y < halfway && !same_line(dam, p.y, sizes.bottom); });
}

}  // namespace brelan
