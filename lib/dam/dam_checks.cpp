#include "dam/dam_checks.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "dam/dam_sizes.h"
#include "dam/dam_tables.h"

namespace brelan {

namespace {

// The block rows of a dam are counted in two columns of the deck that is written.
constexpr std::int32_t MOST_LAYERS = 98;

// How far a point may lie outside the profile, as a share of the dam's height: cards carry five digits.
constexpr double OUTSIDE = 1.0E-4;

std::string shown(float value) {
    std::array<char, 32> text{};
    const int length = std::snprintf(text.data(), text.size(), "%g", static_cast<double>(value));
    return {text.data(), static_cast<std::size_t>(length)};
}

void require_positive(const FilePlace& place, const char* card, const char* field, float value) {
    if (!(value > 0.0F))
        fail_at(place, std::string(card) + ": expected " + field + " above 0, found " + shown(value));
}

// --- four points -----------------------------------------------------------------------------------

double turn(const Point& a, const Point& b, const Point& c) {
    const double ux = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double uy = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double vx = static_cast<double>(c.x) - static_cast<double>(a.x);
    const double vy = static_cast<double>(c.y) - static_cast<double>(a.y);
    return ux * vy - uy * vx;
}

bool cross(const Point& a, const Point& b, const Point& c, const Point& d) {
    return turn(a, b, c) * turn(a, b, d) < 0.0 && turn(c, d, a) * turn(c, d, b) < 0.0;
}

// How far a point lies on the right of the line from a to b.
double outside_of(const Point& p, const Point& a, const Point& b) {
    return -turn(a, b, p) / std::hypot(static_cast<double>(b.x - a.x), static_cast<double>(b.y - a.y));
}

bool in_profile(const DamCards& dam, const DamSizes& sizes, const Point& p) {
    const DamSizes& s = sizes;
    const std::array<Point, 5> profile{
        {{0.0F, 0.0F}, {s.toe, 0.0F}, {s.crest_right, dam.height}, {s.crest_left, dam.height}, {0.0F, 0.0F}}};
    for (std::size_t i = 0; i + 1 < profile.size(); ++i)
        if (outside_of(p, profile[i], profile[i + 1]) > OUTSIDE * static_cast<double>(dam.height))
            return false;
    return true;
}

bool in_ground(const DamCards& dam, const DamSizes& sizes, const Point& p) {
    const auto reach = static_cast<float>(OUTSIDE) * dam.height;
    return p.x >= sizes.left - reach && p.x <= sizes.right + reach && p.y >= sizes.bottom - reach &&
           p.y <= reach;
}

void check_points(const DamCards& dam, const DamOutline& p, const FilePlace& place, const char* card) {
    const bool crossed = cross(p[0], p[1], p[2], p[3]) || cross(p[1], p[2], p[3], p[0]);
    const double area = 0.5 * (turn(p[0], p[1], p[2]) + turn(p[0], p[2], p[3]));
    if (crossed || std::abs(area) <= OUTSIDE * OUTSIDE * static_cast<double>(dam.height * dam.height))
        fail_at(place,
                std::string(card) +
                    ": expected four points in their order round an area, found sides that cross or an "
                    "area of 0");
}

void check_core(const DamCards& dam, const DamSizes& sizes) {
    check_points(dam, dam.core_points, dam.core_place, "Card 5.3");
    for (const Point& p : dam.core_points)
        if (!in_profile(dam, sizes, p))
            fail_at(dam.core_place, "Card 5.3: expected a core inside the dam's profile, found a point at " +
                                        shown(p.x) + ", " + shown(p.y));
}

void check_wall(const DamCards& dam, const DamSizes& sizes) {
    check_points(dam, dam.wall_points, dam.wall_place, "Card 5.5");
    for (const Point& p : dam.wall_points)
        if (!in_ground(dam, sizes, p) && !in_profile(dam, sizes, p))
            fail_at(dam.wall_place,
                    "Card 5.5: expected a cut-off wall inside the ground and the dam, found a point at " +
                        shown(p.x) + ", " + shown(p.y));
}

// --- the other cards -------------------------------------------------------------------------------

void check_switches(DamCards& dam) {
    if (dam.layer_count > MOST_LAYERS)
        fail_at(dam.switches_place, "Card 5.1: expected at most " + std::to_string(MOST_LAYERS) +
                                        " layers in NLAYER, found " + std::to_string(dam.layer_count));
    dam.layer_count = dam.layer_count < 0 ? 0 : dam.layer_count;
}

void check_profile(const DamCards& dam, DamSizes& sizes) {
    const char* const card = "Card 5.2";
    const FilePlace& place = dam.profile_place;
    require_positive(place, card, "a dam height (HDAM)", dam.height);
    require_positive(place, card, "a run of the left slope (RUNL)", dam.left_run);
    require_positive(place, card, "a width of the left block column (WLEFT)", dam.left_width);
    require_positive(place, card, "a crest width", dam.crest);
    require_positive(place, card, "a width of the middle block column (WMID)", dam.middle_width);
    require_positive(place, card, "a run of the right slope (RUNR)", dam.right_run);
    require_positive(place, card, "a width of the right block column (WRIGHT)", dam.right_width);
    sizes = size_dam(dam);
    if (!(sizes.crest_right < sizes.toe))
        fail_at(place,
                std::string(card) +
                    ": expected block columns that reach beyond the crest, found a crest that ends at " +
                    shown(sizes.crest_right) + " and block columns that end at " + shown(sizes.toe));
}

void check_ground(const DamCards& dam) {
    require_positive(dam.margins_place, "Card 5.4-1", "a left margin (XLEFT)", dam.left_margin);
    require_positive(dam.margins_place, "Card 5.4-1", "a right margin (XRIGHT)", dam.right_margin);
    for (const float thickness : dam.layers)
        require_positive(dam.layers_place, "Card 5.4", "layer thicknesses", thickness);
}

}  // namespace

void check_dam(DamCards& dam, DamSizes& sizes) {
    check_switches(dam);
    check_profile(dam, sizes);
    if (dam.core)
        check_core(dam, sizes);
    if (dam.layer_count > 0)
        check_ground(dam);
    if (dam.cut_off)
        check_wall(dam, sizes);
}

}  // namespace brelan
