// The cards of a combination and what the reading of its regions finds out. Who fills them: the cards,
// deck/deck_walk.cpp; the regions, mesh/combine.cpp.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/edit_tables.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

// The mesh of Card 2.1-2 is read first, the mesh of Card 2.1-1 second. Node numbers of the second stay.
struct Region {
    std::string name;  // of its file, for messages
    StrippedMesh stripped;
    MeshCounts counts;
    NumberRange<NodeNumber> nodes;
    NumberRange<ElementNumber> old_elements[3];  // by type from ELEMENT_CONTINUUM, as the file has them
    ElementNumber start[3];                      // first new number, by type
    NumberRange<ElementNumber> elements;         // new numbers of all types
};

// What the first region has beside the mesh, which holds the second: its nodes at their own numbers, and the
// types of its elements at their new ones.
struct RegionTables {
    Table<NodeCodes, LAST_NODE, "IDN1"> codes;
    Table<float, LAST_NODE, "XC1"> x;
    Table<float, LAST_NODE, "YC1"> y;
    Table<float, LAST_NODE, "H1"> head;
    Table<float, LAST_NODE, "CF1"> coefficient;
    Table<std::int8_t, LAST_NODE, "NACT2"> node_in_use;
    ElementTypes type_in_use;
};

// The cards of a combination.
struct CombinationCards {
    std::int32_t interface_rule = 0;  // INTERFACE: 0 coincident nodes are found; 1 the pairs are listed
    std::int32_t pair_count = 0;      // NINT
    Table<NodeNumber, MOST_LIST_NUMBERS, "the second-region list of Card 2.3"> second_nodes;
    Table<NodeNumber, MOST_LIST_NUMBERS, "the first-region list of Card 2.3"> first_nodes;
    FilePlace list_place;  // of the lists, for messages
};

struct Combination {
    Region first, second;
    bool keeps_first_data = false;  // merged nodes take the data of the first region (IMOD -1)
};

}  // namespace brelan
