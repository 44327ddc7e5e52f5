#include "mesh/edit_mesh.h"

#include <cmath>
#include <string>

#include "mesh/attributes.h"
#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/selection.h"

namespace brelan {

namespace {

constexpr std::int32_t FIELD_STAYS = -10;
constexpr float REAL_FIELD_STAYS = -10.0F;

// IEDIT 0, 1 and 6 renumber while reading; 2, 3 and 4 keep all numbers for the compaction.
bool renumbers(const EditCards& edit) {
    return edit.operation == 0 || edit.operation == 1 || edit.operation == 6;
}
bool keeps_numbers(const EditCards& edit) {
    return edit.operation == 2 || edit.operation == 3 || edit.operation == 4;
}

template <class Number>
Number shifted(const Channel& mesh_file, Number number, std::int32_t shift, Number last, const char* what) {
    const Number result = number + shift;
    if (result.is_none() || result > last)
        mesh_file.fail_behind(std::string(what) + " " + to_string(number) +
                              ": expected a new number from 1 to " + to_string(last) +
                              ", but the start number of Card 3.2 makes it " + to_string(result));
    return result;
}

// --- nodes ---------------------------------------------------------------------------------------

void require_finite(const Channel& mesh_file, NodeNumber number, float x, float y) {
    if (!std::isfinite(x) || !std::isfinite(y))
        mesh_file.fail_behind("node " + to_string(number) +
                              ": expected coordinates that are numbers, but the edit makes one that is none");
}

// --- corners -------------------------------------------------------------------------------------

// Corner permutations by mirror mode: slot k takes old corner row[k]; 0 gives no corner.
struct MirrorRow {
    int quadrilateral[4];
    int triangle[4];
};
constexpr MirrorRow MIRROR[4] = {
    {{1, 2, 3, 4}, {1, 2, 3, 0}},  // not mirrored
    {{2, 1, 4, 3}, {2, 1, 3, 0}},  // in x
    {{4, 3, 2, 1}, {3, 2, 1, 0}},  // in y
    {{3, 4, 1, 2}, {3, 1, 2, 0}},  // in both: turned by 180 degrees
};

const MirrorRow& mirror_row(const EditCards& edit) {
    if (edit.operation != 0)
        return MIRROR[0];
    return MIRROR[(edit.scale_x < 0.0F ? 1 : 0) + (edit.scale_y < 0.0F ? 2 : 0)];
}

// A corner of 0 or below is no node and keeps its word.
NodeNumber shifted_corner(const Channel& mesh_file, NodeNumber corner, std::int32_t shift) {
    if (corner.is_none())
        return corner;
    const NodeNumber result = corner + shift;
    if (result > LAST_NODE)
        mesh_file.fail_behind("corner " + to_string(corner) + ": expected a new node number of at most " +
                              std::to_string(HIGHEST_NODE_NUMBER) + ", but NSNODE of Card 3.2 makes it " +
                              to_string(result));
    return result;
}

void shift_corners(const EditCards& edit, const EditSource& source, const Channel& mesh_file, ElementWords& w,
                   bool permute) {
    const std::int32_t shift = edit.first_node - source.nodes.lowest;
    const NodeNumber old[5] = {{},
                               shifted_corner(mesh_file, w.corner_1, shift),
                               shifted_corner(mesh_file, w.corner_2, shift),
                               shifted_corner(mesh_file, w.corner_3, shift),
                               shifted_corner(mesh_file, w.corner_4, shift)};
    const MirrorRow& mirror = permute ? mirror_row(edit) : MIRROR[0];
    const int(&row)[4] = permute && w.corner_4 == NodeNumber{} ? mirror.triangle : mirror.quadrilateral;
    w.corner_1 = old[row[0]];
    w.corner_2 = old[row[1]];
    w.corner_3 = old[row[2]];
    w.corner_4 = old[row[3]];
}

// --- the operations on elements ------------------------------------------------------------------

// ILOC 3: the codes go to the nodes of elements of the listed materials.
void code_nodes_of(EditCards& edit, Mesh& mesh, std::int8_t type, const ElementWords& w) {
    if (!material_listed(edit, w.material))
        return;
    const NodeNumber nodes[4] = {w.corner_1, w.corner_2, w.corner_3, w.corner_4};
    const int count = type == ELEMENT_CONTINUUM ? 4 : 2;
    for (int i = 0; i < count; ++i)
        if (nodes[i].names_one())
            mesh.codes[nodes[i]] = edit.new_codes;
}

// The corner that a source names; `stands` when it names none.
NodeNumber sourced(std::int32_t source, const NodeNumber (&corner)[4], NodeNumber stands) {
    if (source == 0)
        return {};
    return source >= 1 && source <= 4 ? corner[source - 1] : stands;
}

void set_unless_stays(std::int32_t& field, std::int32_t value) {
    if (value != FIELD_STAYS)
        field = value;
}

void set_unless_stays(MaterialNumber& field, MaterialNumber value) {
    set_unless_stays(field.value, value.value);
}

void set_unless_stays(float& field, float value) {
    if (value != REAL_FIELD_STAYS)
        field = value;
}

void rebuild_continuum(LayoutKind kind, ElementRecord& element, const RebuildRow& row) {
    ElementWords& w = element.words;
    const NodeNumber corner[4] = {w.corner_1, w.corner_2, w.corner_3, w.corner_4};
    w.corner_1 = sourced(row.corner_source[0], corner, w.corner_1);
    w.corner_2 = sourced(row.corner_source[1], corner, w.corner_2);
    w.corner_3 = sourced(row.corner_source[2], corner, w.corner_3);
    w.corner_4 = sourced(row.corner_source[3], corner, w.corner_4);
    set_unless_stays(w.material, row.new_material);
    for_each_attribute(kind, [&](const auto& a) {
        if (a.on_cards)
            set_unless_stays(element.*a.member, row.*a.member);
    });
}

void rebuild_line_element(ElementRecord& element, const RebuildRow& row) {
    ElementWords& w = element.words;
    const NodeNumber corner[4] = {w.corner_1, w.corner_2, w.corner_3, w.corner_4};
    w.corner_1 = sourced(row.corner_source[0], corner, w.corner_1);
    w.corner_2 = sourced(row.corner_source[1], corner, w.corner_2);
    w.corner_4 = w.corner_1;
    w.corner_3 = w.corner_2;
    set_unless_stays(w.material, row.new_material);
}

// The first row whose old material is the element's applies.
void rebuild(LayoutKind kind, const EditCards& edit, std::int8_t type, ElementRecord& element) {
    const std::int32_t rows = type == ELEMENT_CONTINUUM ? edit.continuum_row_count
                              : type == ELEMENT_BEAM    ? edit.beam_row_count
                                                        : edit.truss_row_count;
    for (std::int32_t i = 1; i <= rows; ++i) {
        const RebuildRow& row = type == ELEMENT_CONTINUUM ? edit.continuum_rows[i]
                                : type == ELEMENT_BEAM    ? edit.beam_rows[i]
                                                          : edit.truss_rows[i];
        if (row.old_material != element.words.material)
            continue;
        if (type == ELEMENT_CONTINUUM)
            rebuild_continuum(kind, element, row);
        else
            rebuild_line_element(element, row);
        return;
    }
}

bool is_excluded(const EditCards& edit, std::int8_t type, MaterialNumber material) {
    switch (type) {
        case ELEMENT_CONTINUUM:
            return material == edit.excluded_material_1 || material == edit.excluded_material_2 ||
                   material == edit.excluded_material_3;
        case ELEMENT_BEAM:
            return material == edit.excluded_beam_material;
        default:
            return material == edit.excluded_truss_material;
    }
}

// IEDIT 2 deletes, IEDIT 3 changes the material. Returns what type becomes.
std::int32_t delete_or_rename(const EditCards& edit, const Mesh& mesh, const Selection& selection,
                              std::int8_t type, ElementRecord& element) {
    if (edit.operation == 4 || !takes_side(edit, element_inside(edit, mesh, selection, type, element)) ||
        is_excluded(edit, type, element.words.material))
        return type;
    if (edit.operation == 2)
        return ELEMENT_DELETED;
    const MaterialNumber material = type == ELEMENT_CONTINUUM ? edit.new_continuum_material
                                    : type == ELEMENT_BEAM    ? edit.new_beam_material
                                                              : edit.new_truss_material;
    if (material != MaterialNumber{})
        element.words.material = material;
    return type;
}

// The number that an element has from the start number of its type on.
ElementNumber new_number(const EditCards& edit, const EditSource& source, const Channel& mesh_file,
                         std::int8_t type, const ElementRecord& element) {
    const ElementNumber start = type == ELEMENT_CONTINUUM ? edit.first_element
                                : type == ELEMENT_BEAM    ? edit.first_beam
                                                          : edit.first_truss;
    return shifted(mesh_file, element.number, start - source.elements[type - ELEMENT_CONTINUUM].lowest,
                   LAST_ELEMENT, "element");
}

void edit_renumbered(EditCards& edit, const EditSource& source, Mesh& mesh, const Channel& mesh_file,
                     std::int8_t type, ElementRecord& element) {
    const ElementNumber number = new_number(edit, source, mesh_file, type, element);
    shift_corners(edit, source, mesh_file, element.words, type == ELEMENT_CONTINUUM);
    if (edit.operation == 1 && edit.selection_mode == 3)
        code_nodes_of(edit, mesh, type, element.words);
    if (edit.operation == 6)
        rebuild(mesh.kind, edit, type, element);
    store_element(mesh, number, type, element);
    mesh.type_in_use[number] = type;
}

// IEDIT 5: numbers of elements are shifted, corners are not, as nodes keep their numbers.
void edit_for_slope(const EditCards& edit, EditSource& source, Mesh& mesh, const Channel& mesh_file,
                    std::int8_t type, ElementRecord& element) {
    const ElementNumber number = new_number(edit, source, mesh_file, type, element);
    if (type == ELEMENT_CONTINUUM) {
        element.words.material = edit.template_material;
        element.thickness = 1.0F;
        element.density = 0.0F;
        element.attribute = 0;
        element.skeleton = 0;
        element.fluid = 1;
        element.integration_r = element.integration_s = 2;
        element.real_attribute = 0.0F;
        if (source.first_continuum.is_none())
            source.first_continuum = number;
    }
    store_element(mesh, number, type, element);
    mesh.type_in_use[number] = type;
}

}  // namespace

NodeRecord moved(const EditCards& edit, NodeRecord node) {
    node.x = (node.x - edit.old_x) * edit.scale_x + edit.new_x;
    node.y = (node.y - edit.old_y) * edit.scale_y + edit.new_y;
    return node;
}

void edit_nodes(const EditCards& edit, const EditSource& source, Mesh& mesh, const Selection& selection,
                Channel& mesh_file) {
    MeshWalk walk(mesh.kind, mesh_file, source.stripped, source.counts);
    walk.each_node([&](NodeRecord node) {
        if (renumbers(edit)) {
            const NodeNumber number =
                shifted(mesh_file, node.number, edit.first_node - source.nodes.lowest, LAST_NODE, "node");
            if (edit.operation == 0) {
                node = moved(edit, node);
                require_finite(mesh_file, node.number, node.x, node.y);
            }
            if (edit.operation == 1 && edit.selection_mode != 3 &&
                takes_side(edit, node_inside(edit, selection, node.number, node.x, node.y)))
                node.codes = edit.new_codes;
            store_node(mesh, number, node);
            mesh.node_in_use[number] = 1;
        } else if (keeps_numbers(edit)) {
            store_node(mesh, node.number, node);
        } else if (edit.operation == 5) {
            node.codes[2] = node.codes[3] = node.codes[4] = 1;
            node.head = edit.initial_head;
            store_node(mesh, node.number, node);
            mesh.node_in_use[node.number] = 1;
        }
    });
}

void edit_elements(EditCards& edit, EditSource& source, Mesh& mesh, const Selection& selection,
                   Channel& mesh_file, std::int8_t type) {
    MeshWalk walk(mesh.kind, mesh_file, source.stripped, source.counts);
    walk.each_element(type, [&](ElementRecord element) {
        if (renumbers(edit)) {
            edit_renumbered(edit, source, mesh, mesh_file, type, element);
        } else if (edit.operation == 5) {
            edit_for_slope(edit, source, mesh, mesh_file, type, element);
        } else if (keeps_numbers(edit)) {
            const ElementNumber number = element.number;
            if (type != ELEMENT_CONTINUUM && edit.operation != 4 && edit.selection_mode == 0 &&
                (element.words.corner_1.is_none() || element.words.corner_2.is_none()))
                mesh_file.fail_behind(
                    "element " + to_string(number) +
                    ": expected two nodes, whose middle decides whether the window takes it");
            const std::int32_t kept = delete_or_rename(edit, mesh, selection, type, element);
            store_element(mesh, number, type, element);
            mesh.type[number] = kept;
        }
    });
}

}  // namespace brelan
