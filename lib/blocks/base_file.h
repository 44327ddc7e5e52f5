// The base mesh file: merged nodes, boundary codes, listing.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// The raw lists of a base mesh. A first number above 1 has a placeholder line for each number below it.
struct RawMesh {
    std::string title;
    std::int32_t first_node = 1, last_node = 0;
    std::int32_t first_element = 1, last_element = 0;
};

struct BaseCounts {
    std::int32_t nodes = 0, elements = 0;
};

// Reads the raw lists back, merges nodes at most 0.0001 apart, numbers the rest from 1, derives the codes of
// the nodes on the field's bounds and writes the mesh file. Returns the counts as written.
BaseCounts write_base_file(LayoutKind kind, const BlockCards& block_cards, const FieldBounds& field,
                           Channel& coordinates, Channel& index, Channel& base, const RawMesh& raw);

}  // namespace brelan
