#include "mesh/compaction.h"

#include <string>

#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

namespace {

template <class Number>
void require_room(const EditCards& edit, Number first, Number last_position, Number highest,
                  const char* what) {
    if (last_position.names_one() && (first.is_none() || placed(first, last_position) > highest))
        fail_at(edit.start_place, std::string("Card 3.2: expected a first ") + what +
                                      " number that keeps all " + to_string(last_position) + " within 1 to " +
                                      to_string(highest) + ", found " + to_string(first));
}

}  // namespace

ElementNumber pack_elements(Mesh& mesh, MidsideNodes midsides) {
    ElementNumber position;
    for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n) {
        if (mesh.type[n] == ELEMENT_DELETED)
            continue;
        ++position;
        const ElementWords from = mesh.words[n];
        ElementWords& to = mesh.words[position];
        mesh.type[position] = mesh.type[n];
        to.corner_1 = from.corner_1;
        to.corner_2 = from.corner_2;
        to.corner_3 = from.corner_3;
        to.corner_4 = from.corner_4;
        to.material = from.material;
        if (midsides == MidsideNodes::taken)
            to = from;
        copy_attributes(mesh, n, position);
    }
    return position;
}

PackedNodes pack_nodes(Mesh& mesh, ElementNumber last, MidsideNodes midsides) {
    // The head kind leaves H and CF where they are, so a gap in the numbers misplaces them: meshes of the
    // head kind get their heads from the solver's deck.
    const bool moves_values = mesh.kind == LayoutKind::temperature;
    PackedNodes packed;
    for (const NodeNumber n : nodes_of_elements(mesh, last, midsides)) {
        const NodeNumber position = ++packed.last;
        packed.position[n] = position;
        mesh.codes[position] = mesh.codes[n];
        mesh.node_mark[position] = mesh.node_mark[n];
        mesh.x[position] = mesh.x[n];
        mesh.y[position] = mesh.y[n];
        if (moves_values) {
            mesh.head[position] = mesh.head[n];
            mesh.coefficient[position] = mesh.coefficient[n];
        }
    }
    return packed;
}

void renumber_words(Mesh& mesh, ElementNumber last, const PackedNodes& nodes, NodeNumber first_node,
                    MidsideNodes midsides) {
    for (ElementNumber n{1}; n <= last; ++n) {
        ElementWords& w = mesh.words[n];
        for (NodeNumber* corner : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4})
            if (corner->names_one())
                *corner = placed(first_node, nodes.position[*corner]);
        if (midsides == MidsideNodes::left_out || mesh.type[n] != ELEMENT_CONTINUUM)
            continue;
        for (NodeNumber* node : {&w.midside_5, &w.midside_6, &w.midside_7, &w.midside_8})
            if (node->names_one())
                *node = placed(first_node, nodes.position[*node]);
    }
}

void place_nodes(const EditCards& edit, Mesh& mesh, NodeNumber last, NodeNumber first_node) {
    require_room(edit, first_node, last, LAST_NODE, "node");
    const std::size_t words = mesh.kind == LayoutKind::displacement ? 3 : 5;
    // From the last down: a node never lands on one that is still to move.
    for (NodeNumber k = last; k.names_one(); --k) {
        const NodeNumber n = placed(first_node, k);
        mesh.node_in_use[n] = 1;
        for (std::size_t i = 0; i < words; ++i)
            mesh.codes[n][i] = mesh.codes[k][i];
        if (has_node_values(mesh.kind)) {
            mesh.head[n] = mesh.head[k];
            mesh.coefficient[n] = mesh.coefficient[k];
        }
        mesh.node_mark[n] = mesh.node_mark[k];
        mesh.x[n] = mesh.x[k];
        mesh.y[n] = mesh.y[k];
    }
}

void place_elements(const EditCards& edit, Mesh& mesh, ElementNumber last, ElementNumber first_element) {
    require_room(edit, first_element, last, LAST_ELEMENT, "element");
    for (ElementNumber k = last; k.names_one(); --k) {
        const ElementNumber n = placed(first_element, k);
        mesh.type_in_use[n] = static_cast<std::int8_t>(mesh.type[k]);
        mesh.words[n] = mesh.words[k];
        copy_attributes(mesh, k, n);
    }
}

}  // namespace brelan
