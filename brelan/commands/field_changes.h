// What differs between two nodes or elements, field by field.
#pragma once

#include <string>
#include <vector>

#include "analysis/difference.h"

namespace brelan::tool {

// A field with its two values, as text.
struct FieldChange {
    std::string name, from, to;
};
// "midside nodes", with their numbers in the two meshes.
FieldChange midside_change(const MeshLists& a, const MeshLists& b, PlacePair elements);
std::vector<FieldChange> node_changes(const MeshLists& a, const MeshLists& b, PlacePair nodes);
// `nodes` tells whether the numbers of nodes are compared.
std::vector<FieldChange> element_changes(const MeshLists& a, const MeshLists& b, PlacePair elements,
                                         bool nodes);

}  // namespace brelan::tool
