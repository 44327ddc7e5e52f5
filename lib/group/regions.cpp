#include "group/regions.h"

#include <cmath>
#include <cstdlib>
#include <unordered_map>
#include <vector>

#include "group/engine_mesh.h"
#include "mesh/attributes.h"
#include "mesh/mesh_records.h"
#include "plane/polygon_scan.h"

namespace brelan {

namespace {

void set_attributes(Mesh& mesh, ElementNumber e, const RegionMaterial& material) {
    ElementAttributes a = load_attributes(mesh, e);
    a.skeleton = a.integration_r = 0;
    a.fluid = a.attribute = material.attribute;
    a.thickness = 1.0F;
    a.density = material.density;
    store_attributes(mesh, e, a);
}

void add_overlay(Mesh& mesh, Engine& engine, ElementNumber e, const RegionMaterial& material) {
    const ElementNumber added = add_element(mesh, engine);
    mesh.words[added].material = material.material.in_sight();
    set_attributes(mesh, added, material);
    mesh.type[added] = mesh.type[e];
    engine.workable[added] = {};
    set_corners(mesh, engine, added, corners_of(mesh, e));
}

// With a joint the new element keeps the new side and the old one goes back to its own.
void duplicate(Mesh& mesh, Engine& engine, ElementNumber e, const RegionMaterial& material,
               const MovedElement* moved) {
    const ElementNumber added = add_element(mesh, engine);
    const ElementWords words = mesh.words[e];
    const Corners present = corners_of(mesh, e);
    ElementWords& w = mesh.words[added];
    w.midside_5 = words.midside_5;
    w.midside_6 = words.midside_6;
    w.midside_7 = words.midside_7;
    w.midside_8 = words.midside_8;
    w.material = material.material.in_sight();
    set_attributes(mesh, added, material);
    mesh.type[added] = mesh.type[e];
    engine.workable[added] = engine.workable[e];
    set_corners(mesh, engine, added, present);
    if (moved != nullptr)
        set_corners(mesh, engine, e, moved->before);
    if (material.material >= MaterialNumber{})
        mesh.words[e].material =
            material.old_material != MaterialNumber{} ? material.old_material : material.material + 1;
}

// The elements up to a number that may have their middle inside, in ascending number.
std::vector<ElementNumber> candidates(Engine& engine, const PolygonScan& scan, ElementNumber last) {
    std::vector<ElementNumber> elements;
    for (const ElementNumber e : elements_near(engine, scan.low(), scan.high()))
        if (e <= last)
            elements.push_back(e);
    return elements;
}

// The elements that the region stage looks at: those that stand when it begins. What acts inside only needs
// those that may be inside, a line none but for the length of its path.
std::vector<ElementNumber> elements_for(Engine& engine, const RegionMaterial& material,
                                        const PolygonScan& scan) {
    const bool acts_inside =
        material.group_type == 1 || std::abs(material.group_type) == 3 || std::abs(material.group_type) == 4;
    if (scan.has_box() && material.group_type != -1)
        return acts_inside ? candidates(engine, scan, engine.highest_element) : std::vector<ElementNumber>{};
    std::vector<ElementNumber> elements;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e)
        elements.push_back(e);
    return elements;
}

}  // namespace

void apply_region(Mesh& mesh, Engine& engine, const RegionMaterial& material, std::span<const Point> path,
                  std::span<const MovedElement> moved) {
    const PolygonScan scan(engine.uses_indexes, path);
    std::unordered_map<ElementNumber, const MovedElement*> moved_element;
    for (const MovedElement& entry : moved)
        moved_element[entry.element] = &entry;
    for (const ElementNumber e : elements_for(engine, material, scan)) {
        if (!is_selected(mesh, engine, e))
            continue;
        const bool inside = scan.inside(centroid(mesh, e));
        switch (material.group_type) {
            case 1:
                if (inside)
                    mesh.type[e] = ELEMENT_DELETED;
                break;
            case -1:
                if (!inside)
                    mesh.type[e] = ELEMENT_DELETED;
                break;
            case 3:
            case -3:
                if (!inside || is_joint(mesh, e))
                    break;
                if (material.overlay != 0) {
                    add_overlay(mesh, engine, e, material);
                } else if (material.material.names_one()) {
                    mesh.words[e].material = material.material;
                    set_attributes(mesh, e, material);
                }
                break;
            case 4:
            case -4:
                if (inside && !is_joint(mesh, e)) {
                    const auto found = moved_element.find(e);
                    duplicate(mesh, engine, e, material,
                              found == moved_element.end() ? nullptr : found->second);
                }
                break;
            default:
                break;
        }
    }
}

void repair_quadrilaterals(Mesh& mesh, Engine& engine) {
    const ElementNumber elements = engine.highest_element;
    for (ElementNumber e{1}; e <= elements; ++e) {
        const Corners c = corners_of(mesh, e);
        if (mesh.type[e] != ELEMENT_CONTINUUM || is_joint(mesh, e) || c.n[3].is_none())
            continue;
        const auto point = [&](int i) { return node_point(mesh, c.n[i]); };
        const double area_012 = area_64(point(0), point(1), point(2));
        const double area_023 = area_64(point(0), point(2), point(3));
        const double area_123 = area_64(point(1), point(2), point(3));
        const double area_013 = area_64(point(0), point(1), point(3));
        Corners kept{}, split_off{};
        if (area_012 < 0.0 || area_023 < 0.0) {
            kept = {{c.n[0], c.n[1], c.n[3], {}}};
            split_off = {{c.n[1], c.n[2], c.n[3], {}}};
        } else if (area_123 < 0.0 || area_013 < 0.0) {
            kept = {{c.n[0], c.n[1], c.n[2], {}}};
            split_off = {{c.n[0], c.n[2], c.n[3], {}}};
        } else {
            continue;
        }
        const ElementNumber added = add_element(mesh, engine);
        mesh.words[added].material = mesh.words[e].material;
        copy_attributes(mesh, e, added);
        mesh.type[added] = ELEMENT_CONTINUUM;
        engine.workable[added] = added;
        set_corners(mesh, engine, e, kept);
        set_corners(mesh, engine, added, split_off);
    }
}

}  // namespace brelan
