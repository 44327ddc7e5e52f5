#include "blocks/base_file.h"

#include <cmath>
#include <string>

#include "mesh/kinds.h"
#include "mesh/result_file.h"
#include "text/as_written.h"
#include "text/free_field.h"
#include "text/layout.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr Layout<"(' PROGRAM DIMENSION =  ',A10)"> PROGRAM_LINE;
constexpr Layout<"('REQUIRED DIMENSION =  ',A10)"> REQUIRED_LINE;

constexpr Layout<"(A60)"> TITLE_LINE;
constexpr Layout<"(1X,4(I5,3X))"> COUNTS_LINE;

constexpr std::size_t WIDEST_NODE_NUMBER = 999999;  // in "Coord.dat"

// A field of ten columns; asterisks where the number is wider.
std::string ten_columns(std::int64_t number) {
    const std::string digits = std::to_string(number);
    return digits.size() > 10 ? std::string(10, '*') : std::string(10 - digits.size(), ' ') + digits;
}

}  // namespace

void write_raw_nodes(LayoutKind kind, const RawMesh& raw, Channel& coordinates) {
    for (NodeNumber n{1}; n < raw.first_node; ++n)
        write_raw_node(kind, coordinates, {}, 0.0F, 0.0F);
    NodeNumber number = raw.first_node;
    for (const RawNode& node : raw.nodes) {
        write_raw_node(kind, coordinates, number, node.x, node.y);
        ++number;
    }
}

void write_raw_elements(LayoutKind kind, const RawMesh& raw, Channel& index) {
    for (ElementNumber n{1}; n < raw.first_element; ++n)
        write_element_record(kind, index, ELEMENT_CONTINUUM, {}, ElementForm::raw);
    for (const ElementRecord& element : raw.elements)
        write_element_record(kind, index, ELEMENT_CONTINUUM, element, ElementForm::raw);
}

void refuse_unwritable(const RawMesh& raw) {
    std::size_t number = raw.first_node.place();
    for (const RawNode& node : raw.nodes) {
        const bool wide = number > WIDEST_NODE_NUMBER;
        if (wide || !std::isfinite(node.x) || !std::isfinite(node.y))
            fail("Coord.dat, line " + std::to_string(number) + ": expected " +
                 (wide ? "an integer" : "a number") + " in a raw node line, found \"" +
                 std::string(wide ? 6 : 13, '*') + "\"");
        ++number;
    }
}

void write_work_space(std::int64_t required, Channel& coordinates) {
    PROGRAM_LINE.write(coordinates, ten_columns(WORK_SPACE));
    REQUIRED_LINE.write(coordinates, ten_columns(required));
}

bool round_as_file(BaseMesh& mesh) {
    if (mesh.nodes.size() > HIGHEST_NODE_NUMBER || mesh.elements.size() > HIGHEST_ELEMENT_NUMBER)
        return false;
    bool readable = true;
    for (NodeRecord& node : mesh.nodes)
        for (float* value : {&node.x, &node.y, &node.head, &node.coefficient}) {
            *value = as_written<"(E13.6)">(*value);
            readable = readable && std::isfinite(*value);
        }
    return readable;
}

void write_base_file(LayoutKind kind, const BaseMesh& mesh, Channel& base) {
    TITLE_LINE.write(base, mesh.title);
    write_free(base, " NUMNP   NCONT   NBEAM   NTRUS ");
    COUNTS_LINE.write(base, static_cast<std::int32_t>(mesh.nodes.size()),
                      static_cast<std::int32_t>(mesh.elements.size()), 0, 0);
    write_free(base, "   NODAL COORDINATES ");
    base.write_line(kind_row(kind).base_node_heading);
    for (const NodeRecord& node : mesh.nodes)
        write_node_record(kind, base, node);
    write_free(base, "   ELEMENT INDEX ");
    base.write_line(kind_row(kind).base_element_heading);
    for (const ElementRecord& element : mesh.elements)
        write_element_record(kind, base, ELEMENT_CONTINUUM, element, ElementForm::base);
    write_closing_lines(base);
}

}  // namespace brelan
