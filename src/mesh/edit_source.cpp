#include "mesh/edit_source.h"

#include <span>

#include "mesh/edit_tables.h"
#include "mesh/polyline_selection.h"

namespace brelan {

void SCANNODES(Channel& mesh) {
    SOURCE.nodes = NumberRange{};
    mesh.skip_lines(2, "a heading line");
    SOURCE.counts = read_mesh_counts(mesh);
    mesh.skip_lines(2, "a heading line");
    const int start = mesh.lines_before();
    for (std::int32_t i = 0; i < SOURCE.counts.NUMNP; ++i)
        SOURCE.nodes.include(read_node_record(mesh, SOURCE.stripped.NFIELDS).NODE);
    mesh.step_back(mesh.lines_before() - start);
}

void SELECTNODES(Channel& mesh, void (*traced)(int step)) {
    traced(1);
    const int start = mesh.lines_before();
    for (std::int32_t i = 0; i < SOURCE.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(mesh, SOURCE.stripped.NFIELDS);
        XC1[node.NODE] = node.XC;
        YC1[node.NODE] = node.YC;
        NACT1[node.NODE] = 1;
    }
    mesh.step_back(mesh.lines_before() - start);
    traced(2);
    if (EDIT.NSEL > 0)
        SELECTPOLYLINE(std::span<const std::int32_t>(&EDIT.LIST[1], static_cast<std::size_t>(EDIT.NSEL)));
    traced(3);
    NACT1.fill(0);
}

void SCANELEMENTS(Channel& mesh) {
    SOURCE.first_continuum = 0;
    const int start = mesh.lines_before();
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS}) {
        NumberRange& range = SOURCE.elements[type - EL_CONTINUUM];
        range = NumberRange{};
        if (SOURCE.counts.of(type) == 0)
            continue;
        mesh.skip_lines(SOURCE.stripped.headings_of(type), "a heading line");
        for (std::int32_t i = 0; i < SOURCE.counts.of(type); ++i)
            range.include(read_element_number(mesh, type));
    }
    mesh.step_back(mesh.lines_before() - start);
}

void FIXSTARTNUMBERS() {
    const auto range = [](std::int8_t type) { return SOURCE.elements[type - EL_CONTINUUM]; };
    std::int32_t ECTOP = 0;
    if (SOURCE.counts.NCONT > 0)
        ECTOP = EDIT.NSNEL - range(EL_CONTINUUM).lowest + range(EL_CONTINUUM).highest;
    if (SOURCE.counts.NBEAM > 0) {
        if (EDIT.NSBEAM <= ECTOP)
            EDIT.NSBEAM = ECTOP + 1;
        ECTOP = range(EL_BEAM).highest + EDIT.NSBEAM - range(EL_BEAM).lowest;
    }
    if (SOURCE.counts.NTRUS > 0 && EDIT.NSTRUS <= ECTOP)
        EDIT.NSTRUS = ECTOP + 1;
}

}  // namespace brelan
