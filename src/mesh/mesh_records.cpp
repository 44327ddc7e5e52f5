#include "mesh/mesh_records.h"

#include <cstdlib>
#include <string>

#include "channel/free_field.h"
#include "channel/layout.h"
#include "mesh/kinds.h"

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

// IEX, IEY and NODEK: constants of the file form that no stage stores.
constexpr std::int32_t IEX = 1, IEY = 1, NODEK = 1;

constexpr std::string_view SECTION_TITLE[3] = {"   CONTINUUM ELEMENT INDEX ", "   BEAM ELEMENT ",
                                               "   TRUSS ELEMENT "};
constexpr std::string_view LINE_RECORD[2] = {"a beam element record (NEL, I, J, MSEC, NODEK)",
                                             "a truss element record (NEL, I, J, MATT, NODEK)"};

std::string_view record_name(LayoutKind kind, std::int8_t type) {
    return type == EL_CONTINUUM ? kind_row(kind).continuum_record : LINE_RECORD[type - EL_BEAM];
}

}  // namespace

MeshCounts read_mesh_counts(Channel& mesh_file) {
    MeshCounts counts;
    read_free(mesh_file, "the counts line (NUMNP, NCONT, NBEAM, NTRUS)", counts.NUMNP, counts.NCONT, counts.NBEAM,
              counts.NTRUS);
    if (counts.NUMNP < 0 || counts.NUMNP > MAXNP)
        mesh_file.fail_behind("expected a NUMNP of 0 to 99990, found " + std::to_string(counts.NUMNP));
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS})
        if (counts.of(type) < 0 || counts.of(type) > MAXEL)
            mesh_file.fail_behind("expected element counts of 0 to 99990, found " +
                             std::to_string(counts.of(type)));
    return counts;
}

NodeRecord read_node_record(LayoutKind kind, Channel& mesh_file, std::int32_t NFIELDS) {
    const KindRow& row = kind_row(kind);
    NodeRecord node;
    FreeFieldReader reader(mesh_file, row.node_record);
    reader.read(node.NODE);
    for (int i = 0; i < row.node_codes; ++i)
        reader.read(node.ID[static_cast<std::size_t>(i)]);
    if (row.short_node_record != 0 && NFIELDS != row.short_node_record) {
        std::int32_t passed_over = 0;
        reader.read(passed_over);
        reader.read(passed_over);
    }
    reader.read(node.XC);
    reader.read(node.YC);
    if (has_node_values(kind)) {
        reader.read(node.H);
        reader.read(node.CF);
    }
    reader.finish();
    return node;
}

ElementRecord two_node_element(std::int32_t from, std::int32_t to, std::int32_t material) {
    ElementRecord e;
    e.words.I1 = e.words.I4 = from;
    e.words.I2 = e.words.I3 = to;
    e.words.MATNO = material;
    e.KF = 1;
    e.INTR = e.INTS = 2;
    e.THIC = e.DEN = 1.0F;
    return e;
}

ElementRecord read_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    ElementRecord e;
    ElementWords& w = e.words;
    if (type != EL_CONTINUUM) {
        read_free(mesh_file, record_name(kind, type), e.NEL, w.I1, w.I2, w.MATNO);
        const std::int32_t NEL = e.NEL;
        e = two_node_element(w.I1, w.I2, w.MATNO);
        e.NEL = NEL;
        return e;
    }
    switch (kind) {
        case LayoutKind::coupled:
            read_free(mesh_file, record_name(kind, type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                      e.KS, e.KF, e.INTR, e.INTS, e.TBJWL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            read_free(mesh_file, record_name(kind, type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.MATNO, e.IDH);
            break;
        case LayoutKind::displacement:
            read_free(mesh_file, record_name(kind, type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                      e.THIC, e.DEN);
            break;
    }
    return e;
}

std::int32_t read_element_number(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    std::int32_t NEL = 0;
    read_free(mesh_file, record_name(kind, type), NEL);
    return NEL;
}

void write_mesh_counts(Channel& mesh_file, const MeshCounts& counts) {
    write_free(mesh_file, counts.NUMNP, counts.NCONT, counts.NBEAM, counts.NTRUS);
}

void write_mesh_head(Channel& mesh_file, std::string_view name, const MeshCounts& counts) {
    mesh_file.write_columns(name);
    write_free(mesh_file, " NUMNP   NCONT   NBEAM   NTRUS ");
    COUNTS_LINE.write_front(mesh_file, counts.NUMNP, counts.NCONT, counts.NBEAM, counts.NTRUS);
}

void write_node_heading(LayoutKind kind, Channel& mesh_file) {
    write_free(mesh_file, "   NODAL COORDINATES ");
    mesh_file.write_line(kind_row(kind).node_heading);
}

void write_section_heading(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    write_free(mesh_file, SECTION_TITLE[type - EL_CONTINUUM]);
    if (type == EL_CONTINUUM)
        mesh_file.write_line(kind_row(kind).continuum_heading);
    else
        write_free(mesh_file, type == EL_BEAM ? "   NEL      I      J   MSEC  NODEK "
                                         : "   NEL      I      J   MATT  NODEK ");
}

void write_node_record(LayoutKind kind, Channel& mesh_file, const NodeRecord& node) {
    const NodeCodes& id = node.ID;
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_NODE.write(mesh_file, node.NODE, id[0], id[1], id[2], id[3], id[4], IEX, IEY, node.XC,
                               node.YC);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_NODE.write(mesh_file, node.NODE, id[0], id[1], node.XC, node.YC, node.H, node.CF);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_NODE.write(mesh_file, node.NODE, id[0], id[1], id[2], IEX, IEY, node.XC, node.YC);
            break;
    }
}

void write_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type, const ElementRecord& e) {
    const ElementWords& w = e.words;
    if (type != EL_CONTINUUM) {
        LINE_ELEMENT.write(mesh_file, e.NEL, w.I1, w.I2, w.MATNO, NODEK);
        return;
    }
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_CONTINUUM.write(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                    e.KS, e.KF, e.INTR, e.INTS, e.TBJWL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_CONTINUUM.write(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.MATNO, e.IDH);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CONTINUUM.write(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                         e.THIC, e.DEN);
            break;
    }
}

void store_element(Mesh& mesh, std::int32_t number, std::int8_t type, const ElementRecord& e) {
    ElementWords words = e.words;
    if (type == EL_CONTINUUM && kind_row(mesh.kind).element_words == 4) {
        const ElementWords& stood = mesh.words[number];
        words.M5 = stood.M5;
        words.M6 = stood.M6;
        words.M7 = stood.M7;
        words.M8 = stood.M8;
    }
    mesh.words[number] = words;
    switch (mesh.kind) {
        case LayoutKind::coupled:
            mesh.skeleton[number] = e.KS;
            mesh.fluid[number] = e.KF;
            mesh.integration_r[number] = e.INTR;
            mesh.integration_s[number] = e.INTS;
            mesh.real_attribute[number] = e.TBJWL;
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            mesh.attribute[number] = e.IDH;
            break;
        case LayoutKind::displacement:
            mesh.thickness[number] = e.THIC;
            mesh.density[number] = e.DEN;
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
    e.NEL = number;
    e.words = mesh.words[number];
    switch (mesh.kind) {
        case LayoutKind::coupled:
            e.KS = mesh.skeleton[number];
            e.KF = mesh.fluid[number];
            e.INTR = mesh.integration_r[number];
            e.INTS = mesh.integration_s[number];
            e.TBJWL = mesh.real_attribute[number];
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            e.IDH = mesh.attribute[number];
            break;
        case LayoutKind::displacement:
            e.THIC = mesh.thickness[number];
            e.DEN = mesh.density[number];
            break;
    }
    return e;
}

ElementRecord load_element_for_writing(const Mesh& mesh, std::int32_t number) {
    ElementRecord e = load_element(mesh, number);
    if (e.IDH < 0)
        e.IDH = std::abs(e.IDH) - 100;
    return e;
}

NodeRecord load_node(const Mesh& mesh, std::int32_t number) {
    NodeRecord node;
    node.NODE = number;
    node.ID = mesh.codes[number];
    node.XC = mesh.x[number];
    node.YC = mesh.y[number];
    if (has_node_values(mesh.kind)) {
        node.H = mesh.head[number];
        node.CF = mesh.coefficient[number];
    }
    return node;
}

}  // namespace brelan
