#include "deck/deck_checker.h"

#include <span>
#include <string>

#include "basemesh/block_tables.h"
#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/real_to_integer.h"
#include "channel/run_end.h"
#include "deck/card_stream.h"
#include "deck/card_table.h"
#include "deck/checked_cards.h"
#include "deck/deck_tables.h"
#include "deck/group_cards.h"
#include "deck/normalised_deck.h"
#include "mesh/tables.h"
#include "run/channel_numbers.h"

namespace brelan {

namespace {

// The checker's own use of the channels while it runs.
constexpr int CH_STRIPPED = CH_MESH_A;
constexpr int CH_NORMALISED = CH_MESH_B;
constexpr int CH_LISTING = CH_WORK;

TextLine read_name(std::string_view what) {
    return deck().read_line(what);
}

// Passes a file name field.
TextLine pass_name(std::string_view what) {
    const TextLine field = read_name(what);
    const std::string expected = "expected " + std::string(what);
    if (field.blank())
        deck().fail_behind(expected + ", found a blank line");
    if (field.view().find('\0') != std::string_view::npos)
        deck().fail_behind(expected + ", found one that holds a zero byte");
    // The last columns of a bare name are cut: with nothing in the others it is as good as blank.
    if (is_bare_name(field) && TextLine(field.first(LINE_COLUMNS - 3)).blank())
        deck().fail_behind(expected + ", found a line with nothing in its first 123 columns");
    const TextLine name = TRIMNAME(field);
    normalised().write_columns(name.view());
    return name;
}

// Tells the plot tool the name of the result mesh.
void note_result(const TextLine& name) {
    open_channel(CH_DATA, "C:\\Vork\\Qx\\Qxdata\\FnPlot2D.dat", OpenStatus::work).write_columns(name.view());
    close_channel(CH_DATA);
}

// --- Cards 2.x -----------------------------------------------------------------------------------

void check_combination() {
    pass_name("the file name of Card 2.1-1 (FILEA)");
    pass_name("the file name of Card 2.1-2 (FILEB)");
    note_result(pass_name("the file name of Card 2.1-3 (FILEC)"));
    pass(CARD_2_2);
    if (value_of(1) != 1)
        return;
    pass(CARD_2_3);
    const std::int32_t NINT = count_on(CARD_2_3, MAXCARDVAL);
    pass_integer_list(CARD_2_3, NINT);
    pass_integer_list(CARD_2_3, NINT);
}

// --- Cards 3.x -----------------------------------------------------------------------------------

// IEDIT stands on the fourth line from here; it decides whether the first of them counts. Behind a blank
// fourth line the step back of four ends one line late, so such a deck is reported at Card 3.2.
std::int32_t look_ahead_to_edit() {
    constexpr int lines = 4;
    deck().skip_lines(lines - 1, "Cards 3.1-1 to 3.3");
    float edit = 0.0F;
    read_free(deck(), "Card 3.3", edit);
    deck().step_back(lines);
    return TRUNCATE(edit);
}

// The selection of IEDIT 1, 2 and 3.
void check_selection(const SelectionCards& cards) {
    pass(cards.location);
    if (value_of(1) == 0) {
        pass(cards.window);
    } else {
        pass(cards.list);
        pass_integer_list(cards.list, count_on(cards.list, MAXCARDVAL));
    }
    pass(cards.side);
}

void check_rebuild_rows(const Card& count_card, const Card& row_card) {
    pass(count_card);
    const std::int32_t rows = count_on(count_card, MAXEDLIST);
    for (std::int32_t row = 1; row <= rows; ++row)
        pass(row_card);
}

void check_edit() {
    constexpr std::string_view file_a = "the file name of Card 3.1-1 (FILEA)";
    LOOKEDIT = look_ahead_to_edit();
    // The template mesh takes the place of the file that IEDIT 5 names.
    if (LOOKEDIT == 5)
        read_name(file_a);
    else
        pass_name(file_a);
    note_result(pass_name("the file name of Card 3.1-2 (FILEM)"));
    pass(CARD_3_2);
    pass(CARD_3_3);
    switch (value_of(1)) {
        case 0:
            pass(CARD_3_3_1_1);
            pass(CARD_3_3_1_2);
            break;
        case 1:
            check_selection(CARDS_3_3_2);
            pass(CARD_3_3_2_4);
            break;
        case 2:
            check_selection(CARDS_3_3_3);
            break;
        case 3:
            check_selection(CARDS_3_3_4);
            pass(CARD_3_3_4_4);
            break;
        case 4:
            check_groups();
            break;
        case 5:
            pass(CARD_3_3_6_1);
            MODEL = value_of(1);
            pass(CARD_3_3_6_2);
            pass(CARD_3_3_6_3);
            break;
        case 6:
            check_rebuild_rows(CARD_3_6_1, CARD_3_6_1_1);
            check_rebuild_rows(CARD_3_6_2, CARD_3_6_2_1);
            check_rebuild_rows(CARD_3_6_3, CARD_3_6_3_1);
            break;
        default:
            break;  // no card follows
    }
}

// --- Cards 4.x -----------------------------------------------------------------------------------

// Returns IGMOD.
std::int32_t check_base_mesh() {
    pass(CARD_4_1);
    const std::int32_t NBX = value_of(1);
    const std::int32_t NBY = value_of(2);
    if (NBX < 1 || NBX > MAXBLOCKROWS || NBY < 1 || NBY > MAXBLOCKROWS)
        deck().fail_behind("Card 4.1: expected NBX and NBY from 1 to " + std::to_string(MAXBLOCKROWS) +
                           ", found " + std::to_string(NBX) + " and " + std::to_string(NBY));
    pass(CARD_4_2);
    for (std::int32_t column = 1; column <= NBX; ++column)
        pass(CARD_4_3);
    for (std::int32_t row = 1; row <= NBY; ++row)
        pass(CARD_4_4);
    pass(CARD_4_5);
    return value_of(1);
}

// --- Cards 5.x -----------------------------------------------------------------------------------

void check_dam() {
    pass(CARD_5_1);
    const std::int32_t NLAYER = count_on(CARD_5_1, MAXCARDVAL);
    const bool core = value_of(2) == 1;
    const bool cut_off = value_of(3) == 1;
    pass(CARD_5_2);
    if (core)
        pass(CARD_5_3);
    if (NLAYER > 0) {
        pass(CARD_5_4_1);
        const std::span thicknesses(&CARDVAL[1], static_cast<std::size_t>(NLAYER));
        read_free_list<float>(deck(), "the layer thicknesses of Card 5.4", thicknesses);
        write_reals(normalised(), thicknesses);
        if (cut_off)
            pass(CARD_5_5);
    }
}

}  // namespace

void DECKCHK(TextLine& deck_name, std::string_view normalised_name, void (*write_dam)()) {
    if (deck_name.blank())
        FAIL("expected the name of a card deck, found a blank one");
    open_channel(CH_DECK, deck_name.view(), OpenStatus::old);
    open_channel(CH_STRIPPED, "TT55.TMP", OpenStatus::work);
    open_channel(CH_NORMALISED, normalised_name, OpenStatus::work);
    open_channel(CH_LISTING, "T7.TMP", OpenStatus::work);
    STRIPDECK(CH_DECK, CH_STRIPPED);
    normalised().follow(deck());

    MODEL = 0;
    CARDVAL[2] = static_cast<float>(JKPREP);
    check(CARD_1_1);
    const std::int32_t IMOD = value_of(1);
    if (IMOD == 3) {
        check_dam();
        write_dam();
        deck_name = DECKLIST[1];
        close_channel(CH_STRIPPED, CloseAction::remove);
        close_channel(CH_NORMALISED, CloseAction::remove);
        DECKCHK(deck_name, normalised_name, write_dam);
        return;
    }
    write_card(normalised(), CARD_1_1.written_of(KIND()));
    std::int32_t edit_switch = IMOD;
    if (IMOD <= 0)
        check_combination();
    else if (IMOD == 2)
        edit_switch = check_base_mesh();
    if (edit_switch == 1)
        check_edit();

    DECKORIGIN = normalised().origin();
    for (const int number : {CH_DECK, CH_STRIPPED, CH_NORMALISED, CH_LISTING})
        close_channel(number);
}

}  // namespace brelan
