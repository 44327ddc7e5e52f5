#include "run/read_cards.h"

#include <string>

#include "basemesh/block_deck.h"
#include "channel/channels.h"
#include "channel/free_field.h"
#include "mesh/combine_tables.h"
#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "channel/channel_numbers.h"
#include "mesh/edition.h"
#include "run/run.h"

namespace brelan {

namespace {

Channel& deck(Run& run) {
    return run.channels.at(CH_DECK);
}

// A list in I-lines; a count of 0 or less has one empty line.
template <class ListTable>
void read_list(Run& run, std::string_view expected, std::int32_t count, ListTable& list) {
    FreeFieldReader reader(deck(run), expected);
    for (std::int32_t i = 1; i <= count; ++i)
        reader.read(list[i]);
    reader.finish();
}

void read_selection(Run& run) {
    read_free(deck(run), "ILOC", run.edit.ILOC);
    if (run.edit.ILOC == 0) {
        read_free(deck(run), "XMIN, YMIN, XMAX, YMAX", run.edit.XMIN, run.edit.YMIN, run.edit.XMAX, run.edit.YMAX);
    } else {
        read_free(deck(run), "NSEL", run.edit.NSEL);
        read_list(run, "the list of NSEL numbers", run.edit.NSEL, run.edit.LIST);
        run.edit.list_place = deck(run).place_behind();
    }
    read_free(deck(run), "ISIDE", run.edit.ISIDE);
}

void read_continuum_row(Run& run, RebuildRow& row) {
    FreeFieldReader reader(deck(run), "a row of Card 3.6.1-1");
    reader.read(row.MATold);
    for (std::int32_t& source : row.NS)
        reader.read(source);
    reader.read(row.MATNEW);
    switch (run.settings.kind()) {
        case LayoutKind::coupled:
            reader.read(row.KS);
            reader.read(row.KF);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            reader.read(row.IDH);
            break;
        case LayoutKind::displacement:
            reader.read(row.THIC);
            reader.read(row.DEN);
            break;
    }
    reader.finish();
}

void read_line_row(Run& run, RebuildRow& row) {
    std::int32_t without_effect = 0;
    read_free(deck(run), "a row of Card 3.6.2-1 or 3.6.3-1", row.MATold, row.NS[0], row.NS[1], row.MATNEW,
              without_effect);
}

void read_rebuild_rows(Run& run) {
    read_free(deck(run), "NEDC", run.edit.NEDC);
    for (std::int32_t i = 1; i <= run.edit.NEDC; ++i)
        read_continuum_row(run, run.edit.EDC[i]);
    read_free(deck(run), "NEDB", run.edit.NEDB);
    for (std::int32_t i = 1; i <= run.edit.NEDB; ++i)
        read_line_row(run, run.edit.EDB[i]);
    read_free(deck(run), "NEDT", run.edit.NEDT);
    for (std::int32_t i = 1; i <= run.edit.NEDT; ++i)
        read_line_row(run, run.edit.EDT[i]);
}

// The block columns or rows.
template <class StripTable>
void read_strips(Run& run, std::string_view card, std::int32_t count, StripTable& strips) {
    for (std::int32_t i = 1; i <= count; ++i) {
        BlockStrip& strip = strips[i];
        read_free(deck(run), card, strip.length, strip.smallest, strip.position);
        if (divide_strip(strip).count < 1)
            deck(run).fail_behind(std::string(card) + ", row " + std::to_string(i) +
                               ": expected values that give at least one division");
    }
}

}  // namespace

TextLine read_file_name(Run& run) {
    return deck(run).read_line("a file name");
}

void read_combination_cards(Run& run) {
    run.files.first = read_file_name(run);
    run.files.second = read_file_name(run);
    run.files.combined = read_file_name(run);
    read_free(deck(run), "INTERFACE", run.combination.interface_rule);
    run.combination.pair_count = 0;
    if (run.combination.interface_rule == 0)
        return;
    read_free(deck(run), "NINT", run.combination.pair_count);
    read_list(run, "the second-region list of Card 2.3", run.combination.pair_count, run.combination.second_nodes);
    run.combination.list_place = deck(run).place_behind();
    read_list(run, "the first-region list of Card 2.3", run.combination.pair_count, run.combination.first_nodes);
}

void read_base_mesh_cards(Run& run) {
    read_free(deck(run), "Card 4.1 (NBX, NBY and four boundary switches)", run.block_cards.NBX, run.block_cards.NBY,
              run.block_cards.IB_LEFT, run.block_cards.IB_RIGHT, run.block_cards.IB_TOP, run.block_cards.IB_BOTTOM);
    if (run.settings.kind() == LayoutKind::displacement)
        read_free(deck(run), "Card 4.2 (Xo, Yo)", run.block_cards.Xo, run.block_cards.Yo);
    else
        read_free(deck(run), "Card 4.2 (Xo, Yo and a third value)", run.block_cards.Xo, run.block_cards.Yo, run.block_cards.third);
    read_strips(run, "Card 4.3 (W, DX, AX)", run.block_cards.NBX, run.block_cards.columns);
    read_strips(run, "Card 4.4 (H, DY, AY)", run.block_cards.NBY, run.block_cards.rows);
    read_free(deck(run), "Card 4.5 (IGMOD)", run.block_cards.IGMOD);
}

void read_edit_cards(Run& run) {
    read_free(deck(run), "Card 3.2 (NSNEL, NSNODE, NSBEAM, NSTRUS)", run.edit.NSNEL, run.edit.NSNODE, run.edit.NSBEAM,
              run.edit.NSTRUS);
    run.edit.start_place = deck(run).place_behind();
    read_free(deck(run), "Card 3.3 (IEDIT, MATX1, MATX2, MATX3, MATXB, MATXT)", run.edit.IEDIT, run.edit.MATX1,
              run.edit.MATX2, run.edit.MATX3, run.edit.MATXB, run.edit.MATXT);
}

void read_edit_group(Run& run) {
    switch (run.edit.IEDIT) {
        case 0:
            read_free(deck(run), "XO, YO, XN, YN", run.edit.XO, run.edit.YO, run.edit.XN, run.edit.YN);
            read_free(deck(run), "SCX, SCY", run.edit.SCX, run.edit.SCY);
            break;
        case 1: {
            read_selection(run);
            FreeFieldReader reader(deck(run), "the new node codes (IDNEW)");
            for (int i = 0; i < kind_row(run.settings.kind()).node_codes; ++i)
                reader.read(run.edit.IDNEW[static_cast<std::size_t>(i)]);
            reader.finish();
            break;
        }
        case 2:
            read_selection(run);
            break;
        case 3:
            read_selection(run);
            read_free(deck(run), "MATNC, MATNB, MATNT", run.edit.MATNC, run.edit.MATNB, run.edit.MATNT);
            break;
        case 5:
            read_free(deck(run), "MODEL", run.edit.MODEL);
            read_free(deck(run), "MATNO_T, rHw, Hi", run.edit.MATNO_T, run.edit.rHw, run.edit.Hi);
            read_free(deck(run), "X1, Y1, X2, Y2, X3, Y3", run.edit.X1, run.edit.Y1, run.edit.X2, run.edit.Y2, run.edit.X3, run.edit.Y3);
            run.edit.triangle_place = deck(run).place_behind();
            break;
        case 6:
            read_rebuild_rows(run);
            break;
        default:
            break;
    }
}

}  // namespace brelan
