#include "mesh/tables.h"

namespace brelan {

void reset_mesh(Mesh& mesh, SideTables& side, Selection& selection) {
    mesh.node_in_use.fill(0);
    side.second_node_in_use.fill(0);
    mesh.codes.fill(NodeCodes{});
    side.codes.fill(NodeCodes{});
    mesh.x.fill(0.0F);
    mesh.y.fill(0.0F);
    side.x.fill(0.0F);
    side.y.fill(0.0F);
    for (std::int32_t n = 1; n <= HIGHEST_NODE_NUMBER; ++n)
        mesh.new_number[n] = n;
    mesh.type_in_use.fill(ELEMENT_UNUSED);
    side.second_type_in_use.fill(ELEMENT_UNUSED);
    selection.nodes.fill(0);
    selection.elements.fill(0);
    mesh.node_used.fill(0);
    mesh.type.fill(ELEMENT_DELETED);
}

}  // namespace brelan
