#include "mesh/edit_source.h"

namespace brelan {

void scan_nodes(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    MeshWalk walk(kind, mesh_file, source.stripped);
    source.counts = walk.head();
    source.nodes = walk.node_numbers();
}

NodePlaces read_node_places(LayoutKind kind, const EditSource& source, Channel& mesh_file) {
    NodePlaces places;
    MeshWalk walk(kind, mesh_file, source.stripped, source.counts);
    walk.look_ahead([&] {
        walk.each_node([&](const NodeRecord& node) {
            places.x[node.number] = node.x;
            places.y[node.number] = node.y;
            places.given[node.number] = 1;
        });
    });
    return places;
}

void scan_elements(LayoutKind kind, EditSource& source, Channel& mesh_file) {
    source.first_continuum = {};
    MeshWalk walk(kind, mesh_file, source.stripped, source.counts);
    walk.look_ahead([&] {
        for (const std::int8_t type : ELEMENT_TYPES)
            source.elements[type - ELEMENT_CONTINUUM] = walk.element_numbers(type);
    });
}

void fix_start_numbers(EditCards& edit, const EditSource& source) {
    const auto range = [&](std::int8_t type) { return source.elements[type - ELEMENT_CONTINUUM]; };
    ElementNumber highest;
    if (source.counts.continuum_elements > 0)
        highest = edit.first_element + (range(ELEMENT_CONTINUUM).highest - range(ELEMENT_CONTINUUM).lowest);
    if (source.counts.beams > 0) {
        if (edit.first_beam <= highest)
            edit.first_beam = highest + 1;
        highest = edit.first_beam + (range(ELEMENT_BEAM).highest - range(ELEMENT_BEAM).lowest);
    }
    if (source.counts.trusses > 0 && edit.first_truss <= highest)
        edit.first_truss = highest + 1;
}

}  // namespace brelan
