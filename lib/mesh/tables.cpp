#include "mesh/tables.h"

namespace brelan {

void reset_mesh(Mesh& mesh) {
    mesh.node_in_use.fill(0);
    mesh.codes.fill(NodeCodes{});
    mesh.x.fill(0.0F);
    mesh.y.fill(0.0F);
    mesh.type_in_use.fill(ELEMENT_UNUSED);
    mesh.type.fill(ELEMENT_DELETED);
}

std::vector<std::int32_t> nodes_of_elements(const Mesh& mesh, std::int32_t last_element) {
    Table<std::int8_t, HIGHEST_NODE_NUMBER, "NUSED"> used;
    for (std::int32_t n = 1; n <= last_element; ++n) {
        if (mesh.type[n] == ELEMENT_DELETED)
            continue;
        const ElementWords& w = mesh.words[n];
        for (const std::int32_t corner : {w.corner_1, w.corner_2, w.corner_3, w.corner_4})
            if (corner > 0)
                used[corner] = 1;
    }
    std::vector<std::int32_t> nodes;
    for (std::int32_t n = 1; n <= HIGHEST_NODE_NUMBER; ++n)
        if (used[n] != 0)
            nodes.push_back(n);
    return nodes;
}

}  // namespace brelan
