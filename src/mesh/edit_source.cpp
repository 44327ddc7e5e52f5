#include "mesh/edit_source.h"


namespace brelan {

void SCANNODES(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    source.nodes = NumberRange{};
    mesh_file.skip_lines(2, "a heading line");
    source.counts = read_mesh_counts(mesh_file);
    mesh_file.skip_lines(2, "a heading line");
    const int start = mesh_file.lines_before();
    for (std::int32_t i = 0; i < source.counts.NUMNP; ++i)
        source.nodes.include(read_node_record(kind, mesh_file, source.stripped.NFIELDS).NODE);
    mesh_file.step_back(mesh_file.lines_before() - start);
}

NodePlaces read_node_places(LayoutKind kind, const EditSource& source, Channel& mesh_file) {
    NodePlaces places;
    const int start = mesh_file.lines_before();
    for (std::int32_t i = 0; i < source.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(kind, mesh_file, source.stripped.NFIELDS);
        places.x[node.NODE] = node.XC;
        places.y[node.NODE] = node.YC;
        places.given[node.NODE] = 1;
    }
    mesh_file.step_back(mesh_file.lines_before() - start);
    return places;
}

void SCANELEMENTS(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    source.first_continuum = 0;
    const int start = mesh_file.lines_before();
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS}) {
        NumberRange& range = source.elements[type - EL_CONTINUUM];
        range = NumberRange{};
        if (source.counts.of(type) == 0)
            continue;
        mesh_file.skip_lines(source.stripped.headings_of(type), "a heading line");
        for (std::int32_t i = 0; i < source.counts.of(type); ++i)
            range.include(read_element_number(kind, mesh_file, type));
    }
    mesh_file.step_back(mesh_file.lines_before() - start);
}

void FIXSTARTNUMBERS(EditCards& edit, const EditSource& source) {
    const auto range = [&](std::int8_t type) { return source.elements[type - EL_CONTINUUM]; };
    std::int32_t ECTOP = 0;
    if (source.counts.NCONT > 0)
        ECTOP = edit.NSNEL - range(EL_CONTINUUM).lowest + range(EL_CONTINUUM).highest;
    if (source.counts.NBEAM > 0) {
        if (edit.NSBEAM <= ECTOP)
            edit.NSBEAM = ECTOP + 1;
        ECTOP = range(EL_BEAM).highest + edit.NSBEAM - range(EL_BEAM).lowest;
    }
    if (source.counts.NTRUS > 0 && edit.NSTRUS <= ECTOP)
        edit.NSTRUS = ECTOP + 1;
}

}  // namespace brelan
