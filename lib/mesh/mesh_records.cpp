#include "mesh/mesh_records.h"

#include <cstdlib>
#include <string>

#include "mesh/attributes.h"
#include "mesh/kinds.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(1X,I5,4(3X,I5))"> COUNTS_LINE;

constexpr Layout<"(5(1X,I6))"> LINE_ELEMENT;

// IEX, IEY and CONSTANT_NODE_CODE: constants of the file form that no stage stores.
constexpr std::int32_t CONSTANT_CODE_X = 1, CONSTANT_CODE_Y = 1, CONSTANT_NODE_CODE = 1;

constexpr std::string_view SECTION_TITLE[3] = {"   CONTINUUM ELEMENT INDEX ", "   BEAM ELEMENT ",
                                               "   TRUSS ELEMENT "};
constexpr std::string_view LINE_RECORD[2] = {"a beam element record (NEL, I, J, MSEC, NODEK)",
                                             "a truss element record (NEL, I, J, MATT, NODEK)"};

// The records of a kind.
struct CoupledRecords {
    static constexpr Layout<"(1X,I6,7I5,1X,2(E13.6,1X))"> NODE{};
    static constexpr Layout<"(1X,I6,1X,4(I5,1X),2(E13.6,1X))"> RAW_NODE{};
    static constexpr Layout<"(9(1X,I6),5I5,E11.4)"> CONTINUUM{};
    static constexpr Layout<"(9(1X,I6),I5,2I3,2I5,E11.4)"> NARROW_CONTINUUM{};

    static void write_node(Channel& mesh_file, const NodeRecord& node) {
        const NodeCodes& id = node.codes;
        NODE.write(mesh_file, node.number.value, id[0], id[1], id[2], id[3], id[4], CONSTANT_CODE_X,
                   CONSTANT_CODE_Y, node.x, node.y);
    }
    static void write_raw_node(Channel& file, NodeNumber number, float x, float y) {
        RAW_NODE.write(file, number.value, 0, 0, 0, 0, x, y);
    }
    static void write_continuum(Channel& mesh_file, const ElementRecord& e, ElementForm form) {
        const ElementWords& w = e.words;
        const auto write = [&](const auto& layout) {
            layout.write(mesh_file, e.number.value, w.corner_1.value, w.corner_2.value, w.corner_3.value,
                         w.corner_4.value, w.midside_5.value, w.midside_6.value, w.midside_7.value,
                         w.midside_8.value, w.material.value, e.skeleton, e.fluid, e.integration_r,
                         e.integration_s, e.real_attribute);
        };
        if (form == ElementForm::result || form == ElementForm::raw)
            write(CONTINUUM);
        else
            write(NARROW_CONTINUUM);
    }
};

struct ScalarRecords {
    static constexpr Layout<"(1X,I6,2I5,1X,4(E13.6,1X))"> NODE{};
    static constexpr Layout<"(1X,I6,1X,2(I5,1X),2(E13.6,1X))"> RAW_NODE{};
    static constexpr Layout<"(5(1X,I6),1X,2I5)"> CONTINUUM{};
    static constexpr Layout<"(5(1X,I6),I5,I5)"> NARROW_CONTINUUM{};
    static constexpr Layout<"(7(1X,I6))"> WIDE_CONTINUUM{};

    static void write_node(Channel& mesh_file, const NodeRecord& node) {
        NODE.write(mesh_file, node.number.value, node.codes[0], node.codes[1], node.x, node.y, node.head,
                   node.coefficient);
    }
    static void write_raw_node(Channel& file, NodeNumber number, float x, float y) {
        RAW_NODE.write(file, number.value, 0, 0, x, y);
    }
    static void write_continuum(Channel& mesh_file, const ElementRecord& e, ElementForm form) {
        const ElementWords& w = e.words;
        const auto write = [&](const auto& layout) {
            layout.write(mesh_file, e.number.value, w.corner_1.value, w.corner_2.value, w.corner_3.value,
                         w.corner_4.value, w.material.value, e.attribute);
        };
        if (form == ElementForm::result)
            write(CONTINUUM);
        else if (form == ElementForm::rewritten)
            write(WIDE_CONTINUUM);
        else
            write(NARROW_CONTINUUM);
    }
};

struct DisplacementRecords {
    static constexpr Layout<"(1X,I6,5I5,1X,2(E13.6,1X))"> NODE{};
    static constexpr Layout<"(1X,I6,1X,3(I5,1X),2(E13.6,1X))"> RAW_NODE{};
    static constexpr Layout<"(9(1X,I6),I5,2E11.4)"> CONTINUUM{};
    static constexpr Layout<"(9(1X,I6),I5,2E11.3)"> SHORT_CONTINUUM{};

    static void write_node(Channel& mesh_file, const NodeRecord& node) {
        const NodeCodes& id = node.codes;
        NODE.write(mesh_file, node.number.value, id[0], id[1], id[2], CONSTANT_CODE_X, CONSTANT_CODE_Y,
                   node.x, node.y);
    }
    static void write_raw_node(Channel& file, NodeNumber number, float x, float y) {
        RAW_NODE.write(file, number.value, 0, 0, 0, x, y);
    }
    static void write_continuum(Channel& mesh_file, const ElementRecord& e, ElementForm form) {
        const ElementWords& w = e.words;
        const auto write = [&](const auto& layout) {
            layout.write(mesh_file, e.number.value, w.corner_1.value, w.corner_2.value, w.corner_3.value,
                         w.corner_4.value, w.midside_5.value, w.midside_6.value, w.midside_7.value,
                         w.midside_8.value, w.material.value, e.thickness, e.density);
        };
        if (form == ElementForm::rewritten)
            write(SHORT_CONTINUUM);
        else
            write(CONTINUUM);
    }
};

template <class Action>
void with_records(LayoutKind kind, const Action& action) {
    if (kind == LayoutKind::coupled)
        action(CoupledRecords{});
    else if (has_node_values(kind))
        action(ScalarRecords{});
    else
        action(DisplacementRecords{});
}

std::string_view record_name(LayoutKind kind, std::int8_t type) {
    return type == ELEMENT_CONTINUUM ? kind_row(kind).continuum_record : LINE_RECORD[type - ELEMENT_BEAM];
}

template <class Number>
void require_number(const Channel& mesh_file, Number number, Number last, std::string_view what) {
    if (number.is_none() || number > last)
        mesh_file.fail_behind("expected " + std::string(what) + " number from 1 to " + to_string(last) +
                              ", found " + to_string(number));
}

}  // namespace

MeshCounts read_mesh_counts(Channel& mesh_file) {
    MeshCounts counts;
    read_free(mesh_file, "the counts line (NUMNP, NCONT, NBEAM, NTRUS)", counts.nodes,
              counts.continuum_elements, counts.beams, counts.trusses);
    if (counts.nodes < 0 || counts.nodes > HIGHEST_NODE_NUMBER)
        mesh_file.fail_behind("expected a NUMNP of 0 to 99990, found " + std::to_string(counts.nodes));
    for (const std::int8_t type : ELEMENT_TYPES)
        if (counts.of(type) < 0 || counts.of(type) > HIGHEST_ELEMENT_NUMBER)
            mesh_file.fail_behind("expected element counts of 0 to 99990, found " +
                                  std::to_string(counts.of(type)));
    return counts;
}

NodeRecord read_node_record(LayoutKind kind, Channel& mesh_file, std::int32_t field_count) {
    const KindRow& row = kind_row(kind);
    NodeRecord node;
    FreeFieldReader reader(mesh_file, row.node_record);
    reader.read(node.number.value);
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

ElementRecord two_node_element(NodeNumber from, NodeNumber to, MaterialNumber material) {
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
        read_free(mesh_file, record_name(kind, type), e.number.value, w.corner_1.value, w.corner_2.value,
                  w.material.value);
        const ElementNumber number = e.number;
        e = two_node_element(w.corner_1, w.corner_2, w.material);
        e.number = number;
        return e;
    }
    FreeFieldReader reader(mesh_file, record_name(kind, type));
    reader.read(e.number.value);
    for (NodeNumber* word : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4})
        reader.read(word->value);
    if (kind_row(kind).element_words == 8)
        for (NodeNumber* word : {&w.midside_5, &w.midside_6, &w.midside_7, &w.midside_8})
            reader.read(word->value);
    reader.read(w.material.value);
    for_each_attribute(kind, [&](const auto& attribute) { reader.read(e.*attribute.member); });
    reader.finish();
    return e;
}

void require_numbers(const Channel& mesh_file, const NodeRecord& node) {
    require_number(mesh_file, node.number, LAST_NODE, "a node");
}

void require_numbers(const Channel& mesh_file, const ElementRecord& element) {
    require_number(mesh_file, element.number, LAST_ELEMENT, "an element");
    const ElementWords& w = element.words;
    for (const NodeNumber word :
         {w.corner_1, w.corner_2, w.corner_3, w.corner_4, w.midside_5, w.midside_6, w.midside_7, w.midside_8})
        if (word > LAST_NODE)
            mesh_file.fail_behind("element " + to_string(element.number) +
                                  ": expected node numbers of at most " +
                                  std::to_string(HIGHEST_NODE_NUMBER) + ", found " + to_string(word));
}

ElementNumber read_element_number(LayoutKind kind, Channel& mesh_file, std::int8_t type) {
    ElementNumber number;
    read_free(mesh_file, record_name(kind, type), number.value);
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
    with_records(kind, [&](const auto& records) { records.write_node(mesh_file, node); });
}

void write_raw_node(LayoutKind kind, Channel& file, NodeNumber number, float x, float y) {
    with_records(kind, [&](const auto& records) { records.write_raw_node(file, number, x, y); });
}

void write_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type, const ElementRecord& e,
                          ElementForm form) {
    if (type == ELEMENT_CONTINUUM)
        with_records(kind, [&](const auto& records) { records.write_continuum(mesh_file, e, form); });
    else
        LINE_ELEMENT.write(mesh_file, e.number.value, e.words.corner_1.value, e.words.corner_2.value,
                           e.words.material.value, CONSTANT_NODE_CODE);
}

void store_element(Mesh& mesh, ElementNumber number, std::int8_t type, const ElementRecord& e) {
    ElementWords words = e.words;
    if (type == ELEMENT_CONTINUUM && kind_row(mesh.kind).element_words == 4) {
        const ElementWords& stood = mesh.words[number];
        words.midside_5 = stood.midside_5;
        words.midside_6 = stood.midside_6;
        words.midside_7 = stood.midside_7;
        words.midside_8 = stood.midside_8;
    }
    mesh.words[number] = words;
    store_attributes(mesh, number, e);
}

void copy_attributes(Mesh& mesh, ElementNumber from, ElementNumber to) {
    for_each_attribute(mesh.kind, [&](const auto& a) { (mesh.*a.column)[to] = (mesh.*a.column)[from]; });
}

ElementRecord load_element(const Mesh& mesh, ElementNumber number) {
    return {load_attributes(mesh, number), number, mesh.words[number]};
}

ElementRecord load_element_for_writing(const Mesh& mesh, ElementNumber number) {
    ElementRecord e = load_element(mesh, number);
    if (e.attribute < 0)
        e.attribute = std::abs(e.attribute) - 100;
    return e;
}

void store_node(Mesh& mesh, NodeNumber number, const NodeRecord& node) {
    mesh.codes[number] = node.codes;
    mesh.x[number] = node.x;
    mesh.y[number] = node.y;
    if (has_node_values(mesh.kind)) {
        mesh.head[number] = node.head;
        mesh.coefficient[number] = node.coefficient;
    }
}

NodeRecord load_node(const Mesh& mesh, NodeNumber number) {
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
