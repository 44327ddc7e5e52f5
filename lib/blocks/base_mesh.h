// The base mesh: merged nodes with the boundary codes of the field's sides.
#pragma once

#include <string>
#include <vector>

#include "blocks/raw_mesh.h"
#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "mesh/mesh_records.h"

namespace brelan {

struct BaseMesh {
    std::string title;
    std::vector<NodeRecord> nodes;  // numbered from 1
    std::vector<ElementRecord> elements;
};

// Merges raw nodes at most 0.0001 apart, numbers the rest from 1 and derives the codes of the nodes on the
// field's bounds. Nodes lie where the raw list shows them, to six digits. Those that are placed by grid are
// told apart and found on the bounds by their row and column instead.
BaseMesh make_base_mesh(LayoutKind kind, const BlockCards& block_cards, RawMesh raw);

// Ends the run, naming the place, where six digits do not tell the corners of an element apart.
void refuse_flat(const BaseMesh& mesh);

// Ends the run where a mesh has more nodes or elements than can be read back.
void refuse_too_large(const BaseMesh& mesh);

}  // namespace brelan
