// What the deck checker and the driver share about the decks of a run.
#pragma once

#include <array>
#include <cstdint>

#include "mesh/table.h"
#include "text/channels.h"
#include "text/text_line.h"

namespace brelan {

inline constexpr std::int32_t MOST_CARD_VALUES = 500;  // values of a card or of the list behind it
inline constexpr std::int32_t MOST_DECKS = 100;        // decks of one run

// What the checker knows of the deck that it checks.
struct CheckedDeck {
    // The values of a card: check_card fills them from position 1; a default is put in before the card is
    // read.
    Table<float, MOST_CARD_VALUES, "CARDVAL"> values;
    TextLine name_field;  // what stands behind a name that was moved to the left

    LineOrigin origin;  // the deck's lines behind those of the normalised deck

    std::int32_t prepared_kind_code =
        0;                         // JK of a Card 1.1 that gives none; set by the earth-dam deck writer
    std::int32_t slope_model = 0;  // MODEL of Card 3.3.6.1
    std::int32_t edit_seen = 0;    // IEDIT as the checker found it when it looked ahead to Card 3.3
};

// The decks of a run.
struct DeckList {
    Table<TextLine, MOST_DECKS, "DECKLIST"> names;  // entry 1 is the user's deck
    std::int32_t count = 1;                         // entries in use
    std::int32_t number = 0;                        // entry being run
    TextLine name;                                  // name of the deck being run
};

}  // namespace brelan
