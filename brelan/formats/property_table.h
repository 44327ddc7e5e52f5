// Properties of materials for a solver, which no mesh file holds: a table of comma-separated values.
//
//     class,material,name,E,nu,density,area,inertia,kn,ks
//     solid,1,Sand,40000,0.3,1.9,,,,
//     beam,1,Wall,3e7,0.2,2.5,0.6,0.018,,
//     joint,7,,,,,,,1e6,1e5
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan::tool {

// One row; what its cells leave open is none.
struct PropertyRow {
    ElementClass of = ElementClass::solid;
    std::int32_t material = 0;
    std::string name;
    std::optional<double> young, poisson, density;  // E, nu; mass for a volume
    std::optional<double> area, inertia;            // of beams and trusses, for the thickness of the mesh
    std::optional<double> across, along;            // kn, ks: stiffness of joints for an area
    std::size_t line = 0;
};

struct PropertyTable {
    std::string file;
    std::vector<PropertyRow> rows;

    // None where the table has no row of the kind.
    const PropertyRow* find(ElementClass of, std::int32_t material) const;
};

// Columns stand in any order under a header row that names them; `class` and `material` must be there. Blank
// lines and lines that begin with # are passed over. Throws Failure with line and column.
PropertyTable read_properties(const std::filesystem::path& path);

// A table of the materials of a mesh with placeholders in all cells, to be filled in.
void write_properties(const MeshLists& mesh, const std::filesystem::path& path);

// What stands for values that neither table nor mesh gives: a soil, a concrete wall of 0.5 m, a steel rod. In
// kN, m and t.
struct Properties {
    double young = 0.0, poisson = 0.0, density = 0.0, area = 0.0, inertia = 0.0, across = 0.0, along = 0.0;
};
Properties placeholders(ElementClass of);

}  // namespace brelan::tool
