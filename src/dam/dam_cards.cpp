#include "dam/dam_cards.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>

#include "channel/free_field.h"
#include "dam/dam_sizes.h"
#include "dam/dam_tables.h"

namespace brelan {

namespace {

// The block rows of a dam are counted in two columns of the deck that is written.
constexpr std::int32_t MAXLAYERS = 98;

// How far a point may lie outside the profile, as a share of the dam's height: cards carry five digits.
constexpr double OUTSIDE = 1.0E-4;

std::string shown(float value) {
    std::array<char, 32> text{};
    const int length = std::snprintf(text.data(), text.size(), "%g", static_cast<double>(value));
    return {text.data(), static_cast<std::size_t>(length)};
}

void require_positive(const Channel& deck, const char* card, const char* field, float value) {
    if (!(value > 0.0F))
        deck.fail_behind(std::string(card) + ": expected " + field + " above 0, found " + shown(value));
}

// --- four points -----------------------------------------------------------------------------------

double turn(const DamPoint& a, const DamPoint& b, const DamPoint& c) {
    const double ux = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double uy = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double vx = static_cast<double>(c.x) - static_cast<double>(a.x);
    const double vy = static_cast<double>(c.y) - static_cast<double>(a.y);
    return ux * vy - uy * vx;
}

bool cross(const DamPoint& a, const DamPoint& b, const DamPoint& c, const DamPoint& d) {
    return turn(a, b, c) * turn(a, b, d) < 0.0 && turn(c, d, a) * turn(c, d, b) < 0.0;
}

// How far a point lies on the right of the line from a to b.
double outside_of(const DamPoint& p, const DamPoint& a, const DamPoint& b) {
    return -turn(a, b, p) / std::hypot(static_cast<double>(b.x - a.x), static_cast<double>(b.y - a.y));
}

bool in_profile(const DamPoint& p) {
    const DamSizes& s = DAMSIZES;
    const std::array<DamPoint, 5> profile{
        {{0.0F, 0.0F}, {s.toe, 0.0F}, {s.crest_right, DAM.HDAM}, {s.crest_left, DAM.HDAM}, {0.0F, 0.0F}}};
    for (std::size_t i = 0; i + 1 < profile.size(); ++i)
        if (outside_of(p, profile[i], profile[i + 1]) > OUTSIDE * static_cast<double>(DAM.HDAM))
            return false;
    return true;
}

bool in_ground(const DamPoint& p) {
    const auto reach = static_cast<float>(OUTSIDE) * DAM.HDAM;
    return p.x >= DAMSIZES.left - reach && p.x <= DAMSIZES.right + reach && p.y >= DAMSIZES.bottom - reach &&
           p.y <= reach;
}

DamOutline read_points(Channel& deck, const char* card) {
    DamOutline p(4);
    read_free(deck, card, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
    const bool crossed = cross(p[0], p[1], p[2], p[3]) || cross(p[1], p[2], p[3], p[0]);
    const double area = 0.5 * (turn(p[0], p[1], p[2]) + turn(p[0], p[2], p[3]));
    if (crossed || std::abs(area) <= OUTSIDE * OUTSIDE * static_cast<double>(DAM.HDAM * DAM.HDAM))
        deck.fail_behind(std::string(card) +
                         ": expected four points in their order round an area, found sides that cross or an "
                         "area of 0");
    return p;
}

void read_core(Channel& deck) {
    DAM.core_points = read_points(deck, "Card 5.3");
    for (const DamPoint& p : DAM.core_points)
        if (!in_profile(p))
            deck.fail_behind("Card 5.3: expected a core inside the dam's profile, found a point at " +
                             shown(p.x) + ", " + shown(p.y));
}

void read_wall(Channel& deck) {
    DAM.wall_points = read_points(deck, "Card 5.5");
    for (const DamPoint& p : DAM.wall_points)
        if (!in_ground(p) && !in_profile(p))
            deck.fail_behind(
                "Card 5.5: expected a cut-off wall inside the ground and the dam, found a point at " +
                shown(p.x) + ", " + shown(p.y));
}

// --- the other cards -------------------------------------------------------------------------------

// Returns the switches that are no part of DAM: core and wall.
void read_switches(Channel& deck) {
    std::int32_t ICORE = 0, ICUT = 0, ISHELL = 0;
    read_free(deck, "Card 5.1 (NLAYER, ICORE, ICUT, ISHELL, NCREST, Hi)", DAM.NLAYER, ICORE, ICUT, ISHELL,
              DAM.NCREST, DAM.Hi);
    if (DAM.NLAYER > MAXLAYERS)
        deck.fail_behind("Card 5.1: expected at most " + std::to_string(MAXLAYERS) +
                         " layers in NLAYER, found " + std::to_string(DAM.NLAYER));
    DAM.NLAYER = DAM.NLAYER < 0 ? 0 : DAM.NLAYER;
    DAM.core = ICORE == 1;
    DAM.cut_off = ICUT == 1 && DAM.NLAYER > 0;
    DAM.shells = ISHELL != 0;
}

void read_profile(Channel& deck) {
    const char* const card = "Card 5.2";
    read_free(deck, card, DAM.HDAM, DAM.HWATER, DAM.RUNL, DAM.WLEFT, DAM.crest, DAM.WMID, DAM.RUNR,
              DAM.WRIGHT);
    require_positive(deck, card, "a dam height (HDAM)", DAM.HDAM);
    require_positive(deck, card, "a run of the left slope (RUNL)", DAM.RUNL);
    require_positive(deck, card, "a width of the left block column (WLEFT)", DAM.WLEFT);
    require_positive(deck, card, "a crest width", DAM.crest);
    require_positive(deck, card, "a width of the middle block column (WMID)", DAM.WMID);
    require_positive(deck, card, "a run of the right slope (RUNR)", DAM.RUNR);
    require_positive(deck, card, "a width of the right block column (WRIGHT)", DAM.WRIGHT);
    SIZEDAM();
    if (!(DAMSIZES.crest_right < DAMSIZES.toe))
        deck.fail_behind(std::string(card) +
                         ": expected block columns that reach beyond the crest, found a crest that ends at " +
                         shown(DAMSIZES.crest_right) + " and block columns that end at " +
                         shown(DAMSIZES.toe));
}

void read_ground(Channel& deck) {
    read_free(deck, "Card 5.4-1 (XLEFT, XRIGHT)", DAM.XLEFT, DAM.XRIGHT);
    require_positive(deck, "Card 5.4-1", "a left margin (XLEFT)", DAM.XLEFT);
    require_positive(deck, "Card 5.4-1", "a right margin (XRIGHT)", DAM.XRIGHT);
    DAM.layers.resize(static_cast<std::size_t>(DAM.NLAYER));
    read_free_list<float>(deck, "the layer thicknesses of Card 5.4", std::span(DAM.layers));
    for (const float thickness : DAM.layers)
        require_positive(deck, "Card 5.4", "layer thicknesses", thickness);
    SIZEDAM();
}

}  // namespace

void READDAM(Channel& deck) {
    deck.rewind();
    DAM = DamCards{};
    read_switches(deck);
    read_profile(deck);
    if (DAM.core)
        read_core(deck);
    if (DAM.NLAYER > 0)
        read_ground(deck);
    if (DAM.cut_off)
        read_wall(deck);
}

}  // namespace brelan
