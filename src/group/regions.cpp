#include "group/regions.h"

#include <cmath>
#include <cstdlib>
#include <unordered_map>
#include <vector>

#include "group/engine_mesh.h"
#include "group/joints.h"
#include "group/polygon_scan.h"
#include "mesh/mesh_records.h"
#include "run/settings.h"

namespace brelan {

namespace {

void set_attributes(std::int32_t e, const RegionMaterial& material) {
    switch (KIND()) {
        case LayoutKind::coupled:
            KS[e] = 0;
            KF[e] = material.KF;
            INTR[e] = 0;
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            IDH[e] = material.KF;
            break;
        case LayoutKind::displacement:
            THIC[e] = 1.0F;
            DEN[e] = material.DEN;
            break;
    }
}

void add_overlay(std::int32_t e, const RegionMaterial& material) {
    const std::int32_t added = add_element();
    IEL[added].MATNO = std::abs(material.MAT);
    set_attributes(added, material);
    ETYPE[added] = ETYPE[e];
    ELIST[added] = 0;
    set_corners(added, corners_of(e));
}

// With a joint the new element keeps the new side and the old one goes back to its own: `saved` tells its
// corners.
void duplicate(std::int32_t e, const RegionMaterial& material, const SavedCorners* saved) {
    const std::int32_t added = add_element();
    const ElementWords words = IEL[e];
    const Corners present = corners_of(e);
    ElementWords& w = IEL[added];
    w.M5 = words.M5;
    w.M6 = words.M6;
    w.M7 = words.M7;
    w.M8 = words.M8;
    w.MATNO = std::abs(material.MAT);
    set_attributes(added, material);
    ETYPE[added] = ETYPE[e];
    ELIST[added] = ELIST[e];
    set_corners(added, present);
    if (saved != nullptr)
        set_corners(e, {{saved->n[0], saved->n[1], saved->n[2], saved->n[3]}});
    if (material.MAT >= 0)
        IEL[e].MATNO = material.MATold != 0 ? material.MATold : material.MAT + 1;
}

// The elements up to a number that may have their middle inside, in ascending number.
std::vector<std::int32_t> candidates(const PolygonScan& scan, std::int32_t last) {
    std::vector<std::int32_t> elements;
    for (const std::int32_t e : elements_near(scan.low(), scan.high()))
        if (e <= last)
            elements.push_back(e);
    return elements;
}

// The elements that the region stage looks at: those that stand when it begins. What acts inside only needs
// those that may be inside, a line none but for the length of its path.
std::vector<std::int32_t> elements_for(const RegionMaterial& material, const PolygonScan& scan) {
    const bool acts_inside =
        material.MTYPE == 1 || std::abs(material.MTYPE) == 3 || std::abs(material.MTYPE) == 4;
    if (scan.has_box() && material.MTYPE != -1)
        return acts_inside ? candidates(scan, NCONT) : std::vector<std::int32_t>{};
    std::vector<std::int32_t> elements;
    for (std::int32_t e = 1; e <= NCONT; ++e)
        elements.push_back(e);
    return elements;
}

}  // namespace

void REGIONS(const RegionMaterial& material, std::span<const Point> path) {
    const PolygonScan scan(path);
    std::unordered_map<std::int32_t, const SavedCorners*> saved;
    for (const SavedCorners& entry : TWINSAVE)
        saved[entry.element] = &entry;
    for (const std::int32_t e : elements_for(material, scan)) {
        if (!is_selected(e))
            continue;
        const bool inside = scan.inside(centroid(e));
        switch (material.MTYPE) {
            case 1:
                if (inside)
                    ETYPE[e] = EL_DELETED;
                break;
            case -1:
                if (!inside)
                    ETYPE[e] = EL_DELETED;
                break;
            case 3:
            case -3:
                if (!inside || is_joint(e))
                    break;
                if (material.OVERLAY != 0) {
                    add_overlay(e, material);
                } else if (material.MAT > 0) {
                    IEL[e].MATNO = material.MAT;
                    set_attributes(e, material);
                }
                break;
            case 4:
            case -4:
                if (inside && !is_joint(e)) {
                    const auto found = saved.find(e);
                    duplicate(e, material, found == saved.end() ? nullptr : found->second);
                }
                break;
            default:
                break;
        }
    }
}

void REPAIRQUADS() {
    const std::int32_t elements = NCONT;
    for (std::int32_t e = 1; e <= elements; ++e) {
        const Corners c = corners_of(e);
        if (ETYPE[e] != EL_CONTINUUM || is_joint(e) || c.n[3] <= 0)
            continue;
        const auto point = [&](int i) { return node_point(c.n[i]); };
        const double A1 = ARSUM(point(0), point(1), point(2));
        const double A2 = ARSUM(point(0), point(2), point(3));
        const double A3 = ARSUM(point(1), point(2), point(3));
        const double A4 = ARSUM(point(0), point(1), point(3));
        Corners kept{}, split_off{};
        if (A1 < 0.0 || A2 < 0.0) {
            kept = {{c.n[0], c.n[1], c.n[3], 0}};
            split_off = {{c.n[1], c.n[2], c.n[3], 0}};
        } else if (A3 < 0.0 || A4 < 0.0) {
            kept = {{c.n[0], c.n[1], c.n[2], 0}};
            split_off = {{c.n[0], c.n[2], c.n[3], 0}};
        } else {
            continue;
        }
        const std::int32_t added = add_element();
        IEL[added].MATNO = IEL[e].MATNO;
        copy_attributes(e, added);
        ETYPE[added] = EL_CONTINUUM;
        ELIST[added] = added;
        set_corners(e, kept);
        set_corners(added, split_off);
    }
}

}  // namespace brelan
