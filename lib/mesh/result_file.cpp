#include "mesh/result_file.h"

#include "text/free_field.h"

namespace brelan {

void count_nodes(const Mesh& mesh, ResultMesh& result) {
    for (NodeNumber n{1}; n <= LAST_NODE; ++n) {
        if (mesh.node_in_use[n] == 1) {
            ++result.counts.nodes;
            result.nodes.include(n);
        }
    }
}

void count_elements(const Mesh& mesh, ResultMesh& result) {
    for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n) {
        if (mesh.type_in_use[n] < ELEMENT_CONTINUUM)
            continue;
        result.elements.include(n);
        ++result.counts.of(mesh.type_in_use[n]);
    }
}

void write_result_nodes(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result) {
    for (NodeNumber n = result.nodes.lowest; n <= result.nodes.highest; ++n)
        if (mesh.node_in_use[n] == 1)
            write_node_record(mesh.kind, mesh_file, load_node(mesh, n));
}

void write_result_nodes(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result, float head) {
    for (NodeNumber n = result.nodes.lowest; n <= result.nodes.highest; ++n) {
        if (mesh.node_in_use[n] != 1)
            continue;
        NodeRecord node = load_node(mesh, n);
        node.head = head;
        write_node_record(mesh.kind, mesh_file, node);
    }
}

void write_result_elements(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh.kind, mesh_file, type);
    for (ElementNumber n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (mesh.type_in_use[n] == type)
            write_element_record(mesh.kind, mesh_file, type, load_element_for_writing(mesh, n));
}

void write_closing_lines(Channel& mesh_file) {
    write_free(mesh_file, "    0");
    write_free(mesh_file, "    0");
}

void copy_result(Channel& mesh_file, Channel& copy) {
    mesh_file.rewind();
    for (std::int32_t lines = 0; lines < MOST_COPIED_LINES && !mesh_file.at_end(); ++lines)
        copy.write_columns(mesh_file.read_whole_line("a line"));
    mesh_file.rewind();
}

}  // namespace brelan
