#include "output/rewrite_mesh.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/layout.h"
#include "channel/channel_numbers.h"
#include "mesh/edition.h"
#include "channel/trace.h"

namespace brelan {

namespace {

constexpr Layout<"(9(1X,I6),I5,2I3,2I5,E11.4)"> COUPLED_CONTINUUM;
constexpr Layout<"(9(1X,I6),I5)"> SCALAR_CONTINUUM;
constexpr Layout<"(9(1X,I6),I5,2E11.3)"> DISPLACEMENT_CONTINUUM;
constexpr Layout<"(5(1X,I6))"> LINE_ELEMENT;

void copy_cut(Channel& from, Channel& to) {
    const std::string_view line = from.read_whole_line("a line of the mesh");
    to.write_line(line.substr(0, line.find_last_not_of(' ') + 1));
}

void write_continuum(LayoutKind kind, Channel& mesh_file, const ElementRecord& e) {
    const ElementWords& w = e.words;
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_CONTINUUM.write(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                    e.KS, e.KF, e.INTR, e.INTS, e.TBJWL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            // Seven values: the columns are those of a longer record that ends early.
            SCALAR_CONTINUUM.write_front(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.MATNO, e.IDH);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CONTINUUM.write(mesh_file, e.NEL, w.I1, w.I2, w.I3, w.I4, w.M5, w.M6, w.M7, w.M8, w.MATNO,
                                         e.THIC, e.DEN);
            break;
    }
}

// Beams and trusses keep their materials.
void copy_line_elements(Channel& from, Channel& to, std::int32_t count) {
    if (count == 0)
        return;
    copy_cut(from, to);
    copy_cut(from, to);
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t NEL = 0, I = 0, J = 0, MATNO = 0, NODEK = 0;
        read_free(from, "a beam or truss element record of five integers", NEL, I, J, MATNO, NODEK);
        LINE_ELEMENT.write(to, NEL, I, J, MATNO, NODEK);
    }
}

}  // namespace

void REWRITEMESH(Channels& channels, Trace& trace, const Settings& settings, std::string_view FILEM, const MeshCounts& counts, std::span<const std::int32_t> NEWMAT) {
    constexpr std::int32_t heading_lines = 7;
    trace.values(2, " Pass 27.1.4 IPROGM = ", settings.edition);
    Channel& copy = channels.open(CH_TEMP_MESH, "TEMPMESH.TMP", OpenStatus::work);
    Channel& source = channels.open(CH_RESULT, FILEM, OpenStatus::old);
    while (!source.at_end())
        copy_cut(source, copy);
    trace.values(2, " Pass 27.1.5 ");
    copy.rewind();
    Channel& mesh_file = channels.open(CH_RESULT, FILEM, OpenStatus::result);
    for (std::int32_t i = 0; i < counts.NUMNP + heading_lines; ++i)
        copy_cut(copy, mesh_file);
    trace.values(2, " Pass 27.1.6 ");
    for (std::int32_t i = 1; i <= counts.NCONT; ++i) {
        ElementRecord element = read_element_record(settings.kind(), copy, EL_CONTINUUM);
        const std::int32_t material = NEWMAT[static_cast<std::size_t>(element.NEL)];
        trace.values(2, " Pass 27.1.7 ", " I = ", i, " N = ", element.NEL,
                     " NEWMAT(I) = ", NEWMAT[static_cast<std::size_t>(i)], " NEWMAT(N) = ", material);
        if (material > 0)
            element.words.MATNO = material;
        write_continuum(settings.kind(), mesh_file, element);
    }
    trace.values(2, " Pass 27.1.8 ", " NBEAMA= ", counts.NBEAM, " NNBEAMA= ", counts.NBEAM,
                 " NTRUSA = ", counts.NTRUS);
    copy_line_elements(copy, mesh_file, counts.NBEAM);
    copy_line_elements(copy, mesh_file, counts.NTRUS);
    while (!copy.at_end())
        copy_cut(copy, mesh_file);
    channels.close(CH_TEMP_MESH);
    mesh_file.flush();
}

}  // namespace brelan
