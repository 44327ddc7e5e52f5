// What the cards of one deck leave to those behind them, and the decks of a run.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "mesh/table.h"
#include "text/text_line.h"

namespace brelan {

inline constexpr std::int32_t MOST_CARD_VALUES = 500;  // values of a card or of the list behind it
inline constexpr std::int32_t MOST_DECKS = 100;        // decks of one run

using CardValues = Table<float, MOST_CARD_VALUES, "CARDVAL">;

// What stays from card to card, also into the next deck: a field that is not given and has no default keeps
// what an earlier card left at its position.
struct CardMemory {
    CardValues values;    // of the card read last, from position 1
    TextLine name_field;  // what stands behind a name that was moved to the left
    std::int32_t prepared_kind_code =
        0;  // JK of a Card 1.1 that gives none; set by the earth-dam deck writer
};

// The values of the cards of a deck that the program has made, in their order; names and titles are text
// alone.
struct MadeCards {
    std::vector<std::vector<float>> values;
    bool stand = true;  // false: the text says what is none of a card's values
};

// The decks of a run.
struct DeckList {
    Table<TextLine, MOST_DECKS, "DECKLIST"> names;  // entry 1 is the user's deck, or a dam's main deck
    Table<MadeCards, MOST_DECKS, "the decks of a dam"> made;  // of the decks that the program has made
    std::int32_t count = 1;                                   // entries in use
    std::int32_t number = 0;                                  // entry being run
    TextLine name;                                            // name of the deck being run
};

}  // namespace brelan
