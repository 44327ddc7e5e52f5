#include "run/combination_run.h"

#include "deck/error_report.h"
#include "deck/strip_mesh.h"
#include "mesh/combine.h"
#include "mesh/result_file.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/run_end.h"
#include "text/trace.h"

namespace brelan {

namespace {

// The first region, between Passes 6 and 13.
RegionTables read_first_region(Run& run) {
    RegionTables first;
    run.trace.pass(" Pass 6 ", 6.0F);
    Channel& mesh_file = run.channels.at(CHANNEL_MESH_A);
    Region& region = run.combination.first;
    read_region_head(run.settings.kind(), mesh_file, region);
    run.trace.pass(" Pass 8 ", 8.0F);
    read_first_nodes(run.combination, run.mesh, first, mesh_file);
    run.trace.pass(" Pass 9 ", 9.0F);
    if (region.counts.continuum_elements > 0) {
        run.trace.pass(" Pass 10 ", 10.0F);
        read_region_elements(run.mesh, first.type_in_use, mesh_file, region, ELEMENT_CONTINUUM);
        run.trace.pass(" Pass 11 ", 11.0F);
    }
    if (region.counts.beams > 0) {
        read_region_elements(run.mesh, first.type_in_use, mesh_file, region, ELEMENT_BEAM);
        run.trace.pass(" Pass 12 ", 12.0F);
    }
    if (region.counts.trusses > 0) {
        read_region_elements(run.mesh, first.type_in_use, mesh_file, region, ELEMENT_TRUSS);
        run.trace.pass(" Pass 13 ", 13.0F);
    }
    return first;
}

void read_second_region(Run& run) {
    run.trace.pass(" Pass 28 ", 28.0F);
    Channel& mesh_file = run.channels.at(CHANNEL_MESH_B);
    read_region_head(run.settings.kind(), mesh_file, run.combination.second);
    read_second_nodes(run.combination, run.mesh, mesh_file);
    for (const std::int8_t type : ELEMENT_TYPES)
        read_region_elements(run.mesh, run.mesh.type_in_use, mesh_file, run.combination.second, type);
    run.trace.pass(" Pass 29 ", 29.0F);
}

// The two lines stand in the result file, where the front end's message is taken from.
[[noreturn]] void report_collision(Run& run) {
    Channel& mesh_file = run.channels.at(CHANNEL_WORK);
    write_free(mesh_file, "************* ERROR IN THE USER INPUT **************");
    write_free(mesh_file, " REGION A element no. duplicates REGION B element no. ");
    show_last_lines(run.channels, run.console, CHANNEL_WORK, 2);
    write_status(run.channels, 1);
    stop_run("100");
}

NodeNumbers match_nodes(Run& run, const RegionTables& first) {
    if (run.deck.combination.interface_rule == 1) {
        NodeNumbers matches = match_listed_nodes(run.deck.combination, run.mesh, first);
        run.trace.pass(" Pass 32 ", 32.0F);
        return matches;
    }
    run.trace.pass(" Pass 30 ", 30.0F);
    const float spacing = smallest_spacing(run.combination, run.mesh, first);
    run.trace.pass(" Pass 31 ", 31.0F);
    run.trace.pass(" Pass 32 ", 32.0F);
    return match_nearest_nodes(run.combination, run.mesh, first, spacing);
}

void write_combined(Run& run, const RegionTables& first) {
    Channel& mesh_file = run.channels.at(CHANNEL_WORK);
    run.trace.pass(" Pass 35 ", 35.0F);
    run.trace.pass(" Pass 36 ", 36.0F);
    const ResultMesh result = count_combined(run.mesh, first);
    run.trace.pass(" Pass 37 ", 37.0F);
    write_mesh_head(mesh_file, run.deck.names.result.view(), result.counts);
    run.trace.pass(" Pass 38 ", 38.0F);
    write_node_heading(run.settings.kind(), mesh_file);
    write_result_nodes(run.mesh, mesh_file, result);
    if (result.counts.continuum_elements > 0) {
        run.trace.pass(" Pass 39 ", 39.0F);
        write_combined_elements(run.mesh, first, mesh_file, result, ELEMENT_CONTINUUM);
    }
    if (result.counts.beams > 0) {
        run.trace.pass(" Pass 40 ", 40.0F);
        write_combined_elements(run.mesh, first, mesh_file, result, ELEMENT_BEAM);
    }
    if (result.counts.trusses > 0) {
        run.trace.pass(" Pass 41 ", 41.0F);
        write_combined_elements(run.mesh, first, mesh_file, result, ELEMENT_TRUSS);
    }
    mesh_file.finish();
}

}  // namespace

void open_combination(Run& run) {
    run.trace.pass(" Pass 5G ", 5.7F);
    run.deck.require(DeckPart::combination);
    run.channels.open(CHANNEL_MESH_A, "FILEA.TMP", OpenStatus::work);
    run.channels.open(CHANNEL_MESH_B, "FILEB.TMP", OpenStatus::work);
    // The names cross: the mesh of Card 2.1-2 is the first region.
    run.channels.open(CHANNEL_SOURCE_A, run.deck.names.second.view(), OpenStatus::old);
    run.channels.open(CHANNEL_SOURCE_B, run.deck.names.first.view(), OpenStatus::old);
    run.channels.open(CHANNEL_WORK, run.deck.names.result.view(), OpenStatus::result);
    run.combination.first.name = run.deck.names.second.trimmed();
    run.combination.second.name = run.deck.names.first.trimmed();
    run.combination.first.stripped =
        strip_mesh(run.channels, run.settings.kind(), CHANNEL_SOURCE_A, CHANNEL_MESH_A, run.watch);
    run.combination.second.stripped =
        strip_mesh(run.channels, run.settings.kind(), CHANNEL_SOURCE_B, CHANNEL_MESH_B, run.watch);
    scan_region(run.settings.kind(), run.channels.at(CHANNEL_MESH_A), run.combination.first);
    scan_region(run.settings.kind(), run.channels.at(CHANNEL_MESH_B), run.combination.second);
    fix_region_numbers(run.combination);
}

void run_combination(Run& run) {
    const RegionTables first = read_first_region(run);
    read_second_region(run);
    if (regions_collide(run.combination))
        report_collision(run);
    const NodeNumbers matches = match_nodes(run, first);
    run.trace.pass(" Pass 33 ", 33.0F);
    const NodeNumbers new_numbers = merge_nodes(run.combination, run.mesh, first, matches);
    run.trace.pass(" Pass 34 ", 34.0F);
    renumber_first_elements(run.combination, run.mesh, first, new_numbers);
    write_combined(run, first);
    copy_result(run.channels.at(CHANNEL_WORK), run.channels.at(CHANNEL_RESULT_COPY));
}

}  // namespace brelan
