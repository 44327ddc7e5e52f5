#include "mesh/result_file.h"

#include "channel/free_field.h"

namespace brelan {

void COUNTNODES(ResultMesh& result) {
    for (std::int32_t n = 1; n <= MAXNP; ++n) {
        if (NACT1[n] == 1) {
            ++result.counts.NUMNP;
            result.nodes.include(n);
        }
    }
}

void COUNTELEMENTS(ResultMesh& result) {
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        if (EACT1[n] < EL_CONTINUUM)
            continue;
        result.elements.include(n);
        switch (EACT1[n]) {
            case EL_CONTINUUM:
                ++result.counts.NCONT;
                break;
            case EL_BEAM:
                ++result.counts.NBEAM;
                break;
            default:
                ++result.counts.NTRUS;
                break;
        }
    }
}

void WRITENODES(Channel& mesh, const ResultMesh& result) {
    for (std::int32_t n = result.nodes.lowest; n <= result.nodes.highest; ++n)
        if (NACT1[n] == 1)
            write_node_record(mesh, load_node(n));
}

void WRITENODES(Channel& mesh, const ResultMesh& result, float head) {
    for (std::int32_t n = result.nodes.lowest; n <= result.nodes.highest; ++n) {
        if (NACT1[n] != 1)
            continue;
        NodeRecord node = load_node(n);
        node.H = head;
        write_node_record(mesh, node);
    }
}

void WRITEELEMENTS(Channel& mesh, const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh, type);
    for (std::int32_t n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (EACT1[n] == type)
            write_element_record(mesh, type, load_element_for_writing(n));
}

void WRITECLOSING(Channel& mesh) {
    write_free(mesh, "    0");
    write_free(mesh, "    0");
}

void COPYRESULT(Channel& mesh, Channel& copy) {
    mesh.rewind();
    for (std::int32_t lines = 0; lines < MAXCOPY && !mesh.at_end(); ++lines)
        copy.write_columns(mesh.read_whole_line("a line"));
    mesh.rewind();
}

}  // namespace brelan
