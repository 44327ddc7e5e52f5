#include "run/read_cards.h"

#include <string>

#include "blocks/block_plan.h"
#include "mesh/combine_tables.h"
#include "mesh/edit_tables.h"
#include "mesh/edition.h"
#include "mesh/kinds.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"

namespace brelan {

namespace {

Channel& deck(Run& run) {
    return run.channels.at(CHANNEL_DECK);
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
    read_free(deck(run), "ILOC", run.edit.selection_mode);
    if (run.edit.selection_mode == 0) {
        read_free(deck(run), "XMIN, YMIN, XMAX, YMAX", run.edit.window_left, run.edit.window_bottom,
                  run.edit.window_right, run.edit.window_top);
    } else {
        read_free(deck(run), "NSEL", run.edit.list_count);
        read_list(run, "the list of NSEL numbers", run.edit.list_count, run.edit.list);
        run.edit.list_place = deck(run).place_behind();
    }
    read_free(deck(run), "ISIDE", run.edit.side);
}

void read_continuum_row(Run& run, RebuildRow& row) {
    FreeFieldReader reader(deck(run), "a row of Card 3.6.1-1");
    reader.read(row.old_material);
    for (std::int32_t& source : row.corner_source)
        reader.read(source);
    reader.read(row.new_material);
    switch (run.settings.kind()) {
        case LayoutKind::coupled:
            reader.read(row.skeleton);
            reader.read(row.fluid);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            reader.read(row.attribute);
            break;
        case LayoutKind::displacement:
            reader.read(row.thickness);
            reader.read(row.density);
            break;
    }
    reader.finish();
}

void read_line_row(Run& run, RebuildRow& row) {
    std::int32_t without_effect = 0;
    read_free(deck(run), "a row of Card 3.6.2-1 or 3.6.3-1", row.old_material, row.corner_source[0],
              row.corner_source[1], row.new_material, without_effect);
}

void read_rebuild_rows(Run& run) {
    read_free(deck(run), "NEDC", run.edit.continuum_row_count);
    for (std::int32_t i = 1; i <= run.edit.continuum_row_count; ++i)
        read_continuum_row(run, run.edit.continuum_rows[i]);
    read_free(deck(run), "NEDB", run.edit.beam_row_count);
    for (std::int32_t i = 1; i <= run.edit.beam_row_count; ++i)
        read_line_row(run, run.edit.beam_rows[i]);
    read_free(deck(run), "NEDT", run.edit.truss_row_count);
    for (std::int32_t i = 1; i <= run.edit.truss_row_count; ++i)
        read_line_row(run, run.edit.truss_rows[i]);
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
    read_list(run, "the second-region list of Card 2.3", run.combination.pair_count,
              run.combination.second_nodes);
    run.combination.list_place = deck(run).place_behind();
    read_list(run, "the first-region list of Card 2.3", run.combination.pair_count,
              run.combination.first_nodes);
}

void read_base_mesh_cards(Run& run) {
    read_free(deck(run), "Card 4.1 (NBX, NBY and four boundary switches)", run.block_cards.block_columns,
              run.block_cards.block_rows, run.block_cards.fixes_left, run.block_cards.fixes_right,
              run.block_cards.fixes_top, run.block_cards.fixes_bottom);
    if (run.settings.kind() == LayoutKind::displacement)
        read_free(deck(run), "Card 4.2 (Xo, Yo)", run.block_cards.origin_x, run.block_cards.origin_y);
    else
        read_free(deck(run), "Card 4.2 (Xo, Yo and a third value)", run.block_cards.origin_x,
                  run.block_cards.origin_y, run.block_cards.third);
    read_strips(run, "Card 4.3 (W, DX, AX)", run.block_cards.block_columns, run.block_cards.columns);
    read_strips(run, "Card 4.4 (H, DY, AY)", run.block_cards.block_rows, run.block_cards.rows);
    read_free(deck(run), "Card 4.5 (IGMOD)", run.block_cards.edit_follows);
}

void read_edit_cards(Run& run) {
    read_free(deck(run), "Card 3.2 (NSNEL, NSNODE, NSBEAM, NSTRUS)", run.edit.first_element,
              run.edit.first_node, run.edit.first_beam, run.edit.first_truss);
    run.edit.start_place = deck(run).place_behind();
    read_free(deck(run), "Card 3.3 (IEDIT, MATX1, MATX2, MATX3, MATXB, MATXT)", run.edit.operation,
              run.edit.excluded_material_1, run.edit.excluded_material_2, run.edit.excluded_material_3,
              run.edit.excluded_beam_material, run.edit.excluded_truss_material);
}

void read_edit_group(Run& run) {
    switch (run.edit.operation) {
        case 0:
            read_free(deck(run), "XO, YO, XN, YN", run.edit.old_x, run.edit.old_y, run.edit.new_x,
                      run.edit.new_y);
            read_free(deck(run), "SCX, SCY", run.edit.scale_x, run.edit.scale_y);
            break;
        case 1: {
            read_selection(run);
            FreeFieldReader reader(deck(run), "the new node codes (IDNEW)");
            for (int i = 0; i < kind_row(run.settings.kind()).node_codes; ++i)
                reader.read(run.edit.new_codes[static_cast<std::size_t>(i)]);
            reader.finish();
            break;
        }
        case 2:
            read_selection(run);
            break;
        case 3:
            read_selection(run);
            read_free(deck(run), "MATNC, MATNB, MATNT", run.edit.new_continuum_material,
                      run.edit.new_beam_material, run.edit.new_truss_material);
            break;
        case 5:
            read_free(deck(run), "MODEL", run.edit.slope_code);
            read_free(deck(run), "MATNO_T, rHw, Hi", run.edit.template_material, run.edit.water_share,
                      run.edit.initial_head);
            read_free(deck(run), "X1, Y1, X2, Y2, X3, Y3", run.edit.crest_x, run.edit.crest_y, run.edit.toe_x,
                      run.edit.toe_y, run.edit.foot_x, run.edit.foot_y);
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
