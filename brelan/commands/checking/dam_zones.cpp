#include "commands/checking/dam_zones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "analysis/geometry.h"
#include "dam/dam_outlines.h"

namespace brelan::tool {

namespace {

constexpr double WORTH_TELLING = 0.01;  // of an area, or of a depth

using Polygon = std::vector<DeckPoint>;

double twice_area(const DeckPoint& a, const DeckPoint& b, const DeckPoint& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double signed_area(const Polygon& p) {
    double sum = 0.0;
    for (std::size_t i = 2; i < p.size(); ++i)
        sum += twice_area(p[0], p[i - 1], p[i]);
    return 0.5 * sum;
}

// What lies on the left of the line from a to b.
Polygon left_of(const Polygon& p, const DeckPoint& a, const DeckPoint& b) {
    Polygon kept;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const DeckPoint &q = p[i], &r = p[(i + 1) % p.size()];
        const double at_q = twice_area(a, b, q), at_r = twice_area(a, b, r);
        if (at_q >= 0.0)
            kept.push_back(q);
        if ((at_q < 0.0) != (at_r < 0.0)) {
            const double share = at_q / (at_q - at_r);
            kept.push_back({q.x + share * (r.x - q.x), q.y + share * (r.y - q.y)});
        }
    }
    return kept;
}

// Of two triangles; negative where one of them runs clockwise.
double common_area(Polygon p, Polygon q) {
    double sign = 1.0;
    for (Polygon* t : {&p, &q})
        if (signed_area(*t) < 0.0) {
            std::swap((*t)[1], (*t)[2]);
            sign = -sign;
        }
    for (std::size_t i = 0; i < 3; ++i)
        p = left_of(p, q[i], q[(i + 1) % 3]);
    return sign * signed_area(p);
}

// Of two outlines of four points, dented ones among them: the sum over the triangles that they are made of.
double common_area_of_outlines(const Polygon& a, const Polygon& b) {
    double sum = 0.0;
    for (const std::size_t i : {1U, 2U})
        for (const std::size_t k : {1U, 2U})
            sum += common_area({a[0], a[i], a[i + 1]}, {b[0], b[k], b[k + 1]});
    return std::abs(sum);
}

double lowest(const Polygon& p) {
    return std::min_element(p.begin(), p.end(), [](const auto& a, const auto& b) { return a.y < b.y; })->y;
}

// Area and lowest height of a material in the mesh.
void measure(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, std::int32_t material,
             CutOffZone& zone) {
    zone.made = 0.0;
    zone.foot = std::numeric_limits<double>::max();
    for (std::size_t e = 0; e < mesh.elements.size(); ++e) {
        if (mesh.elements[e].of != ElementClass::solid || mesh.elements[e].words.material.value != material)
            continue;
        zone.made += std::abs(brelan::signed_area(mesh, corners[e]));
        zone.foot = std::min(zone.foot, box_of(mesh, corners[e]).low.y);
    }
}

}  // namespace

bool CutOffZone::other_foot() const {
    return made > 0.0 && std::abs(foot - drawn_foot) > WORTH_TELLING * std::abs(drawn_foot);
}

std::vector<CutOffZone> cut_off_zones(const NotedDeck& deck, const MeshLists& body) {
    const DeckCard *core = deck.card("5.3"), *wall = deck.card("5.5");
    const std::vector<CornerPlaces> corners = corners_of(body);
    std::vector<CutOffZone> zones;
    const auto look_at = [&](const char* name, const DeckCard* card, double drawn, std::int32_t material) {
        CutOffZone zone{name, card, drawn, 0.0, lowest(four_points(*card)), 0.0};
        measure(body, corners, material, zone);
        if (std::abs(zone.made - drawn) > WORTH_TELLING * drawn || zone.other_foot())
            zones.push_back(zone);
    };
    if (core != nullptr) {
        const Polygon points = four_points(*core);
        const double taken = wall == nullptr ? 0.0 : common_area_of_outlines(points, four_points(*wall));
        look_at("core", core, std::abs(signed_area(points)) - taken, CORE_MATERIAL);
    }
    if (wall != nullptr)
        look_at("cut-off wall", wall, std::abs(signed_area(four_points(*wall))), WALL_MATERIAL);
    return zones;
}

}  // namespace brelan::tool
