#include "deck/deck_checker.h"

#include <span>
#include <string>

#include "deck/card_stream.h"
#include "deck/card_table.h"
#include "deck/checked_cards.h"
#include "deck/deck_tables.h"
#include "deck/group_cards.h"
#include "deck/normalised_deck.h"
#include "mesh/block_tables.h"
#include "mesh/tables.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/real_to_integer.h"
#include "text/run_end.h"

namespace brelan {

namespace {

// The checker's own use of the channels while it runs.
constexpr int CHANNEL_STRIPPED = CHANNEL_MESH_A;
constexpr int CHANNEL_NORMALISED = CHANNEL_MESH_B;
constexpr int CHANNEL_LISTING = CHANNEL_WORK;

TextLine read_name(Channels& channels, std::string_view what) {
    return deck(channels).read_line(what);
}

// Passes a file name field.
TextLine pass_name(Channels& channels, CheckedDeck& checker, std::string_view what) {
    const TextLine field = read_name(channels, what);
    const std::string expected = "expected " + std::string(what);
    if (field.blank())
        deck(channels).fail_behind(expected + ", found a blank line");
    if (field.view().find('\0') != std::string_view::npos)
        deck(channels).fail_behind(expected + ", found one that holds a zero byte");
    // The last columns of a bare name are cut: with nothing in the others it is as good as blank.
    if (is_bare_name(field) && TextLine(field.first(LINE_COLUMNS - 3)).blank())
        deck(channels).fail_behind(expected + ", found a line with nothing in its first 123 columns");
    const TextLine name = name_from_parent(checker, field);
    normalised(channels).write_columns(name.view());
    return name;
}

// Tells the plot tool the name of the result mesh.
void note_result(Channels& channels, const TextLine& name) {
    channels.open(CHANNEL_DATA, "C:\\Vork\\Qx\\Qxdata\\FnPlot2D.dat", OpenStatus::work)
        .write_columns(name.view());
    channels.close(CHANNEL_DATA);
}

// --- Cards 2.x -----------------------------------------------------------------------------------

void check_combination(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console) {
    pass_name(channels, checker, "the file name of Card 2.1-1 (FILEA)");
    pass_name(channels, checker, "the file name of Card 2.1-2 (FILEB)");
    note_result(channels, pass_name(channels, checker, "the file name of Card 2.1-3 (FILEC)"));
    pass(channels, kind, checker, console, CARD_2_2);
    if (value_of(checker, 1) != 1)
        return;
    pass(channels, kind, checker, console, CARD_2_3);
    const std::int32_t pair_count = count_on(channels, checker, CARD_2_3, MOST_CARD_VALUES);
    pass_integer_list(channels, checker, CARD_2_3, pair_count);
    pass_integer_list(channels, checker, CARD_2_3, pair_count);
}

// --- Cards 3.x -----------------------------------------------------------------------------------

// IEDIT stands on the fourth line from here; it decides whether the first of them counts. Behind a blank
// fourth line the step back of four ends one line late, so such a deck is reported at Card 3.2.
std::int32_t look_ahead_to_edit(Channels& channels) {
    constexpr int lines = 4;
    deck(channels).skip_lines(lines - 1, "Cards 3.1-1 to 3.3");
    float edit = 0.0F;
    read_free(deck(channels), "Card 3.3", edit);
    deck(channels).step_back(lines);
    return to_integer(edit);
}

// The selection of IEDIT 1, 2 and 3.
void check_selection(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                     const SelectionCards& cards) {
    pass(channels, kind, checker, console, cards.location);
    if (value_of(checker, 1) == 0) {
        pass(channels, kind, checker, console, cards.window);
    } else {
        pass(channels, kind, checker, console, cards.list);
        pass_integer_list(channels, checker, cards.list,
                          count_on(channels, checker, cards.list, MOST_CARD_VALUES));
    }
    pass(channels, kind, checker, console, cards.side);
}

void check_rebuild_rows(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                        const Card& count_card, const Card& row_card) {
    pass(channels, kind, checker, console, count_card);
    const std::int32_t rows = count_on(channels, checker, count_card, MOST_REBUILD_ROWS);
    for (std::int32_t row = 1; row <= rows; ++row)
        pass(channels, kind, checker, console, row_card);
}

void check_edit(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console) {
    constexpr std::string_view file_a = "the file name of Card 3.1-1 (FILEA)";
    checker.edit_seen = look_ahead_to_edit(channels);
    // The template mesh takes the place of the file that IEDIT 5 names.
    if (checker.edit_seen == 5)
        read_name(channels, file_a);
    else
        pass_name(channels, checker, file_a);
    note_result(channels, pass_name(channels, checker, "the file name of Card 3.1-2 (FILEM)"));
    pass(channels, kind, checker, console, CARD_3_2);
    pass(channels, kind, checker, console, CARD_3_3);
    switch (value_of(checker, 1)) {
        case 0:
            pass(channels, kind, checker, console, CARD_3_3_1_1);
            pass(channels, kind, checker, console, CARD_3_3_1_2);
            break;
        case 1:
            check_selection(channels, kind, checker, console, CARDS_3_3_2);
            pass(channels, kind, checker, console, CARD_3_3_2_4);
            break;
        case 2:
            check_selection(channels, kind, checker, console, CARDS_3_3_3);
            break;
        case 3:
            check_selection(channels, kind, checker, console, CARDS_3_3_4);
            pass(channels, kind, checker, console, CARD_3_3_4_4);
            break;
        case 4:
            check_groups(channels, kind, checker, console);
            break;
        case 5:
            pass(channels, kind, checker, console, CARD_3_3_6_1);
            checker.slope_model = value_of(checker, 1);
            pass(channels, kind, checker, console, CARD_3_3_6_2);
            pass(channels, kind, checker, console, CARD_3_3_6_3);
            break;
        case 6:
            check_rebuild_rows(channels, kind, checker, console, CARD_3_6_1, CARD_3_6_1_1);
            check_rebuild_rows(channels, kind, checker, console, CARD_3_6_2, CARD_3_6_2_1);
            check_rebuild_rows(channels, kind, checker, console, CARD_3_6_3, CARD_3_6_3_1);
            break;
        default:
            break;  // no card follows
    }
}

// --- Cards 4.x -----------------------------------------------------------------------------------

// Returns IGMOD.
std::int32_t check_base_mesh(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console) {
    pass(channels, kind, checker, console, CARD_4_1);
    const std::int32_t block_columns = value_of(checker, 1);
    const std::int32_t block_rows = value_of(checker, 2);
    if (block_columns < 1 || block_columns > MOST_BLOCK_ROWS || block_rows < 1 ||
        block_rows > MOST_BLOCK_ROWS)
        deck(channels).fail_behind("Card 4.1: expected NBX and NBY from 1 to " +
                                   std::to_string(MOST_BLOCK_ROWS) + ", found " +
                                   std::to_string(block_columns) + " and " + std::to_string(block_rows));
    pass(channels, kind, checker, console, CARD_4_2);
    for (std::int32_t column = 1; column <= block_columns; ++column)
        pass(channels, kind, checker, console, CARD_4_3);
    for (std::int32_t row = 1; row <= block_rows; ++row)
        pass(channels, kind, checker, console, CARD_4_4);
    pass(channels, kind, checker, console, CARD_4_5);
    return value_of(checker, 1);
}

// --- Cards 5.x -----------------------------------------------------------------------------------

void check_dam(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console) {
    pass(channels, kind, checker, console, CARD_5_1);
    const std::int32_t layer_count = count_on(channels, checker, CARD_5_1, MOST_CARD_VALUES);
    const bool core = value_of(checker, 2) == 1;
    const bool cut_off = value_of(checker, 3) == 1;
    pass(channels, kind, checker, console, CARD_5_2);
    if (core)
        pass(channels, kind, checker, console, CARD_5_3);
    if (layer_count > 0) {
        pass(channels, kind, checker, console, CARD_5_4_1);
        const std::span thicknesses(&checker.values[1], static_cast<std::size_t>(layer_count));
        read_free_list<float>(deck(channels), "the layer thicknesses of Card 5.4", thicknesses);
        write_reals(normalised(channels), thicknesses);
        if (cut_off)
            pass(channels, kind, checker, console, CARD_5_5);
    }
}

}  // namespace

DeckContent check_deck(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                       const TextLine& deck_name, std::string_view normalised_name) {
    if (deck_name.blank())
        fail("expected the name of a card deck, found a blank one");
    channels.open(CHANNEL_DECK, deck_name.view(), OpenStatus::old);
    channels.open(CHANNEL_STRIPPED, "TT55.TMP", OpenStatus::work);
    channels.open(CHANNEL_NORMALISED, normalised_name, OpenStatus::work);
    channels.open(CHANNEL_LISTING, "T7.TMP", OpenStatus::work);
    strip_deck(channels, CHANNEL_DECK, CHANNEL_STRIPPED);
    normalised(channels).follow(deck(channels));

    checker.slope_model = 0;
    checker.values[2] = static_cast<float>(checker.prepared_kind_code);
    check(channels, kind, checker, console, CARD_1_1);
    const std::int32_t mode = value_of(checker, 1);
    if (mode == 3) {
        check_dam(channels, kind, checker, console);
        return DeckContent::dam;
    }
    write_card(checker, normalised(channels), CARD_1_1.written_of(kind));
    std::int32_t edit_switch = mode;
    if (mode <= 0)
        check_combination(channels, kind, checker, console);
    else if (mode == 2)
        edit_switch = check_base_mesh(channels, kind, checker, console);
    if (edit_switch == 1)
        check_edit(channels, kind, checker, console);

    checker.origin = normalised(channels).origin();
    for (const int number : {CHANNEL_DECK, CHANNEL_STRIPPED, CHANNEL_NORMALISED, CHANNEL_LISTING})
        channels.close(number);
    return DeckContent::mesh;
}

void drop_checked_deck(Channels& channels) {
    channels.close(CHANNEL_STRIPPED, CloseAction::remove);
    channels.close(CHANNEL_NORMALISED, CloseAction::remove);
}

}  // namespace brelan
