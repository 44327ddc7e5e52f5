#include "mesh/compaction.h"

#include <string>

#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

namespace {

void require_room(const EditCards& edit, std::int32_t start, std::int32_t count, std::int32_t last, const char* what) {
    if (count > 0 && (start < 1 || start - 1 + count > last))
        FAIL(edit.start_place + ": Card 3.2: expected a first " + what + " number that keeps all " +
             std::to_string(count) + " within 1 to " + std::to_string(last) + ", found " +
             std::to_string(start));
}

}  // namespace

std::int32_t PACKELEMENTS(Mesh& mesh) {
    mesh.node_used.fill(0);
    std::int32_t position = 0;
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        if (mesh.type[n] == EL_DELETED)
            continue;
        ++position;
        const ElementWords from = mesh.words[n];
        ElementWords& to = mesh.words[position];
        mesh.type[position] = mesh.type[n];
        to.I1 = from.I1;
        to.I2 = from.I2;
        to.I3 = from.I3;
        to.I4 = from.I4;
        to.MATNO = from.MATNO;
        copy_attributes(mesh, n, position);
        for (const std::int32_t corner : {to.I1, to.I2, to.I3, to.I4})
            if (corner > 0)
                mesh.node_used[corner] = corner;
    }
    return position;
}

std::int32_t PACKNODES(Mesh& mesh) {
    // The head kind leaves H and CF where they are, so a gap in the numbers misplaces them: meshes of the
    // head kind get their heads from the solver's deck.
    const bool moves_values = mesh.kind == LayoutKind::temperature;
    std::int32_t position = 0;
    for (std::int32_t n = 1; n <= MAXNP; ++n) {
        if (mesh.node_used[n] == 0)
            continue;
        ++position;
        mesh.new_number[n] = position;
        mesh.codes[position] = mesh.codes[n];
        mesh.node_mark[position] = mesh.node_mark[n];
        mesh.x[position] = mesh.x[n];
        mesh.y[position] = mesh.y[n];
        if (moves_values) {
            mesh.head[position] = mesh.head[n];
            mesh.coefficient[position] = mesh.coefficient[n];
        }
    }
    return position;
}

void RENUMBERCORNERS(Mesh& mesh, std::int32_t elements, std::int32_t NSNODE) {
    for (std::int32_t n = 1; n <= elements; ++n) {
        ElementWords& w = mesh.words[n];
        for (std::int32_t* corner : {&w.I1, &w.I2, &w.I3, &w.I4})
            if (*corner > 0)
                *corner = NSNODE - 1 + mesh.new_number[*corner];
    }
}

void PLACENODES(const EditCards& edit, Mesh& mesh, std::int32_t nodes, std::int32_t NSNODE) {
    require_room(edit, NSNODE, nodes, MAXNP, "node");
    const std::size_t words = mesh.kind == LayoutKind::displacement ? 3 : 5;
    // From the last down: a node never lands on one that is still to move.
    for (std::int32_t k = nodes; k >= 1; --k) {
        const std::int32_t n = NSNODE + k - 1;
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

void PLACEELEMENTS(const EditCards& edit, Mesh& mesh, std::int32_t elements, std::int32_t NSNEL) {
    require_room(edit, NSNEL, elements, MAXEL, "element");
    for (std::int32_t k = elements; k >= 1; --k) {
        const std::int32_t n = NSNEL + k - 1;
        mesh.type_in_use[n] = static_cast<std::int8_t>(mesh.type[k]);
        mesh.words[n] = mesh.words[k];
        copy_attributes(mesh, k, n);
    }
}

}  // namespace brelan
