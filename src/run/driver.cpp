#include "run/driver.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/run_end.h"
#include "dam/dam_deck.h"
#include "deck/deck_checker.h"
#include "deck/deck_tables.h"
#include "deck/error_report.h"
#include "group/tables.h"
#include "mesh/combine_tables.h"
#include "mesh/tables.h"
#include "run/base_mesh_run.h"
#include "run/channel_numbers.h"
#include "run/combination_run.h"
#include "run/edit_run.h"
#include "run/read_cards.h"
#include "run/slope_run.h"
#include "run/start_up.h"
#include "run/trace.h"

namespace brelan {

namespace {

constexpr std::string_view NORMALISED_DECK = "BRELAN.TMP";

// Meshes that the decks of an earth dam leave to each other.
constexpr std::string_view SHELL_FILES[] = {"..\\Shell_Left.Mes", "..\\Shell_Right.Mes", "..\\Dam_Shell.Mes",
                                            "..\\EarthDam.Meg", "..\\EarthDam.Mes"};

void CLEANSHELL() {
    for (const std::string_view name : SHELL_FILES) {
        if (!FILE_EXISTS(name))
            continue;
        open_channel(CH_DELETE, name, OpenStatus::old);
        close_channel(CH_DELETE, CloseAction::remove);
    }
}

void open_result_copy() {
    open_channel(CH_RESULT_COPY, "MeshFile.Mes", OpenStatus::work).set_write_only(true);
}

void run_mode_0() {
    open_combination();
    open_result_copy();
    run_combination();
}

void run_mode_1() {
    // With IEDIT 5 the deck names no FILEA: MODEL has chosen a slope template.
    FILEA = LOOKEDIT == 5 ? slope_template() : read_file_name();
    FILEM = read_file_name();
    open_edit_files();
    read_edit();
    open_result_copy();
    run_edit();
    FILEA = FILEM;
}

// A base mesh that no edit follows is passed on unchanged.
void run_base_mesh_alone() {
    RESETMESH();
    FILEA = TextLine("..\\Bmesh.dat");
    FILEM = TextLine("Basic.Tmp");
    open_edit_files();
    set_identity_edit();
    TRACE(" Pass 4C ", 4.3F);
    open_result_copy();
    run_edit();
    FILEA = FILEM;
}

// A mode that no cards belong to: the passes begin, and find no mesh.
[[noreturn]] void run_unknown_mode(std::int32_t mode) {
    open_result_copy();
    TRACE(" Pass 6 ", 6.0F);
    Channel& deck = channel(CH_DECK);
    deck.rewind();
    deck.fail_here("expected an IMOD of -1 to 3 on Card 1.1, found " + std::to_string(mode) +
                   ": no mesh is open");
}

void end_deck() {
    for (const int number : {CH_DECK, CH_DATA, CH_MESH_A, CH_MESH_B, CH_WORK, CH_RESULT_COPY, CH_SOURCE_A,
                             CH_SOURCE_B, CH_GROUP, CH_RESULT})
        close_channel(number);
}

void run_deck() {
    NGRP = 0;
    DECKNAME = DECKLIST[DECKNO];
    DECKCHK(DECKNAME, NORMALISED_DECK, DAMDECK);
    Channel& deck = open_channel(CH_DECK, NORMALISED_DECK, OpenStatus::old);
    deck.set_origin(DECKORIGIN);
    std::int32_t IMOD = 0;
    std::int32_t JK = 0;
    read_free(deck, "Card 1.1 (IMOD, JK)", IMOD, JK);
    KEEPDUP = IMOD == -1;
    if (KEEPDUP)
        IMOD = 0;
    TRACE(" Pass 3 ...", 3.0F);
    if (IMOD == 2) {
        IMOD = 1;
        if (run_base_mesh() == 0) {
            run_base_mesh_alone();
            end_deck();
            return;
        }
    }
    RESETMESH();
    TRACE(" Pass 4D ", 4.4F);
    if (IMOD == 0) {
        run_mode_0();
    } else if (IMOD == 1) {
        run_mode_1();
    } else {
        run_unknown_mode(IMOD);
    }
    end_deck();
}

}  // namespace

void RUN() {
    STARTUP();
    DECKCOUNT = 1;
    DECKLIST[1] = DECKNAME;
    for (DECKNO = 1; DECKNO <= DECKCOUNT; ++DECKNO)
        run_deck();
    if (DECKCOUNT > 1)
        CLEANSHELL();
    WRSTATUS(0);
    TRACE(" Pass 43 ", 43.0F);
    close_channel(CH_TRACE);
}

}  // namespace brelan
