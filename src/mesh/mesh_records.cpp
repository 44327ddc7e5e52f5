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

std::string_view record_name(std::int8_t type) {
    return type == EL_CONTINUUM ? kind_row().continuum_record : LINE_RECORD[type - EL_BEAM];
}

}  // namespace

MeshCounts read_mesh_counts(Channel& mesh) {
    MeshCounts counts;
    read_free(mesh, "the counts line (NUMNP, NCONT, NBEAM, NTRUS)", counts.NUMNP, counts.NCONT, counts.NBEAM,
              counts.NTRUS);
    if (counts.NUMNP < 0 || counts.NUMNP > MAXNP)
        mesh.fail_behind("expected a NUMNP of 0 to 99990, found " + std::to_string(counts.NUMNP));
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS})
        if (counts.of(type) < 0 || counts.of(type) > MAXEL)
            mesh.fail_behind("expected element counts of 0 to 99990, found " +
                             std::to_string(counts.of(type)));
    return counts;
}

NodeRecord read_node_record(Channel& mesh, std::int32_t NFIELDS) {
    const KindRow& row = kind_row();
    NodeRecord node;
    FreeFieldReader reader(mesh, row.node_record);
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
    if (has_node_values()) {
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

ElementRecord read_element_record(Channel& mesh, std::int8_t type) {
    ElementRecord e;
    ElementWords& w = e.words;
    if (type != EL_CONTINUUM) {
        read_free(mesh, record_name(type), e.NEL, w.I1, w.I2, w.MATNO);
        const std::int32_t NEL = e.NEL;
        e = two_node_element(w.I1, w.I2, w.MATNO);
        e.NEL = NEL;
        return e;
    }
    switch (KIND()) {
        case LayoutKind::coupled:
            read_free(mesh, record_name(type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                      e.KS, e.KF, e.INTR, e.INTS, e.TBJWL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            read_free(mesh, record_name(type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.MATNO, e.IDH);
            break;
        case LayoutKind::displacement:
            read_free(mesh, record_name(type), e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                      e.THIC, e.DEN);
            break;
    }
    return e;
}

std::int32_t read_element_number(Channel& mesh, std::int8_t type) {
    std::int32_t NEL = 0;
    read_free(mesh, record_name(type), NEL);
    return NEL;
}

void write_mesh_counts(Channel& mesh, const MeshCounts& counts) {
    write_free(mesh, counts.NUMNP, counts.NCONT, counts.NBEAM, counts.NTRUS);
}

void write_mesh_head(Channel& mesh, std::string_view name, const MeshCounts& counts) {
    mesh.write_columns(name);
    write_free(mesh, " NUMNP   NCONT   NBEAM   NTRUS ");
    COUNTS_LINE.write_front(mesh, counts.NUMNP, counts.NCONT, counts.NBEAM, counts.NTRUS);
}

void write_node_heading(Channel& mesh) {
    write_free(mesh, "   NODAL COORDINATES ");
    mesh.write_line(kind_row().node_heading);
}

void write_section_heading(Channel& mesh, std::int8_t type) {
    write_free(mesh, SECTION_TITLE[type - EL_CONTINUUM]);
    if (type == EL_CONTINUUM)
        mesh.write_line(kind_row().continuum_heading);
    else
        write_free(mesh, type == EL_BEAM ? "   NEL      I      J   MSEC  NODEK "
                                         : "   NEL      I      J   MATT  NODEK ");
}

void write_node_record(Channel& mesh, const NodeRecord& node) {
    const NodeCodes& id = node.ID;
    switch (KIND()) {
        case LayoutKind::coupled:
            COUPLED_NODE.write(mesh, node.NODE, id[0], id[1], id[2], id[3], id[4], IEX, IEY, node.XC,
                               node.YC);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_NODE.write(mesh, node.NODE, id[0], id[1], node.XC, node.YC, node.H, node.CF);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_NODE.write(mesh, node.NODE, id[0], id[1], id[2], IEX, IEY, node.XC, node.YC);
            break;
    }
}

void write_element_record(Channel& mesh, std::int8_t type, const ElementRecord& e) {
    const ElementWords& w = e.words;
    if (type != EL_CONTINUUM) {
        LINE_ELEMENT.write(mesh, e.NEL, w.I1, w.I2, w.MATNO, NODEK);
        return;
    }
    switch (KIND()) {
        case LayoutKind::coupled:
            COUPLED_CONTINUUM.write(mesh, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                    e.KS, e.KF, e.INTR, e.INTS, e.TBJWL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_CONTINUUM.write(mesh, e.NEL, w.I1, w.I2, w.I3, w.I4, w.MATNO, e.IDH);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CONTINUUM.write(mesh, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                         e.THIC, e.DEN);
            break;
    }
}

void store_element(std::int32_t number, std::int8_t type, const ElementRecord& e) {
    ElementWords words = e.words;
    if (type == EL_CONTINUUM && kind_row().element_words == 4) {
        const ElementWords& stood = IEL[number];
        words.M5 = stood.M5;
        words.M6 = stood.M6;
        words.M7 = stood.M7;
        words.M8 = stood.M8;
    }
    IEL[number] = words;
    switch (KIND()) {
        case LayoutKind::coupled:
            KS[number] = e.KS;
            KF[number] = e.KF;
            INTR[number] = e.INTR;
            INTS[number] = e.INTS;
            TBJWL[number] = e.TBJWL;
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            IDH[number] = e.IDH;
            break;
        case LayoutKind::displacement:
            THIC[number] = e.THIC;
            DEN[number] = e.DEN;
            break;
    }
}

void copy_attributes(std::int32_t from, std::int32_t to) {
    switch (KIND()) {
        case LayoutKind::coupled:
            KS[to] = KS[from];
            KF[to] = KF[from];
            INTR[to] = INTR[from];
            INTS[to] = INTS[from];
            TBJWL[to] = TBJWL[from];
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            IDH[to] = IDH[from];
            break;
        case LayoutKind::displacement:
            THIC[to] = THIC[from];
            DEN[to] = DEN[from];
            break;
    }
}

ElementRecord load_element(std::int32_t number) {
    ElementRecord e;
    e.NEL = number;
    e.words = IEL[number];
    switch (KIND()) {
        case LayoutKind::coupled:
            e.KS = KS[number];
            e.KF = KF[number];
            e.INTR = INTR[number];
            e.INTS = INTS[number];
            e.TBJWL = TBJWL[number];
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            e.IDH = IDH[number];
            break;
        case LayoutKind::displacement:
            e.THIC = THIC[number];
            e.DEN = DEN[number];
            break;
    }
    return e;
}

ElementRecord load_element_for_writing(std::int32_t number) {
    ElementRecord e = load_element(number);
    if (e.IDH < 0)
        e.IDH = std::abs(e.IDH) - 100;
    return e;
}

NodeRecord load_node(std::int32_t number) {
    NodeRecord node;
    node.NODE = number;
    node.ID = IDN[number];
    node.XC = XC[number];
    node.YC = YC[number];
    if (has_node_values()) {
        node.H = H[number];
        node.CF = CF[number];
    }
    return node;
}

}  // namespace brelan
