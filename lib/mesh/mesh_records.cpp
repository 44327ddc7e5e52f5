#include "mesh/mesh_records.h"

#include <cstdlib>
#include <string>

#include "mesh/kinds.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(1X,I5,4(3X,I5))"> COUNTS_LINE;

constexpr Layout<"(1X,I6,7I5,1X,2(E13.6,1X))"> COUPLED_NODE;
constexpr Layout<"(1X,I6,2I5,1X,4(E13.6,1X))"> SCALAR_NODE;
constexpr Layout<"(1X,I6,5I5,1X,2(E13.6,1X))"> DISPLACEMENT_NODE;

constexpr Layout<"(9(1X,I6),5I5,E11.4)"> COUPLED_CONTINUUM;
constexpr Layout<"(5(1X,I6),1X,2I5)"> SCALAR_CONTINUUM;
constexpr Layout<"(9(1X,I6),I5,2E11.4)"> DISPLACEMENT_CONTINUUM;

constexpr Layout<"(5(1X,I6))"> LINE_ELEMENT;

// IEX, IEY and CONSTANT_NODE_CODE: constants of the file form that no stage stores.
constexpr std::int32_t CONSTANT_CODE_X = 1, CONSTANT_CODE_Y = 1, CONSTANT_NODE_CODE = 1;

constexpr std::string_view SECTION_TITLE[3] = {"   CONTINUUM ELEMENT INDEX ", "   BEAM ELEMENT ",
                                               "   TRUSS ELEMENT "};
constexpr std::string_view LINE_RECORD[2] = {"a beam element record (NEL, I, J, MSEC, NODEK)",
                                             "a truss element record (NEL, I, J, MATT, NODEK)"};

std::string_view record_name(LayoutKind kind, std::int8_t type) {
    return type == ELEMENT_CONTINUUM ? kind_row(kind).continuum_record : LINE_RECORD[type - ELEMENT_BEAM];
}

}  // namespace

MeshCounts read_mesh_counts(Channel& mesh_file) {
    MeshCounts counts;
    read_free(mesh_file, "the counts line (NUMNP, NCONT, NBEAM, NTRUS)", counts.nodes,
              counts.continuum_elements, counts.beams, counts.trusses);
    if (counts.nodes < 0 || counts.nodes > HIGHEST_NODE_NUMBER)
        mesh_file.fail_behind("expected a NUMNP of 0 to 99990, found " + std::to_string(counts.nodes));
    for (const std::int8_t type : {ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS})
        if (counts.of(type) < 0 || counts.of(type) > HIGHEST_ELEMENT_NUMBER)
            mesh_file.fail_behind("expected element counts of 0 to 99990, found " +
                                  std::to_string(counts.of(type)));
    return counts;
}

NodeRecord read_node_record(LayoutKind kind, Channel& mesh_file, std::int32_t field_count) {
    const KindRow& row = kind_row(kind);
    NodeRecord node;
    FreeFieldReader reader(mesh_file, row.node_record);
    reader.read(node.number);
    for (int i = 0; i < row.node_codes; ++i)
        reader.read(node.codes[static_cast<std::size_t>(i)]);
    if (row.short_node_record != 0 && field_count != row.short_node_record) {
        std::int32_t passed_over = 0;
        reader.read(passed_over);
        reader.read(passed_over);
    }
    reader.read(node.x);
    reader.read(node.y);
    if (has_node_values(kind)) {
        reader.read(node.head);
        reader.read(node.coefficient);
    }
    reader.finish();
    return node;
}

ElementRecord two_node_element(std::int32_t from, std::int32_t to, std::int32_t material) {
    ElementRecord e;
    e.words.corner_1 = e.words.corner_4 = from;
    e.words.corner_2 = e.words.corner_3 = to;
    e.words.material = material;
    e.fluid = 1;
    e.integration_r = e.integration_s = 2;
    e.thickness = e.density = 1.0F;
    return e;
}

ElementRecord read_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    ElementRecord e;
    ElementWords& w = e.words;
    if (type != ELEMENT_CONTINUUM) {
        read_free(mesh_file, record_name(kind, type), e.number, w.corner_1, w.corner_2, w.material);
        const std::int32_t number = e.number;
        e = two_node_element(w.corner_1, w.corner_2, w.material);
        e.number = number;
        return e;
    }
    switch (kind) {
        case LayoutKind::coupled:
            read_free(mesh_file, record_name(kind, type), e.number, w.corner_1, w.corner_2, w.corner_3,
                      w.corner_4, w.midside_5, w.midside_6, w.midside_7, w.midside_8, w.material, e.skeleton,
                      e.fluid, e.integration_r, e.integration_s, e.real_attribute);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            read_free(mesh_file, record_name(kind, type), e.number, w.corner_1, w.corner_2, w.corner_3,
                      w.corner_4, w.material, e.attribute);
            break;
        case LayoutKind::displacement:
            read_free(mesh_file, record_name(kind, type), e.number, w.corner_1, w.corner_2, w.corner_3,
                      w.corner_4, w.midside_5, w.midside_6, w.midside_7, w.midside_8, w.material, e.thickness,
                      e.density);
            break;
    }
    return e;
}

std::int32_t read_element_number(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    std::int32_t number = 0;
    read_free(mesh_file, record_name(kind, type), number);
    return number;
}

void write_mesh_counts(Channel& mesh_file, const MeshCounts& counts) {
    write_free(mesh_file, counts.nodes, counts.continuum_elements, counts.beams, counts.trusses);
}

void write_mesh_head(Channel& mesh_file, std::string_view name, const MeshCounts& counts) {
    mesh_file.write_columns(name);
    write_free(mesh_file, " NUMNP   NCONT   NBEAM   NTRUS ");
    COUNTS_LINE.write_front(mesh_file, counts.nodes, counts.continuum_elements, counts.beams, counts.trusses);
}

void write_node_heading(LayoutKind kind, Channel& mesh_file) {
    write_free(mesh_file, "   NODAL COORDINATES ");
    mesh_file.write_line(kind_row(kind).node_heading);
}

void write_section_heading(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    write_free(mesh_file, SECTION_TITLE[type - ELEMENT_CONTINUUM]);
    if (type == ELEMENT_CONTINUUM)
        mesh_file.write_line(kind_row(kind).continuum_heading);
    else
        write_free(mesh_file, type == ELEMENT_BEAM ? "   NEL      I      J   MSEC  NODEK "
                                                   : "   NEL      I      J   MATT  NODEK ");
}

void write_node_record(LayoutKind kind, Channel& mesh_file, const NodeRecord& node) {
    const NodeCodes& id = node.codes;
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_NODE.write(mesh_file, node.number, id[0], id[1], id[2], id[3], id[4], CONSTANT_CODE_X,
                               CONSTANT_CODE_Y, node.x, node.y);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_NODE.write(mesh_file, node.number, id[0], id[1], node.x, node.y, node.head,
                              node.coefficient);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_NODE.write(mesh_file, node.number, id[0], id[1], id[2], CONSTANT_CODE_X,
                                    CONSTANT_CODE_Y, node.x, node.y);
            break;
    }
}

void write_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type, const ElementRecord& e) {
    const ElementWords& w = e.words;
    if (type != ELEMENT_CONTINUUM) {
        LINE_ELEMENT.write(mesh_file, e.number, w.corner_1, w.corner_2, w.material, CONSTANT_NODE_CODE);
        return;
    }
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_CONTINUUM.write(mesh_file, e.number, w.corner_1, w.corner_2, w.corner_3, w.corner_4,
                                    w.midside_5, w.midside_6, w.midside_7, w.midside_8, w.material,
                                    e.skeleton, e.fluid, e.integration_r, e.integration_s, e.real_attribute);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_CONTINUUM.write(mesh_file, e.number, w.corner_1, w.corner_2, w.corner_3, w.corner_4,
                                   w.material, e.attribute);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CONTINUUM.write(mesh_file, e.number, w.corner_1, w.corner_2, w.corner_3, w.corner_4,
                                         w.midside_5, w.midside_6, w.midside_7, w.midside_8, w.material,
                                         e.thickness, e.density);
            break;
    }
}

void store_element(Mesh& mesh, std::int32_t number, std::int8_t type, const ElementRecord& e) {
    ElementWords words = e.words;
    if (type == ELEMENT_CONTINUUM && kind_row(mesh.kind).element_words == 4) {
        const ElementWords& stood = mesh.words[number];
        words.midside_5 = stood.midside_5;
        words.midside_6 = stood.midside_6;
        words.midside_7 = stood.midside_7;
        words.midside_8 = stood.midside_8;
    }
    mesh.words[number] = words;
    switch (mesh.kind) {
        case LayoutKind::coupled:
            mesh.skeleton[number] = e.skeleton;
            mesh.fluid[number] = e.fluid;
            mesh.integration_r[number] = e.integration_r;
            mesh.integration_s[number] = e.integration_s;
            mesh.real_attribute[number] = e.real_attribute;
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            mesh.attribute[number] = e.attribute;
            break;
        case LayoutKind::displacement:
            mesh.thickness[number] = e.thickness;
            mesh.density[number] = e.density;
            break;
    }
}

void copy_attributes(Mesh& mesh, std::int32_t from, std::int32_t to) {
    switch (mesh.kind) {
        case LayoutKind::coupled:
            mesh.skeleton[to] = mesh.skeleton[from];
            mesh.fluid[to] = mesh.fluid[from];
            mesh.integration_r[to] = mesh.integration_r[from];
            mesh.integration_s[to] = mesh.integration_s[from];
            mesh.real_attribute[to] = mesh.real_attribute[from];
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            mesh.attribute[to] = mesh.attribute[from];
            break;
        case LayoutKind::displacement:
            mesh.thickness[to] = mesh.thickness[from];
            mesh.density[to] = mesh.density[from];
            break;
    }
}

ElementRecord load_element(const Mesh& mesh, std::int32_t number) {
    ElementRecord e;
    e.number = number;
    e.words = mesh.words[number];
    switch (mesh.kind) {
        case LayoutKind::coupled:
            e.skeleton = mesh.skeleton[number];
            e.fluid = mesh.fluid[number];
            e.integration_r = mesh.integration_r[number];
            e.integration_s = mesh.integration_s[number];
            e.real_attribute = mesh.real_attribute[number];
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            e.attribute = mesh.attribute[number];
            break;
        case LayoutKind::displacement:
            e.thickness = mesh.thickness[number];
            e.density = mesh.density[number];
            break;
    }
    return e;
}

ElementRecord load_element_for_writing(const Mesh& mesh, std::int32_t number) {
    ElementRecord e = load_element(mesh, number);
    if (e.attribute < 0)
        e.attribute = std::abs(e.attribute) - 100;
    return e;
}

NodeRecord load_node(const Mesh& mesh, std::int32_t number) {
    NodeRecord node;
    node.number = number;
    node.codes = mesh.codes[number];
    node.x = mesh.x[number];
    node.y = mesh.y[number];
    if (has_node_values(mesh.kind)) {
        node.head = mesh.head[number];
        node.coefficient = mesh.coefficient[number];
    }
    return node;
}

}  // namespace brelan
