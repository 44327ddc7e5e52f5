#include "mesh/edit_mesh.h"

#include <cmath>
#include <string>

#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/selection.h"

namespace brelan {

namespace {

constexpr std::int32_t FIELD_STAYS = -10;
constexpr float REAL_FIELD_STAYS = -10.0F;

// IEDIT 0, 1 and 6 renumber while reading; 2, 3 and 4 keep all numbers for the compaction.
bool renumbers(const EditCards& edit) {
    return edit.IEDIT == 0 || edit.IEDIT == 1 || edit.IEDIT == 6;
}
bool keeps_numbers(const EditCards& edit) {
    return edit.IEDIT == 2 || edit.IEDIT == 3 || edit.IEDIT == 4;
}

std::int32_t shifted(const Channel& mesh_file, std::int32_t number, std::int32_t shift, std::int32_t last,
                     const char* what) {
    const std::int32_t result = number + shift;
    if (result < 1 || result > last)
        mesh_file.fail_behind(std::string(what) + " " + std::to_string(number) +
                         ": expected a new number from 1 to " + std::to_string(last) +
                         ", but the start number of Card 3.2 makes it " + std::to_string(result));
    return result;
}

// --- nodes ---------------------------------------------------------------------------------------

void require_finite(const Channel& mesh_file, std::int32_t number, float x, float y) {
    if (!std::isfinite(x) || !std::isfinite(y))
        mesh_file.fail_behind("node " + std::to_string(number) +
                         ": expected coordinates that are numbers, but the edit makes one that is none");
}

void store_node(Mesh& mesh, std::int32_t number, const NodeRecord& node) {
    mesh.codes[number] = node.ID;
    mesh.x[number] = node.XC;
    mesh.y[number] = node.YC;
    if (has_node_values(mesh.kind)) {
        mesh.head[number] = node.H;
        mesh.coefficient[number] = node.CF;
    }
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
    if (edit.IEDIT != 0)
        return MIRROR[0];
    return MIRROR[(edit.SCX < 0.0F ? 1 : 0) + (edit.SCY < 0.0F ? 2 : 0)];
}

// A corner of 0 or below is no node and keeps its word.
std::int32_t shifted_corner(const Channel& mesh_file, std::int32_t corner, std::int32_t shift) {
    if (corner <= 0)
        return corner;
    const std::int32_t result = corner + shift;
    if (result > MAXNP)
        mesh_file.fail_behind("corner " + std::to_string(corner) + ": expected a new node number of at most " +
                         std::to_string(MAXNP) + ", but NSNODE of Card 3.2 makes it " +
                         std::to_string(result));
    return result;
}

void shift_corners(const EditCards& edit, const EditSource& source, const Channel& mesh_file, ElementWords& w, bool permute) {
    const std::int32_t shift = edit.NSNODE - source.nodes.lowest;
    const std::int32_t old[5] = {0, shifted_corner(mesh_file, w.I1, shift), shifted_corner(mesh_file, w.I2, shift),
                                 shifted_corner(mesh_file, w.I3, shift), shifted_corner(mesh_file, w.I4, shift)};
    const MirrorRow& mirror = permute ? mirror_row(edit) : MIRROR[0];
    const int(&row)[4] = permute && w.I4 == 0 ? mirror.triangle : mirror.quadrilateral;
    w.I1 = old[row[0]];
    w.I2 = old[row[1]];
    w.I3 = old[row[2]];
    w.I4 = old[row[3]];
}

// --- the operations on elements ------------------------------------------------------------------

// ILOC 3: the codes go to the nodes of elements of the listed materials.
void code_nodes_of(EditCards& edit, Mesh& mesh, std::int8_t type, const ElementWords& w) {
    if (!material_listed(edit, w.MATNO))
        return;
    const std::int32_t nodes[4] = {w.I1, w.I2, w.I3, w.I4};
    const int count = type == EL_CONTINUUM ? 4 : 2;
    for (int i = 0; i < count; ++i)
        if (nodes[i] > 0)
            mesh.codes[nodes[i]] = edit.IDNEW;
}

// The corner that a source names; `stands` when it names none.
std::int32_t sourced(std::int32_t source, const std::int32_t (&corner)[4], std::int32_t stands) {
    if (source == 0)
        return 0;
    return source >= 1 && source <= 4 ? corner[source - 1] : stands;
}

void set_unless_stays(std::int32_t& field, std::int32_t value) {
    if (value != FIELD_STAYS)
        field = value;
}

void set_unless_stays(float& field, float value) {
    if (value != REAL_FIELD_STAYS)
        field = value;
}

void rebuild_continuum(LayoutKind kind, ElementRecord& element, const RebuildRow& row) {
    ElementWords& w = element.words;
    const std::int32_t corner[4] = {w.I1, w.I2, w.I3, w.I4};
    w.I1 = sourced(row.NS[0], corner, w.I1);
    w.I2 = sourced(row.NS[1], corner, w.I2);
    w.I3 = sourced(row.NS[2], corner, w.I3);
    w.I4 = sourced(row.NS[3], corner, w.I4);
    set_unless_stays(w.MATNO, row.MATNEW);
    switch (kind) {
        case LayoutKind::coupled:
            set_unless_stays(element.KS, row.KS);
            set_unless_stays(element.KF, row.KF);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            set_unless_stays(element.IDH, row.IDH);
            break;
        case LayoutKind::displacement:
            set_unless_stays(element.THIC, row.THIC);
            set_unless_stays(element.DEN, row.DEN);
            break;
    }
}

void rebuild_line_element(ElementRecord& element, const RebuildRow& row) {
    ElementWords& w = element.words;
    const std::int32_t corner[4] = {w.I1, w.I2, w.I3, w.I4};
    w.I1 = sourced(row.NS[0], corner, w.I1);
    w.I2 = sourced(row.NS[1], corner, w.I2);
    w.I4 = w.I1;
    w.I3 = w.I2;
    set_unless_stays(w.MATNO, row.MATNEW);
}

// The first row whose old material is the element's applies.
void rebuild(LayoutKind kind, const EditCards& edit, std::int8_t type, ElementRecord& element) {
    const std::int32_t rows = type == EL_CONTINUUM ? edit.NEDC : type == EL_BEAM ? edit.NEDB : edit.NEDT;
    for (std::int32_t i = 1; i <= rows; ++i) {
        const RebuildRow& row = type == EL_CONTINUUM ? edit.EDC[i]
                                : type == EL_BEAM    ? edit.EDB[i]
                                                     : edit.EDT[i];
        if (row.MATold != element.words.MATNO)
            continue;
        if (type == EL_CONTINUUM)
            rebuild_continuum(kind, element, row);
        else
            rebuild_line_element(element, row);
        return;
    }
}

bool is_excluded(const EditCards& edit, std::int8_t type, std::int32_t material) {
    switch (type) {
        case EL_CONTINUUM:
            return material == edit.MATX1 || material == edit.MATX2 || material == edit.MATX3;
        case EL_BEAM:
            return material == edit.MATXB;
        default:
            return material == edit.MATXT;
    }
}

// IEDIT 2 deletes, IEDIT 3 changes the material. Returns what ETYPE becomes.
std::int32_t delete_or_rename(const EditCards& edit, const Mesh& mesh, const Selection& selection, std::int8_t type, ElementRecord& element) {
    if (edit.IEDIT == 4 || !takes_side(edit, element_inside(edit, mesh, selection, type, element)) ||
        is_excluded(edit, type, element.words.MATNO))
        return type;
    if (edit.IEDIT == 2)
        return EL_DELETED;
    const std::int32_t material = type == EL_CONTINUUM ? edit.MATNC
                                  : type == EL_BEAM    ? edit.MATNB
                                                       : edit.MATNT;
    if (material != 0)
        element.words.MATNO = material;
    return type;
}

// The number that an element has from the start number of its type on.
std::int32_t new_number(const EditCards& edit, const EditSource& source, const Channel& mesh_file, std::int8_t type, const ElementRecord& element) {
    const std::int32_t start = type == EL_CONTINUUM ? edit.NSNEL
                               : type == EL_BEAM    ? edit.NSBEAM
                                                    : edit.NSTRUS;
    return shifted(mesh_file, element.NEL, start - source.elements[type - EL_CONTINUUM].lowest, MAXEL, "element");
}

void edit_renumbered(EditCards& edit, const EditSource& source, Mesh& mesh, const Channel& mesh_file, std::int8_t type, ElementRecord& element) {
    const std::int32_t number = new_number(edit, source, mesh_file, type, element);
    shift_corners(edit, source, mesh_file, element.words, type == EL_CONTINUUM);
    if (edit.IEDIT == 1 && edit.ILOC == 3)
        code_nodes_of(edit, mesh, type, element.words);
    if (edit.IEDIT == 6)
        rebuild(mesh.kind, edit, type, element);
    store_element(mesh, number, type, element);
    mesh.type_in_use[number] = type;
}

// IEDIT 5: numbers of elements are shifted, corners are not, as nodes keep their numbers.
void edit_for_slope(const EditCards& edit, EditSource& source, Mesh& mesh, const Channel& mesh_file, std::int8_t type, ElementRecord& element) {
    const std::int32_t number = new_number(edit, source, mesh_file, type, element);
    if (type == EL_CONTINUUM) {
        element.words.MATNO = edit.MATNO_T;
        element.THIC = 1.0F;
        element.DEN = 0.0F;
        element.IDH = 0;
        element.KS = 0;
        element.KF = 1;
        element.INTR = element.INTS = 2;
        element.TBJWL = 0.0F;
        if (source.first_continuum == 0)
            source.first_continuum = number;
    }
    store_element(mesh, number, type, element);
    mesh.type_in_use[number] = type;
}

}  // namespace

void EDITNODES(const EditCards& edit, const EditSource& source, Mesh& mesh, const Selection& selection, Channel& mesh_file) {
    for (std::int32_t i = 0; i < source.counts.NUMNP; ++i) {
        NodeRecord node = read_node_record(mesh.kind, mesh_file, source.stripped.NFIELDS);
        if (renumbers(edit)) {
            const std::int32_t number =
                shifted(mesh_file, node.NODE, edit.NSNODE - source.nodes.lowest, MAXNP, "node");
            if (edit.IEDIT == 0) {
                node.XC = (node.XC - edit.XO) * edit.SCX + edit.XN;
                node.YC = (node.YC - edit.YO) * edit.SCY + edit.YN;
                require_finite(mesh_file, node.NODE, node.XC, node.YC);
            }
            if (edit.IEDIT == 1 && edit.ILOC != 3 && takes_side(edit, node_inside(edit, selection, node.NODE, node.XC, node.YC)))
                node.ID = edit.IDNEW;
            store_node(mesh, number, node);
            mesh.node_in_use[number] = 1;
        } else if (keeps_numbers(edit)) {
            store_node(mesh, node.NODE, node);
        } else if (edit.IEDIT == 5) {
            node.ID[2] = node.ID[3] = node.ID[4] = 1;
            node.H = edit.Hi;
            store_node(mesh, node.NODE, node);
            mesh.node_in_use[node.NODE] = 1;
        }
    }
}

void EDITELEMENTS(EditCards& edit, EditSource& source, Mesh& mesh, const Selection& selection, Channel& mesh_file, std::int8_t type) {
    mesh_file.skip_lines(source.stripped.headings_of(type), "a heading line");
    for (std::int32_t i = 0; i < source.counts.of(type); ++i) {
        ElementRecord element = read_element_record(mesh.kind, mesh_file, type);
        if (renumbers(edit)) {
            edit_renumbered(edit, source, mesh, mesh_file, type, element);
        } else if (edit.IEDIT == 5) {
            edit_for_slope(edit, source, mesh, mesh_file, type, element);
        } else if (keeps_numbers(edit)) {
            const std::int32_t number = element.NEL;
            if (type != EL_CONTINUUM && edit.IEDIT != 4 && edit.ILOC == 0 &&
                (element.words.I1 < 1 || element.words.I2 < 1))
                mesh_file.fail_behind("element " + std::to_string(number) +
                                 ": expected two nodes, whose middle decides whether the window takes it");
            const std::int32_t kept = delete_or_rename(edit, mesh, selection, type, element);
            store_element(mesh, number, type, element);
            mesh.type[number] = kept;
        }
    }
}

}  // namespace brelan
