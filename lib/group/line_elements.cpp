#include "group/line_elements.h"

#include <cstdlib>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"

namespace brelan {

namespace {

constexpr std::int32_t BEAM_LINE = 2, TRUSS_LINE = 3, TRUSS_CODE_0 = 4, TRUSS_CODE_1 = 5;  // |LTP|

void add_line_element(Mesh& mesh, Engine& engine, std::int32_t line_kind, std::int32_t line_type,
                      MaterialNumber line_material, NodeNumber from, NodeNumber to) {
    const ElementNumber e = add_element(mesh, engine);
    const std::int8_t type = line_kind == BEAM_LINE ? ELEMENT_BEAM : ELEMENT_TRUSS;
    ElementRecord element = two_node_element(from, to, line_material);
    const ElementWords stood = mesh.words[e];
    element.words.midside_5 = stood.midside_5;
    element.words.midside_6 = stood.midside_6;
    element.words.midside_7 = stood.midside_7;
    element.words.midside_8 = stood.midside_8;
    store_element(mesh, e, type, element);
    mesh.type[e] = type;
    note_element(mesh, engine, e);
    const auto mark = static_cast<std::int8_t>(engine.group % 256);
    mesh.node_mark[from] = mark;
    mesh.node_mark[to] = mark;
    if (line_type < 0)
        engine.side_sign[e] = -1;
}

// The words of one node of a line of beams or trusses, for the flow sections of the temperature and head
// kinds.
struct LineWords {
    std::int32_t line_kind;
    MaterialNumber line_material;
    std::int32_t line, count;

    void write(Mesh& mesh, NodeNumber node, std::size_t position) const {
        mesh.codes[node] = {line_kind, line_material.value, line, static_cast<std::int32_t>(position), count};
    }
};

void write_line_words(Mesh& mesh, const GroupListing& listing, std::int32_t line_kind,
                      MaterialNumber line_material, bool closed, std::span<const NodeNumber> nodes) {
    const std::int32_t line = line_kind == BEAM_LINE ? listing.pipes : listing.convection_lines;
    const std::size_t c = nodes.size();
    const std::size_t elements = closed ? c : c - 1;
    if (mesh.kind == LayoutKind::head && line_kind == TRUSS_LINE) {
        for (std::size_t i = 0; !closed && i < elements; ++i) {
            for (const NodeNumber node : {nodes[i], nodes[i + 1]}) {
                mesh.codes[node][0] = TRUSS_LINE;
                mesh.codes[node][1] = 0;
            }
        }
        return;
    }
    const auto count = static_cast<std::int32_t>(c);
    const LineWords words{line_kind, line_material, line, closed && line_kind == TRUSS_LINE ? -count : count};
    for (std::size_t i = 0; i < elements; ++i) {
        const bool closing = closed && i + 1 == elements;
        if (i == 0)
            words.write(mesh, nodes[0], 1);
        if (!closing && i + 1 < c)
            words.write(mesh, nodes[i + 1], i + 2);
    }
}

void write_node_words(Mesh& mesh, const GroupListing& listing, std::int32_t line_kind,
                      MaterialNumber line_material, bool closed, std::span<const NodeNumber> nodes) {
    if (!has_node_values(mesh.kind)) {
        // The last code is that of rotation, which a beam needs.
        const auto rotation = static_cast<std::size_t>(kind_row(mesh.kind).node_codes - 1);
        for (const NodeNumber node : nodes)
            if (line_kind == BEAM_LINE)
                mesh.codes[node][rotation] = 0;
        return;
    }
    if (line_kind == BEAM_LINE || line_kind == TRUSS_LINE) {
        write_line_words(mesh, listing, line_kind, line_material, closed, nodes);
        return;
    }
    for (const NodeNumber node : nodes) {
        mesh.codes[node][0] = line_kind == TRUSS_CODE_0 ? 0 : 1;
        mesh.codes[node][1] = line_material.value;
    }
}

}  // namespace

void add_line_elements(Mesh& mesh, Engine& engine, GroupListing& listing, std::int32_t freezes_nodes,
                       bool closed, std::int32_t line_type, MaterialNumber line_material,
                       std::span<const NodeNumber> nodes) {
    if (freezes_nodes == 1)
        for (const NodeNumber node : nodes)
            engine.frozen[node] = 1;
    const std::int32_t line_kind = std::abs(line_type);
    if (line_kind < BEAM_LINE || line_kind > TRUSS_CODE_1)
        return;
    if (line_kind == BEAM_LINE)
        ++listing.pipes;
    if (line_kind == TRUSS_LINE) {
        ++listing.convection_lines;
        if (mesh.kind == LayoutKind::head && !closed)
            ++listing.flow_sections;
    }
    const std::size_t c = nodes.size();
    const std::size_t elements = closed ? c : c - (c > 0 ? 1 : 0);
    // Closed lines of beams are walked backwards in the kinds of the mechanical solvers.
    const bool backwards = closed && line_kind == BEAM_LINE && !has_node_values(mesh.kind);
    for (std::size_t i = 0; i < elements; ++i) {
        const std::size_t from = backwards ? (c - i) % c : i;
        const std::size_t to = backwards ? c - i - 1 : (i + 1) % c;
        add_line_element(mesh, engine, line_kind, line_type, line_material, nodes[from], nodes[to]);
    }
    if (elements > 0)
        write_node_words(mesh, listing, line_kind, line_material, closed, nodes);
}

}  // namespace brelan
