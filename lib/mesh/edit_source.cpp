#include "mesh/edit_source.h"

namespace brelan {

void scan_nodes(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    source.nodes = NumberRange{};
    mesh_file.skip_lines(2, "a heading line");
    source.counts = read_mesh_counts(mesh_file);
    mesh_file.skip_lines(2, "a heading line");
    const int start = mesh_file.lines_before();
    for (std::int32_t i = 0; i < source.counts.nodes; ++i)
        source.nodes.include(read_node_record(kind, mesh_file, source.stripped.field_count).number);
    mesh_file.step_back(mesh_file.lines_before() - start);
}

NodePlaces read_node_places(LayoutKind kind, const EditSource& source, Channel& mesh_file) {
    NodePlaces places;
    const int start = mesh_file.lines_before();
    for (std::int32_t i = 0; i < source.counts.nodes; ++i) {
        const NodeRecord node = read_node_record(kind, mesh_file, source.stripped.field_count);
        places.x[node.number] = node.x;
        places.y[node.number] = node.y;
        places.given[node.number] = 1;
    }
    mesh_file.step_back(mesh_file.lines_before() - start);
    return places;
}

void scan_elements(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    source.first_continuum = 0;
    const int start = mesh_file.lines_before();
    for (const std::int8_t type : {ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS}) {
        NumberRange& range = source.elements[type - ELEMENT_CONTINUUM];
        range = NumberRange{};
        if (source.counts.of(type) == 0)
            continue;
        mesh_file.skip_lines(source.stripped.headings_of(type), "a heading line");
        for (std::int32_t i = 0; i < source.counts.of(type); ++i)
            range.include(read_element_number(kind, mesh_file, type));
    }
    mesh_file.step_back(mesh_file.lines_before() - start);
}

void fix_start_numbers(EditCards& edit, const EditSource& source) {
    const auto range = [&](std::int8_t type) { return source.elements[type - ELEMENT_CONTINUUM]; };
    std::int32_t highest = 0;
    if (source.counts.continuum_elements > 0)
        highest = edit.first_element - range(ELEMENT_CONTINUUM).lowest + range(ELEMENT_CONTINUUM).highest;
    if (source.counts.beams > 0) {
        if (edit.first_beam <= highest)
            edit.first_beam = highest + 1;
        highest = range(ELEMENT_BEAM).highest + edit.first_beam - range(ELEMENT_BEAM).lowest;
    }
    if (source.counts.trusses > 0 && edit.first_truss <= highest)
        edit.first_truss = highest + 1;
}

}  // namespace brelan
