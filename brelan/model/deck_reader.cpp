// Reading a deck: which card follows which.
#include <algorithm>
#include <fstream>
#include <iterator>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "deck/deck_tables.h"
#include "mesh/block_tables.h"
#include "mesh/tables.h"
#include "model/card_reader.h"
#include "model/deck.h"
#include "model/group_reader.h"
#include "text/real_to_integer.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

// --- combination, edit ---------------------------------------------------------------------------

void read_combination(Deck& deck, CardReader& cards) {
    deck.first_mesh = cards.file_name("2.1-1", "FILEA");
    deck.second_mesh = cards.file_name("2.1-2", "FILEB");
    deck.result = cards.file_name("2.1-3", "FILEC");
    cards.values(FORM_INTERFACE);
    if (cards.integer(1) != 1)
        return;
    cards.values(FORM_PAIRS);
    const std::int32_t pair_count = cards.count(FORM_PAIRS, MOST_CARD_VALUES);
    cards.list(FORM_PAIRS, pair_count, "nodes of FILEA");
    cards.list(FORM_PAIRS, pair_count, "their partners of FILEB");
}

void read_selection(CardReader& cards, const SelectionForms& forms) {
    cards.values(forms.location);
    if (cards.integer(1) == 0) {
        cards.values(forms.window);
    } else {
        cards.values(forms.list);
        cards.list(forms.list, cards.count(forms.list, MOST_CARD_VALUES), "the selection");
    }
    cards.values(forms.side);
}

void read_rows(CardReader& cards, const CardForm& count, const CardForm& row) {
    cards.values(count);
    const std::int32_t rows = cards.count(count, MOST_REBUILD_ROWS);
    for (std::int32_t i = 1; i <= rows; ++i)
        cards.values(row);
}

void read_edit(Deck& deck, CardReader& cards) {
    constexpr std::int32_t slope = 5;
    if (cards.look_ahead_to_edit() == slope)
        cards.unused_name("3.1-1", "FILEA");
    else
        deck.first_mesh = cards.file_name("3.1-1", "FILEA");
    deck.result = cards.file_name("3.1-2", "FILEM");
    cards.values(FORM_START);
    cards.values(FORM_EDIT);
    switch (cards.integer(1)) {
        case 0:
            cards.values(FORM_MOVE);
            cards.values(FORM_SCALE);
            break;
        case 1:
            read_selection(cards, FORMS_NODES);
            cards.values(FORM_CODES);
            break;
        case 2:
            read_selection(cards, FORMS_DELETE);
            break;
        case 3:
            read_selection(cards, FORMS_MATERIAL);
            cards.values(FORM_NEW_MATERIALS);
            break;
        case 4:
            read_groups(deck, cards);
            break;
        case slope:
            cards.values(FORM_MODEL);
            cards.values(FORM_SLOPE);
            cards.values(FORM_TRIANGLE);
            break;
        case 6:
            read_rows(cards, FORM_REBUILD_C, FORM_REBUILD_C_ROW);
            read_rows(cards, FORM_REBUILD_B, FORM_REBUILD_B_ROW);
            read_rows(cards, FORM_REBUILD_T, FORM_REBUILD_T_ROW);
            break;
        default:
            break;  // no card follows
    }
}

// --- base mesh, earth dam ------------------------------------------------------------------------

// Returns IGMOD.
std::int32_t read_base_mesh(CardReader& cards) {
    cards.values(FORM_BLOCKS);
    const std::int32_t block_columns = cards.integer(1);
    const std::int32_t block_rows = cards.integer(2);
    if (block_columns < 1 || block_columns > MOST_BLOCK_ROWS || block_rows < 1 ||
        block_rows > MOST_BLOCK_ROWS)
        cards.fault("Card 4.1: expected NBX and NBY from 1 to " + std::to_string(MOST_BLOCK_ROWS) +
                    ", found " + std::to_string(block_columns) + " and " + std::to_string(block_rows));
    cards.values(FORM_CORNER);
    for (std::int32_t column = 1; column <= block_columns; ++column)
        cards.values(FORM_COLUMN);
    for (std::int32_t row = 1; row <= block_rows; ++row)
        cards.values(FORM_ROW);
    cards.values(FORM_FOLLOWS);
    return cards.integer(1);
}

void read_dam(CardReader& cards) {
    cards.values(FORM_DAM);
    const std::int32_t layer_count = cards.count(FORM_DAM, MOST_CARD_VALUES);
    const bool core = cards.integer(2) == 1;
    const bool cut_off = cards.integer(3) == 1;
    cards.values(FORM_PROFILE);
    if (core)
        cards.values(FORM_CORE);
    if (layer_count <= 0)
        return;
    cards.values(FORM_MARGINS);
    cards.list(FORM_MARGINS, layer_count, "thickness of the layers, from the top");
    if (cut_off)
        cards.values(FORM_WALL);
}

void read_cards(Deck& deck, CardReader& cards) {
    cards.values(FORM_MODE);
    deck.mode = cards.integer(1);
    std::int32_t edit_switch = deck.mode;
    if (deck.mode == 3)
        read_dam(cards);
    else if (deck.mode <= 0)
        read_combination(deck, cards);
    else if (deck.mode == 2)
        edit_switch = read_base_mesh(cards);
    if (edit_switch == 1)
        read_edit(deck, cards);
    cards.set_group(0);
    deck.surplus_line = cards.next_line();
}

std::string read_text_of(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Failure(file.string() + ": expected a card deck, but there is no file of this name");
    if (!std::filesystem::is_regular_file(file, error))
        throw Failure(file.string() + ": expected a card deck, found no ordinary file");
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream || stream.bad())
        throw Failure(file.string() + ": the file cannot be read");
    return text;
}

}  // namespace

DeckSource deck_source(const std::filesystem::path& file) {
    DeckSource source;
    if (file == STANDARD_STREAM)
        source = {STANDARD_INPUT, read_standard_input()};
    else
        source = {file, read_text_of(file)};
    const std::string name = source.file.string();
    std::string& text = source.text;
    if (text.empty())
        throw Failure(name + ": expected a card deck, found an empty file");
    if (const std::size_t zero = text.find('\0'); zero != std::string::npos)
        throw Failure(
            name + ", line " +
            std::to_string(1 + std::count(text.begin(), text.begin() + static_cast<long>(zero), '\n')) +
            ": expected a card deck, found a zero byte: the file is no text");
    source.byte_order_mark = text.starts_with(BYTE_ORDER_MARK);
    if (source.byte_order_mark)
        text.erase(0, BYTE_ORDER_MARK.size());
    return source;
}

Deck read_deck(const DeckSource& source, LayoutKind kind) {
    Deck deck;
    static_cast<DeckSource&>(deck) = source;
    deck.kind = kind;
    CardReader cards(deck, deck.text);
    try {
        read_cards(deck, cards);
    } catch (const CardsEnd&) {
        // The fault is in the deck.
    }
    return deck;
}

Deck read_deck(const std::filesystem::path& file, LayoutKind kind) {
    return read_deck(deck_source(file), kind);
}

}  // namespace brelan::tool
