#include "deck/strip_mesh.h"

#include "deck/card_stream.h"
#include "mesh/mesh_walk.h"
#include "text/channel_numbers.h"

namespace brelan {

namespace {

// What the first scan finds out.
struct Scan {
    MeshCounts counts;
    int node_lines = 0;  // of the node records
    std::int32_t field_count = 0;
    MeshCounts deleted;
};

Scan scan_mesh(LayoutKind kind, Channel& mesh_file, Watch& watch) {
    Scan scan;
    MeshWalk head(kind, mesh_file, {});
    scan.counts = head.head();
    StrippedMesh form;
    if (scan.counts.nodes > 0 || !mesh_file.at_end())
        form.field_count = scan.field_count = count_values(TextLine(mesh_file.peek_line())).count;
    MeshWalk walk(kind, mesh_file, form, scan.counts);
    const int first_line = mesh_file.lines_before();
    walk.each_node([&](const NodeRecord& node) {
        watch.look();
        require_numbers(mesh_file, node);
    });
    scan.node_lines = mesh_file.lines_before() - first_line;
    for (const std::int8_t type : ELEMENT_TYPES)
        walk.each_element(type, [&](const ElementRecord& element) {
            watch.look();
            if (element.number < ElementNumber{})
                ++scan.deleted.of(type);
            else
                require_numbers(mesh_file, element);
        });
    return scan;
}

// As strip_deck does, but without the blanks up to column 126: this copy is never seen.
void strip_comments(Channels& channels, int source, Channel& mesh_file, Watch& watch) {
    Channel& from = channels.at(source);
    refuse_byte_order_mark(from);
    mesh_file.follow(from);
    while (!from.at_end()) {
        watch.look();
        const std::string_view line = from.read_whole_line("a line").substr(0, LINE_COLUMNS);
        if (line.empty() || line.front() != '*')
            mesh_file.write_line(line);
    }
    channels.close(source);
    mesh_file.rewind();
}

void copy_lines(Channel& from, Channel& to, int count) {
    for (int i = 0; i < count; ++i)
        to.write_columns(from.read_whole_line("a line"));
}

}  // namespace

StrippedMesh strip_mesh(Channels& channels, LayoutKind kind, int source, int target, Watch& watch) {
    Channel& mesh_file = channels.open(CHANNEL_STRIP, "TT123.TMP", OpenStatus::scratch);
    strip_comments(channels, source, mesh_file, watch);
    const Scan scan = scan_mesh(kind, mesh_file, watch);

    Channel& clean = channels.at(target);
    clean.follow(mesh_file);
    mesh_file.rewind();
    copy_lines(mesh_file, clean, 2);
    const MeshCounts counts = read_mesh_counts(mesh_file);
    write_mesh_counts(clean, {counts.nodes, counts.continuum_elements - scan.deleted.continuum_elements,
                              counts.beams - scan.deleted.beams, counts.trusses - scan.deleted.trusses});
    copy_lines(mesh_file, clean, 2 + scan.node_lines);

    StrippedMesh stripped;
    stripped.field_count = scan.field_count;
    int heading_lines = 2;
    for (const std::int8_t type : ELEMENT_TYPES) {
        const std::int32_t records = counts.of(type);
        stripped.heading_lines[type - ELEMENT_CONTINUUM] = heading_lines;
        if (records == 0)
            continue;
        copy_lines(mesh_file, clean, 2);
        for (std::int32_t i = 0; i < records; ++i) {
            watch.look();
            const ElementRecord element = read_element_record(kind, mesh_file, type);
            if (element.number >= ElementNumber{})
                write_element_record(kind, clean, type, element);
        }
        // The headings of a section that lost all its records stand in front of the next one's.
        heading_lines = scan.deleted.of(type) == records ? heading_lines + 2 : 2;
    }
    channels.close(CHANNEL_STRIP, CloseAction::remove);
    clean.rewind();
    return stripped;
}

}  // namespace brelan
