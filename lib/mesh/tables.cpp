#include "mesh/tables.h"

namespace brelan {

void reset_mesh(Mesh& mesh) {
    mesh.node_in_use.clear();
    mesh.codes.clear();
    mesh.x.clear();
    mesh.y.clear();
    mesh.type_in_use.fill(ELEMENT_UNUSED);
    static_assert(ELEMENT_DELETED == 0);
    mesh.type.clear();
}

std::vector<NodeNumber> nodes_of_elements(const Mesh& mesh, ElementNumber last_element,
                                          MidsideNodes midsides) {
    Table<std::int8_t, LAST_NODE, "NUSED"> used;
    for (ElementNumber n{1}; n <= last_element; ++n) {
        if (mesh.type[n] == ELEMENT_DELETED)
            continue;
        const ElementWords& w = mesh.words[n];
        for (const NodeNumber corner : {w.corner_1, w.corner_2, w.corner_3, w.corner_4})
            if (corner.names_one())
                used[corner] = 1;
        if (midsides == MidsideNodes::taken && mesh.type[n] == ELEMENT_CONTINUUM)
            for (const NodeNumber node : {w.midside_5, w.midside_6, w.midside_7, w.midside_8})
                if (node.names_one())
                    used[node] = 1;
    }
    std::vector<NodeNumber> nodes;
    for (NodeNumber n{1}; n <= LAST_NODE; ++n)
        if (used[n] != 0)
            nodes.push_back(n);
    return nodes;
}

}  // namespace brelan
