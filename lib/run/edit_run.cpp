#include "run/edit_run.h"

#include <vector>

#include "blocks/base_mesh.h"
#include "deck/strip_mesh.h"
#include "mesh/boundary_file.h"
#include "mesh/compaction.h"
#include "mesh/edit_mesh.h"
#include "mesh/edit_source.h"
#include "mesh/edit_tables.h"
#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "mesh/kinds.h"
#include "mesh/moves.h"
#include "mesh/polyline_selection.h"
#include "mesh/result_file.h"
#include "mesh/selection.h"
#include "output/group_out.h"
#include "run/group_run.h"
#include "run/run.h"
#include "run/slope_run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

namespace {

void trace_edit(Run& run) {
    switch (run.deck.edit.operation) {
        case 0:
            run.trace.pass(" Pass 5A ", 5.1F);
            break;
        case 1:
            run.trace.pass(" Pass 5B ", 5.2F);
            break;
        case 2:
            run.trace.pass(" Pass 5C ", 5.3F);
            break;
        case 3:
            run.trace.pass(" Pass 5D ", 5.4F);
            break;
        case 4:
            run.trace.pass(" Pass 5E ", 5.5F);
            break;
        case 5:
        case 6:
            run.trace.pass(" Pass 5F ", 5.6F);
            break;
        default:
            break;
    }
}

// Pass 7: the nodes on a listed polyline.
void select_on_polyline(Run& run, Channel& mesh_file, Selection& selection) {
    run.trace.pass(" Pass 7A ", 7.1F);
    run.trace.pass(" Pass 7B ", 7.2F);
    const NodePlaces places = read_node_places(run.settings.kind(), run.source, mesh_file);
    run.trace.pass(" Pass 7C-1 ", 7.31F);
    std::vector<NodeNumber> points;
    for (std::int32_t i = 1; i <= run.deck.edit.list_count; ++i)
        points.emplace_back(run.deck.edit.list[i]);
    for (const NodeNumber node : select_polyline(places, points))
        selection.nodes[node] = node;
    run.trace.pass(" Pass 7C-2 ", 7.32F);
    run.trace.pass(" Pass 7D ", 7.4F);
}

// Passes 6 to 13: the source mesh comes into the tables, edited on the way.
void load_mesh(Run& run) {
    run.trace.pass(" Pass 6 ", 6.0F);
    Channel& mesh_file = run.channels.at(CHANNEL_MESH_A);
    scan_nodes(run.settings.kind(), run.source, mesh_file);
    Selection selection = prepare_selection(run.deck.edit);
    if (run.deck.edit.operation == 1 && run.deck.edit.selection_mode == 2)
        select_on_polyline(run, mesh_file, selection);
    run.trace.pass(" Pass 8 ", 8.0F);
    edit_nodes(run.deck.edit, run.source, run.mesh, selection, mesh_file);
    std::optional<SlopeSplit> split;
    if (run.deck.edit.operation == 5)
        split = map_slope_nodes(run);
    run.trace.pass(" Pass 9 ", 9.0F);
    scan_elements(run.settings.kind(), run.source, mesh_file);
    fix_start_numbers(run.deck.edit, run.source);
    if (run.source.counts.continuum_elements > 0) {
        run.trace.pass(" Pass 10 ", 10.0F);
        edit_elements(run.deck.edit, run.source, run.mesh, selection, mesh_file, ELEMENT_CONTINUUM);
        run.trace.pass(" Pass 11 ", 11.0F);
    }
    if (run.source.counts.beams > 0) {
        edit_elements(run.deck.edit, run.source, run.mesh, selection, mesh_file, ELEMENT_BEAM);
        run.trace.pass(" Pass 12 ", 12.0F);
    }
    if (run.source.counts.trusses > 0) {
        edit_elements(run.deck.edit, run.source, run.mesh, selection, mesh_file, ELEMENT_TRUSS);
        run.trace.pass(" Pass 13 ", 13.0F);
    }
    if (run.deck.edit.operation == 5)
        finish_slope_elements(run, split);
}

// Passes 14.5 to 14.7: line-up and node moves.
void run_moves(Run& run) {
    run.moves.first_count = 0;
    run_line_up(run);
    run.trace.pass(" Pass 14.7  NMOVE = ", 14.6F, run.moves.first_count);
}

// Passes 15 to 19: the numbering closes up (IEDIT 2, 3 and 4).
void run_compaction(Run& run) {
    if (run.deck.edit.operation != 2 && run.deck.edit.operation != 3 && run.deck.edit.operation != 4)
        return;
    if (run.deck.edit.operation == 4)
        run_collapse_and_moves(run);
    // By the rules midside nodes that are no corner go, and the words that name them stay as they are.
    const bool takes_midsides = run.cut == CutMethod::sound && kind_row(run.mesh.kind).element_words == 8;
    const MidsideNodes midsides = takes_midsides ? MidsideNodes::taken : MidsideNodes::left_out;
    run.trace.pass(" Pass 15 ", 15.0F);
    const ElementNumber elements = pack_elements(run.mesh, midsides);
    run.trace.pass(" Pass 16 ", 16.0F);
    const PackedNodes nodes = pack_nodes(run.mesh, elements, midsides);
    run.trace.pass(" Pass 17 ", 17.0F);
    renumber_words(run.mesh, elements, nodes, run.deck.edit.first_node, midsides);
    if (run.deck.edit.operation == 4)
        renumber_lines(run, nodes, run.deck.edit.first_node);
    run.trace.pass(" Pass 18 ", 18.0F);
    place_nodes(run.deck.edit, run.mesh, nodes.last, run.deck.edit.first_node);
    run.trace.pass(" Pass 19 ", 19.0F);
    place_elements(run.deck.edit, run.mesh, elements, run.deck.edit.first_element);
}

bool is_grouped_head_mesh(Run& run) {
    return run.deck.edit.operation == 4 && run.settings.kind() == LayoutKind::head;
}

// The trusses of a grouped head mesh are flow lines: a solver that goes by the header stops before them.
MeshCounts header_counts(Run& run, const ResultMesh& result) {
    MeshCounts counts = result.counts;
    if (is_grouped_head_mesh(run))
        counts.trusses = 0;
    return counts;
}

// Passes 20 to 27.2: the result is written and copied.
void write_result(Run& run) {
    ResultMesh result;
    Membership membership;
    MemberCollector members(run.deck.groups);
    Channel& mesh_file = run.channels.at(CHANNEL_RESULT);
    const auto write_elements = [&](std::int8_t type) {
        if (run.deck.edit.operation == 4)
            write_group_elements(run, mesh_file, result, type, membership, members);
        else
            write_result_elements(run.mesh, mesh_file, result, type);
    };
    run.trace.pass(" Pass 20 ", 20.0F);
    count_nodes(run.mesh, result);
    run.trace.pass(" Pass 21 ", 21.0F);
    count_elements(run.mesh, result);
    if (run.deck.edit.operation == 4) {
        membership = prepare_members(run, result.elements);
        write_pipes(run.channels, run.mesh, run.listing, result);
    }
    run.trace.pass(" Pass 22.1 ", 22.1F);
    write_mesh_head(mesh_file, run.deck.names.result.view(), header_counts(run, result));
    run.trace.pass(" Pass 22.2 ", 22.2F);
    write_node_heading(run.settings.kind(), mesh_file);
    run.trace.pass(" Pass 23 ", 23.0F);
    if (is_grouped_head_mesh(run))
        write_result_nodes(run.mesh, mesh_file, result, run.deck.groups.written_head);
    else
        write_result_nodes(run.mesh, mesh_file, result);
    if (result.counts.continuum_elements > 0) {
        run.trace.pass(" Pass 24 ", 24.0F);
        write_elements(ELEMENT_CONTINUUM);
    }
    if (result.counts.beams > 0) {
        run.trace.pass(" Pass 25 ", 25.0F);
        write_elements(ELEMENT_BEAM);
    }
    if (result.counts.trusses > 0) {
        run.trace.pass(" Pass 26 ", 26.0F);
        if (run.deck.edit.operation == 4)
            write_flow_sections(run.channels, run.mesh, run.deck.groups, run.listing, result);
        write_elements(ELEMENT_TRUSS);
    }
    write_closing_lines(mesh_file);
    mesh_file.finish();
    run.trace.pass(" Pass 27.1 ", 27.1F);
    if (run.deck.edit.operation == 4)
        run.activity =
            write_group_outputs(run.channels, run.trace, run.settings, run.deck.groups, run.listing,
                                members.found(), run.units, run.deck.names.result.view(), result.counts);
    run.trace.pass(" Pass 27.2 ", 27.2F);
    copy_result(run.channels.at(CHANNEL_RESULT), run.channels.at(CHANNEL_RESULT_COPY));
}

void finish_edit(Run& run) {
    run_moves(run);
    run_compaction(run);
    write_result(run);
}

}  // namespace

void open_result_files(Run& run) {
    run.channels.open(CHANNEL_RESULT, run.deck.names.result.view(), OpenStatus::result);
    run.channels.open(CHANNEL_WORK, "TEMPO.TMP", OpenStatus::work);
}

void open_edit_files(Run& run) {
    run.channels.open(CHANNEL_MESH_A, WORKING_COPY, OpenStatus::work);
    run.channels.open(CHANNEL_SOURCE_A, run.deck.names.first.view(), OpenStatus::old);
    open_result_files(run);
    run.source.stripped =
        strip_mesh(run.channels, run.settings.kind(), CHANNEL_SOURCE_A, CHANNEL_MESH_A, run.watch);
}

void begin_edit(Run& run) {
    run.deck.require(DeckPart::edit);
    trace_edit(run);
    run.deck.require(DeckPart::operation);
}

void set_identity_edit(Run& run) {
    run.deck.edit.operation = 0;
    run.deck.edit.first_element = ElementNumber(1);
    run.deck.edit.first_node = NodeNumber(1);
    run.deck.edit.first_beam = run.deck.edit.first_truss = {};
    run.deck.edit.old_x = run.deck.edit.old_y = run.deck.edit.new_x = run.deck.edit.new_y = 0.0F;
    run.deck.edit.scale_x = run.deck.edit.scale_y = 1.0F;
}

void run_edit(Run& run) {
    load_mesh(run);
    if (run.deck.edit.operation == 4)
        run_groups(run);
    finish_edit(run);
}

void pass_on(Run& run, const BaseMesh& base) {
    run.trace.pass(" Pass 6 ", 6.0F);
    run.trace.pass(" Pass 8 ", 8.0F);
    for (const NodeRecord& node : base.nodes) {
        store_node(run.mesh, node.number, moved(run.deck.edit, node));
        run.mesh.node_in_use[node.number] = 1;
    }
    run.trace.pass(" Pass 9 ", 9.0F);
    if (!base.elements.empty())
        run.trace.pass(" Pass 10 ", 10.0F);
    for (const ElementRecord& element : base.elements) {
        store_element(run.mesh, element.number, ELEMENT_CONTINUUM, element);
        run.mesh.type_in_use[element.number] = ELEMENT_CONTINUUM;
    }
    if (!base.elements.empty())
        run.trace.pass(" Pass 11 ", 11.0F);
    finish_edit(run);
}

}  // namespace brelan
