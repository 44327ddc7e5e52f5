// What the deck checker and the driver share about the decks of a run.
#pragma once

#include <array>
#include <cstdint>

#include "channel/channels.h"
#include "channel/text_line.h"
#include "mesh/table.h"

namespace brelan {

inline constexpr std::int32_t MAXCARDVAL = 500;  // values of a card or of the list behind it
inline constexpr std::int32_t MAXDECKS = 100;    // decks of one run

// The value buffer of the checker: CHKCARD fills it from position 1; a default is put in before the card is
// read.
inline Table<float, MAXCARDVAL, "CARDVAL"> CARDVAL;

inline Table<TextLine, MAXDECKS, "DECKLIST"> DECKLIST;  // entry 1 is the user's deck
inline std::int32_t DECKCOUNT = 1;                      // entries in use
inline std::int32_t DECKNO = 0;                         // entry being run
inline TextLine DECKNAME;                               // name of the deck being run

inline LineOrigin DECKORIGIN;  // the deck's lines behind those of the normalised deck

inline std::int32_t JKPREP = 0;    // JK of a Card 1.1 that gives none; set by the earth-dam deck writer
inline std::int32_t MODEL = 0;     // slope template of Card 3.3.6.1
inline std::int32_t LOOKEDIT = 0;  // IEDIT as the checker found it when it looked ahead to Card 3.3

}  // namespace brelan
