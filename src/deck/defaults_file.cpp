#include "deck/defaults_file.h"

#include <string>

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/layout.h"
#include "deck/card_stream.h"
#include "group/tables.h"
#include "mesh/move_tables.h"
#include "run/channel_numbers.h"

namespace brelan {

namespace {

constexpr std::string_view MASTER_FILE = "C:\\VORK\\QX\\QXDATA\\DV-BRELAN.dat";
constexpr std::string_view PROJECT_FILE = "..\\DV-BRELAN.dat";
constexpr std::string_view WORK_FILE = "DV-BRELAN.Tmp";

constexpr int MOST_LINES = 10000;
constexpr std::size_t COLUMNS = 60;
constexpr Layout<"(A60)"> COPIED_LINE;

void copy_master() {
    Channel& master = open_channel(CH_MASTER, MASTER_FILE, OpenStatus::old);
    Channel& copy = open_channel(CH_DEFAULTS, PROJECT_FILE, OpenStatus::fresh);
    for (int lines = 0; lines < MOST_LINES && !master.at_end(); ++lines)
        COPIED_LINE.write(copy, master.read_whole_line("a line").substr(0, COLUMNS));
    copy.rewind();
    close_channel(CH_MASTER);
}

}  // namespace

void DEFLOAD() {
    if (FILE_EXISTS(PROJECT_FILE))
        open_channel(CH_DEFAULTS, PROJECT_FILE, OpenStatus::old);
    else
        copy_master();
    Channel& values = open_channel(CH_STATUS, WORK_FILE, OpenStatus::work);
    STRIPDECK(CH_DEFAULTS, CH_STATUS);
    read_free(values, "the distance limits (mode, length, factor, TOLSAME)", TOLMODE, TOLLENGTH, TOLFACTOR,
              TOLSAME);
    read_free(values, "the collapse of short elements (IDCOL, FCOL, MATCB(3), MATCT(3))", IDCOL, FCOL,
              MATCB[0], MATCB[1], MATCB[2], MATCT[0], MATCT[1], MATCT[2]);
    read_free(values, "the count of moves (NMOVE2)", NMOVE2);
    if (NMOVE2 > MAXMOVE)
        values.fail_behind("expected an NMOVE2 of at most " + std::to_string(MAXMOVE) + ", found " +
                           std::to_string(NMOVE2));
    for (std::int32_t k = 1; k <= NMOVE2; ++k)
        read_free(values, "a move (two nodes and a fraction)", MOVES2[k].moved, MOVES2[k].target,
                  MOVES2[k].fraction);
    close_channel(CH_STATUS);
}

}  // namespace brelan
