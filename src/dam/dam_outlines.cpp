#include "dam/dam_outlines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "channel/number_text.h"
#include "dam/dam_cuts.h"
#include "run/settings.h"

namespace brelan {

namespace {

// Materials of the zones; a layer has the one of the first layer and on.
constexpr std::int32_t UPSTREAM_SHELL = 2, DOWNSTREAM_SHELL = 3, CORE = 4, WALL = 5, FIRST_LAYER = 6;

// Kinds of a group, as on Card 3.3.5.4.1.
constexpr std::int32_t KEEP_INSIDE = -1, LINE = 2, ZONE = 3, CLOSING_OUTLINE = 5, NO_GROUP = 0;

// Line elements of the head kind: boundary of a given head, and a seepage face.
constexpr std::int32_t TOTAL_HEAD = 5, SEEPAGE_FACE = 3;

// --- how sides are cut -----------------------------------------------------------------------------

std::size_t sides_of(const DamGroup& group) {
    return group.MTYPE == LINE ? group.points.size() - 1 : group.points.size();
}

// Sides that lie on the mesh's own lines are not cut, all others are.
void cut_sides(DamGroup& group) {
    group.IEND.clear();
    for (std::size_t k = 0; k < sides_of(group); ++k) {
        const DamPoint& next = group.points[(k + 1) % group.points.size()];
        group.IEND.push_back(on_mesh_line(group.points[k], next) ? NOT_CUT : CUT);
    }
}

void leave_uncut(DamGroup& group) {
    group.IEND.assign(sides_of(group), NOT_CUT);
}

// --- outlines --------------------------------------------------------------------------------------

// The dam's body in this mesh, from the left along the base: with shells the middle block.
DamOutline body_outline() {
    const DamSizes& s = DAMSIZES;
    const float left = DAM.shells ? s.crest_left : 0.0F;
    const float right = DAM.shells ? s.crest_right : s.toe;
    return {{left, 0.0F}, {right, 0.0F}, {s.crest_right, DAM.HDAM}, {s.crest_left, DAM.HDAM}};
}

// All that stays: body and ground.
DamOutline surface_outline() {
    const DamSizes& s = DAMSIZES;
    DamOutline body = body_outline();
    if (DAM.NLAYER == 0)
        return body;
    DamOutline outline{{s.left, s.bottom}, {s.right, s.bottom}, {s.right, 0.0F}};
    outline.insert(outline.end(), body.begin() + 1, body.end());
    outline.push_back(body.front());
    outline.push_back({s.left, 0.0F});
    return outline;
}

DamGroup drawn(std::string title, std::int32_t MTYPE, DamOutline points) {
    DamGroup group;
    group.title = std::move(title);
    group.MTYPE = MTYPE;
    group.points = std::move(points);
    cut_sides(group);
    return group;
}

// The crest lies on the mesh's top line and is cut all the same: that places its ends.
void cut_crest(DamGroup& group) {
    for (std::size_t k = 0; k + 1 < group.points.size(); ++k)
        if (same_line(group.points[k].y, DAM.HDAM) && same_line(group.points[k + 1].y, DAM.HDAM))
            group.IEND[k] = CUT;
}

DamGroup zone(std::string title, std::int32_t MAT, DamOutline points) {
    DamGroup group = drawn(std::move(title), ZONE, std::move(points));
    group.MAT = MAT;
    return group;
}

// The triangle under a slope.
DamGroup shell(std::string title, std::int32_t MAT, float toe, float crest_end) {
    return zone(std::move(title), MAT, {{toe, 0.0F}, {crest_end, 0.0F}, {crest_end, DAM.HDAM}});
}

DamGroup core() {
    DamGroup group = zone(" Dam Core", CORE, DAM.core_points);
    if (DAM.shells && !clear_of_shells(group.points))
        leave_uncut(group);
    return group;
}

DamGroup wall() {
    DamGroup group = zone(" Cut-off Wall", WALL, DAM.wall_points);
    if (DAM.shells && !below_base(group.points) && !clear_of_shells(group.points))
        leave_uncut(group);
    return group;
}

// --- boundaries of the head kind -------------------------------------------------------------------

DamGroup boundary(std::string title, std::int32_t LTP, std::int32_t LMAT, DamOutline points) {
    const std::int32_t MTYPE = points.size() > 1 ? LINE : NO_GROUP;
    DamGroup group = drawn(std::move(title), MTYPE, std::move(points));
    group.LTP = LTP;
    group.LMAT = LMAT;
    return group;
}

DamOutline upstream_path() {
    const DamSizes& s = DAMSIZES;
    DamOutline path;
    if (DAM.NLAYER > 0)
        path.push_back({s.left, 0.0F});
    path.push_back({0.0F, 0.0F});
    const float level = std::clamp(DAM.HWATER, 0.0F, DAM.HDAM);
    if (!DAM.shells && level > 0.0F)
        path.push_back({level / DAM.HDAM * s.crest_left, level});
    return path;
}

void add_boundaries(std::vector<DamGroup>& groups) {
    const DamSizes& s = DAMSIZES;
    if (DAM.shells && DAM.NLAYER == 0)
        return;
    groups.push_back(boundary(" Upstream Total Head Boundary", TOTAL_HEAD, 1, upstream_path()));
    if (DAM.NLAYER > 0)
        groups.push_back(
            boundary(" Downstream Total Head Boundary", TOTAL_HEAD, 2, {{s.toe, 0.0F}, {s.right, 0.0F}}));
    const DamPoint crest_end{s.crest_right, DAM.HDAM};
    const DamOutline face =
        DAM.shells ? DamOutline{{s.crest_left, DAM.HDAM}, crest_end} : DamOutline{crest_end, {s.toe, 0.0F}};
    groups.push_back(boundary(" Potential Seepage Face Boundary", SEEPAGE_FACE, 1, face));
}

// --- the layers ------------------------------------------------------------------------------------

std::string layer_title(std::int32_t layer) {
    std::array<char, 3> number{};
    put_integer(number.data(), static_cast<int>(number.size()), layer);
    std::string title = " Subsoil Layer ";
    title.append(number.data(), number.size());
    return title;
}

void add_layers(std::vector<DamGroup>& groups) {
    float top = 0.0F;
    for (std::int32_t layer = 1; layer <= DAM.NLAYER; ++layer) {
        const float bottom = top - DAM.layers[static_cast<std::size_t>(layer - 1)];
        DamGroup group = zone(layer_title(layer), FIRST_LAYER + layer - 1,
                              layer_outline(DAMSIZES.left, DAMSIZES.right, bottom, top, DAM.wall_points));
        leave_uncut(group);
        groups.push_back(std::move(group));
        top = bottom;
    }
}

}  // namespace

std::vector<DamGroup> DAMGROUPS() {
    const DamSizes& s = DAMSIZES;
    std::vector<DamGroup> groups;
    groups.push_back(drawn(" Ground Surface", KEEP_INSIDE, surface_outline()));
    cut_crest(groups.back());
    groups.push_back(drawn(" Main Shell", CLOSING_OUTLINE, body_outline()));
    leave_uncut(groups.back());
    if (!DAM.shells) {
        groups.push_back(shell(" Upstream Shell", UPSTREAM_SHELL, 0.0F, s.crest_left));
        groups.push_back(shell(" Downstream Shell", DOWNSTREAM_SHELL, s.toe, s.crest_right));
    }
    if (DAM.core)
        groups.push_back(core());
    if (KIND() == LayoutKind::head)
        add_boundaries(groups);
    if (DAM.cut_off)
        groups.push_back(wall());
    add_layers(groups);
    return groups;
}

}  // namespace brelan
