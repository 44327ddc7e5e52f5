#include "mesh/compaction.h"

#include <string>

#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

namespace {

void require_room(const EditCards& edit, std::int32_t start, std::int32_t count, std::int32_t last,
                  const char* what) {
    if (count > 0 && (start < 1 || start - 1 + count > last))
        fail_at(edit.start_place, std::string("Card 3.2: expected a first ") + what +
                                      " number that keeps all " + std::to_string(count) + " within 1 to " +
                                      std::to_string(last) + ", found " + std::to_string(start));
}

}  // namespace

std::int32_t pack_elements(Mesh& mesh) {
    std::int32_t position = 0;
    for (std::int32_t n = 1; n <= HIGHEST_ELEMENT_NUMBER; ++n) {
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
        copy_attributes(mesh, n, position);
    }
    return position;
}

PackedNodes pack_nodes(Mesh& mesh, std::int32_t elements) {
    // The head kind leaves H and CF where they are, so a gap in the numbers misplaces them: meshes of the
    // head kind get their heads from the solver's deck.
    const bool moves_values = mesh.kind == LayoutKind::temperature;
    PackedNodes packed;
    for (const std::int32_t n : nodes_of_elements(mesh, elements)) {
        const std::int32_t position = ++packed.count;
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

void renumber_corners(Mesh& mesh, std::int32_t elements, const PackedNodes& nodes, std::int32_t first_node) {
    for (std::int32_t n = 1; n <= elements; ++n) {
        ElementWords& w = mesh.words[n];
        for (std::int32_t* corner : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4})
            if (*corner > 0)
                *corner = first_node - 1 + nodes.position[*corner];
    }
}

void place_nodes(const EditCards& edit, Mesh& mesh, std::int32_t nodes, std::int32_t first_node) {
    require_room(edit, first_node, nodes, HIGHEST_NODE_NUMBER, "node");
    const std::size_t words = mesh.kind == LayoutKind::displacement ? 3 : 5;
    // From the last down: a node never lands on one that is still to move.
    for (std::int32_t k = nodes; k >= 1; --k) {
        const std::int32_t n = first_node + k - 1;
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

void place_elements(const EditCards& edit, Mesh& mesh, std::int32_t elements, std::int32_t first_element) {
    require_room(edit, first_element, elements, HIGHEST_ELEMENT_NUMBER, "element");
    for (std::int32_t k = elements; k >= 1; --k) {
        const std::int32_t n = first_element + k - 1;
        mesh.type_in_use[n] = static_cast<std::int8_t>(mesh.type[k]);
        mesh.words[n] = mesh.words[k];
        copy_attributes(mesh, k, n);
    }
}

}  // namespace brelan
