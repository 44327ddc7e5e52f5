// Meshes for the open geotechnical solver in Kratos (GeoMechanicsApplication): the mesh (.mdpa), and beside
// it a project file for each stage and one with materials.
//
// What the format has no place for is said in the model's remarks. The files follow what is known of the
// format; the solver itself is not at hand here.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/stages.h"
#include "formats/cell_mesh.h"

namespace brelan::tool {

// Elements of one type, which is told by the mesh's kind, the class and the nodes.
struct MdpaElement {
    Number number = 0;
    std::int32_t properties = 0;
    std::vector<Number> nodes;
};
struct MdpaBlock {
    std::string type;
    std::vector<MdpaElement> elements;
};

// What a part of the mesh is for.
enum class PartPurpose : std::uint8_t { material, line, code, activity };

// Nodes and elements under one name. All lists ascend. Parts of line elements that the kind has no element
// for, and those of codes, are of nodes alone.
struct MdpaPart {
    std::string name;
    PartPurpose purpose = PartPurpose::material;
    std::vector<Number> nodes, elements;
    ElementClass of = ElementClass::solid;  // material and line
    bool cable = false;                     // trusses that only pull
    std::int32_t properties = 0;            // material
    std::vector<std::string_view> codes;    // code: the fields, with the value of each
    std::vector<std::int32_t> values;
    double given = 0.0;  // code, in the kinds whose nodes carry H or T: that of its first node
    ActivityPair pair;   // activity
};

struct MdpaModel {
    std::string source;  // name of the mesh's file
    LayoutKind kind = LayoutKind::displacement;
    std::vector<std::int32_t> properties;  // ascending
    std::vector<Node> nodes;
    std::vector<MdpaBlock> blocks;
    std::vector<MdpaPart> parts;
    std::vector<std::int32_t> steps{0};  // at which parts come or go, behind the state at the start
    std::vector<std::string> remarks;    // what could not be carried, or was changed

    bool has(ElementClass of) const;  // an element of the class
};

// `cells` is the same mesh, element by element. Trusses of the materials `cables` become cables.
MdpaModel mdpa_model(const MeshLists& mesh, const CellMesh& cells, const Stages& stages,
                     const std::vector<std::int32_t>& cables);

// Whole or not at all. Throws Failure.
void write_mdpa(const MdpaModel& model, const std::filesystem::path& path);

// The files beside the mesh: "Pit_stage_1.json" and on, and "Pit_materials.json" for "Pit.mdpa". Each is
// there whole or not at all. Throws Failure.
void write_mdpa_stages(const MdpaModel& model, const std::filesystem::path& path);

}  // namespace brelan::tool
