#include "output/rewrite_mesh.h"

#include "mesh/edition.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/trace.h"

namespace brelan {

namespace {

void copy_cut(Channel& from, Channel& to) {
    const std::string_view line = from.read_whole_line("a line of the mesh");
    to.write_line(line.substr(0, line.find_last_not_of(' ') + 1));
}

// Beams and trusses keep their materials.
void copy_line_elements(LayoutKind kind, Channel& from, Channel& to, std::int8_t type, std::int32_t count) {
    if (count == 0)
        return;
    copy_cut(from, to);
    copy_cut(from, to);
    for (std::int32_t i = 0; i < count; ++i) {
        ElementNumber number;
        NodeNumber first, second;
        MaterialNumber material;
        std::int32_t node_code = 0;
        read_free(from, "a beam or truss element record of five integers", number.value, first.value,
                  second.value, material.value, node_code);
        ElementRecord element = two_node_element(first, second, material);
        element.number = number;
        write_element_record(kind, to, type, element);
    }
}

}  // namespace

void rewrite_mesh(Channels& channels, Trace& trace, const Settings& settings, std::string_view result_name,
                  const MeshCounts& counts, std::span<const MaterialNumber> new_material) {
    constexpr std::int32_t heading_lines = 7;
    trace.values(2, " Pass 27.1.4 IPROGM = ", settings.edition);
    Channel& copy = channels.open(CHANNEL_MESH_COPY, "TEMPMESH.TMP", OpenStatus::work);
    Channel& source = channels.open(CHANNEL_RESULT, result_name, OpenStatus::old);
    while (!source.at_end())
        copy_cut(source, copy);
    trace.values(2, " Pass 27.1.5 ");
    copy.rewind();
    Channel& mesh_file = channels.open(CHANNEL_RESULT, result_name, OpenStatus::result);
    for (std::int32_t i = 0; i < counts.nodes + heading_lines; ++i)
        copy_cut(copy, mesh_file);
    trace.values(2, " Pass 27.1.6 ");
    for (std::int32_t i = 1; i <= counts.continuum_elements; ++i) {
        ElementRecord element = read_element_record(settings.kind(), copy, ELEMENT_CONTINUUM);
        const MaterialNumber material = new_material[element.number.place()];
        trace.values(2, " Pass 27.1.7 ", " I = ", i, " N = ", element.number.value,
                     " NEWMAT(I) = ", new_material[static_cast<std::size_t>(i)].value,
                     " NEWMAT(N) = ", material.value);
        if (material.names_one())
            element.words.material = material;
        write_element_record(settings.kind(), mesh_file, ELEMENT_CONTINUUM, element, ElementForm::rewritten);
    }
    trace.values(2, " Pass 27.1.8 ", " NBEAMA= ", counts.beams, " NNBEAMA= ", counts.beams,
                 " NTRUSA = ", counts.trusses);
    copy_line_elements(settings.kind(), copy, mesh_file, ELEMENT_BEAM, counts.beams);
    copy_line_elements(settings.kind(), copy, mesh_file, ELEMENT_TRUSS, counts.trusses);
    while (!copy.at_end())
        copy_cut(copy, mesh_file);
    channels.close(CHANNEL_MESH_COPY);
    mesh_file.finish();
}

}  // namespace brelan
