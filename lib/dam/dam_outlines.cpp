#include "dam/dam_outlines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "dam/dam_cuts.h"
#include "mesh/edition.h"
#include "text/number_text.h"

namespace brelan {

namespace {

// Materials of the other zones; a layer has the one of the first layer and on.
constexpr std::int32_t UPSTREAM_SHELL = 2, DOWNSTREAM_SHELL = 3, FIRST_LAYER = 6;

// Kinds of a group, as on Card 3.3.5.4.1.
constexpr std::int32_t KEEP_INSIDE = -1, LINE = 2, ZONE = 3, CLOSING_OUTLINE = 5, NO_GROUP = 0;

// Line elements of the head kind: boundary of a given head, and a seepage face.
constexpr std::int32_t TOTAL_HEAD = 5, SEEPAGE_FACE = 3;

// --- how sides are cut -----------------------------------------------------------------------------

std::size_t sides_of(const DamGroup& group) {
    return group.group_type == LINE ? group.points.size() - 1 : group.points.size();
}

// Sides that lie on the mesh's own lines are not cut, all others are.
void cut_sides(const DamCards& dam, const DamSizes& sizes, DamGroup& group) {
    group.end_rules.clear();
    for (std::size_t k = 0; k < sides_of(group); ++k) {
        const Point& next = group.points[(k + 1) % group.points.size()];
        group.end_rules.push_back(on_mesh_line(dam, sizes, group.points[k], next) ? NOT_CUT : CUT);
    }
}

void leave_uncut(DamGroup& group) {
    group.end_rules.assign(sides_of(group), NOT_CUT);
}

// What of an outline lies above a height, or below one, is left uncut: the sides get a point there.
enum class Beyond { above, below };
void leave_uncut_beyond(const DamCards& dam, DamGroup& group, float y, Beyond side) {
    const auto beyond = [&](const Point& p) {
        return !same_line(dam, p.y, y) && (side == Beyond::above ? p.y > y : p.y < y);
    };
    const DamGroup whole = group;
    group.points.clear();
    group.end_rules.clear();
    for (std::size_t k = 0; k < whole.points.size(); ++k) {
        const Point& a = whole.points[k];
        const Point& b = whole.points[(k + 1) % whole.points.size()];
        group.points.push_back(a);
        group.end_rules.push_back(beyond(a) ? NOT_CUT : whole.end_rules[k]);
        if (beyond(a) == beyond(b))
            continue;
        if (same_line(dam, a.y, y) || same_line(dam, b.y, y)) {
            group.end_rules.back() = NOT_CUT;
            continue;
        }
        group.points.push_back({a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)), y});
        group.end_rules.push_back(beyond(b) ? NOT_CUT : whole.end_rules[k]);
    }
}

// --- outlines --------------------------------------------------------------------------------------

// The dam's body in this mesh, from the left along the base: with shells the middle block.
DamOutline body_outline(const DamCards& dam, const DamSizes& sizes) {
    const DamSizes& s = sizes;
    const float left = dam.shells ? s.crest_left : 0.0F;
    const float right = dam.shells ? s.crest_right : s.toe;
    return {{left, 0.0F}, {right, 0.0F}, {s.crest_right, dam.height}, {s.crest_left, dam.height}};
}

// All that stays: body and ground.
DamOutline surface_outline(const DamCards& dam, const DamSizes& sizes) {
    const DamSizes& s = sizes;
    DamOutline body = body_outline(dam, sizes);
    if (dam.layer_count == 0)
        return body;
    DamOutline outline{{s.left, s.bottom}, {s.right, s.bottom}, {s.right, 0.0F}};
    outline.insert(outline.end(), body.begin() + 1, body.end());
    outline.push_back(body.front());
    outline.push_back({s.left, 0.0F});
    return outline;
}

DamGroup drawn(const DamCards& dam, const DamSizes& sizes, std::string title, std::int32_t group_type,
               DamOutline points) {
    DamGroup group;
    group.title = std::move(title);
    group.group_type = group_type;
    group.points = std::move(points);
    cut_sides(dam, sizes, group);
    return group;
}

// Slopes and crest as sides of an outline that goes over the crest to the left. The crest lies on the mesh's
// top line and is cut all the same: that places its ends. An end beside the edge of its block column is not
// placed, as nodes of the crest do not give way to it: the slope is drawn a little beyond the crest, and its
// cut moves the next node of the crest onto itself. With one division a node that was planned on a side is
// dropped when a corner of the side is moved so.
void cut_crest(const DamCards& dam, const DamSizes& sizes, DamGroup& group) {
    constexpr float BEYOND = 0.01F;  // of the slope
    std::size_t crest = 0;
    while (group.points[crest].y != dam.height)
        ++crest;
    const auto draw_beyond = [&](std::size_t at, const CrestEnd& end) {
        Point& p = group.points[at];
        p = {p.x + BEYOND * (p.x - end.toe), p.y + BEYOND * p.y};
        group.end_rules[crest] = NOT_CUT;
        group.divisions = 1;
    };
    group.end_rules[crest] = CUT;
    if (const CrestEnd right = right_crest_end(dam, sizes); right.beside_edge) {
        draw_beyond(crest, right);
        group.end_rules[crest - 1] = CUT_BUT_END;
    }
    if (const CrestEnd left = left_crest_end(dam, sizes); left.beside_edge) {
        draw_beyond(crest + 1, left);
        group.end_rules[crest + 1] = CUT_BUT_START;
    }
}

DamGroup zone(const DamCards& dam, const DamSizes& sizes, std::string title, std::int32_t material,
              DamOutline points) {
    DamGroup group = drawn(dam, sizes, std::move(title), ZONE, std::move(points));
    group.material = material;
    return group;
}

// The triangle under a slope.
DamGroup shell(const DamCards& dam, const DamSizes& sizes, std::string title, std::int32_t material,
               const CrestEnd& end) {
    DamGroup group =
        zone(dam, sizes, std::move(title), material, {{end.toe, 0.0F}, {end.x, 0.0F}, {end.x, dam.height}});
    if (!end.beside_edge)
        return group;
    constexpr std::size_t VERTICAL = 1;
    if (const float clear = clear_of_slope(dam, sizes, end); !same_line(dam, clear, 0.0F)) {
        group.points.insert(group.points.end() - 1, {end.x, clear});
        group.end_rules.insert(group.end_rules.begin() + VERTICAL, CUT);
        group.end_rules[VERTICAL + 1] = NOT_CUT;
    } else {
        group.end_rules[VERTICAL] = NOT_CUT;
    }
    return group;
}

DamGroup core(const DamCards& dam, const DamSizes& sizes) {
    DamGroup group = zone(dam, sizes, " Dam Core", CORE_MATERIAL, dam.core_points);
    if (dam.shells && !clear_of_shells(sizes, group.points))
        leave_uncut(group);
    else if (crowds_crest(dam, sizes, group.points))
        leave_uncut_beyond(dam, group, clear_of_crest(dam, sizes), Beyond::above);
    return group;
}

DamGroup wall(const DamCards& dam, const DamSizes& sizes) {
    DamGroup group = zone(dam, sizes, " Cut-off Wall", WALL_MATERIAL, dam.wall_points);
    if (dam.shells && !below_base(sizes, group.points) && !clear_of_shells(sizes, group.points))
        leave_uncut(group);
    else if (crowds_bottom(dam, sizes, group.points))
        leave_uncut_beyond(dam, group, clear_of_bottom(dam, sizes), Beyond::below);
    return group;
}

// --- boundaries of the head kind -------------------------------------------------------------------

DamGroup boundary(const DamCards& dam, const DamSizes& sizes, std::string title, std::int32_t line_type,
                  std::int32_t line_material, DamOutline points) {
    const std::int32_t group_type = points.size() > 1 ? LINE : NO_GROUP;
    DamGroup group = drawn(dam, sizes, std::move(title), group_type, std::move(points));
    group.line_type = line_type;
    group.line_material = line_material;
    return group;
}

DamOutline upstream_path(const DamCards& dam, const DamSizes& sizes) {
    const DamSizes& s = sizes;
    DamOutline path;
    if (dam.layer_count > 0)
        path.push_back({s.left, 0.0F});
    path.push_back({0.0F, 0.0F});
    const float level = std::clamp(dam.water_height, 0.0F, dam.height);
    if (!dam.shells && level > 0.0F)
        path.push_back({level / dam.height * s.crest_left, level});
    return path;
}

void add_boundaries(const DamCards& dam, const DamSizes& sizes, std::vector<DamGroup>& groups) {
    const DamSizes& s = sizes;
    if (dam.shells && dam.layer_count == 0)
        return;
    groups.push_back(
        boundary(dam, sizes, " Upstream Total Head Boundary", TOTAL_HEAD, 1, upstream_path(dam, sizes)));
    if (dam.layer_count > 0)
        groups.push_back(boundary(dam, sizes, " Downstream Total Head Boundary", TOTAL_HEAD, 2,
                                  {{s.toe, 0.0F}, {s.right, 0.0F}}));
    const Point crest_end{s.crest_right, dam.height};
    const DamOutline face =
        dam.shells ? DamOutline{{s.crest_left, dam.height}, crest_end} : DamOutline{crest_end, {s.toe, 0.0F}};
    groups.push_back(boundary(dam, sizes, " Potential Seepage Face Boundary", SEEPAGE_FACE, 1, face));
}

// --- the layers ------------------------------------------------------------------------------------

std::string layer_title(std::int32_t layer) {
    std::array<char, 3> number{};
    put_integer(number.data(), static_cast<int>(number.size()), layer);
    std::string title = " Subsoil Layer ";
    title.append(number.data(), number.size());
    return title;
}

void add_layers(const DamCards& dam, const DamSizes& sizes, const DamOutline& wall,
                std::vector<DamGroup>& groups) {
    float top = 0.0F;
    for (std::int32_t layer = 1; layer <= dam.layer_count; ++layer) {
        const float bottom = top - dam.layers[static_cast<std::size_t>(layer - 1)];
        DamGroup group = zone(dam, sizes, layer_title(layer), FIRST_LAYER + layer - 1,
                              layer_outline(sizes.left, sizes.right, bottom, top, wall));
        leave_uncut(group);
        groups.push_back(std::move(group));
        top = bottom;
    }
}

// --- the deck --------------------------------------------------------------------------------------

std::vector<DamGroup> groups_by_rules(LayoutKind kind, const DamCards& dam, const DamSizes& sizes) {
    std::vector<DamGroup> groups;
    groups.push_back(drawn(dam, sizes, " Ground Surface", KEEP_INSIDE, surface_outline(dam, sizes)));
    cut_crest(dam, sizes, groups.back());
    groups.push_back(drawn(dam, sizes, " Main Shell", CLOSING_OUTLINE, body_outline(dam, sizes)));
    leave_uncut(groups.back());
    if (!dam.shells) {
        groups.push_back(shell(dam, sizes, " Upstream Shell", UPSTREAM_SHELL, left_crest_end(dam, sizes)));
        groups.push_back(
            shell(dam, sizes, " Downstream Shell", DOWNSTREAM_SHELL, right_crest_end(dam, sizes)));
    }
    if (dam.core)
        groups.push_back(core(dam, sizes));
    if (kind == LayoutKind::head)
        add_boundaries(dam, sizes, groups);
    if (dam.cut_off)
        groups.push_back(wall(dam, sizes));
    add_layers(dam, sizes, dam.wall_points, groups);
    return groups;
}

void cut_all_sides(DamGroup& group) {
    group.end_rules.assign(sides_of(group), CUT);
}

// Core and wall as they are drawn.
std::vector<DamGroup> inner_zones(const DamCards& dam, const DamSizes& sizes) {
    std::vector<DamGroup> zones;
    if (dam.core)
        zones.push_back(zone(dam, sizes, " Dam Core", CORE_MATERIAL, dam.core_points));
    if (dam.cut_off)
        zones.push_back(zone(dam, sizes, " Cut-off Wall", WALL_MATERIAL, dam.wall_points));
    for (DamGroup& group : zones)
        cut_all_sides(group);
    return zones;
}

// The slope of an outline as the upstream boundary goes along it, with a point on the water level: a cut that
// misses the point by its last digit leaves an element that is all but flat.
void bend_at_level(const DamCards& dam, const DamSizes& sizes, DamGroup& group) {
    const Point level = upstream_path(dam, sizes).back(), toe{}, crest_end{sizes.crest_left, dam.height};
    const auto is = [](const Point& a, const Point& b) { return a.x == b.x && a.y == b.y; };
    if (is(level, toe) || is(level, crest_end))
        return;
    for (std::size_t k = 0; k < group.points.size(); ++k) {
        const Point &a = group.points[k], &b = group.points[(k + 1) % group.points.size()];
        if ((is(a, toe) && is(b, crest_end)) || (is(a, crest_end) && is(b, toe))) {
            const auto at = static_cast<std::ptrdiff_t>(k);
            group.points.insert(group.points.begin() + at + 1, level);
            group.end_rules.insert(group.end_rules.begin() + at, group.end_rules[k]);
            return;
        }
    }
}

// The sound cut takes every side as it is drawn. The layers come first: their lines are changes of material
// then, which what is cut later leaves in place.
std::vector<DamGroup> sound_groups(LayoutKind kind, const DamCards& dam, const DamSizes& sizes) {
    std::vector<DamGroup> groups;
    add_layers(dam, sizes, {}, groups);
    groups.push_back(drawn(dam, sizes, " Ground Surface", KEEP_INSIDE, surface_outline(dam, sizes)));
    cut_all_sides(groups.back());
    groups.push_back(drawn(dam, sizes, " Main Shell", CLOSING_OUTLINE, body_outline(dam, sizes)));
    leave_uncut(groups.back());
    if (!dam.shells) {
        const auto add_shell = [&](std::string title, std::int32_t material, const CrestEnd& end) {
            groups.push_back(zone(dam, sizes, std::move(title), material,
                                  {{end.toe, 0.0F}, {end.x, 0.0F}, {end.x, dam.height}}));
            cut_all_sides(groups.back());
        };
        add_shell(" Upstream Shell", UPSTREAM_SHELL, left_crest_end(dam, sizes));
        add_shell(" Downstream Shell", DOWNSTREAM_SHELL, right_crest_end(dam, sizes));
        for (DamGroup& inner : inner_zones(dam, sizes))
            groups.push_back(std::move(inner));
    }
    if (kind == LayoutKind::head) {
        for (DamGroup& group : groups)
            bend_at_level(dam, sizes, group);
        add_boundaries(dam, sizes, groups);
    }
    return groups;
}

}  // namespace

std::vector<DamGroup> dam_groups(LayoutKind kind, const DamCards& dam, const DamSizes& sizes, CutMethod cut) {
    return cut == CutMethod::sound ? sound_groups(kind, dam, sizes) : groups_by_rules(kind, dam, sizes);
}

std::vector<DamGroup> zones_over_shells(const DamCards& dam, const DamSizes& sizes) {
    return dam.shells ? inner_zones(dam, sizes) : std::vector<DamGroup>{};
}

}  // namespace brelan
