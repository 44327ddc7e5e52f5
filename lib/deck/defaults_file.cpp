#include "deck/defaults_file.h"

#include <string>

#include "deck/card_stream.h"
#include "mesh/group_tables.h"
#include "mesh/move_tables.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr std::string_view MASTER_FILE = "C:\\VORK\\QX\\QXDATA\\DV-BRELAN.dat";
constexpr std::string_view PROJECT_FILE = "..\\DV-BRELAN.dat";
constexpr std::string_view WORK_FILE = "DV-BRELAN.Tmp";

constexpr int MOST_LINES = 10000;
constexpr std::size_t COLUMNS = 60;
constexpr Layout<"(A60)"> COPIED_LINE;

void copy_master(Channels& channels) {
    Channel& master = channels.open(CHANNEL_MASTER, MASTER_FILE, OpenStatus::old);
    Channel& copy = channels.open(CHANNEL_DEFAULTS, PROJECT_FILE, OpenStatus::fresh);
    for (int lines = 0; lines < MOST_LINES && !master.at_end(); ++lines)
        COPIED_LINE.write(copy, master.read_whole_line("a line").substr(0, COLUMNS));
    copy.rewind();
    channels.close(CHANNEL_MASTER);
}

}  // namespace

void load_defaults(Channels& channels, Tolerances& tolerances, MoveLists& moves) {
    if (channels.file_exists(PROJECT_FILE))
        channels.open(CHANNEL_DEFAULTS, PROJECT_FILE, OpenStatus::old);
    else
        copy_master(channels);
    Channel& values = channels.open(CHANNEL_STATUS, WORK_FILE, OpenStatus::work);
    strip_deck(channels, CHANNEL_DEFAULTS, CHANNEL_STATUS);
    read_free(values, "the distance limits (mode, length, factor, TOLSAME)", tolerances.mode,
              tolerances.length, tolerances.factor, tolerances.same);
    read_free(values, "the collapse of short elements (IDCOL, FCOL, MATCB(3), MATCT(3))", moves.collapse_mode,
              moves.collapse_factor, moves.beam_materials[0].value, moves.beam_materials[1].value,
              moves.beam_materials[2].value, moves.truss_materials[0].value, moves.truss_materials[1].value,
              moves.truss_materials[2].value);
    read_free(values, "the count of moves (NMOVE2)", moves.second_count);
    if (moves.second_count > MOST_MOVES)
        values.fail_behind("expected an NMOVE2 of at most " + std::to_string(MOST_MOVES) + ", found " +
                           std::to_string(moves.second_count));
    for (std::int32_t k = 1; k <= moves.second_count; ++k)
        read_free(values, "a move (two nodes and a fraction)", moves.second[k].moved, moves.second[k].target,
                  moves.second[k].fraction);
    channels.close(CHANNEL_STATUS);
}

}  // namespace brelan
