#include "run/read_cards.h"

#include <string>

#include "basemesh/block_deck.h"
#include "channel/channels.h"
#include "channel/free_field.h"
#include "mesh/combine_tables.h"
#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "run/channel_numbers.h"
#include "run/settings.h"

namespace brelan {

namespace {

Channel& deck() {
    return channel(CH_DECK);
}

// A list in I-lines; a count of 0 or less has one empty line.
template <class ListTable>
void read_list(std::string_view expected, std::int32_t count, ListTable& list) {
    FreeFieldReader reader(deck(), expected);
    for (std::int32_t i = 1; i <= count; ++i)
        reader.read(list[i]);
    reader.finish();
}

void read_selection() {
    read_free(deck(), "ILOC", EDIT.ILOC);
    if (EDIT.ILOC == 0) {
        read_free(deck(), "XMIN, YMIN, XMAX, YMAX", EDIT.XMIN, EDIT.YMIN, EDIT.XMAX, EDIT.YMAX);
    } else {
        read_free(deck(), "NSEL", EDIT.NSEL);
        read_list("the list of NSEL numbers", EDIT.NSEL, EDIT.LIST);
        EDIT.list_place = deck().place_behind();
    }
    read_free(deck(), "ISIDE", EDIT.ISIDE);
}

void read_continuum_row(RebuildRow& row) {
    FreeFieldReader reader(deck(), "a row of Card 3.6.1-1");
    reader.read(row.MATold);
    for (std::int32_t& source : row.NS)
        reader.read(source);
    reader.read(row.MATNEW);
    switch (KIND()) {
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

void read_line_row(RebuildRow& row) {
    std::int32_t without_effect = 0;
    read_free(deck(), "a row of Card 3.6.2-1 or 3.6.3-1", row.MATold, row.NS[0], row.NS[1], row.MATNEW,
              without_effect);
}

void read_rebuild_rows() {
    read_free(deck(), "NEDC", EDIT.NEDC);
    for (std::int32_t i = 1; i <= EDIT.NEDC; ++i)
        read_continuum_row(EDIT.EDC[i]);
    read_free(deck(), "NEDB", EDIT.NEDB);
    for (std::int32_t i = 1; i <= EDIT.NEDB; ++i)
        read_line_row(EDIT.EDB[i]);
    read_free(deck(), "NEDT", EDIT.NEDT);
    for (std::int32_t i = 1; i <= EDIT.NEDT; ++i)
        read_line_row(EDIT.EDT[i]);
}

// The block columns or rows.
template <class StripTable>
void read_strips(std::string_view card, std::int32_t count, StripTable& strips) {
    for (std::int32_t i = 1; i <= count; ++i) {
        BlockStrip& strip = strips[i];
        read_free(deck(), card, strip.length, strip.smallest, strip.position);
        if (divide_strip(strip).count < 1)
            deck().fail_behind(std::string(card) + ", row " + std::to_string(i) +
                               ": expected values that give at least one division");
    }
}

}  // namespace

TextLine read_file_name() {
    return deck().read_line("a file name");
}

void read_combination_cards() {
    FILEA = read_file_name();
    FILEB = read_file_name();
    FILEC = read_file_name();
    read_free(deck(), "INTERFACE", INTERFACE);
    NINT = 0;
    if (INTERFACE == 0)
        return;
    read_free(deck(), "NINT", NINT);
    read_list("the second-region list of Card 2.3", NINT, LISTB);
    LISTPLACE = deck().place_behind();
    read_list("the first-region list of Card 2.3", NINT, LISTA);
}

void read_base_mesh_cards() {
    read_free(deck(), "Card 4.1 (NBX, NBY and four boundary switches)", BLOCKS.NBX, BLOCKS.NBY,
              BLOCKS.IB_LEFT, BLOCKS.IB_RIGHT, BLOCKS.IB_TOP, BLOCKS.IB_BOTTOM);
    if (KIND() == LayoutKind::displacement)
        read_free(deck(), "Card 4.2 (Xo, Yo)", BLOCKS.Xo, BLOCKS.Yo);
    else
        read_free(deck(), "Card 4.2 (Xo, Yo and a third value)", BLOCKS.Xo, BLOCKS.Yo, BLOCKS.third);
    read_strips("Card 4.3 (W, DX, AX)", BLOCKS.NBX, BLOCKS.columns);
    read_strips("Card 4.4 (H, DY, AY)", BLOCKS.NBY, BLOCKS.rows);
    read_free(deck(), "Card 4.5 (IGMOD)", BLOCKS.IGMOD);
}

void read_edit_cards() {
    read_free(deck(), "Card 3.2 (NSNEL, NSNODE, NSBEAM, NSTRUS)", EDIT.NSNEL, EDIT.NSNODE, EDIT.NSBEAM,
              EDIT.NSTRUS);
    EDIT.start_place = deck().place_behind();
    read_free(deck(), "Card 3.3 (IEDIT, MATX1, MATX2, MATX3, MATXB, MATXT)", EDIT.IEDIT, EDIT.MATX1,
              EDIT.MATX2, EDIT.MATX3, EDIT.MATXB, EDIT.MATXT);
}

void read_edit_group() {
    switch (EDIT.IEDIT) {
        case 0:
            read_free(deck(), "XO, YO, XN, YN", EDIT.XO, EDIT.YO, EDIT.XN, EDIT.YN);
            read_free(deck(), "SCX, SCY", EDIT.SCX, EDIT.SCY);
            break;
        case 1: {
            read_selection();
            FreeFieldReader reader(deck(), "the new node codes (IDNEW)");
            for (int i = 0; i < kind_row().node_codes; ++i)
                reader.read(EDIT.IDNEW[static_cast<std::size_t>(i)]);
            reader.finish();
            break;
        }
        case 2:
            read_selection();
            break;
        case 3:
            read_selection();
            read_free(deck(), "MATNC, MATNB, MATNT", EDIT.MATNC, EDIT.MATNB, EDIT.MATNT);
            break;
        case 5:
            read_free(deck(), "MODEL", EDIT.MODEL);
            read_free(deck(), "MATNO_T, rHw, Hi", EDIT.MATNO_T, EDIT.rHw, EDIT.Hi);
            read_free(deck(), "X1, Y1, X2, Y2, X3, Y3", EDIT.X1, EDIT.Y1, EDIT.X2, EDIT.Y2, EDIT.X3, EDIT.Y3);
            EDIT.triangle_place = deck().place_behind();
            break;
        case 6:
            read_rebuild_rows();
            break;
        default:
            break;
    }
}

}  // namespace brelan
