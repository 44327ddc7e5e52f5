// The elements of a mesh as those of the .inp dialect.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "formats/inp.h"

namespace brelan::tool {

// The midside node of each side of a solid, 0 where it has none. A side is its two corners, the smaller
// first.
class SideMiddles {
public:
    // Throws Failure for solids with some of their midside nodes, and for a side that has one in one solid
    // and none, or another, in its neighbour: these would not hang together.
    explicit SideMiddles(const MeshLists& mesh);

    // 0 where no solid has the side, or none has a node on it.
    Number of(Number a, Number b) const;

private:
    struct Middle {
        Number node = 0, element = 0;
    };
    std::map<std::pair<Number, Number>, Middle> middles_;
};

// Corner and midside nodes of an element in the order of the dialect: solids anti-clockwise, lines with the
// node between their ends in the middle.
struct InpElement {
    Number number = 0;
    std::vector<Number> nodes;
};

// Elements that have a type and a section in common.
struct InpBlock {
    std::string type;  // "CPE4"
    std::vector<InpElement> elements;
};

// Elements of one class, material, thickness and density. Trusses that come or go are beams of a square
// section: the solver does not find its balance when trusses are added or taken away in geometrically
// non-linear steps.
struct InpSection {
    ElementClass of = ElementClass::solid;
    std::int32_t material = 0, old_material = 0;  // the one before its group gave it one of its own, or 0
    bool is_beam = false;                         // beams, and trusses that come or go
    float thickness = 1.0F;
    float density = 0.0F;  // of the mesh; 0 where it gives none
    std::string set;       // its element set, whose name its material has too
    std::vector<InpBlock> blocks;
};

// What the mesh's elements become, joints apart.
struct InpElements {
    std::vector<InpSection> sections;  // by class, then by material
    std::size_t turned = 0;            // clockwise solids, which were turned
};

InpElements inp_elements(const MeshLists& mesh, const Stages& stages, PlaneForm form,
                         const SideMiddles& middles);

// "MATERIAL_5", "BEAM_1": the set of all elements of a class and material.
std::string set_of(ElementClass of, std::int32_t material);

}  // namespace brelan::tool
