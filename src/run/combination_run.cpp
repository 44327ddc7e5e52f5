#include "run/combination_run.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/run_end.h"
#include "deck/error_report.h"
#include "deck/strip_mesh.h"
#include "mesh/combine.h"
#include "mesh/result_file.h"
#include "run/channel_numbers.h"
#include "run/read_cards.h"
#include "run/trace.h"

namespace brelan {

namespace {

// The first region, between Passes 6 and 13.
void read_first_region() {
    TRACE(" Pass 6 ", 6.0F);
    Channel& mesh = channel(CH_MESH_A);
    READREGIONHEAD(mesh, REGION1);
    TRACE(" Pass 8 ", 8.0F);
    READFIRSTNODES(mesh);
    TRACE(" Pass 9 ", 9.0F);
    if (REGION1.counts.NCONT > 0) {
        TRACE(" Pass 10 ", 10.0F);
        READREGIONELEMENTS(mesh, REGION1, EL_CONTINUUM);
        TRACE(" Pass 11 ", 11.0F);
    }
    if (REGION1.counts.NBEAM > 0) {
        READREGIONELEMENTS(mesh, REGION1, EL_BEAM);
        TRACE(" Pass 12 ", 12.0F);
    }
    if (REGION1.counts.NTRUS > 0) {
        READREGIONELEMENTS(mesh, REGION1, EL_TRUSS);
        TRACE(" Pass 13 ", 13.0F);
    }
}

void read_second_region() {
    TRACE(" Pass 28 ", 28.0F);
    Channel& mesh = channel(CH_MESH_B);
    READREGIONHEAD(mesh, REGION2);
    READSECONDNODES(mesh);
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS})
        if (REGION2.counts.of(type) > 0)
            READREGIONELEMENTS(mesh, REGION2, type);
    TRACE(" Pass 29 ", 29.0F);
}

// The two lines stand in the result file, where the front end's message is taken from.
[[noreturn]] void report_collision() {
    Channel& mesh = channel(CH_WORK);
    write_free(mesh, "************* ERROR IN THE USER INPUT **************");
    write_free(mesh, " REGION A element no. duplicates REGION B element no. ");
    LISTERR(CH_WORK, 2);
    WRSTATUS(1);
    STOPRUN("100");
}

void match_nodes() {
    if (INTERFACE == 1) {
        MATCHLISTED();
        TRACE(" Pass 32 ", 32.0F);
        return;
    }
    TRACE(" Pass 30 ", 30.0F);
    const float DMIN = SMALLESTSPACING();
    TRACE(" Pass 31 ", 31.0F);
    TRACE(" Pass 32 ", 32.0F);
    MATCHNEAREST(DMIN);
}

void write_combined() {
    ResultMesh result;
    Channel& mesh = channel(CH_WORK);
    TRACE(" Pass 35 ", 35.0F);
    TRACE(" Pass 36 ", 36.0F);
    COUNTCOMBINED(result);
    TRACE(" Pass 37 ", 37.0F);
    write_mesh_head(mesh, FILEC.view(), result.counts);
    TRACE(" Pass 38 ", 38.0F);
    write_node_heading(mesh);
    WRITECOMBINEDNODES(mesh, result);
    if (result.counts.NCONT > 0) {
        TRACE(" Pass 39 ", 39.0F);
        WRITECOMBINEDELEMENTS(mesh, result, EL_CONTINUUM);
    }
    if (result.counts.NBEAM > 0) {
        TRACE(" Pass 40 ", 40.0F);
        WRITECOMBINEDELEMENTS(mesh, result, EL_BEAM);
    }
    if (result.counts.NTRUS > 0) {
        TRACE(" Pass 41 ", 41.0F);
        WRITECOMBINEDELEMENTS(mesh, result, EL_TRUSS);
    }
}

}  // namespace

void open_combination() {
    TRACE(" Pass 5G ", 5.7F);
    read_combination_cards();
    open_channel(CH_MESH_A, "FILEA.TMP", OpenStatus::work);
    open_channel(CH_MESH_B, "FILEB.TMP", OpenStatus::work);
    // The names cross: the mesh of Card 2.1-2 is the first region.
    open_channel(CH_SOURCE_A, FILEB.view(), OpenStatus::old);
    open_channel(CH_SOURCE_B, FILEA.view(), OpenStatus::old);
    open_channel(CH_WORK, FILEC.view(), OpenStatus::result);
    REGION1.name = FILEB.trimmed();
    REGION2.name = FILEA.trimmed();
    REGION1.stripped = STRIPMESH(CH_SOURCE_A, CH_MESH_A);
    REGION2.stripped = STRIPMESH(CH_SOURCE_B, CH_MESH_B);
    SCANREGION(channel(CH_MESH_A), REGION1);
    SCANREGION(channel(CH_MESH_B), REGION2);
    FIXREGIONNUMBERS();
}

void run_combination() {
    read_first_region();
    read_second_region();
    if (regions_collide())
        report_collision();
    match_nodes();
    TRACE(" Pass 33 ", 33.0F);
    MERGENODES();
    TRACE(" Pass 34 ", 34.0F);
    RENUMBERFIRST();
    write_combined();
    COPYRESULT(channel(CH_WORK), channel(CH_RESULT_COPY));
}

}  // namespace brelan
