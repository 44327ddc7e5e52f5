#include "run/driver.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/run_end.h"
#include "deck/deck_checker.h"
#include "deck/deck_tables.h"
#include "deck/error_report.h"
#include "mesh/tables.h"
#include "run/channel_numbers.h"
#include "run/edit_run.h"
#include "run/read_cards.h"
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

void run_mode_1() {
    // With IEDIT 5 the deck names no FILEA.
    if (LOOKEDIT != 5)
        FILEA = read_file_name();
    FILEM = read_file_name();
    if (LOOKEDIT == 5)
        channel(CH_DECK).fail_behind(
            "expected an IEDIT that this version can run; the slope mapping of IEDIT 5 is not available yet");
    open_edit_files();
    read_edit();
    open_channel(CH_RESULT_COPY, "MeshFile.Mes", OpenStatus::work);
    run_edit();
}

// A mode that no cards belong to: the passes begin, and find no mesh.
[[noreturn]] void run_unknown_mode(std::int32_t mode) {
    open_channel(CH_RESULT_COPY, "MeshFile.Mes", OpenStatus::work);
    TRACE(" Pass 6 ", 6.0F);
    Channel& deck = channel(CH_DECK);
    deck.rewind();
    deck.fail_here("expected an IMOD of -1 to 3 on Card 1.1, found " + std::to_string(mode) +
                   ": no mesh is open");
}

void run_deck() {
    DECKNAME = DECKLIST[DECKNO];
    DECKCHK(DECKNAME, NORMALISED_DECK);
    Channel& deck = open_channel(CH_DECK, NORMALISED_DECK, OpenStatus::old);
    std::int32_t IMOD = 0;
    std::int32_t JK = 0;
    read_free(deck, "Card 1.1 (IMOD, JK)", IMOD, JK);
    TRACE(" Pass 3 ...", 3.0F);
    if (IMOD == -1 || IMOD == 0)
        deck.fail_behind(
            "expected a mode that this version can run; the combination of IMOD 0 is not available yet");
    if (IMOD == 2) {
        TRACE(" Pass 4A ", 4.1F);
        deck.fail_behind(
            "expected a mode that this version can run; the base mesh of IMOD 2 is not available yet");
    }
    RESETMESH();
    TRACE(" Pass 4D ", 4.4F);
    if (IMOD != 1)
        run_unknown_mode(IMOD);
    run_mode_1();
    FILEA = FILEM;
    for (const int number : {CH_DECK, CH_DATA, CH_MESH_A, CH_MESH_B, CH_WORK, CH_RESULT_COPY, CH_SOURCE_A,
                             CH_SOURCE_B, CH_RESULT})
        close_channel(number);
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
