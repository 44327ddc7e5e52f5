#include "run/edit_run.h"

#include "channel/channels.h"
#include "deck/strip_mesh.h"
#include "group/tables.h"
#include "mesh/boundary_file.h"
#include "mesh/compaction.h"
#include "mesh/edit_mesh.h"
#include "mesh/edit_source.h"
#include "mesh/edit_tables.h"
#include "mesh/moves.h"
#include "mesh/result_file.h"
#include "mesh/selection.h"
#include "output/group_out.h"
#include "run/channel_numbers.h"
#include "run/group_run.h"
#include "run/read_cards.h"
#include "run/settings.h"
#include "run/slope_run.h"
#include "run/trace.h"

namespace brelan {

namespace {

void trace_edit() {
    switch (EDIT.IEDIT) {
        case 0:
            TRACE(" Pass 5A ", 5.1F);
            break;
        case 1:
            TRACE(" Pass 5B ", 5.2F);
            break;
        case 2:
            TRACE(" Pass 5C ", 5.3F);
            break;
        case 3:
            TRACE(" Pass 5D ", 5.4F);
            break;
        case 4:
            TRACE(" Pass 5E ", 5.5F);
            break;
        case 5:
        case 6:
            TRACE(" Pass 5F ", 5.6F);
            break;
        default:
            break;
    }
}

// Pass 7: the nodes on a listed polyline.
void select_on_polyline(Channel& mesh) {
    TRACE(" Pass 7A ", 7.1F);
    SELECTNODES(mesh, [](int step) {
        if (step == 1)
            TRACE(" Pass 7B ", 7.2F);
        else if (step == 2)
            TRACE(" Pass 7C-1 ", 7.31F);
        else
            TRACE(" Pass 7C-2 ", 7.32F);
    });
    TRACE(" Pass 7D ", 7.4F);
}

// Passes 6 to 13: the source mesh comes into the tables, edited on the way.
void load_mesh() {
    TRACE(" Pass 6 ", 6.0F);
    Channel& mesh = channel(CH_MESH_A);
    SCANNODES(mesh);
    PREPARESELECTION();
    if (EDIT.IEDIT == 1 && EDIT.ILOC == 2)
        select_on_polyline(mesh);
    TRACE(" Pass 8 ", 8.0F);
    EDITNODES(mesh);
    if (EDIT.IEDIT == 5)
        map_slope_nodes();
    TRACE(" Pass 9 ", 9.0F);
    SCANELEMENTS(mesh);
    FIXSTARTNUMBERS();
    if (SOURCE.counts.NCONT > 0) {
        TRACE(" Pass 10 ", 10.0F);
        EDITELEMENTS(mesh, EL_CONTINUUM);
        TRACE(" Pass 11 ", 11.0F);
    }
    if (SOURCE.counts.NBEAM > 0) {
        EDITELEMENTS(mesh, EL_BEAM);
        TRACE(" Pass 12 ", 12.0F);
    }
    if (SOURCE.counts.NTRUS > 0) {
        EDITELEMENTS(mesh, EL_TRUSS);
        TRACE(" Pass 13 ", 13.0F);
    }
    if (EDIT.IEDIT == 5)
        finish_slope_elements();
}

// Passes 14.5 to 14.7: line-up and node moves.
void run_moves() {
    NMOVE = 0;
    run_line_up();
    TRACE(" Pass 14.7  NMOVE = ", 14.6F, NMOVE);
}

// Passes 15 to 19: the numbering closes up (IEDIT 2, 3 and 4).
void run_compaction() {
    if (EDIT.IEDIT != 2 && EDIT.IEDIT != 3 && EDIT.IEDIT != 4)
        return;
    if (EDIT.IEDIT == 4)
        run_collapse_and_moves();
    TRACE(" Pass 15 ", 15.0F);
    const std::int32_t NE = PACKELEMENTS();
    TRACE(" Pass 16 ", 16.0F);
    const std::int32_t NN = PACKNODES();
    TRACE(" Pass 17 ", 17.0F);
    RENUMBERCORNERS(NE, EDIT.NSNODE);
    if (EDIT.IEDIT == 4)
        renumber_lines(EDIT.NSNODE);
    TRACE(" Pass 18 ", 18.0F);
    PLACENODES(NN, EDIT.NSNODE);
    TRACE(" Pass 19 ", 19.0F);
    PLACEELEMENTS(NE, EDIT.NSNEL);
}

bool is_grouped_head_mesh() {
    return EDIT.IEDIT == 4 && KIND() == LayoutKind::head;
}

// The trusses of a grouped head mesh are flow lines: a solver that goes by the header stops before them.
MeshCounts header_counts(const ResultMesh& result) {
    MeshCounts counts = result.counts;
    if (is_grouped_head_mesh())
        counts.NTRUS = 0;
    return counts;
}

void write_elements(Channel& mesh, const ResultMesh& result, std::int8_t type) {
    if (EDIT.IEDIT == 4)
        write_group_elements(mesh, result, type);
    else
        WRITEELEMENTS(mesh, result, type);
}

// Passes 20 to 27.2: the result is written and copied.
void write_result() {
    ResultMesh result;
    Channel& mesh = channel(CH_RESULT);
    TRACE(" Pass 20 ", 20.0F);
    COUNTNODES(result);
    TRACE(" Pass 21 ", 21.0F);
    COUNTELEMENTS(result);
    if (EDIT.IEDIT == 4) {
        prepare_members(result.elements);
        WRITEPIPES(result);
    }
    TRACE(" Pass 22.1 ", 22.1F);
    write_mesh_head(mesh, FILEM.view(), header_counts(result));
    TRACE(" Pass 22.2 ", 22.2F);
    write_node_heading(mesh);
    TRACE(" Pass 23 ", 23.0F);
    if (is_grouped_head_mesh())
        WRITENODES(mesh, result, Hi);
    else
        WRITENODES(mesh, result);
    if (result.counts.NCONT > 0) {
        TRACE(" Pass 24 ", 24.0F);
        write_elements(mesh, result, EL_CONTINUUM);
    }
    if (result.counts.NBEAM > 0) {
        TRACE(" Pass 25 ", 25.0F);
        write_elements(mesh, result, EL_BEAM);
    }
    if (result.counts.NTRUS > 0) {
        TRACE(" Pass 26 ", 26.0F);
        if (EDIT.IEDIT == 4)
            WRITEFLOWSECTIONS(result);
        write_elements(mesh, result, EL_TRUSS);
    }
    WRITECLOSING(mesh);
    TRACE(" Pass 27.1 ", 27.1F);
    if (EDIT.IEDIT == 4)
        GROUPOUT(FILEM.view(), result.counts);
    TRACE(" Pass 27.2 ", 27.2F);
    COPYRESULT(channel(CH_RESULT), channel(CH_RESULT_COPY));
}

}  // namespace

void open_edit_files() {
    open_channel(CH_MESH_A, "FILEA.TMP", OpenStatus::work);
    open_channel(CH_SOURCE_A, FILEA.view(), OpenStatus::old);
    open_channel(CH_RESULT, FILEM.view(), OpenStatus::result);
    open_channel(CH_WORK, "TEMPO.TMP", OpenStatus::work);
    SOURCE.stripped = STRIPMESH(CH_SOURCE_A, CH_MESH_A);
}

void read_edit() {
    read_edit_cards();
    trace_edit();
    read_edit_group();
}

void set_identity_edit() {
    EDIT.IEDIT = 0;
    EDIT.NSNEL = EDIT.NSNODE = 1;
    EDIT.NSBEAM = EDIT.NSTRUS = 0;
    EDIT.XO = EDIT.YO = EDIT.XN = EDIT.YN = 0.0F;
    EDIT.SCX = EDIT.SCY = 1.0F;
}

void run_edit() {
    load_mesh();
    if (EDIT.IEDIT == 4)
        run_groups();
    run_moves();
    run_compaction();
    write_result();
}

}  // namespace brelan
