#include "run/start_up.h"

#include <array>
#include <string>

#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/free_field.h"
#include "text/run_end.h"
#include "text/trace.h"

namespace brelan {

namespace {

// The debug and trace files of an edition: editions 7 and 8 have none.
struct EditionRow {
    std::int32_t edition;
    std::string_view debug_file, trace_file;
};
constexpr std::array<EditionRow, 10> EDITIONS{{
    {1, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P1.dat", "Brelan_P1.deb"},
    {2, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P2.dat", "Brelan_P2.deb"},
    {3, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P3.dat", "Brelan_P3.deb"},
    {4, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P4.dat", "Brelan_P4.deb"},
    {5, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P5.dat", "Brelan_P5.deb"},
    {6, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P6.dat", "Brelan_P6.deb"},
    {9, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P7.dat", "Brelan_P7.deb"},
    {10, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P8.dat", "Brelan_P8.deb"},
    {11, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P9.dat", "Brelan_P9.deb"},
    {12, "C:\\VORK\\QX\\QXDATA\\DEBUG\\Brelan_P0.dat", "Brelan_P0.deb"},
}};

// Shown in the trace only.
constexpr std::int32_t MODULE_SIZE = 4;

std::int32_t read_setting(Run& run, std::string_view file, std::string_view expected) {
    std::int32_t value = 0;
    read_free(run.channels.open(CHANNEL_DATA, file, OpenStatus::old), expected, value);
    run.channels.close(CHANNEL_DATA);
    return value;
}

void begin_trace(Run& run) {
    EditionRow row{};
    for (const EditionRow& candidate : EDITIONS)
        if (candidate.edition == run.settings.edition)
            row = candidate;
    std::int32_t IDEBUG = 0;
    float DBGPASS = 0.0F;
    if (run.channels.file_exists(row.debug_file)) {
        read_free(run.channels.open(CHANNEL_DEBUG, row.debug_file, OpenStatus::old),
                  "the debug switches (IDEBUG, DBGPASS)", IDEBUG, DBGPASS);
        run.channels.close(CHANNEL_DEBUG);
        run.trace.set(IDEBUG, DBGPASS);
        if (IDEBUG > 0) {
            run.trace.open(row.trace_file);
            run.trace.line(" Start debugging ... ");
        }
    }
    if (IDEBUG > 0 && DBGPASS >= 1.0F) {
        run.trace.line(" 32 BIT RELEASE: MODULESIZE = ", MODULE_SIZE);
        run.trace.pass(" Pass 1 ", 1.0F);
    }
}

void ask_deck_name(Run& run) {
    run.console.write(" BRELAN-2D is running ... \n");
    run.console.write(" Type Input  File Name : ");
    std::string answer;
    if (!run.console.read(answer))
        fail("console: standard input ends here; expected the name of a card deck");
    run.decks.name = TextLine(answer);
    if (run.decks.name.blank())
        fail("console: expected the name of a card deck, found a blank line");
}

void read_deck_name(Run& run) {
    Channel& names = run.channels.open(CHANNEL_DATA, "TFNAME.TMP", OpenStatus::old);
    names.rewind();
    run.decks.name = names.read_line("the name of a card deck");
    if (run.decks.name.blank())
        names.fail_behind("expected the name of a card deck, found a blank line");
    if (run.decks.name.view().find('\0') != std::string_view::npos)
        names.fail_behind("expected the name of a card deck, found one that holds a zero byte");
    run.channels.close(CHANNEL_DATA);
}

}  // namespace

void start_up(Run& run) {
    run.set_edition(read_setting(run, "C:\\VORK\\QX\\QXDATA\\PROGRAM.DAT", "the edition number (IPROGM)"));
    begin_trace(run);
    const std::int32_t manual = read_setting(run, "C:\\VORK\\QX\\QXDATA\\MANUAL.DAT", "the console mode");
    const std::int32_t front_end =
        read_setting(run, "C:\\VORK\\QX\\QXDATA\\HUBPLOT.DAT", "the front end mode");
    if (front_end != 1 && manual == 1)
        ask_deck_name(run);
    else
        read_deck_name(run);
    run.trace.pass(" Pass 2 ", 2.0F);
}

}  // namespace brelan
