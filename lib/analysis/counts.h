// How much of what a mesh holds.
#pragma once

#include <cstddef>
#include <vector>

#include "analysis/geometry.h"

namespace brelan {

// Elements of one class and material. Joints have a length besides: the mean of their two long sides.
struct MaterialRow {
    ElementClass of = ElementClass::solid;
    std::int32_t material = 0;
    std::size_t count = 0;
    double area = 0.0;    // absolute areas; 0 for beams and trusses
    double length = 0.0;  // of joints, beams and trusses
};

// Adds an element to the row of its class and material; what lacks a corner has neither area nor length.
void add_element(MaterialRow& row, const MeshLists& mesh, const Element& element,
                 const CornerPlaces& corners);

// Nodes with the same codes.
struct CodeRow {
    NodeCodes codes{};
    std::size_t count = 0;
};

struct NumberSpan {
    Number low = 0, high = 0;  // 0 where there is none
};

struct Counts {
    std::size_t triangles = 0, quadrilaterals = 0;  // solids
    NumberSpan nodes, elements;
    Bounds bounds;
    double area = 0.0;  // of all solids; those that stand at one place, as stages do, count each
    std::vector<MaterialRow> materials;  // by class, then material
    std::vector<CodeRow> codes;          // the most frequent first
};

Counts count_mesh(const MeshLists& mesh, const std::vector<CornerPlaces>& corners);

}  // namespace brelan
