#include "deck/deck_walk.h"

#include <string>

#include "deck/card_table.h"
#include "deck/group_walk.h"
#include "mesh/attributes.h"

namespace brelan {

namespace {

constexpr std::int32_t COMBINATION = 0, EDIT = 1, BASE_MESH = 2, DAM = 3;  // IMOD
constexpr std::int32_t SLOPE = 5;                                          // IEDIT

template <class Number, auto LAST, FixedText NAME>
void fill(Table<Number, LAST, NAME>& list, const std::vector<std::int32_t>& numbers) {
    std::int32_t i = 0;
    for (const std::int32_t number : numbers)
        list[++i] = Number(number);
}

// --- Cards 2.x -----------------------------------------------------------------------------------

void read_combination(DeckCards& cards, Deck& deck) {
    cards.begin(DeckPart::combination);
    deck.names.first = cards.file_name("2.1-1", "FILEA");
    deck.names.second = cards.file_name("2.1-2", "FILEB");
    cards.result_name("2.1-3", "FILEC", deck.names.result);
    CombinationCards& combination = deck.combination;
    cards.take(CARD_2_2, combination.interface_rule);
    combination.pair_count = 0;
    if (combination.interface_rule != 1)
        return;
    combination.pair_count = cards.take_count(CARD_2_3);
    fill(combination.second_nodes, cards.list_line(CARD_2_3, combination.pair_count, "nodes of FILEA",
                                                   "the second-region list of Card 2.3"));
    combination.list_place = cards.place();
    fill(combination.first_nodes, cards.list_line(CARD_2_3, combination.pair_count, "their partners of FILEB",
                                                  "the first-region list of Card 2.3"));
}

// --- Cards 3.x -----------------------------------------------------------------------------------

// The selection of IEDIT 1, 2 and 3.
void read_selection(DeckCards& cards, const SelectionCards& rows, EditCards& edit) {
    cards.take(rows.location, edit.selection_mode);
    if (edit.selection_mode == 0) {
        cards.take(rows.window, edit.window_left, edit.window_bottom, edit.window_right, edit.window_top);
    } else {
        edit.list_count = cards.take_count(rows.list);
        fill(edit.list,
             cards.list_line(rows.list, edit.list_count, "the selection", "the list of NSEL numbers"));
        edit.list_place = cards.place();
    }
    cards.take(rows.side, edit.side);
}

// Attributes by kind stand behind MATNEW.
void read_continuum_row(DeckCards& cards, RebuildRow& row) {
    auto& [corner_1, corner_2, corner_3, corner_4] = row.corner_source;
    cards.take(CARD_3_6_1_1, row.old_material, corner_1, corner_2, corner_3, corner_4, row.new_material);
    std::int32_t position = 6;
    for_each_attribute(cards.kind, [&](const auto& attribute) {
        if (attribute.on_cards)
            cards.give(++position, row.*attribute.member);
    });
}

void read_line_row(DeckCards& cards, const Card& card, RebuildRow& row) {
    cards.take(card, row.old_material, row.corner_source[0], row.corner_source[1], row.new_material);
}

void read_rebuild_rows(DeckCards& cards, EditCards& edit) {
    edit.continuum_row_count = cards.take_count(CARD_3_6_1);
    for (std::int32_t i = 1; i <= edit.continuum_row_count; ++i)
        read_continuum_row(cards, edit.continuum_rows[i]);
    edit.beam_row_count = cards.take_count(CARD_3_6_2);
    for (std::int32_t i = 1; i <= edit.beam_row_count; ++i)
        read_line_row(cards, CARD_3_6_2_1, edit.beam_rows[i]);
    edit.truss_row_count = cards.take_count(CARD_3_6_3);
    for (std::int32_t i = 1; i <= edit.truss_row_count; ++i)
        read_line_row(cards, CARD_3_6_3_1, edit.truss_rows[i]);
}

void read_moves(DeckCards& cards, EditCards& edit) {
    cards.take(CARD_3_3_1_1, edit.old_x, edit.old_y, edit.new_x, edit.new_y);
    cards.take(CARD_3_3_1_2, edit.scale_x, edit.scale_y);
}

void read_slope(DeckCards& cards, EditCards& edit) {
    cards.take(CARD_3_3_6_1, edit.slope_code);
    cards.take(CARD_3_3_6_2, edit.template_material, edit.water_share, edit.initial_head);
    cards.take(CARD_3_3_6_3, edit.crest_x, edit.crest_y, edit.toe_x, edit.toe_y, edit.foot_x, edit.foot_y);
    edit.triangle_place = cards.place();
}

// The cards that follow Card 3.3 for its IEDIT.
void read_operation(DeckCards& cards, Deck& deck, DeckNotes& notes) {
    EditCards& edit = deck.edit;
    switch (edit.operation) {
        case 0:
            read_moves(cards, edit);
            break;
        case 1:
            read_selection(cards, CARDS_3_3_2, edit);
            cards.take(CARD_3_3_2_4);
            for (std::int32_t i = 1; i <= CARD_3_3_2_4.maximum_of(cards.kind); ++i)
                edit.new_codes[static_cast<std::size_t>(i - 1)] = cards.integer(i);
            break;
        case 2:
            read_selection(cards, CARDS_3_3_3, edit);
            break;
        case 3:
            read_selection(cards, CARDS_3_3_4, edit);
            cards.take(CARD_3_3_4_4, edit.new_continuum_material, edit.new_beam_material,
                       edit.new_truss_material);
            break;
        case 4:
            cards.begin(DeckPart::groups);
            read_groups(cards, deck, notes);
            break;
        case SLOPE:
            read_slope(cards, edit);
            break;
        case 6:
            read_rebuild_rows(cards, edit);
            break;
        default:
            break;  // no card follows
    }
}

void read_edit(DeckCards& cards, Deck& deck, DeckNotes& notes) {
    EditCards& edit = deck.edit;
    cards.begin(DeckPart::edit);
    deck.has_edit = true;
    edit.slope_code = 0;
    // The template mesh takes the place of the file that IEDIT 5 names.
    deck.uses_template = cards.look_ahead_to_edit() == SLOPE;
    if (deck.uses_template)
        cards.unused_file_name("3.1-1", "FILEA");
    else
        deck.names.first = cards.file_name("3.1-1", "FILEA");
    cards.result_name("3.1-2", "FILEM", deck.names.result);
    cards.take(CARD_3_2, edit.first_element, edit.first_node, edit.first_beam, edit.first_truss);
    edit.start_place = cards.place();
    cards.take(CARD_3_3, edit.operation, edit.excluded_material_1, edit.excluded_material_2,
               edit.excluded_material_3, edit.excluded_beam_material, edit.excluded_truss_material);
    cards.begin(DeckPart::operation);
    read_operation(cards, deck, notes);
}

// --- Cards 4.x -----------------------------------------------------------------------------------

template <class Strips>
void read_strips(DeckCards& cards, const Card& card, std::int32_t count, Strips& strips) {
    for (std::int32_t i = 1; i <= count; ++i) {
        cards.take(card);
        strips[i] = {cards.shown(1), cards.shown(2), cards.shown(3), cards.place()};
    }
}

void read_base_mesh(DeckCards& cards, BlockCards& blocks) {
    cards.begin(DeckPart::base_mesh);
    cards.take(CARD_4_1, blocks.block_columns, blocks.block_rows, blocks.fixes_left, blocks.fixes_right,
               blocks.fixes_top, blocks.fixes_bottom);
    if (blocks.block_columns < 1 || blocks.block_columns > MOST_BLOCK_ROWS || blocks.block_rows < 1 ||
        blocks.block_rows > MOST_BLOCK_ROWS)
        cards.refuse("Card 4.1: expected NBX and NBY from 1 to " + std::to_string(MOST_BLOCK_ROWS) +
                     ", found " + std::to_string(blocks.block_columns) + " and " +
                     std::to_string(blocks.block_rows));
    cards.take(CARD_4_2, blocks.origin_x, blocks.origin_y);
    if (CARD_4_2.maximum_of(cards.kind) == 3)
        blocks.third = cards.shown(3);
    read_strips(cards, CARD_4_3, blocks.block_columns, blocks.columns);
    read_strips(cards, CARD_4_4, blocks.block_rows, blocks.rows);
    cards.take(CARD_4_5, blocks.edit_follows);
}

// --- Cards 5.x -----------------------------------------------------------------------------------

DamOutline four_points(const DeckCards& cards) {
    DamOutline points;
    for (std::int32_t i = 1; i <= 7; i += 2)
        points.push_back({cards.shown(i), cards.shown(i + 1)});
    return points;
}

void read_dam(DeckCards& cards, DamCards& dam) {
    dam = DamCards{};
    dam.layer_count = cards.take_count(CARD_5_1);
    dam.core = cards.integer(2) == 1;
    dam.cut_off = cards.integer(3) == 1 && dam.layer_count > 0;
    dam.shells = cards.integer(4) != 0;
    dam.crest_divisions = cards.integer(5);
    dam.initial_head = cards.shown(6);
    dam.switches_place = cards.place();
    cards.take(CARD_5_2, dam.height, dam.water_height, dam.left_run, dam.left_width, dam.crest,
               dam.middle_width, dam.right_run, dam.right_width);
    dam.profile_place = cards.place();
    if (dam.core) {
        cards.take(CARD_5_3);
        dam.core_points = four_points(cards);
        dam.core_place = cards.place();
    }
    if (dam.layer_count > 0) {
        cards.take(CARD_5_4_1, dam.left_margin, dam.right_margin);
        dam.margins_place = cards.place();
        dam.layers = cards.reals(CARD_5_4_1, dam.layer_count, "thickness of the layers, from the top",
                                 "the layer thicknesses of Card 5.4");
        dam.layers_place = cards.place();
    }
    if (dam.cut_off) {
        cards.take(CARD_5_5);
        dam.wall_points = four_points(cards);
        dam.wall_place = cards.place();
    }
}

}  // namespace

void read_cards(DeckCards& cards, Deck& deck, DeckNotes& notes) {
    deck.fault.reset();
    deck.has_edit = deck.uses_template = false;
    cards.begin(DeckPart::mode);
    cards.prepare_kind_code();
    cards.read(CARD_1_1);
    deck.mode = cards.integer(1);
    deck.kind_code = cards.integer(2);
    deck.mode_place = cards.place();
    if (deck.mode == DAM) {
        read_dam(cards, deck.dam);
        return;
    }
    cards.pass(CARD_1_1);
    if (deck.mode <= COMBINATION)
        read_combination(cards, deck);
    else if (deck.mode == BASE_MESH)
        read_base_mesh(cards, deck.blocks);
    if (deck.mode == EDIT || (deck.mode == BASE_MESH && deck.blocks.edit_follows == 1))
        read_edit(cards, deck, notes);
    deck.end_place = cards.end_place();
    if (deck.mode <= COMBINATION && deck.combination.interface_rule != 0 &&
        deck.combination.interface_rule != 1)
        cards.hold(
            {STATUS_FAILED, deck.end_place.text() + ": the file ends here; expected NINT", deck.end_place});
}

}  // namespace brelan
