// What becomes of the core and the wall of a dam with shells, by the rules.
#pragma once

#include <optional>
#include <vector>

#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

struct CutOffZone {
    const char* name = "";
    const DeckCard* card = nullptr;
    double drawn = 0.0, made = 0.0;       // areas
    double drawn_foot = 0.0, foot = 0.0;  // lowest heights

    bool other_foot() const;
};

// Zones whose area comes out by more than 1 in 100 other than drawn. `body` is the mesh of the dam without
// its shells, which hold none of a core or wall.
std::vector<CutOffZone> cut_off_zones(const NotedDeck& deck, const MeshLists& body);

}  // namespace brelan::tool
